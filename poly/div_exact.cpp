// poly/div_exact.cpp -- quotients that leave nothing.
//
// One recursion by levels serves all forms. A divisor free of the outer variable divides each coefficient.
// Otherwise the school division runs, where the leading coefficients are divided one level down by the same
// routine; it ends with "no" as soon as one of them does not divide. The lowest exponent of a quotient is the
// difference of the lowest exponents, so where negative exponents are allowed the division goes on below zero
// just so far.
//
// Doubles leave a rest of rounding errors where nothing should be left. What is below the noise of the
// numbers that were met so far is dropped, at every level. The size of what a level works on is the least
// that counts as met one level down: a coefficient may be noise as a whole.
#include "poly/div_exact.h"
#include <cmath>
#include <cstdio>
#include "numbers/dispatch.h"
#include "poly/div_flat.h"
#include "poly/div_steps.h"
#include "poly/div_words.h"
#include "poly/mul_work.h"
#include "session/report.h"

namespace kelmar {

// By numbers --------------------------------------------------------------------------------------------

// *p = *p / c as quot does it. 0 after an error or a fault.
static int quot_in_place(polynode **p, number *c, std::int32_t code)
{
    number_divisor d;
    if (!set_divisor(c, 1, &d)) {
        error(iszero(c) ? err_zero_divisor : err_no_inverse, "/");
        return 0;
    }
    divide_in_place(p, &d, code);
    if (!*p) poly_set(0, p);
    return 1;
}

static void quot_copy(polynode *n, polynode *c, polynode **q, std::int32_t code, const char *fault)
{
    polynode *copy = copy_poly(n);
    if (is_constant(c)) {
        if (!poly_iszero(n)) quot_in_place(&copy, c->num, code);
    } else {
        std::printf("code %li\n", static_cast<long>(code));
        kelmar_error(fault, 1);
    }
    free_poly(q);
    *q = copy;
}

void poly_quot(polynode *n, polynode *c, polynode **q, std::int32_t code)
{
    quot_copy(n, c, q, code, "divisor not number in poly quot.");
}

void fastest_poly_quot(polynode *n, polynode *c, polynode **q)
{
    quot_copy(n, c, q, 0, "divisor not number in fastest poly quot.");
}

void num_poly_quot(polynode **p, number *c)
{
    quot_in_place(p, c, 0);
}

// Return n / c with n consumed, or null when a coefficient does not divide.
static polynode *exact_number_quotient(polynode *n, number *c)
{
    number_divisor d;
    if (poly_iszero(n)) return n;
    if (set_divisor(c, 0, &d) && divide_in_place(&n, &d, 0)) {
        if (!n) poly_set(0, &n);
        return n;
    }
    free_poly(&n);
    return nullptr;
}

void trial_poly_quot(polynode *n, polynode *c, polynode **q, int *ok)
{
    *q = exact_number_quotient(copy_poly(n), c->num);
    *ok = *q != nullptr;
}

// By polynomials ------------------------------------------------------------------------------------------

static std::int32_t lowest_exp(const polynode *p)
{
    while (p->next) p = p->next;
    return p->exp;
}

// The exponents that a quotient of the outer lists may have: first .. last, falling; as wide words.
struct exp_range {
    std::int64_t first, last;
};

static exp_range quotient_range(const polynode *n, const polynode *m)
{
    const std::int64_t first = std::int64_t{n->exp} - m->exp;
    if (!laurent) return {first, 0};
    return {first, std::int64_t{lowest_exp(n)} - lowest_exp(m)};
}

static bool is_exponent(std::int64_t e)
{
    return e >= INT32_MIN && e <= INT32_MAX;
}

// Rounding errors -----------------------------------------------------------------------------------------

double largest_magnitude(const polynode *p)
{
    double most = 0;
    for (; p; p = p->next) {
        const double v = p->isnum ? std::fabs(p->num->real) : largest_magnitude(p->coef);
        if (std::isnan(v)) return v;
        if (v > most) most = v;
    }
    return most;
}

// The numbers met so far, by magnitude.
struct met_size {
    double most;  // 0 outside the float view, or a number that is not finite
};

static met_size met_with(const polynode *n, met_size outside)
{
    if (!flotemode) return {0};
    const double own = largest_magnitude(n);
    return {own <= outside.most ? outside.most : own};
}

// The product of the term and the divisor, whose numbers are up to `divisor`, was met.
static void meet_product(const polynode *term, double divisor, met_size *met)
{
    const double product = largest_magnitude(term) * divisor;
    if (product > met->most) met->most = product;
}

// Nothing in p, null for zero, is more than the rounding errors of the numbers that were met.
static bool is_noise(const polynode *p, met_size met)
{
    return flotemode && std::isfinite(met.most) && largest_magnitude(p) <= float_noise * met.most;
}

// Quotients -------------------------------------------------------------------------------------------------

static polynode *quotient_within(polynode *n, polynode *m, const pt *var, met_size met);

// Replace *coef by its quotient by the leading coefficient of m. Declines (0): *coef is null.
static int divide_lead(polynode **coef, const polynode *m, const number_divisor *d, const pt *var,
                       met_size met)
{
    polynode *dividend = *coef;
    *coef = nullptr;
    if (!d->c) {
        *coef = quotient_within(dividend, m->coef, inner(var), met);
    } else if (divide_in_place(&dividend, d, 0)) {
        if (!dividend) poly_set(0, &dividend);  // a double that underflows
        *coef = dividend;
    } else {
        free_poly(&dividend);
    }
    return *coef != nullptr;
}

// *d divides by the leading coefficient of m when that is a number; else d->c is null. 0: it has no inverse.
static int set_lead_divisor(const polynode *m, number_divisor *d)
{
    d->c = nullptr;
    if (m->isnum) return set_divisor(m->num, 0, d);
    return is_constant(m->coef) ? set_divisor(m->coef->num, 0, d) : 1;
}

// Return the quotient that stands in *q, a part of the work, which is closed; null when it is not exact.
static polynode *close_quotient(product_work *work, polynode **q, bool exact)
{
    polynode *quotient = exact ? *q : nullptr;
    if (exact) *q = nullptr;
    close_work(work);
    if (exact && !quotient) poly_set(0, &quotient);
    return quotient;
}

// Return n / m for lists that both have the outer variable, or m has it; n consumed.
[[gnu::noinline]] static polynode *divide_lists(polynode *n, polynode *m, const pt *var, met_size met)
{
    const double divisor = flotemode ? largest_magnitude(m) : 0;
    const exp_range range = quotient_range(n, m);
    const bool one_level = height_is_1(n) && height_is_1(m);
    product_work *work = open_work(__builtin_frame_address(0));
    polynode **const rest = &work->parts[0], **const q = &work->parts[1], **const coef = &work->parts[2];
    polynode **end = q;
    *rest = n;
    number_divisor d;
    bool exact = is_exponent(range.last) && set_lead_divisor(m, &d);
    while (exact && *rest) {
        const std::int64_t e = std::int64_t{(*rest)->exp} - m->exp;
        exact = e >= range.last && is_exponent(e);
        if (!exact) {
            exact = is_noise(*rest, met);
            break;
        }
        poll_interrupt();
        *coef = take_lead(rest);
        exact = divide_lead(coef, m, &d, var, met);
        if (!exact || poly_iszero(*coef)) {
            free_poly(coef);
            continue;
        }
        make_monomial(end, static_cast<std::int32_t>(e), *coef);
        *coef = nullptr;
        if (flotemode) meet_product(*end, divisor, &met);
        take_off(rest, *end, m->next, one_level, var);
        end = &(*end)->next;
    }
    return close_quotient(work, q, exact);
}

// Return the list n with each coefficient divided by c, which is one level down; n consumed. Or null.
[[gnu::noinline]] static polynode *divide_coefs(polynode *n, polynode *c, const pt *var, met_size met)
{
    product_work *work = open_work(__builtin_frame_address(0));
    polynode **const rest = &work->parts[0], **const q = &work->parts[1];
    polynode **end = q;
    *rest = n;
    bool exact = true;
    while (*rest && exact) {
        const std::int32_t exp = (*rest)->exp;
        polynode *coef = quotient_within(take_lead(rest), c, inner(var), met);
        exact = coef != nullptr;
        if (!exact) break;
        if (poly_iszero(coef)) {
            free_poly(&coef);
            continue;
        }
        make_monomial(end, exp, coef);
        end = &(*end)->next;
    }
    return close_quotient(work, q, exact);
}

// Return n / m, n consumed, null when m does not divide.
static polynode *quotient_of(polynode *n, polynode *m, const pt *var, met_size met)
{
    polynode *quotient = nullptr;
    const flat_quotient flat = divide_flat_exactly(n, m, &quotient);
    if (flat != flat_not_suited) return quotient;
    if (is_wrapper(m)) {
        if (is_wrapper(n) || is_constant(n)) {
            quotient = quotient_within(is_constant(n) ? n : take_lead(&n), m->coef, inner(var), met);
            if (quotient) add_pad(&quotient, 1);
            return quotient;
        }
        return divide_coefs(n, m->coef, var, met);
    }
    if (!laurent && n->exp < m->exp) {
        free_poly(&n);
        return nullptr;
    }
    const int words = divide_words_exactly(n, m, &quotient);
    if (words == words_not_suited) return divide_lists(n, m, var, met);
    free_poly(&n);
    return quotient;
}

// quotient_of for any divisor. n stands among numbers of the size that was met.
static polynode *quotient_within(polynode *n, polynode *m, const pt *var, met_size met)
{
    check_stack();
    if (is_constant(m)) return exact_number_quotient(n, m->num);
    if (poly_iszero(n)) return n;
    const bool noise = is_noise(n, met);
    polynode *quotient = quotient_of(n, m, var, met_with(n, met));
    if (!quotient && noise) poly_set(0, &quotient);
    return quotient;
}

polynode *exact_quotient_of(polynode *n, polynode *m, const pt *var)
{
    return quotient_within(n, m, var, {0});
}

// The leading numbers divide, which is what most often says no, and the degrees fit.
static bool leads_divide(const polynode *n, const polynode *m)
{
    if (!laurent && n->exp < m->exp && !poly_iszero(n)) return false;
    number_divisor d;
    return set_divisor(leading_coef(m), 0, &d) && number_divides(leading_coef(n), &d);
}

polynode *exact_quotient(polynode *n, polynode *m, const pt *var)
{
    return leads_divide(n, m) ? exact_quotient_of(copy_poly(n), m, var) : nullptr;
}

// Forms ---------------------------------------------------------------------------------------------------

void gen_poly_divide(polynode *n, polynode *m, polynode **q, const pt *var, int *fail)
{
    polynode *quotient = nullptr;
    const bool by_one = is_constant(m) && modularmode && num_isone(m->num);
    if (!var) {
        kelmar_error("pt nil in poly_divide.", 1);
    } else if (is_constant(m) && !by_one) {
        kelmar_error("m is number in poly_divide.", 1);
    } else {
        quotient = by_one ? copy_poly(n) : exact_quotient(n, m, var);
    }
    *fail = !quotient;
    if (!quotient) poly_set(0, &quotient);
    free_poly(q);
    *q = quotient;
}

static void report_bad_division(const char *name, const polynode *n, const polynode *m, std::int32_t code,
                                const char *fault)
{
    std::printf("*** %s%li, %li, %li\n", name, static_cast<long>(n->exp), static_cast<long>(m->exp),
                static_cast<long>(code));
    kelmar_error(fault, 1);
}

// The operands suit fast_poly_divide.
static bool can_divide_fast(const polynode *n, const polynode *m, const pt *var, std::int32_t code)
{
    if (!var) {
        kelmar_error("pt nil in fast_poly_divide.", 1);
    } else if (is_constant(m)) {
        kelmar_error("m is number in fast_poly_divide.", 1);
    } else if (is_constant(n) && !laurent) {
        report_bad_division("n is number in fast_poly_divide, ", n, m, code,
                            "n is number in fast_poly_divide.");
    } else if (n->exp < m->exp && !laurent) {
        report_bad_division("bad exps ", n, m, code, "bad exps in fast_poly divide. ");
    } else {
        return true;
    }
    return false;
}

void fast_poly_divide(polynode **n, polynode *m, const pt *var, std::int32_t code)
{
    if (poly_iszero(*n)) return;
    if (!can_divide_fast(*n, m, var, code)) {
        poly_set(0, n);
        return;
    }
    const polynode top = **n;
    polynode *dividend = *n;
    *n = nullptr;
    *n = exact_quotient_of(dividend, m, var);
    if (*n) return;
    poly_set(0, n);
    report_bad_division("bad nexp in fast_poly_divide, ", &top, m, code, "bad nexp in fast_poly_divide.");
}

}  // namespace kelmar
