// poly/div_pseudo.cpp -- pseudo-division.
//
// Each step multiplies what is left by c, so that the leading coefficient divides. The quotient's terms are kept as
// they come, newest first, and get their powers of c at the end: the term of step i lacks one factor for each later
// step. One power grows on the walk back from the last term to the first, and the list turns round on the way.
#include "poly/div_pseudo.h"
#include <cstdio>
#include "numbers/dispatch.h"
#include "poly/div.h"
#include "poly/div_steps.h"
#include "poly/mul_work.h"
#include "session/output.h"
#include "session/report.h"
#include "storage/undo.h"

namespace kelmar {

// *p = *p * c, c at the level of *p.
static void multiply_in_place(polynode **p, polynode *c, const pt *var)
{
    if (*p && !(is_constant(c) && num_isone(c->num))) poly_mult(*p, c, p, var);
}

// Return c^e, e >= 0.
static polynode *power_of(polynode *c, std::int32_t e, const pt *var)
{
    polynode *power = nullptr, *square = nullptr;
    poly_set(1, &power);
    poly_assign(c, &square);
    for (; e > 0; e >>= 1) {
        if (e & 1) multiply_in_place(&power, square, var);
        if (e > 1) multiply_in_place(&square, square, var);
    }
    free_poly(&square);
    return power;
}

// What a pseudo-division holds: parts of its work record.
struct pseudo_state {
    polynode **rest;     // what is left of n; null inside for zero
    polynode **terms;    // of the quotient, newest first; unused without one
    polynode **power;    // of c, one level down
    polynode *m, *c;     // c: the coefficient, one level down; borrowed
    polynode *padded;    // c at the level of n; borrowed
    const pt *var;
    bool keep_terms, one_level;
};

// *rest = c * *rest without its lead, minus lead * tail of m. Return the degree of the term.
static void pseudo_step(pseudo_state *s)
{
    const std::int32_t e = (*s->rest)->exp - s->m->exp;
    polynode *term = take_lead(s->rest);
    make_monomial(&term, e, term);
    if (s->keep_terms) {
        term->next = *s->terms;
        *s->terms = term;
    }
    polynode alone = *term;
    alone.next = nullptr;
    multiply_in_place(s->rest, s->padded, s->var);
    take_off(s->rest, &alone, s->m->next, s->one_level, s->var);
    if (!s->keep_terms) free_poly(&term);
}

// Return the quotient: the terms, each times its power of c; *power is that of the newest.
static polynode *scaled_quotient(pseudo_state *s)
{
    polynode *quotient = nullptr;
    const pt *below = inner(s->var);
    while (*s->terms) {
        const std::int32_t exp = (*s->terms)->exp;
        polynode *coef = take_lead(s->terms);
        multiply_in_place(&coef, *s->power, below);
        if (poly_iszero(coef)) {
            free_poly(&coef);
        } else {
            make_monomial(&coef, exp, coef);
            coef->next = quotient;
            quotient = coef;
        }
        if (*s->terms) multiply_in_place(s->power, s->c, below);
    }
    if (!quotient) poly_set(0, &quotient);
    return quotient;
}

// The pseudo-division itself, deg n >= deg m. q, r null: not kept.
[[gnu::noinline]] static void divide_scaled(polynode *n, polynode *m, polynode **q, polynode **r, int scale_all,
                                            const pt *var)
{
    polynode number_alone = *m;
    number_alone.next = nullptr;
    polynode *const c = m->isnum ? &number_alone : m->coef;
    polynode wrapper = {0, 0, nullptr, {nullptr}};
    wrapper.coef = c;
    product_work *work = open_work(__builtin_frame_address(0));
    pseudo_state s = {&work->parts[0], &work->parts[1], &work->parts[2], m, c,
                      is_constant(c) ? c : &wrapper, var, q != nullptr, height_is_1(n) && height_is_1(m)};
    std::int32_t left = n->exp - m->exp + 1;
    *s.rest = copy_poly(n);
    while (*s.rest && (*s.rest)->exp >= m->exp) {
        if (undo_depth == 0) poll_interrupt();
        pseudo_step(&s);
        --left;
    }
    *s.power = power_of(c, scale_all ? left : 0, inner(var));
    if (r) {
        polynode over = wrapper;
        over.coef = *s.power;
        multiply_in_place(s.rest, is_constant(*s.power) ? *s.power : &over, var);
        *r = *s.rest;
        *s.rest = nullptr;
        if (!*r) poly_set(0, r);
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
        std::fprintf(Output, "bad m^.exp in pseudo div no q: %li\n", static_cast<long>(m->exp));
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
