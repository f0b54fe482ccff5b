// Contents: zero and number operands, numbers among the coefficients, progress lines, faults, emptied counts.
#include "gcd/content.h"
#include "gcd/polygcd.h"
#include "session/output.h"
#include "session/report.h"
#include "tests/support/divisions.h"
#include "tests/support/fields.h"
#include "tests/support/reports.h"

using namespace kelmar;
using namespace kelmar_test;

namespace {

struct Content : testing::Test {
    six_in_force names;
    in_view live{view_digits};
    poly_operand g;

    void SetUp() override
    {
        clear_gcd_counters();
        d_cntdepth = 0;
    }
    std::string of(const char *p, std::int32_t show = 0)
    {
        const poly_operand a(poly_of_text(p));
        content(a.p, &g.p, names.names(), show, 1, 1);
        return poly_text(g.p);
    }
    std::string aux(const char *other, const char *p)
    {
        const poly_operand a(poly_of_text(other)), b(poly_of_text(p));
        aux_content(a.p, b.p, &g.p, names.names(), 0, 1, 1, 1);
        return poly_text(g.p);
    }
    std::string dual(const char *p, const char *q)
    {
        const poly_operand a(poly_of_text(p)), b(poly_of_text(q));
        dual_content(a.p, b.p, &g.p, names.names(), 0, 1, 1, 1);
        return poly_text(g.p);
    }
};

TEST_F(Content, ZeroAndNumbers)
{
    EXPECT_EQ(of("{#0}"), "{#0}");
    EXPECT_EQ(of("{#-6}"), "{#6}");
    EXPECT_EQ(aux("{#0}", "{#0}"), "{#0}");
    EXPECT_EQ(aux("{#0}", "{1{1{#2}}, {1{#4}}}"), "{1{#2}}");
    EXPECT_EQ(aux("{1{#-2}}", "{#0}"), "{1{#2}}");
    EXPECT_EQ(aux("{#4}", "{1{1{#2}}, {1{#4}}}"), "{#2}");
    EXPECT_EQ(aux("{1{#4}}", "{1{#6}, #2}"), "{#2}");
    EXPECT_EQ(dual("{#0}", "{1{1{#2}}, {1{#-4}}}"), "{1{#2}}");
    EXPECT_EQ(dual("{1{1{#2}}, {1{#-4}}}", "{#0}"), "{1{#2}}");
    EXPECT_EQ(dual("{#0}", "{#0}"), "{#0}");
    EXPECT_EQ(dual("{#4}", "{1{1{#6}}}"), "{#2}");
}

TEST_F(Content, ANumericConstantTerm)
{
    EXPECT_EQ(of("{1{1{#6}}, #9}"), "{#3}");
}

// y x^2 + 3 x + y: the number stands in the middle.
TEST_F(Content, ANumberBetweenPolynomials)
{
    EXPECT_EQ(of("{2{1{#1}}, 1{#3}, {1{#1}}}"), "{#1}");
    EXPECT_EQ(of("{2{1{#6}}, 1{#3}, {1{#9}}}"), "{#3}");
    EXPECT_EQ(aux("{1{#3}}", "{2{1{#6}}, 1{#3}, {1{#9}}}"), "{#3}");
    EXPECT_EQ(dual("{2{1{#6}}, 1{#3}, {1{#9}}}", "{1{1{#6}}, {1{#12}}}"), "{#3}");
    EXPECT_EQ(dual("{1{1{#6}}, {1{#12}}}", "{2{1{#6}}, 1{#3}, {1{#9}}}"), "{#3}");
}

TEST_F(Content, OneTermIsItsCoefficient)
{
    EXPECT_EQ(of("{5{2{#-3}, #6}}"), "{2{#3}, #-6}");
    EXPECT_EQ(of("{{2{#-3}, #6}}"), "{2{#3}, #-6}");
}

TEST_F(Content, OverFieldsItIsMonic)
{
    const in_field modular(101);
    EXPECT_EQ(of("{1{2{#2}, #4}, {3{#3}, 1{#6}}}"), "{2{#1}, #2}");
    EXPECT_EQ(of("{1{#7}, {1{#3}}}"), "{#1}");
    EXPECT_EQ(of("{5{2{#3}, #6}}"), "{2{#1}, #2}");
    in_view floats(view_float);
    EXPECT_EQ(of("{1{2{#2}, #4}, {3{#3}, 1{#6}}}"), "{2{#1}, #2}");
    EXPECT_EQ(of("{1{#7}, {1{#3}}}"), "{#1}");
}

TEST_F(Content, OneVariableHasANumberContent)
{
    const kept_word count(&number_polys, 1);
    EXPECT_EQ(of("{2{#4}, 1{#6}}"), "{#2}");
}

TEST_F(Content, TheResultMayBeTheOperand)
{
    poly_operand a(poly_of_text("{1{1{#2}}, {1{#4}}}"));
    content(a.p, &a.p, names.names(), 0, 1, 1);
    EXPECT_EQ(poly_text(a.p), "{1{#2}}");
}

// With the counts above the limit nothing is looked for, and the result is the same.
TEST_F(Content, TheCountsStopTheLooking)
{
    const char p[] = "{3{2{#2}, 1{#4}}, 2{1{#6}}, {1{#10}}}";
    EXPECT_EQ(of(p), "{1{#2}}");
    EXPECT_GT(c_cntcount, 0);
    c_cntcount = a_cntcount = d_cntcount = count_limit + 1;
    EXPECT_EQ(of(p), "{1{#2}}");
    EXPECT_EQ(aux("{1{#14}}", p), "{1{#2}}");
    EXPECT_EQ(dual(p, p), "{1{#2}}");
    EXPECT_EQ(c_cntcount, count_limit + 1);
}

TEST_F(Content, ACountThatOverflowsIsReset)
{
    // Looking stops long before, so only a count written from elsewhere gets there.
    c_cntcount = INT32_MIN;
    const std::string told = report_of([&] { of("{3{2{#2}, 1{#4}}, 2{1{#6}}, {1{#10}}}"); });
    EXPECT_NE(told.find(" *** Warning.\n *** Loop counter in Content is negative.  Will reset.\n"),
              std::string::npos);
    EXPECT_EQ(c_cntcount, count_limit + 1);
    EXPECT_EQ(a_cntcount, count_limit + 1);
    EXPECT_EQ(d_cntcount, count_limit + 1);
}

// A number in wrappers is not in normal form, and no content: the walk for the smallest two meets it, or the
// pass that takes all the others.
TEST_F(Content, NumbersInWrappersAreFaults)
{
    const std::string walk = "*** Kelmar error.  *** pp numb in content\n",
                      pass = "*** Kelmar error.  *** q numb in content\n";
    const auto fault_of = [&](const char *p) { return report_of([&] { of(p); }); };
    EXPECT_EQ(fault_of("{2{1{#2}}, 1{0{#4}}, {1{#6}}}").substr(0, walk.size()), walk);
    EXPECT_EQ(fault_of("{2{1{#2}}, 1{1{#6}}, {0{0{#4}}}}").substr(0, pass.size()), pass) << "behind the walk";
    c_cntcount = count_limit + 1;
    EXPECT_EQ(fault_of("{2{1{#2}}, 1{0{#4}}, {1{#6}}}").substr(0, pass.size()), pass) << "no walk";
    EXPECT_EQ(of("{2{1{#2}}, 1{0{1{#4}}}, {1{#6}}}"), "{#2}") << "a variable in wrappers is in order";
}

TEST_F(Content, ProgressLines)
{
    const kept_word telling(&verbose, 1);
    const char p[] = "{3{2{#2}, 1{#4}}, 2{1{#6}}, {1{#10}}}";
    EXPECT_EQ(report_of([&] { of(p, 1); }), "Content, counting to 3. \n");
    EXPECT_EQ(report_of([&] { of(p, 0); }), "");
    poly_operand a(poly_of_text(p)), y(poly_of_text("{1{#2}}"));
    EXPECT_EQ(report_of([&] { aux_content(y.p, a.p, &g.p, names.names(), 1, 1, 1, 1); }),
              "Aux Content, counting to 4. \n");
    EXPECT_EQ(report_of([&] { dual_content(a.p, a.p, &g.p, names.names(), 1, 1, 1, 1); }),
              "Dual Content, counting to 6. \n");
}

struct GeneralContent : Content {
    std::int32_t found = 1;
    std::string in(const char *p, std::int32_t level)
    {
        const poly_operand a(poly_of_text(p));
        general_content(a.p, level, &g.p, names.names(), &found, 1);
        EXPECT_TRUE(poly_is_normal(g.p, 3)) << poly_text(g.p);
        return poly_text(g.p);
    }
};

// (x + 1) y^2 + (x + 1)^2: levels x, y.
TEST_F(GeneralContent, OfAnInnerVariable)
{
    EXPECT_EQ(in("{2{#1}, 1{2{#1}, #2}, {2{#1}, #1}}", 2), "{1{#1}, #1}");
    EXPECT_EQ(in("{2{#1}, 1{2{#1}, #2}, {2{#1}, #1}}", 1), "{#1}");
}

TEST_F(GeneralContent, AnAbsentVariable)
{
    found = 0;
    EXPECT_EQ(in("{1{{1{#1}, #1}}, {{1{#1}, #1}}}", 2), "{#1}");
    EXPECT_EQ(found, 1);
    EXPECT_EQ(in("{1{{1{#1}, #1}}, {{1{#1}, #1}}}", 2), "{1{0{1{#1}, #1}}, 0{0{1{#1}, #1}}}");
}

TEST_F(GeneralContent, AWrapperIsAFault)
{
    const std::string fault = "*** Kelmar error.  0 exp head node in general_content\n";
    EXPECT_EQ(report_of([&] { in("{{1{#1}, #1}}", 2); }).substr(0, fault.size()), fault);
}

TEST_F(GeneralContent, MoreLevelsThanVariablesAreAFault)
{
    const std::string fault = "*** Kelmar error. q number in general content\n";
    poly_operand p(poly_of_text("{1{{1{#1}, #1}}, {{1{#1}, #1}}}"));
    names.record[1].next = nullptr;
    EXPECT_EQ(
        report_of([&] { general_content(p.p, 3, &g.p, names.names(), &found, 1); }).substr(0, fault.size()),
        fault);
}

}  // namespace
