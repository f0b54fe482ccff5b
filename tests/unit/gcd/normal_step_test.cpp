// Steps of a subresultant sequence where the degree falls by one: the same as the full pseudo-remainder
// divided by what the theory knows to divide it.
#include "gcd/normal_step.h"
#include <gtest/gtest.h>
#include "numbers/dispatch.h"
#include "poly/div_exact.h"
#include "poly/div_pseudo.h"
#include "poly/mul.h"
#include "tests/support/by_build.h"
#include "tests/support/divisions.h"

using namespace kelmar;
using namespace kelmar_test;

namespace {

struct GcdNormalStep : testing::Test {
    six_in_force names;
    test_random r;

    // A polynomial of that degree in the outer variable; random ones have any.
    polynode *of_degree(std::int32_t degree, const poly_shape &coefficients)
    {
        polynode *p = nullptr;
        polynode **end = &p;
        for (std::int32_t e = degree; e >= 0; --e) {
            polynode *c = random_poly(&r, coefficients);
            while (e == degree && poly_iszero(c)) {
                free_poly(&c);
                c = random_poly(&r, coefficients);
            }
            if (poly_iszero(c)) {
                free_poly(&c);
                continue;
            }
            make_monomial(end, e, c);
            end = &(*end)->next;
        }
        return p;
    }

    // The same step in the plain way.
    polynode *plain_step(polynode *u, polynode *v, polynode *h)
    {
        polynode *rest = nullptr;
        pseudo_div_no_q(u, v, &rest, names.names(), 1);
        if (!poly_iszero(rest)) {
            EXPECT_TRUE(divide_coefficients(&rest, u->coef, names.first()));
            EXPECT_TRUE(divide_coefficients(&rest, h, names.first()));
        }
        return rest;
    }

    // Walk down a sequence that starts with u, v, of degrees one apart.
    int steps_of_sequence(polynode *first, polynode *second)
    {
        poly_operand u(copy_poly(first)), v(copy_poly(second)), h(poly_of_text("{#1}")), rest;
        int steps = 0;
        pseudo_div_no_q(u.p, v.p, &rest.p, names.names(), 1);
        while (!poly_iszero(rest.p) && rest.p->exp > 0 && rest.p->exp == v.p->exp - 1) {
            free_poly(&u.p);
            u.p = v.p;
            v.p = rest.p;
            rest.p = nullptr;
            free_poly(&h.p);
            h.p = copy_poly(u.p->coef);
            if (ground_field() && is_constant(v.p->coef)) break;  // there a remainder is not scaled
            poly_operand expected(plain_step(u.p, v.p, h.p));
            const std::string text_u = poly_text(u.p), text_v = poly_text(v.p);
            EXPECT_EQ(normal_remainder(u.p, v.p, h.p, &rest.p, names.first()), 1);
            EXPECT_EQ(poly_text(rest.p), poly_text(expected.p));
            expect_normal(rest.p, 3, "remainder");
            EXPECT_EQ(poly_text(u.p), text_u);
            EXPECT_EQ(poly_text(v.p), text_v);
            ++steps;
        }
        return steps;
    }
};

TEST_F(GcdNormalStep, IsThePseudoRemainderDivided)
{
    SCOPED_TRACE(r.seed);
    const ring rings[] = {{view_digits, 101, 0}, {view_modular, 65521, 1}, {view_modular, 2147483629, 1}};
    for (const ring &each : rings) {
        in_ring live(each);
        int steps = 0;
        for (int i = 0; i < by_build(10, 40); ++i) {
            const poly_shape shape = {1 + i % 2, 4, 2, 0, 1 + i % 3};
            poly_operand u(of_degree(4, shape)), v(of_degree(3, shape));
            steps += steps_of_sequence(u.p, v.p);
        }
        EXPECT_GT(steps, by_build(3, 30));
    }
}

// A common factor: the sequence ends with the remainder zero.
TEST_F(GcdNormalStep, EndsWithZero)
{
    in_view live(view_digits);
    SCOPED_TRACE(r.seed);
    for (int i = 0; i < by_build(5, 30); ++i) {
        const poly_shape shape = {1, 3, 2, 0, 1};
        poly_operand g(of_degree(1, shape)), u(of_degree(3, shape)), v(of_degree(2, shape)), gu, gv;
        poly_mult(g.p, u.p, &gu.p, names.first());
        poly_mult(g.p, v.p, &gv.p, names.first());
        steps_of_sequence(gu.p, gv.p);
    }
}

// u and v are no neighbours in any sequence.
TEST_F(GcdNormalStep, WhatDoesNotDivideIsTold)
{
    in_view live(view_digits);
    poly_operand u(poly_of_text("{3{1{#1}, #7}, 2{#1}, 1{1{#3}}, #1}")),
        v(poly_of_text("{2{1{#1}, #2}, 1{#5}, 0{1{#1}, #1}}")), h(poly_of_text("{1{#1}, #7}")), rest;
    EXPECT_EQ(normal_remainder(u.p, v.p, h.p, &rest.p, names.first()), 0);
    EXPECT_FALSE(poly_iszero(rest.p));
}

TEST_F(GcdNormalStep, CoefficientsAreDivided)
{
    in_view live(view_digits);
    poly_operand p(poly_of_text("{2{2{#2}, 1{#2}}, 1{1{#4}}}")), y(poly_of_text("{1{#2}}")),
        two(poly_of_text("{#2}")), seven(poly_of_text("{1{#1}, #7}"));
    EXPECT_EQ(divide_coefficients(&p.p, two.p, names.first()), 1);
    EXPECT_EQ(poly_text(p.p), "{2{2{#1}, 1{#1}}, 1{1{#2}}}");
    EXPECT_EQ(divide_coefficients(&p.p, seven.p, names.first()), 0);
    EXPECT_EQ(poly_text(p.p), "{#1}");
    poly_operand q(poly_of_text("{2{2{#2}, 1{#2}}, 1{1{#4}}}"));
    EXPECT_EQ(divide_coefficients(&q.p, y.p, names.first()), 1);
    EXPECT_EQ(poly_text(q.p), "{2{1{#1}, #1}, 1{#2}}");
}

}  // namespace
