// Gcds as new problems: shapes that need no method, levels that neither operand has, long contents, negative
// exponents, one value.
#include "gcd/entries.h"
#include <gtest/gtest.h>
#include "gcd/polygcd.h"
#include "poly/content.h"
#include "poly/mul.h"
#include "quoly/mul.h"
#include "quoly/power.h"
#include "session/errnums.h"
#include "tests/support/divisions.h"
#include "tests/support/gcds.h"
#include "tests/support/quolys.h"
#include "tests/support/settings.h"

using namespace kelmar;
using namespace kelmar_test;

namespace {

struct Entries : testing::Test {
    six_in_force names;
    Entries()
    {
        load_primes();
    }
    std::string gcd_of(const char *a, const char *b)
    {
        poly_operand p(poly_of_text(a)), q(poly_of_text(b)), g;
        Lpolygcd(&p.p, &q.p, &g.p, 1, names.names());
        EXPECT_EQ(poly_text(p.p), a);
        EXPECT_EQ(poly_text(q.p), b);
        return poly_text(g.p);
    }
};

TEST_F(Entries, PowersOfTwoVariables)
{
    for (const num_view v : {view_float, view_digits}) {
        in_view live(v);
        EXPECT_EQ(gcd_of("{2{1{#1}}}", "{1{2{#1}}}"), "{1{1{#1}}}");
        EXPECT_EQ(gcd_of("{1{2{#1}}}", "{2{1{#1}}}"), "{1{1{#1}}}");
        EXPECT_EQ(gcd_of("{2{1{#1}}}", "{0{2{#1}}}"), "{0{1{#1}}}");
    }
}

TEST_F(Entries, LevelsThatBothLackComeBackAsWrappers)
{
    for (const num_view v : {view_float, view_digits}) {
        in_view live(v);
        EXPECT_EQ(gcd_of("{0{0{0{2{#1}, #-1}}}}", "{0{0{0{2{#1}, 1{#2}, #1}}}}"), "{0{0{0{1{#1}, #1}}}}");
        EXPECT_EQ(gcd_of("{0{0{2{#1}, #-1}}}", "{0{0{1{#1}, #7}}}"), "{#1}") << "a number has no wrappers";
    }
}

TEST_F(Entries, ZeroGivesTheOtherOneNormalised)
{
    {
        in_view live(view_digits);
        EXPECT_EQ(gcd_of("{#0}", "{1{1{#-2}}, #4}"), "{1{1{#2}}, #-4}");
        EXPECT_EQ(gcd_of("{1{1{#-2}}, #4}", "{#0}"), "{1{1{#2}}, #-4}");
        EXPECT_EQ(gcd_of("{#0}", "{#0}"), "{#0}");
    }
    for (const ring &numbers : {ring{view_float, 101, 0}, ring{view_modular, 101, 1}}) {
        const in_ring live(numbers);
        EXPECT_EQ(gcd_of("{#0}", "{1{1{#2}}, #4}"), "{1{1{#1}}, #2}");
        EXPECT_EQ(gcd_of("{#0}", "{#0}"), "{#0}");
    }
}

// Behind the power of x that is taken out there may be a number left, or what is free of x: long operands,
// over x^3 and over (y + 1) x^3.
TEST_F(Entries, WhatAPowerLeavesMayBeSimple)
{
    const char *const operand = "{6{1{#1}, #1}, 5{3{#2}, 2{#2}}, 4{2{#5}, 1{#5}}, 3{4{#1}, 3{#1}}, "
                                "2{1{#3}, #3}, 1{2{#1}, 1{#1}}}";
    for (const ring &numbers :
         {ring{view_digits, 101, 0}, ring{view_float, 101, 0}, ring{view_modular, 101, 1}}) {
        const in_ring live(numbers);
        EXPECT_EQ(gcd_of(operand, "{3{#1}}"), "{1{#1}}");
        const exits_since exits;
        EXPECT_EQ(gcd_of(operand, "{3{1{#1}, #1}}"), "{1{1{#1}, #1}}");
        EXPECT_EQ(gcd_of("{3{1{#1}, #1}}", operand), "{1{1{#1}, #1}}");
        EXPECT_EQ(exits.count(exit_coefficients), 2) << exits.text();
    }
}

// Doubles in one variable have Euclid's algorithm, however many other variables there are.
TEST_F(Entries, DoublesInOneVariableStayThere)
{
    in_view live(view_float);
    poly_operand a(poly_of_text("{2{#1}, #-1}")), b(poly_of_text("{1{#1}, #-1}")), g;
    a.p->next->num->real = -0.01;
    b.p->next->num->real = -0.1;
    const exits_since exits;
    Lpolygcd(&a.p, &b.p, &g.p, 1, names.names());
    EXPECT_EQ(poly_text(g.p), poly_text(b.p));
    EXPECT_EQ(exits.count(exit_one_variable), 1) << exits.text();
}

// A divisor that comes out late is made monic like any other: (2 x + y)(x + z), 2 x + y.
TEST_F(Entries, LateDivisorsAreMonic)
{
    in_view live(view_modular, 101);
    mod_is_prime = 1;
    const exits_since exits;
    EXPECT_EQ(gcd_of("{2{#2}, 1{1{#1}, 0{1{#2}}}, 0{1{1{#1}}}}", "{1{#2}, 0{1{#1}}}"), "{1{#1}, 0{1{#51}}}");
    EXPECT_EQ(exits.count(exit_late_trial), 1) << exits.text();
}

// Negative exponents make powers of inner variables units, too; a gcd has only those that both operands have.
TEST_F(Entries, PowersAreNoUnitsWithinAGcd)
{
    const in_laurent on(1);
    const char *const forms =
        "{5{#1}, 4{1{#5}, #5}, 3{2{#10}, 1{#20}, #10}, 2{3{#10}, 2{#30}, 1{#30}, #10}, "
        "1{4{#5}, 3{#20}, 2{#30}, 1{#20}, #5}, 0{5{#1}, 4{#5}, 3{#10}, 2{#10}, 1{#5}, #1}}";
    for (const ring &numbers : {ring{view_digits, 101, 0}, ring{view_modular, 101, 1}}) {
        const in_ring live(numbers);
        EXPECT_EQ(gcd_of(forms, "{1{2{#1}}, 0{3{#1}, 2{#1}}}"), "{1{#1}, 0{1{#1}, #1}}");
    }
}

// p times 3^e.
polynode *with_content(const char *p, std::int32_t e)
{
    value_operand v(p), power("{#3}");
    raise_to_power(&power.q, e);
    fast_quoly_mult(&v.q, power.q);
    polynode *product = nullptr;
    quoly_to_poly(v.q, &product);
    return product;
}

TEST_F(Entries, ContentsOfThousandsOfDigits)
{
    in_view live(view_digits);
    const poly_audit audit;
    {
        poly_operand a(with_content("{1{1{#2}, #2}, 0{1{#2}, #2}}", 12000)),
            b(with_content("{2{1{#-5}, #-5}, 0{1{#5}, #5}}", 9000)),
            wanted(with_content("{1{1{#1}, #1}, 0{1{#1}, #1}}", 9000)), g;
        Lpolygcd(&a.p, &b.p, &g.p, 1, names.names());
        EXPECT_TRUE(poly_equal(g.p, wanted.p));
        Lpolygcd3(&b.p, &g.p, names.names());
        EXPECT_FALSE(neg_leading_term(g.p));
        poly_inplace(g.p);
        EXPECT_TRUE(poly_equal(g.p, b.p));
    }
    audit.expect_unchanged("contents");
}

TEST_F(Entries, OneValueIsNormalised)
{
    in_view live(view_digits);
    value_operand p("{1{#-6}, #4}"), n("{#-6}"), g;
    gcd_0_poly(&p.q, &g.q);
    EXPECT_EQ(value_text(g.q), "{1{#6}, #-4}");
    gcd_0_poly(&n.q, &g.q);
    EXPECT_EQ(value_text(g.q), "{#6}");
    p.q->den = poly_of_text("{2{#1}, #1}");
    EXPECT_EQ(error_in_view([&] { gcd_0_poly(&p.q, &g.q); }), err_gcd_denominator);
    in_view words(view_modular, 101);
    mod_is_prime = 1;
    value_operand q("{1{#7}, #14}"), r("{#5}");
    gcd_0_poly(&q.q, &g.q);
    EXPECT_EQ(value_text(g.q), "{1{#1}, #2}");
    gcd_0_poly(&r.q, &g.q);
    EXPECT_EQ(value_text(g.q), "{#1}");
}

}  // namespace
