// Gcds over doubles: exact ones, noise on both sides of the threshold, values that are no numbers.
#include "gcd/float_gcd.h"
#include <cmath>
#include <vector>
#include "poly/div_exact.h"
#include "tests/support/divisions.h"
#include "tests/support/fields.h"
#include "tests/support/reports.h"

using namespace kelmar;
using namespace kelmar_test;

namespace {

// The polynomial whose coefficients, from the constant one up, are given.
polynode *poly_of(const std::vector<double> &c)
{
    polynode *p = nullptr;
    for (std::size_t e = 0; e < c.size(); ++e) {
        if (c[e] == 0) continue;
        polynode *term = nullptr;
        poly_set(1, &term);
        term->num->real = c[e];
        make_monomial(&term, static_cast<std::int32_t>(e), term);
        term->next = p;
        p = term;
    }
    if (!p) poly_set(0, &p);
    return p;
}

double coef(const polynode *p, std::int32_t e)
{
    for (; p; p = p->next) {
        if (p->exp == e) return p->isnum ? p->num->real : p->coef->num->real;
    }
    return 0;
}

std::vector<double> product(const std::vector<double> &x, const std::vector<double> &y)
{
    std::vector<double> z(x.size() + y.size() - 1);
    for (std::size_t i = 0; i < x.size(); ++i) {
        for (std::size_t k = 0; k < y.size(); ++k) z[i + k] += x[i] * y[k];
    }
    return z;
}

struct FloatGcd : testing::Test {
    in_view live{view_float};
    poly_operand g;
    const polynode *gcd(const std::vector<double> &a, const std::vector<double> &b)
    {
        const poly_operand p(poly_of(a)), q(poly_of(b)), p_copy(copy_poly(p.p)), q_copy(copy_poly(q.p));
        free_poly(&g.p);
        const poly_audit audit;
        fl_basic_poly_gcd(p.p, q.p, &g.p, 1, nilpol);
        EXPECT_EQ(poly_text(p.p) + poly_text(q.p), poly_text(p_copy.p) + poly_text(q_copy.p));
        EXPECT_TRUE(poly_is_normal(g.p, 1));
        poly_operand same(nullptr);
        fl_basic_poly_gcd(q.p, p.p, &same.p, 1, nilpol);
        EXPECT_EQ(same.p->exp, g.p->exp) << "exchanged";
        free_poly(&same.p);
        return g.p;
    }
    bool is_one()
    {
        return is_constant(g.p) && g.p->num->real == 1;
    }
};

TEST_F(FloatGcd, WholeNumbersAreExact)
{
    test_random r;
    for (int i = 0; i < 200; ++i) {
        auto draw = [&r](std::size_t degree) {
            std::vector<double> c(degree + 1);
            for (double &v : c) v = static_cast<double>(r.below(19)) - 9;
            c.back() = 1;
            return c;
        };
        const std::vector<double> f = draw(1 + r.below(2));
        const polynode *d = gcd(product(f, {3, 1}), product(f, {-2, 0, 1}));
        ASSERT_EQ(d->exp, static_cast<std::int32_t>(f.size()) - 1);
        for (std::size_t e = 0; e < f.size(); ++e) {
            EXPECT_NEAR(coef(d, static_cast<std::int32_t>(e)), f[e], 1e-9);
        }
        EXPECT_EQ(coef(d, d->exp), 1.0);
    }
}

// The remainder is 1e-10 x - 1e-10, seven times the threshold: no noise. The next one is.
TEST_F(FloatGcd, ACloseRootIsNoNoise)
{
    const polynode *d = gcd({1, -2, 1}, {1.0000000001, -2.0000000001, 1});
    EXPECT_EQ(d->exp, 1);
    EXPECT_EQ(coef(d, 1), 1.0);
    EXPECT_NEAR(coef(d, 0), -1, 1e-5);
}

// A root closer than the threshold: the remainder is all noise, and the gcd has degree 2.
TEST_F(FloatGcd, ARootWithinTheNoiseCounts)
{
    const polynode *d = gcd({1, -2, 1}, {1.000000000001, -2.000000000001, 1});
    EXPECT_EQ(d->exp, 2);
    EXPECT_EQ(coef(d, 2), 1.0);
}

TEST_F(FloatGcd, RoundedProductsHaveTheirGcd)
{
    EXPECT_EQ(gcd({-0.01, 0, 1}, {-0.1, 1})->exp, 1);
    EXPECT_EQ(coef(g.p, 0), -0.1);
    EXPECT_EQ(gcd(product({0.7, 1}, {-0.3, 0.9, 1}), product({0.7, 1}, {1.7, 1}))->exp, 1);
    EXPECT_NEAR(coef(g.p, 0), 0.7, 1e-9);
}

TEST_F(FloatGcd, CoprimePairs)
{
    gcd({-2, 0, 1}, {1, 1});
    EXPECT_TRUE(is_one());
    gcd({0.3, 0.1, 0.7, 1}, {0.2, 0.9, 1});
    EXPECT_TRUE(is_one());
}

// A lead next to nothing makes the monic divisor so large that a remainder passes for noise. What that would
// give divides neither operand.
TEST_F(FloatGcd, WhatDoesNotDivideIsNoGcd)
{
    gcd({-1, -4, 4, -1, 1}, {-2, 1, 0x1p-15});
    EXPECT_TRUE(is_one());
    gcd({-4, 2, 0, 0, 2}, {-3, 0x1p-30, -4, 4, -4});
    EXPECT_TRUE(is_one());
}

TEST_F(FloatGcd, EasyOperands)
{
    EXPECT_EQ(gcd({0}, {2, 4})->exp, 1);
    EXPECT_EQ(coef(g.p, 0), 0.5);
    EXPECT_EQ(gcd({0, 0, 3}, {0, 5, 0, 1})->exp, 1);
    EXPECT_EQ(coef(g.p, 1), 1.0);
    gcd({0, 0, 3}, {5, 1});
    EXPECT_TRUE(is_one());
    EXPECT_TRUE(poly_iszero(gcd({0}, {0})));
}

TEST_F(FloatGcd, WhatIsNoNumberHasGcdOne)
{
    const double nan = std::nan(""), inf = HUGE_VAL;
    for (const double bad : {nan, inf, -inf}) {
        gcd({bad, 1}, {bad, 1});
        EXPECT_TRUE(is_one());
        gcd({1, 2, bad}, {1, 1});
        EXPECT_TRUE(is_one());
    }
    gcd({1e300, 1e-300}, {1, 1e300, 1e-20});  // quotients overflow
    EXPECT_TRUE(is_one());
}

TEST_F(FloatGcd, ANumberIsAFault)
{
    const std::string fault = "*** Kelmar error.  number in float basic_poly_gcd \n";
    poly_operand a(poly_of({2})), b(poly_of({1, 1}));
    EXPECT_EQ(report_of([&] { fl_basic_poly_gcd(a.p, b.p, &g.p, 1, nilpol); }).substr(0, fault.size()),
              fault);
}

TEST_F(FloatGcd, PurgeAtTheThreshold)
{
    const double limit = 0x1p-36;
    poly_operand p(poly_of({limit, 1, -limit, 2 * limit}));
    EXPECT_EQ(purge_fl(&p.p, 0), 0);
    EXPECT_EQ(coef(p.p, 0), 0);
    EXPECT_EQ(coef(p.p, 1), 1);
    EXPECT_EQ(coef(p.p, 2), 0);
    EXPECT_EQ(coef(p.p, 3), 2 * limit);
    EXPECT_EQ(purge_fl(&p.p, 8), 0);
    EXPECT_TRUE(poly_is_normal(p.p, 1));
    EXPECT_EQ(p.p->exp, 1);
    EXPECT_EQ(purge_fl(&p.p, 0x1p36), 1);
    EXPECT_TRUE(poly_iszero(p.p));
}

TEST_F(FloatGcd, PurgeReachesInnerLevels)
{
    poly_operand p(poly_of_text("{2{1{#1}, #1}, 1{#1}, {1{#1}, #5}}"));
    p.p->coef->coef->num->real = 1e-20;
    p.p->next->coef->num->real = 1e-20;
    p.p->next->next->coef->coef->num->real = 1e-20;
    EXPECT_EQ(purge_fl(&p.p, 1), 0);
    EXPECT_EQ(poly_text(p.p), "{2{#1}, #5}");
    EXPECT_EQ(largest_magnitude(p.p), 5.0);
}

}  // namespace
