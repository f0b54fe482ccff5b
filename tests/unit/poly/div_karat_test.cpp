// Recursive division: every pair of degrees, every regime, both sides of every cut, against the school
// method.
#include "poly/div_karat.h"
#include <gtest/gtest.h>
#include "poly/div.h"
#include "poly/mul_work.h"
#include "tests/support/by_build.h"
#include "tests/support/divisions.h"

using namespace kelmar;
using namespace kelmar_test;

namespace {

constexpr std::int32_t highest = by_build(36, 80);

// Of the degree; every `gap`-th exponent at random. lead: the leading coefficient is 1.
polynode *test_poly(test_random *r, std::int32_t degree, int gap, bool lead, std::int32_t vars)
{
    flat_poly terms;
    for (std::int32_t e = 0; e <= degree; ++e) {
        if (e < degree && r->below(static_cast<std::uint64_t>(gap)) != 0) continue;
        std::vector<std::int32_t> exps(static_cast<std::size_t>(vars), 0);
        exps[0] = e;
        number *c = random_coefficient(r, 1);
        if (e == degree && lead) {
            setvalue(1, c);
        } else if (vars > 1 && e < degree) {
            exps[1] = static_cast<std::int32_t>(r->below(3));
        }
        terms.emplace(exps, c);
    }
    return nest(&terms);
}

enum routine { fast, balanced, longer };

void run(routine which, polynode *n, polynode *m, polynode **q, polynode **r, int flag)
{
    switch (which) {
    case fast: fast_mod_and_div(n, m, r, q, nilpol, flag); return;
    case balanced: karat_mod_and_div(n, m, q, r, nilpol, flag); return;
    case longer: three_case(n, m, q, r, nilpol, flag); return;
    }
}

void expect_school(routine which, polynode *n, polynode *m, int flag, std::int32_t vars)
{
    const std::string n_text = poly_text(n), m_text = poly_text(m);
    poly_operand q, r, school_q, school_r;
    run(which, n, m, &q.p, &r.p, flag);
    school_poly_divide(n, m, &school_q.p, &school_r.p, nilpol);
    expect_normal(q.p, vars, "quotient");
    expect_normal(r.p, vars, "remainder");
    EXPECT_TRUE(r.p->exp < m->exp || poly_iszero(r.p)) << n->exp << " by " << m->exp;
    EXPECT_EQ(poly_text(q.p), poly_text(school_q.p)) << n->exp << " by " << m->exp;
    EXPECT_EQ(poly_text(r.p), poly_text(school_r.p)) << n->exp << " by " << m->exp;
    EXPECT_EQ(poly_text(n), n_text);
    EXPECT_EQ(poly_text(m), m_text);
}

TEST(DivKarat, EveryPairOfDegreesLeavesALowerDegree)
{
    test_random r;
    in_ring live(field_rings[3]);
    for (std::int32_t cut : {2, 6}) {
        kept_word kept(&div_poly_cutoff, cut);
        poly_audit audit;
        for (std::int32_t dm = 1; dm <= 24; ++dm) {
            for (std::int32_t dn = 1; dn <= highest; ++dn) {
                poly_operand n(test_poly(&r, dn, 2, false, 1)), m(test_poly(&r, dm, 2, true, 1));
                for (routine which : {fast, balanced, longer}) expect_school(which, n.p, m.p, 1, 1);
            }
        }
        audit.expect_unchanged("pairs of degrees");
    }
}

TEST(DivKarat, GeneralListsOfTwoVariablesAgree)
{
    test_random r;
    for (const ring *each : {&field_rings[3], &other_rings[0], &other_rings[3]}) {
        in_ring live(*each);
        kept_word kept(&div_poly_cutoff, 3);
        poly_audit audit;
        for (std::int32_t dm : {5, 8, 11}) {
            for (std::int32_t dn : {dm - 1, dm, dm + 2, 2 * dm, 2 * dm + 5, 3 * dm, 4 * dm, 5 * dm + 1}) {
                poly_operand n(test_poly(&r, dn, 2, false, 2)), m(test_poly(&r, dm, 2, true, 2));
                for (routine which : {fast, balanced, longer}) expect_school(which, n.p, m.p, 0, 2);
            }
        }
        audit.expect_unchanged("general lists");
    }
}

TEST(DivKarat, SparseAndDenseInEveryField)
{
    test_random r;
    for (const ring &each : field_rings) {
        if (each.view == view_float) continue;
        in_ring live(each);
        poly_audit audit;
        for (std::int32_t cut : {6, 25}) {
            kept_word kept(&div_poly_cutoff, cut);
            for (int gap : {1, 3, 9}) {
                poly_operand n(test_poly(&r, 410, gap, false, 1)), m(test_poly(&r, 190, gap, true, 1));
                for (routine which : {fast, balanced, longer}) expect_school(which, n.p, m.p, 1, 1);
            }
        }
        audit.expect_unchanged("fields");
    }
}

TEST(DivKarat, BothSidesOfTheCutForWordArrays)
{
    test_random r;
    in_ring live(field_rings[6]);
    for (std::int32_t dm : {398, 399, 400, 401, 801}) {
        poly_operand n(test_poly(&r, 2 * dm + 1, 1, false, 1)), m(test_poly(&r, dm, 1, true, 1));
        expect_school(fast, n.p, m.p, 1, 1);
    }
}

TEST(DivKarat, ALeadOtherThanOneKeepsTheQuotientAndScalesTheRemainder)
{
    test_random r;
    for (const ring &each : field_rings) {
        if (each.view == view_float) continue;
        in_ring live(each);
        kept_word kept(&div_poly_cutoff, 6);
        for (std::int32_t dn : {10, 31, 60, 100, 200}) {
            poly_operand n(test_poly(&r, dn, 2, false, 1)), m(test_poly(&r, 30, 2, false, 1));
            poly_operand q, rest, school_q, school_r;
            fast_monic_division(n.p, m.p, &q.p, &rest.p);
            school_poly_divide(n.p, m.p, &school_q.p, &school_r.p, nilpol);
            EXPECT_EQ(poly_text(q.p), poly_text(school_q.p));
            EXPECT_EQ(poly_text(rest.p), poly_text(school_r.p));
        }
    }
}

TEST(DivKarat, DegreesAboveTheWordArraysAgreeWithTheProduct)
{
    test_random r;
    in_ring live(field_rings[4]);
    poly_operand n(test_poly(&r, 26000, 1, false, 1)), m(test_poly(&r, 12000, 1, false, 1)), q, rest, product,
        total;
    basic_poly_divide(n.p, m.p, &q.p, &rest.p, 1);
    EXPECT_LT(rest.p->exp, m.p->exp);
    poly_mult(q.p, m.p, &product.p, nilpol);
    total.p = reference_sum(product.p, rest.p, 1);
    EXPECT_TRUE(poly_equal(total.p, n.p));
}

}  // namespace
