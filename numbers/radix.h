#pragma once
// numbers/radix.h -- long integers to base 10^8, and products in that base.
//
// A decimal chain holds groups of eight decimal digits, most significant first, all of the sign of the
// number. Dividing by 10^8 over and over is quadratic; from 16 digits on, a number is cut in two, the halves
// are converted, and the upper one is multiplied by the power of the base that the lower one stands above. So
// the text of a huge number costs about a product of its size, and a product in base 10^8 is needed.

#include "numbers/number.h"

namespace kelmar {

// default empty; two_28[k-1] is 2^(28 k) as a decimal chain, k = 1 .. 130; the start-up code; reset: never
inline number two_28[130];

// out = the decimal chain of the `size` digits head .. tail. out replaced. head .. tail spared.
// Entries of two_28 are used where they are there, and computed where they are not.
void verybig_base_10(numnode *head, numnode *tail, std::int32_t size, number *out);

// out = a * d for decimal chains, |d| < 10^8. out replaced, may be a. *cut = the node before the tail of out,
// null if out has one group.
void simp_base_10_mult(const number *a, number *out, std::int32_t d, numnode **cut);

// c = a * b for decimal chains. c replaced, may be an operand. multiply is the schoolbook, fast_mult
// Karatsuba's.
void base_10_multiply(const number *a, const number *b, number *c);
void base_10_fast_mult(const number *a, const number *b, number *c);

}  // namespace kelmar
