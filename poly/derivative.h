#pragma once
// poly/derivative.h -- derivatives of polynomials.

#include "poly/node.h"

namespace kelmar {

// *p = the derivative of that order of *p in the variable of level 1, in the live view. *p replaced. Terms
// that vanish are dropped: constants, and in modular mode powers whose exponent the modulus divides. Polls:
// no.
void poly_diff(polynode **p, std::int32_t order);

}  // namespace kelmar
