// numbers/plain_arith.cpp -- quotients, and whole division, of plain numbers.
//
// Both end in a primitive of numbers/dispatch.h, with the number record of the result handle as its result.
// The primitives allow a result that is an operand, so that "in place" is no case of its own.
#include "numbers/plain_arith.h"
#include "numbers/dispatch.h"
#include "session/report.h"

namespace kelmar {

void plain_quot(const quolynode *a, const quolynode *b, quolynode **c)
{
    if (iszero(b->num)) {
        error(err_zero_divisor, "/");
        plain_set(1, c);
        return;
    }
    quot(a->num, b->num, plain_result(c));
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
