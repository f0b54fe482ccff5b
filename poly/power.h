#pragma once
// poly/power.h -- powers of polynomials.

#include "poly/mul.h"

namespace kelmar {

// *p = (*p)^e, e >= 0; a power 0 is 1, of 0 too. *p replaced. var: as for poly_mult.
// Errors: 32 for an exponent above 2^31 - 1; then *p = 0. Polls: as poly_mult.
void compute_power(polynode **p, std::int32_t e, const pt *var);

// The same over a prime modulus or a table field, for e >= modulus: by the digits of e to the base modulus.
void poly_mod_prime(polynode **p, std::int32_t e, const pt *var);

// *p = (*p)^q for q = modulus, prime or that of a table field: exponents times q. *p restored on an error.
// Errors: 32; then *p is as it was. Declines (0) then.
int poly_to_prime(polynode *p, std::int32_t q);

// The power is by repeated multiplication: a list of two terms or more, among the first terms of each level,
// has a coefficient that is no number. Squares of sparse polynomials in several variables grow faster than
// products with the polynomial itself.
bool power_by_products(const polynode *p);

}  // namespace kelmar
