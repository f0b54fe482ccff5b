// Derivatives of scalar values.
#include "quoly/derivative.h"
#include <gtest/gtest.h>
#include "quoly/add.h"
#include "quoly/divide.h"
#include "quoly/mul.h"
#include "tests/support/divisions.h"
#include "tests/support/quolys.h"
#include "tests/support/views.h"

using namespace kelmar;
using namespace kelmar_test;

namespace {

// The variables that gcds ask for.
const six_in_force names;

std::string derivative_text(const char *text, const char *den, std::int32_t level, std::int32_t order)
{
    value_operand q(text), d(den);
    quoly_quot(q.q, d.q, 0, &q.q);
    differentiate(&q.q, level, order);
    return value_text(q.q);
}

TEST(Differentiate, PolynomialsInEachVariable)
{
    for (num_view v : {view_float, view_modular, view_word, view_digits}) {
        in_view live(v);
        EXPECT_EQ(derivative_text("{3{2{#1}}, 0{4{#1}}}", "{#1}", 1, 1), "{2{2{#3}}}");
        EXPECT_EQ(derivative_text("{3{2{#1}}, 0{4{#1}}}", "{#1}", 2, 1), "{3{1{#2}}, 0{3{#4}}}");
        EXPECT_EQ(derivative_text("{3{2{#1}}, 0{4{#1}}}", "{#1}", 2, 2), "{3{#2}, 0{2{#12}}}");
        EXPECT_EQ(derivative_text("{3{2{#1}}}", "{#1}", 3, 1), "{#0}");
        EXPECT_EQ(derivative_text("{3{#1}}", "{#1}", 1, 0), "{3{#1}}");
        EXPECT_EQ(derivative_text("{#5}", "{#1}", 1, 1), "{#0}");
    }
}

TEST(Differentiate, AFractionMayBecomeAPolynomialModuloAPrime)
{
    in_view live(view_modular, 3);
    EXPECT_EQ(derivative_text("{5{#1}, #1}", "{3{#1}}", 1, 1), "{1{#2}}");
    EXPECT_EQ(derivative_text("{5{#1}, #1}", "{3{#1}}", 1, 2), "{#2}");
    EXPECT_EQ(derivative_text("{5{#1}, #1}", "{3{#1}}", 1, 3), "{#0}");
}

TEST(Differentiate, FractionsByTheQuotientRuleInLowestTerms)
{
    in_view live(view_digits);
    EXPECT_EQ(derivative_text("{#1}", "{1{#1}}", 1, 1), "{#-1} / {2{#1}}");
    EXPECT_EQ(derivative_text("{#1}", "{1{#1}}", 1, 3), "{#-6} / {4{#1}}");
    EXPECT_EQ(derivative_text("{1{#1}, #1}", "{1{#1}, #-1}", 1, 1), "{#-2} / {2{#1}, 1{#-2}, #1}");
    EXPECT_EQ(derivative_text("{2{#1}}", "{#3}", 1, 1), "{1{#2}} / {#3}");
    EXPECT_EQ(derivative_text("{2{#1}}", "{#2}", 1, 1), "{1{#1}}");
    EXPECT_EQ(derivative_text("{#1}", "{1{#1}}", 2, 1), "{#0}");
    EXPECT_EQ(derivative_text("{#2}", "{#3}", 1, 1), "{#0}");
}

TEST(Differentiate, ThePowerThatTheModulusDividesVanishes)
{
    in_view live(view_modular, 5);
    EXPECT_EQ(derivative_text("{5{#1}}", "{#1}", 1, 1), "{#0}");
    EXPECT_EQ(derivative_text("{6{#1}}", "{#1}", 1, 2), "{#0}");
    EXPECT_EQ(derivative_text("{7{#1}}", "{#1}", 1, 2), "{5{#2}}");
}

TEST(Differentiate, InATableFieldEvenPowersAndHigherOrdersVanish)
{
    in_view live(view_field);
    EXPECT_EQ(derivative_text("{2{#1}}", "{#1}", 1, 1), "{#0}");
    EXPECT_EQ(derivative_text("{3{#7}}", "{#1}", 1, 1), "{2{#7}}");
    EXPECT_EQ(derivative_text("{3{#7}}", "{#1}", 1, 2), "{#0}");
}

TEST(Differentiate, TheProductRuleHolds)
{
    test_random r;
    for (num_view v : {view_modular, view_word, view_digits}) {
        in_view live(v);
        const poly_audit audit;
        for (int k = 0; k < 100; ++k) {
            poly_shape shape;
            shape.vars = 3;
            shape.terms = 6;
            value_operand a(random_poly(&r, shape)), b(random_poly(&r, shape)), product, da, db;
            const std::int32_t level = 1 + static_cast<std::int32_t>(r.below(3));
            quoly_mult(a.q, b.q, &product.q);
            quoly_differen_once(&product.q, level);
            quoly_assign(a.q, &da.q);
            quoly_assign(b.q, &db.q);
            quoly_differen_once(&da.q, level);
            quoly_differen_once(&db.q, level);
            fast_quoly_mult(&da.q, b.q);
            fast_quoly_mult(&db.q, a.q);
            quoly_add(da.q, db.q, &da.q);
            ASSERT_EQ(value_text(product.q), value_text(da.q)) << "seed " << r.seed;
        }
        audit.expect_unchanged("derivatives");
    }
}

}  // namespace
