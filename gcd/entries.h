#pragma once
// gcd/entries.h -- gcds for the language; those of polynomials, as new problems, are in gcd/polygcd.h.

#include "quoly/quoly.h"

namespace kelmar {

// *result = the gcd of *q with itself: *q normalised. *q restored; *result replaced. Errors: 203 when *q has
// a denominator; then *result = a copy of *q. Polls: as polygcd.
void gcd_0_poly(quolynode **q, quolynode **result);

}  // namespace kelmar
