#pragma once
// poly/onevar.h -- products of polynomials held in word arrays, and the way between lists and arrays.
//
// a[i] is the coefficient of x^i, a residue or an element of a table field. Ranges of degrees are
// inclusive. A product fills the degrees from the sum of the low ends to the sum of the high ends, and
// nothing else; it stands apart from its operands. Nothing here polls: the arrays are shared.

#include "poly/node.h"

namespace kelmar {

inline constexpr std::int32_t array_degree_limit = 25000;  // greatest degree that xx, yy, zz hold
inline constexpr std::int32_t array_ratio_limit = 15;      // above it a pair is too unbalanced for Karatsuba

// default null; the arrays of k_fastest_poly_mult, and of whoever runs when it does not; get_word_arrays
inline std::int32_t *xx = nullptr;
inline std::int32_t *yy = nullptr;
inline std::int32_t *zz = nullptr;

// Allocate xx, yy and zz, unless that is done.
void get_word_arrays();

// z = x * y, schoolbook. Faults: a range given upside down; the top entry of one operand alone is zero.
void onevar_mult(const std::int32_t *x, const std::int32_t *y, std::int32_t *z, std::int32_t x_lo,
                 std::int32_t x_hi, std::int32_t y_lo, std::int32_t y_hi);

// onevar_mult by modmult and mod_add, for any ring of words. Faults: none.
void slower_onevar_mult(const std::int32_t *x, const std::int32_t *y, std::int32_t *z, std::int32_t x_lo,
                        std::int32_t x_hi, std::int32_t y_lo, std::int32_t y_hi);

// z = x * y. Faults: a range given upside down.
// Cost: three products of half the length while both widths are poly_cutoff or more and differ by the factor
// array_ratio_limit at most; onevar_mult else. Source: Karatsuba.
void fast_array_onevar_mult(const std::int32_t *x, const std::int32_t *y, std::int32_t *z, std::int32_t x_lo,
                            std::int32_t x_hi, std::int32_t y_lo, std::int32_t y_hi);

// x[0 .. p->exp] = the coefficients of p, one level over words, no negative exponents. x filled.
void fill_poly_array(const polynode *p, std::int32_t *x);

// *p = the polynomial x[0 .. deg]. Entries at the top may be zero. *p filled.
// Faults: deg = 0 with x[0] = 0; then *p = 0.
void array_to_poly(const std::int32_t *x, std::int32_t deg, polynode **p);

// The same as a list with no terms for zero: null.
polynode *list_of_array(const std::int32_t *x, std::int32_t deg);

}  // namespace kelmar
