#pragma once
// poly/coefs.h -- degrees, terms and coefficients of a polynomial in one of its variables.
//
// `level` is that of the variable; p is a list of level 1, or a constant. Results are of level 1 too: where a
// level is no longer there, a wrapper stands.

#include "poly/node.h"

namespace kelmar {

// Return the greatest, the least exponent of the variable in p; 0 for a constant.
std::int32_t top_degree(const polynode *p, std::int32_t level);
std::int32_t low_degree(const polynode *p, std::int32_t level);

// Return the greatest sum of exponents of a term; 0 for a constant.
std::int64_t total_degree(const polynode *p);

// Return the terms that p has when it is multiplied out; 0 for zero.
std::int64_t f_numterms(const polynode *p);

// *c = the coefficient of the power e of the variable. p spared; *c replaced.
void extract_coef(const polynode *p, std::int32_t level, std::int32_t e, polynode **c);

// *c = the coefficient of the first, the last term of p after going down `levels` levels along such terms.
// p spared; *c replaced.
void lead_coef(const polynode *p, std::int32_t levels, polynode **c);
void trailing_coef(const polynode *p, polynode **c);

// *c = the first term of p. *m = the product of powers in the leading term, all the way down, with the
// coefficient 1. p spared; *c, *m replaced.
void leading_term(const polynode *p, polynode **c);
void leading_monomial(const polynode *p, polynode **m);

// *c = the coefficient in p of the monomial m: of exactly these powers of the variables that m holds. The
// coefficient of m itself is not looked at. p, m spared; *c replaced.
void monomial_coef(const polynode *p, const polynode *m, polynode **c);

// Put c x^e, c free of the first variable, x, in the place of the term of x^e in *p. *p replaced; c consumed.
void set_first_coef(polynode **p, std::int32_t e, polynode *c);

}  // namespace kelmar
