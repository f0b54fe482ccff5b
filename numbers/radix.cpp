// numbers/radix.cpp -- conversion by halves, on scratch limbs of 16 decimal digits.
//
// Short runs of digits are converted by Horner's rule, two binary digits a step. A longer run is cut, its
// upper part multiplied by the power of two that the lower part stands above, and the lower part added. The
// cut stands so that few powers are needed: up to two table lengths it is the middle, and the table has the
// power; above, the lower part has 130 * 2^j digits, and each power is the square of the one before.
#include "numbers/radix.h"

#include "numbers/limb_mul.h"

namespace kelmar {

static constexpr std::int32_t table_length = 130;  // entries of two_28
static constexpr std::int32_t power_levels = 24;   // 130 * 2^24 digits are past every size
static constexpr std::int32_t horner_limit = 28;   // digits; up to it Horner's rule is fastest (measured)

// Between chains and limbs ----------------------------------------------------------------------------------

// The limbs that `size` groups take.
static std::int32_t pairs_of(std::int32_t size)
{
    return (size + 1) / 2;
}

// to[0 .. pairs_of(a->size)) = the magnitude of the decimal chain a.
static void gather_decimal(const number *a, limb *to)
{
    const numnode *node = a->head;
    const std::int32_t sign = node->digit < 0 ? -1 : 1;
    std::int32_t i = pairs_of(a->size);
    if (a->size & 1) {
        to[--i] = static_cast<limb>(sign * node->digit);
        node = node->next;
    }
    while (i-- > 0) {
        const numnode *low = node->next;
        to[i] = static_cast<limb>(sign * node->digit) * decimal_base + static_cast<limb>(sign * low->digit);
        node = low->next;
    }
}

// c = from[0 .. n), n > 0, negated when `minus`, as a decimal chain; leading zeros are allowed. c replaced.
static void scatter_decimal(const limb *from, std::int32_t n, bool minus, number *c)
{
    while (n > 1 && from[n - 1] == 0) --n;
    const std::int32_t sign = minus ? -1 : 1;
    numnode *head = nullptr, *tail = nullptr;
    for (std::int32_t i = 0; i < n; ++i) {
        head = new_digit(sign * static_cast<std::int32_t>(from[i] % decimal_base), head);
        if (!tail) tail = head;
        if (i == n - 1 && from[i] < decimal_base) continue;
        head = new_digit(sign * static_cast<std::int32_t>(from[i] / decimal_base), head);
    }
    take_chain(c, head, tail, 2 * n - (from[n - 1] < decimal_base));
}

// Products of chains ----------------------------------------------------------------------------------------

void simp_base_10_mult(const number *a, number *out, std::int32_t d, numnode **cut)
{
    const bool minus = (a->head->digit < 0) != (d < 0);
    const std::int32_t n = pairs_of(a->size);
    const limb factor = static_cast<limb>(d < 0 ? -d : d);
    limb *const x = scratch_limbs(n + 1);
    gather_decimal(a, x);
    limb carry = 0;
    for (std::int32_t i = 0; i < n; ++i) {
        double_limb v = static_cast<double_limb>(x[i]) * factor + carry;
        x[i] = split_limb(&v);
        carry = static_cast<limb>(v);
    }
    x[n] = carry;
    scatter_decimal(x, n + 1, minus, out);
    *cut = nullptr;
    for (numnode *node = out->head; node->next; node = node->next) *cut = node;
}

void base_10_multiply(const number *a, const number *b, number *c)
{
    const bool minus = (a->head->digit < 0) != (b->head->digit < 0);
    const std::int32_t na = pairs_of(a->size), nb = pairs_of(b->size);
    limb *const x = scratch_limbs(2 * (static_cast<std::int64_t>(na) + nb));
    limb *const y = x + na;
    limb *const r = y + nb;
    gather_decimal(a, x);
    gather_decimal(b, y);
    for (std::int32_t i = 0; i < na + nb; ++i) r[i] = 0;
    for (std::int32_t j = 0; j < nb; ++j) {
        double_limb v = 0;
        for (std::int32_t i = 0; i < na; ++i) {
            v += static_cast<double_limb>(x[i]) * y[j] + r[i + j];
            r[i + j] = split_limb(&v);
        }
        r[na + j] = static_cast<limb>(v);
    }
    scatter_decimal(r, na + nb, minus, c);
}

void base_10_fast_mult(const number *a, const number *b, number *c)
{
    if (a->size < b->size) return base_10_fast_mult(b, a, c);
    const bool minus = (a->head->digit < 0) != (b->head->digit < 0);
    const std::int32_t na = pairs_of(a->size), nb = pairs_of(b->size);
    limb *const x = scratch_limbs(2 * (static_cast<std::int64_t>(na) + nb) + product_scratch(nb));
    limb *const y = x + na;
    limb *const r = y + nb;
    gather_decimal(a, x);
    gather_decimal(b, y);
    multiply_decimal(r, x, na, y, nb, r + na + nb);
    scatter_decimal(r, na + nb, minus, c);
}

// Conversion ------------------------------------------------------------------------------------------------

// What a conversion reads: the digits to come, and 2^(28 * 130 * 2^j) for each j that its cuts need.
struct conversion {
    const numnode *next;
    const limb *power[power_levels];
    std::int32_t length[power_levels];
};

// Room for any value of `size` digits, and for a product with a leading zero: 28 bits are 0.5268 limbs.
static std::int32_t decimal_room(std::int32_t size)
{
    return static_cast<std::int32_t>(static_cast<std::int64_t>(size) * 527 / 1000) + 3;
}

// x[0 .. n) = x * 2^bits + low, bits <= 56. Return the new length.
static std::int32_t append_bits(limb *x, std::int32_t n, int bits, limb low)
{
    double_limb v = low;
    for (std::int32_t i = 0; i < n; ++i) {
        v += static_cast<double_limb>(x[i]) << bits;
        x[i] = split_limb(&v);
    }
    while (v) x[n++] = split_limb(&v);
    return n;
}

// x = the next `size` digits, by Horner's rule. Return the length, 0 for zero.
static std::int32_t convert_by_horner(conversion *c, std::int32_t size, limb *x)
{
    std::int32_t n = 0;
    const numnode *node = c->next;
    for (; size > 0; size -= 2) {
        limb low = static_cast<limb>(node->digit < 0 ? -node->digit : node->digit);
        node = node->next;
        const bool odd = size & 1;
        if (!odd) {
            low = low << digit_bits | static_cast<limb>(node->digit < 0 ? -node->digit : node->digit);
            node = node->next;
        }
        n = append_bits(x, n, odd ? digit_bits : limb_bits, low);
        size += odd;
    }
    c->next = node;
    return n;
}

// x = 2^(28 k), 0 < k <= 130: from the table, or computed when the start-up data did not bring it. Return the
// length.
static std::int32_t power_of_base(std::int32_t k, limb *x)
{
    const number *entry = &two_28[k - 1];
    const std::int32_t decimals = digit_bits * k * 30103 / 100000 + 1;
    if (entry->size == (decimals + 7) / 8) {
        gather_decimal(entry, x);
        return pairs_of(entry->size);
    }
    x[0] = 1;
    std::int32_t n = 1;
    for (; k > 1; k -= 2) n = append_bits(x, n, limb_bits, 0);
    return k ? append_bits(x, n, digit_bits, 0) : n;
}

// The level j of the longest lower part of 130 * 2^j digits that is shorter than `size`.
static int cut_level(std::int32_t size)
{
    int j = 0;
    while (std::int64_t{table_length} << (j + 1) < size) ++j;
    return j;
}

// out = the next `size` digits; out has decimal_room(size) limbs, work 8 times that and some. Return the
// length, 0 for zero.
static std::int32_t convert(conversion *c, std::int32_t size, limb *out, limb *work)
{
    if (size <= horner_limit) return convert_by_horner(c, size, out);

    limb entry[pairs_of(137) + 1];
    const limb *power = entry;
    std::int32_t low = size - size / 2, np;
    if (size <= 2 * table_length) {
        np = power_of_base(low, entry);
    } else {
        const int j = cut_level(size);
        low = table_length << j;
        power = c->power[j];
        np = c->length[j];
    }
    limb *const part = work;
    limb *const rest = work + decimal_room(size - low > low ? size - low : low);
    const std::int32_t nh = convert(c, size - low, part, rest);
    std::int32_t n = nh + np;
    if (nh == 0) {
        n = 0;
    } else if (nh >= np) {
        multiply_decimal(out, part, nh, power, np, rest);
    } else {
        multiply_decimal(out, power, np, part, nh, rest);
    }
    const std::int32_t nl = convert(c, low, part, rest);
    for (; n < nl; ++n) out[n] = 0;
    add_limbs<decimal_limbs>(out, n, part, nl);
    while (n > 0 && out[n - 1] == 0) --n;
    return n;
}

// Compute the powers that cuts of `size` digits need, at `room`. Return what stands behind them.
static limb *compute_powers(conversion *c, std::int32_t size, limb *room)
{
    if (size <= 2 * table_length) return room;
    const int top = cut_level(size);
    for (int j = 0; j <= top; ++j) {
        c->power[j] = room;
        if (j == 0) {
            c->length[j] = power_of_base(table_length, room);
        } else {
            const limb *root = c->power[j - 1];
            const std::int32_t n = c->length[j - 1];
            multiply_decimal(room, root, n, root, n, room + 2 * n);
            c->length[j] = 2 * n - (room[2 * n - 1] == 0);
        }
        room += c->length[j];
    }
    return room;
}

// on purpose: the tail is not read; a chain in hand is always passed with both ends.
void verybig_base_10(numnode *head, numnode *, std::int32_t size, number *out)
{
    conversion c;
    c.next = head;
    const bool minus = head->digit < 0;
    limb small[horner_limit];
    limb *result = small;
    limb *work = nullptr;
    const std::int64_t room = decimal_room(size);
    if (size > horner_limit) {
        result = scratch_limbs(14 * room + 2048);
        work = compute_powers(&c, size, result + room);
    }
    std::int32_t n = convert(&c, size, result, work);
    if (n == 0) result[n++] = 0;
    scatter_decimal(result, n, minus, out);
}

}  // namespace kelmar
