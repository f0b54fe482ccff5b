#pragma once
// poly/div_pseudo.h -- division with remainder where the leading coefficient of the divisor does not divide.
//
// c is the leading coefficient of m, and k = deg n - deg m + 1. m is not zero. n, m spared; results filled.

#include "poly/variables.h"

namespace kelmar {

// c^k n = q m + r, deg r < deg m; where c is invertible, n = q m + r. deg n < deg m: q = 0, r = n. want_r =
// 0: no remainder is kept, and r may be null. Errors: 32 when exponents below leave the words. Polls: between
// steps.
// Source: Knuth, The Art of Computer Programming 2, 4.6.1 algorithm R.
void pseudo_div(polynode *n, polynode *m, polynode **q, polynode **r, int want_r, const pt *var);

// The remainder alone. scale_all = 0: c only to the power of the steps that were made, which may be below k.
// Faults: deg m < 1.
void pseudo_div_no_q(polynode *n, polynode *m, polynode **r, const pt *var, int scale_all);

}  // namespace kelmar
