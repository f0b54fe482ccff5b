// Common divisors against GMP: small and long operands, every sign and alias, zeros, records.
#include "numbers/long_gcd.h"
#include <gtest/gtest.h>
#include "numbers/compare.h"
#include "tests/support/by_build.h"
#include "tests/support/long_numbers.h"

using namespace kelmar;
using kelmar_test::biased_mpz;
using kelmar_test::by_build;
using kelmar_test::number_from_mpz;
using kelmar_test::number_from_text;
using kelmar_test::number_to_mpz;
using kelmar_test::record_audit;
using kelmar_test::test_random;

static constexpr int rounds = by_build(20000, 1000000);

// Operands with a common factor now and then, their gcd by GMP, and the results.
struct LongGcd : testing::Test {
    test_random r;
    mpz_t a, b, f, want, got;
    number x = {}, y = {}, c = {};
    void SetUp() override
    {
        mpz_inits(a, b, f, want, got, nullptr);
    }
    void TearDown() override
    {
        mpz_clears(a, b, f, want, got, nullptr);
    }

    void draw(int digits_a, int digits_b)
    {
        biased_mpz(&r, digits_a, true, a);
        biased_mpz(&r, digits_b, true, b);
        switch (r.below(4)) {
        case 0: break;
        case 1:
            biased_mpz(&r, 1 + static_cast<int>(r.below(4)), true, f);
            mpz_mul(a, a, f);
            mpz_mul(b, b, f);
            break;
        case 2: mpz_mul(a, a, b); break;
        case 3: mpz_mul_2exp(r.below(2) ? a : b, a, r.below(100)); break;
        }
        mpz_gcd(want, a, b);
        number_from_mpz(a, &x);
        number_from_mpz(b, &y);
    }
    void release()
    {
        for (number *n : {&x, &y, &c}) special_free(n);
    }
    bool holds(const number *n, const mpz_t z)
    {
        number_to_mpz(n, got);
        return chain_is_normal(n, digit_base) && mpz_cmp(got, z) == 0;
    }
    void expect_all(void (*routine)(const number *, const number *, number *))
    {
        routine(&x, &y, &c);
        ASSERT_TRUE(holds(&c, want)) << "seed " << r.seed;
        ASSERT_TRUE(holds(&x, a) && holds(&y, b)) << "operands are spared; seed " << r.seed;
        switch (r.below(3)) {
        case 0:
            routine(&x, &y, &x);
            ASSERT_TRUE(holds(&x, want)) << "seed " << r.seed;
            break;
        case 1:
            routine(&x, &y, &y);
            ASSERT_TRUE(holds(&y, want)) << "seed " << r.seed;
            break;
        case 2:
            routine(&x, &x, &x);
            mpz_abs(want, a);
            ASSERT_TRUE(holds(&x, want)) << "seed " << r.seed;
            break;
        }
    }
};

// Words -----------------------------------------------------------------------------------------------------

TEST_F(LongGcd, WordsWithZerosEnd)
{
    EXPECT_EQ(smallgcd(0, 0), 0);
    EXPECT_EQ(smallgcd(0, 12), 12);
    EXPECT_EQ(smallgcd(12, 0), 12);
    EXPECT_EQ(smallgcd(1, 2147483647), 1);
    EXPECT_EQ(smallgcd(1 << 30, 1 << 20), 1 << 20);
    EXPECT_EQ(smallgcd(2147483647, 2147483647), 2147483647);
}

TEST_F(LongGcd, WordsAgreeWithGmp)
{
    for (int i = 0; i < rounds; ++i) {
        const std::int32_t u = static_cast<std::int32_t>(r.engine() >> (33 + r.below(31)));
        const std::int32_t v = static_cast<std::int32_t>(r.engine() >> (33 + r.below(31)));
        mpz_set_ui(a, u);
        ASSERT_EQ(static_cast<unsigned>(smallgcd(u, v)), mpz_gcd_ui(nullptr, a, v))
            << u << " " << v << " seed " << r.seed;
    }
}

// Long integers ---------------------------------------------------------------------------------------------

TEST_F(LongGcd, SmallSizesAgreeWithGmp)
{
    record_audit audit;
    for (int i = 0; i < rounds; ++i) {
        draw(1 + static_cast<int>(r.below(6)), 1 + static_cast<int>(r.below(6)));
        expect_all(binary_gcd);
        if (HasFatalFailure()) return;
        release();
    }
    audit.expect_unchanged("binary_gcd");
}

TEST_F(LongGcd, LongSizesAgreeWithGmp)
{
    record_audit audit;
    for (int i = 0; i < rounds / 200; ++i) {
        const int size_a = 1 + static_cast<int>(r.below(i % 10 ? 60 : 600));
        draw(size_a, 1 + static_cast<int>(r.below(i % 7 ? 60 : 600)));
        expect_all(binary_gcd);
        if (HasFatalFailure()) return;
        release();
    }
    audit.expect_unchanged("binary_gcd");
}

TEST_F(LongGcd, EuclidAgreesWithGmp)
{
    record_audit audit;
    for (int i = 0; i < rounds; ++i) {
        draw(1 + static_cast<int>(r.below(8)), 1 + static_cast<int>(r.below(8)));
        expect_all(gcd);
        if (HasFatalFailure()) return;
        release();
    }
    audit.expect_unchanged("gcd");
}

TEST_F(LongGcd, FibonacciNumbersHaveTheLongestRun)
{
    for (unsigned n : {40u, 80u, 161u, 162u, 163u, 400u, 5000u}) {
        mpz_fib2_ui(a, b, n);
        mpz_gcd(want, a, b);
        number_from_mpz(a, &x);
        number_from_mpz(b, &y);
        expect_all(binary_gcd);
        release();
    }
}

TEST_F(LongGcd, NearbyOperandsLeaveNothingToTheLeadingBits)
{
    for (unsigned bits : {112u, 113u, 168u, 448u, 5000u}) {
        for (unsigned distance : {0u, 1u, 2u, 9u}) {
            mpz_ui_pow_ui(a, 2, bits);
            mpz_add_ui(b, a, distance);
            mpz_mul_ui(a, a, 3);
            mpz_mul_ui(b, b, 3);
            mpz_gcd(want, a, b);
            number_from_mpz(a, &x);
            number_from_mpz(b, &y);
            expect_all(binary_gcd);
            release();
        }
    }
}

TEST_F(LongGcd, PowersOfTwoAreAllStripping)
{
    for (unsigned k : {1u, 27u, 28u, 29u, 112u, 280u, 1000u}) {
        for (unsigned l : {1u, 28u, 56u, 113u, 999u}) {
            mpz_ui_pow_ui(a, 2, k);
            mpz_ui_pow_ui(b, 2, l);
            mpz_mul_ui(b, b, 15);
            mpz_gcd(want, a, b);
            number_from_mpz(a, &x);
            number_from_mpz(b, &y);
            expect_all(binary_gcd);
            release();
        }
    }
}

TEST_F(LongGcd, ZeroGivesTheOtherMadePositive)
{
    for (const char *text : {"0", "7", "-7", "-12345678901234567890123456789012345678901234567890"}) {
        number_from_text("0", &x);
        number_from_text(text, &y);
        mpz_set_str(b, text, 10);
        mpz_abs(want, b);
        for (auto routine : {binary_gcd, gcd}) {
            routine(&x, &y, &c);
            EXPECT_TRUE(holds(&c, want)) << text;
            routine(&y, &x, &c);
            EXPECT_TRUE(holds(&c, want)) << text;
        }
        EXPECT_TRUE(holds(&y, b));
        binary_gcd(&x, &y, &y);
        EXPECT_TRUE(holds(&y, want)) << text;
        release();
    }
}

TEST_F(LongGcd, NegativeOperandGivesAPositiveResultAndStays)
{
    number_from_text("-12", &x);
    number_from_text("18", &y);
    binary_gcd(&x, &y, &c);
    EXPECT_TRUE(is_longint(&c, 6));
    EXPECT_TRUE(is_longint(&x, -12));
    release();
}

TEST_F(LongGcd, WorksOnDigitsWhateverTheMode)
{
    mpz_ui_pow_ui(a, 6, 200);
    mpz_ui_pow_ui(b, 10, 150);
    mpz_gcd(want, a, b);
    number_from_mpz(a, &x);
    number_from_mpz(b, &y);
    flotemode = lintmode = 1;
    binary_gcd(&x, &y, &c);
    flotemode = lintmode = 0;
    EXPECT_TRUE(holds(&c, want));
    release();
}

// Reduced fractions -----------------------------------------------------------------------------------------

struct ExtGcd : LongGcd {
    number u = {}, v = {};
    int is_one = -1;

    void expect_reduced(const number *g, const number *over_a, const number *over_b)
    {
        ASSERT_TRUE(holds(g, want)) << "seed " << r.seed;
        ASSERT_EQ(is_one, mpz_cmp_ui(want, 1) == 0);
        if (mpz_sgn(want) == 0) mpz_set_ui(want, 1);
        mpz_divexact(f, a, want);
        ASSERT_TRUE(holds(over_a, f)) << "seed " << r.seed;
        mpz_divexact(f, b, want);
        ASSERT_TRUE(holds(over_b, f)) << "seed " << r.seed;
    }
    void run_once()
    {
        switch (r.below(4)) {
        case 0:
            extgcd(&x, &y, &c, &x, &y, &is_one);
            expect_reduced(&c, &x, &y);
            break;
        case 1:
            extgcd(&x, &y, &x, &y, &u, &is_one);
            expect_reduced(&x, &y, &u);
            break;
        default:
            extgcd(&x, &y, &c, &u, &v, &is_one);
            expect_reduced(&c, &u, &v);
            ASSERT_TRUE(holds(&x, a) && holds(&y, b)) << "operands are spared; seed " << r.seed;
        }
    }
    void release_all()
    {
        release();
        special_free(&u);
        special_free(&v);
    }
};

TEST_F(ExtGcd, SmallSizesAgreeWithGmp)
{
    record_audit audit;
    for (int i = 0; i < rounds; ++i) {
        draw(1 + static_cast<int>(r.below(6)), 1 + static_cast<int>(r.below(6)));
        run_once();
        if (HasFatalFailure()) return;
        release_all();
    }
    audit.expect_unchanged("extgcd");
}

TEST_F(ExtGcd, LongSizesAgreeWithGmp)
{
    record_audit audit;
    for (int i = 0; i < rounds / 200; ++i) {
        draw(1 + static_cast<int>(r.below(60)), 1 + static_cast<int>(r.below(60)));
        run_once();
        if (HasFatalFailure()) return;
        release_all();
    }
    audit.expect_unchanged("extgcd");
}

TEST_F(ExtGcd, FewQuotientsAreKeptAndManyAreNot)
{
    record_audit audit;
    for (int i = 0; i < rounds / 100; ++i) {
        biased_mpz(&r, 20 + static_cast<int>(r.below(60)), true, f);
        biased_mpz(&r, 1 + static_cast<int>(r.below(12)), true, a);  // on both sides of the quotients kept
        biased_mpz(&r, 1 + static_cast<int>(r.below(12)), true, b);
        mpz_mul(a, a, f);
        mpz_mul(b, b, f);
        mpz_gcd(want, a, b);
        number_from_mpz(a, &x);
        number_from_mpz(b, &y);
        run_once();
        if (HasFatalFailure()) return;
        release_all();
    }
    audit.expect_unchanged("extgcd");
}

TEST_F(ExtGcd, EqualInputsGiveCofactorsOne)
{
    for (const char *text : {"5", "-5", "1000000000000000000000000000000000000000000000000000000007"}) {
        number_from_text(text, &x);
        number_from_text(text, &y);
        extgcd(&x, &y, &c, &u, &v, &is_one);
        mpz_set_str(a, text, 10);
        mpz_abs(want, a);
        EXPECT_TRUE(holds(&c, want));
        EXPECT_TRUE(is_longint(&u, mpz_sgn(a)));
        EXPECT_TRUE(is_longint(&v, mpz_sgn(a)));
        EXPECT_EQ(is_one, 0);
        release_all();
    }
}

TEST_F(ExtGcd, ZeroOperands)
{
    const char *const texts[] = {"0", "1", "-1", "6", "-123456789012345678901234567890123456789012345678901"};
    for (const char *text : texts) {
        for (int swap : {0, 1}) {
            number_from_text(swap ? text : "0", &x);
            number_from_text(swap ? "0" : text, &y);
            number_to_mpz(&x, a);
            number_to_mpz(&y, b);
            mpz_gcd(want, a, b);
            extgcd(&x, &y, &c, &u, &v, &is_one);
            expect_reduced(&c, &u, &v);
            release_all();
        }
    }
}

// Plain numbers ---------------------------------------------------------------------------------------------

TEST_F(LongGcd, PlainNumbersTakeTheFirstRecordAndReleaseTheSecond)
{
    record_audit audit;
    for (std::int32_t first : {0, 12, -12}) {
        for (std::int32_t second : {0, 18, -18}) {
            quolynode *p = nullptr, *q = nullptr;
            plain_set(first, &p);
            plain_set(second, &q);
            gcdnum(&p, &q);
            EXPECT_EQ(q, nullptr);
            EXPECT_TRUE(is_longint(p->num, first && second ? 6 : first ? 12 : second ? 18 : 0));
            free_plain(&p);
        }
    }
    audit.expect_unchanged("gcdnum");
}

TEST_F(LongGcd, PlainNumbersInTheOtherViews)
{
    quolynode *p = nullptr, *q = nullptr;
    lintmode = 1;
    plain_set(-12, &p);
    plain_set(18, &q);
    gcdnum(&p, &q);
    EXPECT_EQ(p->num->word, 6);

    flotemode = 1;
    plain_set(0, &q);
    gcdnum(&p, &q);
    EXPECT_EQ(p->num->real, 1.0);
    flotemode = 0;

    modularmode = 1;
    modulus = 101;
    plain_set(40, &p);
    plain_set(60, &q);
    gcdnum(&p, &q);
    EXPECT_EQ(p->num->word, 1);
    plain_set(0, &p);
    plain_set(60, &q);
    gcdnum(&p, &q);
    EXPECT_EQ(p->num->word, 60);
    modularmode = lintmode = 0;
    modulus = -1;
    p->num->size = 0;
    free_plain(&p);
}
