#pragma once
// poly/div.h -- division with remainder: the choice of a method.
//
// n is divided by m, which is not zero. Operands are restored, unless a name ends in _of: then n is consumed.
// Results are replaced, and may be operands. Degrees are exponents of the outer variable, the one of var.

#include "poly/variables.h"

namespace kelmar {

// n = q m + r, deg r < deg m, where the leading coefficient of m is a number that divides all numbers: 1 or
// -1, or any over a field. Elsewhere the coefficients of q are truncated. fast: over a prime modulus, high
// degrees may go to poly/div_karat.h, dense ones to poly/div_words.h. deg n < deg m: q = 0, r = n.
// Errors: 85, modulo a composite; then q = 0, r = n. Faults: the lead of m is no number. Polls: between
// steps.
void basic_poly_divide(polynode *n, polynode *m, polynode **q, polynode **r, int fast);

// The same for one level over words or doubles.
void simplest_poly_divide(polynode *n, polynode *m, polynode **q, polynode **r, int fast);

// The remainder alone, for one level over words or doubles.
void poly_div_no_q(polynode *n, polynode *m, polynode **r);

// The school method of these. *q, *r filled; q null: no quotient is kept. var: of the outer variable, or
// nilpol.
void school_poly_divide(polynode *n, polynode *m, polynode **q, polynode **r, const pt *var);
void school_poly_divide_of(polynode *n, polynode *m, polynode **q, polynode **r, const pt *var);

// *r = the quotient, or with op '|' the remainder, of n by m, as the operators of the language have it. By a
// number, each coefficient is divided as mod_or_div does it, remainders with pos_mod. A leading coefficient
// that does not divide is multiplied into n first, so often that the division goes through.
// Errors: 22, then *r = 1; 85; 205 for negative exponents, then *r = n.
void poly_mod_or_div(polynode *n, polynode *m, polynode **r, char op, const pt *var);

// Over a field, for a leading coefficient of m that is a number: n = q m + r. *q, *r filled, q null: not
// kept.
void field_coef_poly_divide(polynode *n, polynode *m, const pt *var, polynode **q, polynode **r);

// The leading coefficient of m is a number of a field. What relations make invertible belongs here too.
bool first_coef_invrtble(const polynode *m, std::int32_t level);

}  // namespace kelmar
