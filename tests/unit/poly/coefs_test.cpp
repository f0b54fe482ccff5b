// Degrees, terms and coefficients of polynomials in one of their variables.
#include "poly/coefs.h"
#include <gtest/gtest.h>
#include "poly/add.h"
#include "poly/mul.h"
#include "tests/support/mul_operands.h"
#include "tests/support/polys.h"
#include "tests/support/views.h"

using namespace kelmar;
using namespace kelmar_test;

namespace {

constexpr num_view every_view[] = {view_float, view_modular, view_word, view_digits};

const char *const sample = "{3{2{#1}, #3}, 1{#5}, 0{4{#1}, #2}}";  // (y^2 + 3) x^3 + 5 x + y^4 + 2

TEST(Degrees, OfEachVariableAndInAll)
{
    for (num_view v : every_view) {
        in_view live(v);
        poly_operand p(poly_of_text(sample)), zero(poly_of_text("{#0}")),
            low(poly_of_text("{3{2{#1}}, 2{1{#4}}}"));
        EXPECT_EQ(top_degree(p.p, 1), 3);
        EXPECT_EQ(top_degree(p.p, 2), 4);
        EXPECT_EQ(top_degree(p.p, 3), 0);
        EXPECT_EQ(low_degree(p.p, 1), 0);
        EXPECT_EQ(low_degree(low.p, 1), 2);
        EXPECT_EQ(low_degree(low.p, 2), 1);
        EXPECT_EQ(total_degree(p.p), 5);
        EXPECT_EQ(total_degree(zero.p), 0);
        EXPECT_EQ(f_numterms(p.p), 5);
        EXPECT_EQ(f_numterms(zero.p), 0);
    }
}

TEST(Degrees, InLaurentTheConstantTermCountsAsZero)
{
    in_view live(view_float);
    laurent = 1;
    poly_operand p(poly_of_text("{#2, -1{#1}}")), q(poly_of_text("{-1{#1}, -2{1{#1}}}"));
    EXPECT_EQ(total_degree(p.p), 0);
    EXPECT_EQ(total_degree(q.p), -1);
    laurent = 0;
}

std::string coef_text(const char *text, std::int32_t level, std::int32_t e)
{
    poly_operand p(poly_of_text(text)), c;
    extract_coef(p.p, level, e, &c.p);
    EXPECT_TRUE(poly_is_normal(c.p, 3)) << poly_text(c.p);
    return poly_text(c.p);
}

TEST(ExtractCoef, KeepsTheLevelAsAWrapper)
{
    in_view live(view_digits);
    EXPECT_EQ(coef_text(sample, 1, 3), "{0{2{#1}, #3}}");
    EXPECT_EQ(coef_text(sample, 1, 1), "{#5}");
    EXPECT_EQ(coef_text(sample, 1, 2), "{#0}");
    EXPECT_EQ(coef_text(sample, 1, 0), "{0{4{#1}, #2}}");
    EXPECT_EQ(coef_text(sample, 2, 2), "{3{#1}}");
    EXPECT_EQ(coef_text(sample, 2, 0), "{3{#3}, 1{#5}, #2}");
    EXPECT_EQ(coef_text(sample, 3, 0), sample);
    EXPECT_EQ(coef_text(sample, 3, 1), "{#0}");
    EXPECT_EQ(coef_text("{#7}", 1, 0), "{#7}");
    EXPECT_EQ(coef_text("{#7}", 1, 1), "{#0}");
}

TEST(ExtractCoef, TheCoefficientsMakeThePolynomialUp)
{
    test_random r;
    for (num_view v : every_view) {
        in_view live(v);
        const poly_audit audit;
        for (int k = 0; k < 100; ++k) {
            poly_shape shape;
            shape.vars = 3;
            shape.terms = 20;
            shape.degree = 4;
            poly_operand p(random_poly(&r, shape));
            for (std::int32_t level = 1; level <= 3; ++level) {
                poly_operand sum(poly_of_text("{#0}"));
                for (std::int32_t e = 0; e <= top_degree(p.p, level); ++e) {
                    poly_operand c, x, power(poly_of_text("{#1}"));
                    extract_coef(p.p, level, e, &c.p);
                    base_poly(&x.p, level);
                    for (std::int32_t i = 0; i < e; ++i) poly_mult(power.p, x.p, &power.p, nilpol);
                    poly_mult(power.p, c.p, &power.p, nilpol);
                    better_poly_add(sum.p, power.p, &sum.p);
                }
                ASSERT_EQ(poly_text(sum.p), poly_text(p.p)) << "seed " << r.seed;
            }
        }
        audit.expect_unchanged("coefficients");
    }
}

TEST(LeadCoef, GoesDownAsFarAsItIsTold)
{
    in_view live(view_digits);
    poly_operand p(poly_of_text("{3{2{1{#4}, #1}, #3}, 1{#5}}")), c;
    lead_coef(p.p, 1, &c.p);
    EXPECT_EQ(poly_text(c.p), "{0{2{1{#4}, #1}, #3}}");
    lead_coef(p.p, 2, &c.p);
    EXPECT_EQ(poly_text(c.p), "{0{0{1{#4}, #1}}}");
    lead_coef(p.p, 9, &c.p);
    EXPECT_EQ(poly_text(c.p), "{#4}");
    trailing_coef(p.p, &c.p);
    EXPECT_EQ(poly_text(c.p), "{#5}");
    leading_term(p.p, &c.p);
    EXPECT_EQ(poly_text(c.p), "{3{2{1{#4}, #1}, #3}}");
    leading_monomial(p.p, &c.p);
    EXPECT_EQ(poly_text(c.p), "{3{2{1{#1}}}}");
}

TEST(MonomialCoef, VariablesThatItDoesNotHoldStay)
{
    in_view live(view_digits);
    const auto coef = [](const char *monomial) {
        poly_operand p(poly_of_text(sample)), m(poly_of_text(monomial)), c;
        monomial_coef(p.p, m.p, &c.p);
        EXPECT_TRUE(poly_is_normal(c.p, 3));
        return poly_text(c.p);
    };
    EXPECT_EQ(coef("{3{#1}}"), "{0{2{#1}, #3}}");
    EXPECT_EQ(coef("{3{2{#1}}}"), "{#1}");
    EXPECT_EQ(coef("{0{2{#1}}}"), "{3{#1}}");
    EXPECT_EQ(coef("{2{#1}}"), "{#0}");
    EXPECT_EQ(coef("{#1}"), sample);
}

TEST(SetFirstCoef, PutsTakesAndReplacesTerms)
{
    const poly_audit audit;
    in_view live(view_digits);
    const auto changed = [](const char *text, std::int32_t e, const char *c) {
        poly_operand p(poly_of_text(text));
        set_first_coef(&p.p, e, poly_of_text(c));
        EXPECT_TRUE(poly_is_normal(p.p, 3)) << poly_text(p.p);
        return poly_text(p.p);
    };
    EXPECT_EQ(changed("{2{#1}, #3}", 2, "{#7}"), "{2{#7}, #3}");
    EXPECT_EQ(changed("{2{#1}, #3}", 1, "{0{1{#1}}}"), "{2{#1}, 1{1{#1}}, #3}");
    EXPECT_EQ(changed("{2{#1}, #3}", 2, "{#0}"), "{#3}");
    EXPECT_EQ(changed("{2{#1}, #3}", 0, "{#0}"), "{2{#1}}");
    EXPECT_EQ(changed("{2{#1}}", 2, "{#0}"), "{#0}");
    EXPECT_EQ(changed("{#4}", 0, "{#5}"), "{#5}");
    EXPECT_EQ(changed("{#4}", 2, "{#5}"), "{2{#5}, #4}");
    EXPECT_EQ(changed("{0{1{#1}}}", 3, "{#1}"), "{3{#1}, 0{1{#1}}}");
    audit.expect_unchanged("set_first_coef");
}

}  // namespace
