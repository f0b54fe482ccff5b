#pragma once
// numbers/limb_root.h -- the square root of scratch limbs.

#include "numbers/limb_div.h"

namespace kelmar {

// s[0 .. n) = the root of a[0 .. 2n), rounded down, n > 0, where one of the two top bits of a is set. What is
// left, a - s^2, is a[0 .. n) and the limb returned, which is 0 or 1. a replaced, s filled; `scratch` has
// root_scratch(n) limbs.
// Source: Zimmermann's square root in the manner of Karatsuba.
limb root_limbs(limb *s, limb *a, std::int32_t n, limb *scratch);

inline std::int64_t root_scratch(std::int32_t n)
{
    return n + quotient_scratch(n);
}

}  // namespace kelmar
