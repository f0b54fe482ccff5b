#pragma once
// numbers/plain_arith.h -- the seam between plain numbers and the rational numbers of the exact mode.
//
// The operations themselves are declared in numbers/plain_quoly.h.

#include "numbers/plain_quoly.h"

namespace kelmar {

// *c = the rational number a / b, b nonzero, in the digit view, where the division is not exact. *c replaced,
// may be an operand. Errors: 62: the exact mode has whole numbers only; if error comes back the result is 1.
void rational_quot(const quolynode *a, const quolynode *b, quolynode **c);

}  // namespace kelmar
