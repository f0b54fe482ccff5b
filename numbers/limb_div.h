#pragma once
// numbers/limb_div.h -- quotients of scratch limbs.
//
// Long operands are divided by halves of the quotient: the upper part of the dividend by the upper part of
// the divisor, then the rest of the divisor, times the quotient found, is taken off by one long product.

#include "numbers/limb_mul.h"

namespace kelmar {

#ifdef KELMAR_TINY_LIMITS
inline constexpr std::int32_t halving_cut = 4;
#else
inline constexpr std::int32_t halving_cut = 20;  // limbs of the quotient; below it row by row (measured)
#endif

// q[0 .. nu - n) = u / b, u[0 .. n) = the remainder, the rest of u 0. u has nu > n limbs, b has n > 0 and its
// top bit set; u < b * 2^(56 (nu - n)). u replaced, q filled, b spared; `scratch` has quotient_scratch(n)
// limbs.
// Source: recursive division of Burnikel and Ziegler; below halving_cut the schoolbook's algorithm D.
void divide_limbs(limb *q, limb *u, std::int32_t nu, const limb *b, std::int32_t n, limb *scratch);

inline std::int64_t quotient_scratch(std::int32_t n)
{
    return n + product_scratch(n);
}

// r[0 .. n) = a[0 .. n) * 2^bits, 0 <= bits < 56; what leaves at the top is returned. r may be a.
limb shift_limbs_up(limb *r, const limb *a, std::int32_t n, std::int32_t bits);

// a[0 .. n) = a / 2^bits, 0 <= bits < 56.
void shift_limbs_down(limb *a, std::int32_t n, std::int32_t bits);

}  // namespace kelmar
