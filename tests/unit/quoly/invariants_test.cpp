// Values through chains of operations, in every ring: the normal form holds after each one, and the value at
// a point is what the operation makes of the values there.
#include <gtest/gtest.h>
#include <cmath>
#include "poly/div_exact.h"
#include "poly/mul_work.h"
#include "quoly/add.h"
#include "quoly/derivative.h"
#include "quoly/divide.h"
#include "quoly/eval.h"
#include "quoly/mul.h"
#include "quoly/normal_form.h"
#include "quoly/owned.h"
#include "quoly/power.h"
#include "session/errnums.h"
#include "tests/support/by_build.h"
#include "tests/support/divisions.h"
#include "tests/support/quolys.h"
#include "tests/support/settings.h"

using namespace kelmar;
using namespace kelmar_test;

namespace {

constexpr int rounds = by_build(15, 150);

constexpr std::int32_t vars = 3;

class Invariants : public ::testing::Test {
protected:
    const adjoined variables{"x", "y", "z"};
    void SetUp() override
    {
        make_owned();
    }
};

constexpr ring rings[] = {{view_float, 101, 0},          {view_field, 256, 1},   {view_modular, 2, 1},
                          {view_modular, 3, 1},          {view_modular, 101, 1}, {view_modular, 65537, 1},
                          {view_modular, 2147483629, 1}, {view_digits, 101, 0}};

// Operations ----------------------------------------------------------------------------------------------

// What the value at a point is made of.
enum pointwise { by_values, by_substitution, not_at_all };

struct operation {
    const char *name;
    void (*run)(const quolynode *a, const quolynode *b, quolynode **c);
    pointwise kind;
};

template <int e> void to_power(const quolynode *a, const quolynode *, quolynode **c)
{
    quoly_assign(a, c);
    raise_to_power(c, e);
}

template <int level> void derived(const quolynode *a, const quolynode *, quolynode **c)
{
    quoly_assign(a, c);
    differentiate(c, level, 1);
}

void substituted(const quolynode *a, const quolynode *b, quolynode **c)
{
    quolynode only = *b;
    only.next = nullptr;
    quoly_assign(a, c);
    total_eval(c, &only);
}

constexpr operation operations[] = {
    {"sum", quoly_add, by_values},
    {"difference", quoly_sub, by_values},
    {"product", quoly_mult, by_values},
    {"quotient", [](const quolynode *a, const quolynode *b, quolynode **c) { quoly_quot(a, b, 0, c); },
     by_values},
    {"cube", to_power<3>, by_values},
    {"power -2", to_power<-2>, by_values},
    {"power 0", to_power<0>, by_values},
    {"reciprocal",
     [](const quolynode *a, const quolynode *, quolynode **c) {
         quoly_assign(a, c);
         quoly_reciprocal(c);
     },
     by_values},
    {"negative", [](const quolynode *a, const quolynode *, quolynode **c) { quoly_makeneg(a, c); },
     by_values},
    {"derivative in x", derived<1>, not_at_all},
    {"derivative in y", derived<2>, not_at_all},
    {"substitution for x", substituted, by_substitution},
    {"whole quotient",
     [](const quolynode *a, const quolynode *b, quolynode **c) { quoly_mod_or_div(a, b, c, '\\'); },
     not_at_all},
    {"remainder",
     [](const quolynode *a, const quolynode *b, quolynode **c) { quoly_mod_or_div(a, b, c, '|'); },
     not_at_all},
};

// *c = op(a, b). false: there is no such value, which an error told.
bool has_value(const operation &op, const quolynode *a, const quolynode *b, value_operand *c)
{
    const int number = error_in_view([&] { op.run(a, b, &c->q); });
    release_work();
    EXPECT_TRUE(number == 0 || number == err_zero_divisor || number == err_zero_denominator ||
                (laurent && number == err_laurent_division))
        << op.name << " of " << value_text(a) << " and " << value_text(b) << ": error " << number;
    return number == 0;
}

// Points --------------------------------------------------------------------------------------------------

// Numbers for the variables.
struct point {
    value_operand at[vars];
    explicit point(test_random *r)
    {
        for (value_operand &v : at) {
            const auto n = static_cast<std::int32_t>(
                modularmode ? r->below(static_cast<std::uint64_t>(modulus)) : 1 + r->below(30));
            quoly_set(n, &v.q);
            if (flotemode) v.q->num->real = 0.4 + 0.05 * n;
        }
        for (int k = 0; k < vars; ++k) at[k].q->next = k + 1 < vars ? at[k + 1].q : nullptr;
    }
};

// *v = a where the variables are the values of the list. false: there is none.
bool value_at(const quolynode *a, const quolynode *list, value_operand *v)
{
    quoly_assign(a, &v->q);
    const int number = error_in_view([&] { total_eval(&v->q, list); });
    release_work();
    return number == 0 && (!flotemode || std::fabs(v->q->num->real) < 1e4);
}

// With large numbers, or a denominator next to nothing at the point, rounding would show.
bool is_far_from_poles(const quolynode *a, const point &p)
{
    constexpr double large = 1e4;
    if (!flotemode || a->is_num) return true;
    if (largest_magnitude(a->top) > large || (a->den && largest_magnitude(a->den) > large)) return false;
    if (!a->den) return true;
    value_operand den(copy_poly(a->den)), v;
    return value_at(den.q, p.at[0].q, &v) && std::fabs(v.q->num->real) > 1e-2;
}

bool same_number(const quolynode *a, const quolynode *b)
{
    if (!flotemode) return quoly_equal(a, b);
    const double x = a->num->real, y = b->num->real;
    return std::fabs(x - y) <= 1e-6 * (1 + std::fabs(x));
}

// *wanted = what the value of op(a, b) at p must be. false: there is none, or this says nothing.
bool wanted_at(const operation &op, const quolynode *a, const quolynode *b, const point &p,
               value_operand *wanted)
{
    value_operand of_a, of_b;
    if (!value_at(b, p.at[0].q, &of_b) || !is_far_from_poles(a, p) || !is_far_from_poles(b, p)) return false;
    if (op.kind == by_substitution) {
        if (flotemode || quoly_iszero(of_b.q)) return false;  // near a pole, or where powers are none
        of_b.q->next = p.at[1].q;
        return value_at(a, of_b.q, wanted);
    }
    return value_at(a, p.at[0].q, &of_a) && has_value(op, of_a.q, of_b.q, wanted);
}

// Chains --------------------------------------------------------------------------------------------------

// What comes of such values stays small.
bool is_short(const quolynode *q, std::size_t most = 90)
{
    return value_text(q).size() < most;
}

// A quotient of small polynomials; one in four is a polynomial, or a number.
void draw_value(test_random *r, value_operand *v)
{
    poly_shape shape;
    shape.vars = 1 + static_cast<std::int32_t>(r->below(vars));
    shape.terms = shape.vars < 3 ? 3 : 2;
    shape.degree = shape.vars < 3 ? 2 : 1;
    if (laurent) {
        shape.terms = 2;
        shape.degree = 1;
        shape.low = -1;
    }
    poly_operand top(random_poly(r, shape)), den(random_poly(r, shape));
    if (r->below(4) == 0 || poly_iszero(den.p)) poly_set(1, &den.p);
    value_operand a(copy_poly(top.p)), b(copy_poly(den.p));
    quoly_quot(a.q, b.q, 0, &v->q);
}

void check_operation(const operation &op, const quolynode *a, const quolynode *b, test_random *r,
                     value_operand *c)
{
    const std::string a_text = value_text(a), b_text = value_text(b);
    if (op.kind == by_substitution && !(is_short(a, 45) && is_short(b, 45))) return;
    if (!has_value(op, a, b, c)) return;
    EXPECT_TRUE(quoly_is_normal(c->q, vars))
        << op.name << " of " << a_text << " and " << b_text << ": " << value_text(c->q);
    EXPECT_EQ(value_text(a), a_text) << op.name << " alters an operand";
    EXPECT_EQ(value_text(b), b_text) << op.name << " alters an operand";
    if (op.kind == not_at_all) return;
    const point p(r);
    value_operand wanted, got;
    if (!wanted_at(op, a, b, p, &wanted) || !is_far_from_poles(c->q, p)) return;
    if (!value_at(c->q, p.at[0].q, &got)) return;
    EXPECT_TRUE(same_number(wanted.q, got.q))
        << op.name << " of " << a_text << " and " << b_text << " is " << value_text(c->q) << ": at "
        << value_text(p.at[0].q) << value_text(p.at[1].q) << value_text(p.at[2].q) << " it is "
        << value_text(got.q) << ", not " << value_text(wanted.q);
}

// Each operation, then another one on what it gave.
void check_chains(test_random *r)
{
    value_operand a, b;
    draw_value(r, &a);
    draw_value(r, &b);
    EXPECT_TRUE(quoly_is_normal(a.q, vars)) << value_text(a.q);
    for (const operation &op : operations) {
        value_operand c, d;
        check_operation(op, a.q, b.q, r, &c);
        const operation &next = operations[r->below(std::size(operations))];
        if (c.q && is_short(c.q)) check_operation(next, r->below(2) ? b.q : c.q, c.q, r, &d);
    }
}

void check_rings(std::initializer_list<ring> chosen)
{
    test_random r;
    for (const ring &numbers : chosen) {
        const in_ring live(numbers);
        const poly_audit audit;
        for (int round = 0; round < rounds && !::testing::Test::HasFailure(); ++round) check_chains(&r);
        audit.expect_unchanged("chains");
        if (::testing::Test::HasFailure())
            FAIL() << "seed " << r.seed << " view " << numbers.view << " modulus " << numbers.modulus;
    }
}

TEST_F(Invariants, HoldAfterEveryOperationInEveryRing)
{
    for (const ring &numbers : rings) check_rings({numbers});
}

TEST_F(Invariants, HoldWithNegativeExponents)
{
    const in_laurent on(1);
    check_rings({{view_digits, 101, 0}, {view_modular, 101, 1}});
}

// Derivatives ---------------------------------------------------------------------------------------------

// (a / b)' b^2 = a' b - a b'
TEST_F(Invariants, DerivativesFollowTheQuotientRule)
{
    test_random r;
    for (const ring &numbers : rings) {
        if (numbers.view == view_float) continue;  // there only normal forms compare
        const in_ring live(numbers);
        for (int round = 0; round < rounds && !HasFailure(); ++round) {
            poly_shape shape;
            shape.vars = vars;
            shape.terms = 3;
            shape.degree = 2;
            const value_operand a(random_poly(&r, shape)), b(random_divisor(&r, shape));
            for (const std::int32_t level : {1, 2, 3}) {
                value_operand q, da, db, left, right;
                quoly_quot(a.q, b.q, 0, &q.q);
                differentiate(&q.q, level, 1);
                quoly_mult(q.q, b.q, &left.q);
                fast_quoly_mult(&left.q, b.q);
                quoly_assign(a.q, &da.q);
                quoly_assign(b.q, &db.q);
                differentiate(&da.q, level, 1);
                differentiate(&db.q, level, 1);
                fast_quoly_mult(&da.q, b.q);
                fast_quoly_mult(&db.q, a.q);
                quoly_sub(da.q, db.q, &right.q);
                EXPECT_EQ(value_text(left.q), value_text(right.q))
                    << value_text(a.q) << " over " << value_text(b.q) << " level " << level;
            }
        }
        if (HasFailure()) FAIL() << "seed " << r.seed << " view " << numbers.view;
    }
}

// Comparison ----------------------------------------------------------------------------------------------

// Values are equal just when their difference is zero, whichever way they came about.
TEST_F(Invariants, EqualValuesAreEqualRecords)
{
    test_random r;
    for (const ring &numbers : rings) {
        if (numbers.view == view_float) continue;  // rounding tells ways apart
        const in_ring live(numbers);
        for (int round = 0; round < rounds && !HasFailure(); ++round) {
            value_operand a, b, sum, again, difference;
            draw_value(&r, &a);
            draw_value(&r, &b);
            quoly_add(a.q, b.q, &sum.q);
            quoly_sub(sum.q, b.q, &again.q);
            EXPECT_TRUE(quoly_equal(a.q, again.q)) << value_text(a.q) << " " << value_text(again.q);
            quoly_sub(a.q, b.q, &difference.q);
            EXPECT_EQ(quoly_equal(a.q, b.q), quoly_iszero(difference.q)) << value_text(a.q);
            EXPECT_EQ(quoly_equal(a.q, b.q), quoly_equal(b.q, a.q));
        }
        if (HasFailure()) FAIL() << "seed " << r.seed << " view " << numbers.view;
    }
}

}  // namespace
