// Products of word arrays: both methods on both sides of every threshold, faults, arrays to lists and back.
#include "poly/onevar.h"
#include <gtest/gtest.h>
#include <vector>
#include "numbers/word_mod.h"
#include "poly/mul.h"
#include "poly/mul_array.h"
#include "session/levels.h"
#include "session/output.h"
#include "tests/support/mul_operands.h"
#include "tests/support/reports.h"
#include "tests/support/views.h"

using namespace kelmar;
using namespace kelmar_test;

namespace {

using words = std::vector<std::int32_t>;

words random_words(test_random *r, std::size_t n)
{
    words x(n);
    for (std::int32_t &v : x) {
        const std::uint64_t kind = r->below(8);
        v = kind == 0   ? 0
            : kind == 1 ? modulus - 1
                        : static_cast<std::int32_t>(r->below(static_cast<std::uint64_t>(modulus)));
    }
    if (x.back() == 0) x.back() = 1;
    return x;
}

words plain_product(const words &x, const words &y)
{
    words z(x.size() + y.size() - 1, 0);
    for (std::size_t i = 0; i < x.size(); ++i) {
        for (std::size_t j = 0; j < y.size(); ++j) z[i + j] = mod_add(z[i + j], modmult(x[i], y[j]), modulus);
    }
    return z;
}

std::int32_t last(const words &x)
{
    return static_cast<std::int32_t>(x.size()) - 1;
}

using array_method = void (*)(const std::int32_t *, const std::int32_t *, std::int32_t *, std::int32_t,
                              std::int32_t, std::int32_t, std::int32_t);
constexpr array_method methods[] = {onevar_mult, slower_onevar_mult, fast_array_onevar_mult};

void expect_products(test_random *r, std::size_t n, std::size_t m)
{
    const words x = random_words(r, n), y = random_words(r, m), expected = plain_product(x, y);
    for (array_method f : methods) {
        words z(n + m + 1, -7);
        f(x.data(), y.data(), z.data(), 0, last(x), 0, last(y));
        EXPECT_EQ(z[n + m - 1], -7) << "an entry above the range";
        EXPECT_EQ(words(z.begin(), z.begin() + static_cast<std::ptrdiff_t>(n + m - 1)), expected)
            << n << " by " << m;
    }
}

TEST(OnevarMult, MethodsAgreeOnBothSidesOfTheCutOffAndOfTheRatio)
{
    test_random r;
    make_small_field();
    for (num_view v : {view_modular, view_field}) {
        for (std::int32_t m : {2, 3, 36, 65521, 65535, 65536, 65537, 2147483629, 2147483646}) {
            if (v == view_field && m != 2) continue;
            in_view live(v, m);
            for (std::int32_t cut : {6, 20, 40}) {
                const kept_word cutoff(&poly_cutoff, cut);
                const std::size_t c = static_cast<std::size_t>(cut);
                for (std::size_t n : {std::size_t{1}, std::size_t{2}, c, c + 1, c + 2, 2 * c + 1, 5 * c}) {
                    for (std::size_t k : {n, n + 1, 2 * n - 1, 2 * n, 15 * n - 14, 15 * n - 13, 16 * n}) {
                        expect_products(&r, n, k);
                        if (n < 30) expect_products(&r, k, n);
                    }
                }
            }
        }
    }
}

TEST(OnevarMult, LengthsFortyAndSixHundred)
{
    test_random r;
    in_view live(view_modular, 65521);
    expect_products(&r, 40, 600);
    expect_products(&r, 600, 41);
}

TEST(OnevarMult, RangesNeedNotBeginAtZero)
{
    test_random r;
    in_view live(view_modular, 65521);
    for (std::size_t n : {5u, 100u}) {
        const words x = random_words(&r, n), y = random_words(&r, n + 3), expected = plain_product(x, y);
        words up(10, -1), to(3 * n + 40, -7);
        up.insert(up.end(), x.begin(), x.end());
        for (array_method f : methods) {
            f(up.data(), y.data(), to.data(), 10, 10 + last(x), 0, last(y));
            EXPECT_EQ(to[9], -7);
            EXPECT_EQ(words(to.begin() + 10, to.begin() + 10 + static_cast<std::ptrdiff_t>(expected.size())),
                      expected);
        }
    }
}

TEST(OnevarMult, LowZerosFillTheBottom)
{
    test_random r;
    in_view live(view_modular, 101);
    words x = random_words(&r, 120), y = random_words(&r, 130);
    for (std::size_t i = 0; i < 30; ++i) x[i] = y[i] = 0;
    words z(250, -7);
    fast_array_onevar_mult(x.data(), y.data(), z.data(), 0, 119, 0, 129);
    EXPECT_EQ(words(z.begin(), z.begin() + 249), plain_product(x, y));
}

TEST(OnevarMult, AZeroAtTheTopOfTheProductIsNoFault)
{
    in_view live(view_modular, 36);
    words x(100, 6), y(100, 6), z(199, -7);
    fast_array_onevar_mult(x.data(), y.data(), z.data(), 0, 99, 0, 99);
    EXPECT_EQ(z, words(199, 0));
}

// What f writes; when it comes back it says so.
template <class F> std::string report_and_end(F f)
{
    return report_of([&] {
        f();
        std::printf("it came back");
    });
}

void expect_report(const std::string &report, const std::string &expected)
{
    EXPECT_EQ(report.substr(0, expected.size()), expected);
    EXPECT_EQ(report.find("it came back"), std::string::npos);
}

TEST(OnevarMultFaults, ReversedRangesAndZerosAtTheTop)
{
    in_view live(view_modular, 101);
    const words x = {1, 2}, zero = {1, 0};
    words z(8, -7);
    expect_report(report_and_end([&] { onevar_mult(x.data(), x.data(), z.data(), 1, 0, 0, 1); }),
                  " ** bad exps onevar 1, 0, 0, 1\n*** Kelmar error. potential 0 in onevar_mult.\n");
    expect_report(
        report_and_end([&] { onevar_mult(x.data(), zero.data(), z.data(), 0, 1, 0, 1); }),
        " ** bad upper limits, onevar 0, 1, 0, 1, 2, 0\n*** Kelmar error. 0 upper value in onevar_mult.\n");
    expect_report(report_and_end([&] { fast_array_onevar_mult(x.data(), x.data(), z.data(), 1, 0, 0, 1); }),
                  "*** Kelmar error. bad exps in fast_array_onevar_mult.\n");
    EXPECT_EQ(z, words(8, -7));
    EXPECT_EQ(report_and_end([&] { onevar_mult(zero.data(), zero.data(), z.data(), 0, 1, 0, 1); }),
              "it came back");
    EXPECT_EQ(z[0], 1);
}

TEST(WordArrays, AListAndItsArray)
{
    in_view live(view_modular, 101);
    poly_operand p(poly_of_text("{4{#3}, 1{#100}, #7}")), q;
    words x(5, -7);
    fill_poly_array(p.p, x.data());
    EXPECT_EQ(x, (words{7, 100, 0, 0, 3}));
    array_to_poly(x.data(), 4, &q.p);
    EXPECT_EQ(poly_text(q.p), poly_text(p.p));
    free_poly(&q.p);
    const words padded = {0, 2, 0, 0};
    array_to_poly(padded.data(), 3, &q.p);
    EXPECT_EQ(poly_text(q.p), "{1{#2}}");
    EXPECT_EQ(list_of_array(padded.data(), 0), nullptr);
}

TEST(WordArrays, ZeroOfDegreeZeroIsAFault)
{
    in_view live(view_modular, 101);
    const words zero = {0};
    poly_operand p;
    expect_report(report_and_end([&] { array_to_poly(zero.data(), 0, &p.p); }),
                  "*** Kelmar error. bad x[0] in array_to_poly.\n");
    EXPECT_EQ(p.p, nullptr);
}

// One level over words ----------------------------------------------------------------------------------

std::string simplest_text(polynode *a, polynode *b)
{
    poly_operand c;
    const std::string text_a = poly_text(a), text_b = poly_text(b);
    simplest_poly_mult(a, b, &c.p, 0, 0, 0, 0);
    EXPECT_TRUE(poly_is_normal(c.p, 1));
    EXPECT_EQ(poly_text(a), text_a);
    EXPECT_EQ(poly_text(b), text_b);
    return poly_text(c.p);
}

TEST(SimplestPolyMult, EveryThresholdFromBothSides)
{
    test_random r;
    make_small_field();
    for (num_view v : {view_modular, view_field, view_float}) {
        in_view live(v, 65521);
        for (std::int32_t top : {8, 9, 10, 19, 20, 30, 39, 40, 41, 50, 120}) {
            for (std::int32_t low : {0, 3}) {
                poly_operand a(dense_poly(&r, low, top)), b(dense_poly(&r, 0, top + 1));
                for (std::int32_t arrays : {25000, 2 * top + 1, 2 * top}) {
                    for (std::int32_t cut : {10, top, top + 3}) {
                        const kept_word limit(&fast_gcd_size, arrays), short_cut(&fast_mult_cut, cut);
                        const kept_word cutoff(&poly_cutoff, 40);
                        poly_operand expected(reference_product(a.p, b.p, 1)),
                            square(reference_product(a.p, a.p, 1));
                        EXPECT_EQ(simplest_text(a.p, b.p), poly_text(expected.p));
                        EXPECT_EQ(simplest_text(a.p, a.p), poly_text(square.p));
                    }
                }
            }
        }
    }
}

TEST(SimplestPolyMult, ANumberScales)
{
    in_view live(view_modular, 36);
    poly_operand p(poly_of_text("{4{#3}, 1{#6}, #7}")), n(poly_of_text("{#12}"));
    EXPECT_EQ(simplest_text(p.p, n.p), "{#12}");
    EXPECT_EQ(simplest_text(n.p, p.p), "{#12}");
}

TEST(FastestStandard, SparsePairsStayLists)
{
    test_random r;
    in_view live(view_modular, 65521);
    for (std::int32_t step : {3, 4, 5}) {
        flat_poly terms;
        for (std::int32_t k = 0; k < 30; ++k)
            terms.emplace(std::vector<std::int32_t>{step * k}, random_coefficient(&r, 1));
        poly_operand a(nest(&terms)), b(dense_poly(&r, 0, 40)), c, expected(reference_product(a.p, b.p, 1));
        fastest_standard(a.p, b.p, 30, 41, &c.p);
        EXPECT_EQ(poly_text(c.p), poly_text(expected.p));
    }
}

TEST(SimplestPolyMult, DegreesThatSumUpToMoreThanTheArraysHold)
{
    test_random r;
    in_view live(view_modular, 2147483629);
    for (std::int32_t top : {12500, 12501}) {  // sums 25000 and 25001
        poly_operand a(dense_poly(&r, 0, 12500)), b(dense_poly(&r, 0, top)), c;
        simplest_poly_mult(a.p, b.p, &c.p, 0, 0, 0, 0);
        words x(12501), y(static_cast<std::size_t>(top) + 1), z(x.size() + y.size() - 1);
        fill_poly_array(a.p, x.data());
        fill_poly_array(b.p, y.data());
        fast_array_onevar_mult(x.data(), y.data(), z.data(), 0, 12500, 0, top);
        poly_operand expected(list_of_array(z.data(), last(z)));
        EXPECT_TRUE(poly_equal(c.p, expected.p)) << top;
    }
}

// Rows --------------------------------------------------------------------------------------------------

TEST(TryFast2Var, TakesDensePairsWithinTheRows)
{
    test_random r;
    in_view live(view_modular, 101);
    poly_operand a(dense_poly2(&r, 31, 5)), b(dense_poly2(&r, 40, 7)), thin(dense_poly2(&r, 24, 5));
    EXPECT_TRUE(try_fast_2_var(a.p, b.p));
    EXPECT_TRUE(try_fast_2_var(b.p, a.p));
    EXPECT_FALSE(try_fast_2_var(a.p, thin.p)) << "25 terms";
    poly_operand just(dense_poly2(&r, 25, 5));
    EXPECT_TRUE(try_fast_2_var(a.p, just.p)) << "26 terms";
    poly_operand long_one(dense_poly2(&r, 289, 1)), longer(dense_poly2(&r, 288, 1));
    EXPECT_FALSE(try_fast_2_var(long_one.p, a.p)) << "more than 9 times as long";
    poly_operand nine(dense_poly2(&r, 279, 1));
    EXPECT_TRUE(try_fast_2_var(nine.p, a.p));
    poly_operand one_level(dense_poly(&r, 0, 40));
    EXPECT_FALSE(try_fast_2_var(a.p, one_level.p));
    in_view field(view_field);
    EXPECT_FALSE(try_fast_2_var(a.p, b.p));
}

TEST(TryFast2Var, ASpanOfThreeTimesTheTermsIsTooMuch)
{
    test_random r;
    in_view live(view_modular, 101);
    poly_operand a(dense_poly2(&r, 31, 5)), wide(dense_poly2(&r, 25, 5));
    wide.p->exp = 77;  // 26 terms
    EXPECT_TRUE(try_fast_2_var(a.p, wide.p));
    wide.p->exp = 78;
    EXPECT_FALSE(try_fast_2_var(a.p, wide.p));
}

TEST(TryFast2Var, SumsOfDegreesStayBelowTheRows)
{
    test_random r;
    in_view live(view_modular, 101);
    poly_operand a(dense_poly2(&r, 350, 1)), b(dense_poly2(&r, 351, 1));
    EXPECT_TRUE(try_fast_2_var(a.p, a.p));
    EXPECT_FALSE(try_fast_2_var(a.p, b.p)) << "701 in x";
    poly_operand c(dense_poly2(&r, 31, 350)), d(dense_poly2(&r, 31, 351));
    EXPECT_TRUE(try_fast_2_var(c.p, c.p));
    EXPECT_FALSE(try_fast_2_var(c.p, d.p)) << "701 in y";
}

TEST(DepthDensity, MeasuresTwoLevelsAndDeclinesAThird)
{
    in_view live(view_modular, 101);
    std::int32_t top = 0, inner = 0, low = 0, count = 0;
    poly_operand p(poly_of_text("{5{3{#1}, #1}, 2{#4}, 1{7{#1}}}")), q(poly_of_text("{5{3{1{#1}}}}"));
    EXPECT_EQ(depth_density(p.p, &top, &inner, &low, &count), 1);
    EXPECT_EQ(top, 5);
    EXPECT_EQ(inner, 7);
    EXPECT_EQ(low, 1);
    EXPECT_EQ(count, 3);
    EXPECT_EQ(depth_density(q.p, &top, &inner, &low, &count), 0);
}

TEST(FastestPoly2Mult, AgreesWithTheFlatForm)
{
    test_random r;
    for (std::int32_t m : {36, 65521, 2147483629}) {
        in_view live(view_modular, m);
        for (std::int32_t x_top : {30, 31, 45}) {
            poly_audit audit;
            {
                poly_operand a(dense_poly2(&r, x_top, 6)), b(dense_poly2(&r, 33, 9)), c, s;
                poly_operand expected(reference_product(a.p, b.p, 2)), square(reference_product(a.p, a.p, 2));
                fastest_poly2_mult(a.p, b.p, &c.p);
                EXPECT_EQ(poly_text(c.p), poly_text(expected.p));
                EXPECT_TRUE(poly_is_normal(c.p, 2));
                fastest_poly2_mult(a.p, a.p, &s.p);
                EXPECT_EQ(poly_text(s.p), poly_text(square.p));
                free_poly(&c.p);
                for (std::int32_t flat : {12, never}) {  // 30 and 31 are on the two sides of row_arrays_from
                    const kept_word cut(&flat_mult_cut, flat);
                    poly_mult(a.p, b.p, &c.p, nilpol);
                    EXPECT_EQ(poly_text(c.p), poly_text(expected.p));
                }
            }
            audit.expect_unchanged("rows");
        }
    }
}

TEST(FastestPoly2Mult, RowsMayBeAbsentAndCancel)
{
    in_view live(view_modular, 36);
    poly_operand a(poly_of_text("{40{2{#6}, #1}, 39{#5}, 0{1{#1}}}")),
        b(poly_of_text("{33{5{#6}}, 1{#1}, #35}")), c;
    poly_operand expected(reference_product(a.p, b.p, 2));
    fastest_poly2_mult(a.p, b.p, &c.p);
    EXPECT_EQ(poly_text(c.p), poly_text(expected.p));
    EXPECT_TRUE(poly_is_normal(c.p, 2));
    poly_operand six(poly_of_text("{40{2{#6}}, 39{1{#12}}}")), zero;
    fastest_poly2_mult(six.p, six.p, &zero.p);
    EXPECT_EQ(poly_text(zero.p), "{#0}");
}

}  // namespace
