#pragma once
// numbers/plain_arith.h -- quotients of plain numbers.

#include "numbers/plain_quoly.h"

namespace kelmar {

// *c = a / b. *c replaced, may be an operand. In the digit view long integers are truncated; their rational
// quotient is quot_numbs of quoly/rational.h. Errors: 22 for b = 0; if error comes back the result is 1; 85.
void plain_quot(const quolynode *a, const quolynode *b, quolynode **c);

// *c = quotient (op '\\') or remainder (op '|') of whole division. *c replaced, may be an operand. Doubles:
// fmod; with pos_mod a remainder below 0 gets |b| added. Errors: 22 for b = 0.
void plain_mod_or_div(const quolynode *a, const quolynode *b, quolynode **c, char op);

}  // namespace kelmar
