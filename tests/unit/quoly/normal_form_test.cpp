// The normal form of values: each rule, reached by operations and by values of unknown state; errors.
#include "quoly/normal_form.h"
#include <gtest/gtest.h>
#include "poly/mul.h"
#include "quoly/add.h"
#include "quoly/divide.h"
#include "quoly/fraction.h"
#include "quoly/mul.h"
#include "quoly/power.h"
#include "quoly/rational.h"
#include "session/levels.h"
#include "session/report.h"
#include "tests/support/divisions.h"
#include "tests/support/gcds.h"
#include "tests/support/quolys.h"
#include "tests/support/reports.h"
#include "tests/support/variables.h"

using namespace kelmar;
using namespace kelmar_test;

namespace {

constexpr std::int32_t vars = 2;

// Two variables: x is level 1, y level 2.
class NormalForm : public ::testing::Test {
protected:
    const adjoined variables{"x", "y"};
};

// top / den as they stand, in no form at all.
quolynode *raw(const char *top, const char *den)
{
    polynode *t = poly_of_text(top), *d = poly_of_text(den);
    quolynode *q = nullptr;
    put_fraction(&t, &d, &q);
    return q;
}

std::string checked(const char *top, const char *den, std::int32_t clear = 0)
{
    const poly_audit audit;
    quolynode *q = raw(top, den);
    check_quoly(&q, clear);
    EXPECT_TRUE(quoly_is_normal(q, vars)) << value_text(q);
    const std::string text = value_text(q);
    free_quoly(&q);
    audit.expect_unchanged("check_quoly");
    return text;
}

using operation = void (*)(const quolynode *, const quolynode *, quolynode **);
void divide(const quolynode *a, const quolynode *b, quolynode **c)
{
    quoly_quot(a, b, 0, c);
}

std::string result(operation op, const quolynode *a, const quolynode *b)
{
    quolynode *c = nullptr;
    op(a, b, &c);
    EXPECT_TRUE(quoly_is_normal(c, vars)) << value_text(c);
    const std::string text = value_text(c);
    free_quoly(&c);
    return text;
}

const char *const x = "{1{#1}}";
const char *const x_plus_1 = "{1{#1}, #1}";

// A value a / b, made by division.
struct quotient : value_operand {
    quotient(const char *a, const char *b) : value_operand(a)
    {
        value_operand divisor(b);
        fast_quoly_quot(&q, divisor.q, 0);
    }
};

TEST_F(NormalForm, ConstantWithoutDenominatorIsAPlainNumber)
{
    in_view live(view_digits);
    EXPECT_EQ(checked("{#6}", "{#3}"), "{#2}");
    EXPECT_EQ(checked("{1{#6}, #6}", "{1{#3}, #3}"), "{#2}");
    EXPECT_EQ(checked("{#0}", "{1{#3}, #3}"), "{#0}");
}

TEST_F(NormalForm, OneIsNoDenominator)
{
    in_view live(view_digits);
    EXPECT_EQ(checked("{1{#2}}", "{#1}"), "{1{#2}}");
    EXPECT_EQ(checked("{1{#2}}", "{#-1}"), "{1{#-2}}");
    EXPECT_EQ(checked("{2{#1}, 1{#1}}", x_plus_1), x);
}

TEST_F(NormalForm, RationalNumbersAreInLowestTermsAboveAPositiveDenominator)
{
    in_view live(view_digits);
    EXPECT_EQ(checked("{#6}", "{#-4}"), "{#-3} / {#2}");
    quolynode *q = raw("{#6}", "{#-4}");
    check_quoly(&q, 0);
    EXPECT_EQ(q->is_rat, 1);
    free_quoly(&q);
}

TEST_F(NormalForm, LeadingNumberOfADenominatorIsAboveZero)
{
    in_view live(view_digits);
    EXPECT_EQ(checked("{#1}", "{1{1{#-1}, #2}, #3}"), "{#-1} / {1{1{#1}, #-2}, #-3}");
}

TEST_F(NormalForm, CommonNumbersGoInWholeNumbers)
{
    in_view live(view_digits);
    EXPECT_EQ(checked("{1{#6}, #2}", "{1{#4}, #6}"), "{1{#3}, #1} / {1{#2}, #3}");
    quolynode *q = raw("{1{#6}, #2}", "{1{#4}, #6}");
    sanitize(q);
    EXPECT_EQ(value_text(q), "{1{#3}, #1} / {1{#2}, #3}");
    free_quoly(&q);
}

TEST_F(NormalForm, DenominatorsAreMonicInWordsAndDoubles)
{
    {
        in_view live(view_float);
        EXPECT_EQ(checked("{1{#2}, #4}", "{1{#4}, #2}"), "{1{#0.5}, #1} / {1{#1}, #0.5}");
        EXPECT_EQ(checked("{1{#2}, #4}", "{#4}"), "{1{#0.5}, #1}");
    }
    in_view live(view_modular, 7);
    mod_is_prime = 1;
    EXPECT_EQ(checked("{1{#2}, #4}", "{1{#4}, #2}"), "{1{#4}, #1} / {1{#1}, #4}");
}

// 49 times the double nearest to 1/49 is not 1.
TEST_F(NormalForm, MonicFormDividesSoThatTheLeadIsExactlyOne)
{
    in_view live(view_float);
    const quotient q("{1{#1}}", "{1{#49}, #98}");
    EXPECT_EQ(value_text(q.q), "{1{#0.020408163265306121}} / {1{#1}, #2}");
    const quotient same("{1{#1}}", "{1{#49}, #98}");
    EXPECT_TRUE(quoly_equal(q.q, same.q));
}

TEST_F(NormalForm, DenominatorWithoutATowerIsLeftWhereItIs)
{
    in_view live(view_float);
    ASSERT_EQ(field_depth, 0);
    EXPECT_EQ(checked(x, x_plus_1), "{1{#1}} / {1{#1}, #1}");
}

TEST_F(NormalForm, BothQuotientRoutinesGiveTheSameForm)
{
    for (const num_view v : {view_float, view_digits}) {
        in_view live(v);
        value_operand a(x), b("{1{#3}, #3}"), c;
        quoly_quot(a.q, b.q, 0, &c.q);
        fast_quoly_quot(&a.q, b.q, 0);
        EXPECT_EQ(value_text(a.q), value_text(c.q));
        EXPECT_TRUE(quoly_is_normal(a.q, vars));
    }
}

TEST_F(NormalForm, PowersInADenominatorGoUpWithNegativeExponents)
{
    in_view live(view_digits);
    in_laurent on(1);
    EXPECT_EQ(checked("{#2}", x, 1), "{-1{#2}}");
    EXPECT_EQ(checked("{#2}", "{3{1{#1}}, 1{2{#1}}}", 1), "{-1{-1{#2}}} / {2{#1}, 0{1{#1}}}");
    EXPECT_EQ(checked("{#1}", "{-1{#1}, -2{#1}}", 1), "{2{#1}} / {1{#1}, #1}");
    const quotient q("{#2}", x);
    EXPECT_EQ(value_text(q.q), "{-1{#2}}");
    EXPECT_EQ(q.q->den, nullptr);
    const quotient third("{#2}", "{1{#3}}");
    EXPECT_EQ(value_text(third.q), "{-1{#2}} / {#3}");
}

TEST_F(NormalForm, LaurentOperationsKeepTheForm)
{
    in_laurent on(1);
    for (const ring &numbers : {ring{view_digits, 101, 0}, ring{view_modular, 101, 1}}) {
        const in_ring live(numbers);
        test_random r;
        poly_shape shape;
        shape.vars = vars;
        shape.terms = 3;
        shape.degree = 2;
        shape.low = -2;
        for (int round = 0; round < 200; ++round) {
            const poly_audit audit;
            {
                value_operand a(random_poly(&r, shape)), b(random_poly(&r, shape)), c(random_poly(&r, shape));
                if (!quoly_iszero(b.q)) fast_quoly_quot(&a.q, b.q, 0);
                EXPECT_TRUE(quoly_is_normal(a.q, vars)) << value_text(a.q);
                const std::string a_text = value_text(a.q);
                for (operation op : {quoly_add, quoly_sub, quoly_mult, divide}) {
                    if (op == divide && quoly_iszero(c.q)) continue;
                    result(op, a.q, c.q);
                }
                value_operand d;
                quoly_add(a.q, c.q, &d.q);
                better_quoly_sub(&d.q, c.q);
                EXPECT_EQ(value_text(d.q), a_text);
                if (!quoly_iszero(c.q)) {
                    quoly_mult(a.q, c.q, &d.q);
                    fast_quoly_quot(&d.q, c.q, 0);
                    EXPECT_EQ(value_text(d.q), a_text);
                }
            }
            audit.expect_unchanged("laurent");
            if (HasFailure()) FAIL() << "seed " << r.seed << " round " << round;
        }
    }
}

// Operations ----------------------------------------------------------------------------------------------

TEST_F(NormalForm, ProductWithTheReciprocalIsThePlainNumberOne)
{
    for (const num_view v : {view_float, view_digits}) {
        in_view live(v);
        const quotient a(x, x_plus_1), b(x_plus_1, x);
        value_operand product;
        const exits_since exits;
        quoly_mult(a.q, b.q, &product.q);
        EXPECT_EQ(value_text(product.q), "{#1}");
        EXPECT_EQ(exits.text(), "exits:") << "no gcd is taken";
        value_operand c("{1{#1}}"), d(x_plus_1);
        fast_quoly_quot(&c.q, d.q, 0);
        fast_quoly_mult(&c.q, d.q);
        EXPECT_EQ(value_text(c.q), x);
        value_operand e(x);
        fast_quoly_quot(&c.q, e.q, 0);
        EXPECT_EQ(value_text(c.q), "{#1}");
    }
}

TEST_F(NormalForm, SumsOverAThirdKeepIt)
{
    in_view live(view_digits);
    const quotient a(x_plus_1, "{#3}"), b("{1{#1}, #2}", "{#3}");
    EXPECT_EQ(result(quoly_add, a.q, b.q), "{1{#2}, #3} / {#3}");
    quolynode *c = nullptr;
    quoly_add(a.q, b.q, &c);
    EXPECT_EQ(c->is_rat, 0);
    free_quoly(&c);
}

TEST_F(NormalForm, OppositeLinearPolynomialsGiveMinusOne)
{
    for (const num_view v : {view_float, view_digits}) {
        in_view live(v);
        value_operand a("{1{#1}, #-1}"), b("{1{#-1}, #1}");
        EXPECT_EQ(result(divide, a.q, b.q), "{#-1}");
    }
}

TEST_F(NormalForm, ModuloAPrimeAConstantDenominatorNeverSurvives)
{
    in_view live(view_modular, 7);
    mod_is_prime = 1;
    value_operand a(x), three("{#3}");
    EXPECT_EQ(result(divide, a.q, three.q), "{1{#5}}");
    value_operand b("{1{#3}, #3}");
    EXPECT_EQ(result(divide, a.q, b.q), "{1{#5}} / {1{#1}, #1}");
}

TEST_F(NormalForm, SumWithAPolynomialMayLeaveARationalNumber)
{
    in_view live(view_digits);
    const quotient a("{1{#3}, #1}", "{#3}");
    value_operand b(x);
    EXPECT_EQ(result(quoly_sub, a.q, b.q), "{#1} / {#3}");
    EXPECT_EQ(result(quoly_sub, b.q, a.q), "{#-1} / {#3}");
    quolynode *c = nullptr;
    quoly_sub(a.q, b.q, &c);
    EXPECT_EQ(c->is_rat, 1);
    better_quoly_add(&c, b.q);
    EXPECT_EQ(value_text(c), "{1{#3}, #1} / {#3}");
    EXPECT_EQ(c->is_rat, 0);
    free_quoly(&c);
}

TEST_F(NormalForm, ConstantsOverPolynomials)
{
    {
        in_view live(view_float);
        const quotient a("{#1}", "{1{#2}}");
        EXPECT_EQ(value_text(a.q), "{#0.5} / {1{#1}}");
        const quotient b("{1{#2}, #2}", "{1{#4}, #4}");
        EXPECT_EQ(value_text(b.q), "{#0.5}");
    }
    in_view live(view_digits);
    const quotient a("{#4}", "{1{#6}, #2}");
    EXPECT_EQ(value_text(a.q), "{#2} / {1{#3}, #1}");
    value_operand six("{#6}");
    EXPECT_EQ(result(quoly_mult, six.q, a.q), "{#12} / {1{#3}, #1}");
    const quotient b(x, "{1{#6}, #3}");
    EXPECT_EQ(result(quoly_mult, six.q, b.q), "{1{#2}} / {1{#2}, #1}");
}

TEST_F(NormalForm, DoubleSlashLeavesTheNumerators)
{
    in_view live(view_digits);
    value_operand a("{2{#1}, #-1}"), b("{1{#-1}, #1}"), c;
    quoly_quot(a.q, b.q, 1, &c.q);
    EXPECT_EQ(value_text(c.q), "{2{#-1}, #1} / {1{#1}, #-1}");
    check_quoly(&c.q, 0);
    EXPECT_EQ(value_text(c.q), "{1{#-1}, #-1}");
}

TEST_F(NormalForm, ReciprocalsOfFractions)
{
    in_view live(view_digits);
    quotient a("{1{#-2}}", "{1{#3}, #3}");
    quoly_reciprocal(&a.q);
    EXPECT_EQ(value_text(a.q), "{1{#-3}, #-3} / {1{#2}}");
    value_operand b("{1{#-2}, #1}");
    quoly_reciprocal(&b.q);
    EXPECT_EQ(value_text(b.q), "{#-1} / {1{#2}, #-1}");
    quoly_reciprocal(&b.q);
    EXPECT_EQ(value_text(b.q), "{1{#-2}, #1}");
    in_view doubles(view_float);
    value_operand c("{1{#-2}, #1}");
    lint_quoly_recip(&c.q);
    EXPECT_EQ(value_text(c.q), "{#-0.5} / {1{#1}, #-0.5}");
    value_operand four("{#4}");
    lint_quoly_recip(&four.q);
    EXPECT_EQ(value_text(four.q), "{#0.25}");
    in_view residues(view_modular, 7);
    value_operand three("{#3}");
    lint_quoly_recip(&three.q);
    EXPECT_EQ(value_text(three.q), "{#5}");
}

TEST_F(NormalForm, WholeDivisionOfAFractionGoesThroughBothParts)
{
    in_view live(view_float);
    const quotient a("{3{#1}}", "{2{#1}, #1}");
    value_operand b(x_plus_1), x_value(x);
    quolynode *c = nullptr;
    quoly_mod_or_div(a.q, b.q, &c, '|');  // -1 over 2
    EXPECT_EQ(value_text(c), "{#-0.5}");
    quoly_mod_or_div(a.q, b.q, &c, '\\');  // x^2 - x + 1 over x - 1
    EXPECT_EQ(value_text(c), "{2{#1}, 1{#-1}, #1} / {1{#1}, #-1}");
    const quotient divisor(x_plus_1, x);  // its denominator is not looked at
    quoly_mod_or_div(a.q, divisor.q, &c, '|');
    EXPECT_EQ(value_text(c), "{#-0.5}");
    free_quoly(&c);
}

TEST_F(NormalForm, FloatsAreAFieldInWholeDivision)
{
    in_view live(view_float);
    value_operand a("{2{#1}}"), b("{1{#2}, #1}"), c;
    quoly_mod_or_div(a.q, b.q, &c.q, '\\');
    EXPECT_EQ(value_text(c.q), "{1{#0.5}, #-0.25}");
    quoly_mod_or_div(a.q, b.q, &c.q, '|');
    EXPECT_EQ(value_text(c.q), "{#0.25}");
}

TEST_F(NormalForm, FloatQuotientSurvivesRounding)
{
    in_view live(view_float);
    value_operand a("{2{#1}, #-0.01}"), b("{1{#1}, #-0.10000000000000001}");
    quolynode *c = nullptr;
    quoly_quot(a.q, b.q, 0, &c);
    EXPECT_FALSE(quoly_iszero(c));
    EXPECT_EQ(value_text(c), "{1{#1}, #0.10000000000000001}");
    free_quoly(&c);
}

// Sparse structures ---------------------------------------------------------------------------------------

TEST_F(NormalForm, NullStandsForZeroInSparseStructures)
{
    in_view live(view_digits);
    const poly_audit audit;
    value_operand a(x), zero("{#0}"), c("{#5}");
    quoly_nils_mult(a.q, nullptr, &c.q);
    EXPECT_EQ(c.q, nullptr);
    quoly_nils_mult(a.q, zero.q, &c.q);
    EXPECT_EQ(c.q, nullptr);
    quoly_nils_mult(a.q, a.q, &c.q);
    EXPECT_EQ(value_text(c.q), "{2{#1}}");
    quolynode *none = nullptr, *left = nullptr;
    best_quoly_nils_sub(&c.q, &none);
    EXPECT_EQ(value_text(c.q), "{2{#1}}");
    best_quoly_nils_sub(&left, &c.q);
    EXPECT_EQ(c.q, nullptr);
    EXPECT_EQ(value_text(left), "{2{#-1}}");
    quolynode *same = nullptr;
    quoly_assign(left, &same);
    best_quoly_nils_sub(&left, &same);
    EXPECT_EQ(left, nullptr);
    EXPECT_EQ(same, nullptr);
}

// What only callers that know their operands use -----------------------------------------------------------

TEST_F(NormalForm, OperationsOnKnownFractionsAreTheGeneralOnes)
{
    for (const num_view v : {view_float, view_digits}) {
        in_view live(v);
        const poly_audit audit;
        {
            const quotient a(x, x_plus_1), b("{1{#1}, #1}", "{2{#1}, #-2}");
            EXPECT_EQ(result(gen_quoly_mult, a.q, b.q), result(quoly_mult, a.q, b.q));
            EXPECT_EQ(result(gen_quoly_mult, b.q, b.q), result(quoly_mult, b.q, b.q));
            value_operand p("{2{#1}, #7}"), minus, in_place, power, product;
            no_denom_minus_2(p.q->top, b.q, &minus.q);
            quoly_assign(b.q, &in_place.q);
            no_denom_minus(p.q->top, &in_place.q);
            EXPECT_EQ(value_text(in_place.q), value_text(minus.q));
            EXPECT_EQ(value_text(in_place.q), result(quoly_sub, b.q, p.q));
            EXPECT_EQ(value_text(p.q), "{2{#1}, #7}");
            quoly_assign(b.q, &power.q);
            lint_quoly_compute_power(&power.q, 3);
            quoly_mult(b.q, b.q, &product.q);
            fast_quoly_mult(&product.q, b.q);
            EXPECT_EQ(value_text(power.q), value_text(product.q));
        }
        audit.expect_unchanged("known fractions");
    }
}

TEST_F(NormalForm, NoDenominatorLiesInAFieldWithoutATower)
{
    in_view live(view_digits);
    quotient a(x, x_plus_1);
    EXPECT_NE(report_of([&] { quoly_mod_convert(&a.q); }).find("poly invertibility failure. bad pp2"),
              std::string::npos);
    EXPECT_EQ(value_text(a.q), "{1{#1}} / {1{#1}, #1}");
}

TEST_F(NormalForm, ProductInOtherVariablesBringsTheSessionsBack)
{
    in_view live(view_digits);
    in_laurent on(1);
    pt *const names = polynames, *const pseudo = pseudo_polynames;
    six_variables other;
    value_operand a(x), b(x_plus_1), c;
    spec_quoly_mult(a.q, b.q, &c.q, other.record);
    EXPECT_EQ(value_text(c.q), "{2{#1}, 1{#1}}");
    EXPECT_TRUE(polynames == names && pseudo_polynames == pseudo && laurent == 1);
    value_operand huge("{2147483647{#1}}");
    EXPECT_EQ(error_in_view([&] { spec_quoly_mult(a.q, huge.q, &c.q, other.record); }), err_bad_exponent);
    EXPECT_TRUE(polynames == names && pseudo_polynames == pseudo && laurent == 1);
}

// Errors --------------------------------------------------------------------------------------------------

TEST_F(NormalForm, ErrorsLeaveResultAndOperandsAsTheyWere)
{
    for (const num_view v : {view_float, view_digits}) {
        in_view live(v);
        const poly_audit audit;
        {
            const quotient a(x, x_plus_1), huge("{2147483647{#1}}", "{1{#1}, #2}");
            value_operand zero("{#0}"), c("{1{#7}}"), d;
            quoly_assign(a.q, &d.q);
            EXPECT_EQ(error_in_view([&] { quoly_quot(a.q, zero.q, 0, &c.q); }), err_zero_divisor);
            EXPECT_EQ(error_in_view([&] { fast_quoly_quot(&d.q, zero.q, 0); }), err_zero_divisor);
            EXPECT_EQ(error_in_view([&] { quoly_mult(a.q, huge.q, &c.q); }), err_bad_exponent);
            EXPECT_EQ(error_in_view([&] { fast_quoly_mult(&d.q, huge.q); }), err_bad_exponent);
            EXPECT_EQ(error_in_view([&] { better_quoly_add(&d.q, huge.q); }), err_bad_exponent);
            EXPECT_EQ(value_text(a.q), value_text(d.q));
            EXPECT_EQ(value_text(c.q), "{1{#7}}");
            EXPECT_EQ(value_text(huge.q), "{2147483647{#1}} / {1{#1}, #2}");
        }
        audit.expect_unchanged("errors");
    }
}

TEST_F(NormalForm, VanishedDenominatorIsAnError)
{
    for (const num_view v : {view_float, view_digits}) {
        in_view live(v);
        const poly_audit audit;
        {
            const quotient a(x, x_plus_1);
            value_operand b(x_plus_1), c("{1{#7}}");
            EXPECT_EQ(error_in_view([&] { quoly_mod_or_div(a.q, b.q, &c.q, '|'); }), err_zero_denominator);
            EXPECT_EQ(value_text(c.q), "{1{#7}}");
            EXPECT_EQ(value_text(a.q), "{1{#1}} / {1{#1}, #1}");
        }
        audit.expect_unchanged("vanished denominator");
    }
}

TEST_F(NormalForm, DivisionByZeroGivesOneWhereTheErrorComesBack)
{
    for (const ring &numbers : {ring{view_float, 101, 0}, ring{view_modular, 101, 1}, ring{view_word, 101, 0},
                                ring{view_digits, 101, 0}}) {
        const in_ring live(numbers);
        const std::int32_t level = levelcount;
        value_operand a(x), zero("{#0}"), c, d("{#0}");
        levelcount = 2;
        EXPECT_EQ(error_in_view([&] {
                      quoly_quot(a.q, zero.q, 0, &c.q);
                      fast_quoly_quot(&a.q, zero.q, 0);
                      quoly_reciprocal(&d.q);
                  }),
                  0);
        levelcount = level;
        EXPECT_EQ(value_text(c.q), "{#1}");
        EXPECT_EQ(value_text(a.q), "{#1}");
        EXPECT_EQ(value_text(d.q), "{#1}");
    }
}

TEST_F(NormalForm, NonUnitsModuloACompositeAreErrors)
{
    in_view live(view_modular, 100);
    const poly_audit audit;
    {
        value_operand a(x), ten("{#10}"), b("{1{#10}, #1}"), c("{1{#7}}");
        EXPECT_EQ(error_in_view([&] { quoly_quot(a.q, ten.q, 0, &c.q); }), err_no_inverse);
        EXPECT_EQ(error_in_view([&] { quoly_quot(ten.q, b.q, 0, &c.q); }), err_no_inverse);
        EXPECT_EQ(error_in_view([&] { lint_quoly_recip(&ten.q); }), err_no_inverse);
        EXPECT_EQ(value_text(c.q), "{1{#7}}");
        EXPECT_EQ(value_text(a.q), x);
    }
    audit.expect_unchanged("non-units");
}

}  // namespace
