#pragma once
// session/arr_evaluation.h -- polynomials at square arrays.

#include "session/arr_value.h"

namespace kelmar {

// r = q with the square array m in place of its first variable: powers are products of matrices, and a
// coefficient c is c times the identity. q spared, *m restored. Declines where an inverse is needed. Errors:
// 174 when m is no square array, those of products; r is then an empty value.
void quoly_at_matrix(const quolynode *q, arr_value *m, arr_value *r);

}  // namespace kelmar
