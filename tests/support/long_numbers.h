#pragma once
// tests/support/long_numbers.h -- long integers for tests: to and from GMP, and biased random operands.

#include <gmp.h>
#include <cstdint>
#include <initializer_list>
#include <random>
#include "numbers/number.h"

namespace kelmar_test {

void number_from_mpz(const mpz_t z, kelmar::number *n);  // n filled: size is written, no old chain is freed
void number_to_mpz(const kelmar::number *n, mpz_t z);    // z initialised by the caller
void number_from_text(const char *decimal, kelmar::number *n);

// A generator whose seed is printed when a test fails, and can be set with the variable KELMAR_SEED.
struct test_random {
    std::mt19937_64 engine;
    std::uint64_t seed;
    test_random();
    std::uint64_t below(std::uint64_t n);  // 0 .. n-1
};

// z = a random integer of at most `digits` digits of base 2^28, biased to what breaks carries: digits 0, 1
// and 2^28-1, runs of zeros and of ones, values near powers of the base; either sign when `negative`.
void biased_mpz(test_random *r, std::int32_t digits, bool negative, mpz_t z);

// A long integer of a test beside the value that it should have. Gives its chain back when it goes.
struct long_operand {
    kelmar::number n;
    mpz_t z;
    long_operand();
    ~long_operand();
    long_operand(const long_operand &) = delete;
    long_operand &operator=(const long_operand &) = delete;
    void draw(test_random *r, std::int32_t digits);  // both from biased_mpz, either sign
    void load();                                     // n from z
};

// The chain of the given digits, right or not.
kelmar::number chain_of(std::initializer_list<std::int32_t> digits);

// Gtest failures when n does not hold just these digits of base 2^28, or is not in normal form.
void expect_digits(const kelmar::number *n, std::initializer_list<std::int32_t> digits);

// n is in normal form for `base`, and its value is z.
bool holds_value(const kelmar::number *n, const mpz_t z, std::int32_t base = kelmar::digit_base);

// Checks that records taken less records on free lists come back to the count of the start.
struct record_audit {
    std::int64_t numnodes, numbers, quolys;
    record_audit();
    void expect_unchanged(const char *where) const;  // a gtest failure names what is out
};

}  // namespace kelmar_test
