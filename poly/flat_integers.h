#pragma once
// poly/flat_integers.h -- the rings of flat arrays whose coefficients are long integers of at most two
// digits, with sums in one word or in two.

#include "numbers/limbs.h"
#include "poly/flat_rings.h"

namespace kelmar {

// Bits of a sum, sign apart: one prime tells those of short_integers, two those of wide_integers.
inline constexpr std::int32_t short_sum_bits = 60;
inline constexpr std::int32_t wide_sum_bits = 122;

inline std::int64_t short_value(const number *n)
{
    const std::int64_t v = n->head->digit;
    return n->size == 2 ? v * digit_base + n->tail->digit : v;
}

struct short_integers {
    using coef = std::int64_t;
    using sum = std::int64_t;
};
inline std::int64_t load_coef(short_integers, const number *n)
{
    return short_value(n);
}
inline void add_product(short_integers, std::int64_t *s, std::int64_t c, std::int64_t d)
{
    *s += c * d;
}
inline void add_sum(short_integers, std::int64_t *s, std::int64_t t)
{
    *s += t;
}
inline std::int64_t settled(short_integers, std::int64_t s)
{
    return s;
}

struct wide_integers {
    using coef = std::int64_t;
    using sum = __int128;
};
inline std::int64_t load_coef(wide_integers, const number *n)
{
    return short_value(n);
}
inline void add_product(wide_integers, __int128 *s, std::int64_t c, std::int64_t d)
{
    *s += static_cast<__int128>(c) * d;
}
inline void add_sum(wide_integers, __int128 *s, __int128 t)
{
    *s += t;
}
inline __int128 settled(wide_integers, __int128 s)
{
    return s;
}
inline void store_sum(wide_integers, __int128 s, number *n)
{
    const std::int32_t sign = s < 0 ? -1 : 0;
    const double_limb v = static_cast<double_limb>(sign ? -s : s);
    if (v >> (2 * limb_bits) == 0) return set_small_value(v, sign, n);
    const limb limbs[3] = {static_cast<limb>(v) & limb_mask, static_cast<limb>(v >> limb_bits) & limb_mask,
                           static_cast<limb>(v >> (2 * limb_bits))};
    scatter_limbs(limbs, 3, sign, n);
}
inline __int128 sum_of_integer(wide_integers, __int128 v)
{
    return v;
}
inline void store_sum(short_integers, std::int64_t s, number *n)
{
    store_sum(wide_integers{}, s, n);
}
inline std::int64_t sum_of_integer(short_integers, __int128 v)
{
    return static_cast<std::int64_t>(v);
}

}  // namespace kelmar
