// numbers/plain_arith.cpp -- the four operations, and whole division, on plain numbers.
//
// The flavours differ in who owns the operands, and to plain numbers that is all: each ends in the primitive
// of numbers/dispatch.h, with the number record of the result handle as its result. The primitives allow a
// result that is an operand, so that "in place" is no case of its own.
#include "numbers/plain_arith.h"
#include "numbers/dispatch.h"
#include "numbers/long_div.h"
#include "session/report.h"

namespace kelmar {

// Sums --------------------------------------------------------------------------------------------------

void quoly_add(const quolynode *a, const quolynode *b, quolynode **c)
{
    num_add(a->num, b->num, plain_result(c));
}

void quoly_sub(const quolynode *a, const quolynode *b, quolynode **c)
{
    num_sub(a->num, b->num, plain_result(c));
}

void better_quoly_add(quolynode **a, const quolynode *b)
{
    num_add((*a)->num, b->num, (*a)->num);
}

void better_quoly_sub(quolynode **a, const quolynode *b)
{
    num_sub((*a)->num, b->num, (*a)->num);
}

void best_quoly_add(quolynode **a, quolynode **b)
{
    better_quoly_add(a, *b);
    free_quoly(b);
}

void best_quoly_sub(quolynode **a, quolynode **b)
{
    better_quoly_sub(a, *b);
    free_quoly(b);
}

// Products and quotients --------------------------------------------------------------------------------

void quoly_mult(const quolynode *a, const quolynode *b, quolynode **c)
{
    num_mul(a->num, b->num, plain_result(c));
}

void fast_quoly_mult(quolynode **a, const quolynode *b)
{
    num_mul((*a)->num, b->num, (*a)->num);
}

void rational_quot(const quolynode *, const quolynode *, quolynode **c)
{
    error(err_wrong_ring, "/");
    quoly_set(1, c);
}

// The digit view: a plain number when the division is exact.
static void exact_quot(const quolynode *a, const quolynode *b, quolynode **c)
{
    number quotient, rest;
    quotient.size = rest.size = 0;
    divide(a->num, b->num, &quotient, &rest);
    const bool exact = rest.head->digit == 0;
    special_free(&rest);
    if (!exact) {
        special_free(&quotient);
        rational_quot(a, b, c);
        return;
    }
    number *result = plain_result(c);
    take_chain(result, quotient.head, quotient.tail, quotient.size);
}

void quoly_quot(const quolynode *a, const quolynode *b, std::int32_t /*no_reduce*/, quolynode **c)
{
    if (iszero(b->num)) {
        error(err_zero_divisor, "/");
        quoly_set(1, c);
        return;
    }
    if (live_view() == view_digits) {
        exact_quot(a, b, c);
    } else {
        quot(a->num, b->num, plain_result(c));
    }
}

void fast_quoly_quot(quolynode **a, const quolynode *b, std::int32_t no_reduce)
{
    quoly_quot(*a, b, no_reduce, a);
}

void quoly_mod_or_div(const quolynode *a, const quolynode *b, quolynode **c, char op)
{
    if (iszero(b->num)) {
        error(err_zero_divisor, "/");
        quoly_set(1, c);
        return;
    }
    mod_or_div(a->num, b->num, plain_result(c), op);
}

}  // namespace kelmar
