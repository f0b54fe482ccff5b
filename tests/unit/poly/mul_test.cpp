// Products of polynomials: the choice of a method, the methods in one variable and in two, and what all
// share.
#include "poly/mul.h"
#include <gtest/gtest.h>
#include <cmath>
#include "poly/add.h"
#include "poly/flat.h"
#include "poly/measure.h"
#include "poly/mul_array.h"
#include "poly/mul_school.h"
#include "poly/mul_work.h"
#include "tests/support/answer_time.h"
#include "tests/support/by_build.h"
#include "tests/support/mul_operands.h"
#include "tests/support/views.h"

using namespace kelmar;
using namespace kelmar_test;

namespace {

constexpr int rounds = by_build(150, 600);
constexpr std::int32_t fewer_terms = by_build(6, 1);  // every record is dear

// Return a * b after checking that it is normal and that the operands read as before.
std::string product_text(polynode *a, polynode *b, std::int32_t vars)
{
    const std::string text_a = poly_text(a), text_b = poly_text(b);
    poly_operand c;
    poly_mult(a, b, &c.p, nilpol);
    EXPECT_TRUE(poly_is_normal(c.p, vars)) << text_a << " times " << text_b << " is " << poly_text(c.p);
    EXPECT_EQ(poly_text(a), text_a);
    EXPECT_EQ(poly_text(b), text_b);
    return poly_text(c.p);
}

std::string product_text(const char *a, const char *b)
{
    poly_operand p(poly_of_text(a)), q(poly_of_text(b));
    return product_text(p.p, q.p, 6);
}

// Named cases ---------------------------------------------------------------------------------------------

TEST(PolyMult, TheMiddleTermCancelsInTheSchoolbook)
{
    const kept_word nested(&flat_mult_cut, never);
    for (num_view v : {view_float, view_word, view_small, view_digits}) {
        in_view live(v);
        EXPECT_EQ(product_text("{1{#1}, #1}", "{1{#1}, #-1}"), "{2{#1}, #-1}");
    }
}

TEST(PolyMult, ZeroTimesAnythingIsZero)
{
    for (num_view v : all_views) {
        in_view live(v);
        EXPECT_EQ(product_text("{#0}", "{3{2{#1}}, #1}"), "{#0}");
        EXPECT_EQ(product_text("{3{2{#1}}, #1}", "{#0}"), "{#0}");
        EXPECT_EQ(product_text("{#0}", "{#0}"), "{#0}");
    }
}

TEST(PolyMult, NumbersAndANumberTimesAList)
{
    in_view live(view_digits);
    EXPECT_EQ(product_text("{#3}", "{#-5}"), "{#-15}");
    EXPECT_EQ(product_text("{#3}", "{2{#1}, #4}"), "{2{#3}, #12}");
    EXPECT_EQ(product_text("{0{1{#1}, #2}}", "{#-1}"), "{0{1{#-1}, #-2}}");
}

TEST(PolyMult, WrappersMeetLists)
{
    for (std::int32_t cut : {0, never}) {
        const kept_word flat(&flat_mult_cut, cut);
        in_view live(view_float);
        EXPECT_EQ(product_text("{0{1{#1}, #1}}", "{1{#1}, #2}"), "{1{1{#1}, #1}, 0{1{#2}, #2}}");
        EXPECT_EQ(product_text("{0{1{#1}, #1}}", "{0{1{#1}, #-1}}"), "{0{2{#1}, #-1}}");
        EXPECT_EQ(product_text("{0{0{1{#2}}}}", "{1{#1}, #3}"), "{1{0{1{#2}}}, 0{0{1{#6}}}}");
    }
}

TEST(PolyMult, OneOperandTwiceIsLeftWhole)
{
    test_random r;
    make_small_field();
    for (num_view v : all_views) {
        in_view live(v);
        poly_audit audit;
        {
            poly_operand a(dense_poly(&r, 0, 90));
            poly_operand expected(reference_product(a.p, a.p, 1));
            EXPECT_EQ(product_text(a.p, a.p, 1), poly_text(expected.p));
        }
        audit.expect_unchanged("square");
    }
}

TEST(PolyMult, TheResultMayReplaceEitherOperand)
{
    in_view live(view_digits);
    poly_operand a(poly_of_text("{1{#1}, #1}")), b(poly_of_text("{1{#1}, #2}"));
    poly_mult(a.p, b.p, &a.p, nilpol);
    EXPECT_EQ(poly_text(a.p), "{2{#1}, 1{#3}, #2}");
    poly_mult(a.p, b.p, &b.p, nilpol);
    EXPECT_EQ(poly_text(b.p), "{3{#1}, 2{#5}, 1{#8}, #4}");
    poly_mult(a.p, a.p, &a.p, nilpol);
    EXPECT_EQ(poly_text(a.p), "{4{#1}, 3{#6}, 2{#13}, 1{#12}, #4}");
}

TEST(PolyMult, ASparseSquareHasANegativeCountAndIsRight)
{
    for (num_view v : {view_float, view_modular, view_digits}) {
        in_view live(v);
        poly_operand p(poly_of_text("{1000{#1}, #1}"));
        std::int32_t low = 0;
        int dense = 0;
        EXPECT_EQ(exp_poly_length(p.p, &low, &dense), -2);
        EXPECT_EQ(product_text("{1000{#1}, #1}", "{1000{#1}, #1}"), "{2000{#1}, 1000{#2}, #1}");
    }
}

TEST(PolyMult, ASpanOfSixTimesTheCountIsDenseAndOneMoreIsNot)
{
    const kept_word nested(&flat_mult_cut, never), cut(&poly_cutoff, 2);
    in_view live(view_digits);
    std::int32_t low = 0;
    int dense = 0;
    poly_operand p(poly_of_text("{12{#1}, #1}")), q(poly_of_text("{13{#1}, #1}"));
    EXPECT_EQ(exp_poly_length(p.p, &low, &dense), 2);
    EXPECT_EQ(exp_poly_length(q.p, &low, &dense), -2);
    EXPECT_EQ(product_text(p.p, p.p, 1), "{24{#1}, 12{#2}, #1}");
    EXPECT_EQ(product_text(p.p, q.p, 1), "{25{#1}, 13{#1}, 12{#1}, #1}");
}

TEST(PolyMult, InLaurentANumberMayStandBeforeNegativeExponents)
{
    const kept_word on(&laurent, 1);
    for (std::int32_t cut : {0, never}) {
        const kept_word flat(&flat_mult_cut, cut);
        in_view live(view_float);
        EXPECT_EQ(product_text("{1{#1}, #2, -1{#3}}", "{1{#1}, #-2, -1{#3}}"), "{2{#1}, #2, -2{#9}}");
        EXPECT_EQ(product_text("{1{#1}, -1{#1}}", "{-1{#5}, -2{#7}}"), "{#5, -1{#7}, -2{#5}, -3{#7}}");
        EXPECT_EQ(product_text("{#2, -1{1{#1}}}", "{0{-1{#1}}}"), "{0{-1{#2}}, -1{#1}}");
        EXPECT_EQ(product_text("{-1{#5}}", "{1{#5}}"), "{#25}");
    }
}

TEST(PolyMult, ProductsThatUnderflowAreDropped)
{
    for (std::int32_t cut : {0, never}) {
        const kept_word flat(&flat_mult_cut, cut);
        in_view live(view_float);
        EXPECT_EQ(product_text("{1{#1e-200}, #1}", "{1{#1e-200}, #1}"), "{1{#2e-200}, #1}");
        EXPECT_EQ(product_text("{1{#1e-200}}", "{1{#1e-200}}"), "{#0}");
        EXPECT_EQ(product_text("{1{1{#1e-200}, #1}}", "{1{1{#1e-200}}}"), "{2{1{#9.9999999999999998e-201}}}");
    }
}

TEST(PolyMult, ZeroDivisorsMayLeaveNothing)
{
    for (std::int32_t cut : {0, never}) {
        const kept_word flat(&flat_mult_cut, cut);
        in_view live(view_modular, 36);
        EXPECT_EQ(product_text("{1{#6}, #12}", "{2{#6}, 1{#18}, #30}"), "{#0}");
        EXPECT_EQ(product_text("{1{1{#6}, #1}, #12}", "{1{#6}}"), "{2{#6}}");
        test_random r;
        polynode *p = dense_poly(&r, 0, 60);
        for (polynode *t = p; t; t = t->next) term_value(t)->word = 6;
        poly_operand a(p);
        EXPECT_EQ(product_text(a.p, a.p, 1), "{#0}");
    }
}

TEST(PolyMult, AnExponentAboveTheRangeIsAnErrorAndNothingIsAltered)
{
    in_view live(view_digits);
    poly_operand a(poly_of_text("{2000000000{#1}, #1}")), b(poly_of_text("{147483648{#1}, #1}"));
    poly_operand inner(poly_of_text("{1{2000000000{#1}}, #1}")), c;
    EXPECT_EQ(error_in_view([&] { poly_mult(a.p, b.p, &a.p, nilpol); }), err_bad_exponent);
    EXPECT_EQ(error_in_view([&] { poly_mult(inner.p, inner.p, &c.p, nilpol); }), err_bad_exponent);
    EXPECT_EQ(poly_text(a.p), "{2000000000{#1}, #1}");
    EXPECT_EQ(poly_text(inner.p), "{1{2000000000{#1}}, #1}");
    EXPECT_EQ(product_text("{2000000000{#1}, #1}", "{147483647{#1}, #1}"),
              "{2147483647{#1}, 2000000000{#1}, 147483647{#1}, #1}");
}

TEST(PolyMult, ACutOffOfTheVariableTakesThePlaceOfTheGlobalOne)
{
    pt var = {};
    EXPECT_EQ(cut_for(nilpol), poly_cutoff);
    var.cut = 7;
    EXPECT_EQ(cut_for(&var), 7);
    EXPECT_FALSE(relation_from(&var));
    test_random r;
    in_view live(view_digits);
    const kept_word nested(&flat_mult_cut, never);
    poly_operand a(dense_poly(&r, 0, 12)), b(dense_poly(&r, 0, 9)), c;
    poly_operand expected(reference_product(a.p, b.p, 1));
    poly_mult(a.p, b.p, &c.p, &var);
    EXPECT_EQ(poly_text(c.p), poly_text(expected.p));
}

// Random products, every view, nested and flat ----------------------------------------------------------

struct mult_case {
    std::int32_t vars, terms, degree;
};

void random_products(test_random *r, std::int32_t low, int count)
{
    const mult_case cases[] = {{1, 8, 12}, {1, 40, 45}, {2, 12, 6}, {2, 60, 12},
                               {3, 20, 4}, {4, 20, 3},  {6, 20, 2}};
    for (int k = 0; k < count; ++k) {
        const mult_case &m = cases[r->below(7)];
        poly_shape shape;
        shape.vars = m.vars;
        shape.terms = m.terms;
        shape.degree = m.degree;
        shape.low = low;
        shape.digits = 1 + static_cast<std::int32_t>(r->below(4));
        poly_operand a(random_poly(r, shape)), b(random_poly(r, shape));
        poly_operand expected(reference_product(a.p, b.p, m.vars));
        EXPECT_EQ(product_text(a.p, b.p, m.vars), poly_text(expected.p)) << "seed " << r->seed;
        if (testing::Test::HasFailure()) return;
    }
}

TEST(PolyMult, RandomProductsAgreeWithTheFlatFormInEveryView)
{
    test_random r;
    make_small_field();
    for (num_view v : all_views) {
        for (std::int32_t modulus_here : {101, 36, 65521, 2147483629}) {
            for (std::int32_t flat_cut : {0, never}) {
                for (std::int32_t in_laurent : {0, 1}) {
                    if (v != view_modular && modulus_here != 101) continue;
                    const kept_word flat(&flat_mult_cut, flat_cut), form(&laurent, in_laurent);
                    const kept_word cut(&poly_cutoff, r.below(2) == 0 ? 20 : 3);
                    const kept_word short_cut(&fast_mult_cut, r.below(2) == 0 ? 10 : 2);
                    in_view live(v, modulus_here);
                    poly_audit audit;
                    random_products(&r, in_laurent ? -4 : 0, rounds / 10);
                    audit.expect_unchanged("random products");
                }
            }
        }
    }
}

TEST(PolyMult, MethodsAgreeOnBothSidesOfEachLength)
{
    test_random r;
    make_small_field();
    for (num_view v : all_views) {
        for (std::int32_t flat_cut : {12, never}) {
            const kept_word flat(&flat_mult_cut, flat_cut);
            in_view live(v, 65537);
            for (std::int32_t n : {9, 10, 11, 19, 20, 21, 30, 31, 39, 40, 41, 50, 80}) {
                poly_operand a(dense_poly(&r, 0, n - 1)), b(dense_poly(&r, n & 1, n)),
                    c(dense_poly(&r, 0, 20 * n));
                poly_operand ab(reference_product(a.p, b.p, 1));
                EXPECT_EQ(product_text(a.p, b.p, 1), poly_text(ab.p)) << n;
                if (n > 41) continue;
                poly_operand ac(reference_product(a.p, c.p, 1));
                EXPECT_EQ(product_text(a.p, c.p, 1), poly_text(ac.p)) << n;
            }
        }
    }
}

// Float -------------------------------------------------------------------------------------------------

TEST(PolyMult, WholeDoublesAreExactUpTo53Bits)
{
    in_view live(view_float);
    test_random r;
    for (std::int32_t n : {5, 30, 300, 3000}) {
        polynode *p = dense_poly(&r, 0, n), *q = dense_poly(&r, 0, n);
        std::vector<double> x, y;
        const double most = std::floor(std::sqrt(std::ldexp(1.0, 53) / (n + 2)));
        for (polynode *s = p, *t = q; s; s = s->next, t = t->next) {
            number *ns = term_value(s), *nt = term_value(t);
            x.push_back(ns->real = most - static_cast<double>(r.below(5)));
            y.push_back(nt->real = most - static_cast<double>(r.below(5)));
        }
        poly_operand a(p), b(q), c;
        poly_mult(a.p, b.p, &c.p, nilpol);
        std::size_t d = 0;
        for (polynode *t = c.p; t; t = t->next, ++d) {
            __int128 sum = 0;
            for (std::size_t i = d >= y.size() ? d - y.size() + 1 : 0; i <= d && i < x.size(); ++i) {
                sum += static_cast<__int128>(x[i]) * static_cast<std::int64_t>(y[d - i]);
            }
            ASSERT_EQ(term_value(t)->real, static_cast<double>(sum)) << n << " term " << d;
        }
        EXPECT_EQ(d, x.size() + y.size() - 1);
    }
}

TEST(PolyMult, FractionsStayWithinTheNormBound)
{
    in_view live(view_float);
    test_random r;
    for (std::int32_t n : {30, 300, 3000}) {
        polynode *p = dense_poly(&r, 0, n), *q = dense_poly(&r, 0, n);
        std::vector<long double> x, y;
        for (polynode *s = p, *t = q; s; s = s->next, t = t->next) {
            number *ns = term_value(s), *nt = term_value(t);
            x.push_back(ns->real /= 7);
            y.push_back(nt->real /= 11);
        }
        long double norm_x = 0, norm_y = 0;
        for (long double v : x) norm_x += v * v;
        for (long double v : y) norm_y += v * v;
        const long double bound = n * std::ldexp(1.0L, -50) * std::sqrt(norm_x * norm_y);
        poly_operand a(p), b(q), c;
        poly_mult(a.p, b.p, &c.p, nilpol);
        for (polynode *t = c.p; t; t = t->next) {
            const std::size_t d = static_cast<std::size_t>(2 * n - t->exp);
            long double sum = 0;
            for (std::size_t i = d >= y.size() ? d - y.size() + 1 : 0; i <= d && i < x.size(); ++i)
                sum += x[i] * y[d - i];
            ASSERT_LE(std::fabs(term_value(t)->real - sum), bound);
        }
    }
}

// Interrupts --------------------------------------------------------------------------------------------

// A long product of each method: the operands, and whether flat arrays are off.
TEST(PolyMultInterrupt, IsAnsweredInAFifthOfASecondInEveryMethod)
{
    test_random r;
    struct long_product {
        num_view view;
        std::int32_t flat_cut, terms, degree, digits;
    };
    const long_product cases[] = {
        {view_float, 12, 60000, 90, 1},           // tables, or transforms
        {view_float, 12, 40000, 1000000000, 1},   // sorted
        {view_digits, 12, 20000, 60, 40},         // tables of long integers
        {view_digits, 12, 15000, 1000000000, 5},  // the same, sorted
        {view_digits, never, 40000, 60, 3},       // halves and schoolbook, two levels
        {view_modular, never, 40000, 340, 1},     // rows
    };
    for (const long_product &l : cases) {
        const kept_word flat(&flat_mult_cut, l.flat_cut);
        in_view live(l.view, 65521);
        flat_poly terms;
        for (std::int32_t k = 0; k < l.terms / fewer_terms; ++k) {
            std::vector<std::int32_t> exps(l.degree > 1000 ? 1 : l.degree > 100 ? 2 : 3);
            for (std::int32_t &e : exps)
                e = static_cast<std::int32_t>(r.below(static_cast<std::uint64_t>(l.degree)));
            number *n = random_coefficient(&r, l.digits);
            if (!terms.emplace(exps, n).second) free_imag(&n);
        }
        poly_operand a(nest(&terms)), b;
        poly_assign(a.p, &b.p);
        const std::string text = poly_text(a.p);
        polynode *c = nullptr;
        const double waited = answer_time([&] { poly_mult(a.p, b.p, &c, nilpol); });
        EXPECT_EQ(poly_text(a.p), text);
        free_poly(&c);
        release_work();
        EXPECT_GE(waited, 0) << "the product was too short: view " << l.view;
#ifndef KELMAR_MALLOC_RECORDS
        EXPECT_LT(waited, 200) << "view " << l.view;
#endif
    }
}

// Sums of parts ---------------------------------------------------------------------------------------------

TEST(Parts, TheTotalOfNoneIsZeroAndOfManyTheSum)
{
    in_view live(view_digits);
    polynode *parts[33] = {};
    poly_operand total;
    total_parts(parts, 33, false, &total.p);
    EXPECT_EQ(poly_text(total.p), "{#0}");
    free_poly(&total.p);
    add_part(nullptr, parts, false);
    for (int k = 0; k < 21; ++k) add_part(poly_of_text("{2{#1}, #3}"), parts, false);
    total_parts(parts, 33, false, &total.p);
    EXPECT_EQ(poly_text(total.p), "{2{#21}, #63}");
    for (polynode *p : parts) EXPECT_EQ(p, nullptr);
}

TEST(NodeByPoly, TakesOneTermAndKeepsTheForm)
{
    in_view live(view_digits);
    const kept_word on(&laurent, 1);
    poly_operand t(poly_of_text("{#2, -1{#7}}")), p(poly_of_text("{1{1{#1}, #1}, #5, -2{#3}}")), c;
    node_by_poly(t.p, p.p, &c.p, nilpol);
    EXPECT_EQ(poly_text(c.p), "{1{1{#2}, #2}, #10, -2{#6}}");
    free_poly(&c.p);
    poly_operand s(poly_of_text("{-1{#7}}")), q(poly_of_text("{1{#1}, #5}"));
    node_by_poly_3(s.p, q.p, &c.p);
    EXPECT_EQ(poly_text(c.p), "{#7, -1{#35}}");
}

}  // namespace
