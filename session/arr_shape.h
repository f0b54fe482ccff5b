#pragma once
// session/arr_shape.h -- transposes, diagonals and sums of array values.

#include "session/arr_value.h"

namespace kelmar {

// *v = the transpose of *v, an array.
void transpose_value(arr_value *v);

// *v = the diagonal of *v, an array, as an array of one column.
void extract_diagonal(arr_value *v);

// *q = the sum of all entries; *q replaced.
void sum_value(arr_value *v, quolynode **q);

// *q = the sum of the diagonal. Errors: 194 for what is not square. *q replaced.
void trace_value(arr_value *v, quolynode **q);

}  // namespace kelmar
