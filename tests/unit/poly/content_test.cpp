// The gcd of all numbers of a polynomial, and polynomials made monic.
#include "poly/content.h"
#include <gtest/gtest.h>
#include <limits>
#include "numbers/long_gcd.h"
#include "poly/div_exact.h"
#include "poly/monic.h"
#include "poly/scale.h"
#include "session/errnums.h"
#include "tests/support/divisions.h"

using namespace kelmar;
using namespace kelmar_test;

namespace {

std::string content_text(const char *text)
{
    poly_operand p(poly_of_text(text)), c;
    gcd_coefs(p.p, &c.p);
    EXPECT_EQ(poly_text(p.p), text);
    return poly_text(c.p);
}

// Content ------------------------------------------------------------------------------------------------

TEST(NumberContent, NamedCases)
{
    in_view live(view_digits);
    EXPECT_EQ(content_text("{2{#6}, 1{1{#-9}, #15}, #12}"), "{#3}");
    EXPECT_EQ(content_text("{2{#6}, 1{1{#-9}, #15}, #11}"), "{#1}");
    EXPECT_EQ(content_text("{#-12}"), "{#12}");
    EXPECT_EQ(content_text("{0{0{4{#-10}, #-4}}}"), "{#2}");
    EXPECT_EQ(content_text("{1{#-1}}"), "{#1}");
    in_view small(view_small);
    EXPECT_EQ(content_text("{2{#6}, 1{1{#-9}, #15}, #12}"), "{#3}");
}

TEST(NumberContent, IsOneInTheWordViews)
{
    for (const num_view view : {view_float, view_modular, view_word}) {
        in_view live(view);
        EXPECT_EQ(content_text("{2{#6}, #12}"), "{#1}");
    }
}

TEST(NumberContent, IsTakenOutAndDividesEveryNumber)
{
    in_view live(view_digits);
    test_random r;
    poly_audit audit;
    for (int i = 0; i < 500; ++i) {
        const poly_shape shape = {1 + i % 4, 6, 4, 0, 1 + i % 5};
        poly_operand p(random_divisor(&r, shape)), factor(new_constant(random_coefficient(&r, 1 + i % 4))), n;
        number g, again;
        g.size = again.size = 0;
        scalar_by_poly(factor.p->num, p.p, &n.p);
        find_gcdcoefs(p.p, &again);
        const std::string text = poly_text(n.p);
        find_gcdcoefs(n.p, &g);
        num_poly_quot(&n.p, &g);
        poly_operand reduced(copy_poly(n.p)), back;
        scalar_by_poly(&g, n.p, &back.p);
        EXPECT_EQ(poly_text(back.p), text);
        find_gcdcoefs(n.p, &again);
        EXPECT_EQ(number_text(&again), "1");
        EXPECT_FALSE(g.head->digit < 0);
        special_free(&g);
        special_free(&again);
    }
    audit.expect_unchanged("content");
}

// Monic --------------------------------------------------------------------------------------------------

TEST(MonicPoly, DividesAndHandsBackTheLead)
{
    in_view live(view_float);
    poly_operand p(poly_of_text("{2{1{#49}, #7}, #98}"));
    number c;
    c.size = 0;
    EXPECT_EQ(monic_poly(&p.p, &c), 1);
    EXPECT_EQ(c.real, 49.0);
    EXPECT_EQ(leading_coef(p.p)->real, 1.0);  // 49 (1 / 49) is below 1
    EXPECT_EQ(poly_text(p.p), "{2{1{#1}, #0.14285714285714285}, #2}");
}

TEST(MonicPoly, LeavesWhatHasNoFiniteLead)
{
    in_view live(view_float);
    for (const double lead : {std::numeric_limits<double>::infinity(), std::nan("")}) {
        poly_operand p(poly_of_text("{2{#49}, #98}"));
        leading_coef(p.p)->real = lead;
        number c;
        c.size = 0;
        EXPECT_EQ(monic_poly(&p.p, &c), 0);
        EXPECT_EQ(c.real, 1.0);
        EXPECT_EQ(p.p->next->num->real, 98.0);
    }
    poly_operand zero(poly_of_text("{#0}"));
    number c;
    c.size = 0;
    EXPECT_EQ(monic_poly(&zero.p, &c), 0);
    EXPECT_EQ(c.real, 1.0);
}

TEST(MonicPoly, InEveryField)
{
    test_random r;
    for (const ring &each : field_rings) {
        in_ring live(each);
        poly_audit audit;
        for (int i = 0; i < 100; ++i) {
            poly_operand p(random_divisor(&r, poly_shape())), n(copy_poly(p.p)), back;
            number c;
            c.size = 0;
            EXPECT_EQ(monic_poly(&n.p, &c), 1);
            EXPECT_EQ(number_text(leading_coef(n.p)), "1");
            expect_normal(n.p, 1, "monic");
            scalar_by_poly(&c, n.p, &back.p);
            if (each.view != view_float) {
                EXPECT_EQ(poly_text(back.p), poly_text(p.p));
            }
        }
        audit.expect_unchanged("monic");
    }
}

TEST(MonicPoly, ALeadWithoutInverseIsAnErrorAndNothingChanges)
{
    in_ring live(other_rings[0]);
    poly_operand p(poly_of_text("{2{#10}, #7}"));
    EXPECT_EQ(error_in_view([&] {
                  number c;
                  c.size = 0;
                  monic_poly(&p.p, &c);
              }),
              err_no_inverse);
    EXPECT_EQ(poly_text(p.p), "{2{#10}, #7}");
    poly_operand unit(poly_of_text("{2{#3}, #9}"));
    number c;
    c.size = 0;
    EXPECT_EQ(monic_poly(&unit.p, &c), 1);
    EXPECT_EQ(poly_text(unit.p), "{2{#1}, #3}");
}

}  // namespace
