#pragma once
// poly/flat.h -- polynomials as flat arrays: a packed exponent and a coefficient for each term.
//
// The exponents of all levels are packed into one word, as digits of a number with a radix for each level,
// wide enough for a product of the pair. So the packed exponents of a product are sums, and the order of
// terms is the order of words. The walk that measures an operand also finds what the coefficients ask for.

#include "poly/variables.h"

namespace kelmar {

struct flat_shape {
    std::int32_t levels;  // levels with lists; the arrays are filled that far
    std::int64_t terms;
    std::int32_t size;        // digits of the longest coefficient, digit view
    std::uint64_t magnitude;  // bits of all coefficients of at most two digits, joined; digit view
    std::int32_t low[variable_limit + 1],
        top[variable_limit + 1];  // exponents; from level 2 on 0 is among them
};

struct flat_packing {
    std::int32_t levels;
    std::uint64_t span;                        // packed exponents of products stand in 0 .. span - 1
    std::uint64_t stride[variable_limit + 1];  // what exponent 1 adds, by level
    std::uint64_t origin[variable_limit + 1];  // of the product: what exponent 0 from this level down adds
    std::int32_t low[variable_limit + 1];      // of the product
};

// *s = the measures of p. Sizes of coefficients are looked at in the digit view alone.
void measure_flat(const polynode *p, flat_shape *s);

// All exponents of the product stay in the range of exponents.
bool exponents_fit(const flat_shape *a, const flat_shape *b);

// *packing = that of the pair. Declines (0) when the packed exponents do not fit 62 bits.
int pack_pair(const flat_shape *a, const flat_shape *b, flat_packing *packing);

}  // namespace kelmar
