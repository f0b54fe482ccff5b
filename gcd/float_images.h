#pragma once
// gcd/float_images.h -- what polynomials over doubles have in common, as their values at points tell it.

#include "poly/node.h"

namespace kelmar {

// True when a and b, of positive degree, have no common divisor of positive degree in the outer variable:
// at points for the other variables their values, polynomials in one variable, are far from having one.
// false says nothing. a, b spared, best balanced (gcd/balance.h). Modes: doubles. Cost: a few passes over
// the terms.
bool coprime_at_points(const polynode *a, const polynode *b);

}  // namespace kelmar
