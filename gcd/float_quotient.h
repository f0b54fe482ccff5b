#pragma once
// gcd/float_quotient.h -- quotients of polynomials over doubles by their values on circles.
//
// Long division hands its rounding errors on from term to term, and where a divisor has large roots they grow
// beyond any bound. Values at roots of unity know nothing of each other: each is divided for itself, and the
// way from values to coefficients and back is a rotation, which makes no error larger. It costs more, so it
// is for what long division leaves undecided.

#include "poly/variables.h"

namespace kelmar {

// Return a / b as a fresh polynomial, or null: b does not divide a but for noise, or the operands are too
// large for a grid of values. a, b restored; neither is a number. Balanced operands (gcd/balance.h) give the
// best results. Modes: doubles. Polls: between variables. Cost: the grid, one more than the degree of a in
// each variable, times the sum of its sides.
polynode *float_quotient(polynode *a, polynode *b, const pt *names);

}  // namespace kelmar
