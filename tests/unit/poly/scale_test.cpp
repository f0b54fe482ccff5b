// A polynomial times a number, in every view.
#include "poly/scale.h"
#include <gtest/gtest.h>
#include "numbers/fields.h"
#include "poly/measure.h"
#include "tests/support/by_build.h"
#include "tests/support/polys.h"
#include "tests/support/views.h"

using namespace kelmar;
using namespace kelmar_test;

namespace {

constexpr int rounds = by_build(300, 4000);

std::string scaled_text(std::int32_t v, const char *text)
{
    poly_operand p(poly_of_text(text)), n, c;
    poly_set(v, &n.p);
    scalar_by_poly(n.p->num, p.p, &c.p);
    EXPECT_EQ(poly_text(p.p), text);
    return poly_text(c.p);
}

TEST(Scale, ByOneIsACopyAndByZeroIsZero)
{
    for (num_view v : {view_float, view_modular, view_word, view_small, view_digits}) {
        in_view live(v);
        EXPECT_EQ(scaled_text(1, "{2{1{#3}}, #4}"), "{2{1{#3}}, #4}");
        EXPECT_EQ(scaled_text(0, "{2{1{#3}}, #4}"), "{#0}");
        EXPECT_EQ(scaled_text(3, "{2{1{#3}}, #4}"), "{2{1{#9}}, #12}");
        EXPECT_EQ(scaled_text(3, "{#0}"), "{#0}");
    }
}

TEST(Scale, VanishingTermsAreDroppedModuloAComposite)
{
    in_view live(view_modular, 6);
    EXPECT_EQ(scaled_text(2, "{3{#3}, 2{#1}, #3}"), "{2{#2}}");
    EXPECT_EQ(scaled_text(3, "{2{1{#2}, #4}}"), "{#0}");
    EXPECT_EQ(scaled_text(2, "{2{1{#3}, #1}}"), "{2{#2}}");
}

TEST(Scale, AWrapperCollapsesWhenOnlyANumberStays)
{
    in_view live(view_modular, 6);
    EXPECT_EQ(scaled_text(2, "{1{#1}, 0{1{#3}, #1}}"), "{1{#2}, #2}");
    EXPECT_EQ(scaled_text(2, "{0{1{#3}, #1}}"), "{#2}");
    EXPECT_EQ(scaled_text(2, "{0{0{1{#3}, #2}}}"), "{#4}");
    EXPECT_EQ(scaled_text(2, "{0{1{#3}, 0{1{#1}}}}"), "{0{0{1{#2}}}}");
}

TEST(Scale, UnderflowIsDropped)
{
    in_view live(view_float);
    poly_operand p(poly_of_text("{2{#1e-200}, 1{#1}, #1e-200}")), n(poly_of_text("{#1e-200}")), c;
    scalar_by_poly(n.p->num, p.p, &c.p);
    EXPECT_EQ(poly_length(c.p), 1);
    EXPECT_EQ(c.p->exp, 1);
    EXPECT_TRUE(poly_is_normal(c.p, 1));
}

TEST(Scale, WrappingToZeroIsDropped)
{
    in_view live(view_word);
    EXPECT_EQ(scaled_text(65536, "{2{#65536}, #1}"), "{#65536}");
}

TEST(Scale, InLaurentANumberKeepsTheTermsBehindIt)
{
    in_view live(view_modular, 6);
    laurent = 1;
    EXPECT_EQ(scaled_text(2, "{1{#1}, #2, -1{#4}}"), "{1{#2}, #4, -1{#2}}");
    EXPECT_EQ(scaled_text(2, "{#3, -1{#4}}"), "{-1{#2}}");
    EXPECT_EQ(scaled_text(2, "{#1, -1{#3}}"), "{#2}");
    EXPECT_EQ(scaled_text(2, "{1{#2, -1{#3}}}"), "{1{#4}}");
    laurent = 0;
}

class ScaleInEveryView : public testing::TestWithParam<std::tuple<num_view, std::int32_t>> {};

TEST_P(ScaleInEveryView, AgreesWithTheFlatForm)
{
    in_view live(std::get<0>(GetParam()), std::get<1>(GetParam()));
    test_random r;
    poly_audit audit;
    for (int k = 0; k < rounds; ++k) {
        laurent = k % 2;
        const poly_shape shape = {4, 12, 3, laurent ? -3 : 0, 3};
        poly_operand p(random_poly(&r, shape)), n(new_constant(random_coefficient(&r, 3))), c;
        if (r.below(10) == 0) poly_set(static_cast<std::int32_t>(r.below(2)), &n.p);
        const std::string p_text = poly_text(p.p), n_text = poly_text(n.p);
        poly_operand expected(reference_product(n.p, p.p, 4));
        scalar_by_poly(n.p->num, p.p, &c.p);
        ASSERT_EQ(poly_text(c.p), poly_text(expected.p)) << n_text << " times " << p_text;
        ASSERT_TRUE(poly_is_normal(c.p, 4));
        ASSERT_EQ(poly_text(p.p), p_text);
        ASSERT_EQ(poly_text(n.p), n_text);
    }
    laurent = 0;
    audit.expect_unchanged("scalar_by_poly");
}

TEST_P(ScaleInEveryView, TheNumberMayBelongToThePolynomial)
{
    in_view live(std::get<0>(GetParam()), std::get<1>(GetParam()));
    test_random r;
    for (int k = 0; k < 300; ++k) {
        poly_operand p(random_poly(&r, {2, 8, 3, 0, 3})), n, c, d;
        poly_operand lead(new_constant(nullptr));
        lead.p->num = leading_coef(p.p);
        n.p = copy_poly(lead.p);
        scalar_by_poly(lead.p->num, p.p, &c.p);
        scalar_by_poly(n.p->num, p.p, &d.p);
        ASSERT_TRUE(poly_equal(c.p, d.p));
        give_node(lead.p);
        lead.p = nullptr;
    }
}

INSTANTIATE_TEST_SUITE_P(Rings, ScaleInEveryView,
                         testing::Combine(testing::Values(view_float, view_word, view_small, view_digits),
                                          testing::Values(101)));
INSTANTIATE_TEST_SUITE_P(Moduli, ScaleInEveryView,
                         testing::Combine(testing::Values(view_modular),
                                          testing::Values(2, 6, 101, 65536, 2147483646)));

// A table of any field serves: the product of the field is what num_mul says.
TEST(Scale, InATableField)
{
    in_view live(view_field);
    for (int i = 0; i < 256 * 256; ++i) {
        f256prod[i] = static_cast<std::uint16_t>((i / 256) * (i % 256) % 256);
    }
    test_random r;
    for (int k = 0; k < rounds; ++k) {
        poly_operand p(random_poly(&r, {3, 12, 3, 0, 1})), n(new_constant(random_coefficient(&r, 1))), c;
        poly_operand expected(reference_product(n.p, p.p, 3));
        scalar_by_poly(n.p->num, p.p, &c.p);
        ASSERT_EQ(poly_text(c.p), poly_text(expected.p));
        ASSERT_TRUE(poly_is_normal(c.p, 3));
    }
}

TEST(Scale, AMillionTermsDoNotDeepenTheStack)
{
    in_view live(view_modular, 6);
    poly_audit audit;
    poly_operand p, n, c;
    polynode **end = &p.p;
    for (std::int32_t e = 1000000; e > 0; --e) {
        polynode *coef = nullptr;
        poly_set(e % 2 ? 3 : 1, &coef);
        *end = new_term(e, coef);
        end = &(*end)->next;
    }
    poly_set(2, &n.p);
    scalar_by_poly(n.p->num, p.p, &c.p);
    EXPECT_EQ(poly_length(c.p), 500000);
    free_poly(&p.p);
    free_poly(&n.p);
    free_poly(&c.p);
    audit.expect_unchanged("a million terms");
}

// Words out of range ---------------------------------------------------------------------------------------

std::string standard_text(const char *text, std::int32_t m)
{
    poly_operand p;
    {
        in_view words(view_word);
        p.p = poly_of_text(text);
    }
    in_view live(view_modular, m);
    standard_form(&p.p);
    EXPECT_TRUE(poly_is_normal(p.p, 3)) << text;
    return poly_text(p.p);
}

TEST(StandardForm, BringsWordsIntoRangeAndDropsWhatVanishes)
{
    EXPECT_EQ(standard_text("{2{#-1}, 1{#15}, #7}", 7), "{2{#6}, 1{#1}}");
    EXPECT_EQ(standard_text("{2{1{#7}, #3}, #-8}", 7), "{2{#3}, #6}");
    EXPECT_EQ(standard_text("{1{1{#7}}, 0{1{#14}, #5}}", 7), "{#5}");
    EXPECT_EQ(standard_text("{1{1{#7}}, 0{1{#14}, #-49}}", 7), "{#0}");
    EXPECT_EQ(standard_text("{#-2147483648}", 2147483647), "{#2147483646}");
    in_view live(view_float);
    poly_operand p(poly_of_text("{2{#-1}, #0.5}"));
    standard_form(&p.p);
    EXPECT_EQ(poly_text(p.p), "{2{#-1}, #0.5}");
}

}  // namespace
