#pragma once
// quoly/divide.h -- quotients and whole division of scalar values.

#include "quoly/quoly.h"

namespace kelmar {

// *c = a / b. *c replaced, may be an operand. fast_: *a = *a / b in place. A polynomial is divided by a
// number term by term. `no_reduce` is the // form; it says nothing where there are no denominators. Errors:
// 22 at quotsign for b = 0; 85; 62 where the division leaves something. If error comes back the result is 1.
void quoly_quot(const quolynode *a, const quolynode *b, std::int32_t no_reduce, quolynode **c);
void fast_quoly_quot(quolynode **a, const quolynode *b, std::int32_t no_reduce);

// *c = quotient (op '\\') or remainder (op '|') of whole division: poly/div.h where one is a polynomial. *c
// replaced, may be an operand. Doubles: fmod; with pos_mod a remainder below 0 gets |b| added. Errors: 22 for
// b = 0; 85; 205 for negative exponents.
void quoly_mod_or_div(const quolynode *a, const quolynode *b, quolynode **c, char op);

// *c = a / b for a polynomial b, when b divides a. Declines (0): it does not; *c stays.
int quoly_exact_quot(const quolynode *a, const quolynode *b, quolynode **c);

// *c = a / b for a polynomial b. Errors: 62 when b does not divide: a value has no denominator. Then *c = 1.
void quoly_quot_poly(const quolynode *a, const quolynode *b, std::int32_t no_reduce, quolynode **c);

}  // namespace kelmar
