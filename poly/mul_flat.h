#pragma once
// poly/mul_flat.h -- products of polynomials through flat arrays.

#include "poly/flat.h"

namespace kelmar {

// Sizes of the product's stretches; tests make them small.
//
// default 2^15, 2^20; least and greatest number of cells of the table of sums; tests; reset: never
inline std::int64_t flat_table_least = std::int64_t{1} << 15;
inline std::int64_t flat_table_most = std::int64_t{1} << 20;
// default 2^16; products collected before they are sorted; tests; reset: never
inline std::int64_t flat_batch = std::int64_t{1} << 16;

// default 200; terms of the shorter operand; below it nothing is transformed; tests; reset: never
inline std::int64_t transform_cut = 200;

// *c = a * b, neither a number. a, b spared; they may be the same. sa, sb: their measures, of one record
// for one operand. *c filled.
// Declines: the packed exponents, or a coefficient, are too long, or the heap has no room. Modes: all but the
// small view. Polls: yes. Cost: one step for each product of terms; memory for the result, and for one
// stretch of it.
int flat_poly_mult(const polynode *a, const polynode *b, const flat_shape *sa, const flat_shape *sb,
                   polynode **c);

// The same for coefficients up to long_coef_limit digits, whatever their sums need. packing: of the pair.
inline constexpr std::int32_t long_coef_limit = 45;  // digits: 20 words of 64 bits
int flat_long_product(const polynode *a, const polynode *b, const flat_shape *sa, const flat_shape *sb,
                      const flat_packing *packing, polynode **c);

}  // namespace kelmar
