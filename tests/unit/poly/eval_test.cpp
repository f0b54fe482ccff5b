// Polynomials at numbers and at polynomials.
#include "poly/eval.h"
#include <gtest/gtest.h>
#include "numbers/dispatch.h"
#include "numbers/long_power.h"
#include "poly/add.h"
#include "poly/mul.h"
#include "poly/mul_school.h"
#include "session/errnums.h"
#include "session/levels.h"
#include "session/output.h"
#include "tests/support/mul_operands.h"
#include "tests/support/views.h"

using namespace kelmar;
using namespace kelmar_test;

namespace {

constexpr num_view every_view[] = {view_float, view_field, view_modular, view_word, view_digits};

// p at the points, texts of constants or polynomials, level by level.
std::string value_at(const char *p, std::initializer_list<const char *> points, std::int32_t skip = 0)
{
    poly_operand operand(poly_of_text(p)), chain, value;
    polynode **end = &chain.p;
    for (const char *text : points) {
        polynode *v = poly_of_text(text);
        *end = is_constant(v) ? v : new_term(0, v);
        end = &(*end)->next;
    }
    all_poly_eval(operand.p, chain.p, &value.p, skip);
    EXPECT_TRUE(poly_is_normal(value.p, 6)) << poly_text(value.p);
    EXPECT_EQ(poly_text(operand.p), poly_text(poly_operand(poly_of_text(p)).p)) << "the operand is spared";
    return poly_text(value.p);
}

TEST(AllPolyEval, NumbersForEveryLevelGiveAConstant)
{
    for (num_view v : {view_float, view_modular, view_word, view_digits}) {
        in_view live(v);
        EXPECT_EQ(value_at("{3{#2}, 1{#1}, #5}", {"{#2}"}), "{#23}");
        EXPECT_EQ(value_at("{2{1{#1}, #3}, 0{4{#1}}}", {"{#2}", "{#3}"}),
                  v == view_modular ? "{#4}" : "{#105}");
        EXPECT_EQ(value_at("{0{0{2{#1}}}}", {"{#7}", "{#7}", "{#3}"}), "{#9}");
    }
}

TEST(AllPolyEval, APointOfValueOneSumsTheCoefficients)
{
    for (num_view v : {view_float, view_modular, view_word, view_digits}) {
        in_view live(v);
        EXPECT_EQ(value_at("{9{#2}, 4{#3}, #5}", {"{#1}"}), "{#10}");
        EXPECT_EQ(value_at("{9{3{#2}}, 4{3{#3}, 1{#1}}, #5}", {"{#1}"}), "{3{#5}, 1{#1}, #5}");
    }
    in_view live(view_modular, 5);
    EXPECT_EQ(value_at("{9{3{#2}}, 4{3{#3}, 1{#1}}}", {"{#1}"}), "{1{#1}}");
}

TEST(AllPolyEval, AResultOfZeroIsTheConstant)
{
    for (num_view v : every_view) {
        in_view live(v);
        EXPECT_EQ(value_at("{1{#1}}", {"{#0}"}), "{#0}");
        EXPECT_EQ(value_at("{1{2{#1}}}", {"{#0}"}), "{#0}");
        EXPECT_EQ(value_at("{1{2{#1}}}", {"{#0}"}, 1), "{#0}");
        EXPECT_EQ(value_at("{#0}", {"{#3}"}), "{#0}");
    }
}

TEST(AllPolyEval, WithoutPointsItCopies)
{
    in_view live(view_digits);
    EXPECT_EQ(value_at("{2{1{#1}}, #3}", {}), "{2{1{#1}}, #3}");
    EXPECT_EQ(value_at("{2{1{#1}}, #3}", {}, 2), "{2{1{#1}}, #3}");
}

TEST(AllPolyEval, LevelsBehindTheLastPointMoveOutward)
{
    in_view live(view_digits);
    EXPECT_EQ(value_at("{2{1{#1}, #3}, 0{4{#1}}}", {"{#2}"}), "{4{#1}, 1{#4}, #12}");
}

TEST(AllPolyEval, SkippedLevelsStay)
{
    in_view live(view_digits);
    EXPECT_EQ(value_at("{2{1{#1}, #3}, 0{4{#1}}}", {"{#2}"}, 1), "{2{#5}, #16}");
    EXPECT_EQ(value_at("{2{1{#1}, #-2}, 0{4{#1}}}", {"{#2}"}, 1), "{#16}");
    EXPECT_EQ(value_at("{2{1{1{#1}, #3}}, 0{4{#1}}}", {"{#5}"}, 2), "{2{1{#8}}, 0{4{#1}}}");
}

TEST(AllPolyEval, PointsMayBePolynomials)
{
    in_view live(view_digits);
    EXPECT_EQ(value_at("{2{#1}, #1}", {"{1{#1}, #1}"}), "{2{#1}, 1{#2}, #2}");
    EXPECT_EQ(value_at("{2{#1}, 1{#-1}}", {"{1{#1}, #1}"}), "{2{#1}, 1{#1}}");
    EXPECT_EQ(value_at("{1{0{#1}}, 0{1{#-1}}}", {"{1{#1}}", "{1{#1}}"}), "{#0}");
    EXPECT_EQ(value_at("{7{#1}, 2{#1}}", {"{1{#2}}"}), "{7{#128}, 2{#4}}");
}

TEST(AllPolyEval, ReplacesTheOldResult)
{
    const poly_audit audit;
    in_view live(view_digits);
    {
        poly_operand p(poly_of_text("{2{#1}, #1}")), result(poly_of_text("{5{#1}}")),
            point(poly_of_text("{#3}"));
        all_poly_eval(p.p, point.p, &result.p, 0);
        EXPECT_EQ(poly_text(result.p), "{#10}");
    }
    audit.expect_unchanged("all_poly_eval");
}

// p with its variable of level 1 at v: products of powers that are made by multiplication alone.
polynode *slow_value(const polynode *p, polynode *v)
{
    polynode *sum = nullptr;
    poly_set(0, &sum);
    for (; p; p = p->next) {
        polynode *term = nullptr;
        if (p->isnum) {
            polynode alone = *p;
            alone.next = nullptr;
            term = copy_poly(&alone);
        } else {
            term = copy_poly(p->coef);
        }
        for (std::int32_t e = p->exp; e > 0; --e) poly_mult(term, v, &term, nilpol);
        best_poly_add(sum, term, &sum);
    }
    return sum;
}

TEST(AllPolyEval, AgreesWithPowersByMultiplication)
{
    test_random r;
    make_small_field();
    for (num_view view : every_view) {
        in_view live(view);
        const poly_audit audit;
        for (int k = 0; k < 300; ++k) {
            poly_shape shape;
            shape.vars = 1 + static_cast<std::int32_t>(r.below(3));
            shape.terms = 12;
            shape.degree = view == view_float ? 4 : 7;
            poly_operand p(random_poly(&r, shape)), v(new_constant(random_coefficient(&r, 1)));
            if (view == view_float) setvalue(static_cast<std::int32_t>(r.below(4)), v.p->num);
            poly_operand expected(slow_value(p.p, v.p)), value;
            all_poly_eval(p.p, v.p, &value.p, 0);
            ASSERT_TRUE(poly_is_normal(value.p, 3));
            ASSERT_EQ(poly_text(value.p), poly_text(expected.p)) << "seed " << r.seed;
            poly_at_numb(&value.p, p.p, v.p, nilpol, 0);
            ASSERT_EQ(poly_text(value.p), poly_text(expected.p)) << "seed " << r.seed;
            shape.vars = 1;
            shape.degree = 3;
            poly_operand w(random_poly(&r, shape)), at_w(slow_value(p.p, w.p));
            poly_operand point(is_constant(w.p) ? copy_poly(w.p) : new_term(0, copy_poly(w.p)));
            all_poly_eval(p.p, point.p, &value.p, 0);
            ASSERT_EQ(poly_text(value.p), poly_text(at_w.p)) << "seed " << r.seed;
        }
        audit.expect_unchanged("evaluations");
    }
}

TEST(AllPolyEval, AllAtOnceIsOneAfterTheOther)
{
    test_random r;
    make_small_field();
    for (num_view view : {view_field, view_modular, view_word, view_digits}) {
        in_view live(view);
        for (int k = 0; k < 300; ++k) {
            poly_shape shape;
            shape.vars = 3;
            shape.terms = 30;
            shape.degree = 9;
            poly_operand p(random_poly(&r, shape)), chain, value, one;
            polynode **end = &chain.p;
            poly_assign(p.p, &one.p);
            for (int level = 0; level < 3; ++level) {
                *end = new_constant(random_coefficient(&r, 1));
                poly_at_numb(&one.p, one.p, *end, nilpol, 0);
                end = &(*end)->next;
            }
            all_poly_eval(p.p, chain.p, &value.p, 0);
            ASSERT_EQ(poly_text(value.p), poly_text(one.p)) << "seed " << r.seed;
        }
    }
}

TEST(ModAllPolyEval, DeclinesPointsThatAreNoNumbersAndDeeperPolynomials)
{
    in_view live(view_modular);
    poly_operand p(poly_of_text("{2{1{#1}, #3}, 0{4{#1}}}")), one(poly_of_text("{#3}"));
    std::int32_t v = 0;
    EXPECT_EQ(mod_all_poly_eval(p.p, one.p, &v), 0);
    poly_operand list(new_term(0, poly_of_text("{1{#1}}")));
    EXPECT_EQ(mod_all_poly_eval(p.p, list.p, &v), 0);
    one.p->next = new_point(2);
    EXPECT_EQ(mod_all_poly_eval(p.p, one.p, &v), 1);
    EXPECT_EQ(v, 61);
}

TEST(RatAllPolyEval, DeclinesWhatHasMoreLevels)
{
    in_view live(view_digits);
    poly_operand p(poly_of_text("{2{1{#1}, #3}, 0{4{#1}}}")), one(poly_of_text("{#3}")),
        n(poly_of_text("{#0}"));
    EXPECT_EQ(rat_all_poly_eval(p.p, one.p, n.p->num), 0);
    one.p->next = new_point(2);
    EXPECT_EQ(rat_all_poly_eval(p.p, one.p, n.p->num), 1);
    EXPECT_EQ(poly_text(n.p), "{#61}");
}

TEST(OldAllPolyEval, LevelsStayAsWrappers)
{
    in_view live(view_digits);
    const auto at_levels = [](const char *text, std::initializer_list<std::pair<int, int>> points) {
        poly_operand p(poly_of_text(text)), chain;
        polynode **end = &chain.p;
        for (const auto &point : points) {
            *end = new_point(point.second);
            (*end)->exp = point.first;
            end = &(*end)->next;
        }
        old_all_poly_eval(&p.p, chain.p, 1);
        EXPECT_TRUE(poly_is_normal(p.p, 3)) << poly_text(p.p);
        return poly_text(p.p);
    };
    const char *p = "{2{1{#1}, #3}, 0{4{1{#1}}}}";
    EXPECT_EQ(at_levels(p, {{2, 2}}), "{2{#5}, 0{0{1{#16}}}}");
    EXPECT_EQ(at_levels(p, {{1, 2}}), "{0{4{1{#1}}, 1{#4}, #12}}");
    EXPECT_EQ(at_levels(p, {{3, 5}}), "{2{1{#1}, #3}, 0{4{#5}}}");
    EXPECT_EQ(at_levels(p, {{1, 2}, {3, 5}}), "{0{4{#5}, 1{#4}, #12}}");
    EXPECT_EQ(at_levels(p, {{1, 1}, {2, 1}, {3, 1}}), "{#5}");
    EXPECT_EQ(at_levels(p, {}), "{2{1{#1}, #3}, 0{4{1{#1}}}}");
    EXPECT_EQ(at_levels("{#3}", {{1, 2}}), "{#3}");
}

TEST(PolyAtNumb, PadKeepsTheLevel)
{
    in_view live(view_digits);
    poly_operand p(poly_of_text("{2{1{#1}, #3}, 0{4{#1}}}")), v(poly_of_text("{#2}")), value;
    poly_at_numb(&value.p, p.p, v.p, nilpol, 1);
    EXPECT_EQ(poly_text(value.p), "{0{4{#1}, 1{#4}, #12}}");
    poly_at_numb_2(&value.p, p.p, v.p, nilpol, 1);
    EXPECT_EQ(poly_text(value.p), "{2{#5}, #16}");
    poly_operand constant(poly_of_text("{#4}"));
    poly_at_numb(&value.p, constant.p, v.p, nilpol, 1);
    EXPECT_EQ(poly_text(value.p), "{#4}");
}

TEST(PolyAtNumb, TheInnerLevelKeepsWhatIsBelow)
{
    in_view live(view_digits);
    poly_operand p(poly_of_text("{1{2{3{#1}}}}")), v(poly_of_text("{#2}")), value;
    poly_at_numb_2(&value.p, p.p, v.p, nilpol, 1);
    EXPECT_EQ(poly_text(value.p), "{1{0{3{#4}}}}");
    poly_at_numb_2(&value.p, p.p, v.p, nilpol, 0);
    EXPECT_EQ(poly_text(value.p), "{1{3{#4}}}");
}

TEST(PolyAtNumb, APointThatIsNoNumberIsAFault)
{
    in_view live(view_digits);
    poly_operand p(poly_of_text("{1{#1}}")), value;
    const kept_view view;
    const auto saved = levelcount;
    levelcount = highest_level;  // where a fault unwinds
    testing::internal::CaptureStdout();
    caught_error([&] {
        Output = stdout;
        poly_at_numb(&value.p, p.p, p.p, nilpol, 0);
    });
    levelcount = saved;
    const std::string report = testing::internal::GetCapturedStdout();
    EXPECT_NE(report.find("n2 not number in poly_at_numb"), std::string::npos) << report;
}

TEST(ModPolyAtNumb, TakesAResidue)
{
    in_view live(view_modular, 97);
    poly_operand p(poly_of_text("{2{1{#1}, #3}, 0{4{#1}}}")), value;
    mod_poly_at_numb(&value.p, p.p, 95, nilpol, 1);
    EXPECT_EQ(poly_text(value.p), "{0{4{#1}, 1{#4}, #12}}");
}

TEST(FastModPower, IsTheRepeatedProduct)
{
    for (std::int32_t m : {2, 101, 65521, 2147483629}) {
        in_view live(view_modular, m);
        std::int32_t power = 1;
        const std::int32_t base = m / 3;
        for (std::uint32_t e = 0; e < 70; ++e) {
            ASSERT_EQ(fast_mod_power(base, e), power);
            power = static_cast<std::int32_t>(std::int64_t{power} * base % m);
        }
    }
}

}  // namespace
