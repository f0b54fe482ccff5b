// Cofactors of gcds: right ones, wrong ones that are found out, doubles, warnings.
#include "quoly/reduce.h"
#include <gtest/gtest.h>
#include "gcd/stash.h"
#include "poly/div_fast.h"
#include "poly/mul.h"
#include "session/report.h"
#include "storage/accounting.h"
#include "tests/support/data_files.h"
#include "tests/support/divisions.h"
#include "tests/support/polys.h"
#include "tests/support/variables.h"

using namespace kelmar;
using namespace kelmar_test;

namespace {

constexpr std::int32_t vars = 2;

class Reduce : public ::testing::Test {
protected:
    kept_word first_test{&try_rat, 1};
    kept_word second_test{&rat_yes, 1};
    const adjoined variables{"x", "y"};
};

struct reduction {
    poly_operand a, b, g, qa, qb;
    std::string text;  // what was written
    reduction(const char *first, const char *second, const char *divisor, std::int32_t clear = 0)
        : a(poly_of_text(first)), b(poly_of_text(second)), g(poly_of_text(divisor))
    {
        text = output_of([&] { reduce(&a.p, &b.p, &g.p, &qa.p, &qb.p, clear, clear, 1, 1); });
    }
};

const char *const square = "{2{#1}, 1{#2}, #1}";  // (x + 1)^2
const char *const difference = "{2{#1}, #-1}";    // (x + 1)(x - 1)
const char *const cofactor = "{1{#1}, #1}";

TEST_F(Reduce, RightGcdGivesBothCofactors)
{
    for (const num_view v : {view_digits, view_float}) {
        in_view live(v);
        const poly_audit audit;
        {
            const reduction r(square, difference, cofactor);
            EXPECT_EQ(poly_text(r.qa.p), cofactor);
            EXPECT_EQ(poly_text(r.qb.p), "{1{#1}, #-1}");
            EXPECT_EQ(poly_text(r.a.p), square);
            EXPECT_EQ(poly_text(r.b.p), difference);
            EXPECT_EQ(r.text, "");
        }
        audit.expect_unchanged("reduce");
    }
}

TEST_F(Reduce, WrongGcdTurnsTestsOffOneAfterTheOtherAndTheValueIsRight)
{
    in_view live(view_digits);
    const char *const off = " A fast probabilistic test for exact poly division has been turned off (&_t).\n";
    const char *const off_too =
        " Another fast probabilistic test for exact poly division has been turned off.\n";
    const kept_word shown(&verbose, 1);
    const poly_audit audit;
    {
        const reduction first(square, difference, "{1{#1}, #7}");
        EXPECT_EQ(first.text, std::string(" Warning 1.") + off);
        EXPECT_EQ(try_rat, 0);
        EXPECT_EQ(rat_yes, 1);
        EXPECT_EQ(poly_text(first.g.p), cofactor);
        EXPECT_EQ(poly_text(first.qb.p), "{1{#1}, #-1}");

        const reduction second(square, difference, square);  // divides the first alone
        EXPECT_EQ(second.text, std::string(" Warning 4.") + off_too);
        EXPECT_EQ(rat_yes, 0);
        EXPECT_EQ(poly_text(second.qa.p), cofactor);

        const reduction third(square, difference, "{1{#1}, #7}");
        EXPECT_EQ(third.text, " *** Warning 5. A  fast probabilistic gcd algorithm is being retried.\n")
            << "nothing is left to turn off";
        EXPECT_EQ(poly_text(third.qa.p), cofactor);
    }
    audit.expect_unchanged("wrong gcds");
}

TEST_F(Reduce, SaysNothingUnlessProgressIsShown)
{
    in_view live(view_digits);
    const reduction r(square, difference, square);
    EXPECT_EQ(r.text, "");
    EXPECT_EQ(try_rat, 0);
}

TEST_F(Reduce, SecondDivisionHasWarningsOfItsOwn)
{
    in_view live(view_digits);
    const kept_word shown(&verbose, 1);
    const reduction r(square, difference, square);
    EXPECT_EQ(r.text,
              " Warning 2. A fast probabilistic test for exact poly division has been turned off (&_t).\n");
}

TEST_F(Reduce, RetryAloneTellsOfItselfWhereProgressIsShown)
{
    in_view live(view_digits);
    const kept_word shown(&verbose, 1);
    const reduction r(square, difference, "{1{#1}, #7}", 1);
    EXPECT_EQ(r.text, " *** Warning 5. A  fast probabilistic gcd algorithm is being retried.\n");
    EXPECT_EQ(try_rat, 1);
    EXPECT_EQ(poly_text(r.qa.p), cofactor);
    const reduction s(square, difference, square, 1);
    EXPECT_EQ(s.text, " *** Warning 6. A  fast probabilistic gcd algorithm is being retried.\n");
}

TEST_F(Reduce, WrongGcdOfCoprimesEndsWithOne)
{
    in_view live(view_digits);
    const reduction r(cofactor, "{1{#1}, #2}", "{1{#1}, #7}", 1);
    EXPECT_EQ(poly_text(r.g.p), "{#1}");
    EXPECT_EQ(poly_text(r.qa.p), cofactor);
    EXPECT_EQ(poly_text(r.qb.p), "{1{#1}, #2}");
}

TEST_F(Reduce, GcdThatStaysWrongIsGivenUpAfterTenRounds)
{
    const in_ring live(ring{view_modular, 101, 1});
    const kept_word shown(&verbose, 1);
    const char *const a = "{60{#1}, #2}", *const b = "{59{#1}, 1{#1}, #3}", *const wrong = "{1{#1}, #7}";
    const std::int64_t memory = initial_memory;
    initial_memory = 1000000;
    lookupgcd = 1;
    {
        const poly_operand p(poly_of_text(a)), q(poly_of_text(b)), g(poly_of_text(wrong));
        poly_operand known;
        pending_gcd pending;
        ASSERT_FALSE(find_gcd(p.p, q.p, &known.p, &pending));
        keep_gcd(&pending, g.p, "");  // the stash gives the same wrong answer every time
        const reduction r(a, b, wrong, 1);
        const std::string line = " *** Warning 5. A  fast probabilistic gcd algorithm is being retried.\n";
        std::string lines;
        for (int round = 0; round < 10; ++round) lines += line;
        EXPECT_EQ(r.text, lines);
        EXPECT_EQ(poly_text(r.g.p), "{#1}");
        EXPECT_EQ(poly_text(r.qa.p), a);
        EXPECT_EQ(poly_text(r.qb.p), b);
    }
    init_gcd_stash();
    initial_memory = memory;
}

TEST_F(Reduce, DoublesDropWhatADivisionLeavesWithoutAWarning)
{
    in_view live(view_float);
    const reduction r("{2{#1}, #-0.01}", "{1{#1}, #-0.10000000000000001}", "{1{#1}, #-0.10000000000000001}");
    EXPECT_EQ(r.text, "");
    EXPECT_EQ(poly_text(r.qa.p), "{1{#1}, #0.10000000000000001}");
    EXPECT_EQ(poly_text(r.qb.p), "{#1}");
    const reduction wrong(square, difference, "{1{#1}, #7}");
    EXPECT_EQ(wrong.text, "");
    EXPECT_EQ(poly_text(wrong.g.p), "{#1}");
    EXPECT_EQ(poly_text(wrong.qa.p), square);
    EXPECT_EQ(poly_text(wrong.qb.p), difference);
    EXPECT_EQ(try_rat, 1);
}

TEST_F(Reduce, OperandsThatAreNotKeptAreConsumed)
{
    in_view live(view_digits);
    const poly_audit audit;
    {
        poly_operand a(poly_of_text(square)), b(poly_of_text(difference)), g(poly_of_text(cofactor)), qa, qb;
        reduce(&a.p, &b.p, &g.p, &qa.p, &qb.p, 0, 0, 0, 1);
        EXPECT_EQ(a.p, nullptr);
        EXPECT_EQ(poly_text(b.p), difference);
    }
    audit.expect_unchanged("consumed");
}

TEST_F(Reduce, DenominatorsOutsideATowerHaveNoNumberLeftOver)
{
    in_view live(view_digits);
    poly_operand a(poly_of_text(square)), b(poly_of_text(difference)), g(poly_of_text(cofactor)), qa, qb,
        factor;
    field_reduce(&a.p, &b.p, &g.p, &qa.p, &qb.p, &factor.p);
    EXPECT_EQ(poly_text(factor.p), "{#1}");
    EXPECT_EQ(poly_text(qb.p), "{1{#1}, #-1}");
}

TEST_F(Reduce, RandomProductsComeApart)
{
    test_random r;
    poly_shape shape;
    shape.vars = vars;
    shape.terms = 4;
    shape.degree = 3;
    for (const ring &numbers : {ring{view_digits, 101, 0}, ring{view_modular, 101, 1}}) {
        const in_ring live(numbers);
        for (int round = 0; round < 300; ++round) {
            const poly_audit audit;
            {
                poly_operand g(random_divisor(&r, shape)), u(random_poly(&r, shape)),
                    v(random_poly(&r, shape));
                poly_operand a, b, qa, qb;
                poly_mult(g.p, u.p, &a.p, polynames);
                poly_mult(g.p, v.p, &b.p, polynames);
                reduce(&a.p, &b.p, &g.p, &qa.p, &qb.p, 0, 0, 1, 1);
                EXPECT_EQ(poly_text(qa.p), poly_text(u.p));
                EXPECT_EQ(poly_text(qb.p), poly_text(v.p));
            }
            audit.expect_unchanged("products");
            if (HasFailure()) FAIL() << "seed " << r.seed;
        }
    }
}

}  // namespace
