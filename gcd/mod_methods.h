#pragma once
// gcd/mod_methods.h -- gcds of large polynomials by images: the methods that the driver asks.
//
// Each may decline, and the driver goes on. What they give is checked by division before they say yes.

#include "poly/variables.h"

namespace kelmar {

// The methods below answer: a pair that is too large for Algorithm C is worth another try.
inline constexpr std::int32_t images_answer = 0;

// *result = gcd(a, b) of primitive polynomials over the integers, by images modulo many primes; *success = 1.
// Or *success = 0, *result as it was. a, b restored; *result replaced.
void basic_mod_method(polynode *a, polynode *b, polynode **result, std::int32_t *success, pt *names);

// *result = gcd(a, b) over a prime field, by images at points of the second variable. `bound`: the degree is
// not above it. Declines (0); *result stays. a, b restored; *result replaced.
int mod_multivar_Chinese(polynode *a, polynode *b, polynode **result, std::int32_t bound, pt *names);

// Towers: variables from field_depth inward belong to the ground field -----------------------------------

// default 0, null, 1; primes under which the tower stays one, for images of what lies above it: how many, the
// primes; and whether there are none of the second kind; relations; reset: never
inline std::int32_t aux_prime1_number = 0;
inline const number *auxptr = nullptr;
inline std::int32_t no_aux_primes2 = 1;

// *result = gcd(a, b) by Euclid's algorithm over the tower. Declines (0); *result stays.
int field_coef_gcd(polynode *a, polynode *b, polynode **result, pt *names);

// a and b, whose leading coefficients are numbers, are coprime modulo one of the primes of the tower:
// *coprime = 1. Declines (0): no prime served.
int armand_modular(polynode *a, polynode *b, pt *names, std::int32_t *coprime);

// *p = *p made monic over the tower, in place, with whole numbers. Declines (0).
int rat_monic_poly(polynode **p, pt *names);

}  // namespace kelmar
