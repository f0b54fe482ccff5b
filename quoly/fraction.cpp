// quoly/fraction.cpp -- gcds within fractions, and the settling of results.
#include "quoly/fraction.h"
#include "gcd/balance.h"
#include "gcd/polygcd.h"
#include "numbers/compare.h"
#include "numbers/dispatch.h"
#include "numbers/long_gcd.h"
#include "poly/content.h"
#include "poly/div_exact.h"
#include "poly/laurent.h"
#include "poly/measure.h"
#include "poly/monic.h"
#include "poly/mul.h"
#include "poly/mul_work.h"
#include "quoly/reduce.h"
#include "quoly/towers.h"
#include "session/report.h"

namespace kelmar {

// Common divisors ---------------------------------------------------------------------------------------

bool has_gcds()
{
    return flotemode || modularmode || (!lintmode && !integerflag);
}

// The gcd of copies: shifting away negative exponents alters operands in place.
[[gnu::noinline]] static void shifted_gcd(polynode *a, polynode *b, polynode **g)
{
    product_work *work = open_work(__builtin_frame_address(0));
    work->parts[0] = copy_poly(a);
    work->parts[1] = copy_poly(b);
    Lpolygcd(&work->parts[0], &work->parts[1], g, 1, polynames);
    close_work(work);
}

void spared_gcd(polynode *a, polynode *b, polynode **g)
{
    if (laurent && (has_negative_exponents(a) || has_negative_exponents(b))) {
        shifted_gcd(a, b, g);
    } else {
        Lpolygcd(&a, &b, g, 1, polynames);
    }
}

static bool is_one(const polynode *p)
{
    return is_constant(p) && num_isone(p->num);
}

// *g = the gcd of a constant and all numbers of p, in digit chains.
static void number_gcd(const polynode *constant, polynode *p, polynode **g)
{
    poly_set(1, g);
    number *const n = (*g)->num;
    if (is_constant(p)) {
        binary_gcd(constant->num, p->num, n);
        return;
    }
    find_gcdcoefs(p, n);
    if (!num_isone(n)) binary_gcd(n, constant->num, n);
}

// *slot = p divided by the number of the constant g.
static void divide_by_number(polynode **p, polynode *g, polynode **slot)
{
    poly_quot(*p, g, slot, 0);
    *p = *slot;
}

// cancel_pair for doubles whose variables are better stretched: gcd and quotients are formed so.
[[gnu::noinline]] static void cancel_balanced(polynode **a, polynode **b, polynode **slot_a,
                                              polynode **slot_b, polynode **slot_g, const balance *s)
{
    product_work *work = open_work(__builtin_frame_address(0));
    polynode **const scaled = work->parts;
    scaled[0] = copy_poly(*a);
    scaled[1] = copy_poly(*b);
    scale_variables(scaled[0], s, 1, 0);
    scale_variables(scaled[1], s, 1, 0);
    spared_gcd(scaled[0], scaled[1], slot_g);
    if (!is_constant(*slot_g)) {
        reduce(&scaled[0], &scaled[1], slot_g, slot_a, slot_b, 0, 0, 1, 1);
        const std::int32_t lead = leading_shift(*slot_g, s);
        scale_variables(*slot_g, s, -1, lead);
        scale_variables(*slot_a, s, -1, -lead);
        scale_variables(*slot_b, s, -1, -lead);
        *a = *slot_a;
        *b = *slot_b;
    }
    close_work(work);
}

void cancel_pair(polynode **a, polynode **b, polynode **slot_a, polynode **slot_b, polynode **slot_g)
{
    balance s;
    if (!*a || !*b || is_one(*a) || is_one(*b)) return;
    if (lintmode && (is_constant(*a) || is_constant(*b))) return;
    if (poly_equal(*a, *b)) {
        *a = *b = nullptr;
        return;
    }
    if (!has_gcds()) return;
    if (flotemode && find_balance(*a, *b, &s)) {
        cancel_balanced(a, b, slot_a, slot_b, slot_g, &s);
        return;
    }
    if (is_constant(*a)) {
        number_gcd(*a, *b, slot_g);
    } else if (is_constant(*b)) {
        number_gcd(*b, *a, slot_g);
    } else {
        spared_gcd(*a, *b, slot_g);
    }
    if (is_one(*slot_g)) return;
    if (is_constant(*slot_g)) {
        divide_by_number(a, *slot_g, slot_a);
        divide_by_number(b, *slot_g, slot_b);
        return;
    }
    reduce(a, b, slot_g, slot_a, slot_b, laurent, laurent, 1, 1);
    *a = *slot_a;
    *b = *slot_b;
}

void product_of_factors(polynode *a, polynode *b, polynode **c)
{
    if (a && b) {
        poly_mult(a, b, c, polynames);
    } else if (a || b) {
        *c = copy_poly(a ? a : b);
    }
}

// Settling ----------------------------------------------------------------------------------------------

// Divide *top by the constant *den where numbers divide each other.
static void divide_constant_in(polynode **top, polynode **den)
{
    if (!num_isone((*den)->num)) num_poly_quot(top, (*den)->num);
    free_poly(den);
}

// The number at the head of *den becomes 1. Words that wrap have no inverses; there a -1 alone is turned.
static void make_monic(polynode **top, polynode **den)
{
    const number *lead = leading_coef(*den);
    if (num_isone(lead)) return;
    if (!flotemode && !modularmode) {
        if (!num_isneg(lead)) return;
        poly_inplace(*top);
        poly_inplace(*den);
        return;
    }
    number c;
    c.size = 0;
    if (monic_poly(den, &c)) num_poly_quot(top, &c);
}

// Powers of variables that divide *den go to *top.
static void move_powers(polynode **top, polynode **den)
{
    exponent_shifts shifts;
    if (clear_bads(den, polynames, &shifts, any_exponent, all_levels)) eliminate_bads(top, &shifts, -1);
    if (modout_above_field) above_field_modout(top);
}

static void settle_words(polynode **top, polynode **den, std::int32_t clear)
{
    if (!is_constant(*den)) {
        make_monic(top, den);
        if (clear) move_powers(top, den);
    }
    if (is_constant(*den)) divide_constant_in(top, den);
}

static void settle_digits(polynode **top, polynode **den, std::int32_t clear)
{
    if (neg_leading_term(*den)) {
        poly_inplace(*top);
        poly_inplace(*den);
    }
    if (clear && !is_constant(*den)) move_powers(top, den);
    if (is_one(*den)) free_poly(den);
}

void settle_fraction(polynode **top, polynode **den, std::int32_t clear)
{
    if (!*den) return;
    if (poly_iszero(*den)) {
        free_poly(den);
        error(err_zero_denominator, "/");
        poly_set(1, top);
    } else if (poly_iszero(*top)) {
        free_poly(den);
    } else if (field_depth > 0 && poly_depth(*den) >= field_depth) {
        convert_field_denominator(top, den);
    } else if (lintmode) {
        settle_words(top, den, clear);
    } else {
        settle_digits(top, den, clear);
    }
    if (*den && poly_iszero(*top)) free_poly(den);  // a double that has run out of range below
}

void put_fraction(polynode **top, polynode **den, quolynode **c)
{
    if (!*den) {
        poly_to_quoly(top, c);
        return;
    }
    if (!*c) {
        newquoly(c);
    } else if ((*c)->is_num) {
        free_imag(&(*c)->num);
    } else {
        free_poly(&(*c)->top);
        free_poly(&(*c)->den);
    }
    quolynode *const q = *c;
    q->is_num = 0;
    q->top = *top;
    q->den = *den;
    q->is_rat = !lintmode && is_constant(*top) && is_constant(*den);
    *top = *den = nullptr;
}

}  // namespace kelmar
