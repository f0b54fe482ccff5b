#pragma once
// quoly/mass.h -- the masses of scalar values. See poly/mass.h; sizequoly is in storage/accounting.h.

#include "numbers/plain_quoly.h"

namespace kelmar {

// Return the mass of the numerator plus that of the denominator, each with factor 1 from level 1. A plain
// number has the mass of its digits. At most mass_limit. q spared.
std::int32_t quoly_mass(const quolynode *q);
std::int32_t better_quoly_mass(const quolynode *q);

// Return the larger max_digits of the numerator and the denominator.
std::int32_t quoly_max_digits(const quolynode *q);

}  // namespace kelmar
