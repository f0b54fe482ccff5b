// storage/mass.cpp -- the mass of numbers.
//
// Masses are only compared with each other, so everything past the limit weighs the same.
#include "storage/mass.h"
#include <cmath>
#include "numbers/number.h"

namespace kelmar {

static constexpr std::int32_t short_digit = 1 << 16;  // a head digit below it costs half a digit

static std::int32_t limited(double mass)
{
    return mass < mass_limit ? static_cast<std::int32_t>(mass) : mass_limit;
}

static std::int32_t digits_mass(const number *n)
{
    const bool is_short = std::abs(n->head->digit) < short_digit;
    return limited(2.0 * n->size - (is_short ? 1 : 0));
}

std::int32_t number_mass(const number *n)
{
    switch (live_view()) {
    case view_float: return limited(std::fabs(n->real) / digit_base + 1);
    case view_field:
    case view_modular: return limited(5.0 * std::fabs(n->word) / modulus + 1);
    case view_word: return limited(std::fabs(n->word) / digit_base + 1);
    case view_small:
    case view_digits: return digits_mass(n);
    }
    __builtin_unreachable();
}

}  // namespace kelmar
