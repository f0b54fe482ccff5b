#pragma once
// poly/mul_school.h -- products of nested lists as sums of scaled copies.

#include "poly/mul.h"

namespace kelmar {

// *c = a * b, neither a number. a, b spared; they may be the same. len_a, len_b: terms of the outer lists,
// either sign. *c filled. With a relation at var every partial product is reduced by it.
// Polls: between terms. Cost: products of terms, times the logarithm of the shorter length for the merging.
void school_poly_mult(polynode *a, polynode *b, std::int32_t len_a, std::int32_t len_b, polynode **c,
                      const pt *var);

// *c = the first term of `term` alone, times p. Both spared. *c filled; null when nothing is left.
void node_by_poly(const polynode *term, const polynode *p, polynode **c, const pt *var);

// node_by_poly over words or doubles, each coefficient of both a number: coefficients go by no recursion.
void node_by_poly_3(const polynode *term, const polynode *p, polynode **c);

// Sums of sums: a term's product is added to a sum of one, that to a sum of two, so that long sums are walked
// seldom. `parts` has a slot for each power of two, null when empty.
//
// Add p to them: p consumed; null is nothing. simple: p suits simplest_poly_add.
void add_part(polynode *p, polynode **parts, bool simple);

// *c = the total of `count` slots, which are then empty. *c filled; 0 for none.
void total_parts(polynode **parts, int count, bool simple, polynode **c);

}  // namespace kelmar
