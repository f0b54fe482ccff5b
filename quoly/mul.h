#pragma once
// quoly/mul.h -- products of scalar values.

#include "quoly/quoly.h"

namespace kelmar {

// *c = a * b. Operands are restored: polynomials are cut and put back. *c replaced, may be an operand.
// Errors: 32 when an exponent leaves the words. Polls: in long products.
void quoly_mult(const quolynode *a, const quolynode *b, quolynode **c);

// *a = *a * b in place. b restored, may be *a.
void fast_quoly_mult(quolynode **a, const quolynode *b);

}  // namespace kelmar
