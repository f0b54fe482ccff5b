#pragma once
// numbers/limb_base.h -- the two bases of scratch limbs, and how a carry leaves a limb in each.
//
// Arrays of limbs stand for a magnitude, least significant first: in the base 2^56 for work on long integers,
// in the base 10^16 for work on their decimal texts. All that a product, a sum or a difference has to know of
// the base is here, so that each of them is written once. Carries are as good as random, so no step branches
// on one.

#include "numbers/limbs.h"

namespace kelmar {

enum limb_base { binary_limbs, decimal_limbs };

inline constexpr limb ten_base = 10000000000000000;  // 10^16: two groups of eight

template <limb_base B> inline constexpr limb base_of = B == binary_limbs ? limb_mask + 1 : ten_base;

inline constexpr std::int32_t longest_column = 64;  // products of two decimal limbs that split_limb can take

// Return *v mod 10^16 and make *v the quotient, *v < 2^113: longest_column products and a carry.
inline limb split_limb(double_limb *v)
{
    constexpr limb reciprocal = static_cast<limb>((static_cast<double_limb>(1) << 117) / ten_base);
    limb q = static_cast<limb>(static_cast<double_limb>(static_cast<limb>(*v >> 49)) * reciprocal >> 68);
    limb rest = static_cast<limb>(*v) - q * ten_base;
    if (rest >= ten_base) {  // the estimate is one short at most
        rest -= ten_base;
        ++q;
    }
    *v = q;
    return rest;
}

// Return the limb that a column's sum leaves, and make *sum what goes on.
template <limb_base B> inline limb end_column(double_limb *sum)
{
    if constexpr (B == decimal_limbs) return split_limb(sum);
    const limb low = static_cast<limb>(*sum) & limb_mask;
    *sum >>= limb_bits;
    return low;
}

// Return *carry modulo the base, 0 or above, and make *carry the rest of it, by the base; in the base 10^16
// |*carry| < 2^57.
template <limb_base B> inline limb settle(std::int64_t *carry)
{
    if constexpr (B == decimal_limbs) {
        constexpr std::int64_t lift = 16;  // makes it positive
        const limb v = static_cast<limb>(*carry + lift * static_cast<std::int64_t>(ten_base));
        const limb q = v / ten_base;
        *carry = static_cast<std::int64_t>(q) - lift;
        return v - q * ten_base;
    }
    const limb low = static_cast<limb>(*carry) & limb_mask;
    *carry >>= limb_bits;
    return low;
}

// Return sum - base and *over = 1 when sum, below twice the base, reaches the base; else sum and 0.
template <limb_base B> inline limb wrap_sum(limb sum, limb *over)
{
    if constexpr (B == decimal_limbs) {
        *over = sum >= ten_base;
        return sum - (ten_base & (0 - *over));
    }
    *over = sum >> limb_bits;
    return sum & limb_mask;
}

// Return rest + base and *borrow = 1 when rest, at least -base, is below 0; else rest and 0.
template <limb_base B> inline limb wrap_difference(limb rest, limb *borrow)
{
    *borrow = rest >> 63;
    if constexpr (B == decimal_limbs) return rest + (ten_base & (0 - *borrow));
    return rest & limb_mask;
}

// r[0 .. n) += t[0 .. nt), nt <= n. Return the carry out of the top.
template <limb_base B> inline limb add_limbs(limb *r, std::int32_t n, const limb *t, std::int32_t nt)
{
    limb carry = 0;
    std::int32_t i = 0;
    for (; i < nt; ++i) r[i] = wrap_sum<B>(r[i] + t[i] + carry, &carry);
    for (; carry && i < n; ++i) r[i] = wrap_sum<B>(r[i] + 1, &carry);
    return carry;
}

// r[0 .. n) -= t[0 .. nt), nt <= n. Return the borrow out of the top.
template <limb_base B> inline limb subtract_limbs(limb *r, std::int32_t n, const limb *t, std::int32_t nt)
{
    limb borrow = 0;
    std::int32_t i = 0;
    for (; i < nt; ++i) r[i] = wrap_difference<B>(r[i] - t[i] - borrow, &borrow);
    for (; borrow && i < n; ++i) r[i] = wrap_difference<B>(r[i] - 1, &borrow);
    return borrow;
}

// r[0 .. n) = base^n - r, r > 0.
template <limb_base B> inline void complement(limb *r, std::int32_t n)
{
    limb carry = 1;
    for (std::int32_t i = 0; i < n; ++i) r[i] = wrap_sum<B>(base_of<B> - 1 - r[i] + carry, &carry);
}

}  // namespace kelmar
