// Products against FLINT: long integers in several variables, residues in one.
#include <gtest/gtest.h>
#include "poly/mul.h"
#include "poly/mul_flat.h"
#include "poly/mul_list.h"
#include "poly/power.h"
#include "tests/support/flint_polys.h"
#include "tests/support/mul_operands.h"
#include "tests/support/views.h"

using namespace kelmar;
using namespace kelmar_test;

namespace {

void expect_flint_product(polynode *a, polynode *b, std::int32_t vars)
{
    fmpz_mpoly_ctx_t ctx;
    fmpz_mpoly_ctx_init(ctx, vars, ORD_LEX);
    fmpz_mpoly_t f, g;
    fmpz_mpoly_init(f, ctx);
    fmpz_mpoly_init(g, ctx);
    poly_to_flint(a, f, ctx);
    poly_to_flint(b, g, ctx);
    fmpz_mpoly_mul(f, f, g, ctx);
    poly_operand expected(poly_from_flint(f, ctx)), c;
    poly_mult(a, b, &c.p, nilpol);
    EXPECT_TRUE(poly_is_normal(c.p, vars));
    EXPECT_EQ(poly_text(c.p), poly_text(expected.p));
    fmpz_mpoly_clear(f, ctx);
    fmpz_mpoly_clear(g, ctx);
    fmpz_mpoly_ctx_clear(ctx);
}

TEST(PolyMultOracle, LongIntegersInOneToSixVariables)
{
    test_random r;
    in_view live(view_digits);
    for (std::int32_t flat : {12, never}) {
        const kept_word cut(&flat_mult_cut, flat);
        for (std::int32_t vars = 1; vars <= 6; ++vars) {
            for (int k = 0; k < 60; ++k) {
                poly_shape shape;
                shape.vars = vars;
                shape.terms = 60;
                shape.degree = vars == 1 ? 90 : 5;
                shape.digits = 1 + static_cast<std::int32_t>(r.below(6));
                poly_operand a(random_poly(&r, shape)), b(random_poly(&r, shape));
                expect_flint_product(a.p, b.p, vars);
                expect_flint_product(a.p, a.p, vars);
                if (HasFailure()) FAIL() << "seed " << r.seed;
            }
        }
    }
}

// Lengths of coefficients on both sides of what flat arrays take; sparse, and dense enough for transforms.
TEST(PolyMultOracle, LongIntegersOfEveryLength)
{
    test_random r;
    in_view live(view_digits);
    for (const std::int32_t digits : {3, 5, 8, 11, 14, 22, 45, 46, 60}) {
        for (const std::int32_t degree : {30, 200, 100000}) {
            poly_shape shape;
            shape.vars = degree == 30 ? 2 : 1;
            shape.terms = 500;
            shape.degree = degree;
            shape.digits = digits;
            poly_operand a(random_poly(&r, shape)), b(random_poly(&r, shape));
            expect_flint_product(a.p, b.p, shape.vars);
            expect_flint_product(a.p, a.p, shape.vars);
            if (HasFailure()) FAIL() << "seed " << r.seed << ", " << digits << " digits";
        }
    }
}

TEST(PolyMultOracle, LongListsOfLongIntegersByHalves)
{
    test_random r;
    in_view live(view_digits);
    const kept_word cut(&flat_mult_cut, never);
    poly_shape shape;
    shape.terms = 2000;
    shape.degree = 900;
    shape.digits = 9;
    for (int k = 0; k < 3; ++k) {
        poly_operand a(random_poly(&r, shape)), b(random_poly(&r, shape));
        expect_flint_product(a.p, b.p, 1);
    }
}

TEST(PolyMultOracle, ThePowerOfASumAndItsSuccessor)
{
    in_view live(view_digits);
    poly_operand f(poly_of_text("{1{#1}, 0{1{#1}, 0{1{#1}, 0{1{#1}, #1}}}}")), g;
    const kept_word variables(&number_polys, 4);
    compute_power(&f.p, 9, nilpol);
    poly_assign(f.p, &g.p);
    polynode *constant = g.p;
    while (constant->next || !constant->isnum) constant = constant->next ? constant->next : constant->coef;
    setvalue(2, constant->num);
    expect_flint_product(f.p, g.p, 4);
}

TEST(PolyMultOracle, ResiduesInOneVariable)
{
    test_random r;
    for (std::int32_t m : {2, 3, 36, 65521, 65537, 2147483629, 2147483646}) {
        in_view live(view_modular, m);
        for (std::int32_t flat : {12, never}) {
            const kept_word cut(&flat_mult_cut, flat);
            for (std::int32_t n : {5, 10, 31, 60, 150, 250, 1500, 13000}) {
                if (n == 13000 && (flat == never || m != 2147483629)) continue;
                poly_operand a(dense_poly(&r, 0, n)), b(dense_poly(&r, n / 3, 2 * n)), c;
                nmod_poly_t f, g;
                nmod_poly_init(f, static_cast<mp_limb_t>(m));
                nmod_poly_init(g, static_cast<mp_limb_t>(m));
                poly_to_flint(a.p, f);
                poly_to_flint(b.p, g);
                nmod_poly_mul(f, f, g);
                poly_operand expected(poly_from_flint(f));
                poly_mult(a.p, b.p, &c.p, nilpol);
                EXPECT_TRUE(poly_is_normal(c.p, 1));
                EXPECT_EQ(poly_text(c.p), poly_text(expected.p)) << n << " modulo " << m;
                nmod_poly_clear(f);
                nmod_poly_clear(g);
            }
        }
    }
}

}  // namespace
