// Powers of scalar values.
#include "quoly/power.h"
#include <gtest/gtest.h>
#include "quoly/divide.h"
#include "quoly/mul.h"
#include "session/errnums.h"
#include "tests/support/divisions.h"
#include "tests/support/quolys.h"
#include "tests/support/views.h"

using namespace kelmar;
using namespace kelmar_test;

namespace {

// The variables that gcds ask for.
const six_in_force names;

// text / den to the power e, as its numerator and denominator.
std::string power_text(const char *text, const char *den, std::int32_t e)
{
    value_operand q(text), d(den);
    quoly_quot(q.q, d.q, 0, &q.q);
    raise_to_power(&q.q, e);
    return value_text(q.q);
}

TEST(RaiseToPower, ZerothPowersAreOne)
{
    for (num_view v : {view_float, view_modular, view_word, view_digits}) {
        in_view live(v);
        EXPECT_EQ(power_text("{#0}", "{#1}", 0), "{#1}");
        EXPECT_EQ(power_text("{2{#1}}", "{#1}", 0), "{#1}");
    }
}

TEST(RaiseToPower, ANegativePowerOfZeroIsAnError)
{
    for (num_view v : {view_float, view_modular, view_digits}) {
        in_view live(v);
        mod_is_prime = v == view_modular;
        value_operand zero("{#0}");
        EXPECT_EQ(error_in_view([&] { raise_to_power(&zero.q, -1); }), err_zero_divisor);
    }
}

TEST(RaiseToPower, NumbersOfAPrimeFieldCountTheExponentModuloTheOrder)
{
    in_view live(view_modular, 101);
    mod_is_prime = 1;
    EXPECT_EQ(power_text("{#2}", "{#1}", 100), "{#1}");
    EXPECT_EQ(power_text("{#2}", "{#1}", 101), "{#2}");
    EXPECT_EQ(power_text("{#0}", "{#1}", 100), "{#0}");
    EXPECT_EQ(power_text("{#2}", "{#1}", -1), "{#51}");
}

TEST(RaiseToPower, FractionsGoByParts)
{
    in_view live(view_digits);
    EXPECT_EQ(power_text("{1{#1}}", "{#2}", 3), "{3{#1}} / {#8}");
    EXPECT_EQ(power_text("{#2}", "{#3}", 3), "{#8} / {#27}");
    EXPECT_EQ(power_text("{#2}", "{#3}", -2), "{#9} / {#4}");
    EXPECT_EQ(power_text("{#-2}", "{#3}", -1), "{#-3} / {#2}");
    EXPECT_EQ(power_text("{1{#1}, #1}", "{1{#1}}", 2), "{2{#1}, 1{#2}, #1} / {2{#1}}");
    EXPECT_EQ(power_text("{1{#1}, #1}", "{1{#1}}", -1), "{1{#1}} / {1{#1}, #1}");
}

TEST(RaiseToPower, WhatOutgrowsEverythingIsRefused)
{
    in_view live(view_digits);
    value_operand n("{#3}"), p("{1{#3}, #1}"), one("{#-1}"), x("{1{#1}}");
    EXPECT_EQ(error_in_view([&] { raise_to_power(&n.q, 2000000000); }), err_bad_exponent);
    EXPECT_EQ(error_in_view([&] { raise_to_power(&p.q, 2000000000); }), err_bad_exponent);
    EXPECT_EQ(error_in_view([&] { raise_to_power(&n.q, INT32_MIN); }), err_bad_exponent);
    raise_to_power(&one.q, 2000000001);
    EXPECT_EQ(value_text(one.q), "{#-1}");
    raise_to_power(&x.q, 2000000000);
    EXPECT_EQ(value_text(x.q), "{2000000000{#1}}");
}

TEST(RaiseToPower, IsTheRepeatedProduct)
{
    test_random r;
    for (num_view v : {view_float, view_modular, view_word, view_digits}) {
        in_view live(v);
        const poly_audit audit;
        for (int k = 0; k < 50; ++k) {
            poly_shape shape;
            shape.vars = 2;
            shape.terms = 4;
            shape.degree = 3;
            value_operand q(random_poly(&r, shape)), power, product("{#1}");
            for (std::int32_t e = 0; e < 5; ++e) {
                quoly_assign(q.q, &power.q);
                raise_to_power(&power.q, e);
                ASSERT_EQ(value_text(power.q), value_text(product.q)) << "seed " << r.seed;
                quoly_mult(product.q, q.q, &product.q);
            }
        }
        audit.expect_unchanged("powers");
    }
}

}  // namespace
