#pragma once
// gcd/onevar_gcd.h -- gcds in one variable over a prime field or a table field.
//
// Up to degree fast_gcd_size the pair is worked on in the word arrays xx and yy, where nothing allocates and
// nothing polls; above it on lists. An array polynomial is its words, by degree, and the greatest degree
// whose word is not zero: -1 for zero.
//
// Modular mode over a field. Operands have one level: every coefficient is a number, and no exponent is
// negative.

#include "poly/variables.h"

namespace kelmar {

// Lists --------------------------------------------------------------------------------------------------

// *result = gcd(a, b); monic, when asked, else scaled by any unit; 1 when it is a number. A zero operand
// gives the other one. a, b restored; *result replaced. With the stash in use the result may come from it.
// Faults: " number in basic_poly_gcd ", for an operand that is a number but zero; then *result = 1. Polls:
// above the arrays.
void basic_poly_gcd(polynode *a, polynode *b, polynode **result, std::int32_t monic, const pt *names);

// The stash is in use, and the pair of one-variable polynomials is large enough for it.
bool stash_takes(const polynode *a, const polynode *b);

// basic_poly_gcd without the stash. faster_: by division steps alone, even where the half-gcd pays.
void faster_poly_gcd(polynode *a, polynode *b, polynode **result, std::int32_t monic, const pt *names);
void fastest_poly_gcd(polynode *a, polynode *b, polynode **result, std::int32_t monic, const pt *names);

// Arrays -------------------------------------------------------------------------------------------------

// Sum of degrees from which the half-gcd is entered. Pairs in the arrays have at most 2
// array_degree_limit, where the steps are measured to be the faster.
inline constexpr std::int32_t half_gcd_degree_sum = 1000000;

// A pair in xx and yy, while they are reduced against each other.
struct word_pair {
    std::int32_t deg_y;
    std::int32_t deg_x;
    std::int32_t done;  // one of the two is zero, or the gcd is 1
};
static_assert(std::is_trivial_v<word_pair>);

// The gcd of x and y, of degrees *dx and *dy, by Euclid's algorithm in place. Return 1 when x holds it, else
// 0; *dx and *dy are the degrees then. A gcd of degree 0 is the word 1. Not both are zero.
int euclid_total(std::int32_t *x, std::int32_t *y, std::int32_t *dx, std::int32_t *dy);

// euclid_total of xx and yy; done is set, and the degree of the array that does not hold the gcd is -1.
void simple_onevar_gcd(word_pair *pair);

// xx = xx modulo yy, yy = yy modulo xx, in any ring of words. done is set when the remainder is zero, or a
// number: then it is 1, and the other array counts as zero. The degree of the dividend is not below the
// other's. Faults: " y is 0 in divide_y_into_x.", " x is 0 in divide_x_into_y."; then done is set.
void divide_y_into_x_1(word_pair *pair);
void divide_x_into_y_1(word_pair *pair);

// The same in the field of 2^8 elements, by its table of products.
void f_divide_y_into_x(word_pair *pair);
void f_divide_x_into_y(word_pair *pair);

}  // namespace kelmar
