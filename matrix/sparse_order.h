#pragma once
// matrix/sparse_order.h -- moving rows and columns of matrices: transposes, exchanges, reversals.

#include "matrix/sparse.h"

namespace kelmar {

// *to = the transpose as a view: its nodes share the values of `from`. *to filled.
void flip_sparse(const sparse_frame *from, sparse_frame **to, std::int32_t rows, std::int32_t cols);

// *frames = the transpose, in the same nodes; the old frames are given back.
void trans_sparse(sparse_frame **frames, std::int32_t rows, std::int32_t cols);

void reverse_sparse(sparse_frame *frames, std::int32_t rows);  // the order of the rows
void reverse_array(array *a);                                  // ordinary: the order of the elements
void sp_switchrow(sparse_frame *frames, std::int32_t r1, std::int32_t r2);
void sp_switchcol(sparse_frame *frames, std::int32_t c1, std::int32_t c2, std::int32_t last,
                  std::int32_t first);  // in the rows first .. last

// which `]`: exchange two rows, else two columns, of an ordinary array; from 0, within the array.
void switchrow_col(char which, std::int32_t a, std::int32_t b, array *arr);

}  // namespace kelmar
