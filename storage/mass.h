#pragma once
// storage/mass.h -- mass: an estimate of how hard a value is to work with.

#include <cstdint>

namespace kelmar {

struct number;

inline constexpr std::int32_t mass_limit = 33554430;  // the mass of everything that is heavier

// Return the mass of a number among the entries of an array: twice its digits, one less when the head digit
// is short; 5 |v| / modulus + 1 of a residue; |v| / 2^28 + 1 of a double or a free word. At most mass_limit.
std::int32_t number_mass(const number *n);

}  // namespace kelmar
