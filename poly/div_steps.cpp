// poly/div_steps.cpp -- division by one number, and one step of a school division.
//
// Lists of one level are changed where they stand: the walk down the divisor's tail moves along the dividend,
// and each product is subtracted from the number it meets. Deeper lists go through the general product and
// difference.
#include "poly/div_steps.h"
#include <cstdio>
#include "numbers/dispatch.h"
#include "numbers/long_div.h"
#include "numbers/long_gcd.h"
#include "numbers/word_mod.h"
#include "poly/add.h"
#include "session/report.h"

namespace kelmar {

// Division by a number ------------------------------------------------------------------------------------

int set_divisor(number *c, int truncate, number_divisor *d)
{
    *d = {c, 0, truncate ? truncating : exactly};
    if (iszero(c)) return 0;
    int minus = 0;
    if (equal_to_pm1(c, &minus)) {
        d->how = minus ? by_minus_unit : by_unit;
        return 1;
    }
    if (flotemode || !modularmode) return 1;
    if (!finf && smallgcd(c->word, modulus) != 1) return 0;
    emod_inverse(c->word, &d->inverse);
    d->how = by_inverse;
    return 1;
}

// *q = a / b for long integers, when b divides a.
static int long_divides(const number *a, const number *b, number *q)
{
    number rest;
    rest.size = 0;
    divide(a, b, q, &rest);
    const int exact = rest.size == 1 && rest.head->digit == 0;
    special_free(&rest);
    return exact;
}

// x = x / d in place; x is undefined when it declines.
static int divide_number(number *x, const number_divisor *d)
{
    switch (d->how) {
    case by_unit: return 1;
    case by_minus_unit: in_place_neg(x); return 1;
    case by_inverse: x->word = modmult(x->word, d->inverse); return 1;
    case truncating: quot(x, d->c, x); return 1;
    case exactly: break;
    }
    if (exact_integers() && !integerflag) return long_divides(x, d->c, x);
    if (!flotemode) {
        const std::int32_t a = lintmode ? x->word : x->head->digit;
        const std::int32_t b = lintmode ? d->c->word : d->c->head->digit;
        if (a % b != 0) return 0;
    }
    quot(x, d->c, x);
    return 1;
}

int number_divides(number *x, const number_divisor *d)
{
    if (d->how != exactly || flotemode) return 1;
    number copy;
    copy.size = 0;
    num_assign(x, &copy);
    const int divides = divide_number(&copy, d);
    if (!lintmode) special_free(&copy);
    return divides;
}

static void report_lost_term(std::int32_t code)
{
    std::printf("code %li\n", static_cast<long>(code));
    kelmar_error("zero node t.", 1);
}

// Take the node at *place out of its list.
static void drop_node(polynode **place)
{
    polynode *t = *place;
    *place = t->next;
    if (t->isnum) free_imag(&t->num);
    give_node(t);
}

// Put the number below the term at *place in the term's place.
static void collapse(polynode **place)
{
    polynode *t = *place, *constant = t->coef;
    constant->next = t->next;
    *place = constant;
    give_node(t);
}

int divide_in_place(polynode **p, const number_divisor *d, std::int32_t code)
{
    if (d->how == by_unit) return 1;
    polynode **place = p;
    while (polynode *t = *place) {
        bool lost;
        if (t->isnum) {
            if (!divide_number(t->num, d)) return 0;
            lost = iszero(t->num);
        } else {
            if (!divide_in_place(&t->coef, d, code ? code - 1001 : 0)) return 0;
            lost = !t->coef;
        }
        if (lost) {
            if (t->isnum && code && exact_integers()) report_lost_term(code);
            drop_node(place);
            continue;
        }
        if (!t->isnum && t->exp == 0 && is_constant(t->coef)) collapse(place);
        place = &(*place)->next;
    }
    return 1;
}

// Steps ---------------------------------------------------------------------------------------------------

polynode *take_lead(polynode **rest)
{
    polynode *t = *rest;
    *rest = t->next;
    if (t->isnum) {
        t->next = nullptr;
        return t;
    }
    polynode *coef = t->coef;
    give_node(t);
    return coef;
}

bool height_is_1(const polynode *p)
{
    for (; p; p = p->next) {
        if (!p->isnum && !is_constant(p->coef)) return false;
    }
    return true;
}

static inline number *term_number(const polynode *t)
{
    return t->isnum ? t->num : t->coef->num;
}

enum word_kind { doubles, residues, general };

// x = x - c * y. Return whether x is zero then.
template <word_kind K> static inline bool subtract_product(number *x, number *c, number *y)
{
    if (K == doubles) {
        x->real -= c->real * y->real;
        return x->real == 0;
    }
    if (K == residues) {
        x->word = mod_sub(x->word, modmult(c->word, y->word), modulus);
        return x->word == 0;
    }
    number product;
    product.size = 0;
    num_mul(c, y, &product);
    num_sub(x, &product, x);
    if (!lintmode) special_free(&product);
    return iszero(x);
}

// Return the term -c y x^exp, or null when that is zero.
static polynode *negative_product(number *c, number *y, std::int32_t exp)
{
    number *x = nullptr;
    newimag(&x);
    x->size = 0;
    num_mul(c, y, x);
    if (iszero(x)) {
        free_imag(&x);
        return nullptr;
    }
    in_place_neg(x);
    polynode *t = nullptr;
    make_monomial(&t, exp, new_constant(x));
    return t;
}

// Release the term at *place, whose coefficient is the number 0.
static inline void drop_vanished(polynode **place)
{
    if (!(*place)->isnum) collapse(place);
    drop_node(place);
}

// *rest = *rest - c x^e tail on one level. Both lists fall, so one walk down *rest serves.
template <word_kind K>
static void take_off_in_place(polynode **rest, number *c, std::int32_t e, const polynode *tail)
{
    polynode **place = rest;
    for (; tail; tail = tail->next) {
        const std::int32_t exp = tail->exp + e;
        while (*place && (*place)->exp > exp) place = &(*place)->next;
        polynode *t = *place;
        if (t && t->exp == exp) {
            if (subtract_product<K>(term_number(t), c, term_number(tail))) {
                drop_vanished(place);
            } else {
                place = &t->next;
            }
        } else if (polynode *fresh = negative_product(c, term_number(tail), exp)) {
            fresh->next = t;
            *place = fresh;
            place = &fresh->next;
        }
    }
}

void take_off(polynode **rest, polynode *term, polynode *tail, bool one_level, const pt *var)
{
    if (!tail) return;
    if (one_level) {
        number *const c = term_number(term);
        if (flotemode) {
            take_off_in_place<doubles>(rest, c, term->exp, tail);
        } else if (modularmode) {
            take_off_in_place<residues>(rest, c, term->exp, tail);
        } else {
            take_off_in_place<general>(rest, c, term->exp, tail);
        }
        return;
    }
    polynode *product = nullptr;
    poly_mult(term, tail, &product, var);
    if (*rest) {
        best_poly_sub(*rest, product, rest);
    } else {
        poly_inplace(product);
        *rest = product;
    }
    if (poly_iszero(*rest)) free_poly(rest);
}

}  // namespace kelmar
