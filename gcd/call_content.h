#pragma once
// gcd/call_content.h -- the content as the language has it.

#include "quoly/quoly.h"

namespace kelmar {

// *result = the content of the value in a variable: with variable null its outermost one, else a polynomial
// variable, or the level of one as a number. A number gives its magnitude, a rational that of its numerator;
// 0, and every number where numbers divide each other, gives 1. A polynomial that is free of the variable and
// of all further out gives itself. *argument spared; *result replaced.
// Errors: 196; 282; 312, where negative exponents are allowed and result is argument; 344; 345. Then *result
// is the value. Polls: in the gcds.
void call_content(quolynode **argument, quolynode **result, quolynode **variable);

}  // namespace kelmar
