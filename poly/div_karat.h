#pragma once
// poly/div_karat.h -- division with remainder by way of fast products.
//
// The divisor has leading coefficient 1 in all but the last routine. flag: 1 for one level over words or
// doubles, 0 for general lists. n, m restored; *q, *r filled. Polls: between steps, and in the products. The
// three are one scheme for growing ratios of the degrees, and any of them takes any pair.
//
// Source: recursive division after Jebelean, and Burnikel and Ziegler, on polynomials.

#include "poly/mul.h"

namespace kelmar {

// default 6; terms; a divisor with fewer is divided by the school method; 25 in modular mode, by change_prec
inline std::int32_t div_poly_cutoff = 6;

// n = q m + r, deg r < deg m.
void fast_mod_and_div(polynode *n, polynode *m, polynode **r, polynode **q, const pt *var, int flag);

// The same, meant for degrees of n up to 9/4 that of m.
void karat_mod_and_div(polynode *n, polynode *m, polynode **q, polynode **r, const pt *var, int flag);

// The same, meant for degrees of n up to 10/3 that of m.
void three_case(polynode *n, polynode *m, polynode **q, polynode **r, const pt *var, int flag);

// n = q m + r over residues modulo a prime, or a table field, one level, for any m that is no number.
void fast_monic_division(polynode *n, polynode *m, polynode **q, polynode **r);

}  // namespace kelmar
