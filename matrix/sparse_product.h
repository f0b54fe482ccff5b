#pragma once
// matrix/sparse_product.h -- products in which an operand is sparse.
//
// Operands are spared. Dense ones are column-major tables in which null is the number 0.
//
// Errors: 32. Polls: once a row, and inside long products.

#include "matrix/sparse.h"

namespace kelmar {

// *out, an empty chain of `rows` rows, = a b. Result rows are made one after the other.
void mult_sparses(const sparse_frame *a, const sparse_frame *b, sparse_frame *out, std::int32_t rows,
                  std::int32_t inner, std::int32_t cols);

// The same through a view of the transpose of b, each entry a merge of two rows. For columns too many to
// count.
void mult_by_rows(const sparse_frame *a, const sparse_frame *b, sparse_frame *out, std::int32_t rows,
                  std::int32_t inner, std::int32_t cols);

// out = a b, one of them sparse. out is all null at first and complete afterwards.
void mult_sparse_norm(const sparse_frame *a, quolynode *const *b, quolynode **out, std::int32_t rows,
                      std::int32_t inner, std::int32_t cols);
void mult_norm_sparse(quolynode *const *a, const sparse_frame *b, quolynode **out, std::int32_t rows,
                      std::int32_t inner, std::int32_t cols);

// Each entry times q, in place; sparse: those that become zero go.
void mult_cons_sparse(sparse_frame *frames, std::int32_t rows, const quolynode *q);

// Forget a product that was left by a jump.
void sparse_products_on_unwind();

}  // namespace kelmar
