#pragma once
// gcd/extended.h -- the extended gcd of the language.

#include "poly/variables.h"

namespace kelmar {

// *g = gcd(a, b), monic, and cofactors with *g = *s a + *t b: modulo a prime or over a table field, in one
// variable, the outermost that occurs. swap: the operands were exchanged, so *s goes with b and *t with a.
// a, b restored; results replaced, at the level of a and b.
// Errors: 284 outside modular mode; 198 for negative exponents; 349 for a constant; 348 for a variable of the
// field, or coefficients that are no numbers; 85 modulo a composite. Then results stay. Declines (0) after
// an error. Polls: between steps.
int egcd_polys(polynode *a, polynode *b, polynode **g, polynode **s, polynode **t, const pt *names,
               std::int32_t swap);

}  // namespace kelmar
