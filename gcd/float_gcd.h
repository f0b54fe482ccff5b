#pragma once
// gcd/float_gcd.h -- gcds in one variable over doubles, where rounding hides the zeros.
//
// A remainder whose numbers all lie below the noise of its making counts as zero. What the noise has made of
// the sequence is found out at the end: the gcd must divide both operands but for noise, or 1 is the answer,
// which is always a right one for a quotient.

#include "poly/variables.h"

namespace kelmar {

inline constexpr double noise_part = 0x1p-36;        // of the largest number met: below it a number is noise
inline constexpr double check_noise_part = 0x1p-30;  // the same for the check of a gcd

// *result = gcd(a, b), with leading number 1; 1.0 when it is a number. A zero operand gives the other one.
// monic: a result that is an operand is scaled too. a, b restored; *result replaced. With the stash in use
// the result may come from it.
// Faults: " number in float basic_poly_gcd ", for an operand that is a number but zero; then *result = 1.0.
// Modes: doubles. Polls: between steps.
void fl_basic_poly_gcd(polynode *a, polynode *b, polynode **result, std::int32_t monic, const pt *names);

// Take the numbers that are at most noise_part times `scale` in magnitude out of *p, at every level; scale
// counts as 1 at least. Return 1 when nothing is left: then *p = 0. *p in place.
int purge_fl(polynode **p, double scale);

}  // namespace kelmar
