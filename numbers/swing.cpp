// numbers/swing.cpp -- long factorials, by squares.
//
// n! is the square of (n/2)! times the swing of n, which is small: a prime p divides it once for each
// power of p at which n divided by that power, rounded down, is odd. So most of the work is one square of
// half the length, and one square of a quarter, and so on. The twos are left out, and shifted in at the
// end. Source: P. Luschny, Swinging factorial.
#include "numbers/swing.h"
#include <cstdlib>
#include <cstring>
#include "numbers/long_mul.h"
#include "numbers/long_shift.h"

namespace kelmar {

// The odd primes up to a limit, and room for the words whose product a swing is: there are fewer of them.
struct prime_room {
    std::int32_t *primes, *words;
    std::int32_t count, limit;
};

// default empty; have_primes; reset: never
static prime_room kept;

// Declines (0) when the heap has no room.
static int have_primes(prime_room *room, std::int32_t n)
{
    if (n <= room->limit) return 1;
    std::free(room->primes);
    const auto halves = static_cast<std::size_t>(n / 2 + 1);  // the odd numbers 2k + 1
    room->primes = static_cast<std::int32_t *>(std::malloc(2 * halves * sizeof(std::int32_t) + halves));
    room->count = 0;
    room->limit = room->primes ? n : 0;
    if (!room->primes) return 0;
    room->words = room->primes + halves;
    char *const composite = reinterpret_cast<char *>(room->words + halves);
    std::memset(composite, 0, halves);
    for (std::int32_t p = 3; p <= n; p += 2) {
        if (composite[p / 2]) continue;
        room->primes[room->count++] = p;
        for (std::int64_t multiple = std::int64_t{p} * p; multiple <= n; multiple += 2 * p) {
            composite[multiple / 2] = 1;
        }
    }
    return 1;
}

// room->words = words whose product is the odd part of the swing of n; returns their count.
static std::int32_t swing_words(const prime_room *room, std::int32_t n)
{
    std::int32_t count = 0;
    std::int64_t word = 1;
    for (std::int32_t i = 0; i < room->count && room->primes[i] <= n; ++i) {
        const std::int32_t p = room->primes[i];
        std::int64_t power = 1;
        for (std::int32_t q = n / p; q > 0; q /= p) {
            if (q & 1) power *= p;
        }
        if (word * power >= digit_base) {
            room->words[count++] = static_cast<std::int32_t>(word);
            word = 1;
        }
        word *= power;
    }
    if (word > 1) room->words[count++] = static_cast<std::int32_t>(word);
    return count;
}

// r = the product of the words.
static void multiply_words(const std::int32_t *words, std::int32_t count, number *r)
{
    number part;
    part.size = 0;
    if (count <= 8) {
        special_set(count > 0 ? words[0] : 1, r);
        for (std::int32_t i = 1; i < count; ++i) {
            special_set(words[i], &part);
            fast_mult(r, &part, r);
        }
    } else {
        multiply_words(words, count / 2, r);
        multiply_words(words + count / 2, count - count / 2, &part);
        fast_mult(r, &part, r);
    }
    special_free(&part);
}

int swing_factorial(std::int32_t n, number *r)
{
    if (!have_primes(&kept, n)) return 0;
    number swing;
    swing.size = 0;
    int halvings = 0;
    while (n >> halvings > 2) ++halvings;
    special_set(1, r);  // the odd part of 0!, 1! and 2!
    for (; halvings >= 0; --halvings) {
        const std::int32_t count = swing_words(&kept, n >> halvings);
        fast_mult(r, r, r);
        multiply_words(kept.words, count, &swing);
        fast_mult(r, &swing, r);
    }
    special_free(&swing);
    shift_left(r, n - __builtin_popcount(static_cast<unsigned>(n)));
    return 1;
}

}  // namespace kelmar
