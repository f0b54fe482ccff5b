#pragma once
// poly/mul_list.h -- Karatsuba's product on sparse lists.

#include "poly/mul.h"

namespace kelmar {

// *c = a * b for lists of at least two terms. a, b spared; they may be the same. len_a, len_b: terms of the
// outer lists, positive; low_a, low_b: their lowest exponents. *c filled.
// Polls: as poly_mult, which the three products call. Cost: three products of half the length.
// Source: Karatsuba; both lists are cut at the middle of their terms, not at an exponent.
void karatsuba_poly_mult(polynode *a, polynode *b, std::int32_t len_a, std::int32_t len_b, std::int32_t low_a,
                         std::int32_t low_b, polynode **c, const pt *var);

// The same for one level over words or doubles: the three products go to simplest_poly_mult.
void simplest_karatsuba(polynode *a, polynode *b, std::int32_t len_a, std::int32_t len_b, std::int32_t low_a,
                        std::int32_t low_b, polynode **c);

// Add e to every exponent of the list *p, in place, and mend the form: a number at exp 0 becomes a term,
// and a term that comes to exp 0 with a number stands as the number.
void shift_exponents(polynode **p, std::int32_t e);

}  // namespace kelmar
