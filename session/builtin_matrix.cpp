// session/builtin_matrix.cpp -- built-ins that need the algorithms of matrices: their arguments.
//
// The arguments are read, and what is wrong with them is told; then the built-in declines.
#include <cstdio>
#include "numbers/dispatch.h"
#include "quoly/owned.h"
#include "session/arr_expr.h"
#include "session/array_args.h"
#include "session/builtin_args.h"
#include "session/builtin_handlers.h"
#include "session/errors.h"
#include "session/expr.h"
#include "session/output.h"
#include "session/report.h"

namespace kelmar {

void not_implemented()
{
    std::fputs("not implemented\n", Output);
    restart_session();
}

// Forms ---------------------------------------------------------------------------------------------------

// `[` should be in hand: pass the name of an array that is to be made. Declines (0) after an error.
static int pass_new_array(input_stream **stream, name_node **cursor)
{
    if (!expect_and_pass('[', err_need_open_bracket, stream, cursor)) return 0;
    if (!is_lower(token.text[0])) {
        error(err_need_array_name, token.text);
        return 0;
    }
    scanner(stream, &token, cursor);
    return expect_and_pass(']', err_need_close_bracket, stream, cursor);
}

// Pass the `, [l] , [r] ..` behind an array, and the `)`. Declines (0) after an error.
static int pass_transformations(input_stream **stream, name_node **cursor)
{
    while (token.text[0] == ',') {
        scanner(stream, &token, cursor);
        if (!pass_new_array(stream, cursor)) return 0;
    }
    return expect_and_pass(')', err_bad_array_list, stream, cursor);
}

// `([a] [, [l]] [, [r]])`.
void builtin_matrix(input_stream **stream, quolynode **n, name_node **cursor)
{
    quoly_set(0, n);
    if (!read_command(stream, star_allowed, err_need_array_name, cursor)) return;
    if (pass_transformations(stream, cursor)) not_implemented();
}

// The same for an array that must be sparse.
void builtin_pseudet(input_stream **stream, quolynode **n, name_node **cursor)
{
    quoly_set(0, n);
    const array *a = read_command(stream, star_allowed, err_need_array_name, cursor);
    if (!a) return;
    if (!a->arr_sparse) {
        error(err_need_sparse_pseudo, a->arr_name.text);
        return;
    }
    if (pass_transformations(stream, cursor)) not_implemented();
}

// The same for an array that must be ordinary.
void builtin_fflu(input_stream **stream, quolynode **n, name_node **cursor)
{
    quoly_set(0, n);
    const array *a = read_command(stream, star_allowed, err_need_array_name, cursor);
    if (!a) return;
    if (a->arr_sparse) {
        error(err_sparse_refused, a->arr_name.text);
        return;
    }
    if (pass_transformations(stream, cursor)) not_implemented();
}

static bool is_square(const array *a)
{
    return a->arr_rows == a->arr_cols;
}

void builtin_chpoly(input_stream **stream, quolynode **n, name_node **cursor)
{
    quoly_set(0, n);
    const array *a = read_command(stream, star_allowed, err_need_array_name, cursor);
    if (!a) return;
    if (!is_square(a)) {
        error(err_chpoly_argument, a->arr_name.text);
        return;
    }
    close_argument(stream, cursor);
    not_implemented();
}

// `([a], d)`: a modulus for the diagonal.
void builtin_msmith(input_stream **stream, quolynode **n, name_node **cursor)
{
    quoly_set(0, n);
    if (!read_command(stream, star_allowed, err_need_array_name, cursor)) return;
    if (!pass_comma(stream, cursor, err_need_argument_comma)) return;
    read_argument_value(stream, n, cursor);
    if (pass_transformations(stream, cursor)) not_implemented();
}

void builtin_minors(input_stream **stream, quolynode **n, name_node **cursor)
{
    std::int32_t k;
    quoly_set(0, n);
    const array *a = read_command(stream, star_ignored, err_need_array_name, cursor);
    if (!a || !pass_comma(stream, cursor, err_need_argument_comma)) return;
    const std::int32_t least = a->arr_rows < a->arr_cols ? a->arr_rows : a->arr_cols;
    if (!read_whole(stream, cursor, &k, err_minors_number)) return;
    if (k < 1 || k > least) {
        error(err_minors_size, token.text);
        return;
    }
    close_argument(stream, cursor);
    not_implemented();
}

static constexpr std::int32_t smallest_mills = 8;  // rows; smaller ones are better served by Chpoly

static bool is_row_of_numbers(const colm *node)
{
    while (node && node->val->is_num) node = node->next;
    return !node;
}

static bool has_numbers_only(arr_value *v)
{
    if (!v->is_sparse) {
        if (!gather(v)) return true;
        for (std::int32_t k = 0; k < entry_count(v); ++k) {
            if (!entry_or_zero(v->entries[k])->is_num) return false;
        }
        return true;
    }
    row_walk w = {chain_of(v), 0, v->rows};
    while (colm **head = next_row(&w)) {
        if (!is_row_of_numbers(*head)) return false;
    }
    return true;
}

// What keeps the array from having its minimal polynomial found; 0: nothing.
static int mills_refusal(const array *a)
{
    arr_value v;
    if (!is_square(a)) return err_mills_square;
    if (a->arr_rows < smallest_mills) return err_mills_size;
    open_value(&v);
    refer_to_array(&v, a);
    const bool numbers = has_numbers_only(&v);
    close_value(&v);
    return !numbers ? err_mills_numbers : lintmode && !modularmode ? err_mills_ring : 0;
}

void builtin_minpoly(input_stream **stream, quolynode **n, name_node **cursor)
{
    std::int32_t k;
    quoly_set(0, n);
    const array *a = read_command(stream, star_ignored, err_need_array_name, cursor);
    if (!a) return;
    if (const int wrong = mills_refusal(a)) {
        error(wrong, a->arr_name.text);
        return;
    }
    if (!pass_comma(stream, cursor, err_need_argument_comma)) return;
    if (!read_whole(stream, cursor, &k, err_not_a_number)) return;
    if (token.text[0] == ',') {
        scanner(stream, &token, cursor);
        if (!read_whole(stream, cursor, &k, err_not_a_number)) return;
    }
    close_argument(stream, cursor);
    not_implemented();
}

// Determinants ----------------------------------------------------------------------------------------------

static constexpr int warn_det_factor = 1;  // rows of the table of warnings
static constexpr int warn_det_degree = 2;
static constexpr int warn_det_even_power = 4;
static constexpr int det_extras = 4;  // a factor, two degrees, a power

// A factor of the determinant. Declines (0) after an error.
static int check_factor(const quolynode *q)
{
    if (q->is_num || !q->den) return 1;
    if (is_constant(q->top) && is_constant(q->den)) {
        warning(warn_det_factor, "Det");
        return 1;
    }
    error(err_not_a_number, token.text);
    return 0;
}

static bool power_of_two(std::int32_t k)
{
    const std::int64_t size = k < 0 ? -std::int64_t{k} : k;
    return (size & (size - 1)) == 0;
}

// The power of the determinant that is known beforehand. Declines (0) after an error.
static int check_power(std::int32_t power)
{
    if (power >= -1 && power <= 1) {
        error(err_bad_det_power, token.text);
        return 0;
    }
    if (power % 2 == 0 && (!power_of_two(power) || (modularmode && modulus % 4 != 3))) {
        warning(warn_det_even_power, "Det");
    } else if (power == 2 && verbose) {
        std::fputs(" Warning. Setting power = 2 has no effect.\n", Output);
    }
    return 1;
}

// Read item k of the list behind the array. Declines (0) after an error.
static int read_extra(input_stream **stream, int k, name_node **cursor)
{
    std::int32_t whole = 0;
    if (k == 0) {
        quolynode *factor = nullptr;
        own(&factor);
        read_argument_value(stream, &factor, cursor);
        const int usable = check_factor(factor);
        disown();
        free_quoly(&factor);
        return usable;
    }
    if (!read_whole(stream, cursor, &whole, err_not_a_number)) return 0;
    if (k == det_extras - 1) return check_power(whole);
    if (whole < 0) warning(warn_det_degree, "Det");
    return 1;
}

// Read the list behind the array, and the `)`. Declines (0) after an error.
static int read_extras(input_stream **stream, name_node **cursor)
{
    for (int k = 0; token.text[0] == ','; ++k) {
        if (k == det_extras) {
            error(err_too_many_arguments, token.text);
            return 0;
        }
        scanner(stream, &token, cursor);
        if (!read_extra(stream, k, cursor)) return 0;
    }
    return expect_and_pass(')', err_need_close_paren, stream, cursor);
}

// `#` is in hand: `#([a]) = expression`. Declines (0) after an error.
static int read_comparison(input_stream **stream, arr_value *v, name_node **cursor)
{
    quolynode *right = nullptr;
    scanner(stream, &token, cursor);
    if (!expect_and_pass('(', err_need_paren_det, stream, cursor)) return 0;
    arr_expre(stream, v, cursor);
    if (v->is_sparse) {
        error(err_sparse_refused, token.text);
        return 0;
    }
    close_argument(stream, cursor);
    const char c = token.text[0];
    if (c != '=' && c != '<' && c != '>') {
        error(err_need_comparison, token.text);
        return 0;
    }
    scanner(stream, &token, cursor);
    old_expre(stream, &right, cursor);
    free_quoly(&right);
    return 1;
}

// The word is in hand: read what stands behind it. Declines (0) after an error.
static int read_determinant(input_stream **stream, arr_value *v, name_node **cursor)
{
    scanner(stream, &token, cursor);
    if (token.text[0] == '#') return read_comparison(stream, v, cursor);
    const bool list = token.text[0] == '(';
    if (list) {
        scanner(stream, &token, cursor);
        if (token.text[0] == '*') scanner(stream, &token, cursor);
        arr_expre(stream, v, cursor);
        if (!read_extras(stream, cursor)) return 0;
    } else {
        arr_fact(stream, v, cursor);
    }
    if (is_array(v)) return 1;
    error(err_need_array, token.text);
    return 0;
}

void builtin_det(input_stream **stream, quolynode **n, name_node **cursor)
{
    arr_value v;
    quoly_set(0, n);
    open_value(&v);
    if (read_determinant(stream, &v, cursor)) not_implemented();
    close_value(&v);
}

// With modular mode off; there is no other, so it is Det.
void builtin_detint(input_stream **stream, quolynode **n, name_node **cursor)
{
    std::int32_t saved;
    check_modular(&saved);
    builtin_det(stream, n, cursor);
    restore_modular(&saved);
}

void builtin_sdet(input_stream **stream, quolynode **n, name_node **cursor)
{
    std::int32_t primes = 0;
    quoly_set(0, n);
    if (!open_argument(stream, cursor, err_need_open_paren)) return;
    if (lintmode) {
        error(err_not_in_this_ring, token.text);
        return;
    }
    if (!read_whole(stream, cursor, &primes, err_not_a_number)) return;
    if (primes < 2) {
        error(err_too_few_primes, token.text);
        return;
    }
    if (!pass_comma(stream, cursor, err_need_comma)) return;
    const array *a = read_stored_array(stream, star_ignored, err_need_sparse_array, cursor);
    if (!a) return;
    if (!a->arr_sparse) {
        error(err_need_sparse_array, token.text);
        return;
    }
    not_implemented();
}

// `[a]` or `([a], limit)`.
void builtin_hamilton(input_stream **stream, quolynode **n, name_node **cursor)
{
    arr_value v;
    std::int32_t limit;
    quoly_set(0, n);
    scanner(stream, &token, cursor);
    const bool brackets = token.text[0] == '(';
    if (brackets) scanner(stream, &token, cursor);
    open_value(&v);
    arr_fact(stream, &v, cursor);
    if (!is_array(&v)) {
        error(err_need_array, token.text);
        close_value(&v);
        return;
    }
    if (brackets && token.text[0] == ',') {
        scanner(stream, &token, cursor);
        read_whole(stream, cursor, &limit, err_not_a_number);
    }
    if (brackets) close_argument(stream, cursor);
    not_implemented();
}

void builtin_none(input_stream **, quolynode **n, name_node **)
{
    quoly_set(0, n);
    not_implemented();
}

}  // namespace kelmar
