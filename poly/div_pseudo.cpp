// poly/div_pseudo.cpp -- pseudo-division.
//
// Each step multiplies what is left by c, so that the leading coefficient divides. The quotient's terms are
// kept as they come, newest first, and get their powers of c at the end: the term of step i lacks one factor
// for each later step. One power grows on the walk back from the last term to the first, and the list turns
// round on the way.
#include "poly/div_pseudo.h"
#include <cstdio>
#include "numbers/dispatch.h"
#include "poly/div.h"
#include "poly/div_steps.h"
#include "poly/mul_work.h"
#include "session/report.h"

namespace kelmar {

// *p = *p * c, c at the level of *p.
static void multiply_in_place(polynode **p, polynode *c, const pt *var)
{
    if (*p && !(is_constant(c) && num_isone(c->num))) poly_mult(*p, c, p, var);
}

// *power = c^e, e >= 0. *square: room. Both filled, *square null again.
static void set_power(polynode *c, std::int32_t e, polynode **power, polynode **square, const pt *var)
{
    poly_set(1, power);
    poly_assign(c, square);
    for (; e > 0; e >>= 1) {
        if (e & 1) multiply_in_place(power, *square, var);
        if (e > 1) multiply_in_place(square, *square, var);
    }
    free_poly(square);
}

// What a pseudo-division holds: parts of its work record.
struct pseudo_state {
    polynode **rest;   // what is left of n; null inside for zero
    polynode **terms;  // of the quotient, newest first; unused without one
    polynode **power;  // of c, one level down
    polynode **room;   // for what is being multiplied
    polynode *m, *c;   // c: the coefficient, one level down; borrowed
    polynode *padded;  // c at the level of n; borrowed
    const pt *var;
    bool keep_terms, one_level;
};

// *rest = c * *rest without its lead, minus lead * tail of m. The lead goes to the terms.
static void pseudo_step(pseudo_state *s)
{
    const std::int32_t e = (*s->rest)->exp - s->m->exp;
    polynode *term = take_lead(s->rest);
    make_monomial(&term, e, term);
    polynode alone = *term;
    term->next = *s->terms;
    *s->terms = term;
    multiply_in_place(s->rest, s->padded, s->var);
    if (*s->rest && poly_iszero(*s->rest)) free_poly(s->rest);  // products of words, and modulo a composite
    take_off(s->rest, &alone, s->m->next, s->one_level, s->var);
    if (!s->keep_terms) free_poly(s->terms);
}

// Return the quotient: the terms, each times its power of c; *power is that of the newest.
static polynode *scaled_quotient(pseudo_state *s)
{
    polynode **const quotient = s->rest;  // the remainder is delivered by now
    const pt *below = inner(s->var);
    while (*s->terms) {
        const std::int32_t exp = (*s->terms)->exp;
        *s->room = take_lead(s->terms);
        multiply_in_place(s->room, *s->power, below);
        polynode *term = *s->room;
        *s->room = nullptr;
        if (poly_iszero(term)) {
            free_poly(&term);
        } else {
            make_monomial(&term, exp, term);
            term->next = *quotient;
            *quotient = term;
        }
        if (*s->terms) multiply_in_place(s->power, s->c, below);
    }
    polynode *result = *quotient;
    *quotient = nullptr;
    if (!result) poly_set(0, &result);
    return result;
}

// The pseudo-division itself, deg n >= deg m. q, r null: not kept.
[[gnu::noinline]] static void divide_scaled(polynode *n, polynode *m, polynode **q, polynode **r,
                                            int scale_all, const pt *var)
{
    polynode number_alone = *m;
    number_alone.next = nullptr;
    polynode *const c = m->isnum ? &number_alone : m->coef;
    polynode wrapper = {0, 0, nullptr, {nullptr}};
    wrapper.coef = c;
    product_work *work = open_work(__builtin_frame_address(0));
    const bool one_level = height_is_1(n) && height_is_1(m);
    pseudo_state s = {&work->parts[0],
                      &work->parts[1],
                      &work->parts[2],
                      &work->parts[3],
                      m,
                      c,
                      is_constant(c) ? c : &wrapper,
                      var,
                      q != nullptr,
                      one_level};
    std::int32_t left = n->exp - m->exp + 1;
    *s.rest = copy_poly(n);
    while (*s.rest && (*s.rest)->exp >= m->exp) {
        poll_interrupt();
        pseudo_step(&s);
        --left;
    }
    set_power(c, scale_all ? left : 0, s.power, s.room, inner(var));
    if (r) {
        polynode over = wrapper;
        over.coef = *s.power;
        multiply_in_place(s.rest, is_constant(*s.power) ? *s.power : &over, var);
        *r = *s.rest;
        *s.rest = nullptr;
        if (!*r) poly_set(0, r);
    } else {
        free_poly(s.rest);
    }
    if (q) *q = scaled_quotient(&s);
    close_work(work);
}

void pseudo_div(polynode *n, polynode *m, polynode **q, polynode **r, int want_r, const pt *var)
{
    polynode *rest = nullptr;
    if (n->exp < m->exp) {
        *q = nullptr;
        poly_set(0, q);
        if (want_r) *r = copy_poly(n);
    } else if (first_coef_invrtble(m, var ? var->level : 1)) {
        field_coef_poly_divide(n, m, var, q, &rest);
        if (want_r) {
            *r = rest;
        } else {
            free_poly(&rest);
        }
    } else {
        divide_scaled(n, m, q, want_r ? r : nullptr, 1, var);
    }
}

void pseudo_div_no_q(polynode *n, polynode *m, polynode **r, const pt *var, int scale_all)
{
    if (m->exp < 1) {
        std::printf("bad m^.exp in pseudo div no q: %li\n", static_cast<long>(m->exp));
        kelmar_error("bad m^.exp in pseudo div no q.", 1);
        *r = copy_poly(n);
    } else if (n->exp < m->exp) {
        *r = copy_poly(n);
    } else if (first_coef_invrtble(m, var ? var->level : 1)) {
        field_coef_poly_divide(n, m, var, nullptr, r);
    } else {
        divide_scaled(n, m, nullptr, r, scale_all, var);
    }
}

}  // namespace kelmar
