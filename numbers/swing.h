#pragma once
// numbers/swing.h -- long factorials, by squares.

#include "numbers/number.h"

namespace kelmar {

// r = n! as digits, 0 <= n <= swing_limit. Declines (0) when the heap has no room for the primes; then r
// stays. r replaced. Cost: about half a product tree from n = 1000 on.
inline constexpr std::int32_t swing_limit = 100000;
int swing_factorial(std::int32_t n, number *r);

}  // namespace kelmar
