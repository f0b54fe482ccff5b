#pragma once
// numbers/plain_arith.h -- quotients of plain numbers, and the seam to the rational numbers of the exact
// mode.

#include "numbers/plain_quoly.h"

namespace kelmar {

// *c = a / b. *c replaced, may be an operand. Errors: 22 for b = 0; if error comes back the result is 1.
void plain_quot(const quolynode *a, const quolynode *b, quolynode **c);

// *c = quotient (op '\\') or remainder (op '|') of whole division. *c replaced, may be an operand. Doubles:
// fmod; with pos_mod a remainder below 0 gets |b| added. Errors: 22 for b = 0.
void plain_mod_or_div(const quolynode *a, const quolynode *b, quolynode **c, char op);

// *c = the rational number a / b, b nonzero, in the digit view, where the division is not exact. *c replaced,
// may be an operand. Errors: 62: the exact mode has whole numbers only; if error comes back the result is 1.
void rational_quot(const quolynode *a, const quolynode *b, quolynode **c);

}  // namespace kelmar
