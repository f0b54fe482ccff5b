// Words and doubles of long integers, against GMP; and the warnings of a table field.
#include "numbers/convert.h"
#include <gtest/gtest.h>
#include <cmath>
#include <string>
#include "session/report.h"
#include "tests/support/data_files.h"
#include "tests/support/long_numbers.h"
#include "tests/support/views.h"

using namespace kelmar;
using namespace kelmar_test;

namespace {

// A number made of a decimal text.
struct text_number {
    number n;
    explicit text_number(const char *text)
    {
        in_view digits(view_digits);
        n.size = 0;
        number_from_text(text, &n);
    }
    ~text_number()
    {
        special_free(&n);
    }
};

// The word that change_num gives, and what it writes.
std::int32_t word_of(const char *text, int sign = 1)
{
    text_number t(text);
    change_num(&t.n, 0, sign);
    return t.n.word;
}

std::string told(const char *text, int sign = 1)
{
    verbose = 1;
    const std::string output = output_of([&] { word_of(text, sign); });
    verbose = 0;
    return output;
}

constexpr const char *outsized = "*** Warning. in going to finite field, outsized value encountered: ";

}  // namespace

TEST(ChangeNum, ReducesOneDigitOfEitherSign)
{
    in_view modular(view_modular, 101);
    EXPECT_EQ(word_of("0"), 0);
    EXPECT_EQ(word_of("100"), 100);
    EXPECT_EQ(word_of("101"), 0);
    EXPECT_EQ(word_of("-1"), 100);
    EXPECT_EQ(word_of("-101"), 0);
    EXPECT_EQ(word_of("268435455"), 268435455 % 101);
}

TEST(ChangeNum, AgreesWithGmpForModuliOfEverySize)
{
    test_random random;
    SCOPED_TRACE("seed " + std::to_string(random.seed));
    mpz_t z;
    mpz_init(z);
    for (std::int32_t m : {2, 3, 101, 42359, 65521, 65534, 65535, 65536, 65537, 268435399, 268435456,
                           2147483629, 2147483646}) {
        in_view modular(view_modular, m);
        for (int round = 0; round < 3000; ++round) {
            biased_mpz(&random, 1 + static_cast<std::int32_t>(random.below(20)), true, z);
            number n;
            n.size = 0;
            number_from_mpz(z, &n);
            change_num(&n, 0, 1);
            ASSERT_EQ(static_cast<unsigned>(n.word), mpz_fdiv_ui(z, static_cast<unsigned>(m))) << m;
            ASSERT_TRUE(chain_is_normal(&n, digit_base));
            special_free(&n);
        }
    }
    mpz_clear(z);
}

TEST(ChangeNum, LeavesTheDigitsUnlessTheyAreGivenUp)
{
    in_view modular(view_modular, 101);
    record_audit audit;
    number n;
    n.size = 0;
    number_from_text("-123456789012345678901234567890", &n);
    const std::int32_t size = n.size;
    change_num(&n, 0, 1);
    EXPECT_EQ(n.size, size);
    mpz_t z, back;
    mpz_init_set_str(z, "-123456789012345678901234567890", 10);
    mpz_init(back);
    number_to_mpz(&n, back);
    EXPECT_EQ(mpz_cmp(z, back), 0);
    mpz_clear(z);
    mpz_clear(back);
    change_num(&n, 1, 1);
    EXPECT_EQ(n.size, 0);
    audit.expect_unchanged("change_num that gives the digits up");
}

TEST(ChangeNum, TableFieldCodesAreTheMagnitudeModuloTheModulus)
{
    in_view field(view_field);
    EXPECT_EQ(word_of("255"), 255);
    EXPECT_EQ(word_of("256"), 0);
    EXPECT_EQ(word_of("-3"), 3);
    EXPECT_EQ(word_of("-259"), 3);
}

TEST(ChangeNum, SeveralDigitsInATableFieldStayInsideTheTables)
{
    in_view field(view_field);
    EXPECT_EQ(word_of("536870911"), 255);  // 1, 268435455
    EXPECT_EQ(word_of("-536870911"), 255);
    EXPECT_EQ(word_of("268435456"), 0);
    for (const char *text : {"99999999999999999999", "-123456789123456789"}) {
        const std::int32_t word = word_of(text);
        EXPECT_TRUE(word >= 0 && word < 256) << text;
    }
}

TEST(ChangeNum, OutsizedCodesAreToldWhenVerbose)
{
    in_view field(view_field);
    warn_cnt = 0;
    EXPECT_EQ(told("255"), "");
    EXPECT_EQ(told("256"), std::string(outsized) + "256\n");
    EXPECT_EQ(told("-3", 1), std::string(outsized) + "-3\n");
    EXPECT_EQ(told("-3", 0), "");
    EXPECT_EQ(told("268435456"), " *** Warning. outsized values encountered. Expect garbage.\n");
    EXPECT_EQ(warn_cnt, 3);
    warn_cnt = 0;
    EXPECT_EQ(output_of([] { word_of("256"); }), "");  // not verbose
    EXPECT_EQ(warn_cnt, 0);
}

TEST(ChangeNum, TheTwentyFirstWarningIsNotWritten)
{
    in_view field(view_field);
    warn_cnt = 19;
    EXPECT_NE(told("256"), "");
    EXPECT_EQ(warn_cnt, 20);
    EXPECT_EQ(told("256"), "");
    EXPECT_EQ(told("268435456"), "");
    EXPECT_EQ(warn_cnt, 20);
    warn_cnt = 0;
}

TEST(ChangeNum, PrimeFieldsNeverWarn)
{
    in_view modular(view_modular, 101);
    warn_cnt = 0;
    EXPECT_EQ(told("-999999999999999999999"), "");
    EXPECT_EQ(warn_cnt, 0);
}

TEST(ChangeFlote, ConvertsOneDigitExactly)
{
    for (const char *text : {"0", "1", "-1", "268435455", "-268435455"}) {
        text_number t(text);
        change_flote(&t.n);
        EXPECT_EQ(t.n.real, std::stod(text));
    }
}

TEST(ChangeFlote, AgreesWithGmpToAFewLastBits)
{
    test_random random;
    SCOPED_TRACE("seed " + std::to_string(random.seed));
    mpz_t z;
    mpz_init(z);
    for (int round = 0; round < 20000; ++round) {
        biased_mpz(&random, 1 + static_cast<std::int32_t>(random.below(36)), true, z);
        number n;
        n.size = 0;
        number_from_mpz(z, &n);
        change_flote(&n);
        const double wanted = mpz_get_d(z);
        if (mpz_sizeinbase(z, 2) <= 53) {
            ASSERT_EQ(n.real, wanted);
        } else {
            ASSERT_NEAR(n.real / wanted, 1.0, 4e-15);
        }
        ASSERT_TRUE(chain_is_normal(&n, digit_base));
        special_free(&n);
    }
    mpz_clear(z);
}

TEST(ChangeFlote, IsInfiniteBeyondTheRangeOfDoubles)
{
    std::string huge = "1" + std::string(400, '0');
    text_number above(huge.c_str()), below(("-" + huge).c_str());
    change_flote(&above.n);
    change_flote(&below.n);
    EXPECT_EQ(above.n.real, HUGE_VAL);
    EXPECT_EQ(below.n.real, -HUGE_VAL);
}

TEST(FillResidue, IsWhatChangeNumGives)
{
    test_random r;
    long_operand a;
    for (const std::int32_t m :
         {2, 3, 7, 255, 65521, 65535, 65536, 1 << 28, 1000000007, 2147483629, 2147483646}) {
        in_view modular(view_modular, m);
        residue_ring ring;
        set_residue_ring(&ring, 1);
        for (int k = 0; k < 3000; ++k) {
            a.draw(&r, 6);
            change_num(&a.n, 0, 1);
            const std::int32_t wanted = a.n.word;
            ASSERT_EQ(wanted, static_cast<std::int32_t>(mpz_fdiv_ui(a.z, static_cast<unsigned long>(m))));
            ASSERT_EQ(fill_residue(&a.n, &ring), wanted);
            ASSERT_EQ(a.n.word, wanted);
        }
    }
}

TEST(ChangeNum, TwoToThe28IsTheHornerStepItself)
{
    in_view modular(view_modular, 7);
    set_modulus(7);
    EXPECT_EQ(word_of("268435456"), two28_mod);
    EXPECT_EQ(word_of("-268435456"), 7 - two28_mod);
}

TEST(DigitRatio, IsTheNearestDoubleOrNextToIt)
{
    test_random r;
    long_operand a, b;
    mpq_t q;
    mpq_init(q);
    for (int k = 0; k < 20000; ++k) {
        a.draw(&r, 5);
        b.draw(&r, 5);
        if (mpz_sgn(b.z) == 0) continue;
        mpq_set_num(q, a.z);
        mpq_set_den(q, b.z);
        mpq_canonicalize(q);
        const double wanted = mpq_get_d(q);  // truncated
        const double v = digit_ratio(&a.n, &b.n);
        ASSERT_LE(std::fabs(v - wanted), std::fabs(wanted) * 0x1p-52);
    }
    mpq_clear(q);
}

TEST(DigitRatio, HoldsBeyondTheRangeOfDoubles)
{
    long_operand a, b;
    mpz_ui_pow_ui(a.z, 10, 4000);
    mpz_ui_pow_ui(b.z, 10, 3998);
    a.load();
    b.load();
    EXPECT_EQ(digit_ratio(&a.n, &b.n), 100.0);
    EXPECT_EQ(digit_ratio(&b.n, &a.n), 0.01);
    mpz_set_ui(b.z, 1);
    b.load();
    EXPECT_EQ(digit_ratio(&a.n, &b.n), HUGE_VAL);
    EXPECT_EQ(digit_ratio(&b.n, &a.n), 0.0);
}
