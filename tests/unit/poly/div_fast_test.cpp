// Trial division: what the tests say, what they may not say, and the division behind them.
#include "poly/div_fast.h"
#include <gtest/gtest.h>
#include "numbers/startup.h"
#include "poly/measure.h"
#include "tests/support/divisions.h"

using namespace kelmar;
using namespace kelmar_test;

namespace {

#ifdef KELMAR_MALLOC_RECORDS
constexpr int rounds = 30;
#else
constexpr int rounds = 300;
#endif

// The points come from this table, which the start of a session fills.
void fill_points()
{
    std::int16_t v = 17;
    for (std::int16_t &point : global_list) {
        for (bool prime = false; !prime; v = static_cast<std::int16_t>(v + 2)) {
            prime = true;
            for (std::int16_t d = 3; d * d <= v; d = static_cast<std::int16_t>(d + 2))
                prime = prime && v % d != 0;
            if (prime) point = v;
        }
    }
}

struct PolyTrial : testing::Test {
    six_variables names;
    PolyTrial()
    {
        fill_points();
    }
};

// The answer and the quotient of trial_poly_divide.
std::string trial_text(const char *a, const char *b, int fast, int no_q, const pt *names)
{
    poly_operand n(poly_of_text(a)), m(poly_of_text(b)), q;
    const int divides = trial_poly_divide(n.p, m.p, &q.p, names, fast, no_q, 0);
    EXPECT_EQ(poly_text(n.p), a);
    EXPECT_EQ(poly_text(m.p), b);
    return std::to_string(divides) + " " + poly_text(q.p);
}

TEST_F(PolyTrial, NamedCases)
{
    in_view live(view_digits);
    for (int fast : {0, 1}) {
        EXPECT_EQ(trial_text("{2{#1}, #-1}", "{1{#1}, #-1}", fast, 0, names.first()), "1 {1{#1}, #1}");
        EXPECT_EQ(trial_text("{1{1{#1}}, #1}", "{0{1{#1}}}", fast, 0, names.first()), "0 null");
        EXPECT_EQ(trial_text("{#0}", "{0{1{#1}}}", fast, 0, names.first()), "1 {#0}");
        EXPECT_EQ(trial_text("{#5}", "{1{#1}}", fast, 0, names.first()), "0 null");
        EXPECT_EQ(trial_text("{1{#1}}", "{2{#1}}", fast, 0, names.first()), "0 null");
        EXPECT_EQ(trial_text("{0{2{#1}, #-1}}", "{0{1{#1}, #1}}", fast, 0, names.first()),
                  "1 {0{1{#1}, #-1}}");
        EXPECT_EQ(trial_text("{2{1{#1}}, 1{1{#2}}, 0{1{#1}}}", "{1{#1}, #1}", fast, 0, names.first()),
                  "1 {1{1{#1}}, 0{1{#1}}}");
    }
}

TEST_F(PolyTrial, AYesOfATestLeavesNoQuotient)
{
    in_view live(view_digits);
    EXPECT_EQ(trial_text("{2{1{#1}}, 1{1{#2}}, 0{1{#1}}}", "{1{#1}, #1}", 1, 1, names.first()), "1 null");
}

TEST_F(PolyTrial, ASingleTermDividesOnlyWhatReachesItsDegree)
{
    in_view live(view_digits);
    poly_operand n(poly_of_text("{3{1{#1}}, 1{#2}}")), m(poly_of_text("{2{#1}}")),
        fits(poly_of_text("{1{#2}}"));
    EXPECT_EQ(trial_poly_divide_noq(n.p, m.p, names.first(), 1, 0, 0), 0);
    EXPECT_EQ(trial_poly_divide_noq(n.p, fits.p, names.first(), 0, 0, 0), 0);  // 2 does not divide 1
}

TEST_F(PolyTrial, ThePointTestSaysNo)
{
    in_view live(view_digits);
    poly_operand n(poly_of_text("{1{1{#1}}, #1}")), m(poly_of_text("{1{#1}, #7}"));
    int no = 0, yes = 0;
    for (int i = 0; i < 40; ++i) {
        test_pair pair;
        set_test_pair(n.p, m.p, &pair);
        EXPECT_EQ(pair.depth, 2);
        const test_verdict verdict = fast_test(&pair, i % 4, i / 20);
        no += verdict == test_no;
        yes += verdict == test_yes;
    }
    EXPECT_GT(no, 20);
    EXPECT_EQ(yes, 0);
}

TEST_F(PolyTrial, ADegreeThatFallsAtThePointIsNoTest)
{
    in_ring live(field_rings[2]);  // modulo 3 every third point is 0
    poly_operand n(poly_of_text("{2{1{#1}}, #1}")), m(poly_of_text("{1{1{#1}}, #1}"));
    int none = 0;
    for (int i = 0; i < 60; ++i) {
        test_pair pair;
        set_test_pair(n.p, m.p, &pair);
        none += fast_test(&pair, 0, 0) == not_performed;
    }
    EXPECT_GT(none, 0);
    EXPECT_LT(none, 60);
}

TEST_F(PolyTrial, TheNumberTestIsNotPerformedForSmallValues)
{
    in_view live(view_digits);
    poly_operand n(poly_of_text("{2{1{1{#1}}}, #5}")), small(poly_of_text("{0{0{1{#1}}}}")),
        m(poly_of_text("{1{1{1{#9}}}, #1}"));
    test_pair pair;
    set_test_pair(n.p, small.p, &pair);
    for (int i = 0; i < 20; ++i) EXPECT_EQ(fast_test_rat(&pair, i, 1), not_performed);  // values 2 .. 24
    set_test_pair(n.p, m.p, &pair);
    EXPECT_EQ(fast_test_rat(&pair, 0, 0), test_no);
    in_view words(view_word);
    EXPECT_EQ(fast_test_rat(&pair, 0, 0), not_performed);
}

TEST_F(PolyTrial, TrialsAreCountedBySize)
{
    in_view live(view_digits);
    poly_operand small(poly_of_text("{1{#1}, #1}")),
        medium(poly_of_text("{7{#1}, 6{#1}, 5{#1}, 4{#1}, 3{#1}, 2{#1}, #1}"));
    poly_operand wide(
        poly_of_text("{10{#1}, 9{#1}, 8{#1}, 7{#1}, 6{#1}, 5{#1}, 4{#1}, 3{#1}, 2{#1}, 1{#1}, #1}"));
    EXPECT_EQ(trial_count(small.p, small.p), 3);    // 2 + 2 terms, 6 nodes
    EXPECT_EQ(trial_count(medium.p, small.p), 3);   // 13 + 3 nodes
    EXPECT_EQ(trial_count(medium.p, medium.p), 4);  // 14 terms, 26 nodes
    EXPECT_EQ(trial_count(wide.p, medium.p), 4);    // 34 nodes
    EXPECT_EQ(trial_count(wide.p, wide.p), 5);
    in_view three(view_modular, 3);
    EXPECT_EQ(trial_count(small.p, small.p), 2);
}

TEST_F(PolyTrial, AgreesWithThePlainDivisionInEveryRing)
{
    test_random r;
    for (const ring *each : {&field_rings[0], &field_rings[1], &field_rings[2], &field_rings[3],
                             &field_rings[6], &other_rings[3]}) {
        for (std::int32_t believe : {0, 1}) {
            in_ring live(*each);
            kept_word rat(&try_rat, believe);
            poly_audit audit;
            for (int i = 0; i < rounds; ++i) {
                poly_shape shape;
                shape.vars = 1 + i % 6;
                shape.terms = 4;
                shape.degree = 2;
                poly_operand a(random_poly(&r, shape)), b(random_divisor(&r, shape)),
                    noise(random_poly(&r, shape));
                if (each->view == view_float) {
                    poly_operand lead(poly_of_text("{3{#1}}"));
                    polynode *m = reference_sum(lead.p, b.p, shape.vars);
                    free_poly(&b.p);
                    b.p = m;
                }
                poly_operand n(reference_product(a.p, b.p, shape.vars));
                poly_operand off(reference_sum(n.p, noise.p, shape.vars));
                poly_operand q, plain, other, none;
                EXPECT_EQ(trial_poly_divide(n.p, b.p, &q.p, names.first(), 1, 0, 0), 1)
                    << poly_text(n.p) << " by " << poly_text(b.p) << " seed " << r.seed;
                EXPECT_EQ(poly_text(q.p), poly_text(a.p));
                EXPECT_EQ(trial_poly_divide_noq(n.p, b.p, names.first(), 1, 1, 0), 1)
                    << poly_text(n.p) << " by " << poly_text(b.p) << " view " << each->view << " "
                    << each->modulus;
                const int divides = trial_poly_divide(off.p, b.p, &plain.p, names.first(), 0, 0, 0);
                EXPECT_EQ(trial_poly_divide(off.p, b.p, &other.p, names.first(), 1, 0, 0), divides);
                EXPECT_EQ(trial_poly_divide_noq(off.p, b.p, names.first(), 1, 0, 0), divides);
                EXPECT_EQ(poly_text(other.p), poly_text(plain.p));
                polynode *consumed = copy_poly(n.p);
                EXPECT_EQ(trial_poly_divide(consumed, b.p, &none.p, names.first(), 1, 1, 1), 1);
            }
            audit.expect_unchanged("trial division");
        }
    }
}

// Doubles are no ground field: without one a divisor is tried.
TEST_F(PolyTrial, OverWordsADivisorInTheGroundFieldDivides)
{
    for (const ring *each : {&field_rings[0], &field_rings[3], &other_rings[3]}) {
        in_ring ground(*each);
        poly_operand a(poly_of_text("{2{#1}, #1}")), outer(poly_of_text("{1{#1}, #3}")),
            deep(poly_of_text("{0{1{#1}, #3}}"));
        for (const std::int32_t depth : {0, 1, 2, 3}) {
            kept_word field(&field_depth, depth);
            const int in_outer = depth == 1 && lintmode, in_deep = depth >= 1 && depth <= 2 && lintmode;
            EXPECT_EQ(trial_poly_divide_noq(a.p, outer.p, names.first(), 0, 0, 0), in_outer) << depth;
            EXPECT_EQ(trial_poly_divide_noq(a.p, deep.p, names.first(), 0, 0, 0), in_deep) << depth;
        }
    }
}

TEST_F(PolyTrial, ModuloPrimesNothingIsDecided)
{
    in_view live(view_digits);
    poly_operand n(poly_of_text("{2{#1}, #-1}")), m(poly_of_text("{1{#1}, #-1}"));
    int decided = 1, result = 7;
    mod_trial_poly_divide(n.p, m.p, 1, &decided, &result, names.first());
    EXPECT_EQ(decided, 0);
    EXPECT_EQ(result, 7);
}

}  // namespace
