// Scalar values at points.
#include "quoly/eval.h"
#include <gtest/gtest.h>
#include "poly/mul_work.h"
#include "poly/variables.h"
#include "quoly/divide.h"
#include "quoly/owned.h"
#include "session/errnums.h"
#include "tests/support/divisions.h"
#include "tests/support/mul_operands.h"
#include "tests/support/quolys.h"
#include "tests/support/settings.h"
#include "tests/support/views.h"

using namespace kelmar;
using namespace kelmar_test;

namespace {

// The variables that gcds ask for, and room for values to be announced.
struct names_in_force : six_in_force {
    names_in_force()
    {
        make_owned();
    }
};
const names_in_force names;

quolynode *value_of(const char *text, const char *den)
{
    value_operand q(text), d(den);
    quoly_quot(q.q, d.q, 0, &q.q);
    quolynode *value = q.q;
    q.q = nullptr;
    return value;
}

void free_points(quolynode **points)
{
    while (*points) {
        quolynode *point = *points;
        *points = point->next;
        free_quoly(&point);
    }
}

struct fraction_text {
    const char *top, *den;
};

std::string at(fraction_text q, std::initializer_list<fraction_text> values)
{
    value_operand value;
    quolynode *points = nullptr, **end = &points;
    value.q = value_of(q.top, q.den);
    for (const fraction_text &v : values) {
        *end = value_of(v.top, v.den);
        (*end)->next = nullptr;
        end = &(*end)->next;
    }
    total_eval(&value.q, points);
    free_points(&points);
    return value_text(value.q);
}

TEST(TotalEval, NumbersLeaveLevelsInPlace)
{
    for (num_view v : {view_float, view_modular, view_word, view_digits}) {
        in_view live(v);
        EXPECT_EQ(at({"{2{1{#1}}, #3}", "{#1}"}, {{"{#2}", "{#1}"}}), "{0{1{#4}, #3}}");
        EXPECT_EQ(at({"{2{1{#1}}, #3}", "{#1}"}, {{"{#2}", "{#1}"}, {"{#3}", "{#1}"}}), "{#15}");
        EXPECT_EQ(at({"{2{1{#1}}, #3}", "{#1}"}, {{"{#1}", "{#1}"}}), "{0{1{#1}, #3}}");
        EXPECT_EQ(at({"{#7}", "{#1}"}, {{"{#1}", "{#1}"}}), "{#7}");
    }
}

TEST(TotalEval, PointsMayBePolynomialsInAllVariables)
{
    in_view live(view_digits);
    EXPECT_EQ(at({"{1{#1}, 0{1{#3}}}", "{#1}"}, {{"{0{1{#1}}}", "{#1}"}, {"{1{#1}}", "{#1}"}}),
              "{1{#3}, 0{1{#1}}}");
    EXPECT_EQ(at({"{2{#1}}", "{#1}"}, {{"{1{#1}, #1}", "{#1}"}}), "{2{#1}, 1{#2}, #1}");
}

TEST(TotalEval, PointsAndResultsMayBeFractions)
{
    in_view live(view_digits);
    EXPECT_EQ(at({"{2{#4}, 1{#1}}", "{#1}"}, {{"{#1}", "{#2}"}}), "{#3} / {#2}");
    EXPECT_EQ(at({"{2{#1}, #1}", "{#1}"}, {{"{#1}", "{1{#1}}"}}), "{2{#1}, #1} / {2{#1}}");
    EXPECT_EQ(at({"{1{#1}, #1}", "{1{#1}, #-1}"}, {{"{#3}", "{#1}"}}), "{#2}");
    EXPECT_EQ(at({"{1{#1}, #1}", "{1{#1}, #-1}"}, {{"{#4}", "{#1}"}}), "{#5} / {#3}");
}

TEST(TotalEval, ADenominatorThatVanishesIsAnError)
{
    in_view live(view_digits);
    value_operand q, zero("{#0}");
    q.q = value_of("{#1}", "{1{#1}}");
    zero.q->next = nullptr;
    EXPECT_EQ(error_in_view([&] { total_eval(&q.q, zero.q); }), err_zero_divisor);
}

// A coefficient that vanishes at the same point makes no difference.
TEST(TotalEval, ANegativePowerOfZeroIsAnError)
{
    const in_view live(view_digits);
    const in_laurent on(1);
    for (const char *const text : {"{-1{#5}}", "{-1{1{#5}}}", "{#14, -1{1{#5}}}", "{1{#2}, -1{1{#5}}}"}) {
        EXPECT_EQ(error_in_view([&] {
                      at({text, "{#1}"}, {{"{#0}", "{#1}"}, {"{#0}", "{#1}"}});
                  }),
                  err_zero_divisor)
            << text;
        release_work();
        EXPECT_EQ(error_in_view([&] {
                      at({text, "{#1}"}, {{"{#1}", "{#1}"}, {"{#0}", "{#1}"}});
                  }),
                  0)
            << text;
    }
}

TEST(SpecQuolyEval, TakesTheVariableOfItsLevel)
{
    in_view live(view_digits);
    value_operand q("{2{1{#1}}, #3}"), v("{#5}");
    spec_quoly_eval(&q.q, v.q, 2);
    EXPECT_EQ(value_text(q.q), "{2{#5}, #3}");
    horner_quoly_eval(&q.q, v.q);
    EXPECT_EQ(value_text(q.q), "{#128}");
}

TEST(SpecQuolyEval, OfAFractionTakesBothParts)
{
    in_view live(view_digits);
    value_operand q, v("{#5}"), same("{#-1}");
    q.q = value_of("{1{1{#1}}, #1}", "{1{#1}, 0{1{#1}}}");
    spec_quoly_eval(&q.q, v.q, 2);
    EXPECT_EQ(value_text(q.q), "{1{#5}, #1} / {1{#1}, #5}");
    spec_quoly_eval(&q.q, same.q, 1);
    EXPECT_EQ(value_text(q.q), "{#-1}");
}

TEST(PQAssign, PadsByTheDepth)
{
    in_view live(view_digits);
    poly_operand p(poly_of_text("{2{#1}}")), n(poly_of_text("{#4}"));
    value_operand q;
    p_q_assign(p.p, &q.q, 2);
    EXPECT_EQ(value_text(q.q), "{0{0{2{#1}}}}");
    p_q_assign(n.p, &q.q, 2);
    EXPECT_TRUE(q.q->is_num);
}

// Points that are numbers in characteristic two, by tables and by Horner's rule.
TEST(TotEvalPoly2, IsAskedUnlessItIsTurnedOff)
{
    EXPECT_EQ(char2_degs1, 1);
}

TEST(TotEvalPoly2, AgreesWithTheGeneralForm)
{
    test_random r;
    make_small_field();
    for (std::int32_t m : {0, 2}) {
        in_view live(m ? view_modular : view_field, m ? m : 101);
        mod_is_prime = 1;
        const poly_audit audit;
        for (int k = 0; k < 200; ++k) {
            poly_shape shape;
            shape.vars = 3;
            shape.terms = 12;
            shape.degree = 300;
            poly_operand p(random_poly(&r, shape));
            quolynode *points = nullptr, **end = &points;
            const int given = 1 + static_cast<int>(r.below(3));
            for (int level = 0; level < given; ++level) {
                quoly_set(static_cast<std::int32_t>(r.below(m ? 2 : 256)), end);
                (*end)->next = nullptr;
                end = &(*end)->next;
            }
            value_operand expected, value;
            tot_eval_poly(p.p, points, &expected.q, 0, 0);
            ASSERT_EQ(tot_eval_poly2(p.p, points, &value.q), 1);
            ASSERT_EQ(value_text(value.q), value_text(expected.q)) << "seed " << r.seed;
            value_operand fast;
            if (tot_eval_poly2_fast(p.p, points, &fast.q)) {
                ASSERT_EQ(value_text(fast.q), value_text(expected.q)) << "seed " << r.seed;
            } else {
                ASSERT_LT(given, 3);
            }
            free_points(&points);
        }
        audit.expect_unchanged("characteristic two");
    }
}

}  // namespace
