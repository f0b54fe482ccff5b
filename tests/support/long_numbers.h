#pragma once
// tests/support/long_numbers.h -- long integers for tests: to and from GMP, and biased random operands.

#include <gmp.h>
#include <cstdint>
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

// z = a random integer of at most `digits` digits of base 2^28, biased to what breaks carries: digits 0, 1 and
// 2^28-1, runs of zeros and of ones, values near powers of the base; either sign when `negative`.
void biased_mpz(test_random *r, std::int32_t digits, bool negative, mpz_t z);

// Checks that records taken less records on free lists come back to the count of the start.
struct record_audit {
    std::int64_t numnodes, numbers, quolys;
    record_audit();
    void expect_unchanged(const char *where) const;  // a gtest failure names what is out
};

}  // namespace kelmar_test
