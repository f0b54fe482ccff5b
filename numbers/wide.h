#pragma once
// numbers/wide.h -- what the gcd routines share: long integers of at most four digits as double words, and
// magnitudes.

#include "numbers/limbs.h"

namespace kelmar {

// Return gcd(a, b), either may be 0.
double_limb wide_gcd(double_limb a, double_limb b);

// Return the magnitude of a chain of at most 4 digits.
inline double_limb wide_value(const number *n)
{
    double_limb v = 0;
    const numnode *node = n->head;
    for (std::int32_t i = 0; i < n->size; ++i, node = node->next) {
        v = v << digit_bits | static_cast<std::uint32_t>(node->digit < 0 ? -node->digit : node->digit);
    }
    return v;
}

inline bool is_zero_chain(const number *a)
{
    return a->size == 0 || a->head->digit == 0;
}

// c = |a|, and 0 for a number without digits. c replaced, may be a.
void set_magnitude(const number *a, number *c);

}  // namespace kelmar
