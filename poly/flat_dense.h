#pragma once
// poly/flat_dense.h -- flat products with few gaps: both operands are written out in arrays and transformed.
//
// A transform gives integers. So residues, long integers of two digits, and doubles that are whole numbers
// come out exactly, as long as their sums stay within what one prime tells, or two. Other doubles, and the
// elements of table fields, are declined.

#include <algorithm>
#include <cmath>
#include "poly/flat_integers.h"
#include "poly/flat_terms.h"
#include "poly/mul_flat.h"
#include "poly/transform.h"

namespace kelmar {

// How many primes tell sums of `bits` bits, sign apart; 0: too many.
inline int primes_for(int bits)
{
    return bits <= one_prime_bits ? 1 : bits <= two_primes_bits ? 2 : 0;
}

// Bits of the sums of a product whose shorter operand has `count` terms; -1 when they are no integers.
inline int sum_bits(real_ring, const flat_terms<real_ring> *a, const flat_terms<real_ring> *b)
{
    constexpr double limit = 9007199254740992.0;  // 2^53
    int bits = bits_of(static_cast<std::uint64_t>(std::min(a->count, b->count)));
    for (const flat_terms<real_ring> *t : {a, b}) {
        double most = 0;
        for (std::int64_t i = 0; i < t->count; ++i) {
            const double size = __builtin_fabs(t->coef[i]);
            if (!(size <= limit) || size != static_cast<double>(static_cast<std::int64_t>(size))) return -1;
            most = std::max(most, size);
        }
        bits += bits_of(static_cast<std::uint64_t>(most));
    }
    return bits <= one_prime_bits ? bits : -1;
}

inline int sum_bits(small_residues, const flat_terms<small_residues> *a, const flat_terms<small_residues> *b)
{
    return 32 + bits_of(static_cast<std::uint64_t>(std::min(a->count, b->count)));
}

inline int sum_bits(wide_residues, const flat_terms<wide_residues> *a, const flat_terms<wide_residues> *b)
{
    return 62 + bits_of(static_cast<std::uint64_t>(std::min(a->count, b->count)));
}

inline int sum_bits(short_integers, const flat_terms<short_integers> *, const flat_terms<short_integers> *)
{
    return short_sum_bits;
}

inline int sum_bits(wide_integers, const flat_terms<wide_integers> *, const flat_terms<wide_integers> *)
{
    return wide_sum_bits;
}

template <class R> int sum_bits(R, const flat_terms<R> *, const flat_terms<R> *)
{
    return -1;
}

template <class R> std::uint64_t residue_of_coef(typename R::coef c, std::uint64_t p)
{
    const std::int64_t v = static_cast<std::int64_t>(c);
    return v < 0 ? p - static_cast<std::uint64_t>(-v) : static_cast<std::uint64_t>(v);
}

template <class R>
void write_out(const flat_terms<R> *t, std::uint64_t p, std::size_t length, std::uint64_t *x)
{
    std::fill(x, x + length, std::uint64_t{0});
    const std::uint64_t low = t->key[t->count - 1];
    for (std::int64_t i = 0; i < t->count; ++i) x[t->key[i] - low] = residue_of_coef<R>(t->coef[i], p);
}

// Logarithm of the length of a transform for the product; 0 when it would take longer than the products of
// terms.
template <class R> int transform_log(const flat_terms<R> *a, const flat_terms<R> *b, int primes)
{
    const std::uint64_t length = a->key[0] - a->key[a->count - 1] + (b->key[0] - b->key[b->count - 1]) + 1;
    const int log = bits_of(length - 1);
    if (log < 2 || log > longest_transform) return 0;
    const double steps = 1.5 * primes * log * std::ldexp(1.0, log) +
                         1000;  // 1.5 of a product's time each (measured)
    return steps < static_cast<double>(a->count) * static_cast<double>(b->count) ? log : 0;
}

// *out = a * b, whose arrays are spared; one may be a copy of the other. Declines (0): see above.
// Polls: between transforms.
template <class R>
int dense_flat_product(R ring, product_work *work, const flat_terms<R> *a, const flat_terms<R> *b,
                       flat_sums<R> *out)
{
    if (std::min(a->count, b->count) < transform_cut) return 0;
    const int one_prime_log = transform_log(a, b, 1);
    if (one_prime_log == 0) return 0;
    const int bits = sum_bits(ring, a, b);
    const int primes = bits < 0 ? 0 : primes_for(bits);
    const int log = primes == 0 ? 0 : primes == 1 ? one_prime_log : transform_log(a, b, primes);
    if (log == 0) return 0;
    const std::size_t length = std::size_t{1} << log, bytes = length * sizeof(std::uint64_t);
    auto *x = static_cast<std::uint64_t *>(get_room(work, room_products, bytes));
    auto *other = static_cast<std::uint64_t *>(get_room(work, room_sorted, bytes));
    auto *first = primes == 1 ? x : static_cast<std::uint64_t *>(get_room(work, room_counts, bytes));
    if (!x || !other || !first) return 0;
    for (int k = 0; k < primes; ++k) {
        std::uint64_t *const to = k == 0 ? first : x;
        write_out(a, transform_prime[k], length, to);
        write_out(b, transform_prime[k], length, other);
        if (!cyclic_product(k, to, other, log)) return 0;
    }
    const std::uint64_t low = a->key[a->count - 1] + b->key[b->count - 1];
    const std::uint64_t top = a->key[0] + b->key[0];
    if (!reserve_sums(work, out, static_cast<std::int64_t>(top - low) + 1)) return 0;
    for (std::uint64_t d = top - low + 1; d-- > 0;) {
        if (primes == 1) {
            if (first[d] != 0) append_sum(ring, low + d, sum_of_integer(ring, integer_of(first[d])), out);
        } else {
            append_sum(ring, low + d, sum_of_integer(ring, integer_of(first[d], x[d])), out);
        }
    }
    return 1;
}

}  // namespace kelmar
