#pragma once
// poly/div_flat.h -- exact division of long integers' polynomials through flat arrays.
//
// All exponents are packed into one word, as flat products have them, and the dividend is written out as a
// row of cells, one for each packed exponent: terms of the quotient are read off from the top, and their
// products with the divisor go where they belong with no list in between. Cells are words of 64 bits in
// two's complement, as many as the longest coefficient needs and some more.

#include "poly/node.h"

namespace kelmar {

// default 40; products of terms of both; below it division stays on lists; nobody
inline std::int32_t flat_division_cut = 40;

enum flat_quotient { flat_not_exact, flat_exact, flat_not_suited };

// *q = n / m, where m is no constant, and flat_exact; flat_not_exact when m does not divide. Declines
// (flat_not_suited): outside the digit view, with negative exponents, few terms, many gaps, or where a
// quotient has far longer coefficients than n; the heap has no room. n consumed when it does not decline, m
// restored; *q filled. Polls: now and then.
flat_quotient divide_flat_exactly(polynode *n, polynode *m, polynode **q);

}  // namespace kelmar
