#pragma once
// quoly/add.h -- sums and differences of scalar values.
//
//               plain     better_   best_     fast_gen_
//   a           spared    consumed  consumed  consumed   all but the plain ones work in place on *a
//   b           spared    spared    consumed  spared
//
// A gcd is taken only where denominators have one: not where one operand has none, and of the new numerator
// only with what the two denominators share. Denominators that prove coprime give a sum in lowest terms. On
// an error the result is as it was, and so are operands, but that best_ keeps no b.
// Errors: 32 in products; 85 and 210 modulo a composite. Polls: with denominators.

#include "quoly/quoly.h"

namespace kelmar {

// *c = a + b, a - b. *c replaced, may be an operand. a - b for a = b is 0 at once.
void quoly_add(const quolynode *a, const quolynode *b, quolynode **c);
void quoly_sub(const quolynode *a, const quolynode *b, quolynode **c);

// *a = *a + b, *a - b, in place. b may be *a.
void better_quoly_add(quolynode **a, const quolynode *b);
void better_quoly_sub(quolynode **a, const quolynode *b);

// *a = *a + *b, *a - *b; *b consumed, becomes null.
void best_quoly_add(quolynode **a, quolynode **b);
void best_quoly_sub(quolynode **a, quolynode **b);

// The same where null stands for zero, as it does in sparse structures.
void best_quoly_nils_sub(quolynode **a, quolynode **b);

// Fractions ---------------------------------------------------------------------------------------------

// *c = p + q, or p - q with subtract, for a polynomial p and a q with a denominator. No gcd is taken, since
// gcd(p d + n, d) = gcd(n, d). p, q restored. *c replaced, may be q; then its numerator is used again.
void no_denom(polynode *p, const quolynode *q, quolynode **c, int subtract);

// *q = *q - p in place; *c = q - p.
void no_denom_minus(polynode *p, quolynode **q);
void no_denom_minus_2(polynode *p, const quolynode *q, quolynode **c);

// *c = a + b, or a - b with add = 0, for two values with denominators. *c replaced, may be an operand.
void general_quoly_add(const quolynode *a, const quolynode *b, quolynode **c, int add);

// *a = *a + b or *a - b in place for two values with denominators.
void fast_gen_quoly_add(quolynode **a, const quolynode *b, int add);

}  // namespace kelmar
