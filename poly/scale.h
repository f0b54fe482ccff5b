#pragma once
// poly/scale.h -- a polynomial times a number.

#include "poly/node.h"

namespace kelmar {

// *c = n * p in the live view. p, n spared. *c filled, null before.
// Terms that vanish are dropped (modulo a composite, by underflow, by wrapping); the result is normal. Polls:
// no.
void scalar_by_poly(const number *n, const polynode *p, polynode **c);

// *p = *p with every word brought into 0 .. modulus - 1, in place. What vanishes is dropped; the result is
// normal. Modes: modular; in the others nothing is done. Polls: no.
void standard_form(polynode **p);

}  // namespace kelmar
