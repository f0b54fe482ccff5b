// Lengths, levels, heights and degrees.
#include "poly/measure.h"
#include <gtest/gtest.h>
#include <cstring>
#include "poly/variables.h"
#include "tests/support/polys.h"
#include "tests/support/views.h"

using namespace kelmar;
using namespace kelmar_test;

namespace {

struct measures {
    const char *text;
    std::int32_t length, level, depth, height, below, quick, vars;
};

const measures table[] = {
    // text                            length level  depth height below quick vars
    {"{#5}", 1, 0, 16384, 0, 0, 0, 0},
    {"{#0}", 1, 0, 16384, 0, 0, 0, 0},
    {"{1{#1}}", 1, 1, 1, 1, 1, 1, 1},
    {"{2{#1}, #3}", 2, 1, 1, 1, 1, 1, 1},
    {"{0{1{#1}}}", 1, 2, 2, 1, 2, 2, 1},
    {"{0{0{1{#1}, #2}}}", 1, 3, 3, 1, 3, 3, 1},
    {"{1{#1}, 0{1{#1}, #3}}", 2, 1, 1, 2, 2, 1, 2},  // the deepest path is not the first
    {"{1{1{#1}}, #3}", 2, 1, 1, 2, 2, 2, 2},
    {"{2{0{1{#1}}}, 1{1{#1}}, #1}", 3, 1, 1, 3, 3, 3, 2},
    {"{0{2{0{1{#1}}}, #1}}", 1, 2, 2, 3, 4, 4, 2},
};

TEST(Measure, TableOfShapes)
{
    in_view live(view_float);
    for (const measures &row : table) {
        poly_operand p(poly_of_text(row.text));
        EXPECT_EQ(poly_length(p.p), row.length) << row.text;
        EXPECT_EQ(poly_level(p.p), row.level) << row.text;
        EXPECT_EQ(poly_depth(p.p), row.depth) << row.text;
        EXPECT_EQ(poly_height(p.p), row.height) << row.text;
        EXPECT_EQ(depth_below(p.p), row.below) << row.text;
        EXPECT_EQ(quick_depth_below(p.p), row.quick) << row.text;
        EXPECT_EQ(driver_poly_vars(p.p), row.vars) << row.text;
        EXPECT_EQ(poly_text(p.p), row.text);
    }
}

TEST(Measure, ANumberWithTermsBehindItIsAListOfLevelOne)
{
    in_view live(view_float);
    laurent = 1;
    poly_operand p(poly_of_text("{#5, -1{1{#2}}}"));
    EXPECT_EQ(poly_level(p.p), 1);
    EXPECT_EQ(poly_depth(p.p), 1);
    EXPECT_EQ(poly_height(p.p), 2);
    EXPECT_EQ(depth_below(p.p), 2);
    EXPECT_EQ(quick_depth_below(p.p), 1);
    EXPECT_EQ(driver_poly_vars(p.p), 2);
    laurent = 0;
}

TEST(Measure, LengthWithALimitStopsOneAboveIt)
{
    in_view live(view_float);
    poly_operand p(poly_of_text("{5{#1}, 4{#1}, 3{#1}, 2{#1}, #1}"));
    EXPECT_EQ(fast_poly_length(p.p, 10), 5);
    EXPECT_EQ(fast_poly_length(p.p, 5), 5);
    EXPECT_EQ(fast_poly_length(p.p, 4), 5);
    EXPECT_EQ(fast_poly_length(p.p, 3), 4);
    EXPECT_EQ(fast_poly_length(p.p, 0), 1);
}

TEST(Measure, DegreeAtALevelGoesDownFirstTerms)
{
    in_view live(view_float);
    poly_operand p(poly_of_text("{3{2{#1}, #4}, 1{7{#1}}}"));
    EXPECT_EQ(real_degree(p.p, 1), 3);
    EXPECT_EQ(real_degree(p.p, 2), 2);
    EXPECT_EQ(real_degree(p.p, 3), 0);
    EXPECT_EQ(real_degree(p.p, 9), 0) << "a number comes before that level";
}

TEST(Measure, FlagsTellWhichLevelsOccur)
{
    in_view live(view_float);
    poly_operand p(poly_of_text("{2{0{3{#1}}}, #1}"));
    char vars[variable_limit + 1] = {}, marks[variable_limit + 1] = {};
    EXPECT_EQ(poly_vars(p.p, 1, vars), 2);
    mark_vars(p.p, marks, 1);
    for (int level = 1; level <= 5; ++level) {
        EXPECT_EQ(vars[level], level == 1 || level == 3) << level;
        EXPECT_EQ(marks[level], level == 1 || level == 3) << level;
    }
    char from_four[variable_limit + 1] = {};
    mark_vars(p.p, from_four, 4);
    EXPECT_EQ(from_four[4], 1);
    EXPECT_EQ(from_four[5], 0);
    EXPECT_EQ(from_four[6], 1);
}

TEST(Measure, MarksSeeEveryBranchAndPositiveExponentsAlone)
{
    in_view live(view_float);
    laurent = 1;
    poly_operand p(poly_of_text("{1{#1}, 0{0{1{#1}}}, -1{-2{#1}}}"));
    char marks[variable_limit + 1] = {};
    mark_vars(p.p, marks, 1);
    EXPECT_EQ(marks[1], 1);
    EXPECT_EQ(marks[2], 0);
    EXPECT_EQ(marks[3], 1);
    laurent = 0;
}

// Random polynomials: flags and counts against the flat form.
TEST(Measure, VariablesAgreeWithTheFlatForm)
{
    in_view live(view_modular);
    test_random r;
    for (int k = 0; k < 5000; ++k) {
        poly_operand p(random_poly(&r, {5, 6, 3, 0, 1}));
        char marks[variable_limit + 1] = {};
        mark_vars(p.p, marks, 1);
        flat_poly terms = flatten(p.p, 5);
        std::int32_t first = 0;
        for (std::int32_t level = 5; level >= 1; --level) {
            bool occurs = false;
            for (auto &t : terms) occurs = occurs || t.first[static_cast<std::size_t>(level) - 1] > 0;
            if (occurs) first = level;
            ASSERT_EQ(marks[level] == 1, occurs) << poly_text(p.p);
        }
        ASSERT_EQ(poly_level(p.p), first) << poly_text(p.p);
        free_flat(&terms);
    }
}

// Lengths with a look at density ---------------------------------------------------------------------------

struct dense_case {
    const char *text;
    std::int32_t length, low;
    int one_variable, several;
};

TEST(ExpLength, SuitsWordArraysInModularModeAlone)
{
    const dense_case rows[] = {
        {"{2{#1}, 1{#2}, #3}", 3, 0, 1, 1},
        {"{2{#1}, 1{#2}}", 2, 1, 1, 1},
        {"{#4}", 1, 0, 1, 1},
        {"{12{#1}, 1{#1}}", 2, 1, 1, 1},
        {"{12{#1}, #1}", 2, 0, 1, 1},    // 12 = six times the count: not sparse yet
        {"{13{#1}, #1}", -2, 0, 1, 1},   // 13 is
        {"{6{#1}}", 1, 6, 1, 1},         // a single term is never sparse
        {"{2{1{#1}}, #3}", 2, 0, 1, 0},  // a coefficient that is no constant
        {"{2{#1}, 0{1{#3}}}", 2, 0, 1, 0},
    };
    for (num_view v : {view_modular, view_field, view_float, view_word, view_digits, view_small}) {
        in_view live(v);
        for (const dense_case &row : rows) {
            poly_operand p(poly_of_text(row.text));
            for (number_polys = 1; number_polys <= 2; ++number_polys) {
                const int expected = modularmode ? (number_polys == 1 ? row.one_variable : row.several) : 0;
                std::int32_t low = -77;
                int dense = 1;
                EXPECT_EQ(exp_poly_length(p.p, &low, &dense), row.length) << row.text;
                EXPECT_EQ(low, row.low) << row.text;
                EXPECT_EQ(dense, expected) << row.text << " in view " << v << " with " << number_polys;
                dense = 0;
                EXPECT_EQ(exp_poly_length(p.p, &low, &dense), row.length) << row.text;
                EXPECT_EQ(dense, 0) << "not asked";
            }
        }
        number_polys = 0;
    }
}

TEST(ExpLength, NegativeExponentsSuitNoArray)
{
    in_view live(view_modular);
    laurent = 1;
    poly_operand p(poly_of_text("{1{#1}, #2, -1{#3}}")), q(poly_of_text("{1{#1, -1{#2}}, #2}"));
    std::int32_t low = 0;
    int dense = 1;
    number_polys = 1;
    EXPECT_EQ(exp_poly_length(p.p, &low, &dense), 3);
    EXPECT_EQ(low, -1);
    EXPECT_EQ(dense, 0);
    number_polys = 2;
    dense = 1;
    EXPECT_EQ(exp_poly_length(p.p, &low, &dense), 3);
    EXPECT_EQ(dense, 0);
    dense = 1;
    exp_poly_length(q.p, &low, &dense);
    EXPECT_EQ(dense, 0) << "a number with terms behind it is no constant";
    number_polys = 0;
    laurent = 0;
}

TEST(ExpLength, ExtremeExponentsDoNotOverflow)
{
    in_view live(view_modular);
    laurent = 1;
    poly_operand p(poly_of_text("{2147483647{#1}, -2147483647{#3}}"));
    std::int32_t low = 0;
    int dense = 0;
    EXPECT_EQ(exp_poly_length(p.p, &low, &dense), -2);
    EXPECT_EQ(low, -2147483647);
    laurent = 0;
}

TEST(LevelDepth, LimitsByTheNumberOfNodes)
{
    const struct {
        std::int32_t a, b, n, depth;
    } rows[] = {{2, 3, 1199, 3},    {20, 3, 1199, 4},   {3, 20, 1200, 8}, {20, 3, 9999, 8},
                {3, 20, 10000, 12}, {3, 11, 10000, 11}, {1, 1, 0, 1}};
    for (const auto &row : rows) {
        std::int32_t level = 0, depth = 0;
        poly_level_depth(row.a, row.b, row.n, &level, &depth);
        EXPECT_EQ(level, 2);
        EXPECT_EQ(depth, row.depth) << row.a << ' ' << row.b << ' ' << row.n;
    }
}

}  // namespace
