#pragma once
// poly/mul.h -- products of polynomials: the choice of a method.

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

// *c = a * b. a, b restored: lists are cut and put back (storage/undo.h); they may be the same. *c replaced, may be
// an operand. var: the level at which a relation applies, or nilpol. Polls: between terms, while nothing is cut.
void poly_mult(polynode *a, polynode *b, polynode **c, const pt *var);

}  // namespace kelmar
