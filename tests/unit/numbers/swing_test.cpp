// tests/unit/numbers/swing_test.cpp -- factorials by squares are GMP's.
#include "numbers/swing.h"
#include <gmp.h>
#include <gtest/gtest.h>
#include "tests/support/long_numbers.h"

using namespace kelmar;
using namespace kelmar_test;

namespace {

void expect_factorial(std::int32_t n, number *r, mpz_t expected)
{
    mpz_t found;
    mpz_init(found);
    ASSERT_EQ(swing_factorial(n, r), 1) << n;
    ASSERT_TRUE(chain_is_normal(r, digit_base)) << n;
    number_to_mpz(r, found);
    mpz_fac_ui(expected, static_cast<unsigned long>(n));
    EXPECT_EQ(mpz_cmp(found, expected), 0) << n;
    mpz_clear(found);
}

TEST(SwingFactorial, AgreesWithGmpForSmallOnesAndLongOnes)
{
    if (!numstash) open_stashes();
    number r;
    mpz_t z;
    r.size = 0;
    mpz_init(z);
    record_audit audit;
    for (std::int32_t n = 0; n <= 700; ++n) expect_factorial(n, &r, z);
    for (std::int32_t n : {999, 1024, 2047, 2048, 6561, 16384, 20000, 12345, 19999}) {
        expect_factorial(n, &r, z);  // some below the limit of the primes that are kept
    }
    special_free(&r);
    audit.expect_unchanged("swing_factorial");
    mpz_clear(z);
}

}  // namespace
