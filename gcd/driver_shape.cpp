// gcd/driver_shape.cpp -- the shape of a problem: powers and strides of the outer variable, the order of the
// operands, their sizes, and the first trial division.
//
// A power or a stride changes exponents of the outer list alone. The caller's list is not written: a copy of
// its nodes, a loan, takes its place.
#include "gcd/content.h"
#include "gcd/driver.h"
#include "gcd/measure.h"
#include "gcd/mod_methods.h"
#include "numbers/dispatch.h"
#include "numbers/long_div.h"
#include "numbers/long_gcd.h"
#include "poly/content.h"
#include "poly/div_fast.h"
#include "poly/measure.h"
#include "poly/scale.h"

namespace kelmar {

// Operands -----------------------------------------------------------------------------------------------

static void free_loan(polynode **loan)
{
    if (!*loan) return;
    polynode *last = *loan;
    while (last->next) last = last->next;
    give_nodes(*loan, last);
    *loan = nullptr;
}

void set_operand(gcd_operand *op, polynode **fresh)
{
    polynode *p = *fresh;
    *fresh = nullptr;
    if (*op->part != p) free_poly(op->part);
    free_loan(op->loan);
    *op->part = op->p = p;
    op->ours = 1;
}

// Move p out of its head, which becomes the number 0 and is good for being freed.
static polynode *moved(polynode *p)
{
    polynode *zero = nullptr;
    poly_set(0, &zero);
    const polynode content = *p;
    *p = *zero;
    *zero = content;
    return zero;
}

void own_operand(gcd_operand *op)
{
    if (*op->part == op->p) return;
    polynode *fresh = op->ours || *op->loan || is_constant(op->p) ? copy_poly(op->p) : moved(op->p);
    set_operand(op, &fresh);
}

// Counters start anew where the problem is not part of a larger one --------------------------------------

int reset_counters(gcd_problem *f)
{
    if (f->level > original_depth) return 0;
    c_cntcount = c_cntdepth = a_cntcount = d_cntcount = 0;
    if (f->top && f->deep) {
        g_cntcount = 0;
        g_cutoff = first_g_cutoff;
    }
    if (f->deep) original_depth = f->level;
    return 0;
}

// The power of the outer variable that each operand has --------------------------------------------------

static std::int32_t lowest_exponent(const polynode *p)
{
    while (p->next) p = p->next;
    return p->exp;
}

// Return the terms of p with exponents (e - low) / stride: new nodes, the coefficients of p.
static polynode *shared_terms(const polynode *p, std::int32_t low, std::int32_t stride)
{
    polynode *list = nullptr;
    polynode **end = &list;
    for (; p; p = p->next) {
        polynode *term = nullptr;
        newpoly(&term);
        *term = *p;
        term->next = nullptr;
        term->exp = (p->exp - low) / stride;
        if (term->exp == 0 && !p->isnum && is_constant(p->coef)) {
            term->isnum = 1;
            term->num = p->coef->num;
        }
        *end = term;
        end = &term->next;
    }
    return list;
}

static void shift_operand(gcd_operand *op, std::int32_t low, std::int32_t stride)
{
    polynode *terms = shared_terms(op->p, low, stride);
    free_loan(op->loan);
    *op->loan = op->p = terms;
}

static void take_power_out(gcd_operand *op)
{
    op->low = lowest_exponent(op->p);
    if (op->low > 0) shift_operand(op, op->low, 1);
}

int take_powers_out(gcd_problem *f)
{
    take_power_out(&f->a);
    take_power_out(&f->b);
    f->power = f->a.low < f->b.low ? f->a.low : f->b.low;
    return 0;
}

// What a power leaves may be simple.
int end_small_pair(gcd_problem *f)
{
    if (f->a.low == 0 && f->b.low == 0) return 0;
    gcd_exit end = exit_monomial;
    polynode **core = part_of(f, part_core);
    const gcd_call rest = {f->a.p, f->b.p, core, f->exponent_only, f->test, f->deep, f->names, 1, 1, 0};
    if (!answer_simple(&rest, &end)) return 0;
    return finish(f, end, core);
}

// Exponents that are all multiples of a stride, over words -----------------------------------------------

static std::int32_t gap_gcd(const polynode *p, std::int32_t d)
{
    for (; p->next && d != 1; p = p->next) d = smallgcd(p->exp - p->next->exp, d);
    return d;
}

int take_stride_out(gcd_problem *f)
{
    if (!modularmode || !f->a.p->next || !f->b.p->next) return 0;
    const std::int32_t d = gap_gcd(f->b.p, gap_gcd(f->a.p, 0));
    if (d <= 1) return 0;
    f->stride = d;
    shift_operand(&f->a, 0, d);
    shift_operand(&f->b, 0, d);
    return 0;
}

// The larger degree first --------------------------------------------------------------------------------

int order_operands(gcd_problem *f)
{
    const std::int32_t levels_a = depth_below(f->a.p), levels_b = depth_below(f->b.p);
    f->levels = levels_a > levels_b ? levels_a : levels_b;
    if (f->a.p->exp >= f->b.p->exp) return 0;
    const gcd_operand larger = f->b;
    f->b = f->a;
    f->a = larger;
    return 0;
}

// May images modulo primes be asked for the degree? ------------------------------------------------------

static bool both_above_field(const gcd_problem *f)
{
    return !reaches_field(f->a.p, f->level) && !reaches_field(f->b.p, f->level);
}

int allow_probe(gcd_problem *f)
{
    f->may_probe = !lintmode;
    f->own_primes = 0;
    if (lintmode || field_depth == 0) return 0;
    const bool few_outside = number_polys - field_depth < 4;
    if (few_outside &&
        (number_polys != field_depth || number_polys - f->level < 2 || aux_prime1_number < 1)) {
        f->may_probe = both_above_field(f);
    } else {
        f->own_primes = 1;
    }
    return 0;
}

// A small operand may divide the other one ---------------------------------------------------------------

// The content of b divides that of a. *q = the quotient, a constant; null before.
static bool contents_divide(gcd_problem *f, polynode **q)
{
    polynode **d = part_of(f, part_room_2);
    number rest;
    rest.size = 0;
    gcd_coefs(f->a.p, q);
    gcd_coefs(f->b.p, d);
    divide((*q)->num, (*d)->num, (*q)->num, &rest);
    const bool divides = iszero(&rest);
    special_free(&rest);
    free_poly(d);
    return divides;
}

// Does b divide a? With quick tests believed, q b is asked, which has the content of a: its tests see more.
static int quick_trial(gcd_problem *f, number *q)
{
    polynode *divisor = f->b.p;
    polynode **scaled = part_of(f, part_room_2);
    if (rat_yes && !is_longint(q, 1)) {
        scalar_by_poly(q, f->b.p, scaled);
        divisor = *scaled;
    }
    const int divides = trial_poly_divide_noq(f->a.p, divisor, f->names, 1, 0, 0);
    free_poly(scaled);
    return divides;
}

int try_quick_division(gcd_problem *f)
{
    f->a.nodes = big_node_total(f->a.p);
    f->b.nodes = big_node_total(f->b.p);
    f->total = f->a.nodes + f->b.nodes;
    if (f->b.nodes >= 50 || field_depth > 0 || f->a.nodes <= 20) return 0;
    int divides;
    if (exact_integers()) {
        polynode **q = part_of(f, part_room);
        divides = contents_divide(f, q) && quick_trial(f, (*q)->num);
        free_poly(q);
    } else {
        divides = trial_poly_divide_noq(f->a.p, f->b.p, f->names, 1, 0, 0);
    }
    f->tried = 1;
    if (!divides) return 0;
    polynode **core = part_of(f, part_core);
    *core = copy_poly(f->b.p);
    return finish(f, exit_divides, core);
}

}  // namespace kelmar
