// quoly/eval.cpp -- scalar values at points.
//
// Where all points are plain numbers the polynomials stay what they are, and poly/eval.h does the work.
// Otherwise it is Horner's rule on values, so that fractions may be points and results.
#include "quoly/eval.h"
#include "numbers/dispatch.h"
#include "numbers/word_mod.h"
#include "poly/eval.h"
#include "poly/measure.h"
#include "poly/mul_work.h"
#include "quoly/add.h"
#include "quoly/divide.h"
#include "quoly/mul.h"
#include "quoly/owned.h"
#include "quoly/power.h"
#include "session/report.h"

namespace kelmar {

void p_q_assign(const polynode *p, quolynode **q, std::int32_t depth)
{
    polynode *copy = copy_poly(p);
    add_pad(&copy, depth);
    poly_to_quoly(&copy, q);
}

// Horner's rule -------------------------------------------------------------------------------------------

static const polynode *coef_of(const polynode *t, polynode *alone)
{
    if (!t->isnum) return t->coef;
    *alone = *t;
    alone->next = nullptr;
    return alone;
}

// *sum = *sum v^gap; *power is used.
static void times_power(quolynode **sum, const quolynode *v, std::int64_t gap, quolynode **power)
{
    const bool inverts_zero = gap < 0 && quoly_iszero(v);  // told, even when the sum is zero
    if (gap == 0 || (quoly_iszero(*sum) && !inverts_zero)) return;
    if (gap == 1) return fast_quoly_mult(sum, v);
    while (gap != 0) {
        const std::int32_t step = gap > INT32_MAX    ? INT32_MAX
                                  : gap < -INT32_MAX ? -INT32_MAX
                                                     : static_cast<std::int32_t>(gap);
        quoly_assign(v, power);
        raise_to_power(power, step);
        fast_quoly_mult(sum, *power);
        gap -= step;
    }
}

static bool is_plain_one(const quolynode *q)
{
    return q->is_num && num_isone(q->num);
}

// The three values of a level, announced.
struct horner_values {
    quolynode *coef, *power, *variable;
};

static void announce(horner_values *h)
{
    own(&h->coef);
    own(&h->power);
    own(&h->variable);
}

static void withdraw(horner_values *h)
{
    for (int k = 0; k < 3; ++k) disown();
    free_quoly(&h->coef);
    free_quoly(&h->power);
    free_quoly(&h->variable);
}

void tot_eval_poly(const polynode *p, const quolynode *points, quolynode **result, std::int32_t depth,
                   std::int32_t skip)
{
    check_stack();
    if (is_constant(p) || !points) return p_q_assign(p, result, depth);
    horner_values h = {};
    announce(&h);
    if (skip > 0) quoly_variable(depth + 1, &h.variable);
    const quolynode *const v = skip > 0 ? h.variable : points;
    const quolynode *const rest = skip > 0 ? points : points->next;
    const bool at_one = is_plain_one(v);
    const std::int32_t terms = verbose && windy ? poly_length(p) : 0;
    if (verbose && windy) dumpitt("total eval, counting to ", terms, 0, 1, 1);
    quoly_set(0, result);
    polynode alone;
    for (const polynode *t = p; t; t = t->next) {
        poll_interrupt();
        tot_eval_poly(coef_of(t, &alone), rest, &h.coef, depth + 1, skip - 1);
        best_quoly_add(result, &h.coef);
        if (!at_one) times_power(result, v, std::int64_t{t->exp} - (t->next ? t->next->exp : 0), &h.power);
    }
    if (verbose && windy) decr_dumpitt(terms);
    withdraw(&h);
}

// Numbers ---------------------------------------------------------------------------------------------------

static bool all_numbers(const quolynode *points)
{
    for (; points; points = points->next) {
        if (!points->is_num) return false;
    }
    return true;
}

// *chain = the points as nodes that carry their levels. Their numbers are borrowed.
static void borrow_points(const quolynode *points, polynode **chain)
{
    polynode **end = chain;
    std::int32_t level = 1;
    for (; points; points = points->next, ++level) {
        *end = new_constant(points->num);
        (*end)->exp = level;
        end = &(*end)->next;
    }
}

// *result = p at numbers, levels in place.
[[gnu::noinline]] static void numbers_at(const polynode *p, const quolynode *points, quolynode **result)
{
    product_work *work = open_work(__builtin_frame_address(0));
    borrow_points(points, &work->loans[0]);
    work->parts[0] = copy_poly(p);
    old_all_poly_eval(&work->parts[0], work->loans[0], 1);
    polynode *value = result_of_work(work);
    poly_to_quoly(&value, result);
}

// The language's form ---------------------------------------------------------------------------------------

static bool characteristic_two()
{
    return !flotemode && modularmode && (finf || modulus == 2);
}

static void evaluate_part(const polynode *p, const quolynode *points, quolynode **result)
{
    if (laurent || !all_numbers(points)) {
        tot_eval_poly(p, points, result, 0, 0);
        return;
    }
    if (char2_degs1 && characteristic_two()) {
        if (tot_eval_poly2_fast(p, points, result) || tot_eval_poly2(p, points, result)) return;
    }
    numbers_at(p, points, result);
}

void total_eval(quolynode **q, const quolynode *points)
{
    if ((*q)->is_num || (*q)->is_rat || !points) return;
    quolynode *top = nullptr, *den = nullptr;
    own(&top);
    own(&den);
    evaluate_part((*q)->top, points, &top);
    if ((*q)->den) {
        evaluate_part((*q)->den, points, &den);
        fast_quoly_quot(&top, den, 0);
    }
    disown();
    disown();
    free_quoly(&den);
    free_quoly(q);
    *q = top;
}

// One variable ----------------------------------------------------------------------------------------------

void spec_quoly_eval(quolynode **q, const quolynode *v, std::int32_t level)
{
    if ((*q)->is_num || (*q)->is_rat) return;
    quolynode point = *v;
    point.next = nullptr;
    quolynode *top = nullptr, *den = nullptr;
    own(&top);
    own(&den);
    tot_eval_poly((*q)->top, &point, &top, 0, level - 1);
    if ((*q)->den) {
        tot_eval_poly((*q)->den, &point, &den, 0, level - 1);
        fast_quoly_quot(&top, den, 0);
    }
    disown();
    disown();
    free_quoly(&den);
    free_quoly(q);
    *q = top;
}

void horner_quoly_eval(quolynode **q, const quolynode *v)
{
    if ((*q)->is_num || (*q)->is_rat) return;
    if (v->is_num && !laurent) {
        quolynode point = *v;
        point.next = nullptr;
        total_eval(q, &point);
    } else {
        spec_quoly_eval(q, v, 1);
    }
}

}  // namespace kelmar
