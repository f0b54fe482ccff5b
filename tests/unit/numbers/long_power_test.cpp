// Powers in every view, and the measures of size.
#include "numbers/long_power.h"
#include <gtest/gtest.h>
#include <climits>
#include <cmath>
#include "numbers/compare.h"
#include "numbers/word_mod.h"
#include "tests/support/by_build.h"
#include "tests/support/catch_error.h"
#include "tests/support/long_numbers.h"

using namespace kelmar;
using kelmar_test::biased_mpz;
using kelmar_test::by_build;
using kelmar_test::caught_error;
using kelmar_test::number_from_mpz;
using kelmar_test::number_to_mpz;
using kelmar_test::record_audit;
using kelmar_test::test_random;

static constexpr int rounds = by_build(20000, 1000000);

struct LongPower : testing::Test {
    test_random r;
    mpz_t a, want, got;
    number n = {};
    void SetUp() override
    {
        mpz_inits(a, want, got, nullptr);
    }
    void TearDown() override
    {
        mpz_clears(a, want, got, nullptr);
        flotemode = modularmode = lintmode = smallmodulus = 0;
        modulus = -1;
    }
    void expect_power(std::uint32_t e)
    {
        mpz_pow_ui(want, a, e);
        number_from_mpz(a, &n);
        number_power(&n, static_cast<std::int32_t>(e));
        ASSERT_TRUE(chain_is_normal(&n, digit_base)) << "seed " << r.seed;
        number_to_mpz(&n, got);
        ASSERT_EQ(mpz_cmp(got, want), 0) << "exponent " << e << " seed " << r.seed;
        special_free(&n);
    }
    void enter(std::int32_t m)
    {
        modularmode = lintmode = 1;
        modulus = m;
        smallmodulus = m < 65535;
    }
};

// Powers ----------------------------------------------------------------------------------------------------

TEST_F(LongPower, DigitPowersAgreeWithGmp)
{
    record_audit audit;
    for (int i = 0; i < rounds; ++i) {
        biased_mpz(&r, 1 + static_cast<int>(r.below(3)), true, a);
        if (r.below(4) == 0) mpz_mul_2exp(a, a, r.below(60));
        expect_power(static_cast<std::uint32_t>(r.below(9)));
        if (HasFatalFailure()) return;
    }
    audit.expect_unchanged("number_power");
}

TEST_F(LongPower, LargeExponents)
{
    for (int v : {2, -2, 3, -3, 10, 16, 6, 1 << 27, 12345, 0, 1, -1}) {
        for (unsigned e : {0u, 1u, 2u, 27u, 28u, 29u, 100u, 1001u, 4096u}) {
            mpz_set_si(a, v);
            expect_power(e);
            if (HasFatalFailure()) return;
        }
    }
    mpz_set_ui(a, 2);
    expect_power(200000);
}

TEST_F(LongPower, PowerZeroOfZeroIsOneInEveryView)
{
    setvalue(0, &n);
    number_power(&n, 0);
    EXPECT_TRUE(is_longint(&n, 1));
    special_free(&n);
    lintmode = 1;
    setvalue(0, &n);
    number_power(&n, 0);
    EXPECT_EQ(n.word, 1);
    enter(7);
    setvalue(0, &n);
    number_power(&n, 0);
    EXPECT_EQ(n.word, 1);
    modularmode = 0;
    flotemode = 1;
    setvalue(0, &n);
    number_power(&n, 0);
    EXPECT_EQ(n.real, 1.0);
}

TEST_F(LongPower, OtherViewsAgreeWithRepeatedProducts)
{
    lintmode = 1;
    for (std::int32_t v : {0, 1, -1, 2, 3, -7, 65536, INT_MAX, INT_MIN}) {
        std::uint32_t product = 1;
        for (int e = 0; e < 70; ++e) {
            setvalue(v, &n);
            number_power(&n, e);
            ASSERT_EQ(static_cast<std::uint32_t>(n.word), product) << v << "^" << e;
            product *= static_cast<std::uint32_t>(v);
        }
    }
    for (std::int32_t m : {2, 7, 91, 65521, 2147483629, 2147483646}) {
        enter(m);
        for (std::int32_t v : {0, 1, 2, 5, m - 1}) {
            if (v >= m) continue;
            std::int32_t product = 1 % m;
            for (int e = 0; e < 70; ++e) {
                setvalue(v, &n);
                number_power(&n, e);
                ASSERT_EQ(n.word, product) << v << "^" << e << " modulo " << m;
                product = modmult(product, v);
            }
        }
    }
    modularmode = 0;
    flotemode = 1;
    n.real = 1.5;
    number_power(&n, 21);
    EXPECT_DOUBLE_EQ(n.real, std::pow(1.5, 21));
    n.real = -2;
    number_power(&n, 1023);
    EXPECT_EQ(n.real, -std::pow(2.0, 1023));
}

TEST_F(LongPower, ResiduePowersAgreeWithGmp)
{
    mpz_t m;
    mpz_init(m);
    for (int i = 0; i < rounds; ++i) {
        const std::int32_t p = i % 3 == 0 ? 2147483629 : i % 3 == 1 ? 65521 : 7;
        enter(p);
        const std::int32_t x = r.below(p);
        std::int32_t e = static_cast<std::int32_t>(r.engine() >> (32 + r.below(32)));
        if (x == 0 && e < 0) e = -(e + 1);
        mpz_set_ui(a, x);
        mpz_set_ui(m, p);
        mpz_set_si(want, e);
        mpz_powm(got, a, want, m);
        std::int32_t power = -1;
        mod_number_power(x, e, &power);
        ASSERT_EQ(power, static_cast<std::int32_t>(mpz_get_ui(got))) << x << "^" << e << " modulo " << p;
    }
    mpz_clear(m);
}

TEST_F(LongPower, ResiduePowersOfZero)
{
    enter(7);
    std::int32_t power = -1;
    for (std::int32_t e : {1, 6, 12, 18, 600}) {
        mod_number_power(0, e, &power);
        EXPECT_EQ(power, 0) << e;
    }
    mod_number_power(0, 0, &power);
    EXPECT_EQ(power, 1);
    EXPECT_EQ(caught_error([&] { mod_number_power(0, -1, &power); }), 22);
    mod_number_power(3, -1, &power);
    EXPECT_EQ(power, 5);
    mod_number_power(3, INT_MIN, &power);
    EXPECT_TRUE(power > 0 && power < 7);
    enter(2);
    mod_number_power(1, INT_MAX, &power);
    EXPECT_EQ(power, 1);
}

// Modulo a prime the reduction of an exponent cannot be seen; modulo 15 it can.
TEST_F(LongPower, ExponentsFrom16OnAreReduced)
{
    enter(15);
    std::int32_t power = -1;
    mod_number_power(2, 15, &power);
    EXPECT_EQ(power, 8);
    mod_number_power(2, 16, &power);
    EXPECT_EQ(power, 4);  // 2^(16 - 14)
}

// Sizes -----------------------------------------------------------------------------------------------------

TEST_F(LongPower, SinglePowersOfTwo)
{
    int found = 0;
    for (std::int32_t v = -5; v < 5000; ++v) found += power_of_two(v);
    EXPECT_EQ(found, 13);
    EXPECT_TRUE(power_of_two(1 << 30));
    EXPECT_FALSE(power_of_two(INT_MAX));
    EXPECT_FALSE(power_of_two(INT_MIN));
}

TEST_F(LongPower, BitLengthsAgreeWithGmp)
{
    for (int i = 0; i < rounds / 5; ++i) {
        biased_mpz(&r, 1 + static_cast<int>(r.below(5)), false, a);
        number_from_mpz(a, &n);
        const std::int32_t bits = mpz_sgn(a) ? static_cast<std::int32_t>(mpz_sizeinbase(a, 2)) : 0;
        ASSERT_EQ(logg2(&n), bits);
        in_place_neg(&n);
        ASSERT_EQ(logg2_neg(&n), bits);
        special_free(&n);
    }
    special_set(1, &n);
    n.head->digit = digit_base;
    EXPECT_EQ(logg2(&n), 29);
    n.head->digit = -digit_base;
    EXPECT_EQ(logg2_neg(&n), 29);
    special_free(&n);
}

TEST_F(LongPower, BitLengthsOfWords)
{
    EXPECT_EQ(logg2lint(0), 0);
    EXPECT_EQ(logg2lint(1), 1);
    EXPECT_EQ(logg2lint(-1), 1);
    EXPECT_EQ(logg2lint(255), 8);
    EXPECT_EQ(logg2lint(256), 9);
    EXPECT_EQ(logg2lint(INT_MAX), 31);
    EXPECT_EQ(logg2lint(INT_MIN), 32);
    enter(101);
    EXPECT_EQ(logg2lint(50), 6);
    EXPECT_EQ(logg2lint(51), 6);
    EXPECT_EQ(logg2lint(100), 1);
    EXPECT_EQ(logg2lint(-100), 1);
    enter(15);
    EXPECT_EQ(logg2lint(7), 3);  // 7 is nearer to 0 than 8
    EXPECT_EQ(logg2lint(8), 3);
}

TEST_F(LongPower, LeastAndGreatestOfWords)
{
    EXPECT_EQ(minn(-3, 2), -3);
    EXPECT_EQ(maxx(-3, 2), 2);
    EXPECT_EQ(Iminn(7, 7), 7);
    EXPECT_EQ(Iminn(INT_MIN, INT_MAX), INT_MIN);
}
