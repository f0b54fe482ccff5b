#pragma once
// numbers/long_power.h -- powers, and measures of size in bits.

#include "numbers/number.h"

namespace kelmar {

// n = n^e in the live view, e >= 0; n^0 = 1, of 0 too. n replaced in place.
void number_power(number *n, std::int32_t e);

// *r = x^e modulo the prime modulus, or in the table field. e < 0 is a power of the inverse. 0^0 = 1.
// Errors: 22 for a negative power of 0; then *r = 0.
void mod_number_power(std::int32_t x, std::int32_t e, std::int32_t *r);

// v > 0 has a single bit set.
inline bool power_of_two(std::int32_t v)
{
    return v > 0 && (v & (v - 1)) == 0;
}

// Return the bits of the long integer n >= 0; 0 for 0. A head digit of 2^28, as it stands between two steps
// of a carry, has 29. logg2_neg: of n <= 0.
std::int32_t logg2(const number *n);
std::int32_t logg2_neg(const number *n);

// Return the bits of |v|; of the smaller of |v| and modulus - |v| in modular mode.
std::int32_t logg2lint(std::int32_t v);

inline std::int32_t minn(std::int32_t a, std::int32_t b)
{
    return a < b ? a : b;
}

inline std::int32_t maxx(std::int32_t a, std::int32_t b)
{
    return a > b ? a : b;
}

inline std::int32_t Iminn(std::int32_t a, std::int32_t b)
{
    return a < b ? a : b;
}

}  // namespace kelmar
