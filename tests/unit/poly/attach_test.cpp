// A variable set to 1, against the flat form.
#include "poly/attach.h"
#include <gtest/gtest.h>
#include "numbers/dispatch.h"
#include "tests/support/by_build.h"
#include "tests/support/polys.h"
#include "tests/support/views.h"

using namespace kelmar;
using namespace kelmar_test;

namespace {

constexpr int rounds = by_build(300, 4000);

// p without the variable of the level, by sums of the coefficients that meet.
polynode *reference_at_one(const polynode *p, std::int32_t vars, std::int32_t level)
{
    flat_poly terms = flatten(p, vars), sums;
    for (auto &term : terms) {
        std::vector<std::int32_t> exps = term.first;
        exps.erase(exps.begin() + level - 1);
        if (exps.empty()) exps.push_back(0);
        const auto [place, fresh] = sums.emplace(exps, term.second);
        if (fresh) continue;
        num_add(place->second, term.second, place->second);
        free_imag(&term.second);
    }
    return nest(&sums);
}

void expect_at_one(const char *text, std::int32_t level, const char *wanted)
{
    poly_audit audit;
    {
        poly_operand p(poly_of_text(text)), w(poly_of_text(wanted));
        poly_at_one(&p.p, level);
        EXPECT_EQ(poly_text(p.p), poly_text(w.p)) << text;
    }
    audit.expect_unchanged(text);
}

TEST(AtOne, ConstantsStay)
{
    in_view live(view_float);
    expect_at_one("{#5}", 1, "{#5}");
    expect_at_one("{#0}", 3, "{#0}");
}

TEST(AtOne, OutermostVariableGoesWithItsWrapper)
{
    in_view live(view_float);
    expect_at_one("{0{2{#1}, #1}}", 1, "{2{#1}, #1}");
    expect_at_one("{2{#1}, 1{#2}, #3}", 1, "{#6}");
    expect_at_one("{2{#1}, #-1}", 1, "{#0}");
}

TEST(AtOne, CoefficientThatBecomesConstantReplacesItsWrapper)
{
    in_view live(view_float);
    expect_at_one("{1{#1}, 0{1{#2}, #3}}", 2, "{1{#1}, #5}");
    expect_at_one("{0{1{#2}}}", 2, "{#2}");
}

TEST(AtOne, TermsThatVanishBelowAreTakenOut)
{
    in_view live(view_float);
    expect_at_one("{2{1{#1}, #-1}, 1{#1}, 0{1{#1}, #-1}}", 2, "{1{#1}}");
    expect_at_one("{2{1{#1}, #-1}}", 2, "{#0}");
}

TEST(AtOne, AgreesWithSumsOfTheFlatForm)
{
    test_random r;
    for (num_view v : all_views) {
        in_view live(v, 7);
        for (int round = 0; round < rounds; ++round) {
            poly_audit audit;
            poly_shape shape;
            shape.vars = 1 + static_cast<std::int32_t>(r.below(4));
            shape.terms = 30;
            shape.degree = 4;
            shape.digits = v == view_digits ? 3 : 1;
            laurent = r.below(4) == 0;
            if (laurent) shape.low = -3;
            const std::int32_t level = 1 + static_cast<std::int32_t>(
                                               r.below(static_cast<std::uint64_t>(shape.vars)));
            {
                poly_operand p(random_poly(&r, shape));
                poly_operand w(reference_at_one(p.p, shape.vars, level));
                const std::string before = poly_text(p.p);
                poly_at_one(&p.p, level);
                EXPECT_TRUE(poly_is_normal(p.p, shape.vars - 1)) << before;
                EXPECT_EQ(poly_text(p.p), poly_text(w.p))
                    << before << " level " << level << " seed " << r.seed;
            }
            audit.expect_unchanged("poly_at_one");
            laurent = 0;
            if (HasFailure()) return;
        }
    }
}

}  // namespace
