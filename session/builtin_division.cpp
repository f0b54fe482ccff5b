// session/builtin_division.cpp -- built-ins of divisibility: exact division, gcds, contents, factors, roots.
//
// Factoring is still to come: its built-ins read their arguments, tell what is wrong with them, and decline.
#include <utility>
#include "gcd/call_content.h"
#include "gcd/content.h"
#include "gcd/entries.h"
#include "gcd/extended.h"
#include "gcd/polygcd.h"
#include "gcd/square_free.h"
#include "numbers/dispatch.h"
#include "numbers/long_gcd.h"
#include "poly/div.h"
#include "poly/mul_work.h"
#include "quoly/owned.h"
#include "quoly/pth_root.h"
#include "quoly/add.h"
#include "quoly/divide.h"
#include "quoly/fraction.h"
#include "quoly/mul.h"
#include "session/builtin_args.h"
#include "session/builtin_handlers.h"
#include "session/expr.h"
#include "session/report.h"

namespace kelmar {

// Divisibility ----------------------------------------------------------------------------------------------

// r divides q, numbers: where numbers divide each other, always.
static bool number_divides(const quolynode *q, const quolynode *r)
{
    if (ground_field()) return true;
    quolynode *rest = nullptr;
    quoly_mod_or_div(q, r, &rest, '|');
    const bool divides = quoly_iszero(rest);
    free_quoly(&rest);
    return divides;
}

// r divides q as polynomials in the variable of the level, over the quotients of the others.
[[gnu::noinline]] static bool divides_in(const quolynode *q, const quolynode *r, std::int32_t level)
{
    poly_room q_room, r_room;
    product_work *work = open_work(__builtin_frame_address(0));
    polynode **const n = &work->parts[0], **const m = &work->parts[1], **const rest = &work->parts[2];
    convert_poly(as_poly(q, &q_room), level, n);
    convert_poly(as_poly(r, &r_room), level, m);
    poly_mod_or_div(*n, *m, rest, '|', nilpol);
    const bool divides = poly_iszero(*rest);
    close_work(work);
    return divides;
}

static bool divides_value(const quolynode *q, const quolynode *r, std::int32_t level)
{
    if (q->is_num && r->is_num) return number_divides(q, r);
    if (level > 0) return divides_in(q, r, level);
    quolynode *quotient = nullptr;
    const int divides = quoly_exact_quot(q, r, &quotient);
    if (quotient) free_quoly(&quotient);
    return divides != 0;
}

// Behind `(q, r`: `)`, or `, v)`.
static void finish_divides(input_stream **stream, quolynode **n, const quolynode *r, name_node **cursor)
{
    std::int32_t level = 0;
    if (token.text[0] != ')') {
        if (!pass_comma(stream, cursor, err_need_second_comma)) return;
        read_level(stream, cursor, &level, err_variable_range);
    }
    close_argument(stream, cursor);
    poly_room room;
    if (quoly_iszero(r)) {
        error(err_zero_divisor, token.text);
        quoly_set(0, n);
    } else if (polynomial_of(*n, &room, err_has_denominator) &&
               ((r->is_num || !r->den) || (error(err_has_denominator, token.text), false))) {
        quoly_set(divides_value(*n, r, level), n);
    }
}

void builtin_divides(input_stream **stream, quolynode **n, name_node **cursor)
{
    quolynode *r = nullptr;
    own(&r);
    if (read_with_comma(stream, n, &r, cursor)) finish_divides(stream, n, r, cursor);
    disown();
    if (r) free_quoly(&r);
}

void builtin_ispoly(input_stream **stream, quolynode **n, name_node **cursor)
{
    if (standard_read(stream, n, cursor)) quoly_set((*n)->is_num || !(*n)->den, n);
}

// Gcds ------------------------------------------------------------------------------------------------------

// *n = gcd(*n, r), both without denominator.
[[gnu::noinline]] static void gcd_of_values(quolynode **n, const quolynode *r)
{
    poly_room n_room, r_room;
    product_work *work = open_work(__builtin_frame_address(0));
    spared_gcd(as_poly(*n, &n_room), as_poly(r, &r_room), &work->parts[0]);
    polynode *g = result_of_work(work);
    poly_to_quoly(&g, n);
}

// The gcd of two values may be asked for.
static bool can_have_gcd(const quolynode *a, const quolynode *b)
{
    if ((a->is_num || !a->den) && (b->is_num || !b->den)) return true;
    error(err_gcd_denominator, token.text);
    return false;
}

void builtin_gcd(input_stream **stream, quolynode **n, name_node **cursor)
{
    quolynode *r = nullptr;
    bool alone = false;
    own(&r);
    quoly_set(0, n);
    if (open_argument(stream, cursor, err_need_open_paren)) {
        read_argument_value(stream, n, cursor);
        alone = token.text[0] == ')';  // the gcd with itself: the value, normalised
        if (!alone && pass_comma(stream, cursor, err_need_comma)) {
            read_argument_value(stream, &r, cursor);
        }
        close_argument(stream, cursor);
    }
    if (alone) {
        gcd_0_poly(n, &r);
        quoly_assign(r, n);
    } else if (r && can_have_gcd(*n, r)) {
        gcd_of_values(n, r);
    }
    disown();
    if (r) free_quoly(&r);
}

void builtin_content(input_stream **stream, quolynode **n, name_node **cursor)
{
    quolynode *variable = nullptr, *result = nullptr;
    own(&variable);
    own(&result);
    quoly_set(0, n);
    if (open_argument(stream, cursor, err_need_open_paren)) {
        read_argument_value(stream, n, cursor);
        if (token.text[0] == ',') {
            scanner(stream, &token, cursor);
            read_argument_value(stream, &variable, cursor);
        }
        close_argument(stream, cursor);
        call_content(n, &result, variable ? &variable : nullptr);
    }
    disown();
    disown();
    if (result) {
        free_quoly(n);
        *n = result;
    }
    if (variable) free_quoly(&variable);
}

// What EGCD reads: two values, and places for the cofactors.
struct egcd_arguments {
    quolynode *b;
    operand places[2];
    quolynode **slots[2];
};

// Behind `(a`: `, b [, ^s, ^t])`. False after an error.
static bool read_egcd(input_stream **stream, egcd_arguments *a, name_node **cursor)
{
    if (!pass_comma(stream, cursor, err_need_comma)) return false;
    read_argument_value(stream, &a->b, cursor);
    for (int k = 0; k < 2 && token.text[0] == ','; ++k) {
        scanner(stream, &token, cursor);
        a->slots[k] = new_get_quoly_ptr(stream, &a->places[k], cursor, err_need_variable);
        if (!a->slots[k]) return false;
    }
    close_argument(stream, cursor);
    return true;
}

[[gnu::noinline]] static void egcd_of_values(quolynode **n, egcd_arguments *a)
{
    poly_room n_room, b_room;
    product_work *work = open_work(__builtin_frame_address(0));
    polynode **const p = work->parts;
    const int done = egcd_polys(as_poly(*n, &n_room), as_poly(a->b, &b_room), &p[0], &p[1], &p[2], polynames,
                                0);
    polynode *results[3] = {};
    for (int k = 0; done && k < 3; ++k) {
        results[k] = p[k];
        p[k] = nullptr;
    }
    close_work(work);
    if (!done) return;
    poly_to_quoly(&results[0], n);
    for (int k = 0; k < 2; ++k) {
        if (a->slots[k]) {
            poly_to_quoly(&results[k + 1], settled_slot(&a->places[k]));
            close_target(&a->places[k]);
        } else {
            free_poly(&results[k + 1]);
        }
    }
}

// One line of Euclid's scheme for whole numbers a and b: [0] = [1] a + [2] b.
struct egcd_line {
    quolynode *part[3];
};

// *x = *x - q y.
static void take_off(quolynode **x, const quolynode *q, const quolynode *y)
{
    quolynode *product = nullptr;
    quoly_mult(q, y, &product);
    better_quoly_sub(x, product);
    free_quoly(&product);
}

// Run the scheme until the second line has 0; its last gcd is made positive.
static void run_euclid(egcd_line *line, egcd_line *next, quolynode **quotient)
{
    while (!quoly_iszero(next->part[0])) {
        poll_interrupt();
        quoly_mod_or_div(line->part[0], next->part[0], quotient, '\\');
        for (int k = 0; k < 3; ++k) {
            take_off(&line->part[k], *quotient, next->part[k]);
            std::swap(line->part[k], next->part[k]);
        }
    }
    if (!num_isneg(line->part[0]->num)) return;
    for (quolynode *&part : line->part) quoly_inplace(&part);
}

static void egcd_of_numbers(quolynode **n, egcd_arguments *a)
{
    egcd_line lines[2] = {};
    quolynode *quotient = nullptr;
    own(&quotient);
    for (egcd_line &line : lines) {
        for (quolynode *&part : line.part) own(&part);
    }
    for (int k = 0; k < 2; ++k) {
        quoly_assign(k ? a->b : *n, &lines[k].part[0]);
        quoly_set(!k, &lines[k].part[1]);
        quoly_set(k, &lines[k].part[2]);
    }
    run_euclid(&lines[0], &lines[1], &quotient);
    std::swap(*n, lines[0].part[0]);
    for (int k = 0; k < 2; ++k) {
        if (!a->slots[k]) continue;
        std::swap(*settled_slot(&a->places[k]), lines[0].part[k + 1]);
        close_target(&a->places[k]);
    }
    for (int k = 0; k < 7; ++k) disown();
    for (egcd_line &line : lines) {
        for (quolynode *&part : line.part) free_quoly(&part);
    }
    free_quoly(&quotient);
}

void builtin_egcd(input_stream **stream, quolynode **n, name_node **cursor)
{
    egcd_arguments a = {};
    quoly_set(0, n);
    if (!open_argument(stream, cursor, err_need_open_paren)) return;
    own(&a.b);
    own(&a.places[0].n);
    own(&a.places[1].n);
    borrow();
    read_argument_value(stream, n, cursor);
    if (read_egcd(stream, &a, cursor)) {
        if ((*n)->is_num && a.b->is_num) {
            if (exact_integers()) {
                egcd_of_numbers(n, &a);
            } else {
                error(err_wrong_ring, token.text);
            }
        } else if (can_have_gcd(*n, a.b)) {
            egcd_of_values(n, &a);
        }
    }
    give_back();
    for (int k = 0; k < 3; ++k) disown();
    if (a.b) free_quoly(&a.b);
    for (operand &place : a.places) {
        if (place.n) free_quoly(&place.n);
    }
}

// Factors ---------------------------------------------------------------------------------------------------

// Read `(q, [a])`, up to the token behind `[`. False after an error.
static bool read_factor_arguments(input_stream **stream, quolynode **n, name_node **cursor)
{
    quoly_set(0, n);
    if (!open_argument(stream, cursor, err_need_open_paren)) return false;
    read_argument_value(stream, n, cursor);
    if (!pass_comma(stream, cursor, err_need_argument_comma)) return false;
    if (!expect_and_pass('[', err_need_open_bracket, stream, cursor)) return false;
    if (!is_lower(token.text[0])) {
        error(err_need_array_name, token.text);
        return false;
    }
    if ((*n)->is_num || !(*n)->den) return true;
    error(err_denominator_refused, token.text);
    return false;
}

// The name of the array is in hand.
static bool close_factor_arguments(input_stream **stream, name_node **cursor)
{
    scanner(stream, &token, cursor);
    if (!expect_and_pass(']', err_need_array_name, stream, cursor)) return false;
    close_argument(stream, cursor);
    return true;
}

void builtin_factor(input_stream **stream, quolynode **n, name_node **cursor)
{
    if (!read_factor_arguments(stream, n, cursor)) return;
    if (!close_factor_arguments(stream, cursor)) return;
    if (flotemode || !modularmode) {
        error(err_wrong_ring, token.text);
        return;
    }
    not_implemented();
}

void builtin_sqfree(input_stream **stream, quolynode **n, name_node **cursor)
{
    if (!read_factor_arguments(stream, n, cursor)) return;
    token_rec name = token;
    if (!close_factor_arguments(stream, cursor)) return;
    square_free_to_array(n, &name);
}

void builtin_irred(input_stream **stream, quolynode **n, name_node **cursor)
{
    std::int32_t kind = 0;
    quoly_set(0, n);
    if (flotemode || !modularmode) {
        error(err_need_modular, token.text);
        return;
    }
    if (!mod_is_prime) {
        error(err_need_prime_modulus, token.text);
        return;
    }
    if (!open_argument(stream, cursor, err_need_open_paren)) return;
    read_argument_value(stream, n, cursor);
    if (!pass_comma(stream, cursor, err_need_argument_comma)) return;
    if (!read_whole(stream, cursor, &kind, err_not_a_number)) return;
    close_argument(stream, cursor);
    not_implemented();
}

void builtin_proot(input_stream **stream, quolynode **n, name_node **cursor)
{
    if (standard_read(stream, n, cursor)) quoly_pth_root(n);
}

}  // namespace kelmar
