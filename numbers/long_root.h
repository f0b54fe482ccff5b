#pragma once
// numbers/long_root.h -- square roots of long integers and of residues.

#include "numbers/number.h"

namespace kelmar {

// default -1; the modulus that sqrt_c, sqrt_s and sqrt_m belong to; modular_sqrt; reset: never
inline std::int32_t sqrt_mod = -1;
inline std::int32_t sqrt_s = 0;  // modulus - 1 = 2^sqrt_s * sqrt_m, sqrt_m odd
inline std::int32_t sqrt_m = 0;
inline std::int32_t sqrt_c = 0;  // an element of order 2^sqrt_s

// r = the integer nearest to the square root of the long integer a >= 0; 0 for a < 0. r replaced, may be a.
// copy: a spared. Otherwise a consumed: its chain is released, its record is the caller's.
void int_sqrt(number *a, number *r, int copy);

// x^((modulus-1)/2) = 1: the residue x is a nonzero square, for a prime modulus.
bool its_a_square(std::int32_t x);

// Return a square root of the residue x; 0 when x has none. The modulus is a prime; a composite one gives
// some residue, and ends.
std::int32_t modular_sqrt(std::int32_t x);

}  // namespace kelmar
