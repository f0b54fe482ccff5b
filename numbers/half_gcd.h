#pragma once
// numbers/half_gcd.h -- many Euclidean steps on long operands at once.

#include "numbers/limb_mul.h"

namespace kelmar {

#ifdef KELMAR_TINY_LIMITS
inline constexpr std::int32_t half_base_cut = 24;
inline constexpr std::int32_t half_gcd_cut = 60;
#else
inline constexpr std::int32_t half_base_cut = 120;  // limbs; below it Lehmer's steps (measured)
inline constexpr std::int32_t half_gcd_cut = 600;   // limbs of the longer; below it the same (measured)
#endif
static_assert(half_base_cut >= 24, "the leading half of a shorter part has no room for a step");

// Replace a and b, n limbs each, by two values with the same gcd that are shorter by about n / 4 limbs.
// Declines (0) when the leading limbs tell too little, because one operand is much shorter or both nearly
// agree; then a and b are as before. `work` has half_step_scratch(n) limbs, apart from both.
// Source: the half gcd of Schönhage, on the leading halves.
int half_step(limb *a, limb *b, std::int32_t n, limb *work);

// The matrices of all levels, four products, and what a product takes.
inline std::int64_t half_step_scratch(std::int32_t n)
{
    return 20 * static_cast<std::int64_t>(n) + 2048;
}

}  // namespace kelmar
