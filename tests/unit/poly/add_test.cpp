// Sums and differences: all flavours, in every view, with laurent on and off, against the flat form.
#include "poly/add.h"
#include <gtest/gtest.h>
#include "tests/support/by_build.h"
#include "tests/support/polys.h"
#include "tests/support/settings.h"
#include "tests/support/views.h"

using namespace kelmar;
using namespace kelmar_test;

namespace {

constexpr int rounds = by_build(150, 1000);

std::string sum_text(const char *a, const char *b)
{
    poly_operand p(poly_of_text(a)), q(poly_of_text(b)), c;
    poly_add(p.p, q.p, &c.p);
    return poly_text(c.p);
}

std::string difference_text(const char *a, const char *b)
{
    poly_operand p(poly_of_text(a)), q(poly_of_text(b)), c;
    poly_sub(p.p, q.p, &c.p);
    return poly_text(c.p);
}

// Named cases ---------------------------------------------------------------------------------------------

TEST(Add, OppositesGiveTheZeroPolynomial)
{
    for (num_view v : {view_float, view_word, view_small, view_digits}) {
        in_view live(v);
        EXPECT_EQ(sum_text("{1{#1}}", "{1{#-1}}"), "{#0}");
        EXPECT_EQ(sum_text("{2{1{#3}, #2}, #4}", "{2{1{#-3}, #-2}, #-4}"), "{#0}");
        EXPECT_EQ(difference_text("{2{1{#3}, #2}, #4}", "{2{1{#3}, #2}, #4}"), "{#0}");
    }
}

TEST(Add, TheConstantTermGoesWhenItCancels)
{
    in_view live(view_float);
    EXPECT_EQ(sum_text("{1{#1}, #1}", "{#-1}"), "{1{#1}}");
    EXPECT_EQ(sum_text("{#-1}", "{1{#1}, #1}"), "{1{#1}}");
}

TEST(Add, ANumberGoesDownToTheListBelowTheWrapper)
{
    in_view live(view_float);
    EXPECT_EQ(sum_text("{0{1{#1}, #1}}", "{#2}"), "{0{1{#1}, #3}}");
    EXPECT_EQ(sum_text("{#2}", "{0{1{#1}, #1}}"), "{0{1{#1}, #3}}");
    EXPECT_EQ(sum_text("{#2}", "{0{0{1{#1}, #-2}}}"), "{0{0{1{#1}}}}");
    EXPECT_EQ(difference_text("{#2}", "{0{1{#1}, #1}}"), "{0{1{#-1}, #1}}");
}

TEST(Add, AWrapperCollapsesWhenOnlyANumberStays)
{
    in_view live(view_float);
    EXPECT_EQ(sum_text("{1{#1}, 0{1{#1}, #5}}", "{0{1{#-1}}}"), "{1{#1}, #5}");
    EXPECT_EQ(sum_text("{0{1{#1}, #5}}", "{0{1{#-1}}}"), "{#5}");
    EXPECT_EQ(sum_text("{0{0{1{#1}, #5}}}", "{0{0{1{#-1}}}}"), "{#5}");
}

TEST(Add, ACoefficientThatBecomesANumberStandsBelowItsPower)
{
    in_view live(view_float);
    EXPECT_EQ(sum_text("{2{1{#1}, #5}}", "{2{1{#-1}}}"), "{2{#5}}");
    EXPECT_EQ(sum_text("{2{1{#1}, #5}}", "{2{#-5}}"), "{2{1{#1}}}");
}

TEST(Add, TheListEndsBeforeALastTermThatCancels)
{
    in_view live(view_float);
    poly_operand p(poly_of_text("{3{#1}, 2{#5}}")), q(poly_of_text("{2{#-5}}"));
    best_poly_add(p.p, q.p, &p.p);
    q.p = nullptr;
    EXPECT_EQ(poly_text(p.p), "{3{#1}}");
    EXPECT_EQ(p.p->next, nullptr);
}

TEST(Add, AddingZeroIsSafe)
{
    in_view live(view_digits);
    EXPECT_EQ(sum_text("{#0}", "{#0}"), "{#0}");
    EXPECT_EQ(sum_text("{2{#1}}", "{#0}"), "{2{#1}}");
    EXPECT_EQ(sum_text("{#0}", "{2{#1}}"), "{2{#1}}");
    EXPECT_EQ(sum_text("{2{#1}, 0{1{#1}}}", "{#0}"), "{2{#1}, 0{1{#1}}}");
    EXPECT_EQ(difference_text("{#0}", "{2{#1}, #-3}"), "{2{#-1}, #3}");
}

TEST(Add, InLaurentANumberIsAddedWithoutTheTermsBehindIt)
{
    in_view live(view_float);
    in_laurent on(1);
    EXPECT_EQ(sum_text("{#2, -1{#7}}", "{0{1{#1}}, -1{#1}}"), "{0{1{#1}, #2}, -1{#8}}");
    EXPECT_EQ(sum_text("{0{1{#1}}, -2{#1}}", "{#2, -1{#7}}"), "{0{1{#1}, #2}, -1{#7}, -2{#1}}");
    EXPECT_EQ(sum_text("{#2, -1{#7}}", "{#-2}"), "{-1{#7}}");
    EXPECT_EQ(sum_text("{#0}", "{-1{#7}}"), "{-1{#7}}");
    EXPECT_EQ(sum_text("{-1{#7}}", "{#0}"), "{-1{#7}}");
    EXPECT_EQ(sum_text("{0{1{#1}}, -1{#7}}", "{0{1{#-1}}}"), "{-1{#7}}");
    EXPECT_EQ(difference_text("{#0}", "{-1{#7}}"), "{-1{#-7}}");
}

TEST(Add, ASparedNumberKeepsTheTermsBehindIt)
{
    in_view live(view_float);
    in_laurent on(1);
    poly_operand p(poly_of_text("{#2, -1{#7}}")), q(poly_of_text("{0{1{#1}}}")), c;
    poly_add(p.p, q.p, &c.p);
    EXPECT_EQ(poly_text(p.p), "{#2, -1{#7}}");
    better_poly_add(q.p, p.p, &q.p);
    EXPECT_EQ(poly_text(p.p), "{#2, -1{#7}}");
    EXPECT_TRUE(poly_equal(q.p, c.p));
}

// Random operands -------------------------------------------------------------------------------------------

using adder = void (*)(const polynode *, const polynode *, polynode **);
using better_adder = void (*)(polynode *, const polynode *, polynode **);
using best_adder = void (*)(polynode *, polynode *, polynode **);

struct flavours {
    adder plain;
    better_adder better;
    best_adder best;
    polynode *(*reference)(const polynode *, const polynode *, std::int32_t);
};

const flavours operations[] = {{poly_add, better_poly_add, best_poly_add, reference_sum},
                               {poly_sub, better_poly_sub, best_poly_sub, reference_difference}};

class AddInEveryView : public testing::TestWithParam<std::tuple<num_view, int, std::int32_t>> {};

TEST_P(AddInEveryView, FlavoursAgreeWithTheFlatForm)
{
    in_view live(std::get<0>(GetParam()), std::get<2>(GetParam()));
    in_laurent on(std::get<1>(GetParam()));
    test_random r;
    poly_audit audit;
    for (int k = 0; k < rounds; ++k) {
        const std::int32_t vars = 1 + static_cast<std::int32_t>(r.below(6));
        const poly_shape shape = {vars, 1 + static_cast<std::int32_t>(r.below(20)), 3, laurent ? -3 : 0, 3};
        const flavours &op = operations[k % 2];
        poly_operand a(random_poly(&r, shape)), b(random_poly(&r, shape));
        if (r.below(3) == 0) {  // much cancels
            poly_operand near(copy_poly(a.p));
            if (k % 2 == 0) poly_inplace(near.p);
            polynode *mixed = reference_sum(b.p, near.p, vars);
            free_poly(&b.p);
            b.p = r.below(2) ? mixed : copy_poly(near.p);
            if (b.p != mixed) free_poly(&mixed);
        }
        const std::string a_text = poly_text(a.p), b_text = poly_text(b.p);
        poly_operand expected(op.reference(a.p, b.p, vars));
        const std::string text = poly_text(expected.p);

        poly_operand c;
        op.plain(a.p, b.p, &c.p);
        ASSERT_EQ(poly_text(c.p), text) << a_text << " and " << b_text;
        ASSERT_TRUE(poly_is_normal(c.p, vars)) << text;
        ASSERT_EQ(poly_text(a.p), a_text);
        ASSERT_EQ(poly_text(b.p), b_text);

        poly_operand first(copy_poly(a.p)), second(copy_poly(b.p));
        op.better(first.p, second.p, &first.p);
        ASSERT_EQ(poly_text(first.p), text) << a_text << " and " << b_text;
        ASSERT_TRUE(poly_is_normal(first.p, vars)) << text;
        ASSERT_EQ(poly_text(second.p), b_text);

        poly_operand third(copy_poly(a.p));
        polynode *fourth = copy_poly(b.p);
        if (r.below(2)) {
            op.best(third.p, fourth, &third.p);
        } else {
            polynode *old = third.p;
            third.p = nullptr;
            op.best(old, fourth, &fourth);
            third.p = fourth;
        }
        ASSERT_EQ(poly_text(third.p), text) << a_text << " and " << b_text;
        ASSERT_TRUE(poly_is_normal(third.p, vars)) << text;
    }
    audit.expect_unchanged("sums");
}

TEST_P(AddInEveryView, AnOperandMayBeBothWhenItIsSpared)
{
    in_view live(std::get<0>(GetParam()), std::get<2>(GetParam()));
    in_laurent on(std::get<1>(GetParam()));
    test_random r;
    for (int k = 0; k < 200; ++k) {
        poly_operand a(random_poly(&r, {3, 10, 3, laurent ? -3 : 0, 2})), twice, none;
        const std::string text = poly_text(a.p);
        poly_add(a.p, a.p, &twice.p);
        poly_sub(a.p, a.p, &none.p);
        poly_operand expected(reference_sum(a.p, a.p, 3));
        ASSERT_TRUE(poly_equal(twice.p, expected.p)) << text;
        ASSERT_TRUE(poly_iszero(none.p)) << text;
        ASSERT_EQ(poly_text(a.p), text);
    }
}

TEST_P(AddInEveryView, SumsFormAGroup)
{
    in_view live(std::get<0>(GetParam()), std::get<2>(GetParam()));
    in_laurent on(std::get<1>(GetParam()));
    test_random r;
    for (int k = 0; k < rounds / 4; ++k) {
        const poly_shape shape = {4, 12, 3, laurent ? -3 : 0, 2};
        poly_operand a(random_poly(&r, shape)), b(random_poly(&r, shape)), c(random_poly(&r, shape));
        poly_operand ab, ab_c, bc, a_bc, ba, back;
        poly_add(a.p, b.p, &ab.p);
        poly_add(b.p, a.p, &ba.p);
        ASSERT_TRUE(poly_equal(ab.p, ba.p));
        poly_add(ab.p, c.p, &ab_c.p);
        poly_add(b.p, c.p, &bc.p);
        poly_add(a.p, bc.p, &a_bc.p);
        ASSERT_TRUE(poly_equal(ab_c.p, a_bc.p));
        poly_sub(ab.p, b.p, &back.p);
        ASSERT_TRUE(poly_equal(back.p, a.p));
    }
}

INSTANTIATE_TEST_SUITE_P(Exact, AddInEveryView,
                         testing::Combine(testing::Values(view_float, view_field, view_word, view_small,
                                                          view_digits),
                                          testing::Values(0, 1), testing::Values(101)));
INSTANTIATE_TEST_SUITE_P(Moduli, AddInEveryView,
                         testing::Combine(testing::Values(view_modular), testing::Values(0, 1),
                                          testing::Values(2, 3, 101, 65521, 65537, 2147483646)));

// One level -------------------------------------------------------------------------------------------------

TEST(Simplest, AgreesWithTheOtherFlavours)
{
    for (num_view v : {view_float, view_modular, view_field}) {
        for (std::int32_t m : {2, 101, 2147483646}) {
            in_view live(v, m);
            test_random r;
            poly_audit audit;
            for (int k = 0; k < rounds; ++k) {
                const poly_shape shape = {1, 1 + static_cast<std::int32_t>(r.below(12)), 12, 0, 1};
                poly_operand a(random_poly(&r, shape));
                polynode *b = r.below(4) ? random_poly(&r, shape) : copy_poly(a.p);
                if (r.below(8) == 0) poly_inplace(b);
                const bool minus = k % 2 == 1;
                poly_operand expected;
                (minus ? poly_sub : poly_add)(a.p, b, &expected.p);
                const std::string text = poly_text(a.p) + " and " + poly_text(b);
                (minus ? simplest_poly_sub : simplest_poly_add)(a.p, b, &a.p);
                ASSERT_EQ(poly_text(a.p), poly_text(expected.p)) << text;
                ASSERT_TRUE(poly_is_normal(a.p, 1)) << text;
            }
            audit.expect_unchanged("simplest");
        }
    }
}

// Storage ---------------------------------------------------------------------------------------------------

#ifndef KELMAR_MALLOC_RECORDS
// Nodes, numbers and digits taken from the stashes while the free lists are kept away.
struct taken_records {
    polynode *polys = polygarb;
    number *numbers = imhead;
    numnode *digits = numhead;
    std::int32_t poly_slugs = polystash->slugs_used, number_slugs = imagstash->slugs_used,
                 digit_slugs = numstash->slugs_used;
    taken_records()
    {
        polygarb = nullptr;
        imhead = nullptr;
        numhead = nullptr;
    }
    void expect_none(const char *where) const
    {
        EXPECT_EQ(polystash->slugs_used, poly_slugs) << where;
        EXPECT_EQ(imagstash->slugs_used, number_slugs) << where;
        EXPECT_EQ(numstash->slugs_used, digit_slugs) << where;
    }
    ~taken_records()  // behind what was released meanwhile
    {
        polynode **p = &polygarb;
        while (*p) p = &(*p)->next;
        *p = polys;
        number **n = &imhead;
        while (*n) n = &(*n)->link;
        *n = numbers;
        numnode **d = &numhead;
        while (*d) d = &(*d)->next;
        *d = digits;
    }
};

TEST(Storage, ConsumingBothOperandsTakesNoRecord)
{
    for (num_view v : all_views) {
        in_view live(v);
        test_random r;
        for (int k = 0; k < 400; ++k) {
            poly_operand a(random_poly(&r, {4, 30, 3, 0, 1}));
            polynode *b = k % 4 ? random_poly(&r, {4, 30, 3, 0, 1}) : copy_poly(a.p);
            // A carry out of the head of a digit chain is the one thing that no operand has room for.
            if (v == view_digits) setvalue(3, leading_coef(a.p));
            const taken_records taken;
            if (k % 2) {
                best_poly_add(a.p, b, &a.p);
            } else {
                best_poly_sub(a.p, b, &a.p);
            }
            if (v != view_digits) taken.expect_none("best");
            EXPECT_EQ(polystash->slugs_used, taken.poly_slugs);
            EXPECT_EQ(imagstash->slugs_used, taken.number_slugs);
        }
    }
}

TEST(Storage, LongCoefficientsAreAddedInTheLongerChain)
{
    in_view live(view_digits);
    for (int minus = 0; minus <= 1; ++minus) {
        poly_operand a(poly_of_text("{1{#3}, #4}"));
        polynode *b = poly_of_text("{1{#3}, #4}");
        special_free(b->coef->num);
        number_from_text("123456789012345678901234567890", b->coef->num);
        const taken_records taken;
        (minus ? best_poly_sub : best_poly_add)(a.p, b, &a.p);
        taken.expect_none("longer chain");
        EXPECT_EQ(poly_text(a.p), minus ? "{1{#-123456789012345678901234567887}}"
                                        : "{1{#123456789012345678901234567893}, #8}");
    }
}

TEST(Storage, SimplestTakesNoRecord)
{
    for (num_view v : {view_float, view_modular}) {
        in_view live(v);
        test_random r;
        for (int k = 0; k < 400; ++k) {
            poly_operand a(random_poly(&r, {1, 30, 40, 0, 1}));
            polynode *b = k % 4 ? random_poly(&r, {1, 30, 40, 0, 1}) : copy_poly(a.p);
            const taken_records taken;
            (k % 2 ? simplest_poly_add : simplest_poly_sub)(a.p, b, &a.p);
            taken.expect_none("simplest");
        }
    }
}

TEST(Storage, ConsumingOneOperandCopiesOnlyWhatStays)
{
    in_view live(view_float);
    poly_operand a(poly_of_text("{3{#1}, 2{#1}, 1{#1}, #1}")), b(poly_of_text("{2{#4}, #4}"));
    const taken_records taken;
    better_poly_add(a.p, b.p, &a.p);
    taken.expect_none("every term of b meets one of a");
    EXPECT_EQ(poly_text(a.p), "{3{#1}, 2{#5}, 1{#1}, #5}");
}
#endif

// Length ----------------------------------------------------------------------------------------------------

polynode *every_second_term(std::int32_t top, std::int32_t low)
{
    polynode *first = nullptr;
    polynode **end = &first;
    for (std::int32_t e = top; e >= low; e -= 2) {
        polynode *one = nullptr;
        poly_set(1, &one);
        *end = e == 0 ? one : new_term(e, one);
        end = &(*end)->next;
    }
    return first;
}

TEST(Length, AMillionTermsDoNotDeepenTheStack)
{
    in_view live(view_modular);
    poly_audit audit;
    poly_operand even(every_second_term(2000000, 0)), odd(every_second_term(1999999, 1)), sum, difference;
    poly_add(even.p, odd.p, &sum.p);
    poly_sub(sum.p, odd.p, &difference.p);
    EXPECT_TRUE(poly_equal(difference.p, even.p));
    better_poly_sub(difference.p, even.p, &difference.p);
    EXPECT_TRUE(poly_iszero(difference.p));
    best_poly_sub(sum.p, odd.p, &sum.p);
    odd.p = nullptr;
    simplest_poly_sub(sum.p, even.p, &sum.p);
    even.p = nullptr;
    EXPECT_TRUE(poly_iszero(sum.p));
    free_poly(&sum.p);
    free_poly(&difference.p);
    audit.expect_unchanged("a million terms");
}

}  // namespace
