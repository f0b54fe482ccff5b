#pragma once
// numbers/radix_mul.h -- products of decimal limbs: magnitudes as arrays of 16 decimal digits a limb.
//
// Least significant first, as in numbers/limbs.h. The method goes by the length: columns, halves (Karatsuba),
// thirds (Toom and Cook).

#include "numbers/limbs.h"

namespace kelmar {

inline constexpr limb ten_base = 10000000000000000;  // 10^16: two groups of eight

#ifdef KELMAR_TINY_LIMITS
inline constexpr std::int32_t decimal_column_cut = 2;
inline constexpr std::int32_t decimal_thirds_cut = 6;
#else
inline constexpr std::int32_t decimal_column_cut = 40;   // limbs; below it columns beat halves (measured)
inline constexpr std::int32_t decimal_thirds_cut = 300;  // limbs; below it halves beat thirds (measured)
#endif
static_assert(decimal_column_cut <= 64, "split_limb is exact for 64 products of two limbs");

// Return *v mod 10^16 and make *v the quotient, *v < 2^113: 64 products of two limbs and a carry.
inline limb split_limb(double_limb *v)
{
    constexpr limb reciprocal = static_cast<limb>((static_cast<double_limb>(1) << 117) / ten_base);
    limb q = static_cast<limb>(static_cast<double_limb>(static_cast<limb>(*v >> 49)) * reciprocal >> 68);
    limb rest = static_cast<limb>(*v) - q * ten_base;
    if (rest >= ten_base) {  // the estimate is one short at most
        rest -= ten_base;
        ++q;
    }
    *v = q;
    return rest;
}

// r[0 .. n) += t[0 .. nt), nt <= n; the sum is known to fit.
void add_decimal(limb *r, std::int32_t n, const limb *t, std::int32_t nt);

// r[0 .. na + nb) = a * b for na >= nb > 0; r apart from both; a may be b. `scratch` has
// decimal_scratch(nb) limbs, apart from all. r filled.
// Source: Karatsuba's product in the form with differences; Toom-3 in the sequence of Bodrato.
void multiply_decimal(limb *r, const limb *a, std::int32_t na, const limb *b, std::int32_t nb, limb *scratch);

// Thirds take three values of 2/3 of the length, and what a product of a third takes: 3 lengths of the longer
// operand in all, which has at most 3/2 of nb. Blocks take 2 nb beside that.
inline std::int64_t decimal_scratch(std::int32_t nb)
{
    return 6 * static_cast<std::int64_t>(nb) + 512;
}

}  // namespace kelmar
