#pragma once
// poly/laurent.h -- powers of the variables that all terms share are taken out, and put back.
//
// With them negative exponents are kept away from routines that know none. Levels count from the outer list
// of the polynomial, 1 first; var is the record of the variable of that list.

#include "poly/variables.h"

namespace kelmar {

inline constexpr std::int32_t any_exponent = INT32_MAX;  // a start of clear_bads: common powers too
inline constexpr std::int32_t all_levels = 0x4000;       // a last level of clear_bads, above every one

struct exponent_shifts {
    std::int32_t levels;                  // the last level whose shift is not 0; 0: there is none
    std::int32_t by[variable_limit + 1];  // by level
};
static_assert(std::is_trivial_v<exponent_shifts>);

// s->by[k] = the smaller of `start` and the smallest exponent of variable k over all terms of *p, for k up to
// `last`; further ones 0. Then *p = *p divided by those powers, in place. start 0: so that no exponent is
// negative; any_exponent: so that no variable divides *p. Zero has no shifts. Return whether one is not 0.
// Errors: 32 when an exponent would leave the words; then *p stays and all shifts are 0. Polls: no.
int clear_bads(polynode **p, const pt *var, exponent_shifts *s, std::int32_t start, std::int32_t last);

// *p = *p times the powers of s, or with sign -1 divided by them, in place. Zero stays. Errors: 32 when an
// exponent would leave the words, then *p stays. Polls: no.
void eliminate_bads(polynode **p, const exponent_shifts *s, std::int32_t sign);

// *p has a negative exponent. Stops at the first.
bool has_negative_exponents(const polynode *p);

}  // namespace kelmar
