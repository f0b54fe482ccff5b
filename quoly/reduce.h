#pragma once
// quoly/reduce.h -- both of two polynomials divided by a gcd that was found for them.
//
// gcds may come from tests at random points, and be wrong with a small probability. A right one divides both,
// so here it would come out: the gcd is then taken again, with the quick tests of poly/div_fast.h turned off.

#include "poly/variables.h"

namespace kelmar {

inline constexpr int reduce_rounds = 10;  // gcds that are tried before the pair is left as it is

// *a_over_g = *a / *g, *b_over_g = *b / *g, where *g = gcd(*a, *b) has variables. When the gcd proves wrong,
// *g is replaced by a better one, at last by 1. clear_a, clear_b: a wrong gcd is only taken again, without
// turning off a test. keep_a, keep_b: 1: the operand is restored; 0: it is consumed. Results filled, null
// before; *g replaced. Whatever is left by a jump stands in the callers' slots.
// Doubles: what a division leaves is dropped. Polls: in divisions and gcds.
void reduce(polynode **a, polynode **b, polynode **g, polynode **a_over_g, polynode **b_over_g,
            std::int32_t clear_a, std::int32_t clear_b, std::int32_t keep_a, std::int32_t keep_b);

// The same for denominators. *factor = a number that a_over_g and b_over_g together hold too many times, in a
// tower of fields; elsewhere 1. *factor filled.
void field_reduce(polynode **a, polynode **b, polynode **g, polynode **a_over_g, polynode **b_over_g,
                  polynode **factor);

}  // namespace kelmar
