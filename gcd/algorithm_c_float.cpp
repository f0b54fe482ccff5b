// gcd/algorithm_c_float.cpp -- the subresultant sequence where every number is rounded.
//
// Whole numbers below 2^53 stay exact as long as leading numbers divide. Elsewhere a remainder that should
// vanish is what rounding left of it: numbers far below those that it was made of are cleared. Every
// polynomial of the sequence is made monic, which is a unit, so numbers neither grow nor fade. A remainder
// that does not divide as the theory wants it is past saving: the answer is 1, a common divisor always.
#include "gcd/algorithm_c_float.h"
#include "gcd/content.h"
#include "gcd/float_cofactor.h"
#include "gcd/float_gcd.h"
#include "gcd/float_images.h"
#include "gcd/float_quotient.h"
#include "gcd/sequence.h"
#include "numbers/dispatch.h"
#include "poly/div_exact.h"
#include "poly/div_pseudo.h"
#include "poly/div_steps.h"
#include "poly/monic.h"
#include "poly/mul_work.h"
#include "poly/add.h"
#include "poly/power.h"
#include "session/report.h"

namespace kelmar {

enum float_part { part_q = part_own, part_core };

// *r = what is left of u on division by v, without noise. Return 1 when that is nothing.
static int noiseless_remainder(sequence *s)
{
    polynode **q = part_of(s, part_q), **r = part_of(s, part_r);
    pseudo_div(s->u, s->v, q, r, 1, s->names);
    double met = largest_magnitude(*q) * largest_magnitude(s->v);
    const double dividend = largest_magnitude(s->u);
    if (!(met > dividend)) met = dividend;
    free_poly(q);
    return purge_fl(r, met);
}

// *p = *p made monic. 0: its leading number is none.
static int make_monic(polynode **p)
{
    number lead;
    lead.size = 0;
    return monic_poly(p, &lead);
}

// *p = *p / d, where d is one level down; what rounding leaves is dropped. 0: more is left.
static int divide_by(polynode **p, polynode *d, const pt *names)
{
    if (is_constant(d)) return 1;  // monic later
    polynode wrapper = {0, 0, nullptr, {nullptr}};
    wrapper.coef = d;
    polynode *dividend = *p;
    *p = nullptr;
    *p = exact_quotient_of(dividend, &wrapper, names);
    return *p != nullptr;
}

// *r = *r / (g h^delta), monic.
static int reduce_remainder(sequence *s, std::int32_t delta)
{
    const pt *below = inner(s->names);
    polynode **r = part_of(s, part_r), **t = part_of(s, part_t);
    poly_assign(*part_of(s, part_h), t);
    compute_power(t, delta, below);
    poly_mult(*t, *part_of(s, part_g), t, below);
    const int divides = divide_by(r, *t, s->names) && (*r)->exp > 0 && make_monic(r);
    free_poly(t);
    return divides;
}

static int advance_h(sequence *s, std::int32_t delta)
{
    const pt *below = inner(s->names);
    polynode **h = part_of(s, part_h), **t = part_of(s, part_t);
    if (delta == 0) return 1;
    poly_assign(*part_of(s, part_g), t);
    if (delta > 1) {
        compute_power(t, delta, below);
        compute_power(h, delta - 1, below);
        polynode *quotient = is_constant(*h) ? copy_poly(*t) : exact_quotient(*t, *h, below);
        free_poly(t);
        *t = quotient;
        if (!quotient) return 0;
    }
    free_poly(h);
    *h = *t;
    *t = nullptr;
    return make_monic(h);
}

// Run the sequence. 1: v is the gcd, but for its content.
static int run_sequence(sequence *s)
{
    begin_sequence(s);
    for (;;) {
        poll_interrupt();
        const std::int32_t delta = s->u->exp - s->v->exp;
        if (noiseless_remainder(s)) return 1;
        polynode **r = part_of(s, part_r);
        if ((*r)->exp == 0 || !reduce_remainder(s, delta)) return 0;
        advance_pair(s);
        if (!advance_h(s, delta)) return 0;
    }
}

// The same as divides_within_noise, by values: the check is made there.
static bool accepts_float_quotient(sequence *s, polynode *p, polynode *g)
{
    polynode **q = part_of(s, part_q);
    *q = float_quotient(p, g, s->names);
    const bool divides = *q != nullptr;
    free_poly(q);
    return divides;
}

// Is p = q g but for noise, for some q?
static bool divides_within_noise(sequence *s, polynode *p, polynode *g)
{
    polynode **q = part_of(s, part_q), **r = part_of(s, part_r);
    free_poly(q);
    free_poly(r);
    *q = exact_quotient(p, g, s->names);
    if (!*q) return accepts_float_quotient(s, p, g);
    double met = largest_magnitude(*q) * largest_magnitude(g);
    const double dividend = largest_magnitude(p);
    if (!(met > dividend)) met = dividend;
    if (!(met > 1)) met = 1;
    poly_mult(*q, g, q, s->names);
    poly_sub(p, *q, r);
    const bool divides = largest_magnitude(*r) <= check_noise_part * met;
    free_poly(q);
    free_poly(r);
    return divides;
}

// *core = v without its content, monic. 0: what is left does not divide both operands.
static int verified_gcd(sequence *s, polynode *a, polynode *b)
{
    polynode **core = part_of(s, part_core), **c = part_of(s, part_t);
    content(s->v, c, s->names, 1, s->flags->deep, 1);
    poly_assign(s->v, core);
    const int divided = divide_by(core, *c, s->names);
    free_poly(c);
    return divided && make_monic(core) && divides_within_noise(s, a, *core) &&
           divides_within_noise(s, b, *core);
}

// *core = the gcd as the values of a and b tell it. 0: they tell nothing.
static int gcd_of_values(sequence *s, polynode *a, polynode *b)
{
    polynode **core = part_of(s, part_core), **c = part_of(s, part_t), **q = part_of(s, part_q);
    free_poly(core);
    *q = float_quotient(a, b, s->names);
    if (*q) {
        free_poly(q);
        *core = copy_poly(b);
        return make_monic(core);
    }
    free_poly(c);
    *c = float_cofactor(a, b);
    if (!*c) return 0;
    *core = exact_quotient(b, *c, s->names);
    if (!*core) *core = float_quotient(b, *c, s->names);
    free_poly(c);
    return *core && (*core)->exp > 0 && make_monic(core) && accepts_float_quotient(s, a, *core) &&
           accepts_float_quotient(s, b, *core);
}

[[gnu::noinline]] static void run_monic(sequence *s, polynode *a, polynode *b, polynode **result)
{
    poly_assign(a, part_of(s, part_u));
    poly_assign(b, part_of(s, part_v));
    int found = !coprime_at_points(a, b) && make_monic(part_of(s, part_u)) && make_monic(part_of(s, part_v));
    s->u = *part_of(s, part_u);
    s->v = *part_of(s, part_v);
    polynode **core = part_of(s, part_core);
    found = found && ((run_sequence(s) && verified_gcd(s, a, b)) || gcd_of_values(s, a, b));
    if (found) {
        *result = *core;
        *core = nullptr;
    } else {
        poly_set(1, result);
    }
}

[[gnu::noinline]] void float_algorithm_c(polynode *a, polynode *b, polynode **result, pt *names,
                                         const retry_flags *flags)
{
    product_work *work = open_work(__builtin_frame_address(0));
    sequence s = {work, nullptr, nullptr, a, b, names, flags, 0, false};
    *result = nullptr;
    run_monic(&s, a, b, result);
    close_work(work);
}

}  // namespace kelmar
