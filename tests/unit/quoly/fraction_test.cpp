// Quotients of polynomials: the axioms of a field in every ring of numbers, flavours, aliases, spared
// operands.
#include "quoly/fraction.h"
#include <gtest/gtest.h>
#include <cmath>
#include "poly/add.h"
#include "poly/measure.h"
#include "poly/mul.h"
#include "quoly/add.h"
#include "quoly/divide.h"
#include "quoly/mul.h"
#include "session/report.h"
#include "tests/support/by_build.h"
#include "tests/support/divisions.h"
#include "tests/support/mul_operands.h"
#include "tests/support/quolys.h"
#include "tests/support/variables.h"

using namespace kelmar;
using namespace kelmar_test;

namespace {

constexpr int rounds = by_build(40, 300);

constexpr std::int32_t vars = 3;

struct Fraction : testing::Test {
    const adjoined variables{"x", "y", "z"};
};

// Rings in which a fraction has one form.
constexpr ring exact_rings[] = {{view_digits, 101, 0},    {view_field, 256, 1},
                                {view_modular, 2, 1},     {view_modular, 3, 1},
                                {view_modular, 101, 1},   {view_modular, 65521, 1},
                                {view_modular, 65537, 1}, {view_modular, 2147483629, 1}};
// Rings in which it has none: doubles round, and words that wrap have no gcd.
constexpr ring rough_rings[] = {{view_float, 101, 0}, {view_word, 101, 0}};

// A polynomial with leading number 1 and small coefficients: exact in doubles and in words.
polynode *monic(test_random *r)
{
    polynode *p = nullptr, *term = nullptr, *power = nullptr;
    base_poly(&p, 1 + static_cast<std::int32_t>(r->below(vars)));
    poly_assign(p, &power);
    if (r->below(6) == 0) poly_mult(power, power, &p, polynames);
    for (std::uint64_t k = r->below(3); k > 0; --k) {
        const std::int32_t level = poly_level(p) + static_cast<std::int32_t>(r->below(2));
        base_poly(&term, level <= vars && level > poly_level(p) ? level : vars);
        if (poly_level(term) <= poly_level(p)) poly_set(1, &term);
        best_poly_add(p, term, &p);
        term = nullptr;
    }
    poly_set(modularmode ? static_cast<std::int32_t>(r->below(static_cast<std::uint64_t>(modulus)))
                         : static_cast<std::int32_t>(r->below(9)) - 4,
             &term);
    best_poly_add(p, term, &p);
    free_poly(&power);
    return p;
}

constexpr int pool_size = 4;

// Some factors that random values share.
struct factor_pool {
    value_operand factor[pool_size];
    explicit factor_pool(test_random *r)
    {
        for (value_operand &f : factor) {
            polynode *p = monic(r);
            poly_to_quoly(&p, &f.q);
        }
    }
    const quolynode *any(test_random *r) const
    {
        return factor[r->below(pool_size)].q;
    }
};

// A number between -9 and 9, or a residue; not 0.
void small_number(test_random *r, quolynode **q)
{
    if (modularmode) {
        quoly_set(1 + static_cast<std::int32_t>(r->below(static_cast<std::uint64_t>(modulus) - 1)), q);
    } else {
        quoly_set(static_cast<std::int32_t>(1 + r->below(9)) * (r->below(2) ? 1 : -1), q);
    }
}

// A random value: a number, times and over up to two factors of the pool, sometimes plus another such one.
void draw_value(test_random *r, const factor_pool &pool, quolynode **q, bool whole_numbers)
{
    small_number(r, q);
    if (!whole_numbers && r->below(3) == 0) {
        value_operand n;
        small_number(r, &n.q);
        fast_quoly_quot(q, n.q, 0);
    }
    for (std::uint64_t k = r->below(2); k > 0; --k) fast_quoly_mult(q, pool.any(r));
    for (std::uint64_t k = r->below(3); k > 0; --k) fast_quoly_quot(q, pool.any(r), 0);
    if (r->below(3) == 0) better_quoly_add(q, pool.any(r));
    if (r->below(16) == 0) quoly_set(0, q);
}

void expect_normal_value(const quolynode *q, const char *what)
{
    EXPECT_TRUE(quoly_is_normal(q, vars)) << what << ": " << value_text(q);
}

// Operations that check what they give.
struct checked {
    value_operand value;
    checked(void (*op)(const quolynode *, const quolynode *, quolynode **), const quolynode *a,
            const quolynode *b)
    {
        const std::string a_text = value_text(a), b_text = value_text(b);
        op(a, b, &value.q);
        expect_normal_value(value.q, "result");
        EXPECT_EQ(value_text(a), a_text) << "an operand is altered";
        EXPECT_EQ(value_text(b), b_text) << "an operand is altered";
    }
    operator const quolynode *() const
    {
        return value.q;
    }
};

void divide(const quolynode *a, const quolynode *b, quolynode **c)
{
    quoly_quot(a, b, 0, c);
}

double largest_of(const polynode *p)
{
    double most = 0;
    for (; p; p = p->next) most = std::fmax(most, p->isnum ? std::fabs(p->num->real) : largest_of(p->coef));
    return most;
}

// a = b. Where forms differ, a.top b.den - b.top a.den is 0, to within rounding.
bool same_value(const quolynode *a, const quolynode *b)
{
    if (!flotemode && live_view() != view_word) return quoly_equal(a, b);
    poly_room a_room, b_room;
    const fraction x = parts_of(a, &a_room), y = parts_of(b, &b_room);
    poly_operand left, right, difference;
    product_of_factors(x.top, y.den, &left.p);
    product_of_factors(y.top, x.den, &right.p);
    poly_sub(left.p, right.p, &difference.p);
    if (!flotemode) return poly_iszero(difference.p);
    return largest_of(difference.p) <= 1e-9 * std::fmax(1, largest_of(left.p));
}

void expect_same(const quolynode *a, const quolynode *b, const char *axiom)
{
    EXPECT_TRUE(same_value(a, b)) << axiom << ": " << value_text(a) << " is not " << value_text(b);
}

void check_axioms(const quolynode *a, const quolynode *b, const quolynode *c)
{
    value_operand zero("{#0}"), one("{#1}");
    expect_same(checked(quoly_add, a, b), checked(quoly_add, b, a), "a + b = b + a");
    expect_same(checked(quoly_mult, a, b), checked(quoly_mult, b, a), "a b = b a");
    expect_same(checked(quoly_add, checked(quoly_add, a, b), c),
                checked(quoly_add, a, checked(quoly_add, b, c)), "(a + b) + c = a + (b + c)");
    expect_same(checked(quoly_mult, checked(quoly_mult, a, b), c),
                checked(quoly_mult, a, checked(quoly_mult, b, c)), "(a b) c = a (b c)");
    expect_same(checked(quoly_mult, a, checked(quoly_add, b, c)),
                checked(quoly_add, checked(quoly_mult, a, b), checked(quoly_mult, a, c)),
                "a (b + c) = a b + a c");
    expect_same(checked(quoly_add, a, zero.q), a, "a + 0 = a");
    expect_same(checked(quoly_mult, a, one.q), a, "a 1 = a");
    expect_same(checked(quoly_sub, checked(quoly_add, a, b), b), a, "(a + b) - b = a");
    expect_same(checked(quoly_sub, zero.q, checked(quoly_sub, a, b)), checked(quoly_sub, b, a),
                "0 - (a - b) = b - a");
    if (quoly_iszero(b)) return;
    if (live_view() == view_word && (b->is_num || is_constant(b->top))) return;  // quotients are truncated
    expect_same(checked(quoly_mult, checked(divide, a, b), b), a, "(a / b) b = a");
    expect_same(checked(divide, checked(quoly_mult, a, b), b), a, "(a b) / b = a");
    expect_same(checked(divide, one.q, checked(divide, one.q, b)), b, "1 / (1 / b) = b");
}

void check_rings(const ring *rings, std::size_t count, bool whole_numbers)
{
    test_random r;
    for (std::size_t k = 0; k < count; ++k) {
        const in_ring live(rings[k]);
        const poly_audit audit;
        for (int round = 0; round < rounds && !::testing::Test::HasFailure(); ++round) {
            const factor_pool pool(&r);
            value_operand a, b, c;
            for (value_operand *v : {&a, &b, &c}) draw_value(&r, pool, &v->q, whole_numbers);
            check_axioms(a.q, b.q, c.q);
        }
        audit.expect_unchanged("axioms");
        if (::testing::Test::HasFailure()) {
            FAIL() << "seed " << r.seed << " view " << rings[k].view << " modulus " << rings[k].modulus;
        }
    }
}

TEST_F(Fraction, ValuesOfEveryExactRingAreAField)
{
    check_rings(exact_rings, std::size(exact_rings), false);
}

TEST_F(Fraction, ValuesOfRoundingAndWrappingRingsAreAFieldAsFarAsNumbersGo)
{
    check_rings(rough_rings, std::size(rough_rings), true);
}

// Flavours ----------------------------------------------------------------------------------------------

struct flavours {
    const char *name;
    void (*spared)(const quolynode *, const quolynode *, quolynode **);
    void (*in_place)(quolynode **, const quolynode *);
    void (*consuming)(quolynode **, quolynode **);
};

const flavours all_flavours[] = {
    {"+", quoly_add, better_quoly_add, best_quoly_add},
    {"-", quoly_sub, better_quoly_sub, best_quoly_sub},
    {"*", quoly_mult, fast_quoly_mult, nullptr},
    {"/", divide, [](quolynode **a, const quolynode *b) { fast_quoly_quot(a, b, 0); }, nullptr},
    {"//", [](const quolynode *a, const quolynode *b, quolynode **c) { quoly_quot(a, b, 1, c); },
     [](quolynode **a, const quolynode *b) { fast_quoly_quot(a, b, 1); }, nullptr},
};

void check_flavours(const flavours &op, const quolynode *a, const quolynode *b)
{
    value_operand wanted, x, y;
    op.spared(a, b, &wanted.q);
    const std::string text = value_text(wanted.q);
    quoly_assign(a, &x.q);
    op.spared(x.q, b, &x.q);
    EXPECT_EQ(value_text(x.q), text) << op.name << " with the result in the first";
    quoly_assign(b, &x.q);
    op.spared(a, x.q, &x.q);
    EXPECT_EQ(value_text(x.q), text) << op.name << " with the result in the second";
    quoly_assign(a, &x.q);
    const std::string b_text = value_text(b);
    op.in_place(&x.q, b);
    EXPECT_EQ(value_text(x.q), text) << op.name << " in place";
    EXPECT_EQ(value_text(b), b_text) << op.name << " in place alters b";
    if (!op.consuming) return;
    quoly_assign(a, &x.q);
    quoly_assign(b, &y.q);
    op.consuming(&x.q, &y.q);
    EXPECT_EQ(value_text(x.q), text) << op.name << " of both consumed";
    EXPECT_EQ(y.q, nullptr);
}

TEST_F(Fraction, FlavoursAgreeInEveryRing)
{
    test_random r;
    for (const ring *rings : {exact_rings, rough_rings}) {
        const std::size_t count = rings == exact_rings ? std::size(exact_rings) : std::size(rough_rings);
        for (std::size_t k = 0; k < count; ++k) {
            const in_ring live(rings[k]);
            for (int round = 0; round < rounds; ++round) {
                const poly_audit audit;
                {
                    const factor_pool pool(&r);
                    value_operand a, b;
                    draw_value(&r, pool, &a.q, false);
                    draw_value(&r, pool, &b.q, false);
                    for (const flavours &op : all_flavours) {
                        if (op.name[0] == '/' && quoly_iszero(b.q)) continue;
                        check_flavours(op, a.q, b.q);
                    }
                }
                audit.expect_unchanged("flavours");
                if (HasFailure()) FAIL() << "seed " << r.seed << " view " << rings[k].view;
            }
        }
    }
}

TEST_F(Fraction, OneValueAsBothOperands)
{
    test_random r;
    for (const ring &numbers : exact_rings) {
        const in_ring live(numbers);
        for (int round = 0; round < rounds / 3; ++round) {
            const poly_audit audit;
            {
                const factor_pool pool(&r);
                value_operand a, twice, square, other;
                draw_value(&r, pool, &a.q, false);
                quoly_assign(a.q, &other.q);
                quoly_add(a.q, other.q, &twice.q);
                quoly_mult(a.q, other.q, &square.q);
                value_operand x;
                quoly_add(a.q, a.q, &x.q);
                EXPECT_EQ(value_text(x.q), value_text(twice.q));
                quoly_assign(a.q, &x.q);
                better_quoly_add(&x.q, x.q);
                EXPECT_EQ(value_text(x.q), value_text(twice.q));
                quoly_assign(a.q, &x.q);
                fast_quoly_mult(&x.q, x.q);
                EXPECT_EQ(value_text(x.q), value_text(square.q));
                quoly_sub(a.q, a.q, &x.q);
                EXPECT_TRUE(quoly_iszero(x.q));
                quoly_sub(a.q, other.q, &x.q);
                EXPECT_TRUE(quoly_iszero(x.q)) << "records that differ: " << value_text(a.q);
                if (!quoly_iszero(a.q)) {
                    quoly_quot(a.q, a.q, 0, &x.q);
                    EXPECT_EQ(value_text(x.q), "{#1}");
                    quoly_quot(a.q, other.q, 0, &x.q);
                    EXPECT_EQ(value_text(x.q), "{#1}");
                    fast_quoly_quot(&other.q, other.q, 0);
                    EXPECT_EQ(value_text(other.q), "{#1}");
                }
            }
            audit.expect_unchanged("one operand");
            if (HasFailure()) FAIL() << "seed " << r.seed << " view " << numbers.view;
        }
    }
}

}  // namespace
