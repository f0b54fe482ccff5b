// poly/transform.cpp -- number-theoretic transforms.
//
// The transform takes residues modulo x^2n - c^2 to those modulo x^n - c and x^n + c, until each is a
// value. Blocks so come in bit-reversed order, and with the roots c in the same order, one root serves a
// whole block and one table all lengths. The way back undoes the steps one by one, so nothing is ever put
// in order. Entries stay below four times the prime on the way there, below twice on the way back; a factor
// w goes with floor(w 2^64 / p), which gives the quotient of a product to within one.
#include "poly/transform.h"
#include <cstddef>
#include <cstdlib>
#include "poly/transform_mod.h"
#include "session/report.h"

namespace kelmar {

struct root_table {
    u64 generator;     // of the roots of order 2^32
    int log;           // 2^log roots are there
    factor *forward;   // in bit-reversed order of their angles below a half turn
    factor *backward;  // their inverses
};

// default empty; the roots of each prime, kept; get_roots; reset: never
static root_table tables[transform_primes] = {
    {69433692538710738, -1, nullptr, nullptr},   {3385523647569167919, -1, nullptr, nullptr},
    {3318345213167893729, -1, nullptr, nullptr}, {1987246491706964068, -1, nullptr, nullptr},
    {822924968455585315, -1, nullptr, nullptr},  {2469127682168071965, -1, nullptr, nullptr},
    {1285830752081625251, -1, nullptr, nullptr}, {183752203409188909, -1, nullptr, nullptr},
    {1921765219434798347, -1, nullptr, nullptr}, {1227545647024351629, -1, nullptr, nullptr},
    {1419625767280555753, -1, nullptr, nullptr}, {2333496873055744784, -1, nullptr, nullptr}};

// Roots -----------------------------------------------------------------------------------------------------

// Set to[0 .. 2^log): bit k of the place stands for the root of order 2^(k + 2), or its inverse.
static void fill_roots(factor *to, int log, u64 generator, u64 p)
{
    to[0] = factor_of(1, p);
    for (int k = 0; k < log; ++k) {
        const factor root = factor_of(power(generator, u64{1} << (30 - k), p), p);
        const std::size_t half = std::size_t{1} << k;
        for (std::size_t i = 0; i < half; ++i) {
            const u64 value = lazy_times(to[i].value, root, p);
            to[half + i] = factor_of(value < p ? value : value - p, p);
        }
    }
}

// Have 2^log roots of prime k ready. Declines (0) when the heap has no room.
static int get_roots(int k, int log)
{
    root_table *const t = &tables[k];
    if (log <= t->log) return 1;
    const std::size_t count = std::size_t{1} << log;
    auto *const roots = static_cast<factor *>(std::malloc(2 * count * sizeof(factor)));
    if (!roots) return 0;
    // on purpose: the shorter table stays, since a product that answers an interrupt may be using it
    *t = {t->generator, log, roots, roots + count};
    const u64 p = transform_prime[k];
    fill_roots(t->forward, log, t->generator, p);
    fill_roots(t->backward, log, power(t->generator, p - 2, p), p);
    return 1;
}

// Transforms --------------------------------------------------------------------------------------------

static inline void step_there(u64 *x, u64 *y, factor w, u64 p)
{
    const u64 u = below_twice(*x, p), v = lazy_times(*y, w, p);
    *x = u + v;
    *y = u - v + 2 * p;
}

static inline void step_back(u64 *x, u64 *y, factor w, u64 p)
{
    const u64 u = *x, v = *y;
    *x = below_twice(u + v, p);
    *y = lazy_times(u - v + 2 * p, w, p);
}

// Two steps in one pass: a block of four quarters, with the roots of the block and of its two halves.
static void two_steps_there(u64 *x, std::size_t quarter, const factor *w, const factor *w_halves, u64 p)
{
    const factor a = *w, b = w_halves[0], c = w_halves[1];
    for (std::size_t j = 0; j < quarter; ++j) {
        u64 x0 = x[j], x1 = x[j + quarter], x2 = x[j + 2 * quarter], x3 = x[j + 3 * quarter];
        step_there(&x0, &x2, a, p);
        step_there(&x1, &x3, a, p);
        step_there(&x0, &x1, b, p);
        step_there(&x2, &x3, c, p);
        x[j] = x0;
        x[j + quarter] = x1;
        x[j + 2 * quarter] = x2;
        x[j + 3 * quarter] = x3;
    }
}

static void two_steps_back(u64 *x, std::size_t quarter, const factor *w, const factor *w_halves, u64 p)
{
    const factor a = *w, b = w_halves[0], c = w_halves[1];
    for (std::size_t j = 0; j < quarter; ++j) {
        u64 x0 = x[j], x1 = x[j + quarter], x2 = x[j + 2 * quarter], x3 = x[j + 3 * quarter];
        step_back(&x0, &x1, b, p);
        step_back(&x2, &x3, c, p);
        step_back(&x0, &x2, a, p);
        step_back(&x1, &x3, a, p);
        x[j] = x0;
        x[j + quarter] = x1;
        x[j + 2 * quarter] = x2;
        x[j + 3 * quarter] = x3;
    }
}

static void transform_there(u64 *x, int log, const factor *root, u64 p)
{
    const std::size_t length = std::size_t{1} << log;
    std::size_t blocks = 1, size = length;
    if (log & 1) {
        for (std::size_t j = 0; j < length / 2; ++j) step_there(&x[j], &x[j + length / 2], root[0], p);
        blocks = 2;
        size /= 2;
    }
    for (; size > 1; blocks *= 4, size /= 4) {
        for (std::size_t i = 0; i < blocks; ++i)
            two_steps_there(x + i * size, size / 4, root + i, root + 2 * i, p);
    }
}

static void transform_back(u64 *x, int log, const factor *root, u64 p)
{
    const std::size_t length = std::size_t{1} << log;
    std::size_t blocks = length / 4, size = 4;
    for (; size <= length; blocks /= 4, size *= 4) {
        for (std::size_t i = 0; i < blocks; ++i)
            two_steps_back(x + i * size, size / 4, root + i, root + 2 * i, p);
    }
    if (log & 1) {
        for (std::size_t j = 0; j < length / 2; ++j) step_back(&x[j], &x[j + length / 2], root[0], p);
    }
}

// x = x y 2^-64, entry by entry, below 2p. Source: Montgomery.
static void multiply_entries(u64 *x, const u64 *y, std::size_t length, u64 p)
{
    u64 inverse = p;  // right to 3 bits; each round doubles them
    for (int k = 0; k < 5; ++k) inverse *= 2 - p * inverse;
    for (std::size_t i = 0; i < length; ++i) {
        const u64 u = below_twice(x[i], p), v = below_twice(y[i], p);
        const u128 t = static_cast<u128>(u < p ? u : u - p) * (v < p ? v : v - p);
        x[i] = static_cast<u64>(t >> 64) - high_half(static_cast<u64>(t) * inverse, p) + p;
    }
}

int cyclic_product(int k, u64 *x, u64 *y, int log)
{
    if (!get_roots(k, log > 1 ? log - 1 : 1)) return 0;
    const u64 p = transform_prime[k];
    const std::size_t length = std::size_t{1} << log;
    const root_table roots = tables[k];
    poll_interrupt();
    transform_there(x, log, roots.forward, p);
    poll_interrupt();
    if (y != x) transform_there(y, log, roots.forward, p);
    poll_interrupt();
    multiply_entries(x, y, length, p);
    transform_back(x, log, roots.backward, p);
    poll_interrupt();
    const u64 two_64 = static_cast<u64>((static_cast<u128>(1) << 64) % p);
    const factor scale = factor_of(times(two_64, power(length % p, p - 2, p), p), p);
    for (std::size_t i = 0; i < length; ++i) {
        const u64 v = lazy_times(x[i], scale, p);
        x[i] = v < p ? v : v - p;
    }
    return 1;
}

// Integers ----------------------------------------------------------------------------------------------

std::int64_t integer_of(u64 r)
{
    constexpr u64 p = transform_prime[0];
    return r > p / 2 ? -static_cast<std::int64_t>(p - r) : static_cast<std::int64_t>(r);
}

__int128 integer_of(u64 r0, u64 r1)
{
    constexpr u64 p = transform_prime[0], q = transform_prime[1];
    constexpr u64 inverse = 3975591113783102219;  // of p modulo q
    constexpr u128 all = static_cast<u128>(p) * q;
    constexpr factor scale = {inverse, static_cast<u64>((static_cast<u128>(inverse) << 64) / q)};
    const u64 r = r0 >= q ? r0 - q : r0;  // p is the greater of the two, below 2q
    u64 t = lazy_times(r1 >= r ? r1 - r : r1 + q - r, scale, q);
    if (t >= q) t -= q;
    const u128 v = r0 + static_cast<u128>(p) * t;
    return v > all / 2 ? -static_cast<__int128>(all - v) : static_cast<__int128>(v);
}

}  // namespace kelmar
