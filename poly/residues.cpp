// poly/residues.cpp -- residues, and integers from them by mixed radix.
//
// The integer is v0 + p0 (v1 + p1 (v2 + ..)), where each v is a residue: v0 is that modulo p0; taken off, and
// divided by p0, it leaves an integer whose residue modulo p1 is v1, and so on. The inverses of the primes
// modulo each other are found once.
#include "poly/residues.h"
#include "poly/transform_mod.h"

namespace kelmar {

struct prime_constants {
    int ready;
    factor word[transform_primes];                       // 2^64 modulo each prime
    factor inverse[transform_primes][transform_primes];  // [j][k]: of prime j modulo prime k
};

// default not ready; constants of the primes, kept; make_constants; reset: never
static prime_constants constants;

static void make_constants()
{
    for (int k = 0; k < transform_primes; ++k) {
        const u64 p = transform_prime[k];
        constants.word[k] = factor_of(static_cast<u64>((static_cast<u128>(1) << 64) % p), p);
        for (int j = 0; j < transform_primes; ++j) {
            if (j != k) constants.inverse[j][k] = factor_of(power(transform_prime[j] % p, p - 2, p), p);
        }
    }
    constants.ready = 1;
}

static inline u64 below(u64 x, u64 p)
{
    return x >= p ? x - p : x;
}

// acc[0 .. n + 1) = acc[0 .. n) * m + v.
static void scale_words(u64 *acc, int n, u64 m, u64 v)
{
    u64 carry = v;
    for (int i = 0; i < n; ++i) {
        const u128 t = static_cast<u128>(acc[i]) * m + carry;
        acc[i] = static_cast<u64>(t);
        carry = static_cast<u64>(t >> 64);
    }
    acc[n] = carry;
}

void set_basis(int primes, residue_basis *b)
{
    if (!constants.ready) make_constants();
    *b = {};
    b->primes = primes;
    b->all[0] = transform_prime[0];
    for (int k = 1; k < primes; ++k) scale_words(b->all, k, transform_prime[k], 0);
    for (int k = 0; k < primes; ++k) {
        b->half[k] = b->all[k] >> 1;
        if (k + 1 < primes) b->half[k] |= b->all[k + 1] << 63;
    }
}

u64 residue_of_words(int k, const u64 *w, int words)
{
    if (!constants.ready) make_constants();
    const u64 p = transform_prime[k];
    const factor base = constants.word[k];
    u64 r = 0;
    for (int i = words; i-- > 0;) {
        const u64 low = w[i] - (w[i] >> 62) * p;  // below 2p
        r = lazy_times(r, base, p) + low;
    }
    return below(below_twice(r, p), p);
}

// r[k] = the mixed digits of the integer.
static void mix_radix(int primes, u64 *r)
{
    for (int k = 1; k < primes; ++k) {
        const u64 p = transform_prime[k];
        u64 t = r[k];
        for (int j = 0; j < k; ++j) t = lazy_times(t + 2 * p - below(r[j], p), constants.inverse[j][k], p);
        r[k] = below(t, p);
    }
}

// The words a[0 .. n) are above b[0 .. n).
static bool words_above(const u64 *a, const u64 *b, int n)
{
    while (n-- > 0) {
        if (a[n] != b[n]) return a[n] > b[n];
    }
    return false;
}

void integer_of_residues(const residue_basis *b, u64 *r, u64 *to, int words)
{
    const int n = b->primes;
    u64 value[transform_primes];
    mix_radix(n, r);
    value[0] = r[n - 1];
    for (int k = n - 1; k-- > 0;) scale_words(value, n - 1 - k, transform_prime[k], r[k]);
    u64 above = 0;
    if (words_above(value, b->half, n)) {
        u64 borrow = 0;
        for (int i = 0; i < n; ++i) {
            const u128 t = static_cast<u128>(value[i]) - b->all[i] - borrow;
            value[i] = static_cast<u64>(t);
            borrow = static_cast<u64>(t >> 64) & 1;
        }
        above = ~u64{0};
    }
    for (int i = 0; i < words; ++i) to[i] = i < n ? value[i] : above;
}

}  // namespace kelmar
