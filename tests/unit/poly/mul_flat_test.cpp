// Flat products: packing, stretches of both kinds, transforms, and what is declined, against the schoolbook.
#include "poly/mul_flat.h"
#include <gtest/gtest.h>
#include <cmath>
#include <vector>
#include "poly/measure.h"
#include "poly/mul.h"
#include "poly/mul_school.h"
#include "poly/mul_work.h"
#include "session/report.h"
#include "tests/support/by_build.h"
#include "tests/support/mul_operands.h"
#include "tests/support/views.h"

using namespace kelmar;
using namespace kelmar_test;

namespace {

constexpr int rounds = by_build(60, 400);

constexpr num_view flat_views[] = {view_float, view_field, view_modular, view_word, view_digits};

struct with_size {
    std::int64_t *place, saved;
    with_size(std::int64_t *at, std::int64_t v) : place(at), saved(*at)
    {
        *place = v;
    }
    with_size(const with_size &) = delete;
    with_size &operator=(const with_size &) = delete;
    ~with_size()
    {
        *place = saved;
    }
};

int flat_product(const polynode *a, const polynode *b, polynode **c)
{
    flat_shape sa, sb;
    measure_flat(a, &sa);
    measure_flat(b, &sb);
    return flat_poly_mult(a, b, &sa, a == b ? &sa : &sb, c);
}

// Return the product, after checking it against the schoolbook; "declined" when it is.
std::string flat_text(polynode *a, polynode *b, std::int32_t vars)
{
    const kept_word nested(&flat_mult_cut, never);
    const std::string text_a = poly_text(a), text_b = poly_text(b);
    poly_operand flat, school;
    if (!flat_product(a, b, &flat.p)) return "declined";
    EXPECT_TRUE(poly_is_normal(flat.p, vars)) << poly_text(flat.p);
    EXPECT_EQ(poly_text(a), text_a);
    EXPECT_EQ(poly_text(b), text_b);
    school_poly_mult(a, b, poly_length(a), poly_length(b), &school.p, nilpol);
    EXPECT_EQ(poly_text(flat.p), poly_text(school.p)) << text_a << " times " << text_b;
    return poly_text(flat.p);
}

std::string flat_text(const char *a, const char *b)
{
    poly_operand p(poly_of_text(a)), q(poly_of_text(b));
    return flat_text(p.p, q.p, 6);
}

TEST(FlatProduct, ConstantsStopTheNestingAnywhere)
{
    for (num_view v : {view_float, view_word, view_digits}) {
        in_view live(v);
        EXPECT_EQ(flat_text("{1{#1}, 0{1{#1}, 0{1{#1}, #1}}}", "{2{#3}, #5}"),
                  "{3{#3}, 2{1{#3}, 0{1{#3}, #3}}, 1{#5}, 0{1{#5}, 0{1{#5}, #5}}}");
        EXPECT_EQ(flat_text("{0{0{1{#1}}}}", "{1{#1}, #1}"), "{1{0{1{#1}}}, 0{0{1{#1}}}}");
        EXPECT_EQ(flat_text("{1{1{#1}, #1}}", "{1{1{#1}, #-1}}"), "{2{2{#1}, #-1}}");
    }
}

TEST(FlatProduct, WhatCancelsGoesAndNumbersCollapse)
{
    in_view live(view_modular, 36);
    EXPECT_EQ(flat_text("{1{1{#6}, #1}, #12}", "{1{#6}, #18}"), "{2{#6}, 1{#18}}");
    EXPECT_EQ(flat_text("{1{#6}, #12}", "{1{#6}, #18}"), "{#0}");
    EXPECT_EQ(flat_text("{0{1{#6}, #5}}", "{0{1{#6}, #5}}"), "{0{1{#24}, #25}}");
}

TEST(FlatProduct, NegativeExponentsOnEveryLevel)
{
    const kept_word on(&laurent, 1);
    in_view live(view_digits);
    EXPECT_EQ(flat_text("{1{-1{#1}}, #2, -1{1{#3}}}", "{-1{1{#1}}, -2{#5}}"),
              "{#1, -1{1{#2}, -1{#5}}, -2{2{#3}, #10}, -3{1{#15}}}");
    EXPECT_EQ(flat_text("{0{1{#1}}, -3{#2}}", "{0{-1{#1}}}"), "{#1, -3{-1{#2}}}");
    EXPECT_EQ(flat_text("{-2000000000{#1}, -2000000001{#1}}", "{1{#1}, #1}"),
              "{-1999999999{#1}, -2000000000{#2}, -2000000001{#1}}");
}

TEST(FlatProduct, DeclinesExponentsThatDoNotPack)
{
    in_view live(view_float);
    EXPECT_EQ(flat_text("{1000000000{1000000000{#1}, #1}}", "{1000000000{1000000000{#1}, #1}}"),
              "{2000000000{2000000000{#1}, 1000000000{#2}, #1}}");
    EXPECT_EQ(flat_text("{1000000000{1000000000{9{#1}}, #1}, #1}", "{1000000000{1000000000{#1}, #1}, #7}"),
              "declined");
}

TEST(FlatProduct, DeclinesTheSmallViewAlone)
{
    {
        in_view live(view_small);
        EXPECT_EQ(flat_text("{1{#1}, #1}", "{1{#1}, #1}"), "declined");
    }
    in_view live(view_digits);
    poly_operand two(poly_of_text("{1{#1}, #1}")), three(poly_of_text("{1{#1}, #1}"));
    special_free(two.p->coef->num);
    special_free(three.p->coef->num);
    number_from_text("72057594037927935", two.p->coef->num);    // 2^56 - 1
    number_from_text("72057594037927936", three.p->coef->num);  // 2^56
    EXPECT_NE(flat_text(two.p, two.p, 1), "declined");
    EXPECT_EQ(flat_text(two.p, three.p, 1),
              "{2{#5192296858534827556472902291292160}, 1{#144115188075855871}, #1}");
    EXPECT_EQ(flat_text(three.p, two.p, 1), flat_text(two.p, three.p, 1));
}

TEST(FlatProduct, SumsOfShortIntegersOnBothSidesOfAWord)
{
    in_view live(view_digits);
    for (std::int64_t v : {268435455LL, 268435456LL, 536870911LL, 1073741824LL, 72057594037927935LL}) {
        for (const char *sign : {"", "-"}) {
            poly_operand p(poly_of_text("{3{#1}, 2{#1}, 1{#1}, #1}"));
            for (polynode *t = p.p; t; t = t->next) {
                special_free(term_value(t));
                number_from_text((sign + std::to_string(v)).c_str(), term_value(t));
            }
            EXPECT_NE(flat_text(p.p, p.p, 1), "declined");
            poly_operand q(poly_of_text("{2{#-1}, 1{#3}, #-1}"));
            EXPECT_NE(flat_text(p.p, q.p, 1), "declined");
        }
    }
}

TEST(FlatProduct, AgreesWithTheSchoolbookForStretchesOfEverySize)
{
    test_random r;
    make_small_field();
    for (num_view v : flat_views) {
        for (std::int64_t cells : {1, 7, 100, 1 << 15}) {
            for (std::int64_t batch : {4, 50, 1 << 16}) {
                const with_size least(&flat_table_least, cells), most(&flat_table_most, cells),
                    size(&flat_batch, batch);
                const kept_word form(&laurent, static_cast<std::int32_t>(r.below(2)));
                in_view live(v, r.below(2) == 0 ? 36 : 2147483629);
                poly_audit audit;
                for (int k = 0; k < rounds / 40 + 1; ++k) {
                    poly_shape shape;
                    shape.vars = 1 + static_cast<std::int32_t>(r.below(5));
                    shape.terms = r.below(4) == 0 ? 60 : 12;
                    shape.degree = r.below(2) == 0 ? 3 : 900;
                    shape.low = laurent ? -5 : 0;
                    shape.digits = 2;
                    poly_operand a(random_poly(&r, shape)), b(random_poly(&r, shape));
                    if (is_constant(a.p) || is_constant(b.p)) continue;
                    flat_text(a.p, b.p, shape.vars);
                    flat_text(a.p, a.p, shape.vars);
                    if (HasFailure()) FAIL() << "seed " << r.seed << " cells " << cells << " batch " << batch;
                }
                audit.expect_unchanged("stretches");
            }
        }
    }
}

TEST(FlatProduct, RowsWithoutGapsAgreeWithTheSchoolbookHoweverTheyAreCut)
{
    test_random r;
    make_small_field();
    const with_size transforms(&transform_cut, never);
    for (num_view v : flat_views) {
        in_view live(v, 65521);
        for (std::int64_t cells : {1, 2, 3, 7, 100}) {
            const with_size least(&flat_table_least, cells), most(&flat_table_most, cells);
            for (std::int32_t n : {1, 2, 3, 4, 5, 8, 9, 31}) {
                poly_operand a(dense_poly(&r, 0, n)), b(dense_poly(&r, 3, 3 + 2 * n));
                flat_text(a.p, b.p, 1);
                flat_text(b.p, a.p, 1);
                if (HasFailure()) FAIL() << "seed " << r.seed << " cells " << cells << " terms " << n;
            }
        }
    }
}

// However many rows and lanes go together: from the highest term of the shorter operand down, to the last
// bit.
TEST(FlatProduct, SumsOfDoublesAreTakenInTheOrderOfTheRows)
{
    test_random r;
    in_view live(view_float);
    const kept_word nested(&flat_mult_cut, never);
    for (std::int64_t cells : {5, 33, 100000}) {
        const with_size least(&flat_table_least, cells), most(&flat_table_most, cells);
        for (std::int32_t n : {1, 3, 4, 5, 8, 23, 64, 131}) {
            const std::int32_t m = n + static_cast<std::int32_t>(r.below(40));
            poly_operand a(dense_poly(&r, 0, n - 1)), b(dense_poly(&r, 0, m - 1)), c;
            std::vector<double> x, y;
            for (polynode *t = a.p; t; t = t->next) x.push_back(term_value(t)->real /= 7);
            for (polynode *t = b.p; t; t = t->next) y.push_back(term_value(t)->real /= 3);
            ASSERT_EQ(x.size(), static_cast<std::size_t>(n));
            ASSERT_EQ(y.size(), static_cast<std::size_t>(m));
            ASSERT_TRUE(flat_product(a.p, b.p, &c.p));
            const polynode *t = c.p;
            for (std::size_t k = 0; k < x.size() + y.size() - 1; ++k) {  // from the highest exponent
                double sum = 0;
                for (std::size_t i = 0; i < x.size(); ++i) {
                    if (i <= k && k - i < y.size()) sum += x[i] * y[k - i];
                }
                if (sum == 0) continue;
                ASSERT_NE(t, nullptr);
                ASSERT_EQ(term_value(t)->real, sum) << "seed " << r.seed << " terms " << n << " by " << m;
                t = t->next;
            }
            EXPECT_EQ(t, nullptr);
        }
    }
}

TEST(FlatProduct, TransformsAgreeWithStretches)
{
    test_random r;
    make_small_field();
    for (num_view v : flat_views) {
        for (std::int32_t m : {36, 65521, 65537, 2147483629}) {
            in_view live(v, m);
            for (std::int32_t n : {2, 30, 199, 200, 201, 600}) {
                poly_operand a(dense_poly(&r, 0, n - 1)), b(dense_poly(&r, 5, n + 40)), with, without;
                const kept_word nested(&flat_mult_cut, never);
                {
                    const with_size cut(&transform_cut, 2);
                    ASSERT_TRUE(flat_product(a.p, b.p, &with.p));
                }
                const with_size cut(&transform_cut, never);
                ASSERT_TRUE(flat_product(a.p, b.p, &without.p));
                EXPECT_EQ(poly_text(with.p), poly_text(without.p)) << n << " modulus " << m;
            }
            const with_size cut(&transform_cut, 2);
            poly_operand a(dense_poly2(&r, 12, 9)), b(dense_poly2(&r, 9, 14));
            flat_text(a.p, b.p, 2);
            flat_text(a.p, a.p, 2);
        }
    }
}

TEST(FlatProduct, FractionsAreNotTransformed)
{
    in_view live(view_float);
    test_random r;
    poly_operand a(dense_poly(&r, 0, 300)), b(dense_poly(&r, 0, 300)), c, d;
    term_value(a.p)->real = 0.5;
    ASSERT_TRUE(flat_product(a.p, b.p, &c.p));
    EXPECT_EQ(term_value(c.p)->real, 0.5 * term_value(b.p)->real);
    term_value(a.p)->real = 1e18;  // a whole number, of more bits than transforms take
    ASSERT_TRUE(flat_product(a.p, b.p, &d.p));
    EXPECT_EQ(term_value(d.p)->real, 1e18 * term_value(b.p)->real);
}

TEST(FlatProduct, InfiniteAndTinyDoublesPassThrough)
{
    in_view live(view_float);
    poly_operand a(poly_of_text("{2{#1e300}, 1{#1e-300}, #1}")), c;
    ASSERT_TRUE(flat_product(a.p, a.p, &c.p));
    EXPECT_EQ(poly_text(c.p),
              "{4{#inf}, 3{#2}, 2{#2.0000000000000001e+300}, 1{#2.0000000000000001e-300}, #1}");
}

// Works left by a jump ----------------------------------------------------------------------------------

[[gnu::noinline]] void leave_by_jump(polynode **operand)
{
    caught_error([&] {
        product_work *work = open_work(__builtin_frame_address(0));
        poly_set(7, &work->parts[3]);
        work->loans[1] = new_term(4, (*operand)->coef);
        get_room(work, 0, 1000);
        error(panic_stop, "");
    });
}

TEST(ProductWork, WhatAJumpLeavesTheNextProductReleases)
{
    in_view live(view_digits);
    poly_audit audit;
    {
        poly_operand p(poly_of_text("{3{#5}, #1}")), q;
        leave_by_jump(&p.p);
        const kept_word nested(&flat_mult_cut, never);
        poly_mult(p.p, p.p, &q.p, nilpol);
        EXPECT_EQ(poly_text(q.p), "{6{#25}, 3{#10}, #1}");
        EXPECT_EQ(poly_text(p.p), "{3{#5}, #1}");
    }
    audit.expect_unchanged("left by a jump");
}

TEST(ProductWork, RoomsGrowAndKeepTheirContent)
{
    product_work *work = open_work(__builtin_frame_address(0));
    auto *room = static_cast<char *>(get_room(work, 2, 10));
    room[9] = 'k';
    room = static_cast<char *>(get_room(work, 2, 100000));
    EXPECT_EQ(room[9], 'k');
    EXPECT_EQ(get_room(work, 2, 5), room);
    close_work(work);
    release_work();
}

TEST(Packing, AnExponentThatLeavesTheRangeIsSeenOnEveryLevel)
{
    in_view live(view_float);
    flat_shape a, b;
    poly_operand p(poly_of_text("{1{2000000000{#1}, #1}}")), q(poly_of_text("{1{147483648{#1}}}"));
    measure_flat(p.p, &a);
    measure_flat(q.p, &b);
    EXPECT_FALSE(exponents_fit(&a, &b));
    EXPECT_TRUE(exponents_fit(&b, &b));
    EXPECT_EQ(a.levels, 2);
    EXPECT_EQ(a.terms, 2);
    EXPECT_EQ(a.top[1], 2000000000);
}

}  // namespace
