#pragma once
// quoly/power.h -- powers of scalar values.

#include "quoly/quoly.h"

namespace kelmar {

// *q = *q ^ e, the power of the language: a power 0 is 1, of 0 too; a negative one is a reciprocal's. *q
// replaced, and announced. Errors: 32 for exponents that leave the words and numbers that grow past all use;
// 22 for a negative power of 0; 62; 210. The value is then 1. Polls: in long products.
void raise_to_power(quolynode **q, std::int32_t e);

// The same for e > 0. No gcd is taken, because a power of a reduced fraction is reduced; with relations one
// is, since they can bring common factors into being. lint_: where numbers are words or doubles; the plain
// name goes there by itself.
void quoly_compute_power(quolynode **q, std::int32_t e);
void lint_quoly_compute_power(quolynode **q, std::int32_t e);

}  // namespace kelmar
