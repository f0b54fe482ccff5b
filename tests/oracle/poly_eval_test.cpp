// Values, derivatives and powers against FLINT: long integers in one to four variables.
#include <gtest/gtest.h>
#include "poly/derivative.h"
#include "poly/eval.h"
#include "poly/power.h"
#include "tests/support/by_build.h"
#include "tests/support/flint_polys.h"
#include "tests/support/views.h"

using namespace kelmar;
using namespace kelmar_test;

namespace {

constexpr int rounds = by_build(60, 600);

class AgainstFlint : public testing::TestWithParam<std::int32_t> {
protected:
    AgainstFlint()
    {
        fmpz_mpoly_ctx_init(ctx, GetParam(), ORD_LEX);
        fmpz_mpoly_init(f, ctx);
        fmpz_mpoly_init(g, ctx);
    }

    ~AgainstFlint() override
    {
        fmpz_mpoly_clear(f, ctx);
        fmpz_mpoly_clear(g, ctx);
        fmpz_mpoly_ctx_clear(ctx);
    }

    // The polynomial that FLINT has in g.
    std::string expected()
    {
        poly_operand p(poly_from_flint(g, ctx));
        return poly_text(p.p);
    }

    in_view live{view_digits};
    test_random r;
    fmpz_mpoly_ctx_t ctx;
    fmpz_mpoly_t f, g;
};

TEST_P(AgainstFlint, DerivativesAgree)
{
    for (int k = 0; k < rounds; ++k) {
        const poly_shape shape = {GetParam(), 1 + static_cast<std::int32_t>(r.below(30)), 9, 0, 4};
        poly_operand p(random_poly(&r, shape));
        const std::string before = poly_text(p.p);
        const auto level = static_cast<std::int32_t>(r.below(static_cast<std::uint32_t>(GetParam())));
        const auto order = static_cast<std::int32_t>(r.below(4));
        poly_to_flint(p.p, g, ctx);
        for (std::int32_t n = 0; n < order; ++n) fmpz_mpoly_derivative(g, g, level, ctx);
        general_poly_diff(&p.p, order, level + 1);
        ASSERT_EQ(poly_text(p.p), expected()) << before << ", order " << order << ", level " << level + 1;
    }
}

TEST_P(AgainstFlint, PowersAgree)
{
    for (int k = 0; k < rounds / 4; ++k) {
        const poly_shape shape = {GetParam(), 1 + static_cast<std::int32_t>(r.below(6)), 4, 0, 2};
        poly_operand p(random_poly(&r, shape));
        const std::string before = poly_text(p.p);
        const auto e = static_cast<std::int32_t>(r.below(7));
        poly_to_flint(p.p, f, ctx);
        fmpz_mpoly_pow_ui(g, f, static_cast<ulong>(e), ctx);
        compute_power(&p.p, e, nilpol);
        ASSERT_EQ(poly_text(p.p), expected()) << before << " to the power " << e;
    }
}

TEST_P(AgainstFlint, ValuesAgree)
{
    for (int k = 0; k < rounds; ++k) {
        const poly_shape shape = {GetParam(), 1 + static_cast<std::int32_t>(r.below(30)), 9, 0, 4};
        poly_operand p(random_poly(&r, shape)), value, points;
        const std::string before = poly_text(p.p);
        poly_to_flint(p.p, f, ctx);
        polynode **end = &points.p;
        fmpz_t at;
        fmpz_init(at);
        fmpz_mpoly_set(g, f, ctx);
        for (std::int32_t level = 0; level < GetParam(); ++level) {
            const std::int32_t v = static_cast<std::int32_t>(r.below(2001)) - 1000;
            *end = new_point(v);
            end = &(*end)->next;
            fmpz_set_si(at, v);
            fmpz_mpoly_evaluate_one_fmpz(g, g, level, at, ctx);
        }
        fmpz_clear(at);
        all_poly_eval(p.p, points.p, &value.p, 0);
        ASSERT_EQ(poly_text(value.p), expected()) << before;
        ASSERT_EQ(poly_text(p.p), before) << "the operand is spared";
    }
}

INSTANTIATE_TEST_SUITE_P(Variables, AgainstFlint, testing::Values(1, 2, 3, 4));

}  // namespace
