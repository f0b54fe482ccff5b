// Sums, differences and multiples by a number against FLINT: long integers in one to six variables, and
// residues in one.
#include <gtest/gtest.h>
#include "poly/add.h"
#include "poly/variables.h"
#include "tests/support/by_build.h"
#include "tests/support/flint_polys.h"
#include "tests/support/views.h"

using namespace kelmar;
using namespace kelmar_test;

namespace {

constexpr int rounds = by_build(200, 3000);

class IntegerPolys : public testing::TestWithParam<std::int32_t> {};

TEST_P(IntegerPolys, SumsAndDifferencesAgree)
{
    in_view live(view_digits);
    const std::int32_t vars = GetParam();
    test_random r;
    poly_audit audit;
    fmpz_mpoly_ctx_t ctx;
    fmpz_mpoly_ctx_init(ctx, vars, ORD_LEX);
    fmpz_mpoly_t f, g, h;
    fmpz_mpoly_init(f, ctx);
    fmpz_mpoly_init(g, ctx);
    fmpz_mpoly_init(h, ctx);
    for (int k = 0; k < rounds; ++k) {
        const poly_shape shape = {vars, 1 + static_cast<std::int32_t>(r.below(60)), 4, 0, 6};
        poly_operand a(random_poly(&r, shape)), b(random_poly(&r, shape));
        poly_to_flint(a.p, f, ctx);
        poly_to_flint(b.p, g, ctx);
        polynode *sum = nullptr, *difference = nullptr;
        poly_add(a.p, b.p, &sum);
        poly_sub(a.p, b.p, &difference);
        fmpz_mpoly_add(h, f, g, ctx);
        poly_operand expected_sum(poly_from_flint(h, ctx));
        ASSERT_TRUE(poly_equal(sum, expected_sum.p)) << poly_text(a.p) << " + " << poly_text(b.p);
        fmpz_mpoly_sub(h, f, g, ctx);
        poly_operand expected_difference(poly_from_flint(h, ctx));
        ASSERT_TRUE(poly_equal(difference, expected_difference.p))
            << poly_text(a.p) << " - " << poly_text(b.p);
        ASSERT_TRUE(poly_is_normal(sum, vars));
        ASSERT_TRUE(poly_is_normal(difference, vars));

        best_poly_add(sum, difference, &sum);
        better_poly_sub(sum, a.p, &sum);
        ASSERT_TRUE(poly_equal(sum, a.p)) << "(a + b) + (a - b) - a";
        free_poly(&sum);
    }
    fmpz_mpoly_clear(f, ctx);
    fmpz_mpoly_clear(g, ctx);
    fmpz_mpoly_clear(h, ctx);
    fmpz_mpoly_ctx_clear(ctx);
    audit.expect_unchanged("sums");
}

TEST_P(IntegerPolys, MultiplesByANumberAgree)
{
    in_view live(view_digits);
    const std::int32_t vars = GetParam();
    test_random r;
    fmpz_mpoly_ctx_t ctx;
    fmpz_mpoly_ctx_init(ctx, vars, ORD_LEX);
    fmpz_mpoly_t f, h;
    fmpz_mpoly_init(f, ctx);
    fmpz_mpoly_init(h, ctx);
    mpz_t z;
    mpz_init(z);
    fmpz_t c;
    fmpz_init(c);
    for (int k = 0; k < rounds; ++k) {
        poly_operand a(random_poly(&r, {vars, 30, 4, 0, 6})), n(new_constant(random_coefficient(&r, 6))), p;
        scalar_by_poly(n.p->num, a.p, &p.p);
        number_to_mpz(n.p->num, z);
        fmpz_set_mpz(c, z);
        poly_to_flint(a.p, f, ctx);
        fmpz_mpoly_scalar_mul_fmpz(h, f, c, ctx);
        poly_operand expected(poly_from_flint(h, ctx));
        ASSERT_TRUE(poly_equal(p.p, expected.p)) << poly_text(n.p) << " * " << poly_text(a.p);
    }
    fmpz_clear(c);
    mpz_clear(z);
    fmpz_mpoly_clear(f, ctx);
    fmpz_mpoly_clear(h, ctx);
    fmpz_mpoly_ctx_clear(ctx);
}

TEST_P(IntegerPolys, ExchangedLevelsAgree)
{
    in_view live(view_digits);
    const std::int32_t vars = GetParam();
    if (vars < 2) return;
    test_random r;
    fmpz_mpoly_ctx_t ctx;
    fmpz_mpoly_ctx_init(ctx, vars, ORD_LEX);
    fmpz_mpoly_t f, h;
    fmpz_mpoly_init(f, ctx);
    fmpz_mpoly_init(h, ctx);
    std::vector<slong> places(static_cast<std::size_t>(vars));
    for (slong k = 0; k < vars; ++k) places[static_cast<std::size_t>(k)] = k < 2 ? 1 - k : k;
    for (int k = 0; k < rounds / 2; ++k) {
        poly_operand a(random_poly(&r, {vars, 40, 4, 0, 2}));
        poly_to_flint(a.p, f, ctx);
        fmpz_mpoly_compose_fmpz_mpoly_gen(h, f, places.data(), ctx, ctx);
        poly_operand expected(poly_from_flint(h, ctx));
        swap_levels_1_2(&a.p);
        ASSERT_TRUE(poly_equal(a.p, expected.p)) << poly_text(expected.p);
    }
    fmpz_mpoly_clear(f, ctx);
    fmpz_mpoly_clear(h, ctx);
    fmpz_mpoly_ctx_clear(ctx);
}

INSTANTIATE_TEST_SUITE_P(Variables, IntegerPolys, testing::Range(1, 7));

class Residues : public testing::TestWithParam<std::int32_t> {};

TEST_P(Residues, SumsAndDifferencesAgree)
{
    in_view live(view_modular, GetParam());
    test_random r;
    nmod_poly_t f, g, h;
    nmod_poly_init(f, static_cast<mp_limb_t>(modulus));
    nmod_poly_init(g, static_cast<mp_limb_t>(modulus));
    nmod_poly_init(h, static_cast<mp_limb_t>(modulus));
    for (int k = 0; k < rounds; ++k) {
        const poly_shape shape = {1, 60, 80, 0, 1};
        poly_operand a(random_poly(&r, shape)), b(random_poly(&r, shape)), sum, difference;
        poly_to_flint(a.p, f);
        poly_to_flint(b.p, g);
        nmod_poly_add(h, f, g);
        poly_operand expected_sum(poly_from_flint(h));
        nmod_poly_sub(h, f, g);
        poly_operand expected_difference(poly_from_flint(h));
        poly_add(a.p, b.p, &sum.p);
        ASSERT_TRUE(poly_equal(sum.p, expected_sum.p));
        polynode *b_copy = copy_poly(b.p);
        simplest_poly_sub(a.p, b_copy, &a.p);
        ASSERT_TRUE(poly_equal(a.p, expected_difference.p));
    }
    nmod_poly_clear(f);
    nmod_poly_clear(g);
    nmod_poly_clear(h);
}

INSTANTIATE_TEST_SUITE_P(Moduli, Residues, testing::Values(2, 7, 65521, 65537, 2147483629));

}  // namespace
