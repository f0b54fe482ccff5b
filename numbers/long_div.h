#pragma once
// numbers/long_div.h -- quotients and remainders of long integers.
//
// The method goes by the sizes: values of two digits are divided in a register, a one-digit divisor takes one
// pass down the chain, and longer operands are gathered in scratch limbs (numbers/limb_div.h). All work on
// digit chains whatever the mode. Zero divisors are the caller's to test.

#include "numbers/number.h"

namespace kelmar {

// q = a / b truncated toward zero, r = the remainder. a, b spared; q, r replaced, may be operands, distinct
// from each other. Magnitudes are divided; q AND r are negated exactly when the signs of a and b differ. So
// q b + r = a when b > 0 (or r = 0). b = 0: nothing is done.
// Cost: as for a few products of the size of q and b.
void divide(const number *a, const number *b, number *q, number *r);

// The same for a >= 0, b > 0.
void pos_divide(const number *a, const number *b, number *q, number *r);

// One quotient digit: the first `len` nodes from `head`, none negative, divided by b > 0, the quotient known
// to fit one digit. q, r replaced, may hold the operands.
void simp_divide(const numnode *head, std::int32_t len, const number *b, number *q, number *r);

// r = a mod b for a >= 0, b > 0, given as bare chains. r replaced, may hold an operand.
void pos_divide_noq(const numnode *head_a, const numnode *head_b, const numnode *tail_b, std::int32_t size_a,
                    std::int32_t size_b, number *r);
void simp_divide_noq(const numnode *head_a, const numnode *head_b, const numnode *tail_b, std::int32_t len,
                     std::int32_t size_b, number *r);

// The long integer n reduced by the global modulus, as a word; n < 0 gives a word <= 0. Of a remainder of two
// digits (modulus >= 2^28) the head digit is returned. on purpose: settled behaviour.
std::int32_t modout(const number *n);

// a = a mod 2^(28 (size(b) - 1)), when size(b) <= size(a). a replaced in place. Nothing calls it.
void fast_modout(number *a, const number *b);

// The head digit of the quotient of the long integer a by the positive word d, whatever the mode.
std::int32_t quotient_of(const number *a, std::int32_t d);

// The long integer a is x * y, whatever the mode.
bool is_product_of(const number *a, std::int32_t x, std::int32_t y);

}  // namespace kelmar
