// quoly/divide.cpp -- quotients of scalar values.
//
// Numbers are divided at once. A quotient with a polynomial in it is the product with the divisor upside
// down, of which the two cross gcds are those of the numerators and of the denominators. The divisor itself
// is not touched: its two polynomials are read in the other order.
#include "quoly/divide.h"
#include "numbers/compare.h"
#include "numbers/dispatch.h"
#include "numbers/plain_arith.h"
#include "poly/div.h"
#include "poly/div_exact.h"
#include "poly/mul_work.h"
#include "quoly/cross.h"
#include "quoly/normal_form.h"
#include "quoly/rational.h"
#include "session/report.h"

namespace kelmar {

// Quotients ---------------------------------------------------------------------------------------------

static void quotient_of_numbers(const quolynode *a, const quolynode *b, quolynode **c)
{
    if (live_view() == view_digits) {
        quot_numbs(a->num, b->num, c);
        return;
    }
    if (*c && !(*c)->is_num) free_polynomials(c);
    plain_quot(a, b, c);
}

// One of the two is rational, the other rational or a plain number. Declines (0) otherwise.
static int quotient_of_rationals(const quolynode *a, const quolynode *b, quolynode **c)
{
    if (is_rational(a) && is_rational(b)) {
        quot_rats(a, b, c);
    } else if (a->is_num && is_rational(b)) {
        quot_numb_rat(a->num, b, c);
    } else if (b->is_num && is_rational(a)) {
        quot_rat_numb(a, b->num, c);
    } else {
        return 0;
    }
    return 1;
}

// *c = p / n without a gcd: where numbers divide each other, or are truncated.
[[gnu::noinline]] static void quotient_by_number(const quolynode *a, number *n, quolynode **c)
{
    product_work *work = open_work(__builtin_frame_address(0));
    work->parts[0] = copy_poly(a->top);
    num_poly_quot(&work->parts[0], n);
    polynode *quotient = result_of_work(work);
    poly_to_quoly(&quotient, c);
}

void quoly_quot(const quolynode *a, const quolynode *b, std::int32_t no_reduce, quolynode **c)
{
    if (quoly_iszero(b)) {
        error(err_zero_divisor, "/");
        quoly_set(1, c);
    } else if (__builtin_expect(a->is_num && b->is_num, 1)) {
        quotient_of_numbers(a, b, c);
    } else if (a == b) {
        quoly_set(1, c);
    } else if (quotient_of_rationals(a, b, c)) {
        return;
    } else if (b->is_num && !a->den && (lintmode || integerflag)) {
        quotient_by_number(a, b->num, c);
    } else {
        poly_room a_room, b_room;
        const fraction x = parts_of(a, &a_room), y = parts_of(b, &b_room), turned = {y.den, y.top};
        cross_multiply(&x, &turned, no_reduce ? not_the_first : both_gcds, laurent, c);
    }
}

void fast_quoly_quot(quolynode **a, const quolynode *b, std::int32_t no_reduce)
{
    quoly_quot(*a, b, no_reduce, a);
}

int quoly_exact_quot(const quolynode *a, const quolynode *b, quolynode **c)
{
    poly_room a_room, b_room;
    polynode *quotient = exact_quotient(as_poly(a, &a_room), as_poly(b, &b_room), polynames);
    if (!quotient) return 0;
    poly_to_quoly(&quotient, c);
    return 1;
}

// Reciprocals -------------------------------------------------------------------------------------------

// n = 1 / n for a number that is not zero, where numbers are no digit chains.
static void reciprocal_of_word(number *n)
{
    int minus;
    if (!flotemode && !modularmode) {
        if (!equal_to_pm1(n, &minus)) setvalue(0, n);
        return;
    }
    number one;
    one.size = 0;
    setvalue(1, &one);
    quot(&one, n, n);
}

static void reciprocal_of_number(quolynode **q)
{
    if (iszero((*q)->num)) {
        error(err_zero_divisor, "/");
        quoly_set(1, q);
    } else if (live_view() == view_digits) {
        recip_numb((*q)->num, q);
    } else {
        reciprocal_of_word((*q)->num);
    }
}

void quoly_reciprocal(quolynode **q)
{
    if ((*q)->is_num) {
        reciprocal_of_number(q);
        return;
    }
    polynode *const top = (*q)->top;
    (*q)->top = (*q)->den;
    (*q)->den = top;
    if (!(*q)->top) poly_set(1, &(*q)->top);
    normal_form(q, laurent);
}

void lint_quoly_recip(quolynode **q)
{
    quoly_reciprocal(q);
}

// Whole division ----------------------------------------------------------------------------------------

// *c = numerator and denominator of a, divided by the numerator of b.
[[gnu::noinline]] static void mod_or_div_fraction(const quolynode *a, polynode *divisor, quolynode **c,
                                                  char op)
{
    product_work *work = open_work(__builtin_frame_address(0));
    polynode **const top = &work->parts[0], **const den = &work->parts[1];
    poly_mod_or_div(a->top, divisor, top, op, polynames);
    poly_mod_or_div(a->den, divisor, den, op, polynames);
    polynode *new_top = *top, *new_den = *den;
    if (poly_iszero(new_den)) {
        close_work(work);
        error(err_zero_denominator, op == '|' ? "|" : "\\");
        quoly_set(1, c);
        return;
    }
    *top = *den = nullptr;
    close_work(work);
    put_fraction(&new_top, &new_den, c);
    check_quoly(c, laurent);
}

void quoly_mod_or_div(const quolynode *a, const quolynode *b, quolynode **c, char op)
{
    poly_room a_room, b_room;
    polynode *result = nullptr;
    if (__builtin_expect(a->is_num && b->is_num, 1)) {
        if (*c && !(*c)->is_num) free_polynomials(c);
        plain_mod_or_div(a, b, c, op);
    } else if (quoly_iszero(b)) {
        error(err_zero_divisor, op == '|' ? "|" : "\\");
        quoly_set(1, c);
    } else if (!a->is_num && a->den) {
        mod_or_div_fraction(a, as_poly(b, &b_room), c, op);
    } else {
        poly_mod_or_div(as_poly(a, &a_room), as_poly(b, &b_room), &result, op, polynames);
        poly_to_quoly(&result, c);
    }
}

}  // namespace kelmar
