// Derivatives in the outermost variable, against the flat form.
#include "poly/derivative.h"
#include <gtest/gtest.h>
#include "numbers/dispatch.h"
#include "tests/support/by_build.h"
#include "tests/support/polys.h"
#include "tests/support/views.h"

using namespace kelmar;
using namespace kelmar_test;

namespace {

constexpr int rounds = by_build(300, 4000);

// The sum of |e| copies of the coefficient, turned over for a negative e: no product is used.
polynode *reference_derivative(const polynode *p, std::int32_t vars)
{
    flat_poly terms = flatten(p, vars), derived;
    for (auto &term : terms) {
        std::vector<std::int32_t> exps = term.first;
        const std::int32_t e = exps[0]--;
        number *sum = nullptr;
        newimag(&sum);
        sum->size = 0;
        setvalue(0, sum);
        for (std::int32_t k = e < 0 ? -e : e; k > 0; --k) num_add(sum, term.second, sum);
        if (e < 0) in_place_neg(sum);
        if (e == 0) {
            free_imag(&sum);
        } else {
            derived.emplace(exps, sum);
        }
    }
    free_flat(&terms);
    return nest(&derived);
}

void expect_derivative(const char *text, std::int32_t order, const char *wanted)
{
    poly_audit audit;
    {
        poly_operand p(poly_of_text(text)), w(poly_of_text(wanted));
        poly_diff(&p.p, order);
        EXPECT_EQ(poly_text(p.p), poly_text(w.p)) << text;
    }
    audit.expect_unchanged(text);
}

TEST(Derivative, OfConstantsIsZero)
{
    in_view live(view_float);
    expect_derivative("{#5}", 1, "{#0}");
    expect_derivative("{0{1{#1}}}", 1, "{#0}");
}

TEST(Derivative, OfOrderZeroChangesNothing)
{
    in_view live(view_float);
    expect_derivative("{2{#1}, #1}", 0, "{2{#1}, #1}");
}

TEST(Derivative, OfHigherOrder)
{
    in_view live(view_digits);
    expect_derivative("{3{#1}, 1{#1}}", 1, "{2{#3}, #1}");
    expect_derivative("{3{#1}, 1{#1}}", 2, "{1{#6}}");
    expect_derivative("{3{#1}, 1{#1}}", 4, "{#0}");
}

TEST(Derivative, CoefficientOfTheFirstPowerBecomesAWrapper)
{
    in_view live(view_float);
    expect_derivative("{1{1{#1}, #2}}", 1, "{0{1{#1}, #2}}");
}

TEST(Derivative, PowersThatTheModulusDividesVanish)
{
    in_view live(view_modular, 5);
    expect_derivative("{10{#1}, 5{1{#1}}, 1{#3}}", 1, "{#3}");
    expect_derivative("{10{#1}}", 1, "{#0}");
}

TEST(Derivative, AgreesWithSumsOfTheFlatForm)
{
    test_random r;
    for (num_view v : all_views) {
        in_view live(v, 7);
        for (int round = 0; round < rounds; ++round) {
            poly_audit audit;
            poly_shape shape;
            shape.vars = 1 + static_cast<std::int32_t>(r.below(3));
            shape.terms = 20;
            shape.degree = 9;
            shape.digits = v == view_digits ? 3 : 1;
            laurent = r.below(4) == 0;
            if (laurent) shape.low = -5;
            {
                poly_operand p(random_poly(&r, shape)), w(reference_derivative(p.p, shape.vars));
                const std::string before = poly_text(p.p);
                poly_diff(&p.p, 1);
                EXPECT_TRUE(poly_is_normal(p.p, shape.vars)) << before;
                EXPECT_EQ(poly_text(p.p), poly_text(w.p)) << before << " seed " << r.seed;
            }
            audit.expect_unchanged("poly_diff");
            laurent = 0;
            if (HasFailure()) return;
        }
    }
}

}  // namespace
