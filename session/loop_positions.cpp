// session/loop_positions.cpp -- the stored positions of sparse arrays.
//
// Each row is a run that rises. Runs of like length are merged two by two, as the digits of a binary counter
// are carried, so that any number of rows costs little more than one pass over their entries.
#include "session/loop_positions.h"
#include "session/arr_access.h"
#include "session/array_args.h"
#include "session/report.h"

namespace kelmar {

static constexpr int run_sizes = 48;  // binary digits of the count of runs: there can never be so many

struct run_counter {
    colm *run[run_sizes];  // of about 2^k rows; null: none
};

// One rising run of both; a column that both have stays once.
static colm *merge_runs(colm *a, colm *b)
{
    colm *head = nullptr;
    colm **tail = &head;
    while (a && b) {
        if (a->coord == b->coord) {
            free_colm(&b);
            continue;
        }
        colm *&first = a->coord < b->coord ? a : b;
        colm *const node = first;
        first = node->next;
        *tail = node;
        tail = &node->next;
    }
    *tail = a ? a : b;
    return head;
}

// A run of the columns of the row; its nodes hold the number 1.
static colm *run_of_row(const colm *row)
{
    colm *head = nullptr;
    colm **tail = &head;
    for (; row; row = row->next) {
        quolynode *one = nullptr;
        quoly_set(1, &one);
        *tail = newcolm(row->coord, one);
        tail = &(*tail)->next;
    }
    return head;
}

static void add_run(run_counter *c, colm *run)
{
    int k = 0;
    for (; c->run[k]; ++k) {
        run = merge_runs(c->run[k], run);
        c->run[k] = nullptr;
    }
    c->run[k] = run;
}

// Put the columns of row `row`, from 1, into *v; those of all rows with 0.
static void gather_rows(const array *a, std::int32_t row, arr_value *v)
{
    run_counter c = {};
    colm **head = &v->sparse->row_head[0];
    if (row > 0) {
        *head = merge_runs(*head, run_of_row(*head_of_row(a->arr_sparse, row)));
        return;
    }
    row_walk w = {a->arr_sparse, 0, a->arr_rows};
    while (colm **one = next_row(&w)) {
        if (*one) add_run(&c, run_of_row(*one));
    }
    for (colm *run : c.run) *head = merge_runs(*head, run);
}

// Read the row number in hand, of `rows`. Declines (0) after an error.
static int read_row(input_stream **stream, std::int32_t *row, std::int32_t rows, name_node **cursor)
{
    if (!read_index(stream, row, err_bad_coordinate, cursor)) return 0;
    *row += 1 - addresser;
    if (*row >= 1 && *row <= rows) return 1;
    error(err_bad_index, token.text);
    return 0;
}

// The `[` of an array is in hand. Null after an error.
static const array *read_loop_array(input_stream **stream, name_node **cursor)
{
    const array *a = read_stored_array(stream, star_ignored, err_loop_array_not_sparse, cursor);
    if (!a || a->arr_sparse) return a;
    error(err_loop_array_not_sparse, a->arr_name.text);
    return nullptr;
}

static bool head_is_over()
{
    const char c = token.text[0];
    return c == ',' || c == '>' || c == endlist[0];
}

int read_positions(input_stream **stream, arr_value *v, name_node **cursor)
{
    const array *a = nullptr;
    begin_sparse(v, 1, 1);
    for (;;) {
        std::int32_t row = 0;
        if (token.text[0] == '[') a = read_loop_array(stream, cursor);
        if (!a) return 0;
        const std::int64_t stamp = a->arr_time;
        if (!head_is_over() && !read_row(stream, &row, a->arr_rows, cursor)) return 0;
        if (a->arr_time != stamp || !a->arr_sparse) {
            error(err_no_such_array, "[");  // the row number has cancelled it
            return 0;
        }
        gather_rows(a, row, v);
        if (token.text[0] != ',') return 1;
        scanner(stream, &token, cursor);
    }
}

}  // namespace kelmar
