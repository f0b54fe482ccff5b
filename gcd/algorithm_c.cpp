// gcd/algorithm_c.cpp -- the subresultant sequence.
//
// Each remainder is divided by what is known to divide it, g h^delta, so that coefficients grow slowly: g is
// the leading coefficient of the last divisor, h the one that the theory calls the principal subresultant.
// Remainders are full pseudo-remainders; over a field, where a number leads, they lack powers of that number,
// which is a unit.
//
// The sequence runs in the variable in which it is thought to be the cheapest: the pair is turned, so that
// this variable is the outer one, and the gcd is turned back.
#include "gcd/algorithm_c.h"
#include <cstdio>
#include <cstring>
#include "gcd/algorithm_c_float.h"
#include "gcd/content.h"
#include "gcd/images.h"
#include "gcd/measure.h"
#include "gcd/mod_methods.h"
#include "gcd/normal_step.h"
#include "gcd/polygcd.h"
#include "gcd/sequence.h"
#include "numbers/dispatch.h"
#include "poly/div_exact.h"
#include "poly/div_fast.h"
#include "poly/div_pseudo.h"
#include "poly/div_steps.h"
#include "poly/mass.h"
#include "poly/mul_work.h"
#include "poly/power.h"
#include "session/report.h"

namespace kelmar {

enum own_part { part_pp = part_own, part_common };

// Giving up ----------------------------------------------------------------------------------------------

static constexpr std::int64_t cost_limit = 120000;
static constexpr std::int64_t cost_limit_many = 40000;  // with ten variables or more
static constexpr std::int32_t most_retries = 4;

// What the next step is thought to cost; what does not fit a word is just above the limit.
static std::int64_t step_cost(const sequence *s, std::int64_t limit)
{
    const std::int64_t terms = std::int64_t{poly_numterms(s->v)} + poly_numterms(s->u);
    const std::int64_t mass = std::int64_t{new_poly_mass(s->v, 1)} + new_poly_mass(s->u, 1);
    std::int64_t cost = 0;
    if (__builtin_mul_overflow(terms / 10 * (mass / 2), std::int64_t{s->v->exp}, &cost) || cost > INT32_MAX) {
        return limit + 1;
    }
    return cost;
}

static bool worth_estimating(const sequence *s)
{
    return (s->u->exp > 2 && s->v->exp > 1) || q_poly_numterms(s->v) > 200000;
}

static void tell_abandoned(const sequence *s, std::int64_t cost, std::int32_t terms)
{
    if (!verbose && chinhensel) return;
    std::printf("Warning. Abandon Algorithm C. %li, %li, %li, %li, ", static_cast<long>(alg_c_count),
                static_cast<long>(s->u->exp), static_cast<long>(s->v->exp), static_cast<long>(cost));
    std::printf("%li\n", static_cast<long>(terms));
    if (chinhensel || alg_c_count >= most_retries) return;
    std::printf("!! ** Warning. You set &O to force Algorithm C!\n");
    kelmar_error("&O conflict with large GCD problem.", 0);
}

// The pair is too large for the next step, and may be taken up again.
static bool must_abandon(const sequence *s)
{
    if (!worth_estimating(s) || (chinhensel && !images_answer)) return false;
    const std::int64_t limit = number_polys >= 10 ? cost_limit_many : cost_limit;
    const std::int64_t cost = step_cost(s, limit);
    if (cost <= limit) return false;
    const std::int32_t terms = poly_numterms(s->v->coef);
    if (terms <= 400 && (cost <= 200000 || terms <= 2)) return false;
    if (alg_c_count < most_retries) {
        ++alg_c_count;
        tell_abandoned(s, cost, terms);
        return true;
    }
    if (verbose) {
        std::printf("Warning. Can't abandon Algorithm C. %li, %li, %li\n", static_cast<long>(s->u->exp),
                    static_cast<long>(s->v->exp), static_cast<long>(cost));
    }
    return false;
}

// Steps --------------------------------------------------------------------------------------------------

// What the theory says to divide does: over the integers and fields, not over words with zero divisors.
static bool theory_holds()
{
    return !lintmode || mod_is_prime;
}

// Coefficients are of one kind all the way down: nothing that divides them leaves a rest, and they are not
// reduced by anything.
static bool plain_coefficients(const sequence *s)
{
    return theory_holds() && !integerflag && field_depth == 0 && !laurent && !relation_from(s->names);
}

// u and v are neighbours in the sequence of all subresultants, and v is really scaled by its lead.
static bool is_normal_step(const sequence *s, std::int32_t delta)
{
    if (delta != 1 || !s->regular || !plain_coefficients(s)) return false;
    return !(ground_field() && is_constant(s->v->coef));
}

// *p = *p / (g h^delta). 0: it does not divide, and *p is a constant.
static int divide_remainder(sequence *s, polynode **p, std::int32_t delta)
{
    const pt *below = inner(s->names);
    polynode **t = part_of(s, part_t);
    poly_assign(*part_of(s, part_h), t);
    compute_power(t, delta, below);
    poly_mult(*t, *part_of(s, part_g), t, below);
    if (is_constant(*t)) {
        num_poly_quot(p, (*t)->num);
    } else {
        polynode wrapper = {0, 0, nullptr, {nullptr}};
        wrapper.coef = *t;
        if (theory_holds()) {
            fast_poly_divide(p, &wrapper, s->names, 17);
        } else {
            polynode *dividend = *p;
            *p = nullptr;
            *p = exact_quotient_of(dividend, &wrapper, s->names);
            if (!*p) poly_set(1, p);
        }
    }
    free_poly(t);
    return (*p)->exp > 0;
}

// h = g^delta / h^(delta - 1). 0: it does not divide.
static int advance_h(sequence *s, std::int32_t delta)
{
    const pt *below = inner(s->names);
    polynode **g = part_of(s, part_g), **h = part_of(s, part_h), **t = part_of(s, part_t);
    if (delta == 0) return 1;
    if (delta == 1) {
        poly_assign(*g, h);
        return 1;
    }
    poly_assign(*g, t);
    compute_power(t, delta, below);
    compute_power(h, delta - 1, below);
    int fail = 0;
    if (is_constant(*h)) {
        num_poly_quot(t, (*h)->num);
    } else {
        gen_poly_divide(*t, *h, t, below, &fail);
    }
    free_poly(h);
    *h = *t;
    *t = nullptr;
    if (fail && theory_holds()) kelmar_error("poly_divide failed in Alg C.", 1);
    return !fail;
}

// The gcd in v -------------------------------------------------------------------------------------------

// The part pp = a multiple of the gcd of a and b as p is, but by something small: the leading coefficient of
// the gcd divides those of a and b, and what p has beyond what they have in common goes. 0: p is no multiple
// of the gcd by something free of the outer variable; then pp is a constant.
static int lower_content(const polynode *p, sequence *s)
{
    polynode **pp = part_of(s, part_pp), **common = part_of(s, part_common), **lead = part_of(s, part_t);
    poly_assign(p, pp);
    if (is_constant(p->coef)) return 1;
    polygcd(s->a->coef, s->b->coef, common, 0, s->flags->test, s->flags->deep, s->names->next, 1, 1, 0);
    poly_assign(p->coef, lead);
    add_pad(common, 1);
    poly_mult(*pp, *common, pp, s->names);
    const int divides = divide_coefficients(pp, *lead, s->names);
    free_poly(common);
    free_poly(lead);
    return divides;
}

// The part pp without its content. It is no constant.
static void take_content_out(sequence *s)
{
    polynode **pp = part_of(s, part_pp), **c = part_of(s, part_t);
    content(*pp, c, s->names, 1, s->flags->deep, 1);
    divide_coefficients(pp, *c, s->names);
    free_poly(c);
}

// The part pp = p without its content, where p has the degree of the gcd. p is no constant.
static void set_primitive_part(const polynode *p, sequence *s)
{
    if (!plain_coefficients(s) || !lower_content(p, s)) poly_assign(p, part_of(s, part_pp));
    take_content_out(s);
}

// v has the degree that images told to be the highest the gcd can have: it is the gcd, but for its content,
// when what is left without that divides both operands. That is much sooner known than that a remainder of
// the longest coefficients of all is zero. The part pp is the gcd then.
static bool is_found(sequence *s)
{
    if (s->v->exp != s->limit || s->v == s->a || s->v == s->b || !plain_coefficients(s)) return false;
    polynode **pp = part_of(s, part_pp);
    if (lower_content(s->v, s)) {
        take_content_out(s);
        if (trial_poly_divide_noq(s->b, *pp, s->names, 1, 0, 0) &&
            trial_poly_divide_noq(s->a, *pp, s->names, 1, 0, 0)) {
            return true;
        }
    }
    free_poly(pp);
    --s->limit;
    return false;
}

// The sequence -------------------------------------------------------------------------------------------

enum sequence_end { go_on, found_v, found_core, found_one, found_in_r };

// r = the next remainder, of which everything is taken out that the theory knows. 0: a division failed, and
// *r is a constant.
static int next_remainder(sequence *s, polynode **r, std::int32_t delta)
{
    if (is_normal_step(s, delta)) return normal_remainder(s->u, s->v, *part_of(s, part_h), r, s->names);
    pseudo_div_no_q(s->u, s->v, r, s->names, 1);
    return (*r)->exp == 0 || divide_remainder(s, r, delta);
}

// One division of the sequence.
static sequence_end sequence_step(sequence *s)
{
    polynode **r = part_of(s, part_r);
    const std::int32_t delta = s->u->exp - s->v->exp;
    const int divides = next_remainder(s, r, delta);
    if (divides && poly_iszero(*r)) return found_v;
    if ((*r)->exp == 0) return found_one;
    advance_pair(s);
    s->regular = delta <= 1;
    return advance_h(s, delta) ? go_on : found_one;
}

static sequence_end run_sequence(sequence *s)
{
    begin_sequence(s);
    for (;;) {
        poll_interrupt();
        if (is_constant(s->v)) {
            kelmar_error("v number in Alg C.", 1);
            return found_one;
        }
        if (must_abandon(s)) {
            polygcd(s->u, s->v, part_of(s, part_r), 0, s->flags->test, s->flags->deep, s->names, 1, 1, 0);
            return found_in_r;
        }
        if (is_found(s)) return found_core;
        const sequence_end end = sequence_step(s);
        if (end != go_on) return end;
    }
}

// *result = gcd(a, b), up to what is free of the outer variable. *result filled.
[[gnu::noinline]] static void primitive_gcd(polynode *a, polynode *b, polynode **result, pt *names,
                                            const retry_flags *flags)
{
    product_work *work = open_work(__builtin_frame_address(0));
    sequence s = {work, a, b, a, b, names, flags, flags->limit, false};
    if (a->exp == b->exp && f_poly_numterms(a) < f_poly_numterms(b)) {
        s.u = b;
        s.v = a;
    }
    const sequence_end end = run_sequence(&s);
    polynode *g = end == found_v ? s.v : end == found_in_r ? *part_of(&s, part_r) : nullptr;
    polynode **pp = part_of(&s, part_pp);
    if (g && g->exp > 0) set_primitive_part(g, &s);
    if (!*pp) poly_set(1, pp);
    *result = *pp;
    *pp = nullptr;
    close_work(work);
}

// The order of variables ---------------------------------------------------------------------------------

static constexpr std::int32_t levels_looked_at = 12;
static constexpr std::int32_t few_terms = 3;

// count + the terms of p where the variable `level` lists down has the exponent e.
static std::int32_t terms_at(const polynode *p, std::int32_t level, std::int32_t e)
{
    std::int32_t count = 0;
    for (; p; p = p->next) {
        if (level == 1) {
            if (p->exp == e) return p->isnum ? 1 : poly_numterms(p->coef);
        } else if (p->isnum) {
            count += e == 0;
        } else {
            count += terms_at(p->coef, level - 1, e);
        }
    }
    return count;
}

// Return how many lists down the variable is in which the leading coefficient of b has the fewest terms.
static std::int32_t choose_variable(const polynode *a, const polynode *b, const pt *names)
{
    if (fast_f_numterms(a) + fast_f_numterms(b) <= 30 || b->exp <= 2) return 1;
    if (laurent || field_depth > 0 || relation_from(names)) return 1;
    std::int32_t chosen = 1, fewest = poly_numterms(b->coef);
    for (std::int32_t level = 2; level <= levels_looked_at + 1 && fewest >= few_terms; ++level) {
        const std::int32_t degree = max_degree(b, level);
        if (degree < 1 || max_degree(a, level) < 1) continue;
        const std::int32_t terms = terms_at(b, level, degree);
        if (terms >= fewest) continue;
        chosen = level;
        fewest = terms;
    }
    return chosen;
}

enum turned_part { turned_a, turned_b, content_a, content_b, content_gcd, quotient_part, core_part };

// *p = *p without its content in the outer variable, *c.
static void split_content(product_work *work, polynode **p, polynode **c, pt *names, const retry_flags *flags)
{
    content(*p, c, names, 1, flags->deep, 1);
    if (is_constant(*c)) return;  // operands have no number content
    polynode wrapper = {0, 0, nullptr, {nullptr}};
    wrapper.coef = *c;
    polynode **quotient = &work->parts[quotient_part];
    *quotient = exact_quotient(*p, &wrapper, names);
    if (!*quotient) return;
    free_poly(p);
    *p = *quotient;
    *quotient = nullptr;
}

// *result = gcd(a, b) by a sequence in the variable `level` lists down. *result filled.
[[gnu::noinline]] static void turned_gcd(polynode *a, polynode *b, polynode **result, std::int32_t level,
                                         pt *names, const retry_flags *flags)
{
    product_work *work = open_work(__builtin_frame_address(0));
    polynode **const parts = work->parts;
    pt turned = *names;
    std::strcpy(turned.name, "D");
    convert_poly(a, level, &parts[turned_a]);
    convert_poly(b, level, &parts[turned_b]);
    split_content(work, &parts[turned_a], &parts[content_a], &turned, flags);
    split_content(work, &parts[turned_b], &parts[content_b], &turned, flags);
    polygcd(parts[content_a], parts[content_b], &parts[content_gcd], 0, 1, flags->deep, turned.next, 0, 0, 0);
    polynode *u = parts[turned_a], *v = parts[turned_b];
    polynode **core = &parts[core_part];
    if (u->exp < v->exp) {
        u = parts[turned_b];
        v = parts[turned_a];
    }
    retry_flags own = *flags;
    if (own.limit > 0 && v->exp > 0) own.limit = degree_by_images(u, v);
    if (v->exp > 0 && (own.limit > 0 || flags->limit == 0)) {
        primitive_gcd(u, v, core, &turned, &own);
    } else {
        poly_set(1, core);
    }
    add_pad(&parts[content_gcd], 1);
    poly_mult(*core, parts[content_gcd], core, &turned);
    if (!is_constant(*core)) patch_up(core, level);
    *result = *core;
    *core = nullptr;
    close_work(work);
}

void algorithm_c(polynode *a, polynode *b, polynode **result, pt *names, const retry_flags *flags)
{
    polynode *g = nullptr;
    if (flotemode) {
        float_algorithm_c(a, b, &g, names, flags);
    } else {
        const std::int32_t level = choose_variable(a, b, names);
        if (level == 1) {
            primitive_gcd(a, b, &g, names, flags);
        } else {
            turned_gcd(a, b, &g, level, names, flags);
        }
    }
    free_poly(result);
    *result = g;
}

}  // namespace kelmar
