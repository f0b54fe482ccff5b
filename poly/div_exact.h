#pragma once
// poly/div_exact.h -- division of a polynomial by a number, and division that leaves nothing.
//
// n is divided by m. var is the record of the variable of their outer list. Where negative exponents are
// allowed a power of a variable divides everything, and quotients may have them too.

#include "poly/variables.h"

namespace kelmar {

// The largest share of rounding errors in a number: what is smaller than this times the numbers that it was
// made of is 0.
inline constexpr double float_noise = 1.0 / (std::int64_t{1} << 36);

// Return the largest magnitude of the doubles of p, not a number when one is none; null: 0. p spared.
double largest_magnitude(const polynode *p);

// *q = n with each coefficient divided by the number of the constant c, as quot does it: whole numbers are
// truncated. n, c restored; *q replaced, may be n. What vanishes is dropped. Errors: 22, 85; then *q = n.
// Faults: c is no number, then *q = n; a long integer vanishes, after a line with `code`, less 1001 for each
// level.
void poly_quot(polynode *n, polynode *c, polynode **q, std::int32_t code);

// The same for one level over words or doubles.
void fastest_poly_quot(polynode *n, polynode *c, polynode **q);

// *p = *p / c in place, as quot does it. c is no number of *p; restored. Errors: 22, 85; then *p stays.
void num_poly_quot(polynode **p, number *c);

// *q = n divided by the number of the constant c, *ok = 1; or *ok = 0 and *q = null as soon as a coefficient
// does not divide. n, c restored; *q filled.
void trial_poly_quot(polynode *n, polynode *c, polynode **q, int *ok);

// Return n / m as a fresh polynomial, or null when m, which is not zero, does not divide n. n, m restored.
// The numbers tell what divides: every double does, residues that have an inverse, whole numbers that leave
// no rest. With doubles a rest of rounding errors is nothing, at every level: numbers up to float_noise times
// the largest of n and of all products that were taken off. Numbers that are not finite are no rounding
// errors.
// Polls: between steps. Cost: the terms of n / m times those of m.
polynode *exact_quotient(polynode *n, polynode *m, const pt *var);

// The same with n consumed in either case. n and m share nothing.
polynode *exact_quotient_of(polynode *n, polynode *m, const pt *var);

// *q = n / m and *fail = 0; or *q = 0 and *fail = 1 when the division leaves something. n, m restored; *q
// replaced, may be n or m. Faults: var is null; m is a number, but for 1 in modular mode.
void gen_poly_divide(polynode *n, polynode *m, polynode **q, const pt *var, int *fail);

// *n = *n / m in place, where m is known to divide. m restored. Faults: var is null, m is a number, *n is a
// number that is not zero, or m does not divide, after a line with the degrees and `code`; then *n = 0.
void fast_poly_divide(polynode **n, polynode *m, const pt *var, std::int32_t code);

}  // namespace kelmar
