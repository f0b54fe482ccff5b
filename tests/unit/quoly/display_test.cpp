// The text of scalar values: numbers, polynomials, fractions; ends of values.
#include "quoly/display.h"
#include <gtest/gtest.h>
#include <cstdlib>
#include "numbers/decimal.h"
#include "poly/display.h"
#include "poly/variables.h"
#include "tests/support/quolys.h"
#include "tests/support/settings.h"
#include "tests/support/variables.h"
#include "tests/support/views.h"

using namespace kelmar;
using namespace kelmar_test;

namespace {

class QuolyDisplay : public ::testing::Test {
protected:
    in_view live{view_float};
    const adjoined variables{"x", "y"};
    const kept_word ugly{&uglyprint, 0}, monomials{&monomial_list, 0};
};

std::string shown(const quolynode *q, const value_form &form)
{
    char *bytes = nullptr;
    std::size_t size = 0;
    std::int32_t col = 0;
    std::FILE *out = open_memstream(&bytes, &size);
    quoly_display(out, &form, q, &col);
    std::fclose(out);
    std::string text(bytes, size);
    std::free(bytes);
    return text;
}

constexpr value_form at_top = {1, 1, 1, 0, 0, nullptr};
constexpr value_form to_file = {0, 1, 0, 0, 0, ";"};
constexpr value_form inside = {1, 0, 0, 0, 0, nullptr};

TEST_F(QuolyDisplay, NumberHasNoBlankAndAPolynomialHasOne)
{
    value_operand n("{#5}"), p("{2{#1}, #1}");
    EXPECT_EQ(shown(n.q, at_top), "5\n");
    EXPECT_EQ(shown(p.q, at_top), " x^2 + 1\n");
}

TEST_F(QuolyDisplay, ExtraLineEndFollows)
{
    value_operand n("{#5}");
    value_form form = at_top;
    form.extra = 1;
    EXPECT_EQ(shown(n.q, form), "5\n\n");
}

TEST_F(QuolyDisplay, PolynomialToBeReadBackStandsInBrackets)
{
    value_operand n("{#5}"), p("{2{#1}, #1}");
    EXPECT_EQ(shown(n.q, to_file), "5;\n");
    EXPECT_EQ(shown(p.q, to_file), "( x^2 + 1 );\n");
    uglyprint = 1;
    EXPECT_EQ(shown(p.q, to_file), "(x^2+1);\n");
    uglyprint = 0;
    monomial_list = 1;
    EXPECT_EQ(shown(p.q, to_file), "x^2 + 1 ;\n");
}

TEST_F(QuolyDisplay, ValueInsideATextHasNoEnd)
{
    value_operand n("{#5}"), p("{1{#1}, #1}");
    EXPECT_EQ(shown(n.q, inside), "5");
    EXPECT_EQ(shown(p.q, inside), "x + 1");
}

TEST_F(QuolyDisplay, NumberAsACharacter)
{
    value_operand n("{#65}");
    value_form form = inside;
    form.as_char = 1;
    EXPECT_EQ(shown(n.q, form), "A");
}

TEST_F(QuolyDisplay, FractionHasBracketsAroundWhatIsNotSmall)
{
    value_operand p("{1{#1}, #1}"), x("{0{3{#1}}}");
    p.q->den = poly_of_text("{1{#1}, #-1}");
    EXPECT_EQ(shown(p.q, inside), "( x + 1 ) / ( x - 1 )");
    uglyprint = 1;
    EXPECT_EQ(shown(p.q, inside), "(x+1)/(x-1)");
    uglyprint = 0;
    x.q->den = poly_of_text("{#3}");
    EXPECT_EQ(shown(x.q, inside), "y^3 / 3");
}

TEST_F(QuolyDisplay, ColumnGoesOnWhereTheTextBeforeEnded)
{
    value_operand p("{1{#1}, #1}");
    char *bytes = nullptr;
    std::size_t size = 0;
    std::int32_t col = dispcutoff - 1;
    std::FILE *out = open_memstream(&bytes, &size);
    quoly_display(out, 1, 0, p.q, &col);
    std::fclose(out);
    EXPECT_EQ(std::string(bytes, size), "x `\n+ 1");
    EXPECT_LT(col, 8);
    std::free(bytes);
}

// Fractions of numbers --------------------------------------------------------------------------------------

// The fraction a / b, as texts of small numbers.
std::string shown_fraction(const char *a, const char *b, const value_form &form)
{
    value_operand q;
    newquoly(&q.q);
    q.q->is_num = 0;
    q.q->top = poly_of_text(a);
    q.q->den = poly_of_text(b);
    q.q->is_rat = 1;
    return shown(q.q, form);
}

TEST_F(QuolyDisplay, AFractionOfLongIntegersIsFollowedByItsDecimals)
{
    in_view digits(view_digits);
    const std::int32_t groups = disp_size;
    EXPECT_EQ(shown_fraction("{#1}", "{#3}", at_top),
              " 1 / 3;  or  0.3333333333333333333333333333333333333333\n");
    disp_size = 2;
    EXPECT_EQ(shown_fraction("{#1}", "{#2}", at_top), " 1 / 2;  or  0.5000000000000000\n");
    EXPECT_EQ(shown_fraction("{#-1}", "{#3}", at_top), " -1 / 3;  or  -0.3333333333333333\n");
    EXPECT_EQ(shown_fraction("{#-22}", "{#7}", at_top), " -22 / 7;  or  -3.1428571428571428\n");
    EXPECT_EQ(shown_fraction("{#1}", "{#123456789}", at_top), " 1 / 123456789;  or  0.00000000 81000000\n");
    EXPECT_EQ(shown_fraction("{#1}", "{#100000000}", at_top), " 1 / 100000000;  or  0.0000000100000000\n");
    disp_size = 1;
    EXPECT_EQ(shown_fraction("{#1}", "{#1000000000}", at_top), " 1 / 1000000000;  or  0.00000000\n");
    disp_size = groups;
    calc_disp();
}

TEST_F(QuolyDisplay, NoDecimalsWhereTheyAreNotAskedFor)
{
    in_view digits(view_digits);
    const std::int32_t groups = disp_size;
    EXPECT_EQ(shown_fraction("{#1}", "{#2}", to_file), "1 / 2;\n");
    EXPECT_EQ(shown_fraction("{#1}", "{#2}", inside), "1 / 2");
    EXPECT_EQ(shown_fraction("{1{#1}}", "{#2}", at_top), " x / 2\n");
    disp_size = 0;
    EXPECT_EQ(shown_fraction("{#1}", "{#2}", at_top), " 1 / 2\n");
    disp_size = groups;
    in_view small(view_small);
    EXPECT_EQ(shown_fraction("{#1}", "{#2}", at_top), " 1 / 2\n");
}

}  // namespace
