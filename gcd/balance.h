#pragma once
// gcd/balance.h -- variables scaled by powers of two, so that a polynomial over doubles has numbers of one size.
//
// A division by x + 7 adds up to 7^n to what rounding left in n steps, and by 4 x + 7 hardly any. So with
// doubles operands are looked at with variables that have been stretched, each by the factor that brings the
// first and the last numbers in it to one size. Powers of two lose nothing: what is found is scaled back, and
// is what it would have been.

#include "poly/variables.h"

namespace kelmar {

struct balance {
    std::int32_t levels;                     // lists below the outer one, and that one
    std::int32_t shift[variable_limit + 1];  // by list, the outer one 1: the variable is 2^shift of the new one
};

// Find the scaling for the pair, of which p tells it. Declines (false): nothing would change, fewer than two
// variables occur, or a number would come near the end of the range. p, other spared.
bool find_balance(const polynode *p, const polynode *other, balance *s);

// Scale the variables of *p: sign 1, to the new ones; -1, back. All numbers are multiplied by 2^extra.
void scale_variables(polynode *p, const balance *s, std::int32_t sign, std::int32_t extra);

// Return what scale_variables takes from the exponent of the leading number of p.
std::int32_t leading_shift(const polynode *p, const balance *s);

}  // namespace kelmar
