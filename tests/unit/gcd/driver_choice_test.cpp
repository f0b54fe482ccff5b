// The choice between images and Algorithm C, at the bounds of its rules.
#include <gtest/gtest.h>
#include "gcd/driver.h"
#include "tests/support/divisions.h"
#include "tests/support/gcds.h"

using namespace kelmar;
using namespace kelmar_test;

namespace {

// Outer terms x^(degree step) .. x^0, each with so many terms in y below the exponent, and 1.
struct form {
    std::int32_t degree, exponent, terms = 1, step = 1;
};

std::string text_of(const form &of)
{
    std::string text = "{";
    for (std::int32_t e = of.degree; e >= 0; --e) {
        text += std::to_string(e * of.step) + "{";
        for (std::int32_t k = 0; k < of.terms; ++k) text += std::to_string(of.exponent - k) + "{#3}, ";
        text += "#1}" + std::string(e > 0 ? ", " : "}");
    }
    return text;
}

struct GcdChoice : testing::Test {
    six_in_force names;
    in_view live{view_digits};

    GcdChoice()
    {
        clear_gcd_counters();
    }

    // 1: images are chosen for the pair.
    std::int32_t images(const form &a, const form &b)
    {
        const poly_operand x(poly_of_text(text_of(a).c_str())), y(poly_of_text(text_of(b).c_str()));
        gcd_problem f = {};
        f.a.p = x.p;
        f.b.p = y.p;
        f.names = names.names();
        EXPECT_EQ(choose_method(&f), 0);
        return f.modular;
    }
};

TEST_F(GcdChoice, LightPairsGoByImages)
{
    EXPECT_EQ(images({2, 10}, {1, 10}), 1);
    EXPECT_EQ(images({9, 200}, {8, 200}), 1);
}

TEST_F(GcdChoice, OneHeavyOperandAndALongLightOne)
{
    EXPECT_EQ(images({399, 2}, {2, 200000}), 1);  // 1600 nodes of the light one
    EXPECT_EQ(images({398, 2}, {2, 200000}), 0);
    EXPECT_EQ(images({4, 200000}, {1, 900, 400}), 1);  // 1604
    EXPECT_EQ(images({4, 200000}, {1, 900, 399}), 0);
}

TEST_F(GcdChoice, HeavyPairsOfLowDegree)
{
    EXPECT_EQ(images({2, 6000}, {1, 6000}), 1);
    EXPECT_EQ(images({2, 31000}, {1, 31000}), 0);
    EXPECT_EQ(images({5, 16000}, {4, 16000}), 1);
    EXPECT_EQ(images({5, 50000}, {4, 50000}), 0);
}

TEST_F(GcdChoice, HeavyPairsOfManyTerms)
{
    EXPECT_EQ(images({2, 50000, 400}, {2, 50000, 400}), 1);
    EXPECT_EQ(images({2, 50000, 400}, {2, 50000, 30}), 1);
    EXPECT_EQ(images({1, 50000, 240}, {1, 50000, 240}), 0);
    EXPECT_EQ(images({1, 50000, 260}, {1, 50000, 260}), 1);  // a leading coefficient that weighs much
}

TEST_F(GcdChoice, CoefficientsOfHighDegree)
{
    EXPECT_EQ(images({7, 50000}, {6, 50000}), 1);
    EXPECT_EQ(images({7, 2, 1, 40000}, {6, 2, 1, 40000}), 0);
}

TEST_F(GcdChoice, RowsOfSizes)
{
    EXPECT_EQ(images({4, 200000, 100}, {3, 200000, 235}), 1);
    EXPECT_EQ(images({3, 200000, 100}, {3, 200000, 235}), 0);
    EXPECT_EQ(images({19, 2, 1, 400000}, {18, 2, 1, 400000}), 1);
    EXPECT_EQ(images({19, 2, 1, 20000}, {18, 2, 1, 20000}), 0);
}

TEST_F(GcdChoice, CountersOverrule)
{
    alg_c_count = 3;
    EXPECT_EQ(images({5, 50000}, {4, 50000}), 1);
    c_cntcount = 100001;
    EXPECT_EQ(images({5, 50000}, {4, 50000}), 0);
    clear_gcd_counters();
}

}  // namespace
