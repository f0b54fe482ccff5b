// Gcds in one variable over prime fields against FLINT, by every method.
#include <gtest/gtest.h>
#include "gcd/emgcd.h"
#include "gcd/extended.h"
#include "gcd/half_gcd.h"
#include "gcd/onevar_gcd.h"
#include "gcd/word_steps.h"
#include "poly/mul.h"
#include "poly/onevar.h"
#include "tests/support/by_build.h"
#include "tests/support/flint_polys.h"
#include "tests/support/views.h"

using namespace kelmar;
using namespace kelmar_test;

namespace {

constexpr int scale = by_build(8, 1);

constexpr std::int32_t primes[] = {2,          3,          5,          101,        32749,     46337,
                                   46349,      65521,      65537,      65539,      99991,     1000003,
                                   1073741789, 1431655751, 1431655777, 2147483629, 2147483647};

// The prime field is live until the end of the block.
struct in_prime_field {
    in_view view;
    explicit in_prime_field(std::int32_t p) : view(view_modular, p)
    {
        mod_is_prime = 1;
    }
};

// A FLINT polynomial of a test.
struct flint_poly {
    nmod_poly_t f;
    flint_poly()
    {
        nmod_poly_init(f, static_cast<ulong>(modulus));
    }
    flint_poly(const flint_poly &) = delete;
    flint_poly &operator=(const flint_poly &) = delete;
    ~flint_poly()
    {
        nmod_poly_clear(f);
    }
    // Random of this degree, 0 for a negative one. gaps: about as many of ten coefficients are zero.
    void draw(test_random *r, std::int32_t degree, int gaps = 0)
    {
        nmod_poly_zero(f);
        if (degree < 0) return;
        const std::uint64_t p = static_cast<std::uint64_t>(modulus);
        for (std::int32_t e = 0; e < degree; ++e) {
            if (static_cast<int>(r->below(10)) >= gaps) nmod_poly_set_coeff_ui(f, e, r->below(p));
        }
        nmod_poly_set_coeff_ui(f, degree, 1 + r->below(p - 1));
    }
};

// A pair of the given degrees with a common factor, and its gcd.
struct pair_with_gcd {
    flint_poly a, b, g;
    pair_with_gcd(test_random *r, std::int32_t da, std::int32_t db, std::int32_t dg, int gaps = 0)
    {
        flint_poly common;
        common.draw(r, dg);
        a.draw(r, da - dg, gaps);
        b.draw(r, db - dg, gaps);
        nmod_poly_mul(a.f, a.f, common.f);
        nmod_poly_mul(b.f, b.f, common.f);
        nmod_poly_gcd(g.f, a.f, b.f);
    }
};

void words_of(const nmod_poly_t f, std::int32_t *x)
{
    for (slong e = 0; e < nmod_poly_length(f); ++e)
        x[e] = static_cast<std::int32_t>(nmod_poly_get_coeff_ui(f, e));
}

void poly_of_words(const std::int32_t *x, std::int32_t deg, nmod_poly_t f)
{
    nmod_poly_zero(f);
    for (std::int32_t e = 0; e <= deg; ++e) nmod_poly_set_coeff_ui(f, e, static_cast<ulong>(x[e]));
}

using list_gcd = void (*)(polynode *, polynode *, polynode **, std::int32_t, const pt *);

void list_half_gcd(polynode *a, polynode *b, polynode **g, std::int32_t, const pt *names)
{
    emgcd_poly(a->exp >= b->exp ? a : b, a->exp >= b->exp ? b : a, g, names, 1);
}

// The method finds the gcd of the pair in either order; operands stay, and nothing is lost.
void expect_gcd(const pair_with_gcd &pair, list_gcd method, const char *name)
{
    const poly_audit audit;
    {
        poly_operand a(poly_from_flint(pair.a.f)), b(poly_from_flint(pair.b.f)), g, h;
        poly_operand copy_a(copy_poly(a.p)), copy_b(copy_poly(b.p));
        method(a.p, b.p, &g.p, 1, nilpol);
        method(b.p, a.p, &h.p, 0, nilpol);
        EXPECT_TRUE(poly_is_normal(g.p, 1)) << name;
        EXPECT_TRUE(poly_equal(a.p, copy_a.p) && poly_equal(b.p, copy_b.p)) << name;
        flint_poly found, other;
        poly_to_flint(g.p, found.f);
        poly_to_flint(h.p, other.f);
        EXPECT_TRUE(method == list_half_gcd ||
                    nmod_poly_get_coeff_ui(found.f, nmod_poly_degree(found.f)) == 1);
        nmod_poly_make_monic(found.f, found.f);
        nmod_poly_make_monic(other.f, other.f);
        EXPECT_TRUE(nmod_poly_equal(found.f, pair.g.f))
            << name << " modulo " << modulus << ", degrees " << nmod_poly_degree(pair.a.f) << ", "
            << nmod_poly_degree(pair.b.f) << ", " << nmod_poly_degree(pair.g.f);
        EXPECT_TRUE(nmod_poly_equal(other.f, pair.g.f)) << name << " exchanged, modulo " << modulus;
    }
    audit.expect_unchanged(name);
}

// The same on the arrays xx and yy.
void expect_array_gcd(const pair_with_gcd &pair, void (*method)(word_pair *), const char *name)
{
    get_word_arrays();
    words_of(pair.a.f, xx);
    words_of(pair.b.f, yy);
    word_pair degrees = {static_cast<std::int32_t>(nmod_poly_degree(pair.b.f)),
                         static_cast<std::int32_t>(nmod_poly_degree(pair.a.f)), 0};
    method(&degrees);
    EXPECT_TRUE(degrees.done && (degrees.deg_x < 0 || degrees.deg_y < 0)) << name;
    flint_poly found;
    if (degrees.deg_y < 0) {
        poly_of_words(xx, degrees.deg_x, found.f);
    } else {
        poly_of_words(yy, degrees.deg_y, found.f);
    }
    EXPECT_TRUE(nmod_poly_degree(found.f) > 0 || nmod_poly_is_one(found.f)) << name;
    nmod_poly_make_monic(found.f, found.f);
    EXPECT_TRUE(nmod_poly_equal(found.f, pair.g.f))
        << name << " modulo " << modulus << ", degrees " << nmod_poly_degree(pair.a.f) << ", "
        << nmod_poly_degree(pair.b.f) << ", " << nmod_poly_degree(pair.g.f);
}

void in_turn(word_pair *pair)
{
    while (!pair->done) {
        if (pair->deg_x >= pair->deg_y) {
            divide_y_into_x_1(pair);
        } else {
            divide_x_into_y_1(pair);
        }
    }
}

void expect_all_ways(const pair_with_gcd &pair)
{
    expect_gcd(pair, basic_poly_gcd, "basic_poly_gcd");
    expect_gcd(pair, faster_poly_gcd, "faster_poly_gcd");
    expect_gcd(pair, fastest_poly_gcd, "fastest_poly_gcd");
    expect_gcd(pair, list_half_gcd, "emgcd_poly");
    expect_array_gcd(pair, simple_onevar_gcd, "simple_onevar_gcd");
    expect_array_gcd(pair, in_turn, "divide_in_turn");
    expect_array_gcd(pair, hgcd, "hgcd");
}

TEST(OnevarGcdOracle, AllWaysAllPrimes)
{
    test_random r;
    for (const std::int32_t p : primes) {
        const in_prime_field live(p);
        for (int i = 0; i < 60 / scale; ++i) {
            const std::int32_t da = 1 + static_cast<std::int32_t>(r.below(i < 30 ? 12 : 300));
            const std::int32_t db = 1 + static_cast<std::int32_t>(r.below(i < 30 ? 12 : 300));
            const std::int32_t dg = static_cast<std::int32_t>(
                r.below(static_cast<std::uint64_t>(da < db ? da : db) + 1));
            expect_all_ways(pair_with_gcd(&r, da, db, dg, static_cast<int>(r.below(10))));
        }
    }
}

TEST(OnevarGcdOracle, DegreesAroundTheThresholds)
{
    test_random r;
    for (const std::int32_t p : {46337, 46349, 65521, 65537, 2147483629}) {
        const in_prime_field live(p);
        for (const std::int32_t d :
             {99, 100, 101, 199, 200, 201, 399, 400, 401, 402, 1999, 2000, 2001, 2002}) {
            expect_array_gcd(pair_with_gcd(&r, d, d, 0), hgcd, "hgcd");
            expect_array_gcd(pair_with_gcd(&r, d, d - 1, d / 3), hgcd, "hgcd");
            expect_array_gcd(pair_with_gcd(&r, d - 1, d, d / 2), simple_onevar_gcd, "simple_onevar_gcd");
            expect_gcd(pair_with_gcd(&r, d, d - 1, 7), basic_poly_gcd, "basic_poly_gcd");
        }
    }
}

TEST(OnevarGcdOracle, AnyNumberOfLanes)
{
    test_random r;
    for (const std::int32_t lanes : {1, 8, 16}) {
        word_lanes = lanes;
        for (const std::int32_t p : {3, 46337, 65537, 1431655751, 1431655777, 2147483629, 2147483647}) {
            const in_prime_field live(p);
            for (int i = 0; i < 20 / scale; ++i) {
                const std::int32_t d = 1 + static_cast<std::int32_t>(r.below(i < 10 ? 60 : 900));
                const std::int32_t dg = static_cast<std::int32_t>(r.below(static_cast<std::uint64_t>(d)));
                expect_array_gcd(pair_with_gcd(&r, d + 1, d, dg), simple_onevar_gcd, "simple_onevar_gcd");
            }
        }
    }
    word_lanes = 16;
}

TEST(OnevarGcdOracle, LongPairs)
{
    test_random r;
    for (const std::int32_t p : {7, 65521, 2147483629}) {
        const in_prime_field live(p);
        for (const std::int32_t d : {5000, 10007, 25000}) {
            if (d > 10007 && scale > 1) continue;
            const pair_with_gcd pair(&r, d, d - 3, d / 5), coprime(&r, d, d - 1, 0);
            expect_array_gcd(pair, hgcd, "hgcd");
            expect_array_gcd(coprime, hgcd, "hgcd");
            expect_gcd(pair, basic_poly_gcd, "basic_poly_gcd");
            expect_gcd(coprime, fastest_poly_gcd, "fastest_poly_gcd");
        }
    }
}

TEST(OnevarGcdOracle, AboveTheArrays)
{
    test_random r;
    const in_prime_field live(101);
    for (const std::int32_t d : {25000, 25001, 26000}) {
        expect_gcd(pair_with_gcd(&r, d, 40, 13), basic_poly_gcd, "one operand above");
    }
    if (scale > 1) return;
    expect_gcd(pair_with_gcd(&r, 25003, 25001, 24990), basic_poly_gcd, "both above");
}

// The matrices of parthg and euclid_onevar do what they say.
void expect_matrix(test_random *r, std::int32_t dx, std::int32_t dy, bool halves)
{
    flint_poly x, y, u, v, s, t, e[4];
    x.draw(r, dx);
    y.draw(r, dy);
    std::vector<std::int32_t> a(static_cast<std::size_t>(dx) + 1), b(a.size()), room(4 * (a.size() / 2 + 3));
    words_of(x.f, a.data());
    words_of(y.f, b.data());
    const std::int32_t n = dx, length = n / 2 + 2;
    word_matrix m = {
        room.data(), room.data() + length, room.data() + 2 * length, room.data() + 3 * length, 0, 0, 0, 0};
    if (halves) {
        parthg(a.data(), b.data(), 1, &dx, &dy, &m);
    } else {
        euclid_onevar(a.data(), b.data(), &dx, &dy, &m);
    }
    poly_of_words(a.data(), dx, u.f);
    poly_of_words(b.data(), dy, v.f);
    poly_of_words(m.r11, m.d11, e[0].f);
    poly_of_words(m.r12, m.d12, e[1].f);
    poly_of_words(m.r21, m.d21, e[2].f);
    poly_of_words(m.r22, m.d22, e[3].f);
    for (int row = 0; row < 2; ++row) {
        nmod_poly_mul(s.f, e[2 * row].f, x.f);
        nmod_poly_mul(t.f, e[2 * row + 1].f, y.f);
        nmod_poly_add(s.f, s.f, t.f);
        EXPECT_TRUE(nmod_poly_equal(s.f, row ? v.f : u.f)) << n << " modulo " << modulus << " row " << row;
    }
    nmod_poly_mul(s.f, e[0].f, e[3].f);
    nmod_poly_mul(t.f, e[1].f, e[2].f);
    nmod_poly_sub(s.f, s.f, t.f);
    EXPECT_EQ(nmod_poly_degree(s.f), 0) << "the determinant";
    EXPECT_LE(2 * nmod_poly_degree(v.f), n);
    EXPECT_GE(2 * nmod_poly_degree(u.f), n);
}

TEST(OnevarGcdOracle, MatricesOfTheHalfGcd)
{
    test_random r;
    for (const std::int32_t p : {2, 3, 101, 46349, 65537, 1431655777, 2147483629}) {
        const in_prime_field live(p);
        for (int i = 0; i < 60 / scale; ++i) {
            const std::int32_t dx = 2 + static_cast<std::int32_t>(r.below(i < 40 ? 250 : 900));
            const std::int32_t dy = i % 3
                                        ? dx - 1
                                        : static_cast<std::int32_t>(r.below(static_cast<std::uint64_t>(dx)));
            expect_matrix(&r, dx, dy, true);
            expect_matrix(&r, dx, dy, false);
        }
    }
}

using list_step = void (*)(polynode **, polynode **, polynode **, polynode **, polynode **, polynode **,
                           std::int32_t);

// The matrix of the half-gcd on lists takes the old pair to the new one.
void expect_list_matrix(test_random *r, std::int32_t dx, std::int32_t dy, list_step method)
{
    flint_poly x, y, u, v, s, t, e[4];
    x.draw(r, dx);
    y.draw(r, dy);
    poly_operand a(poly_from_flint(x.f)), b(poly_from_flint(y.f)), same_a(copy_poly(a.p)),
        same_b(copy_poly(b.p)), m[4];
    method(&a.p, &b.p, &m[0].p, &m[1].p, &m[2].p, &m[3].p, 1);
    method(&same_a.p, &same_b.p, nullptr, nullptr, nullptr, nullptr, 0);
    EXPECT_TRUE(poly_equal(a.p, same_a.p) && poly_equal(b.p, same_b.p)) << "without the matrix";
    poly_to_flint(a.p, u.f);
    poly_to_flint(b.p, v.f);
    for (int k = 0; k < 4; ++k) {
        EXPECT_TRUE(poly_is_normal(m[k].p, 1));
        poly_to_flint(m[k].p, e[k].f);
    }
    for (int row = 0; row < 2; ++row) {
        nmod_poly_mul(s.f, e[2 * row].f, x.f);
        nmod_poly_mul(t.f, e[2 * row + 1].f, y.f);
        nmod_poly_add(s.f, s.f, t.f);
        EXPECT_TRUE(nmod_poly_equal(s.f, row ? v.f : u.f)) << dx << ", " << dy << " modulo " << modulus;
    }
    EXPECT_TRUE(2 * nmod_poly_degree(v.f) < dx || is_constant(b.p)) << dx << ", " << dy;
}

TEST(OnevarGcdOracle, MatricesOfTheHalfGcdOnLists)
{
    test_random r;
    for (const std::int32_t p : {2, 3, 101, 65537, 2147483629}) {
        const in_prime_field live(p);
        for (const std::int32_t d : {2, 3, poly_cutoff - 1, poly_cutoff, poly_cutoff + 1, 99, 100, 160}) {
            for (const list_step method : {emgcd_full, emgcd_basic, emgcd_fastest}) {
                expect_list_matrix(&r, d, d - 1, method);
                expect_list_matrix(&r, d, d, method);
                expect_list_matrix(&r, d, d / 2, method);
                expect_list_matrix(&r, d, (d - 1) / 2, method);
            }
        }
    }
}

TEST(OnevarGcdOracle, ExtendedGcd)
{
    test_random r;
    for (const std::int32_t p : {2, 3, 101, 65537, 2147483629}) {
        const in_prime_field live(p);
        for (int i = 0; i < 40 / scale; ++i) {
            const std::int32_t da = 1 + static_cast<std::int32_t>(r.below(40)),
                               db = 1 + static_cast<std::int32_t>(r.below(40));
            const pair_with_gcd pair(
                &r, da, db,
                static_cast<std::int32_t>(r.below(static_cast<std::uint64_t>(da < db ? da : db))));
            flint_poly g, s, t, found, sa, tb;
            nmod_poly_xgcd(g.f, s.f, t.f, pair.a.f, pair.b.f);
            poly_operand a(poly_from_flint(pair.a.f)), b(poly_from_flint(pair.b.f)), og, os, ot;
            ASSERT_EQ(egcd_polys(a.p, b.p, &og.p, &os.p, &ot.p, nilpol, 0), 1);
            poly_to_flint(og.p, found.f);
            EXPECT_TRUE(nmod_poly_equal(found.f, g.f));
            poly_to_flint(os.p, sa.f);
            poly_to_flint(ot.p, tb.f);
            nmod_poly_mul(sa.f, sa.f, pair.a.f);
            nmod_poly_mul(tb.f, tb.f, pair.b.f);
            nmod_poly_add(sa.f, sa.f, tb.f);
            EXPECT_TRUE(nmod_poly_equal(sa.f, g.f)) << da << ", " << db << " modulo " << p;
        }
    }
}

}  // namespace
