#pragma once
// poly/monic.h -- polynomials with leading number 1.

#include "poly/node.h"

namespace kelmar {

// *p = *p / c, where *c = the leading number of *p, the number of its first terms all the way down. The lead
// is then exactly 1, with doubles too: *p is divided, not multiplied with 1 / c. What goes with *p is divided
// by c in turn (num_poly_quot). *p in place; *c replaced, no number of *p.
// Declines (0), with *p as it was and *c = 1: *p is zero; the lead has no inverse modulo a composite, after
// error 85; the lead is not a finite double. Modes: where numbers divide each other: doubles, residues, table
// fields.
int monic_poly(polynode **p, number *c);

}  // namespace kelmar
