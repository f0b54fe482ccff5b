// session/builtin_parts.cpp -- built-ins that take a value apart: degrees, terms, variables.
#include "poly/coefs.h"
#include "poly/measure.h"
#include "quoly/derivative.h"
#include "quoly/mass.h"
#include "quoly/owned.h"
#include "session/builtin_args.h"
#include "session/builtin_handlers.h"
#include "session/factor.h"
#include "session/report.h"

namespace kelmar {

// *q = the 64-bit count, in the live view where it fits.
static void set_count(std::int64_t count, quolynode **q)
{
    quoly_set(count > INT32_MAX ? INT32_MAX : static_cast<std::int32_t>(count), q);
}

// Degrees ---------------------------------------------------------------------------------------------------

// The degree of q: of a fraction that of its numerator less that of its denominator.
template <std::int32_t (*degree)(const polynode *, std::int32_t)>
static std::int32_t generalized_degree(const quolynode *q, std::int32_t level)
{
    poly_room room;
    const std::int32_t top = degree(as_poly(q, &room), level);
    return q->is_num || !q->den ? top : top - degree(q->den, level);
}

// Behind the name: `(q)`, `(q, v)`, or a factor.
template <std::int32_t (*degree)(const polynode *, std::int32_t)>
static void read_degree(input_stream **stream, quolynode **n, name_node **cursor)
{
    std::int32_t level = 1;
    if (token.text[0] == '(') {
        scanner(stream, &token, cursor);
        read_argument_value(stream, n, cursor);
        if (token.text[0] == ',') {
            scanner(stream, &token, cursor);
            read_level(stream, cursor, &level, err_variable_range);
        }
        close_argument(stream, cursor);
    } else {
        old_fact(stream, n, cursor);
    }
    const std::int32_t d = generalized_degree<degree>(*n, level);
    quoly_set(d, n);
    if (d < 0) number_to_residue(*n);
}

void builtin_deg(input_stream **stream, quolynode **n, name_node **cursor)
{
    quoly_set(0, n);
    scanner(stream, &token, cursor);
    if (token.text[0] == '[') {
        read_array_size(stream, n, cursor);
    } else {
        read_degree<top_degree>(stream, n, cursor);
    }
}

void builtin_codeg(input_stream **stream, quolynode **n, name_node **cursor)
{
    quoly_set(0, n);
    scanner(stream, &token, cursor);
    if (token.text[0] == '[') {
        error(err_codeg_array, token.text);
    } else if (token.text[0] != '(') {
        error(err_need_open_paren, token.text);
    } else {
        read_degree<low_degree>(stream, n, cursor);
    }
}

void builtin_totdeg(input_stream **stream, quolynode **n, name_node **cursor)
{
    poly_room room;
    if (!standard_read(stream, n, cursor)) return;
    const polynode *p = polynomial_of(*n, &room, err_degree_denominator);
    if (p) set_count(total_degree(p), n);
}

void builtin_height(input_stream **stream, quolynode **n, name_node **cursor)
{
    poly_room room;
    if (standard_read(stream, n, cursor)) quoly_set(poly_height(as_poly(*n, &room)), n);
}

void builtin_level(input_stream **stream, quolynode **n, name_node **cursor)
{
    poly_room room;
    if (standard_read(stream, n, cursor)) quoly_set(poly_level(as_poly(*n, &room)), n);
}

void builtin_digits(input_stream **stream, quolynode **n, name_node **cursor)
{
    if (standard_read(stream, n, cursor)) quoly_set(quoly_max_digits(*n), n);
}

void builtin_vars(input_stream **stream, quolynode **n, name_node **cursor)
{
    if (!standard_read(stream, n, cursor)) return;
    char flags[variable_limit + 1] = {};
    if (!(*n)->is_num) {
        poly_vars((*n)->top, 1, flags);
        if ((*n)->den) poly_vars((*n)->den, 1, flags);
    }
    std::int32_t count = 0;
    for (const char flag : flags) count += flag != 0;
    quoly_set(count, n);
}

// Terms -----------------------------------------------------------------------------------------------------

void builtin_terms(input_stream **stream, quolynode **n, name_node **cursor)
{
    poly_room room;
    if (standard_read(stream, n, cursor)) set_count(f_numterms(as_poly(*n, &room)), n);
}

void builtin_dterms(input_stream **stream, quolynode **n, name_node **cursor)
{
    if (!standard_read(stream, n, cursor)) return;
    set_count(!(*n)->is_num && (*n)->den ? f_numterms((*n)->den) : 1, n);
}

// *n = its numerator, its denominator.
static void keep_numerator(quolynode **n)
{
    if ((*n)->is_num || !(*n)->den) return;
    free_poly(&(*n)->den);
    (*n)->is_rat = 0;
    polynum_to_quoly(n);
}

static void keep_denominator(quolynode **n)
{
    if ((*n)->is_num || !(*n)->den) {
        quoly_set(1, n);
        return;
    }
    polynode *den = (*n)->den;
    (*n)->den = nullptr;
    poly_to_quoly(&den, n);
}

void builtin_num(input_stream **stream, quolynode **n, name_node **cursor)
{
    if (standard_read(stream, n, cursor)) keep_numerator(n);
}

void builtin_den(input_stream **stream, quolynode **n, name_node **cursor)
{
    if (standard_read(stream, n, cursor)) keep_denominator(n);
}

// `(^q)`: the part of q; `(^q, r)`: 1 if it is that of r.
static void part_or_equal(input_stream **stream, quolynode **n, name_node **cursor,
                          void (*keep)(quolynode **))
{
    quoly_set(0, n);
    if (!open_argument(stream, cursor, err_need_open_paren)) return;
    read_argument_value(stream, n, cursor);
    keep(n);
    if (token.text[0] != ')') {
        quolynode *other = nullptr;
        own(&other);
        if (pass_comma(stream, cursor, err_need_comma)) {
            read_argument_value(stream, &other, cursor);
            keep(&other);
            quoly_set(quoly_equal(*n, other), n);
        }
        disown();
        if (other) free_quoly(&other);
    }
    close_argument(stream, cursor);
}

void builtin_numer(input_stream **stream, quolynode **n, name_node **cursor)
{
    part_or_equal(stream, n, cursor, keep_numerator);
}

void builtin_denom(input_stream **stream, quolynode **n, name_node **cursor)
{
    part_or_equal(stream, n, cursor, keep_denominator);
}

// Variables -------------------------------------------------------------------------------------------------

// The polynomial can be moved k levels outward.
static bool can_move_outward(const polynode *p, std::int32_t k)
{
    for (; k > 0 && !is_constant(p); --k, p = p->coef) {
        if (!is_wrapper(p)) return false;
    }
    return true;
}

static void move_outward(polynode **p, std::int32_t k)
{
    for (; k > 0 && !is_constant(*p); --k) {
        polynode *wrapper = *p;
        *p = wrapper->coef;
        give_node(wrapper);
    }
}

// Read `(q, k)`. False after an error.
static bool read_move(input_stream **stream, quolynode **n, name_node **cursor, std::int32_t *k)
{
    quoly_set(0, n);
    if (!open_argument(stream, cursor, err_need_open_paren)) return false;
    read_argument_value(stream, n, cursor);
    if (!pass_comma(stream, cursor, err_need_argument_comma)) return false;
    if (!read_whole(stream, cursor, k, err_variable_range)) return false;
    close_argument(stream, cursor);
    if (*k >= 0 && *k <= number_polys) return true;
    error(err_variable_range, token.text);
    return false;
}

void builtin_lower(input_stream **stream, quolynode **n, name_node **cursor)
{
    std::int32_t k = 0;
    if (!read_move(stream, n, cursor, &k) || (*n)->is_num) return;
    const std::int32_t top = depth_below((*n)->top);
    const std::int32_t den = (*n)->den ? depth_below((*n)->den) : 0;
    if ((top > den ? top : den) + k > number_polys) {
        error(err_cannot_lower, token.text);
        return;
    }
    add_pad(&(*n)->top, k);
    if ((*n)->den) add_pad(&(*n)->den, k);
}

void builtin_raise(input_stream **stream, quolynode **n, name_node **cursor)
{
    std::int32_t k = 0;
    if (!read_move(stream, n, cursor, &k) || (*n)->is_num) return;
    if (!can_move_outward((*n)->top, k) || ((*n)->den && !can_move_outward((*n)->den, k))) {
        error(err_cannot_raise, token.text);
        return;
    }
    move_outward(&(*n)->top, k);
    if ((*n)->den) move_outward(&(*n)->den, k);
}

void builtin_var(input_stream **stream, quolynode **n, name_node **cursor)
{
    std::int32_t k = 0;
    quoly_set(0, n);
    if (!open_argument(stream, cursor, err_need_open_paren)) return;
    if (!read_whole(stream, cursor, &k, err_not_a_number)) return;
    close_argument(stream, cursor);
    if (k < 1 || k > number_polys) {
        error(err_no_such_variable, token.text);
        return;
    }
    quoly_variable(k, n);
}

void builtin_deriv(input_stream **stream, quolynode **n, name_node **cursor)
{
    std::int32_t level = 1, order = 0;
    quoly_set(0, n);
    if (!open_argument(stream, cursor, err_need_open_paren)) return;
    read_argument_value(stream, n, cursor);
    if (!pass_comma(stream, cursor, err_need_argument_comma)) return;
    if (!read_level(stream, cursor, &level, err_variable_range)) return;
    if (!pass_comma(stream, cursor, err_need_argument_comma)) return;
    if (!read_whole(stream, cursor, &order, err_bad_exponent)) return;
    close_argument(stream, cursor);
    if (order < 0) {
        error(err_bad_exponent, token.text);
        return;
    }
    differentiate(n, level, order);
}

}  // namespace kelmar
