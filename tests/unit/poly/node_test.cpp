// Nodes, construction, copies, signs, comparison and the check of the normal form.
#include "poly/node.h"
#include <gtest/gtest.h>
#include "tests/support/by_build.h"
#include "tests/support/polys.h"
#include "tests/support/settings.h"
#include "tests/support/views.h"

using namespace kelmar;
using namespace kelmar_test;

namespace {

constexpr int rounds = by_build(300, 4000);

// A list of n terms x^(n-1) .. x^0, all with the coefficient 1.
polynode *long_list(std::int32_t n)
{
    polynode *first = nullptr;
    polynode **end = &first;
    for (std::int32_t e = n - 1; e >= 0; --e) {
        polynode *one = nullptr;
        poly_set(1, &one);
        if (e > 0) one = new_term(e, one);
        *end = one;
        end = &one->next;
    }
    return first;
}

bool normal_text(const char *text, std::int32_t levels = 3)
{
    poly_operand p(poly_of_text(text));
    return poly_is_normal(p.p, levels);
}

// Construction --------------------------------------------------------------------------------------------

TEST(Node, SetToZeroIsZeroInEveryView)
{
    for (num_view v : all_views) {
        in_view live(v);
        poly_audit audit;
        polynode *p = nullptr;
        poly_set(0, &p);
        EXPECT_TRUE(poly_iszero(p));
        EXPECT_TRUE(poly_is_normal(p, 0));
        EXPECT_EQ(poly_text(p), "{#0}");
        poly_set(1, &p);
        EXPECT_FALSE(poly_iszero(p));
        free_poly(&p);
        EXPECT_EQ(p, nullptr);
        audit.expect_unchanged("poly_set");
    }
}

TEST(Node, SetOfTwoDigitsKeepsTheSign)
{
    in_view live(view_digits);
    polynode *p = nullptr;
    poly_set(-digit_base, &p);
    expect_digits(p->num, {-1, 0});
    poly_set(digit_base - 1, &p);
    expect_digits(p->num, {digit_base - 1});
    free_poly(&p);
}

TEST(Node, VariableOfLevelThreeStandsBelowTwoWrappers)
{
    in_view live(view_float);
    polynode *p = nullptr;
    poly_set(5, &p);
    base_poly(&p, 3);
    EXPECT_EQ(poly_text(p), "{0{0{1{#1}}}}");
    EXPECT_TRUE(poly_is_normal(p, 3));
    EXPECT_FALSE(poly_is_normal(p, 2));
    base_poly(&p, 1);
    EXPECT_EQ(poly_text(p), "{1{#1}}");
    free_poly(&p);
}

TEST(Node, MonomialOfExpZeroAndNumberIsTheNumber)
{
    in_view live(view_float);
    polynode *c = poly_of_text("{#7}");
    polynode *p = nullptr;
    make_monomial(&p, 0, c);
    EXPECT_EQ(p, c);
    make_monomial(&p, 3, p);
    EXPECT_EQ(poly_text(p), "{3{#7}}");
    make_monomial(&p, 0, p);
    EXPECT_EQ(poly_text(p), "{0{3{#7}}}");
    free_poly(&p);
}

TEST(Node, PadLeavesAConstantAlone)
{
    in_view live(view_float);
    poly_operand p(poly_of_text("{#5}"));
    add_pad(&p.p, 4);
    EXPECT_EQ(poly_text(p.p), "{#5}");
}

TEST(Node, PadWrapsKTimesAndZeroTimes)
{
    in_view live(view_float);
    poly_operand p(poly_of_text("{1{#1}, #3}"));
    add_pad(&p.p, 0);
    EXPECT_EQ(poly_text(p.p), "{1{#1}, #3}");
    add_pad(&p.p, 2);
    EXPECT_EQ(poly_text(p.p), "{0{0{1{#1}, #3}}}");
}

TEST(Node, PadWrapsANumberWithTermsBehindIt)
{
    in_view live(view_float);
    in_laurent on(1);
    poly_operand p(poly_of_text("{#5, -1{#2}}"));
    add_pad(&p.p, 1);
    EXPECT_EQ(poly_text(p.p), "{0{#5, -1{#2}}}");
    EXPECT_TRUE(poly_is_normal(p.p, 2));
}

// Copies --------------------------------------------------------------------------------------------------

class InEveryView : public testing::TestWithParam<std::tuple<num_view, int>> {};

TEST_P(InEveryView, CopiesAreEqualAndApart)
{
    in_view live(std::get<0>(GetParam()));
    in_laurent on(std::get<1>(GetParam()));
    test_random r;
    poly_audit audit;
    for (int k = 0; k < rounds; ++k) {
        const poly_shape shape = {1 + static_cast<std::int32_t>(r.below(4)), 12, 4, laurent ? -4 : 0, 3};
        poly_operand p(random_poly(&r, shape)), q(random_poly(&r, shape)), minus;
        const std::string text = poly_text(p.p);
        ASSERT_TRUE(poly_is_normal(p.p, shape.vars)) << text;
        poly_assign(p.p, &q.p);
        ASSERT_TRUE(poly_equal(p.p, q.p)) << text;
        ASSERT_TRUE(poly_is_normal(q.p, shape.vars)) << text;
        ASSERT_EQ(poly_text(q.p), text);

        poly_makeneg(p.p, &minus.p);
        ASSERT_TRUE(poly_neg(p.p, minus.p)) << text;
        ASSERT_TRUE(poly_is_normal(minus.p, shape.vars)) << text;
        poly_inplace(q.p);
        ASSERT_TRUE(poly_equal(q.p, minus.p)) << text;
        poly_makeneg(minus.p, &minus.p);
        ASSERT_EQ(poly_text(minus.p), text);
        ASSERT_EQ(poly_text(p.p), text) << "a copy has moved with its source";
        poly_assign(p.p, &p.p);
        ASSERT_EQ(poly_text(p.p), text);
    }
    audit.expect_unchanged("copies");
}

TEST_P(InEveryView, EqualAndNegativeAgreeWithTheText)
{
    in_view live(std::get<0>(GetParam()));
    in_laurent on(std::get<1>(GetParam()));
    test_random r;
    for (int k = 0; k < rounds; ++k) {
        const poly_shape shape = {2, 3, 1, laurent ? -1 : 0, 1};
        poly_operand p(random_poly(&r, shape)), q(random_poly(&r, shape)), minus;
        poly_makeneg(q.p, &minus.p);
        ASSERT_EQ(poly_equal(p.p, q.p), poly_text(p.p) == poly_text(q.p));
        ASSERT_EQ(poly_neg(p.p, q.p), poly_text(p.p) == poly_text(minus.p));
        ASSERT_EQ(poly_iszero(p.p), poly_text(p.p) == "{#0}");
    }
}

INSTANTIATE_TEST_SUITE_P(AllViews, InEveryView,
                         testing::Combine(testing::ValuesIn(all_views), testing::Values(0, 1)));

TEST(Node, OneVariableCopySkipsLeadingWrappers)
{
    in_view live(view_float);
    poly_audit audit;
    {
        poly_operand p(poly_of_text("{0{0{2{#1}, #4}}}")), q, constant(poly_of_text("{#4}"));
        one_var_poly_assign(p.p, &q.p);
        EXPECT_EQ(poly_text(q.p), "{2{#1}, #4}");
        free_poly(&q.p);
        one_var_poly_assign(constant.p, &q.p);
        EXPECT_EQ(poly_text(q.p), "{#4}");
    }
    audit.expect_unchanged("one_var_poly_assign");
}

TEST(Node, OneVariableCopyKeepsAnExpZeroTermWithTermsBehindIt)
{
    in_view live(view_float);
    in_laurent on(1);
    poly_operand p(poly_of_text("{0{1{#1}}, -1{#2}}")), q;
    one_var_poly_assign(p.p, &q.p);
    EXPECT_EQ(poly_text(q.p), "{0{1{#1}}, -1{#2}}");
}

TEST(Node, ScratchCopySharesCoefficientsAndTheNumber)
{
    in_view live(view_float);
    poly_operand p(poly_of_text("{2{1{#1}}, 1{#3}, #4}"));
    const std::int64_t before = live_polynodes();
    polynode *q = nullptr;
    spec_poly_assign(p.p, &q);
    EXPECT_EQ(live_polynodes(), before + 2);
    EXPECT_EQ(poly_text(q), poly_text(p.p));
    EXPECT_NE(q, p.p);
    EXPECT_EQ(q->coef, p.p->coef);
    EXPECT_EQ(q->next->next, p.p->next->next);
    polynode *second = q->next;
    give_nodes(q, second);
}

TEST(Node, FirstTermIsCopiedAlone)
{
    in_view live(view_float);
    poly_operand p(poly_of_text("{2{1{#1}, #-2}, #4}")), q(copy_term(p.p)), m(negated_term(p.p));
    EXPECT_EQ(poly_text(q.p), "{2{1{#1}, #-2}}");
    EXPECT_EQ(poly_text(m.p), "{2{1{#-1}, #2}}");
}

// Release -------------------------------------------------------------------------------------------------

TEST(Node, FreeOfNullIsAllowed)
{
    polynode *p = nullptr;
    free_poly(&p);
    special_free_poly(&p);
    EXPECT_EQ(p, nullptr);
}

TEST(Node, SpecialFreeLeavesNullNumbersAlone)
{
    in_view live(view_digits);
    poly_audit audit;
    polynode *p = long_list(1);
    p->next = new_constant(nullptr);
    poly_set(3, &p->next->next);
    special_free_poly(&p);
    EXPECT_EQ(p, nullptr);
    audit.expect_unchanged("special_free_poly");
}

TEST(Node, AMillionTermsAreCopiedNegatedAndReleasedInALoop)
{
    for (num_view v : {view_modular, view_digits}) {
        in_view live(v);
        poly_audit audit;
        poly_operand p(long_list(1000000)), q;
        poly_makeneg(p.p, &q.p);
        EXPECT_TRUE(poly_neg(p.p, q.p));
        EXPECT_TRUE(poly_is_normal(q.p, 1));
        free_poly(&p.p);
        free_poly(&q.p);
        audit.expect_unchanged("a million terms");
    }
}

#ifndef KELMAR_MALLOC_RECORDS
TEST(Node, ReleasedNodesAreTakenAgainInTheOrderOfACopy)
{
    in_view live(view_float);
    polynode *p = poly_of_text("{3{1{#1}, #2}, 2{#1}, #4}");
    const polynode *const order[] = {p,       p->coef,       p->coef->coef, p->coef->next,
                                     p->next, p->next->coef, p->next->next};
    free_poly(&p);
    const polynode *free_node = polygarb;
    for (const polynode *node : order) {
        EXPECT_EQ(free_node, node);
        free_node = free_node->next;
    }
}
#endif

TEST(Node, PrimedNodesAreOnTheFreeListAndNotOut)
{
    const std::int64_t live = live_polynodes();
    const std::int32_t taken = polystash->slugs_used;
    prime_polygarb(5001);
    EXPECT_EQ(polystash->slugs_used, taken + 5001);
    EXPECT_EQ(live_polynodes(), live);
    polynode *p = nullptr;
    newpoly(&p);
    EXPECT_EQ(polystash->slugs_used, taken + 5001) << "the free list comes first";
    EXPECT_EQ(live_polynodes(), live + 1);
    give_node(p);
    EXPECT_EQ(live_polynodes(), live);
}

// Tests ---------------------------------------------------------------------------------------------------

TEST(Node, ANumberWithTermsBehindItIsNotZero)
{
    in_view live(view_float);
    in_laurent on(1);
    poly_operand p(poly_of_text("{#0, -1{#2}}"));
    EXPECT_FALSE(poly_iszero(p.p));
    EXPECT_FALSE(is_constant(p.p));
}

TEST(Node, EqualGoesDownWrappersAndComparesExponents)
{
    in_view live(view_float);
    poly_operand a(poly_of_text("{0{1{#2}, #3}}")), b(poly_of_text("{0{1{#2}, #3}}"));
    poly_operand c(poly_of_text("{0{2{#2}, #3}}")), d(poly_of_text("{0{1{#2}}}")),
        e(poly_of_text("{1{#2}, #3}"));
    EXPECT_TRUE(poly_equal(a.p, b.p));
    EXPECT_FALSE(poly_equal(a.p, c.p));
    EXPECT_FALSE(poly_equal(a.p, d.p));
    EXPECT_FALSE(poly_equal(d.p, a.p));
    EXPECT_FALSE(poly_equal(a.p, e.p));
}

TEST(Node, TheExponentOfANumberIsNotCompared)
{
    in_view live(view_float);
    poly_operand a(poly_of_text("{#3}")), b(poly_of_text("{#3}")), m(poly_of_text("{#-3}"));
    b.p->exp = m.p->exp = 7;
    EXPECT_TRUE(poly_equal(a.p, b.p));
    EXPECT_TRUE(poly_neg(a.p, m.p));
}

TEST(Node, InATableFieldEverythingIsItsOwnNegative)
{
    in_view live(view_field);
    poly_operand a(poly_of_text("{2{#3}, #7}"));
    EXPECT_TRUE(poly_neg(a.p, a.p));
}

TEST(Node, MonomialMeansOneTermOnEveryLevel)
{
    in_view live(view_float);
    const struct {
        const char *text;
        bool expected;
    } rows[] = {{"{#0}", true},         {"{2{#3}}", true},         {"{0{1{0{4{#1}}}}}", true},
                {"{2{#3}, #1}", false}, {"{2{1{#3}, #1}}", false}, {"{0{1{#1}, #2}}", false}};
    for (const auto &row : rows) {
        poly_operand p(poly_of_text(row.text));
        EXPECT_EQ(monomial(p.p), row.expected) << row.text;
    }
    in_laurent on(1);
    poly_operand p(poly_of_text("{#2, -1{#1}}"));
    EXPECT_FALSE(monomial(p.p));
}

TEST(Node, TheLeadingTermIsTheFirstOnEveryLevel)
{
    in_view live(view_float);
    poly_operand p(poly_of_text("{2{1{#-3}, #8}, #9}")), q(poly_of_text("{0{1{#4}, #-8}}")),
        c(poly_of_text("{#-1}"));
    EXPECT_EQ(leading_coef(p.p)->real, -3);
    EXPECT_TRUE(neg_leading_term(p.p));
    EXPECT_FALSE(neg_leading_term(q.p));
    EXPECT_TRUE(neg_leading_term(c.p));
    in_view other(view_modular);
    poly_operand residue(poly_of_text("{1{#100}}"));
    EXPECT_FALSE(neg_leading_term(residue.p)) << "residues are never negative";
}

// The normal form -------------------------------------------------------------------------------------------

TEST(Normal, AcceptsWhatTheRulesAllow)
{
    in_view live(view_float);
    for (const char *text : {"{#0}", "{#5}", "{1{#1}}", "{2{#3}, #1}", "{0{1{#1}, #3}}",
                             "{1{#1}, 0{1{#1}, #3}}", "{3{1{#1}}, 1{0{2{#1}}}, #4}"}) {
        EXPECT_TRUE(normal_text(text)) << text;
    }
}

TEST(Normal, RefusesEachBrokenRule)
{
    in_view live(view_float);
    EXPECT_FALSE(poly_is_normal(nullptr, 3));
    for (const char *text : {"{1{#1}, 1{#2}}",       // equal exponents
                             "{1{#1}, 2{#2}}",       // rising
                             "{2{#0}, #1}",          // a zero coefficient
                             "{2{#1}, #0}",          // a zero constant term
                             "{2{1{#0}}}",           // the same one level down
                             "{3#5}",                // a number above exp 0
                             "{2{#1}, 1#5}",         // the same within a list
                             "{0{#5}}",              // a wrapped constant
                             "{2{#1}, 0{#5}}",       // the same as a last term
                             "{0{0{#5}}}",           // the same, twice
                             "{1{#1}, #2, #3}",      // two constant terms
                             "{-1{#1}}",             // a negative exponent
                             "{#3, -1{#1}}",         // a number with terms behind it
                             "{0{1{#1}}, -1{#1}}",   // a wrapper with terms behind it
                             "{1{1{1{1{#1}}}}}"}) {  // four levels
        EXPECT_FALSE(normal_text(text)) << text;
    }
}

TEST(Normal, LaurentAllowsNegativeExponentsAndTermsBehindANumber)
{
    in_view live(view_float);
    in_laurent on(1);
    for (const char *text :
         {"{-1{#1}}", "{#3, -1{#1}}", "{0{1{#1}}, -1{#1}}", "{2{#3, -1{#1}}, 0{#3, -2{#1}}}"}) {
        EXPECT_TRUE(normal_text(text)) << text;
    }
    for (const char *text : {"{#0, -1{#1}}", "{-1#4}", "{0{#4}, -1{#1}}"})
        EXPECT_FALSE(normal_text(text)) << text;
}

TEST(Normal, LooksIntoTheNumbers)
{
    poly_operand p;
    {
        in_view live(view_modular, 101);
        poly_set(100, &p.p);
        EXPECT_TRUE(poly_is_normal(p.p, 1));
        p.p->num->word = 101;
        EXPECT_FALSE(poly_is_normal(p.p, 1));
        p.p->num->word = -1;
        EXPECT_FALSE(poly_is_normal(p.p, 1));
        free_poly(&p.p);
    }
    in_view live(view_digits);
    poly_set(digit_base, &p.p);
    EXPECT_TRUE(poly_is_normal(p.p, 1));
    p.p->num->tail->digit = -1;
    EXPECT_FALSE(poly_is_normal(p.p, 1));
}

}  // namespace
