// The extended gcd of the language: skipped levels, exchanged operands, table fields, errors.
#include "gcd/extended.h"
#include "poly/mul.h"
#include "tests/support/divisions.h"
#include "tests/support/fields.h"

using namespace kelmar;
using namespace kelmar_test;

namespace {

struct ExtendedGcd : testing::Test {
    six_in_force names;
    in_field live{101};
    poly_operand g, s, t;

    int run(const char *a, const char *b, std::int32_t swap = 0)
    {
        const poly_operand p(poly_of_text(a)), q(poly_of_text(b));
        return egcd_polys(p.p, q.p, &g.p, &s.p, &t.p, names.names(), swap);
    }
    int error_of(const char *a, const char *b)
    {
        return error_in_view([&] { run(a, b); });
    }
    // s a + t b = g.
    void expect_identity(const char *a, const char *b, std::int32_t vars)
    {
        const poly_operand p(poly_of_text(a)), q(poly_of_text(b));
        ASSERT_EQ(egcd_polys(p.p, q.p, &g.p, &s.p, &t.p, names.names(), 0), 1);
        const poly_operand u(reference_product(s.p, p.p, vars)), v(reference_product(t.p, q.p, vars));
        const poly_operand sum(reference_sum(u.p, v.p, vars));
        EXPECT_EQ(poly_text(sum.p), poly_text(g.p)) << a << " and " << b;
    }
};

TEST_F(ExtendedGcd, Identities)
{
    expect_identity("{3{#2}, 1{#5}, #1}", "{2{#3}, #7}", 1);
    EXPECT_EQ(poly_text(g.p), "{#1}");
    expect_identity("{2{#1}, #100}", "{2{#3}, 1{#6}, #3}", 1);
    EXPECT_EQ(poly_text(g.p), "{1{#1}, #1}");
    expect_identity("{1{#1}, #1}", "{4{#1}, #2}", 1);
    expect_identity("{1{#7}}", "{1{#7}}", 1);
    EXPECT_EQ(poly_text(g.p), "{1{#1}}");
}

TEST_F(ExtendedGcd, SkippedLevelsComeBack)
{
    expect_identity("{0{0{2{#1}, #100}}}", "{0{0{1{#2}, #2}}}", 3);
    EXPECT_EQ(poly_text(g.p), "{0{0{1{#1}, #1}}}");
}

TEST_F(ExtendedGcd, ExchangedOperands)
{
    run("{3{#2}, 1{#5}, #1}", "{2{#3}, #7}");
    const std::string first = poly_text(s.p), second = poly_text(t.p);
    run("{3{#2}, 1{#5}, #1}", "{2{#3}, #7}", 1);
    EXPECT_EQ(poly_text(s.p), second);
    EXPECT_EQ(poly_text(t.p), first);
}

TEST_F(ExtendedGcd, TableFields)
{
    const in_field wide(65536);
    expect_identity("{3{#2}, 1{#500}, #1}", "{2{#3}, #7}", 1);
    const in_field small(256);
    expect_identity("{3{#2}, 1{#200}, #1}", "{2{#3}, #7}", 1);
}

TEST_F(ExtendedGcd, Errors)
{
    EXPECT_EQ(error_of("{#1}", "{1{#1}, #1}"), 349);
    EXPECT_EQ(error_of("{1{#1}, #1}", "{#0}"), 349);
    EXPECT_EQ(error_of("{1{1{#1}}, #1}", "{1{#1}, #1}"), 348);
    EXPECT_EQ(error_of("{1{#1}, #1}", "{{1{#1}, #1}}"), 348);
    {
        const kept_word depth(&field_depth, 1);
        EXPECT_EQ(error_of("{1{#1}, #1}", "{1{#1}, #2}"), 348);
    }
    {
        const in_laurent on(1);
        EXPECT_EQ(error_of("{1{#1}, -1{#1}}", "{1{#1}, #1}"), 198);
    }
    in_view digits(view_digits);
    EXPECT_EQ(error_of("{1{#1}, #1}", "{1{#1}, #2}"), 284);
    in_view floats(view_float);
    EXPECT_EQ(error_of("{1{#1}, #1}", "{1{#1}, #2}"), 284);
}

}  // namespace
