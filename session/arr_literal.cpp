// session/arr_literal.cpp -- arrays written out: lists, rows, comprehensions, random arrays, sparse data.
//
// Entries are gathered in a work array as they come; rows are turned into columns at the end, when their
// count is known. The body of a comprehension is stored once, and replayed for each entry.
#include "session/arr_literal.h"
#include <cstring>
#include "matrix/sparse_ops.h"
#include "numbers/random.h"
#include "quoly/owned.h"
#include "session/arr_access.h"
#include "session/arr_expr.h"
#include "session/expr.h"
#include "session/loops.h"
#include "session/poly_readin.h"
#include "session/report.h"
#include "session/stored_expr.h"

namespace kelmar {

static void fail(arr_value *v, int n)
{
    error(n, token.text);
    empty_value(v);
    quoly_set(0, &v->n);
}

// Lists -------------------------------------------------------------------------------------------------

// Read entries up to `closer`, which is in hand then; the first token is in hand. Declines (0) after an
// error.
static int read_entries(input_stream **stream, arr_value *v, char closer, name_node **cursor)
{
    for (;;) {
        quolynode **slot = &v->entries[v->filled];
        if (v->filled >= literal_limit) {
            error(err_list_too_long, token.text);
            return 0;
        }
        *slot = nullptr;
        quolynode *value = nullptr;
        own(&value);
        old_expre(stream, &value, cursor);
        disown();
        put_entry(v, &value);
        if (token.text[0] == closer) return 1;
        if (!expect_and_pass(',', err_bad_array_list, stream, cursor)) return 0;
    }
}

// The token behind `(` is in hand: [(1, 2, 3)]. v is an array to which entries may come.
static void read_column(input_stream **stream, arr_value *v, name_node **cursor)
{
    if (!read_entries(stream, v, ')', cursor)) {
        empty_value(v);
        return;
    }
    v->rows = v->filled;
    v->onedim = 1;
    scanner(stream, &token, cursor);
}

// The entries of v stand row by row: turn them.
static void rows_to_columns(arr_value *v, std::int32_t rows, std::int32_t cols)
{
    arr_value turned;
    open_value(&turned);
    if (begin_dense(&turned, rows, cols)) {
        for (std::int32_t row = 0; row < rows; ++row) {
            for (std::int32_t col = 0; col < cols; ++col) {
                turned.entries[row + col * rows] = v->entries[row * cols + col];
            }
        }
        turned.filled = v->filled;
        v->filled = 0;
        move_value(&turned, v);
    }
    close_value(&turned);
}

// The `[` of the first row is in hand: [[1, 2][3, 4]], a comma between the rows or none.
static void read_rows(input_stream **stream, arr_value *v, name_node **cursor)
{
    std::int32_t rows = 0;
    std::int32_t cols = 0;
    if (!begin_dense(v, 1, 1)) return;
    while (token.text[0] == '[') {
        const std::int32_t before = v->filled;
        scanner(stream, &token, cursor);
        if (!read_entries(stream, v, ']', cursor)) {
            empty_value(v);
            return;
        }
        if (rows > 0 && v->filled - before != cols) {
            fail(v, err_unequal_rows);
            return;
        }
        cols = v->filled - before;
        ++rows;
        scanner(stream, &token, cursor);
        if (token.text[0] == ',') scanner(stream, &token, cursor);
    }
    rows_to_columns(v, rows, cols);
}

// Sparse data -------------------------------------------------------------------------------------------

// A whole number in place: a row or a column. Declines (0) after error 251.
static int read_place(input_stream **stream, std::int32_t *place, std::int32_t limit, name_node **cursor)
{
    if (!read_index(stream, place, err_sparse_read_item, cursor)) return 0;
    *place += 1 - addresser;
    if (*place >= 1 && *place <= limit) return 1;
    error(err_bad_index, token.text);
    return 0;
}

// The next token of the data, which goes on over the line ends of the terminal too.
static void next_of_data(input_stream **stream, name_node **cursor)
{
    int passed;
    for (;;) {
        spec_scanner(stream, &token, cursor, &passed);
        if (!passed || *cursor || !is_line_end(*stream)) return;
        ++(*stream)->pos;
    }
}

// Read a value, its first token in hand. Under a modulus only a 0 that is written so is 0: what would vanish
// comes from another ring. Declines (0) after an error.
static int read_sparse_value(input_stream **stream, quolynode **value, name_node **cursor)
{
    const bool zero = token.text[0] == '0';
    own(value);
    if (modularmode && nomodpolyreadin) {
        quoly_readin(stream, value, cursor);
    } else {
        old_expre(stream, value, cursor);
    }
    disown();
    if (!modularmode || zero || !quoly_iszero(*value)) return 1;
    free_quoly(value);
    error(err_vanishing_modulus, token.text);
    return 0;
}

// Entry `col` of the row = *value, which is taken over.
static void put_sparse_value(colm **head, std::int32_t col, quolynode **value)
{
    colm **link = column_link(head, col);
    if (*link && (*link)->coord == col) free_colm(link);
    if (quoly_iszero(*value)) {
        free_quoly(value);
        return;
    }
    colm *node = newcolm(col, *value);
    node->next = *link;
    *link = node;
}

// Behind the row number: column, value, column, value up to the `]`; or up to a line end of the terminal, or
// the `[` of the next row. The token behind the row is in hand then. Declines (0) after an error.
static int read_sparse_row(input_stream **stream, arr_value *v, std::int32_t row, name_node **cursor)
{
    colm **head = head_of_row(v->sparse, row);
    while (token.text[0] == ',') {
        std::int32_t col;
        quolynode *value = nullptr;
        next_of_data(stream, cursor);
        if (!read_place(stream, &col, v->cols, cursor)) return 0;
        if (token.text[0] != ',') {
            error(err_need_comma, token.text);
            return 0;
        }
        next_of_data(stream, cursor);
        if (!read_sparse_value(stream, &value, cursor)) return 0;
        put_sparse_value(head, col, &value);
    }
    if (token.text[0] == '[') return 1;
    if (token.text[0] != ']' && (*cursor || !is_line_end(*stream))) {
        error(err_sparse_read_end, token.text);
        return 0;
    }
    if (token.text[0] == ';') ++(*stream)->pos;
    next_of_data(stream, cursor);
    return 1;
}

// The `[` of the first row is in hand: [[row, col, value, col, value] ..]. The `closer` is in hand then.
static void sparse_read(input_stream **stream, arr_value *v, char closer, name_node **cursor)
{
    bool more = true;
    begin_sparse(v, wanted_rows, wanted_cols);
    while (token.text[0] == '[') {
        std::int32_t row;
        scanner(stream, &token, cursor);
        if (!read_place(stream, &row, v->rows, cursor)) return;
        if (!read_sparse_row(stream, v, row, cursor)) return;
        more = token.text[0] == ',';
        if (more) next_of_data(stream, cursor);
    }
    if (more || token.text[0] != closer) error(err_sparse_read_bracket, token.text);
}

// `(` is in hand: a column, or where sparse data are wanted, those.
static void read_in_parens(input_stream **stream, arr_value *v, bool sparse, name_node **cursor)
{
    if (!begin_dense(v, 1, 1)) return;
    scanner(stream, &token, cursor);
    if (!sparse || token.text[0] != '[') {
        read_column(stream, v, cursor);
        return;
    }
    sparse_read(stream, v, ')', cursor);
    if (token.text[0] == ')') next_of_data(stream, cursor);
}

// Comprehensions ----------------------------------------------------------------------------------------

// What the body writes into.
struct comprehension {
    arr_value *v;
    colm **tail;  // of the row that is being made, sparse
    name_node *body;
    token_rec first;
};

// Read the head behind the `<` in hand. Declines (0) after an error.
static int read_head(input_stream **stream, for_loop *loop, name_node **cursor)
{
    int wrong = 0;
    scanner(stream, &token, cursor);
    set_up_for_loop(stream, loop, cursor);
    if (token.text[0] != '>') {
        wrong = err_need_close_angle;
    } else if (loop->sign < 0) {
        wrong = err_bad_range_step;
    } else if (loop->counter < addresser) {
        wrong = err_range_start_low;
    } else if (loop->stop < addresser) {
        wrong = err_range_stop_low;
    }
    if (wrong) {
        error(wrong, token.text);
        return 0;
    }
    scanner(stream, &token, cursor);
    return 1;
}

// Evaluate the body for the entry (row, col), from 0. Declines (0) after an error.
static int make_entry(input_stream **stream, comprehension *c, std::int64_t row, std::int64_t col)
{
    quolynode *value = nullptr;
    name_node *at = c->body;
    token = c->first;
    scanner(stream, &token, &at);
    own(&value);
    old_expre(stream, &value, &at);
    disown();
    if (token.text[0] != ']') {
        error(err_bad_body_end, token.text);
        free_quoly(&value);
        return 0;
    }
    if (!c->v->is_sparse) {
        quolynode **slot = &c->v->entries[row + col * c->v->rows];
        free_quoly(slot);
        *slot = value;
    } else if (quoly_iszero(value)) {
        free_quoly(&value);
    } else {
        *c->tail = newcolm(static_cast<std::int32_t>(col + 1), value);
        c->tail = &(*c->tail)->next;
    }
    return 1;
}

// One row of the result: the inner counter runs from its start again.
static int make_row(input_stream **stream, comprehension *c, std::int64_t row, const for_loop *inner)
{
    for_loop round = *inner;
    if (c->v->is_sparse) c->tail = head_of_row(c->v->sparse, static_cast<std::int32_t>(row + 1));
    round.counter -= round.step;
    for (advance_loop(&round); !loop_is_over(&round); advance_loop(&round)) {
        if (!make_entry(stream, c, row, round.counter - addresser)) return 0;
    }
    return 1;
}

// Make room for what the heads denote. Declines (0) after an error.
static int open_comprehension(arr_value *v, std::int64_t rows, std::int64_t cols)
{
    const std::int32_t r = static_cast<std::int32_t>(rows);
    const std::int32_t c = static_cast<std::int32_t>(cols);
    if (want_sparse) {
        begin_sparse(v, r, c);
        return 1;
    }
    if (!begin_dense(v, r, c)) return 0;
    v->filled = entry_count(v);
    std::memset(v->entries, 0, static_cast<std::size_t>(v->filled) * sizeof *v->entries);
    return 1;
}

// The `<` of the first head is in hand, in a stored list.
static void run_comprehension(input_stream **stream, arr_value *v, name_node **cursor)
{
    comprehension c = {v, nullptr, nullptr, {}};
    for_loop outer, inner;
    const bool sparse = want_sparse != 0;
    if (!read_head(stream, &outer, cursor)) return;
    const bool two = token.text[0] == '<';
    if (two && !read_head(stream, &inner, cursor)) return;
    if (!expect('[', err_need_body_bracket)) return;
    c.body = *cursor;
    c.first = token;
    want_sparse = sparse;
    const std::int64_t rows = outer.stop - addresser + 1;
    if (!open_comprehension(v, rows, two ? inner.stop - addresser + 1 : 1)) return;
    want_sparse = 0;  // the entries are scalars
    v->onedim = !two;
    for (; !loop_is_over(&outer); advance_loop(&outer)) {
        poll_interrupt();
        const std::int64_t row = outer.counter - addresser;
        if (two) {
            if (!make_row(stream, &c, row, &inner)) return;
            continue;
        }
        if (v->is_sparse) c.tail = head_of_row(v->sparse, static_cast<std::int32_t>(row + 1));
        if (!make_entry(stream, &c, row, 0)) return;
    }
    want_sparse = sparse;
}

// The first `<` was passed, and the token behind it is in hand.
static void read_comprehension(input_stream **stream, arr_value *v, name_node **cursor)
{
    list_reader reader = {stream, cursor, token, 1, 0};
    stored_expr stored;
    set_token(&token, "<");
    open_stored(&reader, obtain_sum, &stored);
    run_comprehension(stream, v, &stored.at);
    close_stored(&stored);
}

// Random arrays -----------------------------------------------------------------------------------------

// A sparse array of the wanted shape: an entry for every ten columns of a row, at least one, where chance
// puts it.
static void sparse_random(arr_value *v, int use_clock)
{
    begin_sparse(v, wanted_rows, wanted_cols);
    row_walk w = {v->sparse, 0, v->rows};
    while (colm **head = next_row(&w)) {
        poll_interrupt();
        for (std::int32_t k = v->cols / 10; k >= 0; --k) {
            const std::int32_t col = rand_integer() % v->cols + 1;
            colm **link = column_link(head, col);
            if (*link && (*link)->coord == col) continue;
            quolynode **value = sparse_zero_set(head, col);
            randomize(use_clock, value);
            purge_sparse(head, col);
        }
    }
}

// Rand or RRand is in hand: every entry of the wanted shape is random.
static void read_random(input_stream **stream, arr_value *v, name_node **cursor)
{
    const int use_clock = token_is(&token, "RRand");
    if (wanted_rows < 1) {
        fail(v, err_need_shape);
        return;
    }
    scanner(stream, &token, cursor);
    if (want_sparse) {
        sparse_random(v, use_clock);
        return;
    }
    if (!begin_dense(v, wanted_rows, wanted_cols)) return;
    while (v->filled < entry_count(v)) {
        quolynode *value = nullptr;
        randomize(use_clock, &value);
        put_entry(v, &value);
    }
}

// Literals ----------------------------------------------------------------------------------------------

static bool is_random_word()
{
    return token_is(&token, "Rand") || token_is(&token, "RRand");
}

void arr_literal(input_stream **stream, arr_value *v, name_node **cursor, bool angle)
{
    const std::int32_t sparse = want_sparse;
    if (angle) {
        read_comprehension(stream, v, cursor);
    } else if (token.text[0] == '(') {
        want_sparse = 0;
        read_in_parens(stream, v, sparse != 0, cursor);
    } else if (token.text[0] == '[' && sparse) {
        sparse_read(stream, v, ']', cursor);
    } else if (token.text[0] == '[') {
        read_rows(stream, v, cursor);
    } else if (is_random_word()) {
        read_random(stream, v, cursor);
    } else if (token.text[0] == ']' && sparse) {
        begin_sparse(v, wanted_rows, wanted_cols);
    } else {
        fail(v, err_bad_array_name);
        return;
    }
    want_sparse = sparse;
    if (token.text[0] != ']') {
        fail(v, err_need_close_bracket);
        return;
    }
    scanner(stream, &token, cursor);
}

}  // namespace kelmar
