#pragma once
// matrix/flat_product.h -- products of matrices of plain numbers that are words or doubles.

#include "quoly/quoly.h"

namespace kelmar {

// out = a b, for a rows x inner and b inner x cols, as dense_product does it. Declines (0), with nothing
// filled: an entry is no number, numbers are neither words nor finite doubles, or memory is short. Errors:
// none. Polls: no.
int flat_product(quolynode *const *a, quolynode *const *b, quolynode **out, std::int32_t *filled,
                 std::int32_t rows, std::int32_t inner, std::int32_t cols);

}  // namespace kelmar
