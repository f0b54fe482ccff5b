// Powers of polynomials: by squares, by products, over a prime by the power map.
#include "poly/power.h"
#include <gtest/gtest.h>
#include "session/errnums.h"
#include "tests/support/mul_operands.h"
#include "tests/support/views.h"

using namespace kelmar;
using namespace kelmar_test;

namespace {

std::string power_text(const char *p, std::int32_t e)
{
    poly_operand power(poly_of_text(p));
    compute_power(&power.p, e, nilpol);
    EXPECT_TRUE(poly_is_normal(power.p, 6));
    return poly_text(power.p);
}

TEST(ComputePower, ZerothPowersAreOne)
{
    for (num_view v : {view_float, view_modular, view_word, view_digits}) {
        in_view live(v);
        EXPECT_EQ(power_text("{#0}", 0), "{#1}");
        EXPECT_EQ(power_text("{3{#2}, #1}", 0), "{#1}");
        EXPECT_EQ(power_text("{3{#2}, #1}", 1), "{3{#2}, #1}");
    }
}

TEST(ComputePower, NumbersOverAPrimeReduceTheExponent)
{
    in_view live(view_modular, 101);
    mod_is_prime = 1;
    EXPECT_EQ(power_text("{#2}", 100), "{#1}");
    EXPECT_EQ(power_text("{#2}", 107), "{#27}");
    EXPECT_EQ(power_text("{#0}", 100), "{#0}");
    EXPECT_EQ(power_text("{#0}", 107), "{#0}");
}

TEST(ComputePower, NumbersOverACompositeDoNot)
{
    in_view live(view_modular, 36);
    EXPECT_EQ(power_text("{#2}", 35), "{#32}");
    EXPECT_EQ(power_text("{#6}", 2), "{#0}");
}

TEST(ComputePower, BySquares)
{
    in_view live(view_digits);
    EXPECT_EQ(power_text("{1{#1}, #1}", 7), "{7{#1}, 6{#7}, 5{#21}, 4{#35}, 3{#35}, 2{#21}, 1{#7}, #1}");
    EXPECT_EQ(power_text("{1{#1}, #-1}", 4), "{4{#1}, 3{#-4}, 2{#6}, 1{#-4}, #1}");
    EXPECT_EQ(power_text("{0{2{#-3}}}", 3), "{0{6{#-27}}}");
}

TEST(PowerByProducts, LooksForATermWithMoreThanANumber)
{
    in_view live(view_float);
    const auto by_products = [](const char *text) {
        poly_operand p(poly_of_text(text));
        return power_by_products(p.p);
    };
    EXPECT_FALSE(by_products("{3{#1}, 2{#1}, #4}"));
    EXPECT_FALSE(by_products("{0{3{#1}, #1}}"));
    EXPECT_FALSE(by_products("{3{1{#1}}}"));
    EXPECT_TRUE(by_products("{3{#1}, 0{1{#1}}}"));
    EXPECT_TRUE(by_products("{0{3{#1}, 0{1{#1}}}}"));
}

TEST(ComputePower, BothWaysAgreeInEveryView)
{
    test_random r;
    make_small_field();
    for (num_view v : {view_field, view_modular, view_word, view_small, view_digits}) {
        in_view live(v, 65521);
        poly_audit audit;
        for (int k = 0; k < 40; ++k) {
            poly_shape shape;
            shape.vars = 1 + static_cast<std::int32_t>(r.below(3));
            shape.terms = 5;
            shape.degree = 3;
            poly_operand p(random_poly(&r, shape)), by_products, expected;
            poly_assign(p.p, &by_products.p);
            poly_set(1, &expected.p);
            const std::int32_t e = static_cast<std::int32_t>(r.below(7));
            for (std::int32_t i = 0; i < e; ++i) poly_mult(expected.p, p.p, &expected.p, nilpol);
            compute_power(&p.p, e, nilpol);
            EXPECT_EQ(poly_text(p.p), poly_text(expected.p)) << "seed " << r.seed;
            const kept_word variables(&number_polys, 3);
            compute_power(&by_products.p, e, nilpol);
            EXPECT_EQ(poly_text(by_products.p), poly_text(expected.p)) << "seed " << r.seed;
        }
        audit.expect_unchanged("powers");
    }
}

TEST(PolyModPrime, AgreesWithSquares)
{
    test_random r;
    in_view live(view_modular, 5);
    for (std::int32_t e : {5, 6, 7, 24, 25, 26, 124}) {
        poly_operand p(dense_poly(&r, 0, 3)), q;
        poly_assign(p.p, &q.p);
        mod_is_prime = 0;
        compute_power(&p.p, e, nilpol);
        mod_is_prime = 1;
        compute_power(&q.p, e, nilpol);
        EXPECT_EQ(poly_text(p.p), poly_text(q.p)) << e;
    }
}

TEST(PolyToPrime, MultipliesTheExponentsOfAllLevels)
{
    in_view live(view_modular, 7);
    poly_operand p(poly_of_text("{3{2{#5}, 1{#1}}, 0{4{#3}}}"));
    EXPECT_EQ(poly_to_prime(p.p, 7), 1);
    EXPECT_EQ(poly_text(p.p), "{21{14{#5}, 7{#1}}, 0{28{#3}}}");
}

TEST(ComputePower, AnExponentAboveTheRangeIsAnError)
{
    in_view live(view_float);
    poly_operand p(poly_of_text("{1000000000{#1}, #1}"));
    EXPECT_EQ(error_in_view([&] { compute_power(&p.p, 3, nilpol); }), err_bad_exponent);
    EXPECT_EQ(poly_text(p.p), "{1000000000{#1}, #1}");
    in_view prime(view_modular, 101);
    mod_is_prime = 1;
    poly_operand q(poly_of_text("{1{100000000{#1}}, #1}"));
    EXPECT_EQ(error_in_view([&] { poly_to_prime(q.p, 101); }), err_bad_exponent);
    EXPECT_EQ(poly_text(q.p), "{1{100000000{#1}}, #1}");
}

}  // namespace
