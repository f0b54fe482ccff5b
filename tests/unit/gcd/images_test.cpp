// Bounds by images at scattered points: never below the degree of the gcd, nearly always that degree; and the
// step of the driver that asks them before a long sequence.
#include "gcd/images.h"
#include <gtest/gtest.h>
#include "gcd/polygcd.h"
#include "poly/add.h"
#include "poly/mul.h"
#include "poly/power.h"
#include "tests/support/by_build.h"
#include "tests/support/divisions.h"
#include "tests/support/gcds.h"

using namespace kelmar;
using namespace kelmar_test;

namespace {

struct GcdImages : testing::Test {
    six_in_force names;
    kept_word variables{&number_polys, 3};
    GcdImages()
    {
        load_primes();
        make_wide_field();
        clear_gcd_counters();
    }

    std::int32_t bound(const char *a, const char *b)
    {
        const poly_operand x(poly_of_text(a)), y(poly_of_text(b));
        return degree_by_images(x.p, y.p);
    }
};

// Degrees ------------------------------------------------------------------------------------------------

TEST_F(GcdImages, ProductsHaveTheDegreeOfTheirFactor)
{
    test_random r;
    SCOPED_TRACE(r.seed);
    poly_shape shape;
    shape.vars = 3;
    shape.degree = 4;
    shape.terms = 6;
    const ring rings[] = {
        {view_digits, 101, 0}, {view_float, 101, 0}, {view_modular, 2147483629, 1}, {view_modular, 65521, 1}};
    for (const ring &each : rings) {
        in_ring live(each);
        int met = 0, of = 0;
        for (int i = 0; i < by_build(20, 200); ++i) {
            shape.digits = each.view == view_digits ? 1 + i % 4 : 1;
            poly_operand g(random_divisor(&r, shape)), a(random_divisor(&r, shape)),
                b(random_divisor(&r, shape)), ga, gb, d;
            poly_mult(g.p, a.p, &ga.p, names.first());
            poly_mult(g.p, b.p, &gb.p, names.first());
            if (is_constant(ga.p) || is_constant(gb.p) || ga.p->exp == 0 || gb.p->exp == 0) continue;
            const std::int32_t told = degree_by_images(ga.p, gb.p);
            polygcd(ga.p, gb.p, &d.p, 0, 1, 1, names.names(), 1, 1, 1);
            const std::int32_t degree = each.view == view_float ? g.p->exp : d.p->exp;  // rounding may hide g
            EXPECT_GE(told, degree) << poly_text(ga.p) << poly_text(gb.p);
            met += told == degree;
            ++of;
        }
        EXPECT_GE(met * 10, of * 9) << "view " << each.view;
    }
}

// In small fields points are few, and an image tells less; but what it tells is so.
TEST_F(GcdImages, SmallFieldsTellNothingWrong)
{
    test_random r;
    SCOPED_TRACE(r.seed);
    poly_shape shape;
    shape.vars = 2;
    shape.degree = 3;
    shape.terms = 5;
    const ring rings[] = {{view_modular, 2, 1},
                          {view_modular, 3, 1},
                          {view_modular, 101, 1},
                          {view_field, 256, 1},
                          {view_field, 65536, 1}};
    for (const ring &each : rings) {
        in_ring live(each);
        if (each.modulus == 65536) {
            set_table_field(65536);
        }
        for (int i = 0; i < by_build(20, 200); ++i) {
            poly_operand g(random_divisor(&r, shape)), a(random_divisor(&r, shape)),
                b(random_divisor(&r, shape)), ga, gb;
            poly_mult(g.p, a.p, &ga.p, names.first());
            poly_mult(g.p, b.p, &gb.p, names.first());
            if (is_constant(ga.p) || is_constant(gb.p) || ga.p->exp == 0 || gb.p->exp == 0) continue;
            EXPECT_GE(degree_by_images(ga.p, gb.p), g.p->exp) << poly_text(ga.p) << poly_text(gb.p);
        }
    }
}

TEST_F(GcdImages, CoprimePairsAreProved)
{
    const char a[] = "{2{1{#1}, #1}, 1{#5}, 0{1{#1}, #-3}}", b[] = "{3{2{#1}}, 1{1{#1}, #7}, #1}";
    in_view live(view_digits);
    EXPECT_EQ(bound(a, b), 0);
    in_view floats(view_float);
    EXPECT_EQ(bound(a, b), 0);
    in_view words(view_modular, 65521);
    mod_is_prime = 1;
    const char c[] = "{2{1{#1}, #1}, 1{#5}, 0{1{#1}, #65518}}";
    EXPECT_EQ(bound(c, b), 0);
    in_ring field(ring{view_field, 256, 1});
    EXPECT_EQ(bound("{2{1{#1}, #1}, 1{#5}, 0{1{#1}, #9}}", b), 0);
}

TEST_F(GcdImages, LongCoefficientsOfEitherSign)
{
    in_view live(view_digits);
    poly_operand big(poly_of_text("{#-268435455}")), a(poly_of_text("{2{#1}, 1{1{#2}}, 0{2{#1}, #-4}}")),
        b(poly_of_text("{2{#1}, 1{1{#1}, #-1}, 0{1{#1}, #-2}}")), x, y;
    compute_power(&big.p, 9, nilpol);  // of nine digits, negative
    poly_mult(a.p, big.p, &x.p, names.first());
    poly_mult(b.p, big.p, &y.p, names.first());
    EXPECT_EQ(degree_by_images(x.p, y.p), 1);
}

// What has no image ------------------------------------------------------------------------------------

// y (y + 1) x^2 + .. over Z/2: the leading coefficient is zero at every point, and its images are void.
TEST_F(GcdImages, AnImageThatLosesItsLeadTellsNothing)
{
    in_view live(view_modular, 2);
    mod_is_prime = 1;
    EXPECT_EQ(bound("{2{2{#1}, 1{#1}}, #1}", "{2{#1}, 1{#1}, #1}"), 2);
    EXPECT_EQ(bound("{2{#1}, 1{#1}, #1}", "{2{2{#1}, 1{#1}}, #1}"), 2);
}

TEST_F(GcdImages, RingsAndNumbersWithoutImages)
{
    const char a[] = "{2{1{#1}, #1}, #1}", b[] = "{3{1{#1}}, 0{1{#1}, #2}}";
    {
        in_view live(view_modular, 100);
        EXPECT_EQ(bound(a, b), 2);
    }
    {
        in_view live(view_word);
        EXPECT_EQ(bound(a, b), 2);
    }
    {
        in_view live(view_small);
        EXPECT_EQ(bound(a, b), 2);
    }
    in_view live(view_float);
    EXPECT_EQ(bound(a, b), 0);
    EXPECT_EQ(bound("{2{1{#0.5}, #1}, #1}", b), 2);
    EXPECT_EQ(bound(b, "{2{1{#1}, #1}, #1e17}"), 2);
    const kept_word negative(&laurent, 1);
    in_view digits(view_digits);
    EXPECT_EQ(bound(a, b), 2);
}

TEST_F(GcdImages, DegreesAboveTheArraysAreNotAsked)
{
    in_view live(view_digits);
    EXPECT_EQ(bound("{25000{#1}, #1}", "{2{1{#1}, #1}, #1}"), 0);
    EXPECT_EQ(bound("{25001{#1}, #1}", "{2{1{#1}, #1}, #1}"), 2);
}

// The step of the driver -------------------------------------------------------------------------------

// u v + w q, where q is zero at every value that the driver's tests take for y: at those points the pair has
// the factor v in common, and nowhere else.
struct unlucky_pair {
    poly_operand a, b;
    explicit unlucky_pair(const pt *names)
    {
        poly_operand v(poly_of_text("{2{#1}, 1{1{#3}, #2}, 0{1{#1}, #7}}")),
            u(poly_of_text("{5{#1}, 3{#3}, 1{1{#2}}, #1}")), w(poly_of_text("{3{#1}, 1{#5}, 0{1{#1}, #11}}")),
            q(poly_of_text("{#1}")), t(poly_of_text("{4{#1}, 2{1{#2}, #6}, 1{#1}, #9}"));
        for (int k = 0; k < 3; ++k) {
            poly_operand root(poly_of_text("{0{1{#1}, #1}}"));
            number *c = root.p->coef->next->num;
            if (exact_integers()) {
                c->head->digit = -global_list[6 + k];
            } else {
                c->word = modulus - global_list[6 + k];
            }
            poly_mult(q.p, root.p, &q.p, names);
        }
        poly_mult(t.p, v.p, &a.p, names);
        poly_mult(u.p, v.p, &u.p, names);
        poly_mult(w.p, q.p, &w.p, names);
        poly_operand sum(u.p);
        u.p = nullptr;
        better_poly_add(sum.p, w.p, &b.p);
        sum.p = nullptr;
    }
};

TEST_F(GcdImages, UnluckyPointsDoNotBeginASequence)
{
    const kept_word two(&number_polys, 2);
    const ring rings[] = {{view_digits, 101, 0}, {view_modular, 65521, 1}};
    for (const ring &each : rings) {
        in_ring live(each);
        const unlucky_pair pair(names.first());
        poly_operand g;
        const exits_since exits;
        polygcd(pair.a.p, pair.b.p, &g.p, 0, 1, 1, names.names(), 1, 1, 1);
        EXPECT_EQ(poly_text(g.p), "{#1}");
        EXPECT_EQ(exits.count(exit_more_images), 1) << exits.text();
        EXPECT_EQ(exits.count(exit_algorithm_c), 0) << exits.text();
    }
}

// Where the caller allows no tests, none is made.
TEST_F(GcdImages, NoImagesWithoutLeave)
{
    const kept_word two(&number_polys, 2);
    in_view live(view_modular, 65521);
    mod_is_prime = 1;
    const unlucky_pair pair(names.first());
    poly_operand g;
    const exits_since exits;
    polygcd(pair.a.p, pair.b.p, &g.p, 0, 0, 1, names.names(), 1, 1, 1);
    EXPECT_EQ(poly_text(g.p), "{#1}");
    EXPECT_EQ(exits.count(exit_more_images), 0) << exits.text();
    EXPECT_EQ(exits.count(exit_algorithm_c), 1) << exits.text();
}

TEST_F(GcdImages, WholeDoublesAreSettledToo)
{
    in_view live(view_float);
    poly_operand a(poly_of_text("{5{2{#1}, #1}, 4{1{#2}, #6}, 1{3{#1}, #4}, 0{3{#1}, 1{#2}, #9}}")),
        b(poly_of_text("{4{1{#1}, #1}, 3{2{#3}, #1}, 1{1{#2}}, 0{2{#5}, #1}}")), g;
    const exits_since exits;
    polygcd(a.p, b.p, &g.p, 0, 1, 1, names.names(), 1, 1, 1);
    EXPECT_EQ(poly_text(g.p), "{#1}");
    EXPECT_EQ(exits.count(exit_more_images), 1) << exits.text();
}

// A pair of products of sparse factors, coprime and without contents: *f and *h.
void make_sparse_pair(test_random *r, poly_operand *f, poly_operand *h, const pt *names)
{
    poly_shape shape;
    shape.vars = 3;
    shape.degree = 8;
    shape.terms = 10;
    poly_operand factors[4];
    for (poly_operand &factor : factors) {
        poly_operand some(random_divisor(r, shape)), corners(poly_of_text("{9{#1}, 0{9{#1}, 0{9{#1}}}}"));
        poly_add(some.p, corners.p, &factor.p);
    }
    poly_mult(factors[0].p, factors[1].p, &f->p, names);
    poly_mult(factors[2].p, factors[3].p, &h->p, names);
}

// Over and over: each run draws points of its own, and none may end in a sequence.
TEST_F(GcdImages, RepeatedCoprimePairsNeverBeginASequence)
{
    in_view live(view_digits);
    test_random r;
    SCOPED_TRACE(r.seed);
    for (int pair = 0; pair < by_build(2, 6); ++pair) {
        poly_operand f, h;
        make_sparse_pair(&r, &f, &h, names.first());
        const exits_since exits;
        for (int i = 0; i < by_build(20, 200); ++i) {
            poly_operand g;
            polygcd(f.p, h.p, &g.p, 0, 1, 1, names.names(), 1, 1, 1);
            EXPECT_EQ(poly_text(g.p), "{#1}");
        }
        EXPECT_EQ(exits.count(exit_algorithm_c), 0) << exits.text() << poly_text(f.p) << poly_text(h.p);
    }
}

}  // namespace
