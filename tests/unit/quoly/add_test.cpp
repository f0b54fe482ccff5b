// Sums of scalar values: every flavour, both kinds, every view, aliases, against the flat form.
#include "quoly/add.h"
#include <gtest/gtest.h>
#include "tests/support/by_build.h"
#include "tests/support/quolys.h"
#include "tests/support/views.h"

using namespace kelmar;
using namespace kelmar_test;

namespace {

constexpr int rounds = by_build(200, 2000);

constexpr std::int32_t vars = 3;

polynode *drawn(test_random *r, num_view v)
{
    poly_shape shape;
    shape.vars = vars;
    shape.degree = 3;
    shape.digits = v == view_digits ? 3 : 1;
    return random_poly(r, shape);
}

struct operation {
    const char *name;
    polynode *(*reference)(const polynode *, const polynode *, std::int32_t);
    void (*plain)(const quolynode *, const quolynode *, quolynode **);
    void (*better)(quolynode **, const quolynode *);
    void (*best)(quolynode **, quolynode **);
};

const operation operations[] = {
    {"sum", reference_sum, quoly_add, better_quoly_add, best_quoly_add},
    {"difference", reference_difference, quoly_sub, better_quoly_sub, best_quoly_sub},
};

void expect_value(const quolynode *q, const std::string &wanted, const char *what)
{
    EXPECT_EQ(value_text(q), wanted) << what;
    EXPECT_TRUE(quoly_is_normal(q, vars)) << what << " " << value_text(q);
}

void check_flavours(const operation *op, polynode *p, polynode *q)
{
    poly_operand left(p), right(q), wanted(op->reference(p, q, vars));
    const std::string text = poly_text(wanted.p);
    value_operand a, b, c("{1{#1}}");
    quoly_set(0, &a.q);
    polynode *copy = nullptr;
    poly_assign(p, &copy);
    poly_to_quoly(&copy, &a.q);
    poly_assign(q, &copy);
    poly_to_quoly(&copy, &b.q);
    const std::string a_text = value_text(a.q), b_text = value_text(b.q);

    op->plain(a.q, b.q, &c.q);
    expect_value(c.q, text, op->name);
    EXPECT_EQ(value_text(a.q), a_text);
    EXPECT_EQ(value_text(b.q), b_text);

    value_operand first, second;
    quoly_assign(a.q, &first.q);
    op->plain(first.q, b.q, &first.q);
    expect_value(first.q, text, "result on the first");
    quoly_assign(b.q, &second.q);
    op->plain(a.q, second.q, &second.q);
    expect_value(second.q, text, "result on the second");

    quoly_assign(a.q, &first.q);
    op->better(&first.q, b.q);
    expect_value(first.q, text, "better");
    EXPECT_EQ(value_text(b.q), b_text);

    op->best(&a.q, &b.q);
    expect_value(a.q, text, "best");
    EXPECT_EQ(b.q, nullptr);
}

TEST(QuolyAdd, FlavoursAgreeInEveryView)
{
    test_random r;
    for (num_view v : all_views) {
        in_view live(v, 7);
        for (int round = 0; round < rounds; ++round) {
            poly_audit audit;
            for (const operation &op : operations) check_flavours(&op, drawn(&r, v), drawn(&r, v));
            audit.expect_unchanged("sums");
            if (HasFailure()) FAIL() << "seed " << r.seed;
        }
    }
}

TEST(QuolyAdd, OneValueAsBothOperands)
{
    test_random r;
    for (num_view v : all_views) {
        in_view live(v, 7);
        for (int round = 0; round < rounds / 4; ++round) {
            poly_audit audit;
            {
                poly_operand p(drawn(&r, v)), twice(reference_sum(p.p, p.p, vars));
                for (bool in_place : {false, true}) {
                    value_operand a;
                    polynode *copy = nullptr;
                    poly_assign(p.p, &copy);
                    poly_to_quoly(&copy, &a.q);
                    if (in_place) {
                        better_quoly_add(&a.q, a.q);
                    } else {
                        quoly_add(a.q, a.q, &a.q);
                    }
                    expect_value(a.q, poly_text(twice.p), "a + a");
                    if (in_place) {
                        better_quoly_sub(&a.q, a.q);
                    } else {
                        quoly_sub(a.q, a.q, &a.q);
                    }
                    EXPECT_TRUE(quoly_iszero(a.q)) << "a - a";
                }
            }
            audit.expect_unchanged("a with a");
            if (HasFailure()) FAIL() << "seed " << r.seed;
        }
    }
}

TEST(QuolyAdd, WhatCancelsIsThePlainNumber)
{
    in_view live(view_float);
    value_operand p("{1{#1}, #1}"), q("{1{#1}, #-2}"), d;
    quoly_sub(p.q, q.q, &d.q);
    EXPECT_TRUE(d.q->is_num);
    EXPECT_EQ(value_text(d.q), "{#3}");
    best_quoly_sub(&p.q, &q.q);
    EXPECT_TRUE(p.q->is_num);
}

TEST(QuolyAdd, ConsumingSumOfPolynomialsTakesNoNode)
{
    in_view live(view_float);
    value_operand p("{3{#1}, 1{#1}, #1}"), q("{2{#1}, 1{#5}}");
    const std::int64_t nodes = live_polynodes();
    best_quoly_add(&p.q, &q.q);
    EXPECT_LE(live_polynodes(), nodes);
    EXPECT_EQ(value_text(p.q), "{3{#1}, 2{#1}, 1{#6}, #1}");
}

}  // namespace
