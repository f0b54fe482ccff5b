#pragma once
// gcd/algorithm_c_float.h -- the subresultant sequence on doubles.

#include "gcd/algorithm_c.h"

namespace kelmar {

// *result = gcd(a, b), deg a >= deg b > 0, in the float view, as far as rounding lets it be seen: it divides
// both but for noise; or 1. a, b restored; *result filled.
void float_algorithm_c(polynode *a, polynode *b, polynode **result, pt *names, const retry_flags *flags);

}  // namespace kelmar
