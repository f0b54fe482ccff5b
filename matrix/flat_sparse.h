#pragma once
// matrix/flat_sparse.h -- products of sparse matrices of plain numbers that are words or doubles.

#include "matrix/sparse.h"

namespace kelmar {

// out = a b, as mult_sparses does it; out has empty rows. Declines (0), with nothing filled: an entry is no
// number, numbers are neither words nor doubles, or memory is short. Errors: none. Polls: no.
int flat_sparse_product(const sparse_frame *a, const sparse_frame *b, sparse_frame *out, std::int32_t rows,
                        std::int32_t inner, std::int32_t cols);

}  // namespace kelmar
