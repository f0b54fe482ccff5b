// Division in word arrays: raw arrays against sums taken word by word, and which lists go through them.
#include "poly/div_words.h"
#include <gtest/gtest.h>
#include <algorithm>
#include <vector>
#include "numbers/word_mod.h"
#include "poly/div.h"
#include "poly/mul.h"
#include "poly/mul_work.h"
#include "tests/support/by_build.h"
#include "tests/support/divisions.h"

using namespace kelmar;
using namespace kelmar_test;

namespace {

constexpr int rounds = by_build(200, 2000);

using words = std::vector<std::int32_t>;

// q y + r, coefficient by coefficient.
words product_and_rest(const words &q, const words &y, const words &r)
{
    words x(std::max(q.size() + y.size() - 1, r.size()), 0);
    for (std::size_t i = 0; i < x.size(); ++i) {
        std::uint64_t sum = i < r.size() ? static_cast<std::uint64_t>(r[i]) : 0;
        for (std::size_t k = 0; k < q.size(); ++k) {
            if (i < k || i - k >= y.size()) continue;
            if (finf) {
                sum ^= static_cast<std::uint64_t>(product_of_elements(q[k], y[i - k]));
            } else {
                const std::uint64_t term = static_cast<std::uint64_t>(q[k]) *
                                           static_cast<std::uint64_t>(y[i - k]);
                sum = (sum + term) % static_cast<std::uint64_t>(modulus);
            }
        }
        x[i] = static_cast<std::int32_t>(sum);
    }
    return x;
}

// A residue, often 0, 1 or the largest.
std::int32_t some_word(test_random *r)
{
    switch (r->below(6)) {
    case 0: return 0;
    case 1: return 1;
    case 2: return modulus - 1;
    default: return static_cast<std::int32_t>(r->below(static_cast<std::uint64_t>(modulus)));
    }
}

words some_words(test_random *r, std::int32_t degree, std::int32_t lead)
{
    words a(static_cast<std::size_t>(degree) + 1);
    for (std::int32_t &w : a) w = some_word(r);
    a.back() = lead;
    return a;
}

std::int32_t degree_of(const words &a)
{
    std::int32_t d = static_cast<std::int32_t>(a.size()) - 1;
    while (d >= 0 && a[static_cast<std::size_t>(d)] == 0) --d;
    return d;
}

// All forms divide x by y; the lead of y has an inverse.
void expect_division(const words &x, const words &y)
{
    const std::int32_t dx = static_cast<std::int32_t>(x.size()) - 1,
                       dy = static_cast<std::int32_t>(y.size()) - 1;
    words rest = x, q(static_cast<std::size_t>(dx - dy) + 1, 77), divisor = y;
    std::int32_t dr = 99;
    onevar_array_div_mod(rest.data(), divisor.data(), q.data(), dx, dy, &dr);
    ASSERT_EQ(divisor, y);
    ASSERT_EQ(product_and_rest(q, y, rest), x);
    ASSERT_EQ(dr, degree_of(rest));
    ASSERT_LT(dr, dy);
    words alone = x;
    std::int32_t d = 99;
    onevar_array_mod(alone.data(), y.data(), dx, dy, &d);
    ASSERT_EQ(alone, rest);
    ASSERT_EQ(d, dr);
    if (dx != dy + 1) return;
    words step = x, step_q(2, 77);
    onevar_one_div(step.data(), y.data(), step_q.data(), dy, &d);
    ASSERT_EQ(step, rest);
    ASSERT_EQ(step_q, q);
    ASSERT_EQ(d, dr);
    step = x;
    onevar_one(step.data(), y.data(), dy, &d);
    ASSERT_EQ(step, rest);
    ASSERT_EQ(d, dr);
}

constexpr ring word_rings[] = {{view_modular, 2, 1},     {view_modular, 3, 1},
                               {view_modular, 46337, 1}, {view_modular, 46349, 1},
                               {view_modular, 65521, 1}, {view_modular, 65537, 1},
                               {view_field, 256, 1},     {view_modular, 2147483629, 1}};

TEST(DivWords, QuotientTimesDivisorAndRestIsTheDividend)
{
    test_random r;
    for (const ring &each : word_rings) {
        in_ring live(each);
        for (int i = 0; i < rounds; ++i) {
            const std::int32_t dy = static_cast<std::int32_t>(r.below(12));
            const std::int32_t dx = dy + static_cast<std::int32_t>(r.below(3) ? r.below(3) : r.below(30));
            const std::uint64_t lead = 1 + r.below(static_cast<std::uint64_t>(modulus) - 1);
            expect_division(some_words(&r, dx, some_word(&r)),
                            some_words(&r, dy, static_cast<std::int32_t>(lead)));
            if (testing::Test::HasFatalFailure()) FAIL() << "modulus " << modulus << ", seed " << r.seed;
        }
    }
}

TEST(DivWords, AMultipleLeavesDegreeMinusOne)
{
    test_random r;
    for (const ring &each : word_rings) {
        in_ring live(each);
        for (int i = 0; i < rounds / 10; ++i) {
            const words q = some_words(&r, static_cast<std::int32_t>(r.below(9)), 1),
                        y = some_words(&r, static_cast<std::int32_t>(r.below(9)), 1);
            words x = product_and_rest(q, y, {0}), quotient(q.size());
            std::int32_t dr = 99;
            onevar_array_div_mod(x.data(), y.data(), quotient.data(), static_cast<std::int32_t>(x.size()) - 1,
                                 static_cast<std::int32_t>(y.size()) - 1, &dr);
            ASSERT_EQ(dr, -1);
            ASSERT_EQ(quotient, q);
            ASSERT_EQ(x, words(x.size(), 0));
        }
    }
}

TEST(DivWords, ModuloACompositeALeadOfOneDivides)
{
    test_random r;
    for (const std::int32_t m : {46339, 46340, 65536, 2147483646}) {
        in_ring live({view_modular, m, 0});
        for (int i = 0; i < rounds; ++i) {
            const std::int32_t dy = static_cast<std::int32_t>(r.below(12));
            const std::int32_t dx = dy + static_cast<std::int32_t>(r.below(12));
            expect_division(some_words(&r, dx, some_word(&r)), some_words(&r, dy, 1));
            if (testing::Test::HasFatalFailure()) FAIL() << "modulus " << modulus << ", seed " << r.seed;
        }
    }
}

// The largest residues make the largest sums.
TEST(DivWords, LongArraysOfTheLargestResidues)
{
    for (const std::int32_t m : {65521, 2147483629}) {
        in_ring live({view_modular, m, 1});
        const std::int32_t dy = 400, dq = 600;
        const words y(static_cast<std::size_t>(dy) + 1, m - 1), q(static_cast<std::size_t>(dq) + 1, m - 1),
            rest(static_cast<std::size_t>(dy), m - 1);
        const words x = product_and_rest(q, y, rest);
        words left = x, quotient(q.size());
        std::int32_t dr = 0;
        onevar_array_div_mod(left.data(), y.data(), quotient.data(), dy + dq, dy, &dr);
        EXPECT_EQ(quotient, q);
        EXPECT_EQ(dr, dy - 1);
        EXPECT_EQ(product_and_rest(quotient, y, words(left.begin(), left.begin() + dy)), x);
    }
}

// Lists ---------------------------------------------------------------------------------------------------

// One for each exponent of the list.
polynode *ones_at(const std::vector<std::int32_t> &exps)
{
    polynode *p = nullptr;
    polynode **end = &p;
    for (const std::int32_t e : exps) {
        polynode *one = nullptr;
        poly_set(1, &one);
        make_monomial(end, e, one);
        end = &(*end)->next;
    }
    return p;
}

// `count` terms of falling exponents, the first of that degree, the others as low as they can be.
polynode *terms_of(std::int32_t count, std::int32_t degree)
{
    std::vector<std::int32_t> exps{degree};
    for (std::int32_t e = count - 2; e >= 0; --e) exps.push_back(e);
    return ones_at(exps);
}

TEST(WordsSuit, MoreThanTenTermsAndMoreThanHalfTheDegree)
{
    in_ring live(field_rings[3]);
    poly_operand dense(terms_of(40, 39));
    const struct {
        std::int32_t count, degree;
        bool suits;
    } rows[] = {{10, 9, false},       {11, 10, true},        {11, 20, true},
                {11, 21, true},       {11, 22, false},       {12, 22, true},
                {12501, 25000, true}, {12500, 25000, false}, {12502, 25001, false}};
    for (const auto &row : rows) {
        poly_operand p(terms_of(row.count, row.degree));
        EXPECT_EQ(words_suit(p.p, dense.p), row.suits) << row.count << " of degree " << row.degree;
        EXPECT_EQ(words_suit(dense.p, p.p), row.suits) << row.count << " of degree " << row.degree;
    }
    poly_operand five(poly_of_text("{#5}"));
    EXPECT_FALSE(words_suit(five.p, dense.p));
}

TEST(WordsSuit, OneLevelWithoutNegativeExponents)
{
    in_ring live(field_rings[3]);
    const in_laurent on(1);
    std::vector<std::int32_t> exps;
    for (std::int32_t e = 20; e >= -1; --e) exps.push_back(e);
    poly_operand dense(terms_of(21, 20)), below(ones_at(exps)), deep(terms_of(21, 20));
    EXPECT_TRUE(words_suit(dense.p, dense.p));
    EXPECT_FALSE(words_suit(below.p, dense.p));
    poly_operand inner(poly_of_text("{1{#1}}"));
    free_poly(&deep.p->coef);
    deep.p->coef = inner.p;
    inner.p = nullptr;
    EXPECT_FALSE(words_suit(deep.p, dense.p));
}

polynode *random_list(test_random *r, std::int32_t degree)
{
    polynode *p = terms_of(degree + 1, degree);
    for (polynode *t = p; t; t = t->next) {
        number *n = t->isnum ? t->num : t->coef->num;
        n->word = 1 + static_cast<std::int32_t>(r->below(static_cast<std::uint64_t>(modulus) - 1));
    }
    return p;
}

TEST(FastestPolyDiv, OnBothSidesOfDegree15000)
{
    test_random r;
    for (const ring &each : {field_rings[3], field_rings[6]}) {
        in_ring live(each);
        for (const std::int32_t degree : {array_division_limit, array_division_limit + 1}) {
            poly_operand m(random_list(&r, 300)), wanted(random_list(&r, degree - 300)), n,
                one(poly_of_text("{#1}"));
            poly_mult(m.p, wanted.p, &n.p, nilpol);
            ASSERT_EQ(n.p->exp, degree);
            poly_operand q, off(reference_sum(n.p, one.p, 1));
            EXPECT_EQ(fastest_poly_div(n.p, m.p, &q.p), 1);
            EXPECT_TRUE(poly_equal(q.p, wanted.p));
            polynode *none = nullptr;
            EXPECT_EQ(fastest_poly_div(off.p, m.p, &none), 0) << degree;
            EXPECT_EQ(none, nullptr);
        }
    }
}

TEST(DivideWordsExactly, DeclinesOtherRingsAndNegativeExponents)
{
    const ring rings[] = {
        {view_float, 101, 1}, {view_digits, 101, 1}, {view_word, 101, 1}, {view_modular, 100, 0}};
    for (const ring &each : rings) {
        in_ring live(each);
        poly_operand n(terms_of(21, 20)), m(terms_of(12, 11));
        polynode *q = nullptr;
        EXPECT_EQ(divide_words_exactly(n.p, m.p, &q), words_not_suited) << each.view;
    }
    in_ring live(field_rings[3]);
    poly_operand n(terms_of(21, 20)), m(terms_of(12, 11)), q;
    EXPECT_EQ(divide_words_exactly(n.p, m.p, &q.p), words_not_exact);
    EXPECT_EQ(divide_words_exactly(m.p, n.p, &q.p), words_not_suited);  // of lower degree
    EXPECT_EQ(divide_words_exactly(n.p, n.p, &q.p), words_exact);
    EXPECT_EQ(poly_text(q.p), "{#1}");
    const in_laurent on(1);
    free_poly(&q.p);
    EXPECT_EQ(divide_words_exactly(n.p, n.p, &q.p), words_not_suited);
}

}  // namespace
