#pragma once
// numbers/primes.h -- primes and factors of words, and the choice of a prime from a table.
//
// Words are small enough for trial division, along the numbers that neither 2 nor 3 divides; longer values
// are split. 1 counts as prime: it passes every test, and the language shows it so. The sign of a word is
// not looked at.

#include <cstdint>
#include <type_traits>
#include "numbers/number.h"

namespace kelmar {

// A list of words, for factors, moduli and points.
struct word_node {
    std::int32_t value;
    word_node *next;
};
static_assert(std::is_trivial_v<word_node>);

// Put `value` in front of the list. A record from the heap, outside the storage budget.
void push_word(std::int32_t value, word_node **list);

// Release the list; *list becomes null.
void free_words(word_node **list);

// n is a prime, or 1. 0 is not.
bool is_prime(std::int32_t n);

// Return 1 when n is a prime (or 1), otherwise its smallest prime divisor; 2 for 0.
std::int32_t long_is_prime(std::int32_t n);

// The same for hi 2^56 + mid 2^28 + lo, digits >= 0, below 2^64 in all.
// Cost: a prime is told in a tenth of a millisecond; a product of two primes of 32 bits in some milliseconds.
std::int64_t longg_is_prime(std::int32_t hi, std::int32_t mid, std::int32_t lo);

// Return the least prime above the odd n. n < 2 gives n + 2, tested or not.
// Declines: 0 for an even n, and when the next prime is above 2^31.
std::int32_t nextprime(std::int32_t n);

// *list = the distinct prime factors of n, smallest first; none for |n| < 2. list filled.
void prime_factors(std::int32_t n, word_node **list);

// *list = n / p for the distinct prime factors p of n, smallest p first: the exponents that tell a primitive
// root when n + 1 is prime. list filled.
void set_prime_quotients(word_node **list, std::int32_t n);

// Return the index, counted from 1, of a prime of table[0 .. top-1] that divides neither of the long integers
// a and b: the first from a random start on, start = top - spread - (14 random bits mod range), not below 1.
// Return top + 1 when there is none. a, b: leading coefficients, spared. table: primes with words.
std::int32_t select_prime(const number *a, const number *b, std::int32_t spread, std::int32_t range,
                          std::int32_t top, const number *table);

}  // namespace kelmar
