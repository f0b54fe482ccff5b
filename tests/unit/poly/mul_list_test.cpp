// Karatsuba's product on lists: cuts, the number at exp 0 in either half, exponents moved up and down.
#include "poly/mul_list.h"
#include <gtest/gtest.h>
#include "poly/measure.h"
#include "poly/mul_school.h"
#include "tests/support/by_build.h"
#include "tests/support/mul_operands.h"
#include "tests/support/views.h"

using namespace kelmar;
using namespace kelmar_test;

namespace {

constexpr int rounds = by_build(60, 300);

// By the step on lists; every smaller product by the cut-offs in force.
void by_halves(polynode *a, polynode *b, polynode **c)
{
    std::int32_t low_a = 0, low_b = 0;
    int dense = 0;
    const std::int32_t len_a = exp_poly_length(a, &low_a, &dense), len_b = exp_poly_length(b, &low_b, &dense);
    karatsuba_poly_mult(a, b, std::abs(len_a), std::abs(len_b), low_a, low_b, c, nilpol);
}

// By halves a times b is what the schoolbook says, and both are left whole.
void expect_agreement(polynode *a, polynode *b, std::int32_t vars)
{
    const std::string text_a = poly_text(a), text_b = poly_text(b);
    poly_operand halves, school;
    by_halves(a, b, &halves.p);
    EXPECT_TRUE(poly_is_normal(halves.p, vars)) << poly_text(halves.p);
    EXPECT_EQ(poly_text(a), text_a);
    EXPECT_EQ(poly_text(b), text_b);
    school_poly_mult(a, b, poly_length(a), poly_length(b), &school.p, nilpol);
    EXPECT_EQ(poly_text(halves.p), poly_text(school.p)) << text_a << " times " << text_b;
}

TEST(Karatsuba, TwoTermsTimesTwoTerms)
{
    in_view live(view_digits);
    poly_operand a(poly_of_text("{1{#2}, #3}")), b(poly_of_text("{1{#5}, #7}")), c;
    by_halves(a.p, b.p, &c.p);
    EXPECT_EQ(poly_text(c.p), "{2{#10}, 1{#29}, #21}");
    EXPECT_EQ(poly_text(a.p), "{1{#2}, #3}");
}

TEST(Karatsuba, TheMiddlePartMayVanish)
{
    in_view live(view_digits);
    poly_operand a(poly_of_text("{1{#1}, #1}")), b(poly_of_text("{1{#1}, #-1}")), c;
    by_halves(a.p, b.p, &c.p);
    EXPECT_EQ(poly_text(c.p), "{2{#1}, #-1}");
}

TEST(Karatsuba, ANumberInTheHighPartStandsOnATermMeanwhile)
{
    const kept_word on(&laurent, 1);
    in_view live(view_float);
    poly_operand a(poly_of_text("{1{#1}, #2, -1{#3}, -2{#4}}")),
        b(poly_of_text("{#5, -1{#6}, -2{#7}, -3{#8}}"));
    expect_agreement(a.p, b.p, 1);
    expect_agreement(b.p, b.p, 1);
    EXPECT_EQ(poly_text(a.p), "{1{#1}, #2, -1{#3}, -2{#4}}");
    poly_operand c(poly_of_text("{0{1{#1}, #2}, -1{#3}}"));
    expect_agreement(c.p, a.p, 2);
}

TEST(Karatsuba, ATermThatComesToExponentZeroIsTheNumberItself)
{
    in_view live(view_float);
    poly_operand a(poly_of_text("{3{#1}, 2{#2}, 1{#3}, #4}")),
        b(poly_of_text("{2{#7}, 1{#5}, 0{1{#1}, #6}}"));
    expect_agreement(a.p, b.p, 2);
    expect_agreement(a.p, a.p, 2);
    expect_agreement(b.p, a.p, 2);
}

TEST(Karatsuba, HighAndLowPartMayCancel)
{
    in_view live(view_digits);
    poly_operand a(poly_of_text("{3{#1}, 2{#2}, 1{#-1}, #-2}")), b(poly_of_text("{3{#4}, 2{#1}, 1{#1}, #9}"));
    expect_agreement(a.p, b.p, 1);
}

TEST(Karatsuba, ListsWithGapsAndUnequalLengths)
{
    in_view live(view_digits);
    poly_operand a(poly_of_text("{1000000{#1}, 999{#2}, 7{#3}}")),
        b(poly_of_text("{5{#1}, 4{#1}, 3{#1}, 2{#1}, #1}"));
    expect_agreement(a.p, b.p, 1);
    expect_agreement(b.p, a.p, 1);
}

TEST(ShiftExponents, UpAndDown)
{
    in_view live(view_float);
    const kept_word on(&laurent, 1);
    poly_operand p(poly_of_text("{1{#1}, #2, -1{#3}}"));
    shift_exponents(&p.p, 1);
    EXPECT_EQ(poly_text(p.p), "{2{#1}, 1{#2}, #3}");
    shift_exponents(&p.p, -2);
    EXPECT_EQ(poly_text(p.p), "{#1, -1{#2}, -2{#3}}");
    poly_operand w(poly_of_text("{0{1{#1}}}"));
    shift_exponents(&w.p, 4);
    EXPECT_EQ(poly_text(w.p), "{4{1{#1}}}");
}

TEST(Karatsuba, AgreesWithTheSchoolbookInEveryView)
{
    test_random r;
    make_small_field();
    const kept_word nested(&flat_mult_cut, never);
    for (num_view v : all_views) {
        for (std::int32_t in_laurent : {0, 1}) {
            const kept_word form(&laurent, in_laurent), cut(&poly_cutoff, 2), short_cut(&fast_mult_cut, 2);
            in_view live(v, 36);
            poly_audit audit;
            for (int k = 0; k < rounds / 6; ++k) {
                poly_shape shape;
                shape.vars = 1 + static_cast<std::int32_t>(r.below(4));
                shape.terms = 30;
                shape.degree = shape.vars == 1 ? 40 : 6;
                shape.low = in_laurent ? -3 : 0;
                shape.digits = 5;
                poly_operand a(random_poly(&r, shape)), b(random_poly(&r, shape));
                if (poly_length(a.p) < 2 || poly_length(b.p) < 2) continue;
                expect_agreement(a.p, b.p, shape.vars);
                expect_agreement(a.p, a.p, shape.vars);
                if (HasFailure()) FAIL() << "seed " << r.seed;
            }
            audit.expect_unchanged("halves");
        }
    }
}

TEST(Karatsuba, OneLevelOfWordsAboveTheArrays)
{
    test_random r;
    make_small_field();
    for (num_view v : {view_field, view_modular}) {
        for (std::int32_t m : {65521, 2147483629}) {
            in_view live(v, m);
            poly_operand a(dense_poly(&r, 0, 200)), b(dense_poly(&r, 3, 150)), c;
            poly_operand expected(reference_product(a.p, b.p, 1));
            simplest_karatsuba(a.p, b.p, 201, 148, 0, 3, &c.p);
            EXPECT_EQ(poly_text(c.p), poly_text(expected.p));
        }
    }
}

}  // namespace
