// session/builtin_lists.cpp -- built-ins that take an array as a list of values.
//
// Sets are sparse arrays of one column whose elements rise; rows without an entry are no elements. Two of
// them are merged in one pass, and Spsort brings values into that order. It puts monomials first, by their
// exponents from the outermost variable inward, and numbers behind them by their size.
#include <algorithm>
#include <cstdlib>
#include "matrix/kept_room.h"
#include "matrix/sparse_ops.h"
#include "matrix/sparse_tests.h"
#include "matrix/store.h"
#include "numbers/compare.h"
#include "numbers/heap.h"
#include "poly/variables.h"
#include "quoly/add.h"
#include "quoly/mul.h"
#include "quoly/owned.h"
#include "quoly/power.h"
#include "quoly/rational.h"
#include "session/arr_access.h"
#include "session/arr_system.h"
#include "session/arr_value.h"
#include "session/array_args.h"
#include "session/builtin_args.h"
#include "session/builtin_handlers.h"
#include "session/report.h"

namespace kelmar {

// Order -----------------------------------------------------------------------------------------------------

static int sign_of(bool less, bool greater)
{
    return less ? -1 : greater;
}

static int number_order(const number *a, const number *b)
{
    return sign_of(bigger(b, a), bigger(a, b));
}

// -1, 0 or 1: term by term from the highest, by exponent, then by coefficient.
static int poly_order(const polynode *a, const polynode *b)
{
    check_stack();
    for (; a && b; a = a->next, b = b->next) {
        if (a->isnum && b->isnum) {
            const int order = number_order(a->num, b->num);
            if (order) return order;
            continue;
        }
        if (a->exp != b->exp) return sign_of(a->exp < b->exp, true);
        if (a->isnum || b->isnum) return a->isnum ? -1 : 1;
        const int order = poly_order(a->coef, b->coef);
        if (order) return order;
    }
    return sign_of(!a && b, a && !b);
}

// -1, 0 or 1 as a comes before b, equals it, or comes behind it.
static int mon_order(const quolynode *a, const quolynode *b)
{
    poly_room room_a, room_b;
    const bool a_number = a->is_num || is_rational(a), b_number = b->is_num || is_rational(b);
    if (a_number != b_number) return a_number ? 1 : -1;
    if (a_number) return a->is_num && b->is_num ? number_order(a->num, b->num) : compare_rats(a, b);
    const int order = poly_order(as_poly(a, &room_a), as_poly(b, &room_b));
    if (order || (!a->den && !b->den)) return order;
    if (!a->den || !b->den) return a->den ? 1 : -1;
    return poly_order(a->den, b->den);
}

// Sets -------------------------------------------------------------------------------------------------

enum set_operation { set_merge, set_union, set_common };

// The elements of a list, one after the other.
struct element_walk {
    row_walk rows;
    const quolynode *element;  // null behind the last
};

static void advance(element_walk *w)
{
    w->element = nullptr;
    while (colm **head = next_row(&w->rows)) {
        if (!*head) continue;
        w->element = (*head)->val;
        return;
    }
}

// Where the result grows.
struct element_list {
    row_walk rows;
    const quolynode *last;  // the element appended last
    std::int32_t count;
};

static void append_element(element_list *list, const quolynode *q, set_operation op)
{
    quolynode *copy = nullptr;
    if (op != set_merge && list->last && mon_order(list->last, q) == 0) return;
    quoly_assign(q, &copy);
    colm **head = next_row(&list->rows);
    *head = newcolm(1, copy);
    list->last = copy;
    ++list->count;
}

static void merge_lists(element_walk *a, element_walk *b, element_list *list, set_operation op)
{
    while (a->element || b->element) {
        poll_interrupt();
        const int order = !a->element ? 1 : !b->element ? -1 : mon_order(a->element, b->element);
        if (op != set_common || order == 0) {
            append_element(list, order > 0 ? b->element : a->element, op);
        }
        if (order == 0 && op == set_merge) append_element(list, b->element, op);
        if (order <= 0) advance(a);
        if (order >= 0) advance(b);
    }
}

// v = the merged list of the two, whose rows are numbered from 1 without gaps.
static void combine_lists(const array *a, const array *b, arr_value *v, set_operation op)
{
    arr_value whole;
    const std::int64_t most = sparse_entries(a->arr_sparse, a->arr_rows) +
                              sparse_entries(b->arr_sparse, b->arr_rows);
    open_value(&whole);
    begin_sparse(&whole, most > 0 ? static_cast<std::int32_t>(most) : 1, 1);
    element_walk left = {{a->arr_sparse, 0, a->arr_rows}, nullptr};
    element_walk right = {{b->arr_sparse, 0, b->arr_rows}, nullptr};
    element_list list = {{whole.sparse, 0, whole.rows}, nullptr, 0};
    advance(&left);
    advance(&right);
    merge_lists(&left, &right, &list, op);
    begin_sparse(v, list.count > 0 ? list.count : 1, 1);
    row_walk from = {whole.sparse, 0, list.count};
    row_walk to = {v->sparse, 0, list.count};
    while (colm **head = next_row(&from)) {
        *next_row(&to) = *head;
        *head = nullptr;
    }
    v->onedim = 1;
    close_value(&whole);
}

// The list in hand must be a sparse array of one column.
static const array *as_list(const array *a)
{
    if (!a) return nullptr;
    if (!a->arr_sparse) {
        error(err_need_sparse_array, a->arr_name.text);
        return nullptr;
    }
    if (a->arr_cols != 1) {
        error(err_sparse_section, a->arr_name.text);
        return nullptr;
    }
    return a;
}

// Behind the name: `([a], [b])`.
template <set_operation op> static void set_built_in(input_stream **stream, quolynode **n, name_node **cursor)
{
    arr_value v;
    quoly_set(0, n);
    const array *a = as_list(read_command(stream, star_ignored, err_sparse_section, cursor));
    if (!a || !pass_comma(stream, cursor, err_need_argument_comma)) return;
    const std::int64_t stamp = a->arr_time;
    const array *b = as_list(read_stored_array(stream, star_ignored, err_sparse_section, cursor));
    if (!b) return;
    close_argument(stream, cursor);
    if (a->arr_time != stamp || !a->arr_sparse) {
        error(err_no_such_array, "[");
        return;
    }
    open_value(&v);
    combine_lists(a, b, &v, op);
    fill_syst_array(&v);
    close_value(&v);
}

void builtin_merge(input_stream **stream, quolynode **n, name_node **cursor)
{
    set_built_in<set_merge>(stream, n, cursor);
}

void builtin_union(input_stream **stream, quolynode **n, name_node **cursor)
{
    set_built_in<set_union>(stream, n, cursor);
}

void builtin_intersect(input_stream **stream, quolynode **n, name_node **cursor)
{
    set_built_in<set_common>(stream, n, cursor);
}

// Sorted rows -----------------------------------------------------------------------------------------------

// How rows are told apart.
struct row_order {
    std::int32_t first, last;  // the columns that count, from 1
    const quolynode *zero;     // stands where nothing is stored
};

static const colm *first_that_counts(const colm *row, const row_order *by)
{
    while (row && row->coord < by->first) row = row->next;
    return row && row->coord <= by->last ? row : nullptr;
}

static const colm *next_that_counts(const colm *node, const row_order *by)
{
    return node->next && node->next->coord <= by->last ? node->next : nullptr;
}

// -1, 0 or 1, by the first column in which the rows differ.
static int order_of_rows(const colm *a, const colm *b, const row_order *by)
{
    a = first_that_counts(a, by);
    b = first_that_counts(b, by);
    while (a || b) {
        const bool in_a = a && (!b || a->coord <= b->coord);
        const bool in_b = b && (!a || b->coord <= a->coord);
        const int order = mon_order(in_a ? a->val : by->zero, in_b ? b->val : by->zero);
        if (order) return order;
        if (in_a) a = next_that_counts(a, by);
        if (in_b) b = next_that_counts(b, by);
    }
    return 0;
}

// to = the rows of from, of which two runs that rise stand side by side, in one.
static void merge_rows(colm *const *from, std::int64_t middle, std::int64_t end, colm **to,
                       const row_order *by)
{
    std::int64_t left = 0, right = middle;
    for (std::int64_t k = 0; k < end; ++k) {
        const bool take_left = left < middle &&
                               (right == end || order_of_rows(from[left], from[right], by) <= 0);
        to[k] = from[take_left ? left++ : right++];
    }
}

// Sort the table of rows; equal ones keep their order. spare is as large. Return the sorted one of both.
static colm **sort_rows(colm **table, colm **spare, std::int64_t count, const row_order *by)
{
    for (std::int64_t run = 1; run < count; run *= 2) {
        for (std::int64_t at = 0; at < count; at += 2 * run) {
            const std::int64_t rest = count - at;
            merge_rows(table + at, std::min(run, rest), std::min(2 * run, rest), spare + at, by);
        }
        std::swap(table, spare);
    }
    return table;
}

// default empty; kept from call to call; room_for_rows; reset: never
static kept_room sort_room = {nullptr, 0};

// Two tables of `count` rows, one behind the other.
static colm **room_for_rows(std::int64_t count)
{
    const std::size_t bytes = 2 * sizeof(colm *) * static_cast<std::size_t>(count);
    if (sort_room.bytes < bytes) {
        void *const fresh = heap_record(bytes);
        std::free(sort_room.start);
        sort_room = {fresh, bytes};
    }
    return static_cast<colm **>(sort_room.start);
}

// Sort the rows of the sparse array. They stay where they are until the order is known.
static void sort_array(const array *a, row_order *by)
{
    quolynode *zero = nullptr;
    const std::int64_t count = a->arr_rows;
    colm **const table = room_for_rows(count);
    quoly_set(0, &zero);
    own(&zero);
    by->zero = zero;
    row_walk from = {a->arr_sparse, 0, a->arr_rows};
    for (std::int64_t k = 0; k < count; ++k) table[k] = *next_row(&from);
    colm **const sorted = sort_rows(table, table + count, count, by);
    row_walk to = {a->arr_sparse, 0, a->arr_rows};
    for (std::int64_t k = 0; k < count; ++k) *next_row(&to) = sorted[k];
    ++array_moves;
    disown();
    free_quoly(&zero);
}

// Behind the array: `[, first [, last]]`, columns, from 1. Declines (0) after an error.
static int read_sort_columns(input_stream **stream, const array *a, row_order *by, name_node **cursor)
{
    *by = {1, a->arr_cols, nullptr};
    std::int32_t *const ends[] = {&by->first, &by->last};
    for (int k = 0; k < 2 && token.text[0] == ','; ++k) {
        scanner(stream, &token, cursor);
        if (!read_index(stream, ends[k], err_sort_column_kind, cursor)) return 0;
        *ends[k] += 1 - addresser;
    }
    const int wrong = by->first < 1 || by->first > a->arr_cols         ? err_sort_first_column
                      : by->last < by->first || by->last > a->arr_cols ? err_sort_not_sparse
                                                                       : 0;
    if (wrong) error(wrong, token.text);
    return !wrong;
}

// `[s]` or `([s] [, first [, last]])`.
void builtin_spsort(input_stream **stream, quolynode **n, name_node **cursor)
{
    row_order by;
    quoly_set(0, n);
    scanner(stream, &token, cursor);
    const bool brackets = token.text[0] == '(';
    if (brackets) scanner(stream, &token, cursor);
    const array *a = read_stored_array(stream, star_ignored, err_sort_not_sparse, cursor);
    if (!a) return;
    if (!a->arr_sparse) {
        error(err_sort_not_sparse, a->arr_name.text);
        return;
    }
    const auto stamp = a->arr_time;
    by = {1, a->arr_cols, nullptr};
    if (brackets && !read_sort_columns(stream, a, &by, cursor)) return;
    if (brackets) close_argument(stream, cursor);
    if (a->arr_time != stamp || !a->arr_sparse) {
        error(err_no_such_array, "[");  // a column number has cancelled it
        return;
    }
    sort_array(a, &by);
}

// Polynomials from coefficients ---------------------------------------------------------------------------

// *q = *q times x^k.
static void shift_up(quolynode **q, std::int32_t k)
{
    quolynode *power = nullptr;
    own(&power);
    quoly_variable(1, &power);
    raise_to_power(&power, k);
    fast_quoly_mult(q, power);
    disown();
    free_quoly(&power);
}

// *q = the sum of table[k] x^k over k < count: the upper half, shifted, and the lower half. *q is announced.
static void sum_of_powers(quolynode **table, std::int32_t count, quolynode **q)
{
    if (count == 1) {
        quoly_assign(entry_or_zero(table[0]), q);
        return;
    }
    const std::int32_t half = count / 2;
    quolynode *low = nullptr;
    own(&low);
    sum_of_powers(table + half, count - half, q);
    sum_of_powers(table, half, &low);
    if (!quoly_iszero(*q)) shift_up(q, half);
    better_quoly_add(q, low);
    disown();
    free_quoly(&low);
}

// *q = the polynomial whose coefficients from the lowest on stand in the row or column v.
static void list_to_poly(arr_value *v, quolynode **q)
{
    if (v->is_sparse ? !densify(v) : !gather(v)) return;
    std::int32_t count = entry_count(v);
    while (count > 1 && quoly_iszero(entry_or_zero(v->entries[count - 1]))) --count;
    if (count > 1 && number_polys == 0) {
        error(err_no_such_variable, token.text);
        return;
    }
    sum_of_powers(v->entries, count, q);
}

void builtin_topoly(input_stream **stream, quolynode **n, name_node **cursor)
{
    arr_value v;
    quoly_set(0, n);
    const array *a = read_one_array(stream, cursor);
    if (!a) return;
    if (a->arr_rows > 1 && a->arr_cols > 1) {
        error(err_topoly_argument, a->arr_name.text);
        return;
    }
    open_value(&v);
    refer_to_array(&v, a);
    list_to_poly(&v, n);
    close_value(&v);
}

}  // namespace kelmar
