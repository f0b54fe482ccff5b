// Measures of polynomials: their values on small ones, and where they stop on large ones.
#include "gcd/measure.h"
#include <gtest/gtest.h>
#include "poly/add.h"
#include "storage/low_memory.h"
#include "tests/support/divisions.h"

using namespace kelmar;
using namespace kelmar_test;

namespace {

// x^(n-1) + .. + 1, each coefficient a list of m terms in the second variable.
polynode *dense(std::int32_t n, std::int32_t m)
{
    polynode *list = nullptr;
    for (std::int32_t e = 0; e < n; ++e) {
        polynode *coef = nullptr;
        for (std::int32_t k = 0; k < m; ++k) {
            polynode *one = nullptr, *term = nullptr;
            poly_set(1, &one);
            make_monomial(&term, k, one);
            term->next = coef;
            coef = term;
        }
        polynode *term = nullptr;
        make_monomial(&term, e, coef);
        term->next = list;
        list = term;
    }
    return list;
}

struct GcdMeasure : testing::Test {
    in_view live{view_digits};
    poly_operand p{poly_of_text("{3{2{#4}, #1}, 1{#5}, 0{7{#2}, 1{#1}}}")};
};

TEST_F(GcdMeasure, Nodes)
{
    EXPECT_EQ(node_total(p.p), 11);
    EXPECT_EQ(big_node_total(p.p), 11);
    EXPECT_EQ(bigger_node_total(p.p), 11);
    EXPECT_EQ(bigg_node_total(p.p), 11);
    EXPECT_EQ(new_node_total(p.p), 11);
    EXPECT_EQ(poly_nodes(p.p, 41), 11);
    EXPECT_EQ(poly_nodes(p.p, 5), 6);
}

TEST_F(GcdMeasure, CountsStop)
{
    poly_operand large(dense(3000, 2)), wide(dense(2, 3000));
    EXPECT_GT(big_node_total(large.p), 800);
    EXPECT_LE(big_node_total(large.p), 1600);
    EXPECT_GT(big_node_total(wide.p), 800);
    EXPECT_LE(big_node_total(wide.p), 1600);
    EXPECT_GT(bigg_node_total(wide.p), 10000 - 1);
    EXPECT_LE(new_node_total(wide.p), 200);
    EXPECT_EQ(fast_numterms(large.p), 31);
    EXPECT_EQ(fast_f_numterms(large.p), 31);
    EXPECT_EQ(f_poly_numterms(large.p), 2001);
    EXPECT_EQ(q_poly_numterms(large.p), 6000);
    EXPECT_EQ(poly_numterms(large.p), 6000);
    EXPECT_EQ(expon_node_total(large.p).nodes, 4000);
}

TEST_F(GcdMeasure, TermsAndDegrees)
{
    EXPECT_EQ(poly_numterms(p.p), 5);
    EXPECT_EQ(fast_numterms(p.p), 5);
    EXPECT_EQ(polys_there(p.p), 2);
    EXPECT_EQ(sum_degrees(p.p, 1000), 9);
    EXPECT_EQ(sum_degrees(p.p, 1), 2);
    EXPECT_EQ(max_degree(p.p, 1), 3);
    EXPECT_EQ(max_degree(p.p, 2), 7);
    EXPECT_EQ(max_degree(p.p, 3), 0);
}

// Nodes weigh the product of exponent + 1 on their way: 4 for x^3, 12 and 12 for y^2 and its number below it,
// 4 for the other number, 2 and 2 for x, 1 for the rest's wrapper, 8 and 8 for y^7, 2 and 2 for y.
TEST_F(GcdMeasure, Weights)
{
    const node_weight w = expon_node_total(p.p);
    EXPECT_EQ(w.nodes, 11);
    EXPECT_EQ(w.weight, 4 + 12 + 12 + 4 + 2 + 2 + 1 + 8 + 8 + 2 + 2);
    EXPECT_EQ(poly_weight(p.p), w.weight);
    poly_operand steep(poly_of_text("{2147483647{2147483647{2147483647{2147483647{#1}}}}}"));
    EXPECT_EQ(poly_weight(steep.p), weight_limit);
}

TEST_F(GcdMeasure, TwoLevels)
{
    EXPECT_TRUE(depth_only_2(p.p));
    poly_operand three(poly_of_text("{2{1{#1}}, 1{0{1{#1}}}, #3}")), inner(poly_of_text("{2{0{1{#1}}}, #3}"));
    EXPECT_FALSE(depth_only_2(three.p));
    EXPECT_TRUE(depth_only_2(inner.p));
    poly_operand late(poly_of_text("{5{1{#1}}, 4{#1}, 3{#1}, 2{#1}, 1{0{1{#1}}}}"));
    EXPECT_TRUE(depth_only_2(late.p)) << "the first four coefficients are looked at";
}

TEST(GcdHash, EqualPolynomialsHaveEqualHashes)
{
    test_random r;
    poly_shape shape;
    shape.vars = 3;
    shape.digits = 3;
    for (const num_view view : {view_digits, view_modular, view_float, view_word}) {
        in_view live(view);
        std::int32_t different = 0;
        for (int i = 0; i < 200; ++i) {
            poly_operand a(random_poly(&r, shape)), b(copy_poly(a.p)), c(random_poly(&r, shape));
            EXPECT_EQ(hash_1(a.p), hash_1(b.p));
            EXPECT_GE(hash_1(a.p), 0);
            EXPECT_LT(hash_1(a.p), gcd_stash_lists);
            different += hash_1(a.p) != hash_1(c.p);
        }
        EXPECT_GT(different, 150);
    }
}

}  // namespace
