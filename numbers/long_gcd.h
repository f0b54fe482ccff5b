#pragma once
// numbers/long_gcd.h -- greatest common divisors of words and of long integers.
//
// binary_gcd is what the system calls. extgcd also divides both operands by the gcd, for rational arithmetic,
// where one operand often divides the other: it keeps the first quotients of its Euclidean steps, which then
// give the reduced operands without a division. All but gcdnum work on digit chains whatever the mode, take
// operands of either sign and zero, and give a gcd >= 0.

#include "numbers/plain_quoly.h"

namespace kelmar {

// Return gcd(a, b) of words a, b >= 0.
std::int32_t smallgcd(std::int32_t a, std::int32_t b);

// c = gcd(a, b) by Euclid's divisions, with a difference where that is enough. c replaced, may be an operand.
void gcd(const number *a, const number *b, number *c);

// c = gcd(a, b). c replaced, may be an operand.
void binary_gcd(const number *a, const number *b, number *c);

// g = gcd(a, b), *a_over_g = a / g, *b_over_g = b / g, with the signs of a and b; *is_one = (g = 1). Both
// operands 0: g = 0 and the reduced ones are 0. All three replaced, may be operands, distinct from each
// other.
void extgcd(const number *a, const number *b, number *g, number *a_over_g, number *b_over_g, int *is_one);

// The closing step of extgcd: u = a / g, v = b / g. With quotients of all its steps, newest first through
// link, by running them back; with none, by division. The word of the oldest is 2 when b was the larger
// operand, of all others 1. quotients consumed; u, v replaced, no operands; g > 0.
void wrapup(number **quotients, const number *a, const number *b, const number *g, number *u, number *v);

// *a = gcd of the plain numbers *a and *b, *b consumed. 1 in the float view. In the others a zero gives the
// other number, made non-negative; the gcd of nonzero residues is 1.
void gcdnum(quolynode **a, quolynode **b);

}  // namespace kelmar
