// numbers/long_gcd.cpp -- the gcd on gathered limbs.
//
// Lehmer's steps take about 64 bits a pass off both operands; where the operands are long, many of them are
// found at once. Where the leading bits tell nothing, because one operand is much shorter or both nearly
// agree, a division takes over. Operands of at most 112 bits go by words.
#include "numbers/long_gcd.h"

#include "numbers/half_gcd.h"
#include "numbers/lehmer.h"
#include "numbers/limb_div.h"
#include "numbers/long_add.h"
#include "numbers/long_div.h"
#include "numbers/wide.h"

namespace kelmar {

// Words -----------------------------------------------------------------------------------------------------

static int trailing_zeros(double_limb v)
{
    const std::uint64_t low = static_cast<std::uint64_t>(v);
    return low ? __builtin_ctzll(low) : 64 + __builtin_ctzll(static_cast<std::uint64_t>(v >> 64));
}

// gcd of odd words, by differences.
static std::uint64_t odd_gcd(std::uint64_t a, std::uint64_t b)
{
    while (a != b) {
        const std::uint64_t d = a - b;
        if (a < b) {
            b = 0 - d;
            b >>= __builtin_ctzll(b);
        } else {
            a = d >> __builtin_ctzll(d);
        }
    }
    return a;
}

double_limb wide_gcd(double_limb a, double_limb b)
{
    if (a == 0) return b;
    if (b == 0) return a;
    const int twos_a = trailing_zeros(a), twos_b = trailing_zeros(b);
    const int twos = twos_a < twos_b ? twos_a : twos_b;
    a >>= twos_a;
    b >>= twos_b;
    while ((a | b) >> 64) {
        if (a == b) return a << twos;
        if (a < b) {
            b -= a;
            b >>= trailing_zeros(b);
        } else {
            a -= b;
            a >>= trailing_zeros(a);
        }
    }
    const double_limb odd = odd_gcd(static_cast<std::uint64_t>(a), static_cast<std::uint64_t>(b));
    return odd << twos;
}

std::int32_t smallgcd(std::int32_t a, std::int32_t b)
{
    return static_cast<std::int32_t>(wide_gcd(static_cast<std::uint32_t>(a), static_cast<std::uint32_t>(b)));
}

// Limb arrays -----------------------------------------------------------------------------------------------
//
// An operand in work: limbs above n, up to the room of both operands, are 0.
struct limb_number {
    limb *at;
    std::int32_t n;
};

static void strip(limb_number *x)
{
    while (x->n > 0 && x->at[x->n - 1] == 0) --x->n;
}

static bool is_below(const limb_number *a, const limb_number *b)
{
    if (a->n != b->n) return a->n < b->n;
    for (std::int32_t i = a->n; i-- > 0;) {
        if (a->at[i] != b->at[i]) return a->at[i] < b->at[i];
    }
    return false;
}

// x = x / 2^k for k = the number of factors 2 of x, n > 0. Return k.
static std::int64_t strip_twos(limb_number *x)
{
    std::int32_t whole = 0;
    while (x->at[whole] == 0) ++whole;
    const int bits = __builtin_ctzll(x->at[whole]);
    if (whole + bits == 0) return 0;
    const std::int32_t n = x->n;
    for (std::int32_t i = 0; i < n; ++i) {
        const limb low = i + whole < n ? x->at[i + whole] : 0;
        const limb high = i + whole + 1 < n ? x->at[i + whole + 1] : 0;
        x->at[i] = (low >> bits | high << (limb_bits - bits)) & limb_mask;
    }
    strip(x);
    return static_cast<std::int64_t>(whole) * limb_bits + bits;
}

// to[0 .. n + k / 56 + 1) = x * 2^k. Return the length.
static std::int32_t shifted_up(const limb_number *x, std::int64_t k, limb *to)
{
    const std::int32_t whole = static_cast<std::int32_t>(k / limb_bits);
    const int bits = static_cast<int>(k % limb_bits);
    for (std::int32_t i = 0; i < whole; ++i) to[i] = 0;
    limb carry = 0;
    for (std::int32_t i = 0; i < x->n; ++i) {
        const double_limb v = static_cast<double_limb>(x->at[i]) << bits | carry;
        to[whole + i] = static_cast<limb>(v) & limb_mask;
        carry = static_cast<limb>(v >> limb_bits);
    }
    to[whole + x->n] = carry;
    return whole + x->n + 1;
}

// a = a mod b, a->n >= b->n > 0; a has room for one limb more. b restored. `work` has room for the quotient
// and for the scratch of its division.
static void reduce_by(limb_number *a, limb_number *b, limb *work)
{
    const std::int32_t bits = __builtin_clzll(b->at[b->n - 1]) - (64 - limb_bits);
    shift_limbs_up(b->at, b->at, b->n, bits);
    a->at[a->n] = shift_limbs_up(a->at, a->at, a->n, bits);
    divide_limbs(work, a->at, a->n + 1, b->at, b->n, work + a->n + 1 - b->n);
    shift_limbs_down(b->at, b->n, bits);
    shift_limbs_down(a->at, b->n, bits);
    a->n = b->n;
    strip(a);
}

// Steps -----------------------------------------------------------------------------------------------------

static double_limb two_limbs(const limb_number *x)
{
    return static_cast<double_limb>(x->n > 1 ? x->at[1] : 0) << limb_bits | (x->n > 0 ? x->at[0] : 0);
}

// Take the steps that the leading limbs of a >= b tell, a->n > 2. Declines (0) when they tell none.
static int shorten_both(limb_number *a, limb_number *b, limb *work)
{
    step_matrix m;
    if (a->n < half_gcd_cut || !half_step(a->at, b->at, a->n, work)) {
        if (!find_step(a->at, b->at, a->n, &m)) return 0;
        apply_step(&m, a->at, b->at, a->n);
    }
    b->n = a->n;
    strip(a);
    strip(b);
    return 1;
}

// What reduce_to_gcd takes for operands of at most n limbs: a quotient and its scratch, or that of long
// steps.
static std::int64_t gcd_scratch(std::int32_t n)
{
    return n < half_gcd_cut ? n + quotient_scratch(n) : half_step_scratch(n);
}

// *a = gcd(a, b); *b is used up. Both have room for the longer one and one limb more; `work` has gcd_scratch
// limbs.
static void reduce_to_gcd(limb_number *a, limb_number *b, limb *work)
{
    for (;;) {
        if (is_below(a, b)) {
            const limb_number larger = *b;
            *b = *a;
            *a = larger;
        }
        if (b->n == 0) return;
        if (a->n <= 2) break;
        if (!shorten_both(a, b, work)) reduce_by(a, b, work);
    }
    const double_limb g = wide_gcd(two_limbs(a), two_limbs(b));
    a->at[0] = static_cast<limb>(g) & limb_mask;
    a->at[1] = static_cast<limb>(g >> limb_bits);
    a->n = 2;
}

// Long integers ---------------------------------------------------------------------------------------------

void set_magnitude(const number *a, number *c)
{
    if (a->size == 0) {
        special_set(0, c);
        return;
    }
    if (c != a) fast_num_assign(a->head, a->size, c);
    if (c->head->digit >= 0) return;
    for (numnode *node = c->head; node; node = node->next) node->digit = -node->digit;
}

// x = the magnitude of a at `room`, zeros above, up to n limbs.
static void gather_operand(const number *a, limb *room, std::int32_t n, limb_number *x)
{
    *x = {room, limbs_of(a->size)};
    gather_limbs(a->head, a->size, room);
    for (std::int32_t i = x->n; i < n; ++i) room[i] = 0;
}

void binary_gcd(const number *a, const number *b, number *c)
{
    if (is_zero_chain(a)) return set_magnitude(b, c);
    if (is_zero_chain(b)) return set_magnitude(a, c);
    if (a->size <= 4 && b->size <= 4) return set_small_value(wide_gcd(wide_value(a), wide_value(b)), 0, c);

    const std::int32_t longest = a->size > b->size ? a->size : b->size;
    const std::int32_t room = limbs_of(longest) + 3;
    limb *const space = scratch_limbs(2 * static_cast<std::int64_t>(room) + gcd_scratch(room));
    limb_number x, y;
    gather_operand(a, space, room, &x);
    gather_operand(b, space + room, room, &y);
    const std::int64_t twos_x = strip_twos(&x), twos_y = strip_twos(&y);
    limb *const result = space + 2 * room;
    reduce_to_gcd(&x, &y, result);
    const std::int32_t n = shifted_up(&x, twos_x < twos_y ? twos_x : twos_y, result);
    scatter_limbs(result, n, 0, c);
}

void gcd(const number *a, const number *b, number *c)
{
    number x = {}, y = {};
    set_magnitude(a, &x);
    set_magnitude(b, &y);
    while (y.head->digit != 0) {
        if (x.size < y.size || (x.size == y.size && x.head->digit < y.head->digit)) {
            const number larger = y;
            y = x;
            x = larger;
        } else if (x.size == y.size && x.head->digit < 2 * y.head->digit) {
            meddiff(x.size, y.size, x.head, y.head, &x);  // the quotient is 1, or 0 when the heads agree
            set_magnitude(&x, &x);
        } else {
            pos_divide_noq(x.head, y.head, y.tail, x.size, y.size, &x);
        }
        if (x.head->digit == 0) {
            const number zero = x;
            x = y;
            y = zero;
        }
    }
    special_free(&y);
    take_chain(c, x.head, x.tail, x.size);
}

// Plain numbers ---------------------------------------------------------------------------------------------

// The gcd of two words of the live view that is no digit view.
static std::int32_t word_gcd(std::int32_t a, std::int32_t b)
{
    if (modularmode) return a == 0 ? b : b == 0 ? a : 1;
    const std::uint32_t x = a < 0 ? 0u - static_cast<std::uint32_t>(a) : static_cast<std::uint32_t>(a);
    const std::uint32_t y = b < 0 ? 0u - static_cast<std::uint32_t>(b) : static_cast<std::uint32_t>(b);
    return static_cast<std::int32_t>(static_cast<std::uint32_t>(wide_gcd(x, y)));
}

void gcdnum(quolynode **a, quolynode **b)
{
    switch (live_view()) {
    case view_float: (*a)->num->real = 1.0; break;
    case view_field:
    case view_modular:
    case view_word: (*a)->num->word = word_gcd((*a)->num->word, (*b)->num->word); break;
    case view_small:
    case view_digits: binary_gcd((*a)->num, (*b)->num, (*a)->num); break;
    }
    free_plain(b);
}

}  // namespace kelmar
