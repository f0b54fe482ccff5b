// Scalar values of both kinds: records, copies, sign, comparison, the way from one kind to the other.
#include "quoly/quoly.h"
#include "quoly/derivative.h"
#include <gtest/gtest.h>
#include "numbers/dispatch.h"
#include "session/report.h"
#include "tests/support/by_build.h"
#include "tests/support/quolys.h"
#include "tests/support/views.h"

using namespace kelmar;
using namespace kelmar_test;

namespace {

constexpr int rounds = by_build(300, 3000);

poly_shape small_shape(num_view v)
{
    poly_shape shape;
    shape.vars = 3;
    shape.degree = 4;
    shape.digits = v == view_digits ? 3 : 1;
    return shape;
}

TEST(Quoly, ConstantPolynomialIsAPlainNumber)
{
    in_view live(view_float);
    poly_audit audit;
    {
        value_operand v("{#5}");
        EXPECT_TRUE(v.q->is_num);
        EXPECT_EQ(v.q->num->real, 5.0);
    }
    audit.expect_unchanged("constant");
}

TEST(Quoly, LaurentPolynomialWithAConstantTermIsNone)
{
    in_view live(view_float);
    laurent = 1;
    {
        value_operand v("{#5, -1{#1}}");
        EXPECT_FALSE(v.q->is_num);
    }
    laurent = 0;
}

TEST(Quoly, VariableOfALevel)
{
    in_view live(view_digits);
    poly_audit audit;
    {
        value_operand v;
        quoly_variable(3, &v.q);
        EXPECT_EQ(value_text(v.q), "{0{0{1{#1}}}}");
        quoly_variable(1, &v.q);
        EXPECT_EQ(value_text(v.q), "{1{#1}}");
    }
    audit.expect_unchanged("variable");
}

TEST(Quoly, ResultHandleMayHoldEitherKind)
{
    in_view live(view_digits);
    poly_audit audit;
    {
        value_operand v("{1{#1}}"), w("{2{#7}, #1}"), n("{#9}");
        quoly_assign(w.q, &v.q);
        EXPECT_EQ(value_text(v.q), "{2{#7}, #1}");
        quoly_assign(n.q, &v.q);
        EXPECT_EQ(value_text(v.q), "{#9}");
        quoly_assign(w.q, &v.q);
        EXPECT_EQ(value_text(v.q), "{2{#7}, #1}");
        quoly_set(3, &v.q);
        EXPECT_EQ(value_text(v.q), "{#3}");
        quoly_assign(w.q, &w.q);
        EXPECT_EQ(value_text(w.q), "{2{#7}, #1}");
    }
    audit.expect_unchanged("assign");
}

TEST(Quoly, GoesToPolynomialAndBack)
{
    in_view live(view_digits);
    poly_audit audit;
    for (const char *text : {"{#7}", "{1{#1}, #2}"}) {
        value_operand v(text);
        poly_operand copy, moved;
        quoly_to_poly(v.q, &copy.p);
        EXPECT_EQ(poly_text(copy.p), text);
        quoly_consume(&v.q, &moved.p);
        EXPECT_EQ(v.q, nullptr);
        EXPECT_EQ(poly_text(moved.p), text);
    }
    audit.expect_unchanged("to poly");
}

TEST(Quoly, NegationInPlaceAndApart)
{
    test_random r;
    for (num_view v : all_views) {
        in_view live(v, 7);
        for (int round = 0; round < rounds; ++round) {
            poly_audit audit;
            {
                value_operand a(random_poly(&r, small_shape(v))), b;
                const std::string before = value_text(a.q);
                quoly_makeneg(a.q, &b.q);
                EXPECT_EQ(value_text(a.q), before);
                quoly_inplace(&a.q);
                EXPECT_EQ(value_text(a.q), value_text(b.q)) << before << " seed " << r.seed;
                EXPECT_TRUE(quoly_equal(a.q, b.q));
                quoly_makeneg(a.q, &a.q);
                EXPECT_EQ(value_text(a.q), before);
            }
            audit.expect_unchanged("negation");
            if (HasFailure()) return;
        }
    }
}

TEST(Quoly, EqualityTellsNumbersFromPolynomials)
{
    in_view live(view_float);
    value_operand n("{#1}"), m("{#1}"), p("{1{#1}}"), q("{1{#1}}"), w("{1{#2}}");
    EXPECT_TRUE(quoly_equal(n.q, m.q));
    EXPECT_TRUE(quoly_equal(p.q, q.q));
    EXPECT_FALSE(quoly_equal(p.q, w.q));
    EXPECT_FALSE(quoly_equal(n.q, p.q));
    EXPECT_FALSE(quoly_equal(p.q, n.q));
}

TEST(Quoly, OnlyTheNumberZeroIsZero)
{
    in_view live(view_float);
    value_operand zero("{#0}"), x("{1{#1}}");
    EXPECT_TRUE(quoly_iszero(zero.q));
    EXPECT_FALSE(quoly_iszero(x.q));
}

TEST(Quoly, DerivativeMayBecomeAPlainNumber)
{
    in_view live(view_float);
    poly_audit audit;
    {
        value_operand p("{1{#3}, #1}"), y("{0{1{#1}}}"), n("{#4}");
        quoly_differen_once(&p.q, 1);
        EXPECT_EQ(value_text(p.q), "{#3}");
        EXPECT_TRUE(p.q->is_num);
        quoly_differen_once(&y.q, 1);
        EXPECT_TRUE(quoly_iszero(y.q));
        quoly_differen_once(&n.q, 1);
        EXPECT_TRUE(quoly_iszero(n.q));
    }
    audit.expect_unchanged("derivative");
}

TEST(Quoly, MagnitudeAndFloorNeedANumber)
{
    in_view live(view_float);
    value_operand p("{1{#-3}}");
    EXPECT_EQ(error_in_view([&] { quoly_abs(&p.q); }), err_not_a_number);
    EXPECT_EQ(error_in_view([&] { quoly_great_int(&p.q); }), err_not_a_number);
    EXPECT_EQ(value_text(p.q), "{1{#-3}}");
}

}  // namespace
