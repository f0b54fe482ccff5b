#pragma once
// numbers/combinat.h -- factorials and binomial coefficients.
//
// Tables of the start-up data give the nearest smaller factorial, and every third row of Pascal's triangle up
// to 150; a few factors lead on from there. Where a table is missing the product is taken from its beginning.

#include "numbers/number.h"

namespace kelmar {

// r = n! in the live view, n >= 0. r replaced. Doubles are infinite from 171! on; words wrap; residues are
// those of the product. Cost: a product tree from the nearest factorial of the table on; half of it for a
// long one.
void factorial(std::int32_t n, number *r);

// r = n! as digits, in the digit view.
void digit_factorial(std::int32_t n, number *r);

// r = the binomial coefficient n over k, 0 unless 0 <= k <= n. r replaced. `binomial` chooses by the live
// view.
// Errors: in the digit view 347, where the coefficient may be longer than the longest number; then r = 0.
void binomial(std::int32_t n, std::int32_t k, number *r);
void rat_binom(std::int32_t n, std::int32_t k, number *r);    // digits, in the digit view
void flote_binom(std::int32_t n, std::int32_t k, number *r);  // a double, whole below 2^53; may be infinite
void lint_binom(std::int32_t n, std::int32_t k, number *r);   // the word that is it modulo 2^32

// r = the residue of the coefficient; modulo 2 in a table field. imod_binom returns it.
// Errors: 87, imod_binom 279, for a composite modulus, where k! has no inverse and the coefficient itself
// would be longer than the longest number; then the residue is 0.
void mod_binom(std::int32_t n, std::int32_t k, number *r);
std::int32_t imod_binom(std::int32_t n, std::int32_t k);

}  // namespace kelmar
