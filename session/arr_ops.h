#pragma once
// session/arr_ops.h -- the operators between array values and scalars.
//
// The left operand becomes the result, owned. Owned operands are written over; of references the entries are
// copied as they are used. Errors leave the left operand a valid value.

#include "session/arr_value.h"

namespace kelmar {

// *v = *v op *r; op is one of + - * / \ | _ . *r is emptied. Errors: 22 39 43 88 89 113 191 242 250, those of
// the arithmetic.
void combine_values(arr_value *v, arr_value *r, char op);

// *v = -*v.
void negate_value(arr_value *v);

// Apply f to each entry, in place; sparse entries that become zero go.
void map_value(arr_value *v, void (*f)(quolynode **entry));

// *v = the product of *v and *r by pairs of products. Errors: 39 43 72 88 242.
void multiply_by_pairs(arr_value *v, arr_value *r);

// What the session answers where a matrix is to be inverted or raised to a power.
void decline_matrix_algorithm();

}  // namespace kelmar
