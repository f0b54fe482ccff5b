#pragma once
// poly/mass.h -- what a polynomial takes, and mass: an estimate of how hard it is to work with.
//
// Masses choose pivots and methods, so they are only compared: with each other, and with fixed numbers. Those
// by weight let a high exponent count, the more the deeper its level, since every term may meet every other.
// Those by records count what a copy allocates.
//
// All spare p. A number counts as one digit where digits are not live.

#include <cstdint>
#include "poly/node.h"
#include "storage/mass.h"

namespace kelmar {

inline constexpr std::int32_t full_mass_limit = 1 << 28;  // full_poly_mass of everything that is heavier

// Return the bytes of the nodes and numbers of p, by their nominal sizes.
std::int64_t sizepoly(const polynode *p);

// Return a rough size of the largest number of p in bits: those of a long integer, or of a word; a double
// itself, rounded. -1 when p is null.
std::int32_t max_digits(const polynode *p);

// Masses by weight ------------------------------------------------------------------------------------------
//
// Return the sum of the masses of the terms of p, a list at `level`. A number has the mass of its digits. The
// coefficient of exp e, at level + 1 with factor 1, is weighed with
//     poly_mass          |e| level factor
//     better_poly_mass   |e| factor + level
//     full_poly_mass     |e| level factor, and a number has the mass of its bits
//     new_poly_mass      level: whoever asks multiplies by the degree
// and with 1 for e = 0. factor, level >= 0. Where negative exponents are allowed, a single product of powers
// is a unit: its mass is its height and its depth together. At most mass_limit, full_mass_limit for full_.
std::int32_t poly_mass(const polynode *p, std::int32_t factor, std::int32_t level);
std::int32_t better_poly_mass(const polynode *p, std::int32_t factor, std::int32_t level);
std::int32_t full_poly_mass(const polynode *p, std::int32_t factor, std::int32_t level);
std::int32_t new_poly_mass(const polynode *p, std::int32_t level);

// Masses by records -----------------------------------------------------------------------------------------
//
// Return 13 for each node, 31 for each number and 8 for each of its digits. The last two stop with the first
// node that takes the sum above 250, and 350.
std::int64_t simple_poly_mass(const polynode *p);
std::int64_t very_simple_poly_mass(const polynode *p);
std::int64_t more_simple_poly_mass(const polynode *p);

}  // namespace kelmar
