#pragma once
// matrix/entry_product.h -- what all products of matrices do with two entries.

#include "quoly/add.h"
#include "quoly/mul.h"

namespace kelmar {

// default null; a product on its way into a sum; add_product; reset: next use
inline quolynode *entry_scratch = nullptr;

// *sum = *sum + a b; a null sum is 0. Errors: 32. Polls: in long products.
inline void add_product(const quolynode *a, const quolynode *b, quolynode **sum)
{
    quoly_mult(a, b, &entry_scratch);
    if (!*sum) {
        *sum = entry_scratch;
        entry_scratch = nullptr;
    } else {
        best_quoly_add(sum, &entry_scratch);
    }
}

// A null entry is the number 0.
inline bool is_zero_entry(const quolynode *q)
{
    return !q || quoly_iszero(q);
}

}  // namespace kelmar
