#pragma once
// numbers/long_mul.h -- products of long integers.
//
// fast_mult is what the system calls. It chooses by the sizes: one and two digits are multiplied in a
// register, one digit goes down a chain, and longer operands are gathered in scratch limbs
// (numbers/limb_mul.h). multiply works on the chains alone; its trick is that an accumulator times the base
// is the same chain with a new tail. All ignore the mode flags; multout alone asks for the live view.

#include "numbers/number.h"

namespace kelmar {

// out = a * d for |d| < 2^28. out replaced, may be a. *cut = the node before the tail of out, null if out has
// one digit.
void simp_mult(const number *a, number *out, std::int32_t d, numnode **cut);

// c = a * b, schoolbook on chains. c replaced, may be an operand; a may be b.
void multiply(const number *a, const number *b, number *c);

// c = a * b. a, b spared; a may be b. c replaced, may be an operand.
// Cost: at most n^1.585; long operands need scratch of about 5 times their limbs.
void fast_mult(const number *a, const number *b, number *c);

// n = lo * (lo + 1) * .. * hi in the live view, lo <= hi, by a product tree. n replaced. In the modular views
// each factor is reduced first, and the product ends as soon as it is 0.
void multout(std::int32_t lo, std::int32_t hi, number *n);

// n = n * 2^(28 k): k zero digits at the tail; none for zero or k < 1. tail->next is set to null in any case.
void fillout(number *n, std::int32_t k);

// The product of two words is above 1000000, or takes two digits: an array of that shape is refused.
bool oversize(std::int32_t x, std::int32_t y);
bool sparse_oversize(std::int32_t x, std::int32_t y);

}  // namespace kelmar
