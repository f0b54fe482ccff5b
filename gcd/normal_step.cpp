// gcd/normal_step.cpp -- a pseudo-remainder that never grows beyond what it is made of.
//
// With u = g X^(e+1) + a X^e + U, v = c X^e + V and V = b X^(e-1) + W, the pseudo-remainder is
//
//     c (c U - a V) - g (c X W - b V),
//
// and where u and v are subresultants g divides c U - a V. So both quotients are taken off products of two
// coefficients, where the plain way is to form products of three and to divide by a product of two.
#include "gcd/normal_step.h"
#include "numbers/dispatch.h"
#include "poly/add.h"
#include "poly/div_exact.h"
#include "poly/mul.h"
#include "poly/mul_work.h"
#include "session/report.h"

namespace kelmar {

int divide_coefficients(polynode **p, polynode *d, const pt *names)
{
    if (is_constant(d)) {
        if (!num_isone(d->num)) num_poly_quot(p, d->num);
        return 1;
    }
    polynode wrapper = {0, 0, nullptr, {nullptr}};
    wrapper.coef = d;
    polynode *dividend = *p;
    *p = nullptr;
    *p = exact_quotient_of(dividend, &wrapper, names);
    if (*p) return 1;
    poly_set(1, p);
    return 0;
}

// Term `exp` of a list, a part of it that is alone, and the list behind it. Zero is null.
struct split_list {
    polynode alone;  // with exponent 0
    polynode *tail;
};

static split_list split_at(polynode *p, std::int32_t exp)
{
    split_list s = {{0, 0, nullptr, {nullptr}}, p};
    if (!p || p->exp != exp) return s;
    s.alone = *p;
    s.alone.exp = 0;
    s.alone.next = nullptr;
    s.tail = p->next;
    return s;
}

// The coefficient of a split list as a polynomial at its level; null for zero.
static polynode *coefficient_of(split_list *s)
{
    if (!s->alone.isnum && !s->alone.coef) return nullptr;
    return !s->alone.isnum && is_constant(s->alone.coef) ? s->alone.coef : &s->alone;
}

// *p = c * *p; null is zero everywhere. *p replaced.
static void multiply(polynode **p, polynode *c, const pt *names)
{
    poll_interrupt();
    if (c && *p) {
        poly_mult(*p, c, p, names);
    } else {
        free_poly(p);
    }
}

// *p = *p - *q, or their sum; *q is consumed, and null then.
static void subtract(polynode **p, polynode **q)
{
    if (!*q) return;
    if (*p) {
        best_poly_sub(*p, *q, p);
    } else {
        poly_inplace(*q);
        *p = *q;
    }
    *q = nullptr;
    if (poly_iszero(*p)) free_poly(p);
}

static void add(polynode **p, polynode **q)
{
    if (!*q) return;
    if (*p) {
        best_poly_add(*p, *q, p);
    } else {
        *p = *q;
    }
    *q = nullptr;
    if (poly_iszero(*p)) free_poly(p);
}

// *q = c * p
static void set_product(polynode *p, polynode *c, polynode **q, const pt *names)
{
    if (p && c) poly_mult(p, c, q, names);
}

// *q = p with all exponents one higher. p null for zero.
static void set_shifted(const polynode *p, polynode **q)
{
    if (!p) return;
    *q = copy_poly(p);
    for (polynode *t = *q; t; t = t->next) {
        ++t->exp;
        if (!t->isnum) continue;
        t->coef = new_constant(t->num);
        t->isnum = 0;
    }
}

[[gnu::noinline]] int normal_remainder(polynode *u, polynode *v, polynode *h, polynode **r, const pt *names)
{
    split_list in_u = split_at(u->next, v->exp), in_v = split_at(v, v->exp);
    split_list below = split_at(in_v.tail, v->exp - 1);
    polynode *const a = coefficient_of(&in_u), *const c = coefficient_of(&in_v),
                    *const b = coefficient_of(&below);
    product_work *work = open_work(__builtin_frame_address(0));
    polynode **x = &work->parts[0], **y = &work->parts[1];
    set_product(in_u.tail, c, x, names);
    set_product(in_v.tail, a, y, names);
    subtract(x, y);
    int divides = !*x || divide_coefficients(x, u->coef, names);
    set_shifted(below.tail, y);
    subtract(x, y);
    multiply(x, c, names);
    set_product(in_v.tail, b, y, names);
    add(x, y);
    divides = divides && (!*x || divide_coefficients(x, h, names));
    if (!*x) poly_set(0, x);
    *r = *x;
    *x = nullptr;
    close_work(work);
    return divides;
}

}  // namespace kelmar
