#pragma once
// poly/content.h -- the number content of a polynomial: the gcd of all its numbers.
//
// In the word modes, and with doubles, every nonzero number divides every other, and the content is 1.

#include "poly/node.h"

namespace kelmar {

// *g = the content of p, above zero; 1 in the word views. p spared; *g replaced, no number of p. Faults: p
// is zero, or leads with a zero; then *g = 1. Polls: before each number; *g stays when it does not come back.
void find_gcdcoefs(const polynode *p, number *g);

// *c = the same as a constant. *c replaced, may be p.
void gcd_coefs(const polynode *p, polynode **c);

}  // namespace kelmar
