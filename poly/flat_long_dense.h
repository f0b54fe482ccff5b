#pragma once
// poly/flat_long_dense.h -- flat products of long integers with few gaps: both operands are written out in
// arrays and transformed modulo as many primes as tell the sums.

#include "poly/flat_long.h"
#include "poly/flat_terms.h"
#include "poly/mul_flat.h"
#include "poly/residues.h"

namespace kelmar {

inline constexpr int longest_long_transform = 15;  // the tables of roots of twelve primes are 6 MiB then

template <int W> int longest_coef(const flat_terms<long_integers<W>> *t)
{
    int words = 1;
    for (std::int64_t i = 0; i < t->count; ++i) words = t->coef[i].words > words ? t->coef[i].words : words;
    return words;
}

// How many primes a product by transforms takes; 0: it is not worth it, in products of words (measured).
template <int W>
int primes_worth(const flat_terms<long_integers<W>> *a, const flat_terms<long_integers<W>> *b, int *log)
{
    const std::int64_t least = a->count < b->count ? a->count : b->count;
    if (least < transform_cut / 4) return 0;
    const std::uint64_t span = a->key[0] - a->key[a->count - 1] + (b->key[0] - b->key[b->count - 1]) + 1;
    *log = bits_of(span - 1);
    if (*log < 2 || *log > longest_long_transform) return 0;
    const int words = longest_coef(a) + longest_coef(b);
    const int primes = primes_of_bits(64 * words + bits_of(static_cast<std::uint64_t>(least)));
    if (primes > transform_primes) return 0;
    const double length = static_cast<double>(std::size_t{1} << *log);
    const double steps = primes * length * (1.5 * *log + 4 * primes) + 20000;
    const double products = static_cast<double>(a->count) * static_cast<double>(b->count);
    return steps < products * (2 + 0.45 * words * words) ? primes : 0;
}

template <int W>
void write_residues(const flat_terms<long_integers<W>> *t, int k, std::size_t length, std::uint64_t *x)
{
    for (std::size_t i = 0; i < length; ++i) x[i] = 0;
    const std::uint64_t low = t->key[t->count - 1], p = transform_prime[k];
    for (std::int64_t i = 0; i < t->count; ++i) {
        const std::uint64_t r = residue_of_words(k, t->coef[i].w, t->coef[i].words);
        x[t->key[i] - low] = t->coef[i].sign && r ? p - r : r;
    }
}

// *out = a * b by transforms modulo several primes. Declines (0): with few terms, with many gaps, with very
// long coefficients; the heap has no room. Polls: between transforms.
template <int W>
int dense_flat_product(long_integers<W> ring, product_work *work, const flat_terms<long_integers<W>> *a,
                       const flat_terms<long_integers<W>> *b, flat_sums<long_integers<W>> *out)
{
    int log = 0;
    const int primes = primes_worth(a, b, &log);
    if (primes == 0) return 0;
    const std::size_t length = std::size_t{1} << log, bytes = length * sizeof(std::uint64_t);
    auto *x = static_cast<std::uint64_t *>(
        get_room(work, room_products, static_cast<std::size_t>(primes) * bytes));
    auto *other = static_cast<std::uint64_t *>(get_room(work, room_sorted, bytes));
    if (!x || !other) return 0;
    for (int k = 0; k < primes; ++k) {
        std::uint64_t *const to = x + static_cast<std::size_t>(k) * length;
        write_residues(a, k, length, to);
        write_residues(b, k, length, other);
        if (!cyclic_product(k, to, other, log)) return 0;
    }
    const std::uint64_t low = a->key[a->count - 1] + b->key[b->count - 1];
    const std::uint64_t top = a->key[0] + b->key[0];
    if (!reserve_sums(work, out, static_cast<std::int64_t>(top - low) + 1)) return 0;
    residue_basis basis;
    set_basis(primes, &basis);
    for (std::uint64_t d = top - low + 1; d-- > 0;) {
        std::uint64_t r[transform_primes];
        for (int k = 0; k < primes; ++k) r[k] = x[static_cast<std::size_t>(k) * length + d];
        long_sum<W> sum;
        integer_of_residues(&basis, r, sum.w, 2 * W + 1);
        append_sum(ring, low + d, sum, out);
    }
    return 1;
}

}  // namespace kelmar
