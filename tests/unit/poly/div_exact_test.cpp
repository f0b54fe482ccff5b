// Division by a number, and division that leaves nothing: a b / b = a in every ring.
#include "poly/div_exact.h"
#include <gtest/gtest.h>
#include "poly/div_steps.h"
#include "poly/measure.h"
#include "session/errnums.h"
#include "tests/support/by_build.h"
#include "tests/support/divisions.h"

using namespace kelmar;
using namespace kelmar_test;

namespace {

constexpr int rounds = by_build(40, 500);

std::string quot_text(const char *a, const char *b)
{
    poly_operand n(poly_of_text(a)), c(poly_of_text(b)), q;
    poly_quot(n.p, c.p, &q.p, -31);
    return poly_text(q.p);
}

std::string exact_text(const char *a, const char *b)
{
    poly_operand n(poly_of_text(a)), m(poly_of_text(b)), q;
    q.p = exact_quotient(n.p, m.p, nilpol);
    return poly_text(q.p);
}

// By numbers ---------------------------------------------------------------------------------------------

TEST(PolyQuot, DividesEveryCoefficient)
{
    in_view live(view_float);
    EXPECT_EQ(quot_text("{2{1{#3}, #5}, #7}", "{#2}"), "{2{1{#1.5}, #2.5}, #3.5}");
    EXPECT_EQ(quot_text("{2{#3}, #7}", "{#1}"), "{2{#3}, #7}");
    EXPECT_EQ(quot_text("{2{#3}, #7}", "{#-1}"), "{2{#-3}, #-7}");
    EXPECT_EQ(quot_text("{#0}", "{#5}"), "{#0}");
}

TEST(PolyQuot, WhatVanishesIsDroppedAndTheFormIsKept)
{
    in_view live(view_float);
    EXPECT_EQ(quot_text("{2{#1e-300}, #4e200}", "{#1e200}"), "{#4}");
    EXPECT_EQ(quot_text("{0{1{#1e-300}, #4e200}}", "{#1e200}"), "{#4}");
    in_view words(view_word);
    EXPECT_EQ(quot_text("{2{#3}, 1{#8}, #9}", "{#4}"), "{1{#2}, #2}");
    EXPECT_EQ(quot_text("{2{#3}, #1}", "{#4}"), "{#0}");
}

TEST(PolyQuot, TruncatesLongIntegers)
{
    in_view live(view_digits);
    EXPECT_EQ(quot_text("{2{#-7}, #9}", "{#4}"), "{2{#-1}, #2}");
}

TEST(PolyQuot, InPlaceALostTermOfLongIntegersIsNoFault)
{
    in_view live(view_digits);
    poly_operand p(poly_of_text("{2{#3}, #7}")), five(poly_of_text("{#5}"));
    num_poly_quot(&p.p, five.p->num);
    EXPECT_EQ(poly_text(p.p), "{#1}");
}

TEST(PolyQuot, NumbersThatDoNotDivideAreErrors)
{
    in_ring live(other_rings[0]);
    EXPECT_EQ(error_in_view([&] { quot_text("{1{#3}}", "{#10}"); }), err_no_inverse);
    EXPECT_EQ(error_in_view([&] { quot_text("{1{#3}}", "{#0}"); }), err_zero_divisor);
}

TEST(PolyQuot, TheFormsAgree)
{
    test_random r;
    for (const ring &each : field_rings) {
        in_ring live(each);
        poly_audit audit;
        for (int i = 0; i < rounds; ++i) {
            poly_shape shape;
            poly_operand n(random_poly(&r, shape)), c(new_constant(random_coefficient(&r, 1))), a, b,
                in_place, trial;
            const std::string n_text = poly_text(n.p);
            int ok = 0;
            poly_quot(n.p, c.p, &a.p, 0);
            fastest_poly_quot(n.p, c.p, &b.p);
            trial_poly_quot(n.p, c.p, &trial.p, &ok);
            in_place.p = copy_poly(n.p);
            num_poly_quot(&in_place.p, c.p->num);
            EXPECT_EQ(ok, 1);
            EXPECT_EQ(poly_text(a.p), poly_text(b.p));
            EXPECT_EQ(poly_text(a.p), poly_text(trial.p));
            EXPECT_EQ(poly_text(a.p), poly_text(in_place.p));
            EXPECT_EQ(poly_text(n.p), n_text);
        }
        audit.expect_unchanged("forms of poly_quot");
    }
}

TEST(TrialPolyQuot, SaysNoAtTheFirstCoefficientThatDoesNotDivide)
{
    in_view live(view_digits);
    poly_audit audit;
    {
        poly_operand n(poly_of_text("{2{1{#4}, #6}, #8}")), odd(poly_of_text("{2{1{#4}, #6}, #9}")),
            c(poly_of_text("{#2}")), q;
        int ok = 0;
        trial_poly_quot(n.p, c.p, &q.p, &ok);
        EXPECT_EQ(poly_text(q.p), "{2{1{#2}, #3}, #4}");
        free_poly(&q.p);
        trial_poly_quot(odd.p, c.p, &q.p, &ok);
        EXPECT_EQ(ok, 0);
        EXPECT_EQ(q.p, nullptr);
        EXPECT_EQ(poly_text(odd.p), "{2{1{#4}, #6}, #9}");
    }
    audit.expect_unchanged("trial quotient");
}

// By polynomials -----------------------------------------------------------------------------------------

TEST(ExactQuotient, NamedCases)
{
    in_view live(view_digits);
    EXPECT_EQ(exact_text("{2{#1}, #-1}", "{1{#1}, #-1}"), "{1{#1}, #1}");
    EXPECT_EQ(exact_text("{2{#1}, #1}", "{1{#1}, #-1}"), "null");
    EXPECT_EQ(exact_text("{2{#3}}", "{1{#2}}"), "null");  // 3 is no multiple of 2
    EXPECT_EQ(exact_text("{2{#6}}", "{1{#2}}"), "{1{#3}}");
    EXPECT_EQ(exact_text("{#0}", "{1{#2}}"), "{#0}");
    EXPECT_EQ(exact_text("{#4}", "{1{#2}}"), "null");
    EXPECT_EQ(exact_text("{1{1{#1}}, #1}", "{0{1{#1}}}"), "null");  // x y + 1 by y
    EXPECT_EQ(exact_text("{1{1{#1}}, 0{1{#3}}}", "{0{1{#1}}}"), "{1{#1}, #3}");
    EXPECT_EQ(exact_text("{0{2{#1}}}", "{0{1{#1}}}"), "{0{1{#1}}}");
    EXPECT_EQ(exact_text("{0{1{#5}}}", "{0{1{#1}}}"), "{#5}");
    EXPECT_EQ(exact_text("{0{1{#5}}}", "{1{#1}}"), "null");
}

TEST(ExactQuotient, NegativeExponentsOfTheQuotientNeedLaurent)
{
    in_view live(view_float);
    EXPECT_EQ(exact_text("{#2}", "{1{#1}}"), "null");
    in_laurent on(1);
    EXPECT_EQ(exact_text("{#2}", "{1{#1}}"), "{-1{#2}}");
    EXPECT_EQ(exact_text("{1{#1}, #1}", "{2{#1}}"), "{-1{#1}, -2{#1}}");
    EXPECT_EQ(exact_text("{#1, -1{#1}}", "{1{#1}, #1}"), "{-1{#1}}");
    EXPECT_EQ(exact_text("{1{#1}, #1}", "{1{#1}, #-1}"), "null");
    EXPECT_EQ(exact_text("{1{#1}}", "{1{#1}, #-1}"), "null");
    EXPECT_EQ(exact_text("{#2}", "{0{1{#1}}}"), "{0{-1{#2}}}");
    EXPECT_EQ(exact_text("{1{#3}}", "{0{1{#1}}}"), "{1{-1{#3}}}");
}

// (a b) / b = a, and for every form of exact division.
void expect_product_divides(polynode *a, polynode *b, std::int32_t vars, const pt *names)
{
    poly_operand n(reference_product(a, b, vars)), q(exact_quotient(n.p, b, names)), general;
    const std::string n_text = poly_text(n.p), b_text = poly_text(b);
    int fail = 1;
    ASSERT_NE(q.p, nullptr) << n_text << " by " << b_text;
    EXPECT_EQ(poly_text(q.p), poly_text(a)) << n_text << " by " << b_text;
    expect_normal(q.p, vars, "quotient");
    gen_poly_divide(n.p, b, &general.p, names, &fail);
    EXPECT_EQ(fail, 0);
    EXPECT_EQ(poly_text(general.p), poly_text(a));
    EXPECT_EQ(poly_text(n.p), n_text);
    EXPECT_EQ(poly_text(b), b_text);
    if (is_constant(n.p)) return;
    fast_poly_divide(&n.p, b, names, 17);
    EXPECT_EQ(poly_text(n.p), poly_text(a));
}

TEST(ExactQuotient, OfAProductIsTheOtherFactorInEveryRing)
{
    test_random r;
    six_variables names;
    for (const ring *each : {&field_rings[0], &field_rings[1], &field_rings[2], &field_rings[4],
                             &field_rings[6], &other_rings[3]}) {
        for (int with_laurent : {0, 1}) {
            in_ring live(*each);
            in_laurent on(with_laurent);
            poly_audit audit;
            for (int i = 0; i < rounds; ++i) {
                poly_shape shape;
                shape.vars = 1 + i % 6;
                shape.terms = each->view == view_float ? 3 : 7;
                shape.degree = 4;
                shape.low = with_laurent ? -3 : 0;
                shape.digits = 3;
                poly_operand a(random_poly(&r, shape)), b(random_divisor(&r, shape));
                if (each->view == view_float && !monomial(b.p)) continue;  // else quotients are rounded
                expect_product_divides(a.p, b.p, shape.vars, names.first());
            }
            audit.expect_unchanged("exact division");
        }
    }
}

TEST(ExactQuotient, FloatsOfLeadOneAreExact)
{
    test_random r;
    six_variables names;
    in_view live(view_float);
    for (int i = 0; i < rounds; ++i) {
        poly_shape shape;
        shape.vars = 1 + i % 4;
        shape.terms = 4;
        shape.degree = 3;
        poly_operand a(random_poly(&r, shape)), b(random_poly(&r, shape)), lead(poly_of_text("{4{#1}}"));
        poly_operand m(reference_sum(lead.p, b.p, shape.vars));
        expect_product_divides(a.p, m.p, shape.vars, names.first());
    }
}

TEST(ExactQuotient, AMultipleAndABitIsRefused)
{
    test_random r;
    six_variables names;
    for (const ring *each : {&field_rings[0], &field_rings[2], &field_rings[4], &other_rings[3]}) {
        in_ring live(*each);
        poly_audit audit;
        for (int i = 0; i < rounds; ++i) {
            poly_shape shape;
            shape.vars = 1 + i % 6;
            shape.terms = 5;
            poly_operand a(random_poly(&r, shape)), b(random_divisor(&r, shape)), one(poly_of_text("{#1}"));
            poly_operand product(reference_product(a.p, b.p, shape.vars)),
                n(reference_sum(product.p, one.p, shape.vars));
            int fail = 0;
            poly_operand q(exact_quotient(n.p, b.p, names.first())), general;
            EXPECT_EQ(q.p, nullptr) << poly_text(n.p) << " by " << poly_text(b.p);
            gen_poly_divide(n.p, b.p, &general.p, names.first(), &fail);
            EXPECT_EQ(fail, 1);
            EXPECT_EQ(poly_text(general.p), "{#0}");
        }
        audit.expect_unchanged("refused");
    }
}

TEST(ExactQuotient, DenseResiduesGoThroughArraysOnBothSidesOfTheirLimits)
{
    test_random r;
    six_variables names;
    for (const ring *each : {&field_rings[1], &field_rings[3], &field_rings[6]}) {
        in_ring live(*each);
        for (std::int32_t degree : {8, 9, 10, 11, 30}) {
            poly_shape shape;
            shape.terms = 400;
            shape.degree = degree;
            for (int i = 0; i < 20; ++i) {
                poly_operand a(random_divisor(&r, shape)), b(random_divisor(&r, shape)),
                    one(poly_of_text("{#1}"));
                expect_product_divides(a.p, b.p, 1, names.first());
                poly_operand n(reference_product(a.p, b.p, 1)), off(reference_sum(n.p, one.p, 1));
                if (b.p->exp < 1) continue;
                poly_operand q(exact_quotient(off.p, b.p, names.first()));
                EXPECT_EQ(q.p, nullptr);
            }
        }
    }
}

TEST(FastPolyDivide, OfZeroReturnsAtOnce)
{
    in_view live(view_digits);
    six_variables names;
    poly_operand zero(poly_of_text("{#0}")), m(poly_of_text("{1{#1}, #1}"));
    fast_poly_divide(&zero.p, m.p, names.first(), 1);
    EXPECT_EQ(poly_text(zero.p), "{#0}");
}

TEST(GenPolyDivide, ResultsMayBeTheOperands)
{
    in_view live(view_digits);
    six_variables names;
    poly_operand n(poly_of_text("{2{#1}, #-1}")), m(poly_of_text("{1{#1}, #-1}"));
    int fail = 1;
    gen_poly_divide(n.p, m.p, &n.p, names.first(), &fail);
    EXPECT_EQ(fail, 0);
    EXPECT_EQ(poly_text(n.p), "{1{#1}, #1}");
    gen_poly_divide(n.p, m.p, &m.p, names.first(), &fail);
    EXPECT_EQ(fail, 1);
    EXPECT_EQ(poly_text(m.p), "{#0}");
}

TEST(DivSteps, AStepOnOneLevelIsTheStepByProducts)
{
    test_random r;
    for (const ring *each : {&field_rings[0], &field_rings[1], &field_rings[4], &other_rings[0],
                             &other_rings[1], &other_rings[3]}) {
        in_ring live(*each);
        poly_audit audit;
        for (int i = 0; i < rounds; ++i) {
            poly_shape shape;
            poly_operand rest(random_poly(&r, shape)), tail(random_poly(&r, shape)), term;
            if (poly_iszero(rest.p) || poly_iszero(tail.p)) continue;
            make_monomial(&term.p, static_cast<std::int32_t>(r.below(4)),
                          new_constant(random_coefficient(&r, 1)));
            poly_operand other(copy_poly(rest.p));
            take_off(&rest.p, term.p, tail.p, true, nilpol);
            take_off(&other.p, term.p, tail.p, false, nilpol);
            EXPECT_EQ(poly_text(rest.p), poly_text(other.p));
        }
        audit.expect_unchanged("steps");
    }
}

}  // namespace
