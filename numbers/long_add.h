#pragma once
// numbers/long_add.h -- sums and differences of digit chains.
//
// Digits stand most significant first in a singly linked chain, so a carry cannot run from the right. One
// forward pass writes each digit and adds its carry to the digit before; only when that digit leaves the
// range is it remembered, and a rare backward repair over reversed links mends the rest.
//
//                         operands              result                         base
//   fastsum, fastdiff     two numbers           a, in place, its nodes reused  2^28
//   medsum, meddiff       two bare chains       c, may hold either operand     2^28
//   summ                  two numbers           c, may be an operand           given
//   diff                  a chain, a number     c, may be an operand           given
//
// All read and write digit chains whatever the mode; `sub` alone dispatches on it.

#include "numbers/number.h"

namespace kelmar {

// a += b, a -= b. a replaced in place; b spared, may be a.
void fastsum(number *a, const number *b);
void fastdiff(number *a, const number *b);

// c = a + b, c = a - b. c replaced: its old chain goes last.
void medsum(std::int32_t size_a, std::int32_t size_b, const numnode *head_a, const numnode *head_b,
            number *c);
void meddiff(std::int32_t size_a, std::int32_t size_b, const numnode *head_a, const numnode *head_b,
             number *c);

// c = a + b in `base`. c replaced.
void summ(const number *a, const number *b, number *c, std::int32_t base);

// c = a - b in `base`. c replaced.
void diff(const numnode *head_a, std::int32_t size_a, const number *b, number *c, std::int32_t base);

// c = a - b in the live view. c replaced, may be an operand; in place when c holds the chain of a. The small
// view subtracts whole chains.
void sub(const number *a, const number *b, number *c);

// Run the carries of n from the node `damaged` back to the head, which grows or loses a node when need be.
// sign: 0, or -1 for a negative n; taken by its sign, each digit from the head to `damaged` is in -1 .. base,
// and those behind it are in range. n replaced in place.
void mend_carries(number *n, numnode *damaged, std::int32_t sign, std::int32_t base);

}  // namespace kelmar
