// The text of polynomials: nested, ugly, as monomials; signs, brackets, lines, suppression.
#include "poly/display.h"
#include <gtest/gtest.h>
#include <pthread.h>
#include <cstdlib>
#include <string>
#include "numbers/decimal.h"
#include "session/output.h"
#include "tests/support/polys.h"
#include "tests/support/variables.h"
#include "tests/support/views.h"

using namespace kelmar;
using namespace kelmar_test;

namespace {

// One global has another value until the end of the block.
template <class T> struct with {
    T *place;
    T saved;
    with(T *global, T value) : place(global), saved(*global)
    {
        *place = value;
    }
    ~with()
    {
        *place = saved;
    }
    with(const with &) = delete;
    with &operator=(const with &) = delete;
};

// Variables x, y, z stand at levels 1, 2, 3.
class Display : public ::testing::Test {
protected:
    in_view live{view_float};
    const adjoined variables{"x", "y", "z"};
};

// What f writes to the stream that it is given.
template <class F> std::string written(F f)
{
    char *bytes = nullptr;
    std::size_t size = 0;
    std::FILE *out = open_memstream(&bytes, &size);
    f(out);
    std::fclose(out);
    std::string text(bytes, size);
    std::free(bytes);
    return text;
}

std::string shown(const polynode *p, int wrap = 1, std::int32_t *lines = nullptr)
{
    return written([&](std::FILE *out) {
        text_place t;
        begin_text(&t, out, wrap, 0);
        poly_display(&t, p, polynames, 0, 1);
        if (lines) *lines = t.lines;
    });
}

std::string shown(const char *text)
{
    poly_operand p(poly_of_text(text));
    return shown(p.p);
}

int count_of(const std::string &text, const std::string &part)
{
    int count = 0;
    for (std::size_t at = text.find(part); at != std::string::npos; at = text.find(part, at + 1)) ++count;
    return count;
}

// c (x^n + .. + x + 1).
polynode *long_list(std::int32_t n, std::int32_t c)
{
    polynode *first = nullptr;
    for (std::int32_t e = 0; e <= n; ++e) {
        polynode *term = nullptr;
        poly_set(c, &term);
        if (e > 0) term = new_term(e, term);
        term->next = first;
        first = term;
    }
    return first;
}

// Signs and coefficients ---------------------------------------------------------------------------------

TEST_F(Display, TermsFallAndUnitCoefficientsAreNotWritten)
{
    EXPECT_EQ(shown("{2{#1}, 1{#2}, #1}"), "x^2 + 2x + 1");
}

TEST_F(Display, MinusXHasNoBlankBehindItsSign)
{
    EXPECT_EQ(shown("{1{#-1}}"), "-x");
    EXPECT_EQ(shown("{1{#-3}}"), "-3x");
}

TEST_F(Display, NegativeTermsCarryTheirSignWithABlank)
{
    EXPECT_EQ(shown("{1{#1}, #-1}"), "x - 1");
    EXPECT_EQ(shown("{2{#1}, 1{#-1}, #-7}"), "x^2 - x - 7");
    EXPECT_EQ(shown("{2{#1}, 1{#-3}}"), "x^2 - 3x");
}

TEST_F(Display, UnitConstantTermIsWritten)
{
    EXPECT_EQ(shown("{1{#1}, #1}"), "x + 1");
    EXPECT_EQ(shown("{#1}"), "1");
    EXPECT_EQ(shown("{#-1}"), "-1");
}

TEST_F(Display, ConstantStandsAlone)
{
    EXPECT_EQ(shown("{#5}"), "5");
    EXPECT_EQ(shown("{#-2.5}"), "-2.5");
    EXPECT_EQ(shown("{#0}"), "0");
}

TEST_F(Display, CoefficientOfSeveralTermsStandsInBrackets)
{
    EXPECT_EQ(shown("{1{1{#1}, #1}}"), "(y + 1)x");
    EXPECT_EQ(shown("{1{1{#-1}, #1}}"), "(-y + 1)x");
    EXPECT_EQ(shown("{1{1{#1}}}"), "(y)x");
}

TEST_F(Display, WrapperContentStandsWithoutBracketsBehind)
{
    EXPECT_EQ(shown("{2{1{#1}, #1}, 1{#-1}, 0{1{#1}, #-3}}"), "(y + 1)x^2 - x + y - 3");
    EXPECT_EQ(shown("{0{1{#1}, #-3}}"), "y - 3");
    EXPECT_EQ(shown("{0{0{1{#-1}}}}"), "-z");
}

TEST_F(Display, SignOfAWrapperIsThatOfItsFirstNumber)
{
    EXPECT_EQ(shown("{1{#1}, 0{1{#-1}, #3}}"), "x - y + 3");
    EXPECT_EQ(shown("{1{#1}, 0{1{#-2}}}"), "x - 2y");
    EXPECT_EQ(shown("{1{#1}, 0{0{1{#-2}}}}"), "x - 2z");
    EXPECT_EQ(shown("{1{#1}, 0{1{1{#-1}}}}"), "x + (-z)y");
}

TEST_F(Display, PolynomialCoefficientIsAlwaysAdded)
{
    EXPECT_EQ(shown("{2{#1}, 1{1{#-1}, #-1}}"), "x^2 + (-y - 1)x");
}

TEST_F(Display, NeedToLooksBelowWrappers)
{
    poly_operand plus(poly_of_text("{0{0{1{#2}}}}")), minus(poly_of_text("{0{0{1{#-2}}}}"));
    poly_operand brackets(poly_of_text("{1{1{#-1}}}"));
    EXPECT_TRUE(need_to(plus.p));
    EXPECT_FALSE(need_to(minus.p));
    EXPECT_TRUE(need_to(brackets.p));
}

TEST_F(Display, DepthIsNestedBrackets)
{
    EXPECT_EQ(shown("{1{1{1{#1}, #1}, #2}}"), "((z + 1)y + 2)x");
}

// Modes --------------------------------------------------------------------------------------------------

TEST_F(Display, LargeResidueIsShownNegative)
{
    in_view mod(view_modular, 7);
    EXPECT_EQ(shown("{2{#5}, 1{#6}, #4}"), "-2x^2 - x - 3");
    EXPECT_EQ(shown("{2{#3}, 1{#1}}"), "3x^2 + x");
}

TEST_F(Display, LargeResidueIsShownAsItIsWithoutTheAlternativeForm)
{
    in_view mod(view_modular, 7);
    with<std::int32_t> plain(&alt_form_display, 0);
    EXPECT_EQ(shown("{2{#5}, 1{#6}, #4}"), "5x^2 + 6x + 4");
}

TEST_F(Display, ModuloTwoNothingIsNegative)
{
    in_view mod(view_modular, 2);
    EXPECT_EQ(shown("{2{#1}, 1{#1}, #1}"), "x^2 + x + 1");
}

TEST_F(Display, FieldElementsHaveNoSign)
{
    in_view field(view_field);
    modulus = 2;
    half_modulus = 1;
    EXPECT_EQ(shown("{2{#200}, 1{#1}, #255}"), "200x^2 + x + 255");
}

TEST_F(Display, LongIntegersOfEitherSign)
{
    in_view exact(view_digits);
    EXPECT_EQ(shown("{2{#-1}, 1{#-123456789}, #-1}"), "-x^2 - 123456789x - 1");
}

TEST_F(Display, NegativePowersFollowTheConstant)
{
    with<std::int32_t> negative(&laurent, 1);
    EXPECT_EQ(shown("{1{#1}, #3, -1{#-2}, -2{1{#1}, #1}}"), "x + 3 - 2x^-1 + (y + 1)x^-2");
    with<std::int32_t> ugly(&uglyprint, 1);
    EXPECT_EQ(shown("{1{#1}, #3, -1{#-2}}"), "x+3-2*x^(-1)");
}

// Ugly text ----------------------------------------------------------------------------------------------

TEST_F(Display, UglyTextHasStarsAndNoBlanks)
{
    with<std::int32_t> ugly(&uglyprint, 1);
    EXPECT_EQ(shown("{2{#1}, 1{#2}, #1}"), "x^2+2*x+1");
    EXPECT_EQ(shown("{2{1{#1}, #1}, 1{#-1}, 0{1{#-2}, #-3}}"), "(y+1)*x^2-x-2*y-3");
    EXPECT_EQ(shown("{1{#-1}, #-1}"), "-x-1");
}

// Monomials ----------------------------------------------------------------------------------------------

TEST_F(Display, MonomialsAreFlatAndEndInABlank)
{
    with<std::int32_t> list(&monomial_list, 1);
    EXPECT_EQ(shown("{2{1{#1}, #1}, 1{#-1}, 0{1{#1}, #-3}}"), "x^2*y + x^2 - x + y - 3 ");
    EXPECT_EQ(shown("{1{1{1{#-2}}}}"), "-2*x*y*z ");
    EXPECT_EQ(shown("{1{#-1}}"), "-x ");
    EXPECT_EQ(shown("{#-1}"), "-1");
}

TEST_F(Display, UglyMonomialsHaveNoBlanks)
{
    with<std::int32_t> list(&monomial_list, 1), ugly(&uglyprint, 1);
    EXPECT_EQ(shown("{2{1{#1}, #1}, 1{#-1}, 0{1{#3}, #-3}}"), "x^2*y+x^2-x+3*y-3");
}

TEST_F(Display, InOneVariableMonomialsAreTheNestedForm)
{
    with<std::int32_t> list(&monomial_list, 1);
    delete_poly_name(3);
    delete_poly_name(2);
    EXPECT_EQ(shown("{2{#1}, 1{#-1}}"), "x^2 - x");
}

// Lines --------------------------------------------------------------------------------------------------

TEST_F(Display, FullLineEndsInTheContinuationCharacter)
{
    with<std::int32_t> narrow(&dispcutoff, 12);
    EXPECT_EQ(shown("{3{#2}, 2{#2}, 1{#2}, #2}"), "2x^3 + 2x^2 `\n+ 2x + 2");
    EXPECT_EQ(shown("{3{#2}, 2{#2}, 1{#-2}, #2}"), "2x^3 + 2x^2 `\n- 2x + 2");
}

TEST_F(Display, FullLineEndsBareWithoutWrap)
{
    with<std::int32_t> narrow(&dispcutoff, 12);
    poly_operand p(poly_of_text("{3{#2}, 2{#2}, 1{#2}, #2}"));
    EXPECT_EQ(shown(p.p, 0), "2x^3 + 2x^2\n+ 2x + 2");
}

TEST_F(Display, LineIsNotBrokenBelowTheCutoff)
{
    poly_operand p(poly_of_text("{3{#2}, 2{#2}, 1{#2}, #2}"));
    std::int32_t lines = 0;
    shown(p.p, 1, &lines);
    EXPECT_EQ(lines, 1);
}

TEST_F(Display, ChecklengthBreaksAtTheCutoffAndNotBefore)
{
    const auto at = [](std::int32_t col) {
        return written([col](std::FILE *out) {
            text_place t;
            begin_text(&t, out, 1, col);
            checklength(&t);
            EXPECT_EQ(t.col, col >= dispcutoff ? 0 : col);
        });
    };
    EXPECT_EQ(at(dispcutoff - 1), "");
    EXPECT_EQ(at(dispcutoff), " `\n");
}

TEST_F(Display, ColumnsRunAheadNearTheCutoff)
{
    std::int32_t col = dispcutoff - 9;
    adjlength(&col, 2);
    EXPECT_EQ(col, dispcutoff - 7);
    adjlength(&col, 2);
    EXPECT_EQ(col, dispcutoff + 1);
    col = dispcutoff - 8;
    adjlength(&col, 2);
    EXPECT_EQ(col, dispcutoff);
}

// The monomials of the text, from that column on.
std::string listed_from(std::int32_t col, const char *text)
{
    const poly_operand p(poly_of_text(text));
    return written([&](std::FILE *out) {
        text_place t;
        begin_text(&t, out, 1, col);
        monomial_disp(&t, p.p, polynames, 0);
    });
}

TEST_F(Display, MonomialsBreakBeforeALevelBeforeANameAndBehind)
{
    with<std::int32_t> list(&monomial_list, 1);
    const std::int32_t full = dispcutoff;
    EXPECT_EQ(listed_from(full - 11, "{#2}"), "2 ");
    EXPECT_EQ(listed_from(full - 10, "{#2}"), " `\n2 ");
    EXPECT_EQ(listed_from(full - 12, "{#123456}"), "123456 ");
    EXPECT_EQ(listed_from(full - 11, "{#123456}"), "123456  `\n");
    EXPECT_EQ(listed_from(full - 13, "{1{#1234567890}}"), "1234567890*x  `\n");
    EXPECT_EQ(listed_from(full - 12, "{1{#1234567890}}"), "1234567890* `\nx ");
}

// The text of p as it comes to the terminal.
std::string shown_at_terminal(const polynode *p)
{
    return written([p](std::FILE *out) {
        with<std::FILE *> terminal(&Output, out);
        text_place t;
        begin_text(&t, out, 1, 0);
        poly_display(&t, p, polynames, 0, 1);
    });
}

TEST_F(Display, Line151IsSuppressedOnce)
{
    with<std::int32_t> narrow(&dispcutoff, 1);
    poly_operand fits(long_list(149, 2)), longer(long_list(150, 2)), much_longer(long_list(1000, 2));
    EXPECT_EQ(count_of(shown_at_terminal(fits.p), "\n"), 149);
    EXPECT_EQ(count_of(shown_at_terminal(fits.p), "suppressed"), 0);
    for (const polynode *p : {longer.p, much_longer.p}) {
        const std::string text = shown_at_terminal(p);
        const std::string message = "   ... more output suppressed ... \n";
        EXPECT_EQ(count_of(text, "\n"), 151);
        EXPECT_EQ(text.substr(text.size() - message.size()), message);
        EXPECT_EQ(count_of(text, message), 1);
    }
}

TEST_F(Display, SuppressionLeavesOpenBracketsAlone)
{
    with<std::int32_t> narrow(&dispcutoff, 1);
    poly_operand p(new_term(3, long_list(400, 2)));
    const std::string text = shown_at_terminal(p.p);
    EXPECT_EQ(count_of(text, "suppressed"), 1);
    EXPECT_EQ(count_of(text, ")"), 0);
    EXPECT_EQ(count_of(text, "x"), 0);
}

TEST_F(Display, NothingIsSuppressedInFilesOrOnRequest)
{
    with<std::int32_t> narrow(&dispcutoff, 1);
    poly_operand p(long_list(400, 2));
    EXPECT_EQ(count_of(shown(p.p), "\n"), 400);
    with<std::int32_t> all(&do_line_sup, 0);
    EXPECT_EQ(count_of(shown_at_terminal(p.p), "\n"), 400);
}

TEST_F(Display, MonomialsAreSuppressedToo)
{
    with<std::int32_t> narrow(&dispcutoff, 5), list(&monomial_list, 1);
    poly_operand p(long_list(1000, 2));
    EXPECT_EQ(count_of(shown_at_terminal(p.p), "suppressed"), 1);
}

// Long lists ---------------------------------------------------------------------------------------------

void *show_long_list(void *arg)
{
    std::FILE *out = std::fopen("/dev/null", "w");
    text_place t;
    begin_text(&t, out, 1, 0);
    poly_display(&t, static_cast<const polynode *>(arg), polynames, 0, 1);
    std::fclose(out);
    return nullptr;
}

TEST_F(Display, LongListNeedsNoStack)
{
    poly_operand p(long_list(1000000, 3));
    pthread_attr_t small;
    pthread_attr_init(&small);
    ASSERT_EQ(pthread_attr_setstacksize(&small, 256 * 1024), 0);
    pthread_t runner;
    ASSERT_EQ(pthread_create(&runner, &small, show_long_list, p.p), 0);
    pthread_join(runner, nullptr);
    pthread_attr_destroy(&small);
}

// Debugging ----------------------------------------------------------------------------------------------

TEST_F(Display, CrudeFormShowsEveryNode)
{
    poly_operand p(poly_of_text("{2{1{#1}, #4}, #3}"));
    const std::string text = written([&](std::FILE *out) { crude_poly_disp(out, 1, p.p, 0, polynames); });
    EXPECT_EQ(text, "x: 2 \n  y: 1 \n    z: 0 *1 ** \n0 *4 ** \n0 *3 \n");
    EXPECT_EQ(uglyprint, 0);
}

}  // namespace
