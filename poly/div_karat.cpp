// poly/div_karat.cpp -- recursive division by way of fast products.
//
// The divisor is cut in two at half its degree, x^h. The high part of the dividend divided by the high part
// of the divisor gives the upper half of the quotient; the low part of the divisor times that is subtracted,
// and the same again gives the lower half. Parts are copies, lowered to begin at x^0, so that products see
// short dense operands and nothing of the caller's is altered.
//
// When a half has odd degree the remainder may come out one row too high. So each routine ends with a school
// division by the whole divisor, which has a row to do at most.
#include "poly/div_karat.h"
#include "numbers/dispatch.h"
#include "numbers/word_mod.h"
#include "poly/add.h"
#include "poly/div.h"
#include "poly/div_words.h"
#include "poly/measure.h"
#include "poly/mul_list.h"
#include "poly/mul_work.h"
#include "poly/scale.h"

namespace kelmar {

// Degree of a dense divisor below which word arrays divide at once: there they beat products of lists.
static constexpr std::int32_t word_division_cut = 400;

struct division {
    const pt *var;
    bool simple;  // one level over words or doubles
};

// Sums ------------------------------------------------------------------------------------------------------

// *a = *a + b, b consumed; null is zero in both.
static void add_to(polynode **a, polynode *b, const division *d)
{
    if (!*a || !b) {
        if (b) *a = b;
    } else if (d->simple) {
        simplest_poly_add(*a, b, a);
    } else {
        best_poly_add(*a, b, a);
    }
}

// *a = *a - q low; *a not null, low may be.
static void subtract_product(polynode **a, polynode *q, polynode *low, const division *d)
{
    if (!low || poly_iszero(q)) return;
    polynode *product = nullptr;
    poly_mult(low, q, &product, d->var);
    if (d->simple) {
        simplest_poly_sub(*a, product, a);
    } else {
        best_poly_sub(*a, product, a);
    }
}

static void raise(polynode **p, std::int32_t e)
{
    if (*p && e != 0 && !poly_iszero(*p)) shift_exponents(p, e);
}

// Return what stands at exp h and above in *p, which loses it, lowered by h; zero when there is nothing.
static polynode *cut_high(polynode **p, std::int32_t h)
{
    polynode *high = *p;
    polynode **place = &high;
    while (*place && (*place)->exp >= h) place = &(*place)->next;
    polynode *low = *place;
    *place = nullptr;
    *p = low;
    if (high) {
        raise(&high, -h);
    } else {
        poly_set(0, &high);
    }
    return high;
}

// The leaves ------------------------------------------------------------------------------------------------

// *q, *r = n / m at once, n consumed.
static void divide_leaf(polynode *n, polynode *m, polynode **q, polynode **r, const division *d)
{
    if (d->simple && modularmode && n->exp >= m->exp && words_suit(n, m)) {
        simplest_div_mod(n, m, q, r);
        free_poly(&n);
    } else {
        school_poly_divide_of(n, m, q, r, d->var);
    }
}

static bool is_leaf(const polynode *n, const polynode *m, const division *d)
{
    if (n->exp < m->exp || 3 * std::int64_t{n->exp} < 4 * std::int64_t{m->exp}) return true;
    if (fast_poly_length(m, div_poly_cutoff) < div_poly_cutoff) return true;
    return d->simple && modularmode && m->exp < word_division_cut && words_suit(n, m);
}

// *r has a degree below that of m, after a row of school division where it has not; *q gains what that gives.
static void finish(polynode *m, polynode **q, polynode **r, const division *d)
{
    if ((*r)->exp < m->exp) return;
    polynode *row = nullptr;
    school_poly_divide_of(*r, m, &row, r, d->var);
    add_to(q, row, d);
}

// Halves -------------------------------------------------------------------------------------------------

static void divide_balanced(polynode *n, polynode *m, polynode **q, polynode **r, const division *d);
static void divide_longer(polynode *n, polynode *m, polynode **q, polynode **r, const division *d);

static void divide_half(polynode *n, polynode *m, polynode **q, polynode **r, const division *d)
{
    if (9 * std::int64_t{m->exp} < 4 * std::int64_t{n->exp}) {
        divide_longer(n, m, q, r, d);
    } else {
        divide_balanced(n, m, q, r, d);
    }
}

// karat_mod_and_div with n consumed.
[[gnu::noinline]] static void divide_balanced(polynode *n, polynode *m, polynode **q, polynode **r,
                                              const division *d)
{
    if (is_leaf(n, m, d)) {
        divide_leaf(n, m, q, r, d);
        return;
    }
    const std::int32_t h = (m->exp + 1) / 2;
    product_work *work = open_work(__builtin_frame_address(0));
    polynode **const low = &work->parts[0], **const high = &work->parts[1], **const n_low = &work->parts[2];
    polynode **const upper = &work->parts[3], **const lower = &work->parts[4], **const rest = &work->parts[5];
    *low = copy_poly(m);
    *high = cut_high(low, h);
    *n_low = n;
    polynode *n_high = cut_high(n_low, 2 * h);
    divide_half(n_high, *high, upper, rest, d);
    raise(rest, h);
    subtract_product(rest, *upper, *low, d);
    polynode *middle = *rest;
    *rest = nullptr;
    divide_half(middle, *high, lower, rest, d);
    raise(rest, h);
    subtract_product(rest, *lower, *low, d);
    add_to(rest, *n_low, d);
    *n_low = nullptr;
    raise(upper, h);
    add_to(upper, *lower, d);
    *lower = nullptr;
    finish(m, upper, rest, d);
    *q = *upper;
    *r = *rest;
    *upper = *rest = nullptr;
    close_work(work);
}

// three_case with n consumed: the quotient in two pieces, the upper one by m x^e.
[[gnu::noinline]] static void divide_longer(polynode *n, polynode *m, polynode **q, polynode **r,
                                            const division *d)
{
    if (is_leaf(n, m, d)) {
        divide_leaf(n, m, q, r, d);
        return;
    }
    const std::int32_t by_n = n->exp / 2 - m->exp;
    const std::int32_t by_m = static_cast<std::int32_t>(3 * std::int64_t{m->exp} / 5);
    const std::int32_t e = by_n < by_m ? by_n : by_m;
    product_work *work = open_work(__builtin_frame_address(0));
    polynode **const raised = &work->parts[0], **const upper = &work->parts[1],
                     **const lower = &work->parts[2];
    polynode **const rest = &work->parts[3];
    if (e > 0) {
        *raised = copy_poly(m);
        raise(raised, e);
        divide_balanced(n, *raised, upper, rest, d);
        raise(upper, e);
    } else {
        *rest = n;
    }
    polynode *middle = *rest;
    *rest = nullptr;
    divide_balanced(middle, m, lower, rest, d);
    add_to(upper, *lower, d);
    *lower = nullptr;
    finish(m, upper, rest, d);
    *q = *upper;
    *r = *rest;
    *upper = *rest = nullptr;
    close_work(work);
}

// Long dividends --------------------------------------------------------------------------------------------

// The dividend in pieces as long as the divisor, from the top: what is left of one is put before the next.
[[gnu::noinline]] static void divide_long(polynode *n, polynode *m, polynode **q, polynode **r,
                                          const division *d)
{
    product_work *work = open_work(__builtin_frame_address(0));
    polynode **const below = &work->parts[0], **const quotient = &work->parts[1],
                     **const rest = &work->parts[2];
    polynode **const piece = &work->parts[3];
    polynode **end = quotient;
    *below = n;
    std::int32_t at = (n->exp / m->exp - 1) * m->exp;  // the first piece has up to twice the length
    for (; at >= 0; at -= m->exp) {
        raise(rest, m->exp);
        add_to(rest, *below ? cut_high(below, at) : nullptr, d);
        polynode *dividend = *rest;
        *rest = nullptr;
        divide_balanced(dividend, m, piece, rest, d);
        raise(piece, at);
        if (poly_iszero(*piece)) {
            free_poly(piece);
            continue;
        }
        *end = *piece;
        *piece = nullptr;
        while (*end) end = &(*end)->next;
    }
    *q = *quotient;
    *r = *rest;
    *quotient = *rest = nullptr;
    close_work(work);
    if (!*q) poly_set(0, q);
}

// fast_mod_and_div with n consumed.
static void divide_any(polynode *n, polynode *m, polynode **q, polynode **r, const division *d)
{
    const std::int64_t dn = n->exp, dm = m->exp;
    if (dn < dm || dm < 1) {
        divide_leaf(n, m, q, r, d);
    } else if (4 * dn <= 9 * dm) {
        divide_balanced(n, m, q, r, d);
    } else if (3 * dn < 10 * dm) {
        divide_longer(n, m, q, r, d);
    } else {
        divide_long(n, m, q, r, d);
    }
}

// The interface ---------------------------------------------------------------------------------------------

// Return 1 when a list of the pair has a negative exponent at its end.
static bool goes_below_zero(const polynode *p)
{
    while (p->next) p = p->next;
    return p->exp < 0;
}

void fast_mod_and_div(polynode *n, polynode *m, polynode **r, polynode **q, const pt *var, int flag)
{
    const division d = {var, flag != 0};
    if (laurent && (goes_below_zero(n) || goes_below_zero(m))) {
        school_poly_divide(n, m, q, r, var);
        return;
    }
    divide_any(copy_poly(n), m, q, r, &d);
}

void karat_mod_and_div(polynode *n, polynode *m, polynode **q, polynode **r, const pt *var, int flag)
{
    const division d = {var, flag != 0};
    divide_balanced(copy_poly(n), m, q, r, &d);
}

void three_case(polynode *n, polynode *m, polynode **q, polynode **r, const pt *var, int flag)
{
    const division d = {var, flag != 0};
    divide_longer(copy_poly(n), m, q, r, &d);
}

[[gnu::noinline]] void fast_monic_division(polynode *n, polynode *m, polynode **q, polynode **r)
{
    const division d = {nilpol, true};
    number *const lead = leading_coef(m);
    if (num_isone(lead)) {
        divide_any(copy_poly(n), m, q, r, &d);
        return;
    }
    number inverse;
    setvalue(0, &inverse);
    mod_inverse(lead->word, &inverse.word);
    product_work *work = open_work(__builtin_frame_address(0));
    polynode **const monic = &work->parts[0], **const rest = &work->parts[1];
    polynode *scaled = nullptr;
    scalar_by_poly(&inverse, n, &scaled);
    scalar_by_poly(&inverse, m, monic);
    divide_any(scaled, *monic, q, rest, &d);  // n/c = q (m/c) + r/c: the quotient is right as it is
    scalar_by_poly(lead, *rest, r);
    close_work(work);
}

}  // namespace kelmar
