// numbers/limb_root.cpp -- the square root by halves.
//
// The upper half of the root is the root of the upper half of the operand. What that leaves, with the next
// quarter of the operand behind it, divided by twice the root found, is the lower half of the root, and the
// square of the lower half is taken off. The root so found is right or one too large, and the sign of what is
// left tells. So a root takes one division and one square of half its length at each level, and no step is
// ever repeated.
#include "numbers/limb_root.h"

#include <cmath>

namespace kelmar {

// The root of v, rounded down, v >= 2^110.
static limb floor_root(double_limb v)
{
    // The double holds the upper 64 bits to one part in 2^53, so the first root is right to 2^4. What its
    // square leaves is a word, and one step of Newton's on that makes it right to 1.
    const double start = std::sqrt(static_cast<double>(static_cast<std::uint64_t>(v >> 48))) * 16777216.0;
    limb s = static_cast<limb>(start);
    const std::int64_t left = static_cast<std::int64_t>(v - static_cast<double_limb>(s) * s);
    s += static_cast<limb>(static_cast<std::int64_t>(static_cast<double>(left) / (2.0 * start)));
    while (static_cast<double_limb>(s) * s > v) --s;
    while (static_cast<double_limb>(s + 1) * (s + 1) <= v) ++s;
    return s;
}

static limb root_of_two(limb *s, limb *a)
{
    const double_limb v = static_cast<double_limb>(a[1]) << limb_bits | a[0];
    s[0] = floor_root(v);
    const limb left = static_cast<limb>(v - static_cast<double_limb>(s[0]) * s[0]);
    a[0] = left & limb_mask;
    return left >> limb_bits;
}

static bool below(const limb *a, const limb *b, std::int32_t n)
{
    while (n-- > 0) {
        if (a[n] != b[n]) return a[n] < b[n];
    }
    return false;
}

// q[0 .. low) and the limb returned = over * base^(low + high) + u[0 .. low + high) by top[0 .. high); the
// remainder is u[0 .. high).
static limb divide_by_top(limb *q, limb *u, limb over, std::int32_t low, const limb *top, std::int32_t high)
{
    limb whole = 0;
    while (over || !below(u + low, top, high)) {  // twice at most
        over -= subtract_limbs<binary_limbs>(u + low, high, top, high);
        ++whole;
    }
    divide_limbs(q, u, low + high, top, high, q + low);
    return whole;
}

// a += 2 s + 1 over n limbs. Return the carry out of the top.
static limb add_twice_and_one(limb *a, const limb *s, std::int32_t n)
{
    limb carry = 1;
    for (std::int32_t i = 0; i < n; ++i) {
        carry += a[i] + 2 * s[i];
        a[i] = carry & limb_mask;
        carry >>= limb_bits;
    }
    return carry;
}

limb root_limbs(limb *s, limb *a, std::int32_t n, limb *scratch)
{
    if (n == 1) return root_of_two(s, a);
    const std::int32_t low = n / 2, high = n - low;
    limb *const top = s + low;
    const limb over = root_limbs(top, a + 2 * low, high, scratch);
    limb whole = divide_by_top(scratch, a + low, over, low, top, high);

    // Half of the quotient, whole and scratch[0 .. low), is the lower half of the root.
    const bool odd = scratch[0] & 1;
    shift_limbs_down(scratch, low, 1);
    scratch[low - 1] |= whole << (limb_bits - 1) & limb_mask;
    whole >>= 1;
    for (std::int32_t i = 0; i < low; ++i) s[i] = scratch[i];
    std::int64_t left = odd ? static_cast<std::int64_t>(add_limbs<binary_limbs>(a + low, high, top, high))
                            : 0;

    limb *const square = a + n;  // what stood here is used up
    multiply_limbs(square, s, low, s, low, scratch);
    left -= static_cast<std::int64_t>(subtract_limbs<binary_limbs>(a, n, square, 2 * low));
    if (whole) {  // the lower half is base^low, its square base^(2 low)
        const limb one = 1;
        if (2 * low < n) {
            left -= static_cast<std::int64_t>(subtract_limbs<binary_limbs>(a + 2 * low, 1, &one, 1));
        } else {
            --left;
        }
        add_limbs<binary_limbs>(top, high, &one, 1);
    }
    if (left < 0) {  // one too large
        const limb one = 1;
        subtract_limbs<binary_limbs>(s, n, &one, 1);  // a root of base^n becomes the largest there is
        left += static_cast<std::int64_t>(add_twice_and_one(a, s, n));
    }
    return static_cast<limb>(left);
}

}  // namespace kelmar
