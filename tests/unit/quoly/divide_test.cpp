// Quotients of scalar values: polynomials by numbers in every view, errors, what is declined.
#include "quoly/divide.h"
#include <gtest/gtest.h>
#include "quoly/mul.h"
#include "session/levels.h"
#include "session/report.h"
#include "tests/support/by_build.h"
#include "tests/support/quolys.h"
#include "tests/support/views.h"

using namespace kelmar;
using namespace kelmar_test;

namespace {

constexpr int rounds = by_build(200, 3000);

std::string quotient_text(const char *a, const char *b)
{
    value_operand p(a), q(b), c("{2{#1}}");
    quoly_quot(p.q, q.q, 0, &c.q);
    fast_quoly_quot(&p.q, q.q, 0);
    EXPECT_EQ(value_text(p.q), value_text(c.q));
    EXPECT_TRUE(quoly_is_normal(c.q, 3));
    return value_text(c.q);
}

TEST(QuolyDivide, FloatCoefficientsAreDividedOneByOne)
{
    in_view live(view_float);
    poly_audit audit;
    EXPECT_EQ(quotient_text("{1{#49}, #1}", "{#49}"), "{1{#1}, #0.020408163265306121}");
    EXPECT_EQ(quotient_text("{2{1{#3}, #6}, #9}", "{#-3}"), "{2{1{#-1}, #-2}, #-3}");
    audit.expect_unchanged("float");
}

TEST(QuolyDivide, CoefficientThatVanishesIsDropped)
{
    in_view live(view_float);
    EXPECT_EQ(quotient_text("{1{#1e-200}, #1e200}", "{#1e200}"), "{#1}");
    EXPECT_EQ(quotient_text("{1{#1e-200}}", "{#1e200}"), "{#0}");
    in_view words(view_word);
    EXPECT_EQ(quotient_text("{2{#7}, 1{1{#2}, #1}, #5}", "{#3}"), "{2{#2}, #1}");
}

TEST(QuolyDivide, WholeNumbersThatDoNotDivideStayBelow)
{
    in_view live(view_digits);
    poly_audit audit;
    EXPECT_EQ(quotient_text("{1{#6}, #-4}", "{#2}"), "{1{#3}, #-2}");
    EXPECT_EQ(quotient_text("{1{#6}, #5}", "{#2}"), "{1{#6}, #5} / {#2}");
    EXPECT_EQ(quotient_text("{1{#6}, #4}", "{#-4}"), "{1{#-3}, #-2} / {#2}");
    audit.expect_unchanged("exact");
}

TEST(QuolyDivide, ModuloAPrimeQuotientTimesDivisorIsTheDividend)
{
    test_random r;
    in_view live(view_modular, 101);
    for (int round = 0; round < rounds; ++round) {
        poly_audit audit;
        {
            poly_shape shape;
            shape.vars = 2;
            value_operand p(random_poly(&r, shape)), n, c;
            quoly_set(1 + static_cast<std::int32_t>(r.below(100)), &n.q);
            quoly_quot(p.q, n.q, 0, &c.q);
            EXPECT_TRUE(quoly_is_normal(c.q, 2));
            fast_quoly_mult(&c.q, n.q);
            EXPECT_EQ(value_text(c.q), value_text(p.q)) << "seed " << r.seed;
        }
        audit.expect_unchanged("modular");
        if (HasFailure()) return;
    }
}

TEST(QuolyDivide, ModuloACompositeTheDivisorMustBeInvertible)
{
    in_view live(view_modular, 100);
    value_operand p("{1{#3}}"), ten("{#10}"), three("{#3}");
    EXPECT_EQ(error_in_view([&] { fast_quoly_quot(&p.q, ten.q, 0); }), err_no_inverse);
    EXPECT_EQ(value_text(p.q), "{1{#3}}");
    fast_quoly_quot(&p.q, three.q, 0);
    EXPECT_EQ(value_text(p.q), "{1{#1}}");
}

TEST(QuolyDivide, ByZeroIsAnError)
{
    in_view live(view_float);
    value_operand p("{1{#3}}"), zero("{#0}"), c;
    EXPECT_EQ(error_in_view([&] { quoly_quot(p.q, zero.q, 0, &c.q); }), err_zero_divisor);
    EXPECT_EQ(value_text(p.q), "{1{#3}}");
}

TEST(QuolyDivide, WholeDivisionGivesQuotientAndRemainder)
{
    in_view live(view_float);
    value_operand p("{2{#1}, #1}"), q("{1{#1}, #-1}"), quotient, remainder;
    quoly_mod_or_div(p.q, q.q, &quotient.q, '\\');
    quoly_mod_or_div(p.q, q.q, &remainder.q, '|');
    EXPECT_EQ(value_text(quotient.q), "{1{#1}, #1}");
    EXPECT_EQ(value_text(remainder.q), "{#2}");
    EXPECT_TRUE(remainder.q->is_num);
}

}  // namespace
