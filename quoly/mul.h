#pragma once
// quoly/mul.h -- products of scalar values.

#include "quoly/quoly.h"

namespace kelmar {

struct pt;

// *c = a * b. Operands are restored: polynomials are cut and put back. *c replaced, may be an operand.
// Errors: 32 when an exponent leaves the words; 85, 210 modulo a composite. On an error *c is as it was.
// Polls: in long products, and in gcds: of each numerator with the other denominator, where both are there.
void quoly_mult(const quolynode *a, const quolynode *b, quolynode **c);

// *a = *a * b in place. b restored, may be *a.
void fast_quoly_mult(quolynode **a, const quolynode *b);

// The same where null stands for zero, as it does in sparse structures: for operands, and for *c.
void quoly_nils_mult(const quolynode *a, const quolynode *b, quolynode **c);

// quoly_mult with `names` for the variables, without negative exponents. No interrupt is answered meanwhile.
void spec_quoly_mult(const quolynode *a, const quolynode *b, quolynode **c, pt *names);

// The variables are those of the session again, after an error in spec_quoly_mult.
void leave_given_variables();

// *c = a * b for two values with denominators.
void gen_quoly_mult(const quolynode *a, const quolynode *b, quolynode **c);

}  // namespace kelmar
