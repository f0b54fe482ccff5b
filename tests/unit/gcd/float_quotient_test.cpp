// Gcds and quotients of doubles by values: balanced variables, quotients on a grid, cofactors, coprime pairs.
#include <gtest/gtest.h>
#include <cmath>
#include "gcd/balance.h"
#include "gcd/float_cofactor.h"
#include "gcd/float_images.h"
#include "gcd/float_quotient.h"
#include "gcd/polygcd.h"
#include "poly/add.h"
#include "poly/div_exact.h"
#include "poly/mul.h"
#include "tests/support/divisions.h"
#include "tests/support/polys.h"
#include "tests/support/variables.h"

using namespace kelmar;
using namespace kelmar_test;

namespace {

class FloatValues : public ::testing::Test {
protected:
    in_view live{view_float};
    const adjoined variables{"x", "y"};
};

// x + b y + c
polynode *form(double b, double c)
{
    polynode *p = nullptr, *x = nullptr, *y = nullptr, *n = nullptr;
    base_poly(&x, 1);
    base_poly(&y, 2);
    poly_set(1, &n);
    n->num->real = b;
    poly_mult(y, n, &y, polynames);
    n->num->real = c;
    poly_add(x, y, &p);
    better_poly_add(p, n, &p);
    for (polynode **q : {&x, &y, &n}) free_poly(q);
    return p;
}

// The product of powers of forms.
struct factor {
    double b, c;
    int power;
};

polynode *product_of(std::initializer_list<factor> factors)
{
    polynode *p = nullptr;
    poly_set(1, &p);
    for (const factor &f : factors) {
        const poly_operand q(form(f.b, f.c));
        for (int k = 0; k < f.power; ++k) poly_mult(p, q.p, &p, polynames);
    }
    return p;
}

double distance(const polynode *a, const polynode *b)
{
    poly_operand d;
    poly_sub(a, b, &d.p);
    return largest_magnitude(d.p) / largest_magnitude(b);
}

TEST_F(FloatValues, BalancedNumbersAreOfOneSizeAndComeBack)
{
    const poly_audit audit;
    {
        const poly_operand p(product_of({{3, 1000, 6}})), q(form(1, 1)), copy(copy_poly(p.p));
        balance s;
        ASSERT_TRUE(find_balance(p.p, q.p, &s));
        EXPECT_GT(s.shift[1], 7);
        scale_variables(p.p, &s, 1, 0);
        EXPECT_LT(largest_magnitude(p.p), 1e4 * std::ldexp(1, leading_shift(copy.p, &s)));
        scale_variables(p.p, &s, -1, 0);
        EXPECT_EQ(poly_text(p.p), poly_text(copy.p));
    }
    audit.expect_unchanged("balance");
}

TEST_F(FloatValues, OneVariableNumbersNearTheEndOfTheRangeAndTheBalancedStayAsTheyAre)
{
    balance s;
    const poly_operand one(poly_of_text("{2{#1}, #4096}")), level(form(1, 1));
    EXPECT_FALSE(find_balance(one.p, one.p, &s));
    EXPECT_FALSE(find_balance(level.p, level.p, &s));
    const poly_operand far(form(1e200, 1e250));
    EXPECT_FALSE(find_balance(far.p, level.p, &s));
}

TEST_F(FloatValues, QuotientOnAGridIsRightWhereLongDivisionLosesIt)
{
    const poly_audit audit;
    {
        const poly_operand d(form(-2.25, 7.1)),
            q(product_of({{1.3, 0.4, 5}, {-0.7, 1.1, 5}, {-2.25, 7.1, 3}}));
        poly_operand n;
        poly_mult(d.p, q.p, &n.p, polynames);
        const poly_operand found(float_quotient(n.p, d.p, polynames));
        ASSERT_TRUE(found.p);
        EXPECT_LT(distance(found.p, q.p), 1e-11);
        EXPECT_TRUE(poly_is_normal(found.p, 2));
    }
    audit.expect_unchanged("float_quotient");
}

TEST_F(FloatValues, WhatDoesNotDivideHasNoQuotientOnAGrid)
{
    const poly_audit audit;
    {
        const poly_operand n(product_of({{1, 2, 4}, {3, 1, 3}})), d(form(1, 2.1)),
            deep(product_of({{1, 2, 8}}));
        EXPECT_EQ(float_quotient(n.p, d.p, polynames), nullptr);
        EXPECT_EQ(float_quotient(n.p, deep.p, polynames), nullptr) << "the larger degree";
        const poly_operand large(product_of({{1, 2, 200}}));
        EXPECT_EQ(float_quotient(large.p, d.p, polynames), nullptr) << "no grid is that large";
    }
    audit.expect_unchanged("float_quotient");
}

TEST_F(FloatValues, CofactorIsWhatTheLargeOneLacks)
{
    const poly_audit audit;
    {
        const poly_operand a(product_of({{1.1, 0.7, 4}, {-0.3, 1.7, 3}, {2.3, 0.9, 2}})),
            b(product_of({{1.1, 0.7, 1}, {-0.3, 1.7, 1}, {0.45, -1.9, 1}})), lacking(form(0.45, -1.9));
        const poly_operand c(float_cofactor(a.p, b.p));
        ASSERT_TRUE(c.p);
        EXPECT_LT(distance(c.p, lacking.p), 1e-9);
        const poly_operand coprime(product_of({{0.45, -1.9, 1}, {-1.6, 0.35, 1}}));
        EXPECT_EQ(float_cofactor(a.p, coprime.p), nullptr);
    }
    audit.expect_unchanged("float_cofactor");
}

TEST_F(FloatValues, CoprimePairsAreToldAtPointsAndOthersNever)
{
    const poly_operand a(product_of({{1.1, 0.7, 4}, {-0.3, 1.7, 3}})), b(product_of({{0.45, -1.9, 2}})),
        c(product_of({{0.45, -1.9, 1}, {1.1, 0.7, 1}}));
    EXPECT_TRUE(coprime_at_points(a.p, b.p));
    EXPECT_TRUE(coprime_at_points(b.p, a.p));
    EXPECT_FALSE(coprime_at_points(a.p, c.p));
    EXPECT_FALSE(coprime_at_points(a.p, a.p));
}

// The gcd of products of many forms, some of them with large roots.
TEST_F(FloatValues, GcdOfLargeProductsIsFound)
{
    const poly_audit audit;
    {
        poly_operand a(product_of({{-2.25, 7.1, 3}, {1.3, 0.4, 5}, {-0.7, 1.1, 5}})),
            b(product_of({{-2.25, 7.1, 1}, {1.3, 0.4, 1}, {0.2, -3.3, 1}})), g;
        const poly_operand expected(product_of({{-2.25, 7.1, 1}, {1.3, 0.4, 1}}));
        Lpolygcd(&a.p, &b.p, &g.p, 1, polynames);
        EXPECT_LT(distance(g.p, expected.p), 1e-9) << poly_text(g.p);
    }
    audit.expect_unchanged("gcds of doubles");
}

// Three variables ------------------------------------------------------------------------------------------

class FloatForms : public ::testing::Test {
protected:
    in_view live{view_float};
    const adjoined variables{"x", "y", "z"};
};

// A x + B y + C z + D, to a power.
struct linear_form {
    double number[4];
    int power;
};

polynode *product_of_forms(std::initializer_list<linear_form> forms)
{
    polynode *p = nullptr, *n = nullptr;
    poly_set(1, &p);
    poly_set(1, &n);
    for (const linear_form &f : forms) {
        polynode *sum = nullptr;
        n->num->real = f.number[3];
        sum = copy_poly(n);
        for (int k = 0; k < 3; ++k) {
            polynode *x = nullptr;
            base_poly(&x, k + 1);
            n->num->real = f.number[k];
            poly_mult(x, n, &x, polynames);
            better_poly_add(sum, x, &sum);
            free_poly(&x);
        }
        for (int k = 0; k < f.power; ++k) poly_mult(p, sum, &p, polynames);
        free_poly(&sum);
    }
    free_poly(&n);
    return p;
}

// Numbers much alike: such a form comes close to zero on the circles, and its cube close to nothing.
constexpr double alike[4] = {7, 4, 5, 6};

polynode *power_of_alike(int power)
{
    return product_of_forms({{{alike[0], alike[1], alike[2], alike[3]}, power}});
}

polynode *many_forms(int power_of_alike)
{
    return product_of_forms({{{4, 5, 3, 2}, 2},
                             {{2, 6, 2, 9}, 2},
                             {{alike[0], alike[1], alike[2], alike[3]}, power_of_alike},
                             {{3, 4, 6, 6}, 2},
                             {{7, 4, 6, 4}, 2},
                             {{1, 8, 3, 4}, 2}});
}

TEST_F(FloatForms, DivisorMayNearlyVanishOnTheGrid)
{
    const poly_audit audit;
    {
        const poly_operand a(many_forms(3)), cube(power_of_alike(3)), wanted(many_forms(0));
        const poly_operand q(float_quotient(a.p, cube.p, polynames));
        ASSERT_TRUE(q.p);
        EXPECT_LT(distance(q.p, wanted.p), 1e-8);
        const poly_operand less(many_forms(2));
        EXPECT_EQ(float_quotient(less.p, cube.p, polynames), nullptr);
    }
    audit.expect_unchanged("float_quotient");
}

TEST_F(FloatForms, GcdOfFormsMuchAlikeIsFound)
{
    const poly_audit audit;
    {
        poly_operand a(many_forms(2)), cube(power_of_alike(3)), g, lead;
        poly_operand square(power_of_alike(2));
        const double first = square.p->coef->num->real;
        Lpolygcd(&a.p, &cube.p, &g.p, 1, polynames);
        ASSERT_EQ(g.p->exp, 2) << poly_text(g.p);
        poly_set(1, &lead.p);
        lead.p->num->real = first;
        poly_mult(g.p, lead.p, &g.p, polynames);
        EXPECT_LT(distance(g.p, square.p), 1e-9);
    }
    audit.expect_unchanged("gcds of doubles");
}

}  // namespace
