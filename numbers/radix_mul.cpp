// numbers/radix_mul.cpp -- products of decimal limbs.
//
// A column sums in 128 bits all products that meet in one limb, and is divided by 10^16 once. Above that,
// operands are cut in halves or thirds. Every linear step runs from the low end with a signed carry: what
// leaves the range of a limb, on either side, goes on to the next.
#include "numbers/radix_mul.h"

namespace kelmar {

// Columns ---------------------------------------------------------------------------------------------------

// nb <= 64.
static void multiply_columns(limb *r, const limb *a, std::int32_t na, const limb *b, std::int32_t nb)
{
    double_limb sum = 0;
    for (std::int32_t k = 0; k < na + nb - 1; ++k) {
        const std::int32_t from = k < na ? 0 : k - na + 1;
        const std::int32_t to = k < nb ? k : nb - 1;
        const limb *up = b + from;
        const limb *down = a + (k - from);
        for (std::int32_t i = to - from; i >= 0; --i) sum += static_cast<double_limb>(*up++) * *down--;
        r[k] = split_limb(&sum);
    }
    r[na + nb - 1] = static_cast<limb>(sum);
}

static void square_columns(limb *r, const limb *a, std::int32_t n)
{
    double_limb carry = 0;
    for (std::int32_t k = 0; k < 2 * n - 1; ++k) {
        const limb *up = a + (k < n ? 0 : k - n + 1);
        const limb *down = a + (k < n ? k : n - 1);
        double_limb sum = 0;
        while (up < down) sum += static_cast<double_limb>(*up++) * *down--;
        sum = 2 * sum + carry;
        if (up == down) sum += static_cast<double_limb>(*up) * *up;
        r[k] = split_limb(&sum);
        carry = sum;
    }
    r[2 * n - 1] = static_cast<limb>(carry);
}

// Linear steps ----------------------------------------------------------------------------------------------

// Carries are as good as random, so none of these steps branches on one.

// Return *carry mod 10^16, 0 or above, and make *carry the rest of it, by 10^16; |*carry| < 2^57.
static inline limb settle(std::int64_t *carry)
{
    constexpr std::int64_t lift = 16;  // makes it positive
    const limb v = static_cast<limb>(*carry + lift * static_cast<std::int64_t>(ten_base));
    const limb q = v / ten_base;
    *carry = static_cast<std::int64_t>(q) - lift;
    return v - q * ten_base;
}

// Return sum - 10^16 and *over = 1 when sum reaches that, else sum and 0.
static inline limb wrap_sum(limb sum, limb *over)
{
    *over = sum >= ten_base;
    return sum - (ten_base & (0 - *over));
}

// r[0 .. n) = 10^(16 n) - r, r > 0.
static void complement(limb *r, std::int32_t n)
{
    limb carry = 1;
    for (std::int32_t i = 0; i < n; ++i) {
        r[i] = wrap_sum(ten_base - 1 - r[i] + carry, &carry);
    }
}

// r[0 .. n) = |low - high| where high has nh <= n limbs. Return whether high was the larger.
static bool distance(limb *r, const limb *low, std::int32_t n, const limb *high, std::int32_t nh)
{
    limb borrow = 0;
    for (std::int32_t i = 0; i < n; ++i) {
        const limb rest = low[i] - (i < nh ? high[i] : 0) - borrow;
        borrow = rest >> 63;
        r[i] = rest + (ten_base & (0 - borrow));
    }
    if (borrow) complement(r, n);
    return borrow;
}

void add_decimal(limb *r, std::int32_t n, const limb *t, std::int32_t nt)
{
    limb carry = 0;
    std::int32_t i = 0;
    for (; i < nt; ++i) r[i] = wrap_sum(r[i] + t[i] + carry, &carry);
    for (; carry && i < n; ++i) r[i] = wrap_sum(r[i] + 1, &carry);
}

// r += t * 10^(16 at), where what of t would stand past r[n) is 0.
static void add_at(limb *r, std::int32_t n, std::int32_t at, const limb *t, std::int32_t nt)
{
    const std::int32_t room = n - at;
    add_decimal(r + at, room, t, room < nt ? room : nt);
}

// r[0 .. n) = x[0 .. n) + c * y[0 .. ny), ny <= n, c small; the result is known to be in range. r may be x or
// y.
static void combine(limb *r, const limb *x, std::int64_t c, const limb *y, std::int32_t ny, std::int32_t n)
{
    std::int64_t carry = 0;
    for (std::int32_t i = 0; i < n; ++i) {
        carry += static_cast<std::int64_t>(x[i]);
        if (i < ny) carry += c * static_cast<std::int64_t>(y[i]);
        r[i] = settle(&carry);
    }
}

// Halves ----------------------------------------------------------------------------------------------------

// r[h .. n) += r[0 .. 2h) + r[2h .. n) - or + t[0 .. 2h): the middle term of the product of n limbs.
static void add_middle(limb *r, std::int32_t n, std::int32_t h, limb *t, bool minus)
{
    const std::int64_t sign = minus ? -1 : 1;
    std::int64_t carry = 0;
    for (std::int32_t i = 0; i < 2 * h; ++i) {
        carry += sign * static_cast<std::int64_t>(t[i]) + static_cast<std::int64_t>(r[i]);
        if (2 * h + i < n) carry += static_cast<std::int64_t>(r[2 * h + i]);
        t[i] = settle(&carry);
    }
    add_at(r, n, h, t, 2 * h);
    const limb top = static_cast<limb>(carry);
    if (top) add_at(r, n, 3 * h, &top, 1);
}

static void multiply_halves(limb *r, const limb *a, std::int32_t na, const limb *b, std::int32_t nb,
                            limb *scratch)
{
    const bool square = a == b && na == nb;
    const std::int32_t h = (na + 1) / 2;
    const bool turned_a = distance(r, a, h, a + h, na - h);
    const bool turned_b = square ? turned_a : distance(r + h, b, h, b + h, nb - h);
    limb *const rest = scratch + 2 * h;
    multiply_decimal(scratch, r, h, square ? r : r + h, h, rest);
    multiply_decimal(r, a, h, b, h, rest);
    multiply_decimal(r + 2 * h, a + h, na - h, b + h, nb - h, rest);
    add_middle(r, na + nb, h, scratch, turned_a == turned_b);
}

// Thirds ----------------------------------------------------------------------------------------------------

// r[0 .. k] = |a(x)| for the thirds of a as coefficients: k, k and na - 2k limbs; x is 1, -1 or 2. Return
// whether a(x) is below 0.
static bool evaluate(limb *r, const limb *a, std::int32_t na, std::int32_t k, std::int64_t x)
{
    std::int64_t carry = 0;
    for (std::int32_t i = 0; i < k; ++i) {
        carry += static_cast<std::int64_t>(a[i]) + x * static_cast<std::int64_t>(a[k + i]);
        if (2 * k + i < na) carry += x * x * static_cast<std::int64_t>(a[2 * k + i]);
        r[i] = settle(&carry);
    }
    const bool below = carry < 0;
    r[k] = settle(&carry);
    if (below) complement(r, k + 1);
    return below;
}

// r[0 .. n) = r / D, which leaves nothing; D is 2 or 3.
template <limb D> static void divide_exactly(limb *r, std::int32_t n)
{
    limb rest = 0;
    for (std::int32_t i = n - 1; i >= 0; --i) {
        const limb two = rest * ten_base + r[i];
        r[i] = two / D;
        rest = two % D;
    }
}

// The values of the product at 0, 1, -1, 2 and infinity. at_1, at_m1 and at_2 have n limbs, at_0 has 2k.
struct five_decimals {
    const limb *at_0;
    limb *at_1, *at_m1, *at_2;
    const limb *at_infinity;
    std::int32_t k, n, n_infinity;
    bool minus;  // the value at -1 is below 0; at_m1 is its magnitude
};

// at_m1, at_1, at_2 become the first, second and third coefficient of the product.
static void interpolate(const five_decimals *v)
{
    const std::int32_t n = v->n;
    const std::int64_t less = v->minus ? 1 : -1;
    combine(v->at_2, v->at_2, less, v->at_m1, n, n);
    divide_exactly<3>(v->at_2, n);
    combine(v->at_m1, v->at_1, less, v->at_m1, n, n);
    divide_exactly<2>(v->at_m1, n);
    combine(v->at_1, v->at_1, -1, v->at_0, 2 * v->k, n);
    combine(v->at_2, v->at_2, -1, v->at_1, n, n);
    divide_exactly<2>(v->at_2, n);
    combine(v->at_1, v->at_1, -1, v->at_m1, n, n);
    combine(v->at_1, v->at_1, -1, v->at_infinity, v->n_infinity, n);
    combine(v->at_2, v->at_2, -2, v->at_infinity, v->n_infinity, n);
    combine(v->at_m1, v->at_m1, -1, v->at_2, n, n);
}

static void multiply_thirds(limb *r, const limb *a, std::int32_t na, const limb *b, std::int32_t nb,
                            limb *scratch)
{
    const bool square = a == b && na == nb;
    const std::int32_t k = (na + 2) / 3, n = 2 * k + 2;
    limb *const value[3] = {scratch, scratch + n, scratch + 2 * n};
    limb *const rest = scratch + 3 * n;
    const std::int64_t point[3] = {1, -1, 2};
    bool minus = false;
    for (std::int32_t i = 0; i < 3; ++i) {
        const bool minus_a = evaluate(r, a, na, k, point[i]);
        const bool minus_b = square ? minus_a : evaluate(r + k + 1, b, nb, k, point[i]);
        multiply_decimal(value[i], r, k + 1, square ? r : r + k + 1, k + 1, rest);
        if (minus_a != minus_b) minus = true;
    }
    multiply_decimal(r, a, k, b, k, rest);
    multiply_decimal(r + 4 * k, a + 2 * k, na - 2 * k, b + 2 * k, nb - 2 * k, rest);
    const five_decimals v = {r, value[0], value[1], value[2], r + 4 * k, k, n, na + nb - 4 * k, minus};
    interpolate(&v);
    for (std::int32_t i = 2 * k; i < 4 * k; ++i) r[i] = 0;
    add_at(r, na + nb, k, v.at_m1, n);
    add_at(r, na + nb, 2 * k, v.at_1, n);
    add_at(r, na + nb, 3 * k, v.at_2, n);
}

// The choice ------------------------------------------------------------------------------------------------

// a is at least about twice as long as b: block by block.
static void multiply_blocks(limb *r, const limb *a, std::int32_t na, const limb *b, std::int32_t nb,
                            limb *scratch)
{
    multiply_decimal(r, a, nb, b, nb, scratch);
    for (std::int32_t done = nb; done < na; done += nb) {
        const std::int32_t part = na - done < nb ? na - done : nb;
        for (std::int32_t i = 0; i < part; ++i) r[done + nb + i] = 0;
        multiply_decimal(scratch, b, nb, a + done, part, scratch + 2 * nb);
        add_decimal(r + done, nb + part, scratch, nb + part);
    }
}

void multiply_decimal(limb *r, const limb *a, std::int32_t na, const limb *b, std::int32_t nb, limb *scratch)
{
    if (nb < decimal_column_cut) {
        return a == b && na == nb ? square_columns(r, a, na) : multiply_columns(r, a, na, b, nb);
    }
    if (nb <= (na + 1) / 2) return multiply_blocks(r, a, na, b, nb, scratch);
    if (nb >= decimal_thirds_cut && nb > (na + 2) / 3 * 2) return multiply_thirds(r, a, na, b, nb, scratch);
    multiply_halves(r, a, na, b, nb, scratch);
}

}  // namespace kelmar
