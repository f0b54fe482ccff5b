#pragma once
// gcd/balance.h -- variables scaled by powers of two, so that a polynomial over doubles has numbers of one
// size.
//
// What rounding leaves is divided by x + 7 as well, and grows by 7 with each step; by 4 x + 7 it grows by
// less than 2. So with doubles operands are looked at with variables that have been stretched, each by the
// factor that brings numbers at high and at low exponents to one size. Powers of two lose nothing.

#include "poly/variables.h"

namespace kelmar {

inline constexpr std::int32_t balance_levels = 8;

struct balance {
    std::int32_t levels;                     // lists from the outer one down
    std::int32_t shift[balance_levels + 1];  // by list, the outer one 1: the old variable is 2^shift new ones
};

// Find the scaling for the pair, of which p tells it. Declines (false): nothing would change, fewer than two
// variables occur or too many, or a number would come near the end of the range. p, other spared.
bool find_balance(const polynode *p, const polynode *other, balance *s);

// Scale the variables of *p: sign 1, to the new ones; -1, back. All numbers are multiplied by 2^extra.
void scale_variables(polynode *p, const balance *s, std::int32_t sign, std::int32_t extra);

// Return what scale_variables takes from the exponent of the leading number of p.
std::int32_t leading_shift(const polynode *p, const balance *s);

}  // namespace kelmar
