// Products of scalar values: both kinds, every view, aliases, against the flat form.
#include "quoly/mul.h"
#include <gtest/gtest.h>
#include "poly/variables.h"
#include "tests/support/by_build.h"
#include "tests/support/mul_operands.h"
#include "tests/support/quolys.h"
#include "tests/support/variables.h"
#include "tests/support/views.h"

using namespace kelmar;
using namespace kelmar_test;

namespace {

constexpr int rounds = by_build(150, 1500);

constexpr std::int32_t vars = 3;

struct QuolyMul : testing::Test {
    const adjoined variables{"x", "y", "z"};
};

polynode *drawn(test_random *r, num_view v)
{
    poly_shape shape;
    shape.vars = vars;
    shape.degree = 3;
    shape.digits = v == view_digits ? 3 : 1;
    return random_poly(r, shape);
}

void expect_value(const quolynode *q, const std::string &wanted, const char *what)
{
    EXPECT_EQ(quoly_iszero(q) ? "{#0}" : value_text(q), wanted) << what;  // 0 times -1 is -0 in floats
    EXPECT_TRUE(quoly_is_normal(q, vars)) << what << " " << value_text(q);
}

TEST_F(QuolyMul, FlavoursAgreeInEveryView)
{
    test_random r;
    make_small_field();
    for (num_view v : all_views) {
        in_view live(v, 7);
        for (int round = 0; round < rounds; ++round) {
            poly_audit audit;
            {
                poly_operand p(drawn(&r, v)), q(drawn(&r, v)), wanted(reference_product(p.p, q.p, vars));
                const std::string text = poly_text(wanted.p);
                value_operand a, b, c("{1{#1}}");
                polynode *copy = nullptr;
                poly_assign(p.p, &copy);
                poly_to_quoly(&copy, &a.q);
                poly_assign(q.p, &copy);
                poly_to_quoly(&copy, &b.q);
                quoly_mult(a.q, b.q, &c.q);
                expect_value(c.q, text, "product");
                EXPECT_EQ(value_text(a.q), poly_text(p.p));
                EXPECT_EQ(value_text(b.q), poly_text(q.p));
                fast_quoly_mult(&a.q, b.q);
                expect_value(a.q, text, "in place");
                EXPECT_EQ(value_text(b.q), poly_text(q.p));
            }
            audit.expect_unchanged("products");
            if (HasFailure()) FAIL() << "seed " << r.seed;
        }
    }
}

TEST_F(QuolyMul, OneValueAsBothOperandsAndResult)
{
    test_random r;
    in_view live(view_digits);
    for (int round = 0; round < rounds; ++round) {
        poly_audit audit;
        {
            poly_operand p(drawn(&r, view_digits)), square(reference_product(p.p, p.p, vars));
            value_operand a, b;
            polynode *copy = nullptr;
            poly_assign(p.p, &copy);
            poly_to_quoly(&copy, &a.q);
            quoly_assign(a.q, &b.q);
            quoly_mult(a.q, a.q, &a.q);
            expect_value(a.q, poly_text(square.p), "a * a");
            fast_quoly_mult(&b.q, b.q);
            expect_value(b.q, poly_text(square.p), "a * a in place");
        }
        audit.expect_unchanged("squares");
        if (HasFailure()) FAIL() << "seed " << r.seed;
    }
}

TEST_F(QuolyMul, ByZeroIsThePlainNumberZero)
{
    in_view live(view_float);
    value_operand zero("{#0}"), p("{1{#1}, #1}");
    fast_quoly_mult(&p.q, zero.q);
    EXPECT_TRUE(quoly_iszero(p.q));
}

TEST_F(QuolyMul, UnderflowLeavesNoZeroTerm)
{
    in_view live(view_float);
    value_operand tiny("{#1e-200}"), p("{1{#1e-200}, #1}"), q("{1{#1e-200}}");
    quoly_mult(p.q, tiny.q, &p.q);
    EXPECT_EQ(value_text(p.q), "{#9.9999999999999998e-201}");
    quoly_mult(q.q, tiny.q, &q.q);
    EXPECT_TRUE(quoly_iszero(q.q));
}

}  // namespace
