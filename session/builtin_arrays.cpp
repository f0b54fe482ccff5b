// session/builtin_arrays.cpp -- built-ins that the storage of arrays answers by itself.
//
// What changes the entries of an array computes the new ones first, so that an error in the middle leaves the
// array as it was; what only moves entries about does so in place.
#include "gcd/square_free.h"
#include "matrix/sparse_order.h"
#include "matrix/sparse_tests.h"
#include "matrix/store.h"
#include "poly/mul_work.h"
#include "poly/variables.h"
#include "quoly/add.h"
#include "quoly/mul.h"
#include "quoly/owned.h"
#include "session/arr_access.h"
#include "session/arr_assign.h"
#include "session/arr_expr.h"
#include "session/arr_ops.h"
#include "session/arr_statement.h"
#include "session/arr_target.h"
#include "session/array_args.h"
#include "session/builtin_args.h"
#include "session/builtin_handlers.h"
#include "session/expr.h"
#include "session/report.h"

namespace kelmar {

// Sizes -----------------------------------------------------------------------------------------------------

static constexpr int half_of_count = 30;  // bits: a count has two halves that are machine words

// *n = a count, which may be the size of a sparse array.
static void set_count(std::int64_t count, quolynode **n)
{
    quolynode *low = nullptr;
    if (count <= INT32_MAX) {
        quoly_set(static_cast<std::int32_t>(count), n);
        return;
    }
    quoly_set(1 << half_of_count, &low);
    quoly_set(static_cast<std::int32_t>(count >> half_of_count), n);
    fast_quoly_mult(n, low);
    quoly_set(static_cast<std::int32_t>(count & ((1 << half_of_count) - 1)), &low);
    better_quoly_add(n, low);
    free_quoly(&low);
}

// `[` is in hand. The array whose name it opens, with the token behind its `]` in hand; null after an error.
static array *read_array_name(input_stream **stream, name_node **cursor)
{
    scanner(stream, &token, cursor);
    token_rec name = token;
    array *a = is_lower(name.text[0]) ? find_array_named(&name) : nullptr;
    if (!a || is_lost_parameter(a)) {
        error(a ? err_lost_array_parameter : err_no_such_array, name.text);
        return nullptr;
    }
    scanner(stream, &token, cursor);
    if (!expect_and_pass(']', err_need_close_bracket_cols, stream, cursor)) return nullptr;
    return a;
}

void read_array_size(input_stream **stream, quolynode **n, name_node **cursor)
{
    const array *a = read_array_name(stream, cursor);
    if (a) set_count(a->arr_size, n);
}

void builtin_cols(input_stream **stream, quolynode **n, name_node **cursor)
{
    quoly_set(0, n);
    scanner(stream, &token, cursor);
    if (!expect('[', err_need_open_bracket_cols)) return;
    const array *a = read_array_name(stream, cursor);
    if (a) quoly_set(a->arr_cols, n);
}

// Questions --------------------------------------------------------------------------------------------

static bool all_zero(arr_value *v)
{
    if (v->is_sparse) {
        std::int32_t empty = 1;
        sparse_iszero(chain_of(v), v->rows, &empty);
        return empty != 0;
    }
    if (!gather(v)) return false;
    const std::int32_t count = entry_count(v);
    for (std::int32_t k = 0; k < count; ++k) {
        if (v->entries[k] && !quoly_iszero(v->entries[k])) return false;
    }
    return true;
}

void builtin_iszero(input_stream **stream, quolynode **n, name_node **cursor)
{
    arr_value v;
    quoly_set(0, n);
    scanner(stream, &token, cursor);
    open_value(&v);
    arr_fact(stream, &v, cursor);
    if (is_array(&v)) {
        quoly_set(all_zero(&v), n);
    } else {
        error(err_iszero_array, token.text);
    }
    close_value(&v);
}

// The place, from 1, of the first entry that equals q; 0 when there is none.
static std::int64_t place_in_slots(const array *a, const quolynode *q)
{
    for (std::int64_t k = 0; k < a->arr_size; ++k) {
        const quolynode *entry = *store_slot(static_cast<std::int32_t>(a->arr_first + k));
        if (quoly_equal(entry_or_zero(entry), q)) return k + 1;
    }
    return 0;
}

// The same for a stored entry of a sparse array: in each row the first one counts.
static std::int64_t place_in_rows(const array *a, const quolynode *q)
{
    std::int64_t place = 0;
    row_walk w = {a->arr_sparse, 0, a->arr_rows};
    while (colm **head = next_row(&w)) {
        poll_interrupt();
        for (const colm *node = *head; node; node = node->next) {
            if (!quoly_equal(node->val, q)) continue;
            const std::int64_t k = w.row + std::int64_t{node->coord - 1} * a->arr_rows;
            if (place == 0 || k < place) place = k;
            break;
        }
    }
    return place;
}

// The place of the first position of a sparse array in which nothing is stored: that is the first row whose
// leading columns are not all there up to the smallest such column.
static std::int64_t place_of_gap(const array *a)
{
    std::int64_t place = 0;
    row_walk w = {a->arr_sparse, 0, a->arr_rows};
    while (colm **head = next_row(&w)) {
        std::int32_t col = 1;
        for (const colm *node = *head; node && node->coord == col; node = node->next) ++col;
        if (col > a->arr_cols) continue;
        const std::int64_t k = w.row + std::int64_t{col - 1} * a->arr_rows;
        if (place == 0 || k < place) place = k;
    }
    return place;
}

static std::int64_t place_of(const array *a, const quolynode *q)
{
    if (!a->arr_sparse) return place_in_slots(a, q);
    return quoly_iszero(q) ? place_of_gap(a) : place_in_rows(a, q);
}

// Behind `([a]`: read `, q)` into *q, which is announced. Declines (0) after an error, or when the argument
// has cancelled the array.
static int read_scalar_beside(input_stream **stream, const array *a, quolynode **q, name_node **cursor)
{
    const std::int64_t stamp = a->arr_time;
    if (!expect_and_pass(',', err_bad_array_list, stream, cursor)) return 0;
    read_argument_value(stream, q, cursor);
    close_argument(stream, cursor);
    if (a->arr_time == stamp) return 1;
    error(err_no_such_array, "[");
    return 0;
}

void builtin_locate(input_stream **stream, quolynode **n, name_node **cursor)
{
    quolynode *q = nullptr;
    quoly_set(0, n);
    const array *a = read_command(stream, star_ignored, err_sparse_section, cursor);
    if (!a) return;
    own(&q);
    if (read_scalar_beside(stream, a, &q, cursor)) set_count(place_of(a, q), n);
    disown();
    free_quoly(&q);
}

// Changes of entries --------------------------------------------------------------------------------------

// *a = *a * q.
static void scale_array(array *a, const quolynode *q)
{
    arr_value v, factor;
    array_target t = {};
    t.slot = -1;
    t.a = a;
    open_value(&v);
    open_value(&factor);
    refer_to_array(&v, a);
    quoly_assign(q, &factor.n);
    combine_values(&v, &factor, '*');
    assign_whole(&t, &v);
    close_value(&factor);
    close_value(&v);
}

void builtin_scale(input_stream **stream, quolynode **n, name_node **cursor)
{
    quolynode *q = nullptr;
    quoly_set(0, n);
    array *a = read_command(stream, star_allowed, err_need_array_name, cursor);
    if (!a) return;
    own(&q);
    if (read_scalar_beside(stream, a, &q, cursor)) scale_array(a, q);
    disown();
    free_quoly(&q);
}

// Exchanges --------------------------------------------------------------------------------------------

// `, k` is read: a row or column of `count`, from 0.
static int read_line(input_stream **stream, std::int32_t *k, std::int32_t count, name_node **cursor)
{
    if (!pass_comma(stream, cursor, err_need_argument_comma)) return 0;
    if (!read_index(stream, k, err_not_a_number, cursor)) return 0;
    *k -= addresser;
    if (*k >= 0 && *k < count) return 1;
    error(err_bad_index, token.text);
    return 0;
}

// Behind the name: `([a], i, j)`.
static void switch_lines(input_stream **stream, quolynode **n, bool rows, name_node **cursor)
{
    std::int32_t i, j;
    quoly_set(0, n);
    array *a = read_command(stream, star_allowed, err_sparse_section, cursor);
    if (!a) return;
    const std::int64_t stamp = a->arr_time;
    const std::int32_t count = rows ? a->arr_rows : a->arr_cols;
    if (!read_line(stream, &i, count, cursor) || !read_line(stream, &j, count, cursor)) return;
    close_argument(stream, cursor);
    if (a->arr_time != stamp || count != (rows ? a->arr_rows : a->arr_cols)) {
        error(err_no_such_array, "[");  // an index has cancelled it
    } else if (!a->arr_sparse) {
        switchrow_col(rows ? ']' : '\\', i, j, a);
    } else if (rows) {
        sp_switchrow(a->arr_sparse, i + 1, j + 1);
    } else {
        sp_switchcol(a->arr_sparse, i + 1, j + 1, a->arr_rows, 1);
    }
    ++array_moves;
}

void builtin_switchrow(input_stream **stream, quolynode **n, name_node **cursor)
{
    switch_lines(stream, n, true, cursor);
}

void builtin_switchcol(input_stream **stream, quolynode **n, name_node **cursor)
{
    switch_lines(stream, n, false, cursor);
}

void builtin_reverse(input_stream **stream, quolynode **n, name_node **cursor)
{
    quoly_set(0, n);
    array *a = read_one_array(stream, cursor);
    if (!a) return;
    if (a->arr_sparse) {
        reverse_sparse(a->arr_sparse, a->arr_rows);
    } else {
        reverse_array(a);
    }
    ++array_moves;
}

void builtin_strans(input_stream **stream, quolynode **n, name_node **cursor)
{
    quoly_set(0, n);
    array *a = read_one_array(stream, cursor);
    if (!a) return;
    if (!a->arr_sparse) {
        error(err_need_sparse_array, token.text);
        return;
    }
    trans_sparse(&a->arr_sparse, a->arr_rows, a->arr_cols);
    const std::int32_t rows = a->arr_rows;
    a->arr_rows = a->arr_cols;
    a->arr_cols = rows;
    a->arr_onedim = a->arr_cols == 1;
    share_shape(a);
    ++array_moves;
}

// Names ------------------------------------------------------------------------------------------------

// *name = the name in hand, whose letters are tokens of their own between quotes of a stored list. Declines
// (0) after error 40, or 125 for a polynomial variable.
static int read_joined_name(input_stream **stream, token_rec *name, name_node **cursor)
{
    std::size_t length = 0;
    *name = {};
    name->index = -1;
    while (is_letter(token.text[0]) || is_digit(token.text[0]) || token.text[0] == '_') {
        const std::size_t more = std::strlen(token.text);
        if (length + more > static_cast<std::size_t>(namelength)) break;
        std::memcpy(name->text + length, token.text, more);
        length += more;
        scanner(stream, &token, cursor);
    }
    if (!is_lower(name->text[0])) {
        error(err_bad_array_name, token.text);
        return 0;
    }
    if (!its_a_polyname(name->text)) return 1;
    error(err_name_is_poly, name->text);
    return 0;
}

// [a] := '[b]', the word Rename in hand.
void builtin_rename(input_stream **stream, quolynode **n, name_node **cursor)
{
    token_rec old, fresh;
    quoly_set(0, n);
    scanner(stream, &token, cursor);
    if (!expect_and_pass('[', err_need_open_bracket, stream, cursor) ||
        !read_joined_name(stream, &old, cursor) ||
        !expect_and_pass(']', err_rename_close_bracket, stream, cursor) ||
        !expect_and_pass(':', err_need_colon, stream, cursor) ||
        !expect_and_pass('=', err_need_equals, stream, cursor) ||
        !expect_and_pass('\'', err_rename_quote, stream, cursor) ||
        !expect_and_pass('[', err_rename_open_bracket, stream, cursor) ||
        !read_joined_name(stream, &fresh, cursor) ||
        !expect_and_pass(']', err_rename_close_bracket, stream, cursor) ||
        !expect_and_pass('\'', err_rename_quote, stream, cursor)) {
        return;
    }
    array *a = known_array(&old);
    if (!a) return;
    const array_name name = array_name_of(&fresh);
    rename_array(a, &name);
}

// Square-free parts -----------------------------------------------------------------------------------------

// Put the parts of the list into the new array, one a row with its multiplicity.
static void fill_parts(array *a, polynode **list, std::int32_t count)
{
    for (std::int32_t k = 0; k < count; ++k) {
        polynode *node = *list;
        *list = node->next;
        polynode *part = node->coef;
        const std::int32_t multiplicity = node->exp;
        give_node(node);
        const std::int32_t slot = static_cast<std::int32_t>(a->arr_first) + k;
        poly_to_quoly(&part, store_slot(slot));
        quoly_set(multiplicity, store_slot(slot + count));
    }
}

[[gnu::noinline]] void square_free_to_array(quolynode **n, token_rec *name)
{
    poly_room room;
    std::int32_t count = 0;
    product_work *work = open_work(__builtin_frame_address(0));
    work->parts[0] = copy_poly(as_poly(*n, &room));
    if (!is_constant(work->parts[0])) {
        total_sq_free(&work->parts[0], &work->parts[1], &count, 1, polynames);
    }
    polynode *list = work->parts[1];
    work->parts[1] = nullptr;
    close_work(work);
    quoly_set(count, n);
    if (count == 0) return;
    array *a = nullptr;
    const array_name as_array = array_name_of(name);
    insertarr(&as_array, count, 2, 0, &a);
    if (a) fill_parts(a, &list, count);
    if (list) free_poly(&list);
}

// Statements as built-ins ------------------------------------------------------------------------------

// Diag and Trans begin array expressions, and read on from their word.
void builtin_diag(input_stream **stream, quolynode **n, name_node **cursor)
{
    arr_parse(stream, n, cursor, '~');
}

void builtin_trans(input_stream **stream, quolynode **n, name_node **cursor)
{
    arr_parse(stream, n, cursor, '"');
}

}  // namespace kelmar
