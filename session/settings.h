#pragma once
// session/settings.h -- switches and tables whose modules do not exist yet; each moves to its module when that comes.

#include "numbers/plain_quoly.h"

namespace kelmar {

// default 1, set to 0 at the first prompt; the fast probabilistic tests of exact division are permitted; &_t
inline std::int32_t try_rat = 1;
inline std::int32_t rat_yes = 1;

inline constexpr std::int32_t denom_count = 999;
inline quolynode *denom[denom_count];  // the values 1 to 998, for characteristic polynomials

}  // namespace kelmar
