#pragma once
// poly/crt.h -- polynomials from their images: modulo several primes, and at several points.
//
// Both lifts are of Newton's form. Image j gives a digit c_j, a polynomial, and the result is
//     c_0 + c_1 v_0 + c_2 v_0 v_1 + ...      v_j: the primes
//     c_0 + c_1 (x - v_0) + ...              v_j: the points
// The two lists stand newest first: each digit goes with its prime or point, so the first of these is not
// used.

#include "numbers/primes.h"  // word_node
#include "poly/node.h"

namespace kelmar {

// A list of polynomials: the digits of a lift.
struct poly_item {
    polynode *poly;
    poly_item *next;
};
static_assert(std::is_trivial_v<poly_item>);

// Polynomials and numbers, in place -------------------------------------------------------------------------

// *p = n * *p in the live view. n restored, no part of *p. What vanishes is dropped.
void mult_num(polynode **p, number *n);

// *p = v * *p, v a residue. In the modular views; modulo a composite what vanishes is dropped.
void mod_mult_num(polynode **p, std::int32_t v);

// *p = *p with each long integer reduced modulo m > 0: to 0 .. m-1, or with half = m / 2 to half+1-m .. half,
// the range about 0. m, half spared; half may be null. In the digit view. What vanishes is dropped.
void poly_mod_and_div(polynode **p, const number *m, const number *half);

// Lifts -----------------------------------------------------------------------------------------------------

// *c = the value of the digits modulo m > 0, a new prime as a rule: coefficients in 0 .. m-1. Primes below
// 2^31. digits, primes, m spared; as many primes as digits. *c replaced; 0 for no digits. In the digit view.
// Cost: for each digit, a pass over the result.
void Chinese(const poly_item *digits, const number *m, const word_node *primes, polynode **c);

// *c = the value of the digits at the residue x. Points are residues. The rest as Chinese; in the modular
// views.
void mod_Chinese(const poly_item *digits, const word_node *points, std::int32_t x, polynode **c);

}  // namespace kelmar
