// Division with remainder: the school method, the choice of a method, and the operators of the language.
#include "poly/div.h"
#include <gtest/gtest.h>
#include "poly/div_karat.h"
#include "poly/measure.h"
#include "poly/mul.h"
#include "poly/mul_work.h"
#include "session/errnums.h"
#include "tests/support/by_build.h"
#include "tests/support/divisions.h"

using namespace kelmar;
using namespace kelmar_test;

namespace {

constexpr int rounds = by_build(60, 600);
// On malloc a frame is so large that a million would not fit the stack.
constexpr std::int32_t million = by_build(100000, 1000000);

std::string mod_or_div_text(const char *a, const char *b, char op)
{
    poly_operand n(poly_of_text(a)), m(poly_of_text(b)), r;
    poly_mod_or_div(n.p, m.p, &r.p, op, nilpol);
    return poly_text(r.p);
}

// Dense, of the degree, with every coefficient there; one level, in the live view.
polynode *dense_poly(test_random *r, std::int32_t degree)
{
    flat_poly terms;
    for (std::int32_t e = 0; e <= degree; ++e)
        terms.emplace(std::vector<std::int32_t>{e}, random_coefficient(r, 1));
    return nest(&terms);
}

// n = q m + r and deg r < deg m, for what basic_poly_divide gives.
void expect_division(polynode *n, polynode *m, int fast, const char *what)
{
    const std::string n_text = poly_text(n), m_text = poly_text(m);
    poly_audit audit;
    {
        poly_operand q, r, same_r;
        basic_poly_divide(n, m, &q.p, &r.p, fast);
        expect_normal(q.p, 1, what);
        expect_normal(r.p, 1, what);
        EXPECT_TRUE(r.p->exp < m->exp || poly_iszero(r.p)) << what;
        poly_operand total(product_and_rest(q.p, m, r.p, 1));
        EXPECT_EQ(poly_text(total.p), n_text) << what << " divisor " << m_text;
        poly_div_no_q(n, m, &same_r.p);
        EXPECT_EQ(poly_text(same_r.p), poly_text(r.p)) << what;
    }
    audit.expect_unchanged(what);
    EXPECT_EQ(poly_text(n), n_text) << what;
    EXPECT_EQ(poly_text(m), m_text) << what;
}

// The school method -----------------------------------------------------------------------------------------

TEST(Div, AFactorDividesAndLeavesZero)
{
    for (const ring &r : field_rings) {
        if (r.view == view_field) continue;  // there -1 is 1
        in_ring live(r);
        poly_operand n(poly_of_text("{2{#1}, #1}")), m(poly_of_text("{1{#1}, #1}")), q, rest;
        in_place_neg(n.p->next->num);
        basic_poly_divide(n.p, m.p, &q.p, &rest.p, 0);
        poly_operand minus(poly_of_text("{#1}"));
        poly_inplace(minus.p);
        EXPECT_EQ(poly_text(rest.p), "{#0}");
        EXPECT_EQ(poly_text(q.p), "{1{#1}, #" + number_text(minus.p->num) + "}");
    }
}

TEST(Div, ALowerDegreeIsItsOwnRemainder)
{
    in_view live(view_float);
    poly_operand n(poly_of_text("{1{#3}, #4}")), m(poly_of_text("{2{#5}}")), q, r;
    basic_poly_divide(n.p, m.p, &q.p, &r.p, 1);
    EXPECT_EQ(poly_text(q.p), "{#0}");
    EXPECT_EQ(poly_text(r.p), "{1{#3}, #4}");
}

TEST(Div, AFloatLeadThatWouldNotCancelGoesAllTheSame)
{
    in_view live(view_float);
    poly_operand n(poly_of_text("{3{#0.1}, 1{#0.7}, #0.3}")), m(poly_of_text("{1{#49}, #0.9}")), q, r;
    basic_poly_divide(n.p, m.p, &q.p, &r.p, 0);
    EXPECT_EQ(q.p->exp, 2);
    EXPECT_EQ(poly_length(q.p), 3);
    EXPECT_TRUE(is_constant(r.p));
}

TEST(Div, ACompositeModulusWithoutInverseOfTheLeadIsAnError)
{
    in_ring live(other_rings[0]);
    poly_operand n(poly_of_text("{2{#3}, #1}")), m(poly_of_text("{1{#10}, #1}")),
        unit(poly_of_text("{1{#7}, #1}"));
    EXPECT_EQ(error_in_view([&] {
                  poly_operand q, r;
                  basic_poly_divide(n.p, m.p, &q.p, &r.p, 1);
              }),
              err_no_inverse);
    expect_division(n.p, unit.p, 1, "a unit as lead");
}

TEST(Div, ResultsMayBeTheOperands)
{
    in_ring live(field_rings[3]);
    poly_audit audit;
    {
        poly_operand n(poly_of_text("{4{#3}, 2{#5}, #1}")), m(poly_of_text("{2{#2}, 1{#1}}")), q, r;
        basic_poly_divide(n.p, m.p, &q.p, &r.p, 1);
        const std::string quotient = poly_text(q.p), rest = poly_text(r.p);
        basic_poly_divide(n.p, m.p, &n.p, &m.p, 1);
        EXPECT_EQ(poly_text(n.p), quotient);
        EXPECT_EQ(poly_text(m.p), rest);
    }
    release_work();
    audit.expect_unchanged("aliased results");
}

TEST(Div, AgreesWithTheProductInEveryField)
{
    test_random r;
    for (const ring &each : field_rings) {
        in_ring live(each);
        if (each.view == view_float) continue;
        for (int i = 0; i < rounds; ++i) {
            poly_shape shape;
            shape.terms = i % 2 ? 6 : 40;
            shape.degree = i % 3 ? 12 : 60;
            poly_operand n(random_poly(&r, shape)), m(random_divisor(&r, shape));
            expect_division(n.p, m.p, i % 2, "random pair");
        }
    }
}

TEST(Div, ExactFloatsAgreeWithTheProduct)
{
    test_random r;
    in_view live(view_float);
    poly_shape shape;
    for (int i = 0; i < rounds; ++i) {
        shape.degree = i % 2 ? 4 : 9;
        poly_operand n(random_poly(&r, shape)), m(random_divisor(&r, shape)), monic(poly_of_text("{10{#1}}"));
        poly_operand divisor(reference_sum(monic.p, m.p, 1));  // lead 1: the numbers stay whole, and small
        poly_operand dividend(reference_product(n.p, divisor.p, 1));
        expect_division(dividend.p, divisor.p, 0, "a multiple");
    }
}

TEST(Div, BothSidesOfEveryThreshold)
{
    test_random r;
    for (const ring &each : field_rings) {
        if (each.view == view_float) continue;
        in_ring live(each);
        for (std::int32_t dm : {1, 2, 3, 9, 10, 11, 19, 20, 21, 22, 40}) {
            for (std::int32_t dn : {dm, dm + 1, 2 * dm, 20 * dm - 1, 20 * dm, 20 * dm + 20}) {
                poly_operand n(dense_poly(&r, dn)), m(dense_poly(&r, dm));
                for (int fast : {0, 1}) expect_division(n.p, m.p, fast, "dense pair");
            }
        }
    }
}

// The operators ------------------------------------------------------------------------------------------

TEST(Operators, ByANumberEachCoefficientIsDivided)
{
    in_view live(view_float);
    EXPECT_EQ(mod_or_div_text("{2{#7}, 1{#4}, #3}", "{#4}", '\\'), "{2{#1}, 1{#1}}");
    EXPECT_EQ(mod_or_div_text("{2{#7}, 1{#4}, #3}", "{#4}", '|'), "{2{#3}, #3}");
    EXPECT_EQ(mod_or_div_text("{2{#-7}, #4}", "{#4}", '|'), "{2{#1}}");  // pos_mod
    EXPECT_EQ(mod_or_div_text("{1{1{#1}, #4}, 0{1{#9}, #3}}", "{#4}", '\\'), "{1{#1}, 0{1{#2}}}");
    EXPECT_EQ(mod_or_div_text("{0{1{#1}, #9}}", "{#4}", '\\'), "{#2}");
    EXPECT_EQ(mod_or_div_text("{#7}", "{#4}", '|'), "{#3}");
}

TEST(Operators, ByANumberModuloAPrimeNothingIsLeft)
{
    in_ring live(field_rings[3]);
    EXPECT_EQ(mod_or_div_text("{1{#3}, #6}", "{#3}", '\\'), "{1{#1}, #2}");
    EXPECT_EQ(mod_or_div_text("{1{#3}, #6}", "{#3}", '|'), "{#0}");
}

TEST(Operators, ANumberIsItsOwnRemainder)
{
    in_view live(view_digits);
    EXPECT_EQ(mod_or_div_text("{#7}", "{1{#1}}", '|'), "{#7}");
    EXPECT_EQ(mod_or_div_text("{#7}", "{1{#1}}", '\\'), "{#0}");
    EXPECT_EQ(mod_or_div_text("{0{1{#1}, #7}}", "{1{#1}}", '|'), "{0{1{#1}, #7}}");
    EXPECT_EQ(mod_or_div_text("{0{1{#1}, #7}}", "{1{#1}}", '\\'), "{#0}");
}

TEST(Operators, FloatsDivideByANumberAsLead)
{
    in_view live(view_float);
    EXPECT_EQ(mod_or_div_text("{2{#1}}", "{1{#2}, #1}", '\\'), "{1{#0.5}, #-0.25}");
    EXPECT_EQ(mod_or_div_text("{2{#1}}", "{1{#2}, #1}", '|'), "{#0.25}");
}

TEST(Operators, LongIntegersArePseudoDivided)
{
    in_view live(view_digits);
    EXPECT_EQ(mod_or_div_text("{2{#1}}", "{1{#2}, #1}", '\\'), "{1{#2}, #-1}");
    EXPECT_EQ(mod_or_div_text("{2{#1}}", "{1{#2}, #1}", '|'), "{#1}");
}

TEST(Operators, BelowCommonWrappersTheNextLevelDivides)
{
    in_view live(view_float);
    EXPECT_EQ(mod_or_div_text("{0{2{#1}, #-1}}", "{0{1{#1}, #-1}}", '\\'), "{0{1{#1}, #1}}");
    EXPECT_EQ(mod_or_div_text("{0{2{#1}, #-1}}", "{0{1{#1}, #-1}}", '|'), "{#0}");
    EXPECT_EQ(mod_or_div_text("{0{0{2{#1}, #-3}}}", "{0{0{1{#1}, #-1}}}", '|'), "{#-2}");
}

TEST(Operators, ADivisorWithoutTheOuterVariableDividesEachCoefficient)
{
    in_view live(view_float);
    const char *n = "{2{2{#1}, #5}, 1{#4}, 0{1{#1}}}";
    EXPECT_EQ(mod_or_div_text(n, "{0{1{#1}}}", '\\'), "{2{1{#1}}, #1}");
    EXPECT_EQ(mod_or_div_text(n, "{0{1{#1}}}", '|'), "{2{#5}, 1{#4}}");
}

TEST(Operators, NegativeExponentsAreRefused)
{
    in_view live(view_float);
    in_laurent on(1);
    poly_operand n(poly_of_text("{1{#1}, -1{#1}}")), m(poly_of_text("{1{#1}, #1}")), r;
    EXPECT_EQ(error_in_view([&] { poly_mod_or_div(n.p, m.p, &r.p, '|', nilpol); }), err_laurent_division);
    EXPECT_EQ(error_in_view([&] { poly_mod_or_div(m.p, n.p, &r.p, '\\', nilpol); }), err_laurent_division);
    EXPECT_EQ(poly_text(n.p), "{1{#1}, -1{#1}}");
    EXPECT_EQ(mod_or_div_text("{2{#1}, #-1}", "{1{#1}, #1}", '\\'), "{1{#1}, #-1}");  // none there
    EXPECT_EQ(mod_or_div_text("{-1{#8}}", "{#4}", '\\'), "{-1{#2}}");                 // a number divides
}

TEST(Operators, ZeroDivisorsAreAnError)
{
    in_view live(view_float);
    poly_operand n(poly_of_text("{1{#1}, #1}")), zero(poly_of_text("{#0}")), r;
    EXPECT_EQ(error_in_view([&] { poly_mod_or_div(n.p, zero.p, &r.p, '|', nilpol); }), err_zero_divisor);
    EXPECT_EQ(error_in_view([&] { poly_mod_or_div(n.p, zero.p, &r.p, '\\', nilpol); }), err_zero_divisor);
}

// Return the lead of m at the outer level, as a polynomial of `vars` variables.
polynode *outer_lead(const polynode *m)
{
    polynode *c = nullptr;
    if (m->isnum) {
        c = copy_term(m);
    } else {
        c = copy_poly(m->coef);
        add_pad(&c, 1);
    }
    return c;
}

TEST(Operators, QuotientAndRemainderFitInEveryRingForSixVariables)
{
    test_random r;
    const ring rings[] = {field_rings[1], field_rings[2], field_rings[4], other_rings[1], other_rings[3]};
    for (const ring &each : rings) {
        in_ring live(each);
        poly_audit audit;
        for (int i = 0; i < rounds / 2; ++i) {
            poly_shape shape;
            shape.vars = 1 + i % 6;
            shape.terms = shape.vars < 3 ? 6 : 3;
            shape.degree = shape.vars < 3 ? 3 : 1;
            poly_operand n(random_poly(&r, shape)), m(random_divisor(&r, shape));
            if (is_wrapper(m.p)) continue;
            const std::string n_text = poly_text(n.p), m_text = poly_text(m.p);
            {
                poly_operand q, rest;
                poly_mod_or_div(n.p, m.p, &q.p, '\\', nilpol);
                poly_mod_or_div(n.p, m.p, &rest.p, '|', nilpol);
                expect_normal(q.p, shape.vars, "quotient");
                expect_normal(rest.p, shape.vars, "remainder");
                EXPECT_TRUE(rest.p->exp < m.p->exp || poly_iszero(rest.p));
                poly_operand wanted(copy_poly(n.p)), total(product_and_rest(q.p, m.p, rest.p, shape.vars));
                const bool field = each.prime && (m.p->isnum || is_constant(m.p->coef));
                const std::int32_t steps = field ? 0 : n.p->exp - m.p->exp + 1;
                poly_operand lead(outer_lead(m.p));
                for (std::int32_t k = 0; k < steps; ++k) {
                    polynode *next = reference_product(wanted.p, lead.p, shape.vars);
                    free_poly(&wanted.p);
                    wanted.p = next;
                }
                EXPECT_EQ(poly_text(total.p), poly_text(wanted.p))
                    << n_text << " by " << m_text << " seed " << r.seed;
            }
            EXPECT_EQ(poly_text(n.p), n_text);
            EXPECT_EQ(poly_text(m.p), m_text);
        }
        audit.expect_unchanged("operators");
    }
}

// The last one: it leaves a long free list, which every audit walks.
TEST(LongLists, AMillionTermsNeedNoStack)
{
    in_ring live(field_rings[3]);
    polynode *n = nullptr;
    for (std::int32_t e = 0; e <= million; ++e) {
        polynode *one = nullptr;
        poly_set(1, &one);
        make_monomial(&one, e, one);
        one->next = n;
        n = one;
    }
    poly_operand dividend(n), m(poly_of_text("{1{#1}, #1}")), q, r;
    school_poly_divide(dividend.p, m.p, &q.p, &r.p, nilpol);
    EXPECT_EQ(poly_text(r.p), "{#1}");
    EXPECT_EQ(poly_length(q.p), million / 2);
}

}  // namespace
