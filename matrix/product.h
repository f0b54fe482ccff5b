#pragma once
// matrix/product.h -- products of dense matrices.
//
// Dense operands are column-major tables in which null is the number 0; they are spared. A result is filled
// front to back, *filled counting what is there, so that a caller who is left by a jump knows what to free.
//
// Errors: 32. Polls: once a column or a row, and inside long products.

#include "quoly/quoly.h"

namespace kelmar {

// out = a b, for a rows x inner and b inner x cols.
void dense_product(quolynode *const *a, quolynode *const *b, quolynode **out, std::int32_t *filled,
                   std::int32_t rows, std::int32_t inner, std::int32_t cols);

// The same by pairs: half the products, more additions; worth it where products are dear. Source: Winograd's
// inner product.
void fast_mat_mult(quolynode *const *a, quolynode *const *b, quolynode **out, std::int32_t *filled,
                   std::int32_t rows, std::int32_t inner, std::int32_t cols);

// Forget a product by pairs that was left by a jump.
void products_on_unwind();

}  // namespace kelmar
