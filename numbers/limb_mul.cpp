// numbers/limb_mul.cpp -- products of scratch limbs.
//
// Short products go column by column: all that meet in one limb of the result are summed in 128 bits, and one
// carry leaves the column. Longer ones are cut at half the longer operand, Karatsuba's way, with the
// difference of the halves, so that no intermediate value outgrows its half. Still longer ones are cut in
// thirds: the operands as quadratic polynomials are evaluated at 0, 1, -1, 2 and infinity, and the product
// found from its five values. An operand of at most half the other's length multiplies it block by block.
// Every linear step runs from the low end with a signed carry: what leaves the range of a limb, on either
// side, goes on to the next. One body serves both bases.
#include "numbers/limb_mul.h"

namespace kelmar {

template <limb_base B>
static void product(limb *r, const limb *a, std::int32_t na, const limb *b, std::int32_t nb, limb *scratch);

// Columns -------------------------------------------------------------------------------------------------

static inline void add_product(double_limb *sum, limb a, limb b)
{
    *sum += static_cast<double_limb>(a) * b;
}

template <limb_base B>
static void multiply_columns(limb *r, const limb *a, std::int32_t na, const limb *b, std::int32_t nb)
{
    double_limb sum = 0;
    for (std::int32_t k = 0; k < na + nb - 1; ++k) {
        const std::int32_t from = k < na ? 0 : k - na + 1;
        const std::int32_t to = k < nb ? k : nb - 1;
        const limb *up = b + from;
        const limb *down = a + (k - from);
        for (std::int32_t i = to - from; i >= 0; --i) add_product(&sum, *up++, *down--);
        r[k] = end_column<B>(&sum);
    }
    r[na + nb - 1] = static_cast<limb>(sum);
}

// A function of its own, which keeps the sums in registers (measured).
template <limb_base B> [[gnu::noinline]] static void square_columns(limb *r, const limb *a, std::int32_t n)
{
    double_limb carry = 0;
    for (std::int32_t k = 0; k < 2 * n - 1; ++k) {
        const limb *up = a + (k < n ? 0 : k - n + 1);
        const limb *down = a + (k < n ? k : n - 1);
        double_limb sum = 0;
        while (up < down) add_product(&sum, *up++, *down--);
        sum = 2 * sum + carry;
        if (up == down) add_product(&sum, *up, *up);
        r[k] = end_column<B>(&sum);
        carry = sum;
    }
    r[2 * n - 1] = static_cast<limb>(carry);
}

// Linear steps --------------------------------------------------------------------------------------------

// r[0 .. n) = |low - high| where high has nh <= n limbs. Return whether high was the larger.
template <limb_base B>
static bool distance(limb *r, const limb *low, std::int32_t n, const limb *high, std::int32_t nh)
{
    limb borrow = 0;
    std::int32_t i = 0;
    for (; i < nh; ++i) r[i] = wrap_difference<B>(low[i] - high[i] - borrow, &borrow);
    for (; i < n; ++i) r[i] = wrap_difference<B>(low[i] - borrow, &borrow);
    if (borrow) complement<B>(r, n);
    return borrow;
}

// r += t * base^at, where what of t would stand past r[n) is 0.
template <limb_base B>
static void add_at(limb *r, std::int32_t n, std::int32_t at, const limb *t, std::int32_t nt)
{
    const std::int32_t room = n - at;
    add_limbs<B>(r + at, room, t, room < nt ? room : nt);
}

// r[0 .. n) = x[0 .. n) + c * y[0 .. ny), ny <= n, |c| <= 4; the result is known to be in range. r may be x
// or y.
template <limb_base B>
static void combine(limb *r, const limb *x, std::int64_t c, const limb *y, std::int32_t ny, std::int32_t n)
{
    std::int64_t carry = 0;
    for (std::int32_t i = 0; i < n; ++i) {
        carry += static_cast<std::int64_t>(x[i]);
        if (i < ny) carry += c * static_cast<std::int64_t>(y[i]);
        r[i] = settle<B>(&carry);
    }
}

// Halves --------------------------------------------------------------------------------------------------

// r[h .. n) += r[0 .. 2h) + r[2h .. n) - or + t[0 .. 2h): the middle term of Karatsuba's product of n limbs.
template <limb_base B> static void add_middle(limb *r, std::int32_t n, std::int32_t h, limb *t, bool minus)
{
    const std::int64_t turn = minus ? -1 : 0;
    std::int64_t carry = 0;
    for (std::int32_t i = 0; i < 2 * h; ++i) {
        carry += (static_cast<std::int64_t>(t[i]) ^ turn) - turn + static_cast<std::int64_t>(r[i]);
        if (2 * h + i < n) carry += static_cast<std::int64_t>(r[2 * h + i]);
        t[i] = settle<B>(&carry);
    }
    add_at<B>(r, n, h, t, 2 * h);
    const limb top = static_cast<limb>(carry);
    if (top) add_at<B>(r, n, 3 * h, &top, 1);
}

template <limb_base B>
static void multiply_halves(limb *r, const limb *a, std::int32_t na, const limb *b, std::int32_t nb,
                            limb *scratch)
{
    const bool square = a == b && na == nb;
    const std::int32_t h = (na + 1) / 2;
    const bool turned_a = distance<B>(r, a, h, a + h, na - h);
    const bool turned_b = square ? turned_a : distance<B>(r + h, b, h, b + h, nb - h);
    limb *const rest = scratch + 2 * h;
    product<B>(scratch, r, h, square ? r : r + h, h, rest);
    product<B>(r, a, h, b, h, rest);
    product<B>(r + 2 * h, a + h, na - h, b + h, nb - h, rest);
    add_middle<B>(r, na + nb, h, scratch, turned_a == turned_b);
}

// Thirds --------------------------------------------------------------------------------------------------

// r[0 .. k] = |a(x)| for the thirds of a as coefficients: k, k and na - 2k limbs; x is 1, -1 or 2. Return
// whether a(x) is below 0.
template <limb_base B>
static bool evaluate(limb *r, const limb *a, std::int32_t na, std::int32_t k, std::int64_t x)
{
    std::int64_t carry = 0;
    for (std::int32_t i = 0; i < k; ++i) {
        carry += static_cast<std::int64_t>(a[i]) + x * static_cast<std::int64_t>(a[k + i]);
        if (2 * k + i < na) carry += x * x * static_cast<std::int64_t>(a[2 * k + i]);
        r[i] = settle<B>(&carry);
    }
    const bool below = carry < 0;
    r[k] = settle<B>(&carry);
    if (below) complement<B>(r, k + 1);
    return below;
}

// r[0 .. n) = r / D, which leaves nothing; D is 2 or 3.
template <limb_base B, limb D> static void divide_exactly(limb *r, std::int32_t n)
{
    limb rest = 0;
    for (std::int32_t i = n - 1; i >= 0; --i) {
        const limb two = rest * base_of<B> + r[i];
        r[i] = two / D;
        rest = two % D;
    }
}

// The values of the product at 0, 1, -1, 2 and infinity. at_1, at_m1 and at_2 have n limbs, at_0 has 2k.
struct five_values {
    const limb *at_0;
    limb *at_1, *at_m1, *at_2;
    const limb *at_infinity;
    std::int32_t k, n, n_infinity;
    bool minus;  // the value at -1 is below 0; at_m1 is its magnitude
};

// at_m1, at_1, at_2 become the first, second and third coefficient of the product.
template <limb_base B> static void interpolate(const five_values *v)
{
    const std::int32_t n = v->n;
    const std::int64_t less = v->minus ? 1 : -1;
    combine<B>(v->at_2, v->at_2, less, v->at_m1, n, n);
    divide_exactly<B, 3>(v->at_2, n);
    combine<B>(v->at_m1, v->at_1, less, v->at_m1, n, n);
    divide_exactly<B, 2>(v->at_m1, n);
    combine<B>(v->at_1, v->at_1, -1, v->at_0, 2 * v->k, n);
    combine<B>(v->at_2, v->at_2, -1, v->at_1, n, n);
    divide_exactly<B, 2>(v->at_2, n);
    combine<B>(v->at_1, v->at_1, -1, v->at_m1, n, n);
    combine<B>(v->at_1, v->at_1, -1, v->at_infinity, v->n_infinity, n);
    combine<B>(v->at_2, v->at_2, -2, v->at_infinity, v->n_infinity, n);
    combine<B>(v->at_m1, v->at_m1, -1, v->at_2, n, n);
}

template <limb_base B>
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
        const bool minus_a = evaluate<B>(r, a, na, k, point[i]);
        const bool minus_b = square ? minus_a : evaluate<B>(r + k + 1, b, nb, k, point[i]);
        product<B>(value[i], r, k + 1, square ? r : r + k + 1, k + 1, rest);
        if (minus_a != minus_b) minus = true;
    }
    product<B>(r, a, k, b, k, rest);
    product<B>(r + 4 * k, a + 2 * k, na - 2 * k, b + 2 * k, nb - 2 * k, rest);
    const five_values v = {r, value[0], value[1], value[2], r + 4 * k, k, n, na + nb - 4 * k, minus};
    interpolate<B>(&v);
    for (std::int32_t i = 2 * k; i < 4 * k; ++i) r[i] = 0;
    add_at<B>(r, na + nb, k, v.at_m1, n);
    add_at<B>(r, na + nb, 2 * k, v.at_1, n);
    add_at<B>(r, na + nb, 3 * k, v.at_2, n);
}

// The choice ----------------------------------------------------------------------------------------------

// a is at least about twice as long as b: block by block.
template <limb_base B>
static void multiply_blocks(limb *r, const limb *a, std::int32_t na, const limb *b, std::int32_t nb,
                            limb *scratch)
{
    product<B>(r, a, nb, b, nb, scratch);
    for (std::int32_t done = nb; done < na; done += nb) {
        const std::int32_t part = na - done < nb ? na - done : nb;
        for (std::int32_t i = 0; i < part; ++i) r[done + nb + i] = 0;
        product<B>(scratch, b, nb, a + done, part, scratch + 2 * nb);
        add_limbs<B>(r + done, nb + part, scratch, nb + part);
    }
}

template <limb_base B>
static void product(limb *r, const limb *a, std::int32_t na, const limb *b, std::int32_t nb, limb *scratch)
{
    constexpr product_cuts cut = cuts_of[B];
    const bool square = a == b && na == nb;
    if (square && na < cut.squares) return square_columns<B>(r, a, na);
    if (nb < cut.columns && !square) return multiply_columns<B>(r, a, na, b, nb);
    if (nb <= (na + 1) / 2) return multiply_blocks<B>(r, a, na, b, nb, scratch);
    if (nb >= cut.thirds && nb > (na + 2) / 3 * 2) return multiply_thirds<B>(r, a, na, b, nb, scratch);
    multiply_halves<B>(r, a, na, b, nb, scratch);
}

void multiply_limbs(limb *r, const limb *a, std::int32_t na, const limb *b, std::int32_t nb, limb *scratch)
{
    product<binary_limbs>(r, a, na, b, nb, scratch);
}

void multiply_decimal(limb *r, const limb *a, std::int32_t na, const limb *b, std::int32_t nb, limb *scratch)
{
    product<decimal_limbs>(r, a, na, b, nb, scratch);
}

}  // namespace kelmar
