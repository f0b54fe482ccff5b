#pragma once
// numbers/lehmer.h -- Lehmer's step: the Euclidean quotients that the leading bits of two operands tell.

#include "numbers/limbs.h"

namespace kelmar {

// (a, b) = M (a', b') with determinant 1, so a' = m11 a - m01 b and b' = m00 b - m10 a.
struct step_matrix {
    std::uint64_t m00, m01, m10, m11;
};

// *m = the quotients that the 128 leading bits of a, a limbs array of n > 2 limbs with a nonzero top, and the
// bits of b at the same places tell. Both operands stay at 2^(t - 128) or above, t the bits of the longer.
// Declines (0) when they tell none: one operand is much shorter, or both nearly agree.
int find_step(const limb *a, const limb *b, std::int32_t n, step_matrix *m);

// Apply the inverse of m to both operands, n limbs each.
void apply_step(const step_matrix *m, limb *a, limb *b, std::int32_t n);

}  // namespace kelmar
