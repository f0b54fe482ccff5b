// What divisions write when they are called against their contract, and what an interrupt leaves behind.
#include <gtest/gtest.h>
#include "poly/content.h"
#include "poly/div.h"
#include "poly/div_exact.h"
#include "poly/div_fast.h"
#include "poly/div_pseudo.h"
#include "poly/mul.h"
#include "poly/mul_work.h"
#include "session/output.h"
#include "session/report.h"
#include "tests/support/answer_time.h"
#include "tests/support/by_build.h"
#include "tests/support/divisions.h"
#include "tests/support/reports.h"

using namespace kelmar;
using namespace kelmar_test;

namespace {

struct PolyFaults : testing::Test {
    six_variables names;
    in_view live{view_digits};
    poly_operand n{poly_of_text("{2{#4}, #-4}")}, m{poly_of_text("{1{#1}, #-1}")}, two{poly_of_text("{#2}")},
        q;
    int flag = 0;

    template <class F> void expect_report(const std::string &begin, F f)
    {
        EXPECT_EQ(report_of(f).substr(0, begin.size()), begin);
    }
};

TEST_F(PolyFaults, PolyQuot)
{
    poly_operand nine(poly_of_text("{#9}"));
    expect_report("code -31\n*** Kelmar error. divisor not number in poly quot.\n",
                  [&] { poly_quot(n.p, m.p, &q.p, -31); });
    expect_report("code 0\n*** Kelmar error. divisor not number in fastest poly quot.\n",
                  [&] { fastest_poly_quot(n.p, m.p, &q.p); });
    expect_report("code -1032\n*** Kelmar error. zero node t.\n", [&] { poly_quot(n.p, nine.p, &q.p, -31); });
}

TEST_F(PolyFaults, FindGcdcoefs)
{
    poly_operand zero(poly_of_text("{#0}"));
    expect_report("*** Kelmar error. 0 in find gcd coefs.\n", [&] { gcd_coefs(zero.p, &q.p); });
}

TEST_F(PolyFaults, GenPolyDivide)
{
    expect_report("*** Kelmar error. pt nil in poly_divide.\n",
                  [&] { gen_poly_divide(n.p, m.p, &q.p, nullptr, &flag); });
    expect_report("*** Kelmar error. m is number in poly_divide.\n",
                  [&] { gen_poly_divide(n.p, two.p, &q.p, names.first(), &flag); });
}

TEST_F(PolyFaults, ByOneIsAllowedInModularMode)
{
    in_ring modular(field_rings[3]);
    poly_operand a(poly_of_text("{2{#4}}")), one(poly_of_text("{#1}")), result;
    gen_poly_divide(a.p, one.p, &result.p, names.first(), &flag);
    EXPECT_EQ(flag, 0);
    EXPECT_EQ(poly_text(result.p), "{2{#4}}");
}

TEST_F(PolyFaults, FastPolyDivide)
{
    poly_operand low(poly_of_text("{1{#1}}")), square(poly_of_text("{2{#1}}")),
        off(poly_of_text("{2{#4}, #-3}"));
    expect_report("*** Kelmar error. pt nil in fast_poly_divide.\n",
                  [&] { fast_poly_divide(&low.p, m.p, nullptr, 3); });
    expect_report("*** Kelmar error. m is number in fast_poly_divide.\n",
                  [&] { fast_poly_divide(&low.p, two.p, names.first(), 3); });
    expect_report(
        "*** n is number in fast_poly_divide, 0, 1, 3\n*** Kelmar error. n is number in fast_poly_divide.\n",
        [&] { fast_poly_divide(&two.p, m.p, names.first(), 3); });
    expect_report("*** bad exps 1, 2, 3\n*** Kelmar error. bad exps in fast_poly divide. \n",
                  [&] { fast_poly_divide(&low.p, square.p, names.first(), 3); });
    expect_report(
        "*** bad nexp in fast_poly_divide, 2, 1, 3\n*** Kelmar error. bad nexp in fast_poly_divide.\n",
        [&] { fast_poly_divide(&off.p, m.p, names.first(), 3); });
}

TEST_F(PolyFaults, TrialPolyDivide)
{
    expect_report("*** Kelmar error. pt nil in trial_poly_divide.\n",
                  [&] { trial_poly_divide(n.p, m.p, &q.p, nullptr, 1, 0, 0); });
    expect_report(
        "*** Kelmar error. m is a number in trial_poly_divide. Try turning off the fast divide test "
        "with &_t.\n",
        [&] { trial_poly_divide(n.p, two.p, &q.p, names.first(), 1, 0, 0); });
}

TEST_F(PolyFaults, TrialDivisionsTellTheirTermsWhenExtraVerbose)
{
    kept_word loud(&verbose, 1);
    for (const std::int32_t extra : {0, 1}) {
        kept_word louder(&windy, extra);
        EXPECT_EQ(report_of([&] {
                      trial_poly_divide_noq(n.p, m.p, names.first(), 1, 1, 0);
                      EXPECT_EQ(dumpitt_level, 0);
                  }),
                  extra ? "trial divide, counting to 2. \n" : "");
    }
}

TEST_F(PolyFaults, PseudoDivisionWithoutTheVariable)
{
    poly_operand inner_only(poly_of_text("{0{1{#5}}}"));
    expect_report("bad m^.exp in pseudo div no q: 0\n",
                  [&] { pseudo_div_no_q(n.p, inner_only.p, &q.p, names.first(), 1); });
}

TEST_F(PolyFaults, ALeadThatIsNoNumberForTheSchoolMethod)
{
    poly_operand r, lead(poly_of_text("{1{1{#1}}, #1}"));
    expect_report("*** Kelmar error. divisor not number in poly quot.\n",
                  [&] { basic_poly_divide(n.p, lead.p, &q.p, &r.p, 0); });
}

// Interrupts ------------------------------------------------------------------------------------------------

// f is left at its first poll, writes to none of the operands, and loses nothing.
template <class F> void expect_harmless_interrupt(F f, polynode *n, polynode *m)
{
    const std::string n_text = poly_text(n), m_text = poly_text(m);
    poly_audit audit;
    bool came_back = false;
    interrupt_flag = 1;
    report_of([&] {
        f();
        came_back = true;
    });
    interrupt_flag = 0;
    EXPECT_FALSE(came_back);
    EXPECT_EQ(poly_text(n), n_text);
    EXPECT_EQ(poly_text(m), m_text);
    release_work();
    audit.expect_unchanged("interrupted division");
}

TEST(PolyDivInterrupt, LeavesTheOperandsAndLosesNothing)
{
    in_view live(view_digits);
    six_variables names;
    poly_operand n(poly_of_text("{4{2{#4}, #1}, 2{1{#3}}, #-4}")),
        m(poly_of_text("{2{1{#1}, #2}, 1{#1}, #-1}"));
    poly_operand product(reference_product(n.p, m.p, 2)), monic(poly_of_text("{1{#1}, #3}"));
    static polynode *q, *r;
    expect_harmless_interrupt([&] { q = exact_quotient(product.p, m.p, names.first()); }, product.p, m.p);
    expect_harmless_interrupt([&] { pseudo_div(n.p, m.p, &q, &r, 1, names.first()); }, n.p, m.p);
    expect_harmless_interrupt([&] { school_poly_divide(n.p, monic.p, &q, &r, names.first()); }, n.p, monic.p);
}

// The sum of a random number for each power below `terms` of the variable of level 1, or of each two of level
// 1 and 2; the leading coefficient is 1.
polynode *dense_poly(test_random *r, std::int32_t terms, int levels)
{
    polynode *p = nullptr;
    polynode **end = &p;
    for (std::int32_t e = terms - 1; e >= 0; --e) {
        polynode *coef = nullptr;
        if (levels > 1) {
            coef = dense_poly(r, terms, 1);
        } else {
            poly_set(e == terms - 1 ? 1 : 1 + static_cast<std::int32_t>(r->below(60000)), &coef);
        }
        make_monomial(end, e, coef);
        end = &(*end)->next;
    }
    return p;
}

// A long division of each method.
TEST(PolyDivInterrupt, IsAnsweredInAFifthOfASecondInEveryMethod)
{
    constexpr std::int32_t fewer = by_build(2, 1);  // every record is dear
    test_random r;
    six_variables names;
    static polynode *q, *rest;
    struct long_division {
        num_view view;
        std::int32_t above, below;
        int levels;
        void (*f)(polynode *n, polynode *m, const pt *var);
    };
    const long_division cases[] = {
        {view_float, 40000, 20000, 1,
         [](polynode *n, polynode *m, const pt *) { simplest_poly_divide(n, m, &q, &rest, 0); }},
        {view_digits, 3000, 1500, 1,
         [](polynode *n, polynode *m, const pt *var) { school_poly_divide(n, m, &q, &rest, var); }},
        {view_digits, 3000, 1500, 1,
         [](polynode *n, polynode *m, const pt *var) { pseudo_div(n, m, &q, &rest, 1, var); }},
        {view_digits, 120, 50, 2,
         [](polynode *n, polynode *m, const pt *var) { pseudo_div_no_q(n, m, &rest, var, 1); }},
        {view_modular, 400000, 150000, 1,
         [](polynode *n, polynode *m, const pt *) { basic_poly_divide(n, m, &q, &rest, 1); }},
        {view_modular, 100, 60, 2,
         [](polynode *n, polynode *m, const pt *var) { pseudo_div(n, m, &q, &rest, 1, var); }},
    };
    for (const long_division &l : cases) {
        in_view live(l.view, 65521);
        poly_operand n(dense_poly(&r, l.above / fewer, l.levels)),
            m(dense_poly(&r, l.below / fewer, l.levels));
        const std::string n_text = poly_text(n.p), m_text = poly_text(m.p);
        q = rest = nullptr;
        const double waited = answer_time([&] { l.f(n.p, m.p, names.first()); });
        EXPECT_GE(waited, 0) << "the division was too short: view " << l.view << ", " << l.levels;
#ifndef KELMAR_MALLOC_RECORDS
        EXPECT_LT(waited, 200) << "view " << l.view << ", " << l.levels;
#endif
        EXPECT_EQ(poly_text(n.p), n_text);
        EXPECT_EQ(poly_text(m.p), m_text);
        free_poly(&q);
        free_poly(&rest);
        release_work();
    }
}

// Products of two levels divided by a factor.
TEST(PolyDivInterrupt, IsAnsweredInAFifthOfASecondInExactDivision)
{
    constexpr std::int32_t fewer = by_build(2, 1);
    test_random r;
    six_variables names;
    for (num_view v : {view_float, view_modular, view_digits}) {
        const std::int32_t terms = (v == view_digits ? 120 : 70) / fewer;
        in_view live(v, 65521);
        poly_operand a(dense_poly(&r, terms, 2)), b(dense_poly(&r, terms, 2)), product;
        poly_mult(a.p, b.p, &product.p, nilpol);
        const std::string text = poly_text(product.p);
        polynode *quotient = nullptr;
        const double waited = answer_time(
            [&] { trial_poly_divide(product.p, a.p, &quotient, names.first(), 0, 0, 0); });
        EXPECT_GE(waited, 0) << "the division was too short: view " << v;
#ifndef KELMAR_MALLOC_RECORDS
        EXPECT_LT(waited, 200) << "view " << v;
#endif
        EXPECT_EQ(poly_text(product.p), text);
        free_poly(&quotient);
        release_work();
    }
}

}  // namespace
