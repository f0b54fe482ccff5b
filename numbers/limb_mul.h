#pragma once
// numbers/limb_mul.h -- products of scratch limbs.
//
// The method goes by the length: columns, halves (Karatsuba), thirds (Toom and Cook).

#include "numbers/limbs.h"

namespace kelmar {

#ifdef KELMAR_TINY_LIMITS
inline constexpr std::int32_t column_cut = 2;
inline constexpr std::int32_t square_cut = 3;
inline constexpr std::int32_t thirds_cut = 6;
inline constexpr std::int32_t stack_limbs = 2;
#else
inline constexpr std::int32_t column_cut = 24;   // limbs; below it columns beat halves (measured)
inline constexpr std::int32_t square_cut = 44;   // the same for squares
inline constexpr std::int32_t thirds_cut = 200;  // limbs; below it halves beat thirds (measured)
inline constexpr std::int32_t stack_limbs = 32;  // of both operands; above it they go to the kept buffer
#endif
static_assert(stack_limbs / 2 < column_cut, "products of stack arrays take no scratch");

// r[0 .. na + nb) = a * b for na >= nb > 0; r apart from both; a may be b. `scratch` has product_scratch(nb)
// limbs, apart from all. r filled.
// Source: Karatsuba's product in the form with differences; Toom-3 in the sequence of Bodrato.
void multiply_limbs(limb *r, const limb *a, std::int32_t na, const limb *b, std::int32_t nb, limb *scratch);

// Thirds take three values of 2/3 of the length, and what a product of a third takes: 3 lengths of the longer
// operand in all, which has at most 3/2 of nb. Blocks take 2 nb beside that.
inline std::int64_t product_scratch(std::int32_t nb)
{
    return 6 * static_cast<std::int64_t>(nb) + 512;
}

}  // namespace kelmar
