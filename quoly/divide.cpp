// quoly/divide.cpp -- quotients of scalar values.
//
// Numbers are divided at once. What has a polynomial in it goes to the divisions of polynomials, to which a
// plain number is shown as a polynomial without a copy. A quotient that would need a denominator is declined.
#include "quoly/divide.h"
#include "numbers/compare.h"
#include "numbers/plain_arith.h"
#include "poly/div.h"
#include "poly/div_exact.h"
#include "session/report.h"

namespace kelmar {

// Polynomials by numbers ---------------------------------------------------------------------------------

// *c = 1 after the report that there is no such value.
static void decline_quotient(quolynode **c)
{
    error(err_wrong_ring, "/");
    quoly_set(1, c);
}

static void divide_by_number(const quolynode *a, const quolynode *b, quolynode **c)
{
    polynode room;
    polynode *const divisor = as_poly(b, &room);
    polynode *quotient = nullptr;
    int exact = 1;
    if (iszero(b->num)) {
        error(err_zero_divisor, "/");
        quoly_set(1, c);
    } else if (exact_integers() && !integerflag) {
        trial_poly_quot(a->top, divisor, &quotient, &exact);
    } else {
        poly_quot(a->top, divisor, &quotient, 0);
    }
    if (!exact) {
        decline_quotient(c);
    } else if (quotient) {
        poly_to_quoly(&quotient, c);
    }
}

// By polynomials -----------------------------------------------------------------------------------------

int quoly_exact_quot(const quolynode *a, const quolynode *b, quolynode **c)
{
    polynode a_room, b_room;
    polynode *quotient = exact_quotient(as_poly(a, &a_room), as_poly(b, &b_room), polynames);
    if (!quotient) return 0;
    poly_to_quoly(&quotient, c);
    return 1;
}

void quoly_quot_poly(const quolynode *a, const quolynode *b, std::int32_t, quolynode **c)
{
    if (!quoly_exact_quot(a, b, c)) decline_quotient(c);
}

static void mod_or_div_poly(const quolynode *a, const quolynode *b, quolynode **c, char op)
{
    polynode a_room, b_room;
    polynode *result = nullptr;
    poly_mod_or_div(as_poly(a, &a_room), as_poly(b, &b_room), &result, op, polynames);
    poly_to_quoly(&result, c);
}

// Values -------------------------------------------------------------------------------------------------

// Take away what *c holds when both operands are plain numbers, and the result will be one.
static void make_plain_place(quolynode **c)
{
    if (*c && !(*c)->is_num) free_polynomials(c);
}

void quoly_quot(const quolynode *a, const quolynode *b, std::int32_t no_reduce, quolynode **c)
{
    if (__builtin_expect(a->is_num && b->is_num, 1)) {
        make_plain_place(c);
        plain_quot(a, b, c);
    } else if (b->is_num) {
        divide_by_number(a, b, c);
    } else {
        quoly_quot_poly(a, b, no_reduce, c);
    }
}

void fast_quoly_quot(quolynode **a, const quolynode *b, std::int32_t no_reduce)
{
    quoly_quot(*a, b, no_reduce, a);
}

void quoly_mod_or_div(const quolynode *a, const quolynode *b, quolynode **c, char op)
{
    if (__builtin_expect(a->is_num && b->is_num, 1)) {
        make_plain_place(c);
        plain_mod_or_div(a, b, c, op);
    } else {
        mod_or_div_poly(a, b, c, op);
    }
}

}  // namespace kelmar
