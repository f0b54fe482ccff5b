#pragma once
// poly/transform_mod.h -- arithmetic modulo a prime below 2^62, with factors that are used many times.

#include <cstdint>

namespace kelmar {

using u64 = std::uint64_t;
using u128 = unsigned __int128;

// A constant factor modulo a prime, and its quotient.
struct factor {
    u64 value, quotient;
};

inline u64 high_half(u64 a, u64 b)
{
    return static_cast<u64>(static_cast<u128>(a) * b >> 64);
}

inline u64 times(u64 a, u64 b, u64 p)
{
    return static_cast<u64>(static_cast<u128>(a) * b % p);
}

inline u64 power(u64 a, u64 e, u64 p)
{
    u64 r = 1;
    for (; e > 0; e >>= 1, a = times(a, a, p)) {
        if (e & 1) r = times(r, a, p);
    }
    return r;
}

inline factor factor_of(u64 w, u64 p)
{
    return {w, static_cast<u64>((static_cast<u128>(w) << 64) / p)};
}

// Return x w modulo p, below 2p, for any x.
inline u64 lazy_times(u64 x, factor w, u64 p)
{
    return x * w.value - high_half(x, w.quotient) * p;
}

inline u64 below_twice(u64 x, u64 p)
{
    return x >= 2 * p ? x - 2 * p : x;
}

}  // namespace kelmar
