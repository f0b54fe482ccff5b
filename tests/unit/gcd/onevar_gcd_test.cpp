// Gcds in one variable: easy operands, table fields against a plain Euclid, faults, the stash.
#include "gcd/onevar_gcd.h"
#include <algorithm>
#include <vector>
#include "gcd/emgcd.h"
#include "gcd/half_gcd.h"
#include "gcd/stash.h"
#include "numbers/word_mod.h"
#include "poly/onevar.h"
#include "storage/accounting.h"
#include "tests/support/divisions.h"
#include "tests/support/fields.h"
#include "tests/support/reports.h"

using namespace kelmar;
using namespace kelmar_test;

namespace {

using words = std::vector<std::int32_t>;

words trimmed(words x)
{
    while (!x.empty() && x.back() == 0) x.pop_back();
    return x;
}

// The monic gcd by single subtractions.
words plain_gcd(words x, words y)
{
    x = trimmed(x);
    y = trimmed(y);
    while (!y.empty()) {
        std::int32_t inverse;
        mod_inverse(y.back(), &inverse);
        while (x.size() >= y.size()) {
            const std::int32_t q = modmult(x.back(), inverse);
            const std::size_t shift = x.size() - y.size();
            for (std::size_t k = 0; k < y.size(); ++k) {
                x[k + shift] = mod_sub(x[k + shift], modmult(q, y[k]), modulus);
            }
            x = trimmed(x);
        }
        std::swap(x, y);
    }
    std::int32_t inverse;
    mod_inverse(x.back(), &inverse);
    for (std::int32_t &c : x) c = modmult(c, inverse);
    return x;
}

words random_words(test_random *r, std::size_t degree)
{
    words x(degree + 1);
    for (std::int32_t &c : x)
        c = r->below(4) ? static_cast<std::int32_t>(r->below(static_cast<std::uint64_t>(modulus))) : 0;
    x.back() = 1 + static_cast<std::int32_t>(r->below(static_cast<std::uint64_t>(modulus) - 1));
    return x;
}

words product(const words &x, const words &y)
{
    words z(x.size() + y.size() - 1);
    for (std::size_t i = 0; i < x.size(); ++i) {
        for (std::size_t k = 0; k < y.size(); ++k) z[i + k] = mod_add(z[i + k], modmult(x[i], y[k]), modulus);
    }
    return z;
}

polynode *poly_of(const words &x)
{
    polynode *p = nullptr;
    array_to_poly(x.data(), static_cast<std::int32_t>(x.size()) - 1, &p);
    return p;
}

TEST(OnevarGcd, FieldsAgreeWithPlainEuclid)
{
    test_random r;
    for (const std::int32_t order : {256, 65536, 2, 3, 46337, 46349, 65521, 65537, 2147483629}) {
        const in_field live(order);
        const poly_audit audit;
        for (int i = 0; i < 60; ++i) {
            const words g = random_words(&r, r.below(9)), a = product(g, random_words(&r, 1 + r.below(30)));
            const words b = product(g, random_words(&r, 1 + r.below(30)));
            poly_operand p(poly_of(a)), q(poly_of(b)), expected(poly_of(plain_gcd(a, b))), basic, faster,
                fastest;
            basic_poly_gcd(p.p, q.p, &basic.p, 1, nilpol);
            faster_poly_gcd(p.p, q.p, &faster.p, 1, nilpol);
            fastest_poly_gcd(q.p, p.p, &fastest.p, 1, nilpol);
            EXPECT_EQ(poly_text(basic.p), poly_text(expected.p)) << order;
            EXPECT_EQ(poly_text(faster.p), poly_text(expected.p)) << order;
            EXPECT_EQ(poly_text(fastest.p), poly_text(expected.p)) << order;
        }
        audit.expect_unchanged("gcds in a field");
    }
}

TEST(OnevarGcd, ListHalfGcdInTableFields)
{
    test_random r;
    for (const std::int32_t order : {256, 65536}) {
        const in_field live(order);
        for (int i = 0; i < 10; ++i) {
            const words g = random_words(&r, 30), a = product(g, random_words(&r, 60)),
                        b = product(g, random_words(&r, 55));
            poly_operand p(poly_of(a)), q(poly_of(b)), expected(poly_of(plain_gcd(a, b))), found, monic, one;
            poly_set(1, &one.p);
            emgcd_poly(p.p, q.p, &found.p, nilpol, 1);
            ASSERT_EQ(found.p->exp, expected.p->exp);
            basic_poly_gcd(found.p, expected.p, &monic.p, 1, nilpol);
            EXPECT_EQ(poly_text(monic.p), poly_text(expected.p));
        }
    }
}

struct OnevarEasy : testing::Test {
    in_field live{101};
    std::string gcd(const char *a, const char *b)
    {
        poly_operand p(poly_of_text(a)), q(poly_of_text(b)), g;
        basic_poly_gcd(p.p, q.p, &g.p, 1, nilpol);
        return poly_text(g.p);
    }
};

TEST_F(OnevarEasy, ZeroGivesTheOther)
{
    EXPECT_EQ(gcd("{#0}", "{2{#5}, #10}"), "{2{#1}, #2}");
    EXPECT_EQ(gcd("{2{#5}, #10}", "{#0}"), "{2{#1}, #2}");
    EXPECT_EQ(gcd("{#0}", "{#0}"), "{#0}");
    EXPECT_EQ(gcd("{#0}", "{#7}"), "{#7}");
}

TEST_F(OnevarEasy, SingleTerms)
{
    EXPECT_EQ(gcd("{5{#3}}", "{7{#2}, 3{#1}}"), "{3{#1}}");
    EXPECT_EQ(gcd("{7{#2}, #1}", "{5{#3}}"), "{#1}");
    EXPECT_EQ(gcd("{2000000000{#3}}", "{1000000000{#2}}"), "{1000000000{#1}}");
}

TEST_F(OnevarEasy, EqualOperandsAndCoprimeOnes)
{
    EXPECT_EQ(gcd("{2{#5}, #10}", "{2{#5}, #10}"), "{2{#1}, #2}");
    EXPECT_EQ(gcd("{2{#1}, #1}", "{1{#1}, #1}"), "{#1}");
}

TEST_F(OnevarEasy, AboveTheArraysListsAreUsed)
{
    EXPECT_EQ(gcd("{25001{#1}, #1}", "{1{#1}, #1}"), "{1{#1}, #1}");
    EXPECT_EQ(gcd("{25000{#1}, #1}", "{1{#1}, #1}"), "{#1}");
    EXPECT_EQ(gcd("{30000{#1}, #100}", "{26000{#1}, #100}"), "{2000{#1}, #100}");
}

TEST_F(OnevarEasy, LongGapsAreCrossedByPowers)
{
    EXPECT_EQ(gcd("{2000000000{#1}, #100}", "{6{#1}, #100}"), "{2{#1}, #100}");
    EXPECT_EQ(gcd("{2147483647{#1}, 30000{#1}, 7{#3}, #1}", "{1{#1}, #100}"), "{#1}");
    EXPECT_EQ(gcd("{2147483647{#1}, 30000{#1}, 7{#3}, #96}", "{1{#1}, #100}"), "{1{#1}, #100}");
    EXPECT_EQ(gcd("{2000000001{#1}, 1{#100}}", "{3{#1}, 1{#100}}"), "{3{#1}, 1{#100}}");
}

TEST_F(OnevarEasy, NegativeExponentsStayOutOfTheArrays)
{
    const in_laurent on(1);
    EXPECT_EQ(gcd("{1{#1}, -1{#100}}", "{1{#1}, #1}"), "{#1, -1{#1}}");  // (x + 1) / x: up to a unit
}

TEST_F(OnevarEasy, TheResultMayBeAnOperand)
{
    poly_operand p(poly_of_text("{2{#1}, #100}")), q(poly_of_text("{1{#2}, #2}"));
    basic_poly_gcd(p.p, q.p, &p.p, 1, nilpol);
    EXPECT_EQ(poly_text(p.p), "{1{#1}, #1}");
}

TEST_F(OnevarEasy, ANumberIsAFault)
{
    EXPECT_EQ(report_of([&] { gcd("{#3}", "{1{#1}, #1}"); }).substr(0, 45),
              std::string("*** Kelmar error.  number in basic_poly_gcd \n"));
}

// The two divisions and the half-gcd on broken pairs.
TEST_F(OnevarEasy, FaultsOfTheArrays)
{
    get_word_arrays();
    xx[0] = yy[0] = xx[1] = yy[1] = 1;
    word_pair no_y = {-1, 1, 0}, no_x = {1, -1, 0}, ones = {1, 1, 0};
    const std::string y_fault = "*** Kelmar error.  y is 0 in divide_y_into_x.\n";
    const std::string x_fault = "*** Kelmar error.  x is 0 in divide_x_into_y.\n";
    EXPECT_EQ(report_of([&] { divide_y_into_x_1(&no_y); }).substr(0, y_fault.size()), y_fault);
    EXPECT_EQ(report_of([&] { divide_x_into_y_1(&no_x); }).substr(0, x_fault.size()), x_fault);
    EXPECT_EQ(report_of([&] { hgcd(&no_y); }).substr(0, y_fault.size()), y_fault);
    EXPECT_EQ(report_of([&] { hgcd(&no_x); }).substr(0, x_fault.size()), x_fault);
    const in_field small(256);
    EXPECT_EQ(report_of([&] { f_divide_y_into_x(&no_y); }).substr(0, y_fault.size()), y_fault);
    EXPECT_EQ(report_of([&] { f_divide_x_into_y(&no_x); }).substr(0, x_fault.size()), x_fault);
    const std::string split_fault = "*** Kelmar error.  onevar_split_poly.\n";
    EXPECT_EQ(report_of([&] { fullhg(xx, yy, &ones.deg_x, &ones.deg_y); }).substr(0, split_fault.size()),
              split_fault);
}

TEST_F(OnevarEasy, DegreesInReverseOrderAreToldAndPutRight)
{
    get_word_arrays();
    for (int k = 0; k < 9; ++k) xx[k] = yy[k] = k + 1;
    std::int32_t dx = 5, dy = 8;
    EXPECT_EQ(report_of([&] { fullhg(xx, yy, &dx, &dy); }), " degrees in reverse order in fullhg: 5, 8\n");
    EXPECT_GT(dx, dy);
}

TEST_F(OnevarEasy, DegreeZeroEndsAPair)
{
    get_word_arrays();
    xx[0] = 3;
    xx[1] = 1;
    yy[0] = 7;
    word_pair pair = {0, 1, 0};
    divide_y_into_x_1(&pair);
    EXPECT_TRUE(pair.done);
    EXPECT_EQ(pair.deg_x, -1);
    EXPECT_EQ(pair.deg_y, 0);
    EXPECT_EQ(yy[0], 1);
}

// The words of both exits of hgcd are those of Euclid's steps: sums of degrees 4000 and 4001 after one half.
TEST(OnevarGcd, HalfGcdEndsInSteps)
{
    test_random r;
    const in_field live(46349);
    get_word_arrays();
    for (const std::size_t d : {1999u, 2000u, 2001u, 2002u, 4001u}) {
        const words g = random_words(&r, 17), a = product(g, random_words(&r, d - 17)),
                    b = product(g, random_words(&r, d - 18));
        std::copy(a.begin(), a.end(), xx);
        std::copy(b.begin(), b.end(), yy);
        word_pair pair = {static_cast<std::int32_t>(b.size()) - 1, static_cast<std::int32_t>(a.size()) - 1,
                          0};
        hgcd(&pair);
        EXPECT_EQ(pair.deg_x < 0 ? pair.deg_y : pair.deg_x,
                  static_cast<std::int32_t>(plain_gcd(a, b).size()) - 1);
    }
}

// The stash is in use until the end of the block, and has room.
struct stash_in_use {
    kept_word use{&lookupgcd, 1};
    std::int64_t saved = initial_memory;
    stash_in_use()
    {
        initial_memory = std::int64_t{1} << 30;
    }
    ~stash_in_use()
    {
        init_gcd_stash();
        initial_memory = saved;
    }
};

TEST(OnevarGcd, TheStashAnswersTheSecondTime)
{
    test_random r;
    const in_field live(101);
    const stash_in_use use;
    const words g = random_words(&r, 20), a = product(g, random_words(&r, 60)),
                b = product(g, random_words(&r, 50));
    words twice = a;
    for (std::int32_t &c : twice) c = modmult(c, 2);
    poly_operand p(poly_of(a)), q(poly_of(b)), scaled(poly_of(twice)), first, second,
        expected(poly_of(plain_gcd(a, b)));
    const auto mass = gcdmass;
    basic_poly_gcd(p.p, q.p, &first.p, 1, nilpol);
    const auto grown = gcdmass;
    EXPECT_GT(grown, mass);
    basic_poly_gcd(scaled.p, q.p, &second.p, 1, nilpol);
    EXPECT_EQ(gcdmass, grown) << "a scaled pair is the same pair";
    EXPECT_EQ(poly_text(first.p), poly_text(expected.p));
    EXPECT_EQ(poly_text(second.p), poly_text(expected.p));
}

TEST(OnevarGcd, SmallPairsAreNotKept)
{
    const in_field live(101);
    const stash_in_use use;
    poly_operand a(poly_of_text("{50{#1}, #1}")), b(poly_of_text("{50{#1}, #2}")),
        c(poly_of_text("{51{#1}, #2}"));
    poly_operand linear(poly_of_text("{1{#1}, #2}")), far(poly_of_text("{500{#1}, #2}"));
    EXPECT_FALSE(stash_takes(a.p, b.p));
    EXPECT_TRUE(stash_takes(a.p, c.p));
    EXPECT_FALSE(stash_takes(far.p, linear.p));
    lookupgcd = 0;
    EXPECT_FALSE(stash_takes(a.p, c.p));
}

}  // namespace
