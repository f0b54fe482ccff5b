// numbers/limb_div.cpp -- quotients of scratch limbs.
//
// A row takes one limb of the quotient: a trial limb from two limbs of the dividend and one of the divisor,
// mended against the divisor's second limb, so that on random values the row's subtraction goes below zero
// once in about 2^55 rows. A quotient of halving_cut limbs or more is found in two halves, each from a
// divisor cut to as many limbs as the half has. The cut makes the half too large by at most 2, and the sign
// of the remainder tells.
#include "numbers/limb_div.h"

namespace kelmar {

// Shifts --------------------------------------------------------------------------------------------------

limb shift_limbs_up(limb *r, const limb *a, std::int32_t n, std::int32_t bits)
{
    limb carry = 0;
    for (std::int32_t i = 0; i < n; ++i) {
        const limb v = a[i];
        r[i] = (v << bits & limb_mask) | carry;
        carry = v >> (limb_bits - bits);
    }
    return carry;
}

void shift_limbs_down(limb *a, std::int32_t n, std::int32_t bits)
{
    for (std::int32_t i = 0; i < n; ++i) {
        const limb above = i + 1 < n ? a[i + 1] : 0;
        a[i] = (a[i] >> bits | above << (limb_bits - bits)) & limb_mask;
    }
}

// Rows ----------------------------------------------------------------------------------------------------

// w[0 .. n) -= q * b[0 .. n). Return what is still to be taken off w[n].
static limb subtract_row(limb *w, const limb *b, std::int32_t n, limb q)
{
    limb carry = 0;
    for (std::int32_t i = 0; i < n; ++i) {
        const double_limb product = static_cast<double_limb>(q) * b[i] + carry;
        const limb rest = w[i] - (static_cast<limb>(product) & limb_mask);
        carry = static_cast<limb>(product >> limb_bits) + (rest >> 63);
        w[i] = rest & limb_mask;
    }
    return carry;
}

// The limb of the quotient for w[0 .. n] and b[0 .. n), n >= 2: exact or one too large.
static limb trial_limb(const limb *w, const limb *b, std::int32_t n)
{
    const limb top = b[n - 1];
    const double_limb two = static_cast<double_limb>(w[n]) << limb_bits | w[n - 1];
    limb trial = w[n] >= top ? limb_mask : static_cast<limb>(two / top);
    double_limb rest = two - static_cast<double_limb>(trial) * top;
    while (rest <= limb_mask && static_cast<double_limb>(trial) * b[n - 2] > (rest << limb_bits | w[n - 2])) {
        --trial;
        rest += top;
    }
    return trial;
}

static void divide_rows(limb *q, limb *u, std::int32_t m, const limb *b, std::int32_t n)
{
    for (std::int32_t j = m - 1; j >= 0; --j) {
        limb *const w = u + j;
        limb trial = trial_limb(w, b, n);
        const limb carry = subtract_row(w, b, n, trial);
        if (carry > w[n]) {
            --trial;
            add_limbs<binary_limbs>(w, n, b, n);  // its carry cancels the borrow
        }
        w[n] = 0;
        q[j] = trial;
    }
}

static void divide_by_limb(limb *q, limb *u, std::int32_t m, limb b)
{
    limb rest = u[m];
    for (std::int32_t j = m - 1; j >= 0; --j) {
        const double_limb two = static_cast<double_limb>(rest) << limb_bits | u[j];
        q[j] = static_cast<limb>(two / b);
        rest = static_cast<limb>(two - static_cast<double_limb>(q[j]) * b);
        u[j + 1] = 0;
    }
    u[0] = rest;
}

// Halves --------------------------------------------------------------------------------------------------

static bool below(const limb *a, const limb *b, std::int32_t n)
{
    while (n-- > 0) {
        if (a[n] != b[n]) return a[n] < b[n];
    }
    return false;
}

static void divide_halving(limb *q, limb *u, std::int32_t m, const limb *b, std::int32_t n, limb *scratch);

// q[0 .. m) = w[0 .. n + m) / b[0 .. n), m < n, by way of the upper m limbs of b.
static void divide_part(limb *q, limb *w, std::int32_t m, const limb *b, std::int32_t n, limb *scratch)
{
    const std::int32_t k = n - m;
    if (below(w + n, b + k, m)) {
        divide_halving(q, w + k, m, b + k, m, scratch);
    } else {  // equal, or the quotient would not fit: take the largest
        for (std::int32_t i = 0; i < m; ++i) {
            q[i] = limb_mask;
            w[n + i] = 0;
        }
        add_limbs<binary_limbs>(w + k, 2 * m, b + k, m);
    }
    if (m >= k) {
        multiply_limbs(scratch, q, m, b, k, scratch + n);
    } else {
        multiply_limbs(scratch, b, k, q, m, scratch + n);
    }
    const limb one = 1;
    limb borrow = subtract_limbs<binary_limbs>(w, n + m, scratch, n);
    while (borrow) {
        subtract_limbs<binary_limbs>(q, m, &one, 1);
        borrow -= add_limbs<binary_limbs>(w, n + m, b, n);
    }
}

// q[0 .. m) = u[0 .. n + m) / b[0 .. n), m <= n.
static void divide_halving(limb *q, limb *u, std::int32_t m, const limb *b, std::int32_t n, limb *scratch)
{
    if (m < halving_cut) return divide_rows(q, u, m, b, n);
    const std::int32_t low = m / 2;
    divide_part(q + low, u + low, m - low, b, n, scratch);
    divide_part(q, u, low, b, n, scratch);
}

void divide_limbs(limb *q, limb *u, std::int32_t nu, const limb *b, std::int32_t n, limb *scratch)
{
    std::int32_t rest = nu - n;
    if (n == 1) return divide_by_limb(q, u, rest, b[0]);
    std::int32_t step = rest % n ? rest % n : n;
    while (rest > 0) {
        rest -= step;
        divide_halving(q + rest, u + rest, step, b, n, scratch);
        step = n;
    }
}

}  // namespace kelmar
