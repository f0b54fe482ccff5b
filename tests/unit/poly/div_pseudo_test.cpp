// Pseudo-division: c^k n = q m + r, with every power of c, in every ring.
#include "poly/div_pseudo.h"
#include <gtest/gtest.h>
#include "tests/support/by_build.h"
#include "tests/support/divisions.h"

using namespace kelmar;
using namespace kelmar_test;

namespace {

constexpr int rounds = by_build(40, 400);

// c^k n, by the flat form.
polynode *scaled(const polynode *n, const polynode *m, std::int32_t k, std::int32_t vars)
{
    poly_operand c(m->isnum ? copy_term(m) : copy_poly(m->coef));
    if (!m->isnum) add_pad(&c.p, 1);
    polynode *product = copy_poly(n);
    for (; k > 0; --k) {
        polynode *next = reference_product(product, c.p, vars);
        free_poly(&product);
        product = next;
    }
    return product;
}

TEST(PseudoDiv, TheSquareByTwoXPlusOne)
{
    in_view live(view_digits);
    poly_operand n(poly_of_text("{2{#1}}")), m(poly_of_text("{1{#2}, #1}")), q, r, alone;
    pseudo_div(n.p, m.p, &q.p, &r.p, 1, nilpol);
    EXPECT_EQ(poly_text(q.p), "{1{#2}, #-1}");
    EXPECT_EQ(poly_text(r.p), "{#1}");
    pseudo_div_no_q(n.p, m.p, &alone.p, nilpol, 1);
    EXPECT_EQ(poly_text(alone.p), "{#1}");
}

TEST(PseudoDiv, ALowerDegreeIsItsOwnRemainder)
{
    in_view live(view_digits);
    poly_operand n(poly_of_text("{1{#3}, #4}")), m(poly_of_text("{2{#5}}")), q, r, alone;
    pseudo_div(n.p, m.p, &q.p, &r.p, 1, nilpol);
    EXPECT_EQ(poly_text(q.p), "{#0}");
    EXPECT_EQ(poly_text(r.p), "{1{#3}, #4}");
    pseudo_div_no_q(n.p, m.p, &alone.p, nilpol, 0);
    EXPECT_EQ(poly_text(alone.p), "{1{#3}, #4}");
}

TEST(PseudoDiv, StepsThatWereNotMadeCountOnlyWhenAskedFor)
{
    in_view live(view_digits);
    poly_operand n(poly_of_text("{5{#1}, #7}")), m(poly_of_text("{2{#3}}")), all, made;
    pseudo_div_no_q(n.p, m.p, &all.p, nilpol, 1);
    pseudo_div_no_q(n.p, m.p, &made.p, nilpol, 0);
    EXPECT_EQ(poly_text(all.p), "{#567}");  // 3^4 * 7
    EXPECT_EQ(poly_text(made.p), "{#21}");  // one step
}

TEST(PseudoDiv, AnInvertibleLeadScalesNothing)
{
    in_view live(view_float);
    poly_operand n(poly_of_text("{2{#1}}")), m(poly_of_text("{1{#2}, #1}")), q, r;
    pseudo_div(n.p, m.p, &q.p, &r.p, 1, nilpol);
    EXPECT_EQ(poly_text(q.p), "{1{#0.5}, #-0.25}");
    EXPECT_EQ(poly_text(r.p), "{#0.25}");
}

TEST(PseudoDiv, TheRemainderNeedNotBeKept)
{
    in_view live(view_digits);
    poly_audit audit;
    {
        poly_operand n(poly_of_text("{3{1{#1}, #2}, 1{#3}}")), m(poly_of_text("{1{1{#1}, #1}, #1}")), q, r,
            same;
        pseudo_div(n.p, m.p, &q.p, nullptr, 0, nilpol);
        pseudo_div(n.p, m.p, &same.p, &r.p, 1, nilpol);
        EXPECT_EQ(poly_text(q.p), poly_text(same.p));
    }
    audit.expect_unchanged("no remainder");
}

TEST(PseudoDiv, FitsTheProductInEveryRing)
{
    test_random rnd;
    six_variables names;
    for (const ring *each : {&field_rings[1], &field_rings[2], &field_rings[6], &other_rings[0],
                             &other_rings[1], &other_rings[2], &other_rings[3]}) {
        in_ring live(*each);
        poly_audit audit;
        for (int i = 0; i < rounds; ++i) {
            poly_shape shape;
            shape.vars = 1 + i % 4;
            shape.terms = shape.vars < 3 ? 6 : 3;
            shape.degree = shape.vars < 3 ? 4 : 2;
            if (each->view == view_small) shape.degree = 2;  // no carries
            poly_operand n(random_poly(&rnd, shape)), m(random_divisor(&rnd, shape));
            if (m.p->exp < 1) continue;
            const std::string n_text = poly_text(n.p), m_text = poly_text(m.p);
            {
                poly_operand q, r, alone, made;
                pseudo_div(n.p, m.p, &q.p, &r.p, 1, names.first());
                pseudo_div_no_q(n.p, m.p, &alone.p, names.first(), 1);
                pseudo_div_no_q(n.p, m.p, &made.p, names.first(), 0);
                expect_normal(q.p, shape.vars, "quotient");
                expect_normal(r.p, shape.vars, "remainder");
                expect_normal(made.p, shape.vars, "unscaled remainder");
                EXPECT_TRUE(r.p->exp < m.p->exp || poly_iszero(r.p));
                EXPECT_TRUE(made.p->exp < m.p->exp || poly_iszero(made.p));
                const bool unit = each->prime && (m.p->isnum || is_constant(m.p->coef));
                poly_operand wanted(scaled(n.p, m.p, unit ? 0 : n.p->exp - m.p->exp + 1, shape.vars));
                poly_operand total(product_and_rest(q.p, m.p, r.p, shape.vars));
                EXPECT_EQ(poly_text(total.p), poly_text(wanted.p)) << n_text << " by " << m_text;
                EXPECT_EQ(poly_text(alone.p), poly_text(r.p)) << n_text << " by " << m_text;
            }
            EXPECT_EQ(poly_text(n.p), n_text);
            EXPECT_EQ(poly_text(m.p), m_text);
        }
        audit.expect_unchanged("pseudo-division");
    }
}

}  // namespace
