#pragma once
// gcd/emgcd.h -- the half-gcd on lists, for polynomials of one variable that are too long for arrays.
//
// Modular mode over a field; every coefficient is a number. A pair is held by two handles; a step makes
// (a, b) into (b, a mod b). Polls: between steps; what is left then is the handles', and is consistent.

#include "poly/variables.h"

namespace kelmar {

// *result = gcd(a, b), up to a unit, deg a >= deg b > 0; 1 when it is a number. first: begin with a division
// step. a, b restored; *result replaced.
void emgcd_poly(polynode *a, polynode *b, polynode **result, const pt *names, std::int32_t first);

// Bring the pair *a, *b, deg *a >= deg *b, or *b a number, to deg *b below half of the first deg *a. matrix:
// *t11 .. *t22 = the matrix that takes the old pair to the new one; replaced. By halves from degree
// poly_cutoff on.
void emgcd_full(polynode **a, polynode **b, polynode **t11, polynode **t12, polynode **t21, polynode **t22,
                std::int32_t matrix);

// The same by single steps. A number ends it.
void emgcd_basic(polynode **a, polynode **b, polynode **t11, polynode **t12, polynode **t21, polynode **t22,
                 std::int32_t matrix);
void emgcd_fastest(polynode **a, polynode **b, polynode **t11, polynode **t12, polynode **t21, polynode **t22,
                   std::int32_t matrix);

}  // namespace kelmar
