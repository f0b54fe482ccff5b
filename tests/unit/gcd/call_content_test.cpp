// The content as the language has it: numbers, variables by name and by level, errors.
#include "gcd/call_content.h"
#include "tests/support/divisions.h"
#include "tests/support/fields.h"

using namespace kelmar;
using namespace kelmar_test;

namespace {

struct CallContent : testing::Test {
    six_in_force names;
    in_view live{view_digits};
    quolynode *value = nullptr, *result = nullptr, *variable = nullptr;

    ~CallContent() override
    {
        free_quoly(&value);
        free_quoly(&result);
        free_quoly(&variable);
    }
    static void set(quolynode **q, const char *text)
    {
        polynode *p = poly_of_text(text);
        poly_to_quoly(&p, q);
        polynum_to_quoly(q);
    }
    std::string told()
    {
        return result->is_num ? number_text(result->num) : poly_text(result->top);
    }
    std::string of(const char *text)
    {
        set(&value, text);
        call_content(&value, &result, nullptr);
        return told();
    }
    std::string in(const char *text, std::int32_t level)
    {
        set(&value, text);
        quoly_set(level, &variable);
        call_content(&value, &result, &variable);
        return told();
    }
    int error_in(const char *text, const char *asked)
    {
        set(&value, text);
        set(&variable, asked);
        return error_in_view([&] { call_content(&value, &result, &variable); });
    }
};

TEST_F(CallContent, Numbers)
{
    EXPECT_EQ(of("{#-6}"), "6");
    EXPECT_EQ(of("{#6}"), "6");
    EXPECT_EQ(of("{#0}"), "1");
    in_view words(view_word);
    EXPECT_EQ(of("{#-6}"), "1");
}

TEST_F(CallContent, ARationalGivesTheContentOfItsNumerator)
{
    set(&value, "{1{#1}}");
    free_poly(&value->top);
    value->top = poly_of_text("{#-6}");
    value->den = poly_of_text("{#7}");
    value->is_rat = 1;
    call_content(&value, &result, nullptr);
    EXPECT_EQ(told(), "6");
}

// (x + 1) y^2 + (x + 1)^2 and three wrappers, x at level 4, y at 5.
const char sample[] = "{0{0{0{2{#1}, 1{2{#1}, #2}, {2{#1}, #1}}}}}";

TEST_F(CallContent, Polynomials)
{
    EXPECT_EQ(of("{2{1{#2}}, 1{2{#4}}}"), "{0{1{#2}}}");
    EXPECT_EQ(of("{2{#6}, #4}"), "2");
    EXPECT_EQ(of(sample), "1");
}

TEST_F(CallContent, LevelsByNumber)
{
    for (std::int32_t level = 1; level <= 3; ++level) {
        const std::string got = in(sample, level);
        EXPECT_EQ(got, poly_text(value->top)) << "the value itself, level " << level;
    }
    EXPECT_EQ(in(sample, 4), "1");
    EXPECT_EQ(in(sample, 5), "{0{0{0{1{#1}, #1}}}}");
    EXPECT_EQ(in(sample, 6), poly_text(value->top)) << "free of the variable";
}

TEST_F(CallContent, LevelsByVariable)
{
    set(&value, sample);
    quoly_variable(5, &variable);
    call_content(&value, &result, &variable);
    EXPECT_EQ(told(), "{0{0{0{1{#1}, #1}}}}");
}

TEST_F(CallContent, Errors)
{
    EXPECT_EQ(error_in(sample, "{#0}"), 345);
    EXPECT_EQ(error_in(sample, "{#7}"), 345);
    EXPECT_EQ(error_in(sample, "{#-1}"), 345);
    EXPECT_EQ(error_in(sample, "{2{#1}}"), 282);
    EXPECT_EQ(error_in(sample, "{1{#2}}"), 282);
    EXPECT_EQ(error_in(sample, "{1{#1}, #1}"), 282);
    {
        const kept_word depth(&field_depth, 5);
        EXPECT_EQ(error_in(sample, "{#5}"), 344);
        EXPECT_EQ(error_in(sample, "{#6}"), 344);
    }
    set(&value, "{1{#1}}");
    value->den = poly_of_text("{1{#1}, #1}");
    value->is_rat = 0;
    EXPECT_EQ(error_in_view([&] { call_content(&value, &result, nullptr); }), 196);
}

TEST_F(CallContent, NegativeExponents)
{
    const in_laurent on(1);
    EXPECT_EQ(of("{1{1{#2}}, -1{2{#4}}}"), "{0{1{#2}}}");
    set(&value, "{1{1{#2}}, -1{2{#4}}}");
    EXPECT_EQ(error_in_view([&] { call_content(&value, &value, nullptr); }), 312);
}

TEST_F(CallContent, InPlace)
{
    set(&value, "{2{1{#2}}, 1{2{#4}}}");
    call_content(&value, &value, nullptr);
    EXPECT_EQ(poly_text(value->top), "{0{1{#2}}}");
}

}  // namespace
