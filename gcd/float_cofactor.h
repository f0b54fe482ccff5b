#pragma once
// gcd/float_cofactor.h -- what is left of a small polynomial without its gcd with a large one, over doubles.

#include "poly/variables.h"

namespace kelmar {

// Return b / gcd(a, b), monic, or null: it is b itself as far as can be seen, or b is too large for this. The
// result is a guess, to be checked by division. a, b restored, of positive degree, best balanced
// (gcd/balance.h). Modes: doubles. Polls.
polynode *float_cofactor(polynode *a, polynode *b);

}  // namespace kelmar
