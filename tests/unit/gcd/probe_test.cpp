// Images: degrees of gcds modulo a prime and at points; what an interrupt inside leaves.
#include "gcd/probe.h"
#include <gtest/gtest.h>
#include "gcd/polygcd.h"
#include "poly/mul.h"
#include "poly/mul_work.h"
#include "poly/ring_change.h"
#include "session/levels.h"
#include "session/output.h"
#include "session/report.h"
#include "tests/support/catch_error.h"
#include "tests/support/divisions.h"
#include "tests/support/gcds.h"

using namespace kelmar;
using namespace kelmar_test;

namespace {

struct GcdProbe : testing::Test {
    six_variables names;
    kept_word variables{&number_polys, 3};
    in_view live{view_digits};
    // g = x + y + z + 3, a = g (x^2 + y), b = g (x z + 7); c is coprime to both
    poly_operand g{poly_of_text("{1{#1}, 0{1{#1}, 0{1{#1}, #3}}}")}, u{poly_of_text("{2{#1}, 0{1{#1}}}")},
        v{poly_of_text("{1{0{1{#1}}}, #7}")}, c{poly_of_text("{3{1{#1}}, 1{0{1{#1}}}, #1}")}, a, b;
    image_degree image = {-1, -1};
    GcdProbe()
    {
        load_primes();
        poly_mult(g.p, u.p, &a.p, names.first());
        poly_mult(g.p, v.p, &b.p, names.first());
    }
};

TEST_F(GcdProbe, DegreeModuloAPrime)
{
    ASSERT_EQ(use_modular(a.p, b.p, names.record, prime, 10, &image), 1);
    EXPECT_EQ(image.degree, 1);
    EXPECT_EQ(image.number, 0);
    ASSERT_EQ(use_modular(a.p, c.p, names.record, prime, 10, &image), 1);
    EXPECT_EQ(image.degree, 0);
    EXPECT_EQ(image.number, 1);
}

TEST_F(GcdProbe, GcdBelowTheOuterVariable)
{
    poly_operand y(poly_of_text("{0{1{#1}, #5}}")), ya, yc;
    poly_mult(y.p, a.p, &ya.p, names.first());
    poly_mult(y.p, c.p, &yc.p, names.first());
    ASSERT_EQ(use_modular(ya.p, yc.p, names.record, prime, 10, &image), 1);
    EXPECT_EQ(image.degree, 0);
    EXPECT_EQ(image.number, 0);
}

// Primes that divide a leading number are passed over; without any the question stays open.
TEST_F(GcdProbe, BadPrimes)
{
    poly_operand three(poly_of_text("{1{#3}, #1}"));
    three.p->coef->num->head->digit = prime[0].word;
    ASSERT_EQ(use_modular(three.p, three.p->next ? a.p : b.p, names.record, prime, 2, &image), 1);
    image = {17, 17};
    EXPECT_EQ(use_modular(three.p, a.p, names.record, prime, 1, &image), 0);
    EXPECT_EQ(image.degree, 17);
    EXPECT_EQ(use_modular(a.p, b.p, names.record, prime, 0, &image), 0);
}

// Products of residues of a prime above 65535 need more than a word.
TEST_F(GcdProbe, LargePrimes)
{
    for (const std::int32_t p : {65521, 65537, 65539, 65563, 2147483629}) {
        number own = prime[0];
        own.word = p;
        image = {-1, -1};
        ASSERT_EQ(use_modular(a.p, b.p, names.record, &own, 1, &image), 1);
        EXPECT_EQ(image.degree, 1) << p;
        ASSERT_EQ(use_modular(a.p, c.p, names.record, &own, 1, &image), 1);
        EXPECT_EQ(image.degree, 0) << p;
        poly_operand k(poly_of_text("{1{#77777}, 0{1{#-88888}, 0{1{#99999}, #-1}}}")),
            l(poly_of_text("{2{#65536}, 1{1{#-65000}}, #-1}")), m(poly_of_text("{1{0{1{#64000}}}, #-60001}")),
            s, t;
        poly_mult(k.p, l.p, &s.p, names.first());
        poly_mult(k.p, m.p, &t.p, names.first());
        ASSERT_EQ(use_modular(s.p, t.p, names.record, &own, 1, &image), 1);
        EXPECT_EQ(image.degree, 1) << p;
    }
}

// Over two elements a square is the element itself, at every point that is one of them: x^2 + y^2 and x^2 + y
// have the same images.
TEST_F(GcdProbe, PointsAreResiduesOfASmallModulus)
{
    in_view words(view_modular, 2);
    mod_is_prime = 1;
    poly_operand squares(poly_of_text("{2{#1}, 0{2{#1}}}")), linear(poly_of_text("{2{#1}, 0{1{#1}}}"));
    for (std::int32_t round = 0; round < 12; ++round) {
        const test_points points = {2, round};
        std::int32_t degree = 0, performed = 0;
        EXPECT_EQ(fast_test_2(squares.p, linear.p, names.record, &points, &degree, &performed), 0);
        EXPECT_EQ(performed, 1);
        EXPECT_EQ(degree, 2);
    }
}

TEST_F(GcdProbe, LeavesTheRingAndTheOperandsAlone)
{
    const std::string a_text = poly_text(a.p), b_text = poly_text(b.p);
    lookupgcd = 3;
    const poly_audit audit;
    use_modular(a.p, b.p, names.record, prime, 10, &image);
    EXPECT_TRUE(exact_integers());
    EXPECT_EQ(modulus, -1);
    EXPECT_EQ(innermost_ring, nullptr);
    EXPECT_EQ(lookupgcd, 3);
    EXPECT_EQ(poly_text(a.p), a_text);
    EXPECT_EQ(poly_text(b.p), b_text);
    audit.expect_unchanged("use_modular");
    lookupgcd = 0;
}

// An interrupt waits until the stretch is over; with &Z on it is answered inside, and all is as it was.
TEST_F(GcdProbe, Interrupts)
{
    const std::string a_text = poly_text(a.p), b_text = poly_text(b.p);
    lookupgcd = -2;
    interrupt_flag = 1;
    EXPECT_EQ(use_modular(a.p, b.p, names.record, prime, 10, &image), 1);
    EXPECT_EQ(interrupt_flag, 1);
    kept_word danger(&danger_ok, 1);
    const auto saved = levelcount;
    bool came_back = false;
    levelcount = highest_level;
    testing::internal::CaptureStdout();
    {
        const kept_view kept;
        caught_error([&] {
            Output = stdout;
            use_modular(a.p, b.p, names.record, prime, 10, &image);
            came_back = true;
        });
        EXPECT_EQ(modularmode, 0);
        EXPECT_EQ(modulus, -1);
    }
    testing::internal::GetCapturedStdout();
    levelcount = saved;
    interrupt_flag = 0;
    EXPECT_FALSE(came_back);
    EXPECT_EQ(innermost_ring, nullptr);
    EXPECT_EQ(lookupgcd, -2);
    EXPECT_EQ(poly_text(a.p), a_text);
    EXPECT_EQ(poly_text(b.p), b_text);
    lookupgcd = 0;
    release_work();
}

TEST_F(GcdProbe, PointsTellCoprimePairs)
{
    std::int32_t degree = -1, performed = -1, constants = 0;
    for (std::int32_t round = 0; round < 4; ++round) {
        const test_points points = {3, round};
        EXPECT_EQ(fast_test_2(a.p, b.p, names.record, &points, &degree, &performed), 0);
        if (performed) {
            EXPECT_GE(degree, 1);
        }
        constants += fast_test_2(a.p, c.p, names.record, &points, &degree, &performed);
    }
    EXPECT_GE(constants, 3);
    EXPECT_EQ(tripval, default_tripval);
}

// (y - 4) x^2 + 1 loses its lead at the first of the fixed points.
TEST_F(GcdProbe, LostLeadIsNoTest)
{
    poly_operand d(poly_of_text("{2{1{#1}, #-4}, #1}")), e(poly_of_text("{2{#1}, 0{1{#1}}}"));
    std::int32_t degree = -1, performed = -1;
    const test_points points = {2, 0};
    EXPECT_EQ(fast_test_2(d.p, e.p, names.record, &points, &degree, &performed), 0);
    EXPECT_EQ(performed, 0);
}

}  // namespace
