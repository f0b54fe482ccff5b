#pragma once
// poly/div_words.h -- division of polynomials held in word arrays, and of dense lists through such arrays.
//
// a[i] is the coefficient of x^i, a residue or an element of a table field. Modular mode. The leading
// coefficient of the divisor must have an inverse: mod_inverse finds it. Nothing here polls or raises an
// error.

#include <cstdint>
#include "poly/node.h"

namespace kelmar {

// Arrays --------------------------------------------------------------------------------------------------

inline constexpr std::int32_t word_division_limit =
    25000;  // greatest degree for lists, and for scratch quotients

// q = x / y, degrees 0 .. dx - dy, and x = the remainder. *dr = its degree, -1 when it is zero; what stands
// in x above that is zero up to dx. dx >= dy, y[dy] not zero.
void onevar_array_div_mod(std::int32_t *x, const std::int32_t *y, std::int32_t *q, std::int32_t dx,
                          std::int32_t dy, std::int32_t *dr);

// The same without the quotient. dx - dy <= word_division_limit.
void onevar_array_mod(std::int32_t *x, const std::int32_t *y, std::int32_t dx, std::int32_t dy,
                      std::int32_t *dr);

// The same for dx = dy + 1, the usual step of Euclid's algorithm: two words of quotient and one pass over x.
void onevar_one_div(std::int32_t *x, const std::int32_t *y, std::int32_t *q, std::int32_t dy,
                    std::int32_t *dr);
void onevar_one(std::int32_t *x, const std::int32_t *y, std::int32_t dy, std::int32_t *dr);

// Lists ---------------------------------------------------------------------------------------------------

// Both are lists of one level without negative exponents, not numbers, of degree at most word_division_limit,
// and dense: above fast_mult_cut terms, and more than half as many as the degree.
bool words_suit(const polynode *n, const polynode *m);

// *q = n / m and *r = the remainder, for a pair that suits, deg n >= deg m; the lead of m has an inverse. q
// may be null for no quotient. n, m spared. *q, *r filled.
void simplest_div_mod(const polynode *n, const polynode *m, polynode **q, polynode **r);
void simplest_div_no_q(const polynode *n, const polynode *m, polynode **r);

inline constexpr std::int32_t array_division_limit =
    15000;  // greatest degree for exact division in one array

// *q = n / m for residues modulo a prime or elements of a table field, both of one level, deg n >= deg m > 0,
// and 1; or 0 when the division is not exact. n, m restored; *q filled. Above array_division_limit: by
// fast_mod_and_div.
int fastest_poly_div(polynode *n, polynode *m, polynode **q);

enum word_quotient { words_not_exact, words_exact, words_not_suited };

// fastest_poly_div, when the ring and the pair suit.
word_quotient divide_words_exactly(polynode *n, polynode *m, polynode **q);

}  // namespace kelmar
