// Trial division: what the tests say, what they may not say, and the division behind them.
#include "poly/div_fast.h"
#include <gtest/gtest.h>
#include "numbers/startup.h"
#include "poly/measure.h"
#include "poly/scale.h"
#include "tests/support/by_build.h"
#include "tests/support/divisions.h"
#include "tests/support/long_numbers.h"

using namespace kelmar;
using namespace kelmar_test;

namespace {

constexpr int rounds = by_build(30, 300);

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
    const char *const one = "{1{#1}}", *const two = "{1{#1}, #1}",
                      *const seven = "{7{#1}, 6{#1}, 5{#1}, 4{#1}, 3{#1}, 2{#1}, #1}",
                      *const eight = "{1{8{#1}, 7{#1}, 6{#1}, 5{#1}, 4{#1}, 3{#1}, 2{#1}, #1}}",
                      *const eleven = "{10{#1}, 9{#1}, 8{#1}, 7{#1}, 6{#1}, 5{#1}, 4{#1}, 3{#1}, 2{#1}, "
                                      "1{#1}, #1}";
    const struct {
        const char *n, *m;
        std::int32_t trials;
    } rows[] = {
        {two, two, 3},                                                            // 4 terms, 6 nodes
        {eight, "{#1}", 3},                                                       // 16 + 1 nodes
        {eight, one, 4},                                                          // 16 + 2
        {seven, seven, 4},                                                        // 14 terms, 26 nodes
        {eleven, seven, 4},                                                       // 18 terms, 34 nodes
        {eleven, "{7{#1}, 6{#1}, 5{#1}, 4{#1}, 3{#1}, 2{#1}, 1{#1}}", 5},         // 35 nodes
        {eleven, "{1{9{#1}, 8{#1}, 7{#1}, 6{#1}, 5{#1}, 4{#1}, 3{#1}}, #1}", 4},  // 13 terms
        {eleven, "{2{#1}, 1{9{#1}, 8{#1}, 7{#1}, 6{#1}, 5{#1}, 4{#1}}, #1}", 5},  // 14 terms
    };
    for (const auto &row : rows) {
        poly_operand n(poly_of_text(row.n)), m(poly_of_text(row.m));
        EXPECT_EQ(trial_count(n.p, m.p), row.trials) << row.n << " by " << row.m;
        EXPECT_EQ(trial_count(m.p, n.p), row.trials) << row.n << " by " << row.m;
    }
    in_view three(view_modular, 3);
    poly_operand small(poly_of_text(two));
    EXPECT_EQ(trial_count(small.p, small.p), 2);
}

// How often, out of many times, a test of n and m is performed.
int performed(polynode *n, polynode *m, std::int32_t i, int wide)
{
    int count = 0;
    for (int k = 0; k < 300; ++k) {
        test_pair pair;
        set_test_pair(n, m, &pair);
        count += fast_test(&pair, i, wide) != not_performed;
    }
    return count;
}

// x^e (v - at) + 1, v the variable of `level`: the degree falls where v is `at`.
std::string falls_at(std::int32_t e, std::int32_t at, std::int32_t level)
{
    std::string inner = "{1{#1}" + (at ? ", #" + std::to_string(-at) : "") + "}";
    for (; level > 2; --level) inner = "{0" + inner + "}";
    return "{" + std::to_string(e) + inner + ", #1}";
}

// The variable of `level` gets the value `at` in that test of a pair of that depth, at times.
bool may_be(std::int32_t at, std::int32_t level, std::int32_t i, int wide, std::int32_t depth = 2)
{
    poly_operand n(poly_of_text(falls_at(2, -1000, depth).c_str()));
    poly_operand m(poly_of_text(falls_at(1, at, level).c_str()));
    return performed(n.p, m.p, i, wide) < 300;
}

TEST_F(PolyTrial, NarrowPointsAreFiveSmallValuesThatMoveWithTheTrial)
{
    in_view live(view_digits);
    for (std::int32_t i = 0; i <= 3; ++i) {
        for (std::int32_t at = 0; at < 10; ++at)
            EXPECT_EQ(may_be(at, 2, i, 0), at >= i && at <= i + 4) << at << " in trial " << i;
    }
    EXPECT_TRUE(may_be(3, 6, 1, 0));
    EXPECT_FALSE(may_be(0, 6, 1, 0));
    EXPECT_TRUE(may_be(0, 7, 1, 0)) << "from level 7 on all are 0";
    EXPECT_FALSE(may_be(3, 7, 1, 0));
}

TEST_F(PolyTrial, WidePointsAreListedPrimesModulo181)
{
    in_view live(view_digits);
    std::int32_t at_181 = 0;
    while (global_list[at_181] != 181) ++at_181;
    for (const std::int32_t i : {0, 1, 2, 11, at_181 / 3 - 2, 48}) {
        for (std::int32_t k = 0; k < global_list_count; ++k) {
            const std::int32_t reduced = global_list[k] % 181, at = reduced ? reduced : 1;
            bool drawn = false;
            for (std::int32_t off = 0; off < 3; ++off) {
                const std::int32_t other = global_list[((2 + i) * 3 + off) % global_list_count] % 181;
                drawn = drawn || (other ? other : 1) == at;
            }
            EXPECT_EQ(may_be(at, 2, i, 1), drawn) << at << " in trial " << i;
        }
        EXPECT_FALSE(may_be(0, 2, i, 1));
    }
}

TEST_F(PolyTrial, WidePointsReachThreeQuartersOfTheDepth)
{
    in_view live(view_digits);
    EXPECT_FALSE(may_be(0, 6, 0, 1, 6));
    EXPECT_TRUE(may_be(0, 7, 0, 1, 8));
    EXPECT_FALSE(may_be(0, 6, 0, 1, 8));
    EXPECT_TRUE(may_be(0, 8, 0, 1, 9));
    EXPECT_FALSE(may_be(0, 7, 0, 1, 9));
}

// All points get this prime, so that values are known; small points then get prime % 23 + 2.
struct one_listed_prime {
    std::int16_t saved[global_list_count];
    explicit one_listed_prime(std::int16_t p)
    {
        std::copy(std::begin(global_list), std::end(global_list), saved);
        std::fill(std::begin(global_list), std::end(global_list), p);
    }
    one_listed_prime(const one_listed_prime &) = delete;
    ~one_listed_prime()
    {
        std::copy(saved, saved + global_list_count, global_list);
    }
};

TEST_F(PolyTrial, NumberTestsWantAValueOf40OrMore)
{
    in_view live(view_digits);
    const one_listed_prime list(17);
    poly_operand n(poly_of_text("{1{#1}, #100000}"));
    const struct {
        const char *m;
        int small;
        bool performed;
    } rows[] = {{"{1{#1}, #23}", 0, true},       {"{1{#1}, #22}", 0, false}, {"{1{#-1}, #-23}", 0, true},
                {"{1{#-1}, #-22}", 0, false},    {"{1{#1}, #21}", 1, true},  {"{1{#1}, #20}", 1, false},
                {"{1{#1}, #268435456}", 0, true}};
    for (const auto &row : rows) {
        poly_operand m(poly_of_text(row.m));
        test_pair pair;
        set_test_pair(n.p, m.p, &pair);
        EXPECT_EQ(fast_test_rat(&pair, 0, row.small) != not_performed, row.performed) << row.m;
    }
}

TEST_F(PolyTrial, PointsOfTheNumberTestGoRoundTheList)
{
    in_view live(view_digits);
    const one_listed_prime list(17);
    poly_operand n(poly_of_text("{1{#1}, #100000}")), m(poly_of_text("{1{#1}, #22}"));  // 40 for 18 alone
    for (const std::int32_t i : {0, 7, 49}) {
        for (std::int32_t place = 0; place < global_list_count; ++place) {
            global_list[place] = 18;
            int count = 0;
            for (int k = 0; k < 40; ++k) {
                test_pair pair;
                set_test_pair(n.p, m.p, &pair);
                count += fast_test_rat(&pair, i, 0) != not_performed;
            }
            const std::int32_t off = (place - 3 * (1 + i) % global_list_count + global_list_count) %
                                     global_list_count;
            EXPECT_EQ(count > 0, off < 3) << place << " in trial " << i;
            global_list[place] = 17;
        }
    }
}

// The value of m divides that of n at the points of both number tests, but m does not divide n.
TEST_F(PolyTrial, TwoYesOfTheNumberTestAreBelievedFromFiveLevelsOn)
{
    in_view live(view_digits);
    const one_listed_prime list(101);  // 11 at small points
    const struct {
        const char *n, *m;
        const char *factor;
        int believed;
    } rows[] = {
        {"{2{1{1{1{1{#1}}}}}}", "{1{1{1{1{1{#1}}}}}, #1}", "1692672706048104", 1},  // 101^5 + 1, 11^5 + 1
        {"{2{1{1{1{#1}}}}}", "{1{1{1{1{#1}}}}, #1}", "1523652406084", 0},           // four levels
        {"{2{1{1{1{1{#1}}}}}}", "{1{#1}, #100}", "22311", 0},  // m has one level: 201, 111
    };
    for (const auto &row : rows) {
        poly_operand one(poly_of_text(row.n)), m(poly_of_text(row.m)), n;
        number factor = {};
        number_from_text(row.factor, &factor);
        scalar_by_poly(&factor, one.p, &n.p);
        special_free(&factor);
        test_pair pair;
        set_test_pair(n.p, m.p, &pair);
        EXPECT_EQ(fast_test_rat(&pair, 0, 1), test_yes) << row.m;
        EXPECT_EQ(fast_test_rat(&pair, 0, 0), test_yes) << row.m;
        for (const std::int32_t believe : {0, 1}) {
            kept_word rat(&try_rat, believe);
            EXPECT_EQ(trial_poly_divide_noq(n.p, m.p, names.first(), 1, 1, 0), believe && row.believed)
                << row.m;
            EXPECT_EQ(trial_poly_divide_noq(n.p, m.p, names.first(), 1, 0, 0), 0) << "then it is divided";
        }
    }
}

// The leading coefficients vanish for y = 0 .. 7, so that only trial 4, the last one, performs a test: with y
// at 8, which makes the image of n a multiple.
TEST_F(PolyTrial, TheLastTrialIsThatOfTheCount)
{
    in_view live(view_digits);
    poly_operand lead(poly_of_text("{1{#1}}"));
    for (int root = 1; root < 8; ++root) {
        poly_operand factor(poly_of_text(("{1{#1}, #" + std::to_string(-root) + "}").c_str()));
        polynode *const product = reference_product(lead.p, factor.p, 1);
        free_poly(&lead.p);
        lead.p = product;
    }
    poly_operand m(poly_of_text("{1{#1}, #1}")), x_plus_1(poly_of_text("{1{#1}, #1}")),
        off(poly_of_text("{1{1{#1}, #-8}}"));
    free_poly(&m.p->coef);
    m.p->coef = copy_poly(lead.p);
    poly_operand multiple(reference_product(m.p, x_plus_1.p, 2)), n(reference_sum(multiple.p, off.p, 2));
    ASSERT_EQ(trial_count(n.p, m.p), 4);
    int yes = 0;
    for (int k = 0; k < 300; ++k) {
        polynode *q = nullptr;
        yes += trial_poly_divide(n.p, m.p, &q, names.first(), 1, 1, 0);
        EXPECT_EQ(q, nullptr);
    }
    EXPECT_GT(yes, 0);
    EXPECT_LT(yes, 300);
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

// The table of primes, with some of its words alone, as long as this stands.
struct some_primes {
    std::int32_t saved[prime_count];
    explicit some_primes(std::initializer_list<std::int32_t> words)
    {
        for (int i = 0; i < prime_count; ++i) {
            saved[i] = prime[i].word;
            prime[i].word = 0;
        }
        int i = 80;  // behind every start
        for (const std::int32_t p : words) prime[i++].word = p;
    }
    some_primes(const some_primes &) = delete;
    ~some_primes()
    {
        for (int i = 0; i < prime_count; ++i) prime[i].word = saved[i];
    }
};

// What two images say: "decided result".
std::string images_say(const char *a, const char *b, const pt *names)
{
    poly_operand n(poly_of_text(a)), m(poly_of_text(b));
    int decided = 5, result = 7;
    const std::int32_t before[] = {modularmode,  lintmode,  modulus,     half_modulus,
                                   smallmodulus, two28_mod, mod_is_prime};
    mod_trial_poly_divide(n.p, m.p, 1, &decided, &result, names);
    const std::int32_t after[] = {modularmode,  lintmode,  modulus,     half_modulus,
                                  smallmodulus, two28_mod, mod_is_prime};
    EXPECT_TRUE(std::equal(std::begin(before), std::end(before), after));
    EXPECT_EQ(poly_text(n.p), a);
    EXPECT_EQ(poly_text(m.p), b);
    return std::to_string(decided) + " " + std::to_string(result);
}

TEST_F(PolyTrial, TwoPrimesOfOneOpinionDecide)
{
    in_view live(view_digits);
    const some_primes table({42359, 42373});
    EXPECT_EQ(images_say("{2{#1}, #-1}", "{1{#1}, #-1}", names.first()), "1 1");
    EXPECT_EQ(images_say("{2{#1}, #1}", "{1{#1}, #-1}", names.first()), "1 0");
    EXPECT_EQ(images_say("{1{#1}, #-1}", "{2{#1}, #-1}", names.first()), "1 0");
    EXPECT_EQ(images_say("{2{1{#1}}, 1{1{#2}}, 0{1{#1}}}", "{1{#1}, #1}", names.first()), "1 1");
    EXPECT_EQ(images_say("{0{2{#1}, #-1}}", "{0{1{#1}, #1}}", names.first()), "1 1");
    EXPECT_EQ(images_say("{2{#1}, #-1}", "{1{#2}, #-2}", names.first()), "1 1");  // 2 has an inverse there
}

// The remainder is 42373: the first image says no, which is final; from the other side the first says yes.
TEST_F(PolyTrial, ANoOfTheFirstPrimeIsFinal)
{
    in_view live(view_digits);
    {
        const some_primes table({42359, 42373});
        EXPECT_EQ(images_say("{2{#1}, #42372}", "{1{#1}, #-1}", names.first()), "1 0");
    }
    const some_primes table({42373, 42359});
    EXPECT_EQ(images_say("{2{#1}, #42372}", "{1{#1}, #-1}", names.first()), "0 0");
}

TEST_F(PolyTrial, PrimesThatDivideALeadingCoefficientArePassedBy)
{
    in_view live(view_digits);
    const some_primes table({42359, 42373, 42379, 42391});
    EXPECT_EQ(images_say("{2{#42359}, #-42359}", "{1{#42373}, #-42373}", names.first()), "1 1");
    const some_primes few({42359, 42373, 42379});
    EXPECT_EQ(images_say("{2{#42359}, #-42359}", "{1{#42373}, #-42373}", names.first()), "0 1");
    const some_primes none({42359, 42373});
    EXPECT_EQ(images_say("{2{#42359}, #-42359}", "{1{#42373}, #-42373}", names.first()), "0 7");
}

TEST_F(PolyTrial, OnlyLongIntegersHaveImagesModuloPrimes)
{
    const some_primes table({42359, 42373});
    for (const ring &each : {field_rings[0], field_rings[1], field_rings[4], other_rings[1]}) {
        in_ring ground(each);
        EXPECT_EQ(images_say("{2{#1}, #1}", "{1{#1}, #1}", names.first()), "0 7");
    }
}

}  // namespace
