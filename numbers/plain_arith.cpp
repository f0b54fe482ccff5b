// numbers/plain_arith.cpp -- quotients, and whole division, of plain numbers.
//
// Both end in a primitive of numbers/dispatch.h, with the number record of the result handle as its result.
// The primitives allow a result that is an operand, so that "in place" is no case of its own.
#include "numbers/plain_arith.h"
#include "numbers/dispatch.h"
#include "numbers/long_div.h"
#include "session/report.h"

namespace kelmar {

void rational_quot(const quolynode *, const quolynode *, quolynode **c)
{
    error(err_wrong_ring, "/");
    plain_set(1, c);
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

void plain_quot(const quolynode *a, const quolynode *b, quolynode **c)
{
    if (iszero(b->num)) {
        error(err_zero_divisor, "/");
        plain_set(1, c);
        return;
    }
    if (live_view() == view_digits) {
        exact_quot(a, b, c);
    } else {
        quot(a->num, b->num, plain_result(c));
    }
}

void plain_mod_or_div(const quolynode *a, const quolynode *b, quolynode **c, char op)
{
    if (iszero(b->num)) {
        error(err_zero_divisor, "/");
        plain_set(1, c);
        return;
    }
    mod_or_div(a->num, b->num, plain_result(c), op);
}

}  // namespace kelmar
