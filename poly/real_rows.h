#pragma once
// poly/real_rows.h -- multiples of rows of doubles, added to a row of sums.
//
// Every processor gives the same sums: each is taken in the order that is told, and none is fused with a
// product.

#include <cstdint>

namespace kelmar {

// s[k] += c d[k] for all k < n.
void add_real_row(double *s, double c, const double *d, std::int64_t n);

// s[k] = s[k] + c[0] d[0][k] + c[1] d[1][k] + c[2] d[2][k] + c[3] d[3][k] for all k < n, from the left.
// Cost: s is passed once.
void add_four_real_rows(double *s, const double *c, const double *const *d, std::int64_t n);

}  // namespace kelmar
