// quoly/add_fractions.cpp -- sums of values with denominators.
//
// With a denominator on one side alone, nothing can be cancelled. Otherwise g = gcd(d1, d2) is taken first,
// the sum is formed over the least common denominator, and what can be cancelled then divides g: that gcd has
// small operands. The result is built in the slots of a work record and handed over when it is complete. A
// denominator that did not change is moved over when its owner is the result, and copied otherwise.
#include "numbers/dispatch.h"
#include "poly/add.h"
#include "poly/mul.h"
#include "poly/mul_work.h"
#include "quoly/add.h"
#include "quoly/fraction.h"

namespace kelmar {

// One denominator -----------------------------------------------------------------------------------------

enum poly_sum { p_plus_q, p_minus_q, q_minus_p };

static void sum_of_polys(polynode *a, polynode *b, polynode **c, bool minus)
{
    if (minus) {
        best_poly_sub(a, b, c);
    } else {
        best_poly_add(a, b, c);
    }
}

// Give *c the numerator *top and a copy of the denominator of q, or the one that *c = q has already.
static void put_over_den(polynode **top, const quolynode *q, quolynode **c)
{
    polynode *den = nullptr;
    if (poly_iszero(*top)) {
        poly_to_quoly(top, c);
    } else if (*c == q) {
        (*c)->top = *top;
        (*c)->is_rat = !lintmode && is_constant(*top) && is_constant((*c)->den);
        *top = nullptr;
    } else {
        poly_assign(q->den, &den);
        put_fraction(top, &den, c);
    }
}

// *c = p and q summed, over the denominator of q. Behind the product nothing fails, so the numerator of a
// *c = q may be used up.
[[gnu::noinline]] static void sum_with_poly(polynode *p, const quolynode *q, quolynode **c, poly_sum which)
{
    product_work *work = open_work(__builtin_frame_address(0));
    polynode **const product = &work->parts[0];
    poly_mult(p, q->den, product, polynames);
    polynode *first = *product, *second = q->top, *sum = nullptr;
    *product = nullptr;
    if (*c == q) {
        (*c)->top = nullptr;
    } else {
        second = copy_poly(q->top);
    }
    if (which == q_minus_p) {
        polynode *const spare = first;
        first = second;
        second = spare;
    }
    sum_of_polys(first, second, &sum, which != p_plus_q);
    close_work(work);
    put_over_den(&sum, q, c);
}

void no_denom(polynode *p, const quolynode *q, quolynode **c, int subtract)
{
    sum_with_poly(p, q, c, subtract ? p_minus_q : p_plus_q);
}

void no_denom_minus(polynode *p, quolynode **q)
{
    sum_with_poly(p, *q, q, q_minus_p);
}

void no_denom_minus_2(polynode *p, const quolynode *q, quolynode **c)
{
    sum_with_poly(p, q, c, q_minus_p);
}

// Two denominators ----------------------------------------------------------------------------------------

// The slots of a sum.
struct sum_parts {
    polynode **top, **den;  // the result
    polynode **g, **h;      // the gcd of the denominators, and its gcd with the numerator
    polynode **e1, **e2;    // denominators without g
    polynode **spare, **spare2;
};

// *s->top = n1 f2 + n2 f1, or the difference; null factors are 1.
static void sum_over(const fraction *a, const fraction *b, polynode *f1, polynode *f2, int add, sum_parts *s)
{
    product_of_factors(a->top, f2, s->top);
    product_of_factors(b->top, f1, s->spare);
    polynode *const first = *s->top, *const second = *s->spare;
    *s->top = *s->spare = nullptr;
    sum_of_polys(first, second, s->top, !add);
}

// Cancel the numerator against `shared`, what the denominators have in common. Return what is left of it:
// `shared` itself, a slot, or null for 1.
static polynode *cancel_shared(polynode *shared, sum_parts *s)
{
    polynode *top = *s->top;
    cancel_pair(&top, &shared, s->spare, s->spare2, s->h);
    if (top == *s->top) return shared;
    free_poly(s->top);
    if (top) {
        *s->top = *s->spare;
        *s->spare = nullptr;
    } else {
        poly_set(1, s->top);
    }
    return shared;
}

// Over one denominator. Return whether that of a is the result's; else *s->den is, or null for 1.
static bool add_over_one(const fraction *a, const fraction *b, int add, sum_parts *s)
{
    if (add) {
        poly_add(a->top, b->top, s->top);
    } else {
        poly_sub(a->top, b->top, s->top);
    }
    if (poly_iszero(*s->top)) return false;
    polynode *const left = cancel_shared(a->den, s);
    if (left == a->den) return true;
    *s->den = *s->spare2;
    *s->spare2 = nullptr;
    return false;
}

// Over the product of coprime denominators, or over their least common multiple. Returns as add_over_one
// does: the second denominator may divide the first.
static bool add_over_two(const fraction *a, const fraction *b, int add, sum_parts *s)
{
    polynode *f1 = a->den, *f2 = b->den;
    cancel_pair(&f1, &f2, s->e1, s->e2, s->g);
    const bool coprime = f1 == a->den;
    sum_over(a, b, f1, f2, add, s);
    if (poly_iszero(*s->top)) return false;
    polynode *const left = coprime ? nullptr : cancel_shared(*s->g, s);
    if (left && left == *s->g) {  // f1 times all of g again
        if (is_constant(f2) && num_isone(f2->num)) return true;
        product_of_factors(a->den, f2, s->den);
        return false;
    }
    product_of_factors(f1, f2, s->den);
    if (left) poly_mult(*s->den, left, s->den, polynames);
    return false;
}

// *c = a + b or a - b.
[[gnu::noinline]] static void add_general(const quolynode *a, const quolynode *b, quolynode **c, int add)
{
    product_work *work = open_work(__builtin_frame_address(0));
    polynode **const part = work->parts;
    sum_parts s = {part, part + 1, part + 2, part + 3, part + 4, part + 5, part + 6, part + 7};
    const fraction x = {a->top, a->den}, y = {b->top, b->den};
    const bool same_den = poly_equal(x.den, y.den) ? add_over_one(&x, &y, add, &s)
                                                   : add_over_two(&x, &y, add, &s);
    settle_fraction(s.top, s.den, 0);
    if (same_den && *c == a) {
        *s.den = (*c)->den;
        (*c)->den = nullptr;
    } else if (same_den) {
        *s.den = copy_poly(x.den);
    }
    polynode *top = *s.top, *den = *s.den;
    *s.top = *s.den = nullptr;
    close_work(work);
    put_fraction(&top, &den, c);
}

void general_quoly_add(const quolynode *a, const quolynode *b, quolynode **c, int add)
{
    add_general(a, b, c, add);
}

void fast_gen_quoly_add(quolynode **a, const quolynode *b, int add)
{
    add_general(*a, b, a, add);
}

}  // namespace kelmar
