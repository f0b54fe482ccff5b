// Order and equality of numbers, in every view, with GMP as judge of the long integers.
#include "numbers/compare.h"
#include <gtest/gtest.h>
#include <limits>
#include "tests/support/by_build.h"
#include "tests/support/long_numbers.h"
#include "tests/support/views.h"

using namespace kelmar;
using namespace kelmar_test;

namespace {

constexpr int rounds = by_build(5000, 1000000);

constexpr double nan_value = std::numeric_limits<double>::quiet_NaN();

number real_number(double v)
{
    return {nullptr, nullptr, 0, v, nullptr, 0};
}

number word_number(std::int32_t v)
{
    return {nullptr, nullptr, v, 0, nullptr, 0};
}

// b is often a, -a, or next to one of them.
void close_pair(test_random *random, bool negative, mpz_t a, mpz_t b)
{
    biased_mpz(random, 4, negative, a);
    switch (random->below(5)) {
    case 0: biased_mpz(random, 4, negative, b); return;
    case 1: mpz_set(b, a); return;
    case 2: mpz_add_ui(b, a, random->below(2) ? 1 : 1ul << 28); return;
    case 3:
        mpz_neg(b, a);
        if (!negative) mpz_abs(b, b);
        return;
    default:
        mpz_sub_ui(b, a, 1);
        if (!negative) mpz_abs(b, b);
    }
}

TEST(Order, LongIntegersAgreeWithGmp)
{
    const in_view view(view_digits);
    test_random random;
    const record_audit audit;
    mpz_t za, zb, minus;
    mpz_inits(za, zb, minus, nullptr);
    for (int k = 0; k < rounds; ++k) {
        close_pair(&random, true, za, zb);
        mpz_neg(minus, zb);
        number a, b;
        number_from_mpz(za, &a);
        number_from_mpz(zb, &b);
        const int order = mpz_cmp(za, zb), magnitudes = mpz_cmpabs(za, zb);
        ASSERT_EQ(bigger(&a, &b), order > 0);
        ASSERT_EQ(equal(&a, &b), order == 0);
        ASSERT_EQ(spec_equal(&a, &b), order == 0);
        ASSERT_EQ(abs_larger(&a, &b), magnitudes > 0);
        ASSERT_EQ(int_abs_bigger(&a, &b, 0), magnitudes > 0);
        ASSERT_EQ(int_abs_bigger(&a, &b, 1), magnitudes >= 0);
        ASSERT_EQ(negtive(&a, &b), mpz_cmp(za, minus) == 0);
        ASSERT_EQ(iszero(&a), mpz_sgn(za) == 0);
        special_free(&a);
        special_free(&b);
    }
    mpz_clears(za, zb, minus, nullptr);
    audit.expect_unchanged("compare");
}

TEST(Order, NonNegativeLongIntegersAgreeWithGmp)
{
    const in_view view(view_float);  // these read the digits whatever the mode
    test_random random;
    mpz_t za, zb;
    mpz_inits(za, zb, nullptr);
    for (int k = 0; k < rounds; ++k) {
        close_pair(&random, false, za, zb);
        number a, b;
        number_from_mpz(za, &a);
        number_from_mpz(zb, &b);
        const int order = mpz_cmp(za, zb);
        ASSERT_EQ(pos_bigger(&a, &b), order > 0);
        if (a.size >= b.size) {
            ASSERT_EQ(fast_bigger(a.head, b.head, a.size, b.size), order > 0);
        }
        int which = 7;
        ASSERT_EQ(equal_which(&a, &b, &which), order == 0);
        ASSERT_EQ(which, order == 0 ? 7 : order > 0);
        special_free(&a);
        special_free(&b);
    }
    mpz_clears(za, zb, nullptr);
}

TEST(Order, EqualWhichTakesSizesBeforeSigns)
{
    number a, b;
    number_from_text("-99999999999999", &a);
    number_from_text("3", &b);
    int which = 0;
    EXPECT_EQ(equal_which(&a, &b, &which), 0);
    EXPECT_EQ(which, 1);
    special_free(&a);
    special_free(&b);
}

TEST(Order, Floats)
{
    const in_view view(view_float);
    const number one = real_number(1), minus_two = real_number(-2), nan = real_number(nan_value);
    EXPECT_TRUE(bigger(&one, &minus_two));
    EXPECT_FALSE(bigger(&minus_two, &one));
    EXPECT_TRUE(abs_larger(&minus_two, &one));
    EXPECT_FALSE(equal(&nan, &nan));
    EXPECT_FALSE(bigger(&nan, &one));
    EXPECT_FALSE(abs_larger(&one, &nan));
    const number zero = real_number(0.0), minus_zero = real_number(-0.0), two = real_number(2);
    EXPECT_TRUE(iszero(&minus_zero));
    EXPECT_TRUE(equal(&zero, &minus_zero));
    EXPECT_TRUE(negtive(&zero, &zero));
    EXPECT_TRUE(negtive(&two, &minus_two));
    EXPECT_FALSE(negtive(&two, &one));
}

TEST(Order, WordsAreSignedAndMagnitudesDoNotOverflow)
{
    const in_view view(view_word);
    const number least = word_number(INT32_MIN), most = word_number(INT32_MAX), minus = word_number(-1);
    EXPECT_TRUE(bigger(&most, &least));
    EXPECT_TRUE(bigger(&minus, &least));
    EXPECT_TRUE(abs_larger(&least, &most));
    EXPECT_FALSE(abs_larger(&most, &least));
    EXPECT_TRUE(negtive(&least, &least)) << "wraps";
    const number one = word_number(1);
    EXPECT_TRUE(negtive(&one, &minus));
    EXPECT_FALSE(negtive(&one, &one));
}

TEST(Order, NegativesOfResiduesAndFieldElements)
{
    const number zero = word_number(0), three = word_number(3), four = word_number(4);
    {
        const in_view view(view_modular, 7);
        EXPECT_TRUE(negtive(&three, &four));
        EXPECT_TRUE(negtive(&zero, &zero));
        EXPECT_FALSE(negtive(&zero, &four));
        EXPECT_FALSE(negtive(&three, &three));
    }
    {
        const in_view view(view_modular, 2147483646);
        const number a = word_number(2147483645), b = word_number(1);
        EXPECT_TRUE(negtive(&a, &b));
        EXPECT_FALSE(negtive(&a, &a)) << "a sum past the word";
    }
    const in_view view(view_field);
    EXPECT_TRUE(negtive(&three, &three));
    EXPECT_FALSE(negtive(&three, &four));
}

TEST(PlusMinusOne, InEveryView)
{
    int is_minus = 5;
    {
        const in_view view(view_float);
        const number one = real_number(1), minus = real_number(-1), other = real_number(1.5);
        EXPECT_TRUE(equal_to_pm1(&one, &is_minus));
        EXPECT_EQ(is_minus, 0);
        EXPECT_TRUE(equal_to_pm1(&minus, &is_minus));
        EXPECT_EQ(is_minus, 1);
        EXPECT_FALSE(equal_to_pm1(&other, &is_minus));
    }
    const number one = word_number(1), six = word_number(6), minus = word_number(-1);
    {
        const in_view view(view_modular, 7);
        EXPECT_TRUE(equal_to_pm1(&one, &is_minus));
        EXPECT_EQ(is_minus, 0);
        EXPECT_TRUE(equal_to_pm1(&six, &is_minus));
        EXPECT_EQ(is_minus, 1);
    }
    {
        const in_view view(view_modular, 2);
        EXPECT_TRUE(equal_to_pm1(&one, &is_minus));
        EXPECT_EQ(is_minus, 0) << "1 is its own negative";
    }
    {
        const in_view view(view_field);
        EXPECT_TRUE(equal_to_pm1(&one, &is_minus));
        EXPECT_EQ(is_minus, 0);
        EXPECT_FALSE(equal_to_pm1(&six, &is_minus));
    }
    {
        const in_view view(view_word);
        EXPECT_TRUE(equal_to_pm1(&minus, &is_minus));
        EXPECT_EQ(is_minus, 1);
    }
    const in_view view(view_digits);
    const struct {
        const char *text;
        bool is_pm1;
        int is_minus;
    } rows[] = {{"1", true, 0}, {"-1", true, 1}, {"0", false, 0}, {"268435456", false, 0}, {"-2", false, 1}};
    for (const auto &row : rows) {
        number n;
        number_from_text(row.text, &n);
        EXPECT_EQ(equal_to_pm1(&n, &is_minus), row.is_pm1) << row.text;
        if (row.is_pm1) {
            EXPECT_EQ(is_minus, row.is_minus) << row.text;
        }
        special_free(&n);
    }
}

TEST(IsLongint, AsksForOneDigit)
{
    number n;
    number_from_text("268435461", &n);
    EXPECT_FALSE(is_longint(&n, 1));
    EXPECT_FALSE(is_longint(&n, 5));
    special_free(&n);
    number_from_text("-5", &n);
    EXPECT_TRUE(is_longint(&n, -5));
    EXPECT_FALSE(is_longint(&n, 5));
    special_free(&n);
}

}  // namespace
