#pragma once
// poly/mul_array.h -- products over words that go through arrays, in one variable and in two.

#include "poly/onevar.h"

namespace kelmar {

// All: a, b spared; *c filled. One level over words: every coefficient is a number, no list goes deeper.
// len_a, len_b: terms of the outer lists, negative when sparse; low_a, low_b: their lowest exponents.

// *c = a * b, one level. With len_a = 0 the lengths are found here.
// Polls: above the arrays, between terms and between the halves of lists.
void simplest_poly_mult(polynode *a, polynode *b, polynode **c, std::int32_t len_a, std::int32_t len_b,
                        std::int32_t low_a, std::int32_t low_b);

// *c = a * b, one level, by sums of scaled copies. Polls: between terms.
void simplest_standard(const polynode *a, const polynode *b, std::int32_t len_a, std::int32_t len_b,
                       polynode **c);

// *c = a * b, one level, no negative exponents: through arrays when both have more than a fourth of their
// coefficients, else by simplest_standard.
void fastest_standard(const polynode *a, const polynode *b, std::int32_t len_a, std::int32_t len_b,
                      polynode **c);

// *c = a * b, one level, no negative exponents, sum of degrees up to array_degree_limit: through xx, yy and
// zz.
void k_fastest_poly_mult(const polynode *a, const polynode *b, polynode **c);

// Two variables -------------------------------------------------------------------------------------------

inline constexpr std::int32_t row_limit = 701;  // rows, and entries of a row

// A polynomial in two variables: row i holds the coefficient of x^i.
struct word_rows {
    std::int32_t *cell;              // row_limit words a row
    std::int32_t degree[row_limit];  // of each row, -1 for an empty one
};

// Both are dense enough, and small enough, for fastest_poly2_mult: exactly two levels, more than 25 terms
// each, the sums of both degrees below row_limit. Modes: a modulus, no table field, no ground field with
// relations.
bool try_fast_2_var(const polynode *a, const polynode *b);

// *top = the first exponent, *low the last, *inner the greatest leading exponent of a coefficient, *count
// the terms of the outer list. Declines (0) when a coefficient has a third level.
int depth_density(const polynode *p, std::int32_t *top, std::int32_t *inner, std::int32_t *low,
                  std::int32_t *count);

// *c = a * b, a pair for which try_fast_2_var is true. Polls: between rows.
void fastest_poly2_mult(const polynode *a, const polynode *b, polynode **c);

// x = p. Rows up to p->exp are filled.
void fill_poly2_array(const polynode *p, word_rows *x);

// *p = the rows 0 .. deg of z. *p filled.
void array_to_poly2(const word_rows *z, std::int32_t deg, polynode **p);

}  // namespace kelmar
