// numbers/primes.cpp -- trial division on the wheel of 6.
//
// After 2 and 3 only divisors of the form 6k - 1 and 6k + 1 are tried: from 5, in steps 2 and 4 by turns.
// Values of up to 64 bits are divided up to a bound only. Beyond it a strong pseudoprime test that is exact
// in that range tells primes, and Pollard's iteration splits the others.
#include "numbers/primes.h"

#include <cmath>
#include <cstdlib>
#include <initializer_list>

#include "numbers/random.h"
#include "session/report.h"

namespace kelmar {

// Lists of words -----------------------------------------------------------------------------------------

void push_word(std::int32_t value, word_node **list)
{
    word_node *node = static_cast<word_node *>(std::malloc(sizeof(word_node)));
    if (!node) {
        kelmar_error("no memory for a list of words", 1);
        return;
    }
    *node = {value, *list};
    *list = node;
}

void free_words(word_node **list)
{
    while (*list) {
        word_node *node = *list;
        *list = node->next;
        std::free(node);
    }
}

// Reverse the links of the list.
static void reverse_words(word_node **list)
{
    word_node *done = nullptr;
    while (*list) {
        word_node *node = *list;
        *list = node->next;
        node->next = done;
        done = node;
    }
    *list = done;
}

// Primality ----------------------------------------------------------------------------------------------

static std::uint32_t magnitude(std::int32_t n)
{
    return n < 0 ? 0u - static_cast<std::uint32_t>(n) : static_cast<std::uint32_t>(n);
}

// The smallest prime divisor of n from 5 up to `last`, or just above it, for n that 2 and 3 do not divide; 1
// when there is none.
template <class W> static W divisor_on_wheel(W n, W last)
{
    for (W d = 5; d <= last; d += 6) {
        if (n % d == 0) return d;
        if (n % (d + 2) == 0) return d + 2;
    }
    return 1;
}

std::int32_t long_is_prime(std::int32_t n)
{
    const std::uint32_t m = magnitude(n);
    if (m == 2 || m == 3) return 1;
    if (m % 2 == 0) return 2;
    if (m % 3 == 0) return 3;
    const double root = std::sqrt(static_cast<double>(m));
    return static_cast<std::int32_t>(divisor_on_wheel(m, static_cast<std::uint32_t>(root)));
}

bool is_prime(std::int32_t n)
{
    return long_is_prime(n) == 1;
}

static std::uint64_t mult64(std::uint64_t a, std::uint64_t b, std::uint64_t m)
{
    return static_cast<std::uint64_t>(static_cast<unsigned __int128>(a) * b % m);
}

// The odd n > 2 passes the strong test to `base`: base^d = 1, or base^(d 2^i) = -1 for an i < k, n - 1 = d
// 2^k.
static bool passes_strong_test(std::uint64_t n, std::uint64_t base)
{
    const int k = __builtin_ctzll(n - 1);
    std::uint64_t x = 1;
    for (int bit = 63 - k; bit >= 0; --bit) {
        x = mult64(x, x, n);
        if ((n - 1) >> k >> bit & 1) x = mult64(x, base % n, n);
    }
    if (x == 1 || x == n - 1) return true;
    for (int i = 1; i < k; ++i) {
        x = mult64(x, x, n);
        if (x == n - 1) return true;
    }
    return false;
}

// n is prime, for odd n > 37. These bases are enough below 3.3 * 10^24.
static bool is_prime64(std::uint64_t n)
{
    for (std::uint64_t base : {2, 3, 5, 7, 11, 13, 17, 19, 23, 29, 31, 37}) {
        if (n % base == 0 || !passes_strong_test(n, base)) return false;
    }
    return true;
}

static std::uint64_t gcd64(std::uint64_t a, std::uint64_t b)
{
    while (b) {
        const std::uint64_t rest = a % b;
        a = b;
        b = rest;
    }
    return a;
}

// A slow and a fast walker on the sequence x^2 + c modulo n.
struct walkers {
    std::uint64_t slow, fast, c;
};

static std::uint64_t next_place(std::uint64_t x, std::uint64_t c, std::uint64_t n)
{
    return static_cast<std::uint64_t>((static_cast<unsigned __int128>(x) * x + c) % n);
}

// Walk that many steps. Return the gcd of n and the product of the distances.
static std::uint64_t walk(walkers *w, int steps, std::uint64_t n)
{
    std::uint64_t product = 1;
    for (; steps > 0; --steps) {
        w->slow = next_place(w->slow, w->c, n);
        w->fast = next_place(next_place(w->fast, w->c, n), w->c, n);
        product = mult64(product, w->slow > w->fast ? w->slow - w->fast : w->fast - w->slow, n);
    }
    return gcd64(n, product);
}

static constexpr int walk_steps = 128;  // between two gcds

// A proper divisor of the composite n; where all factors are met in one walk it is taken step by step, and
// where they are met in one step the next sequence serves.
static std::uint64_t split(std::uint64_t n)
{
    for (std::uint64_t c = 1;; ++c) {
        walkers w = {2, 2, c};
        walkers before = w;
        std::uint64_t g = walk(&w, walk_steps, n);
        while (g == 1) {
            before = w;
            g = walk(&w, walk_steps, n);
        }
        if (g == n) {
            do g = walk(&before, 1, n);
            while (g == 1);
        }
        if (g != n) return g;
    }
}

// The smallest prime divisor of n, which has none of 16 bits, and so at most three.
static std::uint64_t smallest_divisor(std::uint64_t n)
{
    if (is_prime64(n)) return n;
    const std::uint64_t d = split(n);
    const std::uint64_t a = smallest_divisor(d);
    const std::uint64_t b = smallest_divisor(n / d);
    return a < b ? a : b;
}

static constexpr std::uint64_t wheel_end = 65536;  // smaller divisors of long values are tried

std::int64_t longg_is_prime(std::int32_t hi, std::int32_t mid, std::int32_t lo)
{
    const std::uint64_t n = (static_cast<std::uint64_t>(hi) << 56) + (static_cast<std::uint64_t>(mid) << 28) +
                            static_cast<std::uint64_t>(lo);
    if (n <= 0x7fffffff) return long_is_prime(static_cast<std::int32_t>(n));
    if (n % 2 == 0) return 2;
    if (n % 3 == 0) return 3;
    const std::uint64_t small = divisor_on_wheel(n, wheel_end);
    if (small > 1) return static_cast<std::int64_t>(small);
    const std::uint64_t divisor = smallest_divisor(n);
    return divisor == n ? 1 : static_cast<std::int64_t>(divisor);
}

std::int32_t nextprime(std::int32_t n)
{
    if (n < 2) return n + 2;
    if (n % 2 == 0) return 0;  // even numbers are never reached, nor left
    for (std::int64_t p = std::int64_t{n} + 2; p <= 0x7fffffff; p += 2) {
        if (is_prime(static_cast<std::int32_t>(p))) return static_cast<std::int32_t>(p);
    }
    return 0;
}

// Factors ------------------------------------------------------------------------------------------------

// Put p in front of the list when it divides *m, and divide it out.
static void take_factor(std::uint32_t p, std::uint32_t *m, word_node **list)
{
    if (*m % p != 0) return;
    push_word(static_cast<std::int32_t>(p), list);
    do *m /= p;
    while (*m % p == 0);
}

void prime_factors(std::int32_t n, word_node **list)
{
    *list = nullptr;
    std::uint32_t m = magnitude(n);
    if (m < 2) return;
    const std::uint32_t last = static_cast<std::uint32_t>(std::sqrt(static_cast<double>(m)));
    take_factor(2, &m, list);
    take_factor(3, &m, list);
    for (std::uint32_t d = 5; d <= last && m > 1; d += 6) {
        take_factor(d, &m, list);
        take_factor(d + 2, &m, list);
    }
    if (m > 1) push_word(static_cast<std::int32_t>(m), list);
    reverse_words(list);
}

void set_prime_quotients(word_node **list, std::int32_t n)
{
    prime_factors(n, list);
    for (word_node *node = *list; node; node = node->next) node->value = n / node->value;
}

// Choice from a table ------------------------------------------------------------------------------------

// The long integer a is a multiple of p.
static bool is_multiple(const number *a, std::int32_t p)
{
    if (a->size == 0) return true;
    std::int64_t rest = 0;
    const numnode *node = a->head;
    for (std::int32_t i = 0; i < a->size; ++i, node = node->next) {
        rest = (rest * digit_base + node->digit) % p;
    }
    return rest == 0;
}

std::int32_t select_prime(const number *a, const number *b, std::int32_t spread, std::int32_t range,
                          std::int32_t top, const number *table)
{
    std::int32_t i = top - spread - (range > 0 ? rand_integer2() % range : 0);
    if (i > top) i = top;
    if (i < 1) i = 1;  // short tables leave no room for the spread
    for (; i <= top; ++i) {
        const std::int32_t p = table[i - 1].word;
        if (p > 0 && !is_multiple(a, p) && !is_multiple(b, p)) return i;
    }
    return top + 1;
}

}  // namespace kelmar
