// Sizes, sizes of coefficients, and masses, on polynomials made by hand.
#include "poly/mass.h"
#include <gtest/gtest.h>
#include <limits>
#include <string>
#include "poly/measure.h"
#include "storage/accounting.h"
#include "tests/support/polys.h"
#include "tests/support/settings.h"
#include "tests/support/views.h"

using namespace kelmar;
using namespace kelmar_test;

namespace {

// The constant of a decimal number, in the digit view.
polynode *long_constant(const std::string &decimal)
{
    number *n = nullptr;
    newimag(&n);
    n->word = 0;
    n->real = 0;
    number_from_text(decimal.c_str(), n);
    return new_constant(n);
}

std::int32_t mass_of_text(const char *text, std::int32_t factor = 1, std::int32_t level = 1)
{
    const poly_operand p(poly_of_text(text));
    return poly_mass(p.p, factor, level);
}

std::int32_t better_of_text(const char *text, std::int32_t factor = 1, std::int32_t level = 1)
{
    const poly_operand p(poly_of_text(text));
    return better_poly_mass(p.p, factor, level);
}

constexpr const char *two_levels = "{3{2{#5}, #1}, 1{#7}, #-2}";  // (5 y^2 + 1) x^3 + 7 x - 2

// Sizes ---------------------------------------------------------------------------------------------------

TEST(SizePoly, NodesAndNumbersByTheirNominalSizes)
{
    const in_view live(view_digits);
    const poly_operand one(poly_of_text("{#1}"));
    EXPECT_EQ(sizepoly(one.p), 16 + 32 + 8);
    const poly_operand p(poly_of_text(two_levels));
    // lists of 3, 2 and twice 1 nodes, and four numbers of one digit
    EXPECT_EQ(sizepoly(p.p), (3 + 2 + 1 + 1) * 16 + 4 * (32 + 8));
    EXPECT_EQ(sizepoly(nullptr), 0);
}

TEST(SizePoly, DigitsCountInTheDigitViewOnly)
{
    const in_view live(view_digits);
    const poly_operand p(long_constant("123456789012345678901234567890"));
    EXPECT_EQ(sizepoly(p.p), 16 + 32 + 4 * 8);
    const in_view words(view_modular);
    EXPECT_EQ(sizepoly(p.p), 16 + 32);
}

TEST(MaxDigits, BitsOfTheLargestLongInteger)
{
    const in_view live(view_digits);
    const poly_operand p(poly_of_text(two_levels));
    EXPECT_EQ(max_digits(p.p), 3);
    poly_operand q(poly_of_text("{2{#-9}, 1{#3}}"));
    EXPECT_EQ(max_digits(q.p), 4) << "signs do not count";
    const poly_operand big(long_constant("-1237940039285380274899124224"));  // -2^90
    EXPECT_EQ(max_digits(big.p), 91);
    const poly_operand zero(poly_of_text("{#0}"));
    EXPECT_EQ(max_digits(zero.p), 0);
}

TEST(MaxDigits, OfNothingIsMinusOne)
{
    EXPECT_EQ(max_digits(nullptr), -1);
}

TEST(MaxDigits, RoundedValueOfDoubles)
{
    const in_view live(view_float);
    const poly_operand p(poly_of_text("{2{#1.5}, 1{#-17.6}, #3}"));
    EXPECT_EQ(max_digits(p.p), 18);
    const poly_operand huge(poly_of_text("{1{#1e300}, #1}"));
    EXPECT_EQ(max_digits(huge.p), INT32_MAX);
    const poly_operand nan(poly_of_text("{#1}"));
    nan.p->num->real = std::numeric_limits<double>::quiet_NaN();
    EXPECT_EQ(max_digits(nan.p), INT32_MAX);
}

TEST(MaxDigits, ResiduesCountFromTheNearerEnd)
{
    const in_view live(view_modular, 101);
    const poly_operand p(poly_of_text("{2{#99}, #2}"));
    EXPECT_EQ(max_digits(p.p), 2);
    const poly_operand q(poly_of_text("{1{#40}, #2}"));
    EXPECT_EQ(max_digits(q.p), 6);
}

// Masses by weight ------------------------------------------------------------------------------------------

TEST(Mass, OfANumberIsItsSize)
{
    const in_view live(view_digits);
    EXPECT_EQ(mass_of_text("{#5}", 7, 9), 1) << "neither factor nor level count";
    const poly_operand big(long_constant("123456789012345678901234567890"));
    EXPECT_EQ(poly_mass(big.p, 1, 1), 4);
    const in_view words(view_word);
    EXPECT_EQ(poly_mass(big.p, 1, 1), 1) << "one in the word views, whatever chain the record keeps";
}

TEST(Mass, DegreesLevelsAndTheFactorWeigh)
{
    const in_view live(view_digits);
    EXPECT_EQ(mass_of_text("{4{#1}, #1}"), 4 * 1 + 1);
    EXPECT_EQ(mass_of_text("{4{#1}, #1}", 1, 3), 4 * 3 + 1);
    EXPECT_EQ(mass_of_text("{4{#1}, #1}", 2, 3), 4 * 3 * 2 + 1);
    // 5 y^2 + 1 is at level 2 with factor 1: 2 * 2 + 1
    EXPECT_EQ(mass_of_text(two_levels), 3 * (2 * 2 + 1) + 1 + 1);
    EXPECT_EQ(mass_of_text(two_levels, 10), 30 * (2 * 2 + 1) + 10 + 1);
}

TEST(Mass, AWrapperAddsTheMassOfItsCoefficient)
{
    const in_view live(view_digits);
    EXPECT_EQ(mass_of_text("{0{4{#1}, #1}}"), 4 * 2 + 1);
    EXPECT_EQ(mass_of_text("{0{0{1{#1}}}}"), 3) << "the variable of level 3";
    EXPECT_EQ(mass_of_text("{2{#1}, 0{4{#1}, #1}}"), 2 + 4 * 2 + 1);
}

TEST(Mass, BetterAddsTheLevelToTheDegree)
{
    const in_view live(view_digits);
    EXPECT_EQ(better_of_text("{#5}"), 1);
    EXPECT_EQ(better_of_text("{4{#1}, #1}"), (4 + 1) + 1);
    EXPECT_EQ(better_of_text("{4{#1}, #1}", 2, 3), (4 * 2 + 3) + 1);
    EXPECT_EQ(better_of_text(two_levels), (3 + 1) * ((2 + 2) + 1) + (1 + 1) + 1);
    EXPECT_EQ(better_of_text("{0{4{#1}, #1}}"), (4 + 2) + 1);
}

TEST(Mass, FullCountsBits)
{
    {
        const in_view live(view_digits);
        const poly_operand p(poly_of_text("{4{#-9}, #1}"));
        EXPECT_EQ(full_poly_mass(p.p, 2, 3), 4 * 3 * 2 * 4 + 1);
        const poly_operand big(long_constant("1237940039285380274899124224"));  // 2^90
        EXPECT_EQ(full_poly_mass(big.p, 1, 1), 91);
    }
    {
        const in_view live(view_word);
        const poly_operand p(poly_of_text("{4{#-9}, #1}"));
        EXPECT_EQ(full_poly_mass(p.p, 1, 1), 4 * 4 + 1);
    }
    const in_view live(view_float);
    const poly_operand p(poly_of_text("{4{#-9}, #0.001}"));
    EXPECT_EQ(full_poly_mass(p.p, 1, 1), 4 * 4 + 1);
}

TEST(Mass, NewCountsLevelsAndNoDegrees)
{
    const in_view live(view_digits);
    const poly_operand p(poly_of_text(two_levels));
    EXPECT_EQ(new_poly_mass(p.p, 1), 1 * (2 * 1 + 1) + 1 + 1);
    EXPECT_EQ(new_poly_mass(p.p, 3), 3 * (4 * 1 + 1) + 3 + 1);
    const poly_operand high(poly_of_text("{1000000{#1}, #1}"));
    EXPECT_EQ(new_poly_mass(high.p, 1), 2);
}

TEST(Mass, OverflowIsTheLimitNeverNegative)
{
    const in_view live(view_digits);
    EXPECT_EQ(mass_limit, 33554430);
    EXPECT_EQ(mass_of_text("{2147483647{2147483647{2147483647{#1}}}}", INT32_MAX, 150), 33554430);
    EXPECT_EQ(better_of_text("{2147483647{2147483647{2147483647{#1}}}}", INT32_MAX, 150), 33554430);
    EXPECT_EQ(mass_of_text("{2147483647{#1}, #1}"), 33554430);
    EXPECT_EQ(mass_of_text("{33554429{#1}}"), 33554429);
    EXPECT_EQ(mass_of_text("{33554429{#1}, #1}"), 33554430);
    EXPECT_EQ(mass_of_text("{33554429{#1}, 1{#1}, #1}"), 33554430);
    EXPECT_EQ(mass_of_text("{16777215{#1}, 16777214{#1}}"), 33554429);
    EXPECT_EQ(mass_of_text("{16777216{#1}, 16777215{#1}}"), 33554430);
    const poly_operand p(poly_of_text("{33554430{#1}, #1}"));
    EXPECT_EQ(new_poly_mass(p.p, 100000000), 33554430);
}

TEST(Mass, FullStopsAtTwoToTheTwentyEight)
{
    const in_view live(view_digits);
    const poly_operand p(poly_of_text("{268435454{#1}, #1}"));
    EXPECT_EQ(full_poly_mass(p.p, 1, 1), 268435455);
    const poly_operand q(poly_of_text("{268435455{#1}, #1}"));
    EXPECT_EQ(full_poly_mass(q.p, 1, 1), 268435456);
    const poly_operand r(poly_of_text("{2147483647{2147483647{#9}}, #1}"));
    EXPECT_EQ(full_poly_mass(r.p, INT32_MAX, 100000000), 268435456);
}

TEST(Mass, OfAUnitIsItsHeightAndItsDepth)
{
    const in_laurent on(1);
    const in_view live(view_digits);
    EXPECT_EQ(mass_of_text("{-5{#1}}"), 1 + 1);
    EXPECT_EQ(mass_of_text("{0{-5{7{#3}}}}"), 2 + 2);
    EXPECT_EQ(mass_of_text("{0{-5{7{#3}}}}", 10, 10), 2 + 2);
    EXPECT_EQ(better_of_text("{-5{#1}}"), 1 + 1);
    EXPECT_EQ(mass_of_text("{#5}"), 1) << "a number stays a number";
    EXPECT_EQ(mass_of_text("{2{#1}, #4, -3{#1}}"), 2 + 1 + 3)
        << "a sum is no unit; degrees count by magnitude";
    EXPECT_EQ(mass_of_text("{-2147483648{#1}, #1}"), 33554430);
}

TEST(Mass, WithoutNegativeExponentsAProductOfPowersIsNoUnit)
{
    const in_laurent off(0);
    const in_view live(view_digits);
    EXPECT_EQ(mass_of_text("{5{#1}}"), 5);
}

TEST(Mass, GrowsWithEveryTermInEveryView)
{
    for (num_view v : {view_float, view_field, view_modular, view_word, view_small, view_digits}) {
        const in_view live(v);
        test_random r;
        for (int k = 0; k < 300; ++k) {
            const poly_operand p(random_poly(&r, {3, 12, 9, 0, 3}));
            if (is_constant(p.p)) continue;
            poly_operand rest(copy_poly(p.p->next ? p.p->next : p.p->coef));
            EXPECT_GE(poly_mass(p.p, 1, 1), poly_mass(rest.p, 1, 1)) << poly_text(p.p) << " seed " << r.seed;
            EXPECT_GE(full_poly_mass(p.p, 1, 1), full_poly_mass(rest.p, 1, 1)) << poly_text(p.p);
            EXPECT_GT(simple_poly_mass(p.p), simple_poly_mass(rest.p)) << poly_text(p.p);
            EXPECT_GT(poly_mass(p.p, 1, 1), 0);
        }
    }
}

// Masses by records -----------------------------------------------------------------------------------------

TEST(SimpleMass, CountsNodesNumbersAndDigits)
{
    const in_view live(view_digits);
    const poly_operand one(poly_of_text("{#1}"));
    EXPECT_EQ(simple_poly_mass(one.p), 13 + 31 + 8);
    const poly_operand p(poly_of_text(two_levels));
    EXPECT_EQ(simple_poly_mass(p.p), 7 * 13 + 4 * (31 + 8));
    const poly_operand big(long_constant("123456789012345678901234567890"));
    EXPECT_EQ(simple_poly_mass(big.p), 13 + 31 + 4 * 8);
    const in_view words(view_modular);
    EXPECT_EQ(simple_poly_mass(big.p), 13 + 31);
}

// x^n + .. + x + 1: n terms of mass 65 and the number 52, in the digit view.
polynode *all_ones(std::int32_t n)
{
    std::string text = "{";
    for (; n > 0; --n) text += std::to_string(n) + "{#1}, ";
    return poly_of_text((text + "#1}").c_str());
}

TEST(SimpleMass, TheQuickOnesStopPastTheirBounds)
{
    const in_view live(view_digits);
    for (std::int32_t n = 0; n < 12; ++n) {
        const poly_operand p(all_ones(n));
        const std::int64_t mass = simple_poly_mass(p.p);
        EXPECT_EQ(mass, 65 * n + 52);
        EXPECT_EQ(very_simple_poly_mass(p.p), mass <= 250 ? mass : 260) << n;
        EXPECT_EQ(more_simple_poly_mass(p.p), mass <= 350 ? mass : n == 5 ? 377 : 390) << n;
    }
}

TEST(SimpleMass, JustOnTheBoundsTheWalkGoesOn)
{
    const in_view live(view_digits);
    const auto of_bits = [](int bits) {  // 2^bits
        mpz_t z;
        mpz_init(z);
        mpz_ui_pow_ui(z, 2, static_cast<unsigned long>(bits));
        number *record = nullptr;
        newimag(&record);
        record->word = 0;
        record->real = 0;
        number_from_mpz(z, record);
        mpz_clear(z);
        return new_constant(record);
    };
    // 2 x^2 + 2 x + 2^k: 65 + 65 + 13 + 31 + 8 digits
    for (int digits = 1; digits < 40; ++digits) {
        polynode *p = new_term(2, of_bits(1));
        p->next = new_term(1, of_bits(28 * (digits - 1)));
        p->next->next = of_bits(1);
        const poly_operand held(p);
        const std::int64_t to_middle = 65 + 13 + 13 + 31 + 8 * digits;
        EXPECT_EQ(very_simple_poly_mass(p), to_middle > 250 ? to_middle : to_middle + 52) << digits;
        EXPECT_EQ(more_simple_poly_mass(p), to_middle > 350 ? to_middle : to_middle + 52) << digits;
    }
}

TEST(Mass, SparesItsOperand)
{
    const in_view live(view_digits);
    test_random r;
    for (int k = 0; k < 200; ++k) {
        const poly_audit audit;
        {
            const poly_operand p(random_poly(&r, {3, 12, 9, 0, 3}));
            const std::string before = poly_text(p.p);
            poly_mass(p.p, 2, 1);
            better_poly_mass(p.p, 2, 1);
            full_poly_mass(p.p, 2, 1);
            new_poly_mass(p.p, 1);
            simple_poly_mass(p.p);
            max_digits(p.p);
            EXPECT_EQ(poly_text(p.p), before);
        }
        audit.expect_unchanged("masses");
    }
}

}  // namespace
