#pragma once
// quoly/add.h -- sums and differences of scalar values.
//
//               plain     better_   best_
//   a           spared    consumed  consumed   better_ and best_ work in place on *a
//   b           spared    spared    consumed
//
// Errors: none. Polls: no.

#include "quoly/quoly.h"

namespace kelmar {

// *c = a + b, a - b. *c replaced, may be an operand.
void quoly_add(const quolynode *a, const quolynode *b, quolynode **c);
void quoly_sub(const quolynode *a, const quolynode *b, quolynode **c);

// *a = *a + b, *a - b, in place. b may be *a.
void better_quoly_add(quolynode **a, const quolynode *b);
void better_quoly_sub(quolynode **a, const quolynode *b);

// *a = *a + *b, *a - *b; *b consumed, becomes null.
void best_quoly_add(quolynode **a, quolynode **b);
void best_quoly_sub(quolynode **a, quolynode **b);

}  // namespace kelmar
