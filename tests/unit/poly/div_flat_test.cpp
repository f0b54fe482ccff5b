// Exact division in a row of cells: (q m) / m = q; what does not divide is told; what may leave a cell is
// left to the lists.
#include "poly/div_flat.h"
#include <gtest/gtest.h>
#include "poly/add.h"
#include "poly/div_exact.h"
#include "poly/mul.h"
#include "poly/power.h"
#include "tests/support/by_build.h"
#include "tests/support/divisions.h"

using namespace kelmar;
using namespace kelmar_test;

namespace {

struct PolyDivFlat : testing::Test {
    six_in_force names;
    in_view live{view_digits};
    kept_word cut{&flat_division_cut, 1};

    // n / m with a copy of n, which it may consume.
    flat_quotient divide(const polynode *n, polynode *m, polynode **q)
    {
        polynode *copy = copy_poly(n);
        *q = nullptr;
        const flat_quotient end = divide_flat_exactly(copy, m, q);
        if (end == flat_not_suited) free_poly(&copy);
        return end;
    }
};

TEST_F(PolyDivFlat, ProductsAreDivided)
{
    test_random r;
    SCOPED_TRACE(r.seed);
    int exact = 0, suited = 0;
    const poly_audit audit;
    for (int i = 0; i < by_build(60, 1500); ++i) {
        const poly_shape shape = {1 + i % 3, 8, 4, 0, 1 + i % 7};
        const poly_operand m(random_divisor(&r, shape)), q(random_divisor(&r, shape));
        poly_operand n, back;
        poly_mult(q.p, m.p, &n.p, names.first());
        const std::string text_m = poly_text(m.p);
        const flat_quotient end = divide(n.p, m.p, &back.p);
        EXPECT_NE(end, flat_not_exact) << poly_text(n.p) << " / " << text_m;
        suited += end != flat_not_suited;
        exact += end == flat_exact;
        if (end != flat_exact) continue;
        EXPECT_EQ(poly_text(back.p), poly_text(q.p));
        expect_normal(back.p, 3, "quotient");
        EXPECT_EQ(poly_text(m.p), text_m);
    }
    EXPECT_GT(exact, by_build(10, 300));
    EXPECT_EQ(exact, suited);
    audit.expect_unchanged("products");
}

// One term more, or one coefficient other: the answer is that of the lists.
TEST_F(PolyDivFlat, WhatDoesNotDivideIsTold)
{
    test_random r;
    SCOPED_TRACE(r.seed);
    int told = 0;
    const poly_audit audit;
    for (int i = 0; i < by_build(60, 1500); ++i) {
        const poly_shape shape = {1 + i % 3, 6, 3, 0, 1 + i % 4};
        const poly_operand m(random_divisor(&r, shape)), q(random_divisor(&r, shape)),
            more(random_poly(&r, {1 + i % 3, 2, 5, 0, 2}));
        poly_operand n, sum, back, school;
        poly_mult(q.p, m.p, &n.p, names.first());
        poly_add(n.p, more.p, &sum.p);
        if (is_constant(sum.p)) continue;
        const flat_quotient end = divide(sum.p, m.p, &back.p);
        if (end == flat_not_suited) continue;
        flat_division_cut = INT32_MAX;
        school.p = exact_quotient(sum.p, m.p, names.first());
        flat_division_cut = 1;
        EXPECT_EQ(end == flat_exact, school.p != nullptr) << poly_text(sum.p) << " / " << poly_text(m.p);
        if (end == flat_exact && school.p) {
            EXPECT_EQ(poly_text(back.p), poly_text(school.p));
        }
        told += end == flat_not_exact;
    }
    EXPECT_GT(told, by_build(10, 300));
    audit.expect_unchanged("what does not divide");
}

// Numbers that divide, and do not, by an odd part, by zeros, and in the top word alone.
TEST_F(PolyDivFlat, LeadingNumbers)
{
    struct {
        const char *n, *m;
        flat_quotient end;
    } const rows[] = {
        {"{3{#6}, 2{#12}, 1{#6}, #12}", "{1{#3}, #6}", flat_exact},
        {"{3{#7}, 2{#12}, 1{#6}, #12}", "{1{#3}, #6}", flat_not_exact},
        {"{3{#12}, 2{#16}, 1{#12}, #16}", "{1{#12}, #16}", flat_exact},
        {"{3{#6}, 2{#16}, 1{#12}, #16}", "{1{#12}, #16}", flat_not_exact},
        {"{3{#-6}, 2{#-12}, 1{#-6}, #-12}", "{1{#-3}, #-6}", flat_exact},
        {"{3{#3}, 2{#1}, 1{#1}, #1}", "{1{#6}, #6}", flat_not_exact},
        {"{3{#2}, 2{#2}, 1{#2}}", "{2{#1}, 1{#1}, #1}", flat_exact},
        {"{3{#2}, 2{#2}, 1{#2}, #1}", "{2{#1}, 1{#1}, #1}", flat_not_exact},
    };
    for (const auto &row : rows) {
        poly_operand n(poly_of_text(row.n)), m(poly_of_text(row.m)), q;
        EXPECT_EQ(divide(n.p, m.p, &q.p), row.end) << row.n << " / " << row.m;
        EXPECT_EQ(q.p != nullptr, row.end == flat_exact);
    }
}

// x + y^2 by x + y: the packed exponents alone would do, with a borrow from one to the other.
TEST_F(PolyDivFlat, ExponentsDoNotBorrow)
{
    poly_operand n(poly_of_text("{2{#1}, 1{3{#1}, #1}, 0{3{#1}}}")), m(poly_of_text("{1{1{#1}}, 0{3{#1}}}")),
        q;
    EXPECT_EQ(divide(n.p, m.p, &q.p), flat_not_exact);
}

// ((1 - x^20) / (1 - x))^30 has numbers far longer than those of what it comes from.
TEST_F(PolyDivFlat, QuotientsOfLongerNumbersAreLeftToTheLists)
{
    poly_operand n(poly_of_text("{20{#-1}, #1}")), m(poly_of_text("{1{#-1}, #1}")), q, product;
    compute_power(&n.p, 30, nilpol);
    compute_power(&m.p, 30, nilpol);
    EXPECT_EQ(divide(n.p, m.p, &q.p), flat_not_suited);
    q.p = exact_quotient(n.p, m.p, nilpol);
    ASSERT_NE(q.p, nullptr);
    poly_mult(q.p, m.p, &product.p, nilpol);
    EXPECT_EQ(poly_text(product.p), poly_text(n.p));
}

TEST_F(PolyDivFlat, WhatDoesNotSuit)
{
    poly_operand n(poly_of_text("{3{#6}, 2{#12}, 1{#6}, #12}")), m(poly_of_text("{1{#3}, #6}")), q,
        alone(poly_of_text("{1{#3}}")), gaps(poly_of_text("{2000000{#1}, #-1}")),
        other(poly_of_text("{0{1{#1}, #1}}")), high(poly_of_text("{2{#1}, 1{#1}}")),
        low(poly_of_text("{3{#1}, #1}"));
    EXPECT_EQ(divide(n.p, alone.p, &q.p), flat_not_suited);
    EXPECT_EQ(divide(gaps.p, m.p, &q.p), flat_not_suited);
    EXPECT_EQ(divide(n.p, other.p, &q.p), flat_not_suited);
    EXPECT_EQ(divide(low.p, high.p, &q.p), flat_not_suited);
    EXPECT_EQ(divide(m.p, n.p, &q.p), flat_not_suited);
    flat_division_cut = 100;
    EXPECT_EQ(divide(n.p, m.p, &q.p), flat_not_suited);
    flat_division_cut = 1;
    const kept_word negative(&laurent, 1);
    EXPECT_EQ(divide(n.p, m.p, &q.p), flat_not_suited);
    in_view words(view_modular, 101);
    EXPECT_EQ(divide_flat_exactly(n.p, m.p, &q.p), flat_not_suited);
}

}  // namespace
