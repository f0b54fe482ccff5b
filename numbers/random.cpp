// numbers/random.cpp -- the leading bits of random() are the good ones, so draws are scaled, not masked.
#include "numbers/random.h"

#include <cstdlib>
#include <ctime>

#include "numbers/dispatch.h"
#include "numbers/plain_quoly.h"

namespace kelmar {

std::int32_t rand_integer2()
{
    return static_cast<std::int32_t>(static_cast<double>(random()) / two_thirty1 * 16384.0);
}

std::int32_t rand_integer()
{
    const std::int32_t high = rand_integer2();
    return (high << 14) + rand_integer2();
}

std::int32_t rand_integer3()
{
    const std::uint64_t draw = static_cast<std::uint64_t>(rand_integer2());
    return static_cast<std::int32_t>(draw * static_cast<std::uint64_t>(std::clock()) % 48871);
}

void randomize(int use_clock, quolynode **q)
{
    std::int32_t value = rand_integer();
    if (use_clock) {
        const std::uint64_t ticks = static_cast<std::uint64_t>(std::clock());
        const std::uint64_t sum = static_cast<std::uint64_t>(value) + ticks;
        value = static_cast<std::int32_t>(sum & static_cast<std::uint64_t>(digit_mask));
    }
    const num_view view = live_view();
    if (view == view_modular || view == view_field) value %= modulus;
    plain_set(value, q);
    quot((*q)->num, &rand_denom_n, (*q)->num);
}

}  // namespace kelmar
