// poly/div.cpp -- division with remainder: the choice of a method, and the school method.
//
// A step of the school method takes the leading term off, divides its coefficient by that of the divisor, and
// subtracts the multiple of the divisor's other terms. What the language asks for goes down to the first
// level with a variable in either operand; there a divisor without that variable divides each coefficient,
// and any other makes the choice between a pseudo-division and the division over a field.
#include "poly/div.h"
#include "numbers/dispatch.h"
#include "numbers/word_mod.h"
#include "poly/div_exact.h"
#include "poly/div_karat.h"
#include "poly/div_pseudo.h"
#include "poly/div_steps.h"
#include "poly/div_words.h"
#include "poly/laurent.h"
#include "poly/mul_work.h"
#include "session/report.h"

namespace kelmar {

// The school method ---------------------------------------------------------------------------------------

// The leading coefficient of m when it is a number, else null.
static number *number_lead(const polynode *m)
{
    if (m->isnum) return m->num;
    return is_constant(m->coef) ? m->coef->num : nullptr;
}

// *d divides by the lead of m. Declines (0) after the report.
static int set_lead(const polynode *m, number_divisor *d)
{
    number *const c = number_lead(m);
    if (!c) {
        kelmar_error("divisor not number in poly quot.", 1);
        return 0;
    }
    if (set_divisor(c, 1, d)) return 1;
    std::int32_t none = 0;
    emod_inverse(c->word, &none);  // says what is wrong
    return 0;
}

// *q = 0, *r = n, consumed.
static void no_division(polynode *n, polynode **q, polynode **r)
{
    if (q) {
        *q = nullptr;
        poly_set(0, q);
    }
    *r = n;
}

// Return what stands in *part, zero when that is null; *part is then empty.
static polynode *take_part(polynode **part)
{
    polynode *p = *part;
    *part = nullptr;
    if (!p) poly_set(0, &p);
    return p;
}

static constexpr std::int32_t lost_term_code = -31;  // tells in a report where a coefficient was lost

// One step: *rest loses its lead. *term = the term of the quotient, null when it vanished; it must stand in a
// record, since the step may be interrupted.
static void school_step(polynode **rest, polynode *m, const number_divisor *d, bool one_level, const pt *var,
                        polynode **term)
{
    const std::int32_t e = (*rest)->exp - m->exp;
    *term = take_lead(rest);
    divide_in_place(term, d, lost_term_code);
    if (!*term) return;
    make_monomial(term, e, *term);
    take_off(rest, *term, m->next, one_level, var);
}

[[gnu::noinline]] void school_poly_divide_of(polynode *n, polynode *m, polynode **q, polynode **r,
                                             const pt *var)
{
    number_divisor d;
    if (poly_iszero(n) || n->exp < m->exp || !set_lead(m, &d)) {
        no_division(n, q, r);
        return;
    }
    const bool one_level = height_is_1(n) && height_is_1(m);
    product_work *work = open_work(__builtin_frame_address(0));
    polynode **const rest = &work->parts[0], **const quotient = &work->parts[1];
    polynode **end = quotient;
    *rest = n;
    while (*rest && (*rest)->exp >= m->exp) {
        poll_interrupt();
        school_step(rest, m, &d, one_level, var, end);
        if (!*end) continue;
        if (q) {
            end = &(*end)->next;
        } else {
            free_poly(end);
        }
    }
    *r = take_part(rest);
    if (q) *q = take_part(quotient);
    close_work(work);
}

void school_poly_divide(polynode *n, polynode *m, polynode **q, polynode **r, const pt *var)
{
    school_poly_divide_of(copy_poly(n), m, q, r, var);
}

// Over words and fields -----------------------------------------------------------------------------------

// Put a quotient and a remainder in their places, which may hold the operands.
static void deliver(polynode *quotient, polynode *rest, polynode **q, polynode **r)
{
    free_poly(q);
    *q = quotient;
    free_poly(r);
    *r = rest;
}

static bool word_ring_suits(const polynode *m)
{
    if (flotemode || !modularmode || !number_lead(m)) return false;
    number_divisor d;
    return set_divisor(number_lead(m), 0, &d);
}

// The degrees are such that the fast method pays.
static bool high_degrees(const polynode *n, const polynode *m)
{
    return m->exp > poly_cutoff || (m->exp > 2 && n->exp / 20 > m->exp);
}

static bool fast_division_suits(const polynode *n, const polynode *m)
{
    if (flotemode || !modularmode || !mod_is_prime || !number_lead(m) || !high_degrees(n, m)) return false;
    return height_is_1(n) && height_is_1(m) &&
           !(laurent && (has_negative_exponents(n) || has_negative_exponents(m)));
}

void basic_poly_divide(polynode *n, polynode *m, polynode **q, polynode **r, int fast)
{
    polynode *quotient = nullptr, *rest = nullptr;
    if (n->exp >= m->exp && fast && fast_division_suits(n, m)) {
        fast_monic_division(n, m, &quotient, &rest);
    } else if (n->exp >= m->exp && word_ring_suits(m) && words_suit(n, m)) {
        simplest_div_mod(n, m, &quotient, &rest);
    } else {
        school_poly_divide(n, m, &quotient, &rest, nilpol);
    }
    deliver(quotient, rest, q, r);
}

void simplest_poly_divide(polynode *n, polynode *m, polynode **q, polynode **r, int fast)
{
    basic_poly_divide(n, m, q, r, fast);
}

void poly_div_no_q(polynode *n, polynode *m, polynode **r)
{
    polynode *rest = nullptr;
    if (n->exp >= m->exp && n->exp <= fast_gcd_size && word_ring_suits(m) && words_suit(n, m)) {
        simplest_div_no_q(n, m, &rest);
    } else {
        school_poly_divide(n, m, nullptr, &rest, nilpol);
    }
    free_poly(r);
    *r = rest;
}

void field_coef_poly_divide(polynode *n, polynode *m, const pt *var, polynode **q, polynode **r)
{
    school_poly_divide(n, m, q, r, var);
}

bool first_coef_invrtble(const polynode *m, std::int32_t)
{
    return ground_field() && number_lead(m);
}

// The operators of the language -----------------------------------------------------------------------------

// mod_or_div of every number of p by c, in place; null when nothing is left.
static void reduce_numbers(polynode **p, number *c, char op)
{
    polynode **place = p;
    while (polynode *t = *place) {
        if (t->isnum) {
            mod_or_div(t->num, c, t->num, op);
        } else {
            reduce_numbers(&t->coef, c, op);
        }
        const bool lost = t->isnum ? iszero(t->num) : !t->coef;
        polynode *const next = t->next;
        if (lost) {
            if (t->isnum) free_imag(&t->num);
            give_node(t);
            *place = next;
            continue;
        }
        if (!t->isnum && t->exp == 0 && is_constant(t->coef)) {
            *place = t->coef;
            (*place)->next = next;
            give_node(t);
        }
        place = &(*place)->next;
    }
}

static void divide_by_number(polynode *n, number *c, polynode **r, char op)
{
    polynode *result = nullptr;
    if (iszero(c)) {
        const char symbol[2] = {op, 0};
        error(err_zero_divisor, symbol);
        poly_set(1, &result);
    } else if (op != '|' && modularmode && !flotemode) {
        poly_set(1, &result);
        result->num->word = c->word;
        poly_quot(n, result, &result, 0);
    } else {
        result = copy_poly(n);
        reduce_numbers(&result, c, op);
        if (!result) poly_set(0, &result);
    }
    free_poly(r);
    *r = result;
}

// *r = the list n with each coefficient divided by c, one level down. *r filled.
[[gnu::noinline]] static void divide_coefficients(polynode *n, polynode *c, polynode **r, char op,
                                                  const pt *var)
{
    product_work *work = open_work(__builtin_frame_address(0));
    polynode **const result = &work->parts[0];
    polynode **end = result;
    for (; n; n = n->next) {
        polynode picture = *n, *coef = nullptr;
        picture.next = nullptr;
        poly_mod_or_div(n->isnum ? &picture : n->coef, c, &coef, op, inner(var));
        if (poly_iszero(coef)) {
            free_poly(&coef);
            continue;
        }
        make_monomial(end, n->exp, coef);
        end = &(*end)->next;
    }
    *r = take_part(result);
    close_work(work);
}

// *r filled, for lists of which m has the outer variable.
static void divide_lists(polynode *n, polynode *m, polynode **r, char op, const pt *var)
{
    const bool remainder = op == '|';
    if (flotemode || !modularmode || !height_is_1(n) || !height_is_1(m)) {
        if (remainder) {
            pseudo_div_no_q(n, m, r, var, 1);
        } else {
            pseudo_div(n, m, r, nullptr, 0, var);
        }
        return;
    }
    polynode *quotient = nullptr, *rest = nullptr;
    basic_poly_divide(n, m, &quotient, &rest, 1);
    *r = remainder ? rest : quotient;
    free_poly(remainder ? &quotient : &rest);
}

// *r filled; m is no number.
static void gen_case(polynode *n, polynode *m, polynode **r, char op, const pt *var)
{
    std::int32_t pads = 0;
    while (is_wrapper(m) && is_wrapper(n)) {
        n = n->coef;
        m = m->coef;
        var = inner(var);
        ++pads;
    }
    if (is_constant(n)) {
        if (op == '|') {
            *r = copy_poly(n);
        } else {
            poly_set(0, r);
        }
    } else if (is_wrapper(m)) {
        divide_coefficients(n, m->coef, r, op, var);
    } else {
        divide_lists(n, m, r, op, var);
    }
    add_pad(r, pads);
}

void poly_mod_or_div(polynode *n, polynode *m, polynode **r, char op, const pt *var)
{
    if (is_constant(m)) {
        divide_by_number(n, m->num, r, op);
        return;
    }
    polynode *result = nullptr;
    if (laurent && (has_negative_exponents(n) || has_negative_exponents(m))) {
        const char symbol[2] = {op, 0};
        error(err_laurent_division, symbol);
        result = copy_poly(n);
    } else {
        gen_case(n, m, &result, op, var);
    }
    free_poly(r);
    *r = result;
}

}  // namespace kelmar
