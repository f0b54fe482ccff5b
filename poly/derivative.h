#pragma once
// poly/derivative.h -- derivatives of polynomials.

#include "poly/node.h"

namespace kelmar {

// *p = the derivative of that order, >= 0, of *p in the variable of level 1, in the live view. *p replaced.
// Terms that vanish are dropped: low powers, and in modular mode powers whose exponent modulo the modulus is
// below the order. Negative exponents stay negative. Faults: an exponent of long integers that would pass
// 2^28. Polls: no.
void poly_diff(polynode **p, std::int32_t order);

// The same in the variable of `level`, counted from that of *p.
void general_poly_diff(polynode **p, std::int32_t order, std::int32_t level);

}  // namespace kelmar
