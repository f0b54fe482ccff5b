// Common powers are taken out of a polynomial and put back: nothing else changes, and the form is kept.
#include "poly/laurent.h"
#include <gtest/gtest.h>
#include "session/errnums.h"
#include "tests/support/divisions.h"

using namespace kelmar;
using namespace kelmar_test;

namespace {

const six_variables names;

// The text of what is left, and of the shifts up to the last that is not 0.
std::string cleared(const char *text, std::int32_t start, std::int32_t last)
{
    poly_operand p(poly_of_text(text));
    exponent_shifts s;
    const int any = clear_bads(&p.p, names.first(), &s, start, last);
    EXPECT_EQ(any, s.levels > 0);
    std::string shown = poly_text(p.p) + " by";
    for (std::int32_t k = 1; k <= s.levels; ++k) shown += " " + std::to_string(s.by[k]);
    expect_normal(p.p, 6, text);
    eliminate_bads(&p.p, &s, 1);
    EXPECT_EQ(poly_text(p.p), text);
    return shown;
}

TEST(ClearBads, FromZeroOnlyNegativeExponentsGo)
{
    in_view live(view_float);
    in_laurent on(1);
    EXPECT_EQ(cleared("{2{#1}, 1{#3}}", 0, all_levels), "{2{#1}, 1{#3}} by");
    EXPECT_EQ(cleared("{1{#2}, -1{#3}}", 0, all_levels), "{2{#2}, #3} by -1");
    EXPECT_EQ(cleared("{1{1{#2}}, #4, -1{#3}}", 0, all_levels), "{2{1{#2}}, 1{#4}, #3} by -1");
    EXPECT_EQ(cleared("{1{1{#2}, -2{#1}}, #4}", 0, all_levels), "{1{3{#2}, #1}, 0{2{#4}}} by 0 -2");
    EXPECT_EQ(cleared("{0{0{-1{#1}}}}", 0, all_levels), "{#1} by 0 0 -1");
    EXPECT_EQ(cleared("{#7}", 0, all_levels), "{#7} by");
    EXPECT_EQ(cleared("{#0}", 0, all_levels), "{#0} by");
}

TEST(ClearBads, FromAnyExponentNoVariableDividesWhatIsLeft)
{
    in_view live(view_float);
    in_laurent on(1);
    EXPECT_EQ(cleared("{3{#1}, 2{#3}}", any_exponent, all_levels), "{1{#1}, #3} by 2");
    EXPECT_EQ(cleared("{3{1{#1}}, 2{2{#3}}}", any_exponent, all_levels), "{1{#1}, 0{1{#3}}} by 2 1");
    EXPECT_EQ(cleared("{3{1{#1}}, 2{#3}}", any_exponent, all_levels), "{1{1{#1}}, #3} by 2");
    EXPECT_EQ(cleared("{0{4{#1}}}", any_exponent, all_levels), "{#1} by 0 4");
    EXPECT_EQ(cleared("{1{1{#1}}, #3}", any_exponent, all_levels), "{1{1{#1}}, #3} by");
    EXPECT_EQ(cleared("{#7}", any_exponent, all_levels), "{#7} by");
    EXPECT_EQ(cleared("{#0}", any_exponent, all_levels), "{#0} by");
}

TEST(ClearBads, LevelsBehindTheLastStay)
{
    in_view live(view_float);
    in_laurent on(1);
    EXPECT_EQ(cleared("{-1{-2{#1}}}", 0, 1), "{0{-2{#1}}} by -1");
    EXPECT_EQ(cleared("{-1{-2{#1}}}", 0, 2), "{#1} by -1 -2");
    EXPECT_EQ(cleared("{-1{-2{#1}}}", 0, 0), "{-1{-2{#1}}} by");
}

TEST(ClearBads, ExponentsThatWouldLeaveTheWordsAreAnErrorAndNothingChanges)
{
    in_view live(view_float);
    in_laurent on(1);
    poly_operand p(poly_of_text("{2147483647{#1}, -1{#2}}"));
    EXPECT_EQ(error_in_view([&] {
                  exponent_shifts s;
                  clear_bads(&p.p, names.first(), &s, 0, all_levels);
              }),
              err_bad_exponent);
    EXPECT_EQ(poly_text(p.p), "{2147483647{#1}, -1{#2}}");
    exponent_shifts least = {};
    least.levels = 1;
    least.by[1] = INT32_MIN;
    EXPECT_EQ(error_in_view([&] { eliminate_bads(&p.p, &least, -1); }), err_bad_exponent);
    EXPECT_EQ(poly_text(p.p), "{2147483647{#1}, -1{#2}}");
    poly_operand low(poly_of_text("{-1{#1}, -2{#2}}"));
    eliminate_bads(&low.p, &least, -1);
    EXPECT_EQ(poly_text(low.p), "{2147483647{#1}, 2147483646{#2}}");
}

// The smaller of s and t by level: what clears both of two polynomials.
void merge_shifts(exponent_shifts *s, const exponent_shifts *t)
{
    const std::int32_t levels = s->levels > t->levels ? s->levels : t->levels;
    s->levels = 0;
    for (std::int32_t k = 1; k <= levels; ++k) {
        if (t->by[k] < s->by[k]) s->by[k] = t->by[k];
        if (s->by[k] != 0) s->levels = k;
    }
}

TEST(ClearBads, WhatIsTakenOutComesBackInEveryShape)
{
    in_view live(view_digits);
    in_laurent on(1);
    test_random r;
    poly_audit audit;
    for (int i = 0; i < 2000; ++i) {
        const poly_shape shape = {1 + i % 6, 7, 3, -3, 2};
        poly_operand p(random_poly(&r, shape)), other(random_poly(&r, shape)), twin(copy_poly(other.p));
        const std::string text = poly_text(p.p);
        exponent_shifts s, t;
        clear_bads(&p.p, names.first(), &s, i % 2 ? 0 : any_exponent, all_levels);
        expect_normal(p.p, 6, text.c_str());
        EXPECT_FALSE(has_negative_exponents(p.p)) << text;
        EXPECT_EQ(clear_bads(&p.p, names.first(), &t, i % 2 ? 0 : any_exponent, all_levels), 0) << text;
        eliminate_bads(&p.p, &s, 1);
        EXPECT_EQ(poly_text(p.p), text);

        clear_bads(&twin.p, names.first(), &t, 0, all_levels);
        clear_bads(&p.p, names.first(), &s, 0, all_levels);
        eliminate_bads(&p.p, &s, 1);
        merge_shifts(&s, &t);
        eliminate_bads(&p.p, &s, -1);
        eliminate_bads(&other.p, &s, -1);
        EXPECT_FALSE(has_negative_exponents(p.p) || has_negative_exponents(other.p));
    }
    audit.expect_unchanged("shifts");
}

}  // namespace
