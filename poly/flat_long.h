#pragma once
// poly/flat_long.h -- the ring of flat arrays whose coefficients are long integers of a few words.
//
// A coefficient is a magnitude of W words of 64 bits and a sign. Sums are two's complement, one word longer
// than a product: more terms than there can be do not fill it.

#include "numbers/limbs.h"
#include "poly/flat_rings.h"

namespace kelmar {

template <int W> struct long_coef {
    std::uint64_t w[W];  // the least significant first
    std::int32_t words;  // that are used
    std::int32_t sign;   // 0 or -1
};
template <int W> struct long_sum {
    std::uint64_t w[2 * W + 1];
};
template <int W> struct long_integers {
    using coef = long_coef<W>;
    using sum = long_sum<W>;
};

inline constexpr int unrolled_words = 5;  // up to here all words are multiplied, used or not

inline constexpr std::int32_t words_of(std::int32_t digits)
{
    return (digits * digit_bits + 63) / 64;
}

template <int W> bool is_zero_sum(const long_sum<W> &s)
{
    for (const std::uint64_t w : s.w) {
        if (w != 0) return false;
    }
    return true;
}

template <int W> long_coef<W> load_coef(long_integers<W>, const number *n)
{
    long_coef<W> c = {};
    c.sign = sign_of(n);
    c.words = words_of(n->size);
    std::int32_t at = n->size * digit_bits;
    for (const numnode *d = n->head; d; d = d->next) {
        at -= digit_bits;
        const std::uint64_t digit = static_cast<std::uint64_t>(turned(d->digit, c.sign));
        c.w[at / 64] |= digit << (at % 64);
        if (at % 64 > 64 - digit_bits && at / 64 + 1 < W) c.w[at / 64 + 1] |= digit >> (64 - at % 64);
    }
    return c;
}

// p[0 .. 2 W) = c d, by rows.
template <int W>
inline void multiply_magnitudes(const long_coef<W> &c, const long_coef<W> &d, std::uint64_t *p)
{
    for (int k = 0; k < 2 * W; ++k) p[k] = 0;
    for (int i = 0; i < W; ++i) {
        std::uint64_t carry = 0;
        for (int j = 0; j < W; ++j) {
            const double_limb t = static_cast<double_limb>(c.w[i]) * d.w[j] + p[i + j] + carry;
            p[i + j] = static_cast<std::uint64_t>(t);
            carry = static_cast<std::uint64_t>(t >> 64);
        }
        p[i + W] = carry;
    }
}

// *s += p[0 .. words), or -= with `minus` all ones.
template <int W> inline void add_words(long_sum<W> *s, const std::uint64_t *p, int words, std::uint64_t minus)
{
    std::uint64_t carry = minus & 1;
    for (int k = 0; k < words; ++k) {
        const double_limb t = static_cast<double_limb>(s->w[k]) + (p[k] ^ minus) + carry;
        s->w[k] = static_cast<std::uint64_t>(t);
        carry = static_cast<std::uint64_t>(t >> 64);
    }
    for (int k = words; k < 2 * W + 1 && carry + minus != 0; ++k) {  // a carry of 1 undoes the ones above
        const double_limb t = static_cast<double_limb>(s->w[k]) + minus + carry;
        s->w[k] = static_cast<std::uint64_t>(t);
        carry = static_cast<std::uint64_t>(t >> 64);
    }
}

// Three words that sum up the products of a column.
struct column_sum {
    double_limb low;
    std::uint64_t high;
};

inline void add_to_column(column_sum *s, std::uint64_t x, std::uint64_t y)
{
    s->high += __builtin_add_overflow(s->low, static_cast<double_limb>(x) * y, &s->low);
}

// p[0 .. c.words + d.words) = c d, by columns: nothing is stored but the result. Return the number of words.
template <int W>
inline int multiply_by_columns(const long_coef<W> &c, const long_coef<W> &d, std::uint64_t *p)
{
    const int words = c.words + d.words;
    column_sum s = {0, 0};
    for (int k = 0; k < words - 1; ++k) {
        const int from = k < d.words ? 0 : k - d.words + 1, to = k < c.words ? k : c.words - 1;
        for (int i = from; i <= to; ++i) add_to_column(&s, c.w[i], d.w[k - i]);
        p[k] = static_cast<std::uint64_t>(s.low);
        s.low = s.low >> 64 | static_cast<double_limb>(s.high) << 64;
        s.high = 0;
    }
    p[words - 1] = static_cast<std::uint64_t>(s.low);
    return words;
}

template <int W>
inline void add_product(long_integers<W>, long_sum<W> *s, const long_coef<W> &c, const long_coef<W> &d)
{
    std::uint64_t p[2 * W];
    const std::uint64_t minus = c.sign == d.sign ? 0 : ~std::uint64_t{0};
    if (W <= unrolled_words) {
        multiply_magnitudes(c, d, p);
        add_words(s, p, 2 * W, minus);
    } else {
        const int words = multiply_by_columns(c, d, p);
        add_words(s, p, words, minus);
    }
}

template <int W> inline void add_sum(long_integers<W>, long_sum<W> *s, const long_sum<W> &t)
{
    std::uint64_t carry = 0;
    for (int k = 0; k <= 2 * W; ++k) {
        const double_limb v = static_cast<double_limb>(s->w[k]) + t.w[k] + carry;
        s->w[k] = static_cast<std::uint64_t>(v);
        carry = static_cast<std::uint64_t>(v >> 64);
    }
}

template <int W> inline const long_sum<W> &settled(long_integers<W>, const long_sum<W> &s)
{
    return s;
}

template <int W> void store_sum(long_integers<W>, const long_sum<W> &s, number *n)
{
    const std::int32_t sign = s.w[2 * W] >> 63 ? -1 : 0;
    const std::uint64_t minus = sign ? ~std::uint64_t{0} : 0;
    std::uint64_t magnitude[2 * W + 2] = {};
    std::uint64_t carry = minus & 1;
    for (int k = 0; k <= 2 * W; ++k) {
        const std::uint64_t v = (s.w[k] ^ minus) + carry;
        carry = carry && v == 0;
        magnitude[k] = v;
    }
    constexpr int limbs = (64 * (2 * W + 1) + limb_bits - 1) / limb_bits;
    limb to[limbs];
    for (int k = 0; k < limbs; ++k) {
        const int bit = k * limb_bits, word = bit / 64, shift = bit % 64;
        std::uint64_t v = magnitude[word] >> shift;
        if (shift > 64 - limb_bits) v |= magnitude[word + 1] << (64 - shift);
        to[k] = v & limb_mask;
    }
    scatter_limbs(to, limbs, sign, n);
}

}  // namespace kelmar
