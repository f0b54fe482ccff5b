// The mass of numbers, in every view.
#include "storage/mass.h"
#include <gtest/gtest.h>
#include <cmath>
#include "numbers/number.h"
#include "tests/support/long_numbers.h"
#include "tests/support/views.h"

using namespace kelmar;
using namespace kelmar_test;

namespace {

std::int32_t mass_of_word(std::int32_t v)
{
    const number n = {nullptr, nullptr, v, 0, nullptr, 0};
    return number_mass(&n);
}

std::int32_t mass_of_real(double v)
{
    const number n = {nullptr, nullptr, 0, v, nullptr, 0};
    return number_mass(&n);
}

TEST(NumberMass, DigitsCountTwiceAndAShortHeadOnce)
{
    const in_view view(view_digits);
    const struct {
        const char *text;
        std::int32_t mass;
    } rows[] = {{"0", 1},         {"65535", 1},          {"65536", 2},
                {"-65535", 1},    {"-65536", 2},         {"268435455", 2},
                {"268435456", 3}, {"17592186044416", 4}, {"72057594037927936", 5}};
    for (const auto &row : rows) {
        number n;
        number_from_text(row.text, &n);
        EXPECT_EQ(number_mass(&n), row.mass) << row.text;
        special_free(&n);
    }
}

TEST(NumberMass, ResiduesWeighOneToFive)
{
    const in_view view(view_modular, 100);
    EXPECT_EQ(mass_of_word(0), 1);
    EXPECT_EQ(mass_of_word(19), 1);
    EXPECT_EQ(mass_of_word(20), 2);
    EXPECT_EQ(mass_of_word(99), 5);
    const in_view large(view_modular, 2147483646);
    EXPECT_EQ(mass_of_word(2147483645), 5) << "no overflow";
}

TEST(NumberMass, FloatsAndFreeWordsWeighTheirSize)
{
    {
        const in_view view(view_float);
        EXPECT_EQ(mass_of_real(0), 1);
        EXPECT_EQ(mass_of_real(268435455), 1);
        EXPECT_EQ(mass_of_real(-268435456), 2);
        EXPECT_EQ(mass_of_real(1e300), mass_limit);
        EXPECT_EQ(mass_of_real(HUGE_VAL), mass_limit);
        EXPECT_EQ(mass_of_real(NAN), mass_limit);
    }
    const in_view view(view_word);
    EXPECT_EQ(mass_of_word(5), 1);
    EXPECT_EQ(mass_of_word(INT32_MIN), 9);
}

}  // namespace
