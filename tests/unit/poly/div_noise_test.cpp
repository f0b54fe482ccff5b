// Exact division of doubles: a rest of rounding errors is nothing, at every level; anything else is refused.
#include <gtest/gtest.h>
#include <cmath>
#include <limits>
#include "poly/add.h"
#include "poly/div_exact.h"
#include "poly/div_fast.h"
#include "poly/mul.h"
#include "poly/scale.h"
#include "tests/support/divisions.h"

using namespace kelmar;
using namespace kelmar_test;

namespace {

struct FloatDivision : testing::Test {
    six_variables names;
    in_view live{view_float};
    test_random r;

    std::string exact_text(const char *a, const char *b)
    {
        poly_operand n(poly_of_text(a)), m(poly_of_text(b)), q;
        q.p = exact_quotient(n.p, m.p, names.first());
        return poly_text(q.p);
    }

    // A random polynomial with coefficients of two decimals.
    polynode *with_decimals(const poly_shape &shape, bool divisor)
    {
        poly_operand whole(divisor ? random_divisor(&r, shape) : random_poly(&r, shape));
        polynode *p = nullptr;
        number hundredth;
        hundredth.size = 0;
        hundredth.real = 0.01;
        scalar_by_poly(&hundredth, whole.p, &p);
        return p;
    }

    // The numbers of a - b are below `share` of those of a.
    void expect_near(polynode *a, polynode *b, double share)
    {
        poly_operand difference;
        poly_sub(a, b, &difference.p);
        EXPECT_LE(largest_magnitude(difference.p), share * largest_magnitude(a))
            << poly_text(a) << " and " << poly_text(b);
    }
};

// What does not cancel exactly: 0.1 * 0.1 - 0.01 is 1.7e-18.
TEST_F(FloatDivision, NamedCases)
{
    EXPECT_EQ(exact_text("{2{#1}, #-0.01}", "{1{#1}, #-0.1}"), "{1{#1}, #0.10000000000000001}");
    EXPECT_EQ(exact_text("{0{2{#1}, #-0.01}}", "{0{1{#1}, #-0.1}}"), "{0{1{#1}, #0.10000000000000001}}");
    EXPECT_EQ(exact_text("{1{2{#1}, #-0.01}, #0}", "{0{1{#1}, #-0.1}}").substr(0, 4), "{1{1");
    EXPECT_EQ(exact_text("{2{#1}, #1e-18}", "{1{#1}}"), "{1{#1}}");
    EXPECT_EQ(exact_text("{1{1{#1}}, #1e-18}", "{0{1{#1}}}"), "{1{#1}}");
    EXPECT_EQ(exact_text("{2{1{#1}}, 1{#1e-18}}", "{1{1{#1}}}"), "{1{#1}}");
}

// A lead that is noise as a whole, in a list whose other coefficients are not.
TEST_F(FloatDivision, ANoisyCoefficientOnlyIsDropped)
{
    EXPECT_EQ(exact_text("{3{1{#1e-17}, #1e-18}, 1{2{#1}, #-1}}", "{0{2{#1}, #-1}}"), "{1{#1}}");
    EXPECT_EQ(exact_text("{3{1{#1e-7}, #1e-8}, 1{2{#1}, #-1}}", "{0{2{#1}, #-1}}"), "null");
}

TEST_F(FloatDivision, SizeAloneIsNoNoise)
{
    EXPECT_EQ(exact_text("{1{#1e-20}, #1e-20}", "{1{#1}, #-1}"), "null");
    EXPECT_EQ(exact_text("{1{#0x1p-80}, #-0x1p-80}", "{1{#1}, #-1}"), "{#8.2718061255302767e-25}");
    EXPECT_EQ(exact_text("{2{#1}, #-0.0100001}", "{1{#1}, #-0.1}"), "null");
    EXPECT_EQ(exact_text("{2{#1}, #1e-10}", "{1{#1}}"), "null");
    EXPECT_EQ(exact_text("{3{#1}, #1}", "{1{#1e-10}, #1}"), "null");
}

TEST_F(FloatDivision, WhatIsNotFiniteIsRefused)
{
    for (const double odd : {std::numeric_limits<double>::infinity(), std::nan("")}) {
        for (int place : {0, 1, 2}) {
            poly_operand n(poly_of_text("{2{#1}, 1{#3}, #-7}")), m(poly_of_text("{1{#1}, #1}"));
            polynode *t = n.p;
            for (int k = 0; k < place; ++k) t = t->next;
            (t->isnum ? t->num : t->coef->num)->real = odd;
            poly_operand q(exact_quotient(n.p, m.p, names.first()));
            EXPECT_EQ(q.p, nullptr) << odd << " at " << place;
        }
    }
}

TEST_F(FloatDivision, ProductsOfDecimalsDivideInEveryForm)
{
    poly_audit audit;
    int decisive = 0;
    for (int i = 0; i < 600; ++i) {
        const poly_shape shape = {1 + i % 5, 4, 3, 0, 1};
        poly_operand a(with_decimals(shape, true)), b(with_decimals(shape, true)), n, exact, general, lead;
        lead.p = poly_of_text("{4{#1}}");
        if (i % 2) best_poly_add(b.p, lead.p, &b.p), lead.p = nullptr;
        poly_mult(a.p, b.p, &n.p, names.first());
        const std::string text = poly_text(n.p);
        int fail = 1;
        gen_poly_divide(n.p, b.p, &general.p, names.first(), &fail);
        if (i % 2) {  // a large lead keeps errors small
            EXPECT_EQ(fail, 0) << text << " by " << poly_text(b.p);
            expect_near(a.p, general.p, 1e-10);
            ++decisive;
        }
        if (fail) continue;
        EXPECT_EQ(trial_poly_divide(n.p, b.p, &exact.p, names.first(), 0, 0, 0), 1);
        EXPECT_EQ(poly_text(exact.p), poly_text(general.p));
        EXPECT_EQ(trial_poly_divide_noq(n.p, b.p, names.first(), 0, 0, 0), 1);
        EXPECT_EQ(poly_text(n.p), text);
        expect_normal(general.p, 5, "quotient");
        fast_poly_divide(&n.p, b.p, names.first(), 17);
        EXPECT_EQ(poly_text(n.p), poly_text(general.p));
    }
    EXPECT_EQ(decisive, 300);
    audit.expect_unchanged("noisy division");
}

TEST_F(FloatDivision, TestsAtPointsSayNoToNoProductOfDecimals)
{
    for (int i = 0; i < 600; ++i) {
        const poly_shape shape = {2 + i % 4, 4, 3, 0, 1};
        poly_operand a(with_decimals(shape, true)), b(with_decimals(shape, true)),
            lead(poly_of_text("{4{#1}}")), n;
        best_poly_add(b.p, lead.p, &b.p);
        lead.p = nullptr;
        poly_mult(a.p, b.p, &n.p, names.first());
        EXPECT_EQ(trial_poly_divide_noq(n.p, b.p, names.first(), 1, 1, 0), 1)
            << poly_text(n.p) << " by " << poly_text(b.p);
    }
}

// The lead, -0.04 z^3 - 0.43 z^2 + 0.47 z, is a rounding error where z is 1.
TEST_F(FloatDivision, LeadThatCancelsAtAPointSaysNothing)
{
    poly_operand a(poly_of_text("{0{3{#-0.04}, 2{#-0.43}, 1{#0.47}}}")),
        b(poly_of_text("{4{#1}, 0{2{#-0.71}, #-0.87}}")), n;
    poly_mult(a.p, b.p, &n.p, names.first());
    for (int i = 0; i < 2000; ++i) {
        ASSERT_EQ(trial_poly_divide_noq(n.p, b.p, names.first(), 1, 1, 0), 1) << "trial " << i;
    }
}

TEST_F(FloatDivision, AProductAndABitMoreThanNoiseIsRefused)
{
    poly_audit audit;
    for (int i = 0; i < 300; ++i) {
        const poly_shape shape = {1 + i % 5, 4, 3, 0, 1};
        poly_operand a(with_decimals(shape, true)), b(with_decimals(shape, true)),
            lead(poly_of_text("{4{#1}}")), n, bit(poly_of_text("{#1e-6}")), q;
        best_poly_add(b.p, lead.p, &b.p);
        lead.p = nullptr;
        poly_mult(a.p, b.p, &n.p, names.first());
        best_poly_add(n.p, bit.p, &n.p);
        bit.p = nullptr;
        int fail = 0;
        gen_poly_divide(n.p, b.p, &q.p, names.first(), &fail);
        EXPECT_EQ(fail, 1) << poly_text(n.p) << " by " << poly_text(b.p);
    }
    audit.expect_unchanged("refused");
}

TEST_F(FloatDivision, WholeNumbersBelowTwoTo53AreExact)
{
    EXPECT_EQ(exact_text("{7{#1125899906842624}, 6{#1}, 2{#-1125899906842624}, 1{#-1}}", "{5{#1}, #-1}"),
              "{2{#1125899906842624}, 1{#1}}");
}

}  // namespace
