#pragma once
// poly/mul.h -- products of polynomials: the choice of a method.
//
// Numbers, and a number times a polynomial, are done at once. Word coefficients in one variable go to
// poly/mul_array.h; so does a dense pair in two variables. What fits flat arrays of packed exponents goes to
// poly/mul_flat.h. The rest stays nested: poly/mul_school.h below the cut-off, poly/mul_list.h above.

#include "poly/variables.h"

namespace kelmar {

// default 20; terms; below it poly_mult is schoolbook; &#, change_prec
inline std::int32_t poly_cutoff = 20;
// default 10; terms; below it simplest_poly_mult is schoolbook; nobody
inline std::int32_t fast_mult_cut = 10;
// default 25000; greatest sum of degrees for which the word arrays serve; nobody
inline std::int32_t fast_gcd_size = 25000;
// default 140; kept and settable, read by nothing; &_k
inline std::int32_t simplest_poly_cutoff = 140;
// default 12; products of terms; below it poly_mult does not go to flat arrays; nobody
inline std::int32_t flat_mult_cut = 12;
// default 31; leading exponent from which products in two variables may go to row arrays; nobody
inline constexpr std::int32_t row_arrays_from = 31;

// *c = a * b. a, b restored (no method alters them); they may be the same. *c replaced, may be an operand.
// var: the level at which a relation applies, or nilpol; its cut then takes the place of poly_cutoff.
// Errors: 32 for an exponent above 2^31 - 1; then *c = 0. Polls: between terms; nothing is altered then.
void poly_mult(polynode *a, polynode *b, polynode **c, const pt *var);

// var, or a variable further in, has a relation.
bool relation_from(const pt *var);

// *p = *p reduced by the relation of var, which has one. *p replaced.
void fold_poly(polynode **p, const pt *var);

// The cut-off in force for var.
inline std::int32_t cut_for(const pt *var)
{
    return var ? var->cut : poly_cutoff;
}

}  // namespace kelmar
