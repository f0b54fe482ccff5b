#pragma once
// numbers/limb_mul.h -- products of scratch limbs, in both of their bases.
//
// The method goes by the length: columns, halves (Karatsuba), thirds (Toom and Cook).

#include "numbers/limb_base.h"

namespace kelmar {

// Where one method gives way to the next, in limbs of the shorter operand (measured).
struct product_cuts {
    std::int32_t columns;  // below it columns beat halves
    std::int32_t squares;  // the same for squares
    std::int32_t thirds;   // below it halves beat thirds
};

#ifdef KELMAR_TINY_LIMITS
inline constexpr product_cuts cuts_of[] = {{2, 3, 6}, {2, 2, 6}};
inline constexpr std::int32_t stack_limbs = 2;
#else
inline constexpr product_cuts cuts_of[] = {{24, 44, 200}, {40, 40, 300}};  // by limb_base

// Limbs of both operands; above it they go to the kept buffer.
inline constexpr std::int32_t stack_limbs = 32;
#endif
static_assert(stack_limbs / 2 < cuts_of[binary_limbs].columns, "products of stack arrays take no scratch");
static_assert(cuts_of[decimal_limbs].columns <= longest_column, "split_limb takes a whole column");
static_assert(cuts_of[decimal_limbs].squares <= longest_column, "split_limb takes a whole column");

// r[0 .. na + nb) = a * b for na >= nb > 0; r apart from both; a may be b. `scratch` has product_scratch(nb)
// limbs, apart from all. r filled. multiply_limbs in the base 2^56, multiply_decimal in the base 10^16.
// Source: Karatsuba's product in the form with differences; Toom-3 in the sequence of Bodrato.
void multiply_limbs(limb *r, const limb *a, std::int32_t na, const limb *b, std::int32_t nb, limb *scratch);
void multiply_decimal(limb *r, const limb *a, std::int32_t na, const limb *b, std::int32_t nb, limb *scratch);

// Thirds take three values of 2/3 of the length, and what a product of a third takes: 3 lengths of the longer
// operand in all, which has at most 3/2 of nb. Blocks take 2 nb beside that.
inline std::int64_t product_scratch(std::int32_t nb)
{
    return 6 * static_cast<std::int64_t>(nb) + 512;
}

}  // namespace kelmar
