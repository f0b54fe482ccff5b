// Scalar values that are plain numbers: records, flavours, whole division, errors.
#include "numbers/plain_quoly.h"
#include "poly/node.h"
#include "quoly/add.h"
#include "quoly/divide.h"
#include "quoly/mul.h"
#include <gtest/gtest.h>
#include <limits>
#include <string>
#include "numbers/compare.h"
#include "numbers/dispatch.h"
#include "session/levels.h"
#include "session/report.h"
#include "tests/support/by_build.h"
#include "tests/support/long_numbers.h"
#include "tests/support/views.h"

using namespace kelmar;
using namespace kelmar_test;

namespace {

constexpr int rounds = by_build(1000, 20000);

quolynode *made(std::int32_t v)
{
    quolynode *q = nullptr;
    quoly_set(v, &q);
    return q;
}

quolynode *made_real(double v)
{
    quolynode *q = made(0);
    q->num->real = v;
    return q;
}

bool is_value(const quolynode *q, std::int32_t v)
{
    quolynode *wanted = made(v);
    const bool same = q->is_num && equal(q->num, wanted->num);
    free_quoly(&wanted);
    return same;
}

struct level_two {
    decltype(levelcount) saved = levelcount;
    level_two()
    {
        levelcount = 2;
    }
    ~level_two()
    {
        levelcount = saved;
    }
};

// Records -----------------------------------------------------------------------------------------------

TEST(Records, FreeTakesANullHandle)
{
    quolynode *q = nullptr;
    free_quoly(&q);
    EXPECT_EQ(q, nullptr);
}

TEST(Records, SetUsesTheRecordOfAPlainNumberAgain)
{
    for (const num_view v : all_views) {
        const in_view view(v);
        const record_audit audit;
        quolynode *q = made(17);
        const quolynode *const first = q;
        const number *const num = q->num;
        quoly_set(5, &q);
        EXPECT_EQ(q, first);
        EXPECT_EQ(q->num, num);
        EXPECT_TRUE(is_value(q, 5));
        free_quoly(&q);
        EXPECT_EQ(q, nullptr);
        audit.expect_unchanged("quoly_set");
    }
}

TEST(Records, SetMakesTwoDigitsFromTheBaseOn)
{
    const in_view view(view_digits);
    quolynode *q = made(0xFFFFFFF);
    EXPECT_EQ(q->num->size, 1);
    quoly_set(0x10000000, &q);
    EXPECT_EQ(q->num->size, 2);
    EXPECT_EQ(q->num->head->digit, 1);
    EXPECT_EQ(q->num->tail->digit, 0);
    quoly_set(INT32_MIN, &q);
    EXPECT_EQ(q->num->head->digit, -8);
    EXPECT_TRUE(chain_is_normal(q->num, digit_base));
    free_quoly(&q);
}

TEST(Records, ScalarToQuolyTakesTheChainOver)
{
    const in_view view(view_digits);
    const record_audit audit;
    number n;
    number_from_text("123456789012345678901234567890", &n);
    quolynode *q = made(3);
    const number *const num = q->num;
    scalar_to_quoly(&n, &q);
    EXPECT_EQ(q->num, num);
    EXPECT_EQ(q->num->head, n.head) << "the chain passes over";
    EXPECT_EQ(q->is_num, 1);
    quolynode *fresh = nullptr;
    number_from_text("7", &n);
    scalar_to_quoly(&n, &fresh);
    EXPECT_TRUE(is_value(fresh, 7));
    free_quoly(&q);
    free_quoly(&fresh);
    audit.expect_unchanged("scalar_to_quoly");
}

TEST(Records, AssignMakesAPrivateCopy)
{
    for (const num_view v : all_views) {
        const in_view view(v);
        const record_audit audit;
        quolynode *a = made(9), *b = nullptr;
        quoly_assign(a, &b);
        EXPECT_NE(a, b);
        EXPECT_NE(a->num, b->num);
        EXPECT_TRUE(is_value(b, 9));
        quoly_set(4, &a);
        EXPECT_TRUE(is_value(b, 9));
        quoly_assign(a, &b);
        EXPECT_TRUE(is_value(b, 4));
        quoly_assign(b, &b);
        EXPECT_TRUE(is_value(b, 4)) << "assigning a value to itself";
        free_quoly(&a);
        free_quoly(&b);
        audit.expect_unchanged("quoly_assign");
    }
}

#ifndef KELMAR_MALLOC_RECORDS
TEST(Records, ARunningSumTakesNoRecord)
{
    const in_view view(view_float);
    quolynode *sum = made(0), *step = made(1);
    const std::int32_t used = quolystash->slugs_used, numbers = imagstash->slugs_used;
    quolynode *const free_before = quolygarb;
    number *const head_before = imhead;
    for (int k = 0; k < 1000; ++k) quoly_add(sum, step, &sum);
    for (int k = 0; k < 1000; ++k) better_quoly_add(&sum, step);
    EXPECT_EQ(sum->num->real, 2000.0);
    EXPECT_EQ(quolystash->slugs_used, used);
    EXPECT_EQ(imagstash->slugs_used, numbers);
    EXPECT_EQ(quolygarb, free_before);
    EXPECT_EQ(imhead, head_before);
    free_quoly(&sum);
    free_quoly(&step);
}
#endif

// Sign and questions ------------------------------------------------------------------------------------

TEST(Sign, NegationInEveryView)
{
    for (const num_view v : all_views) {
        const in_view view(v, 7);
        const record_audit audit;
        quolynode *a = made(5), *b = nullptr;
        quoly_makeneg(a, &b);
        EXPECT_TRUE(negtive(a->num, b->num)) << v;
        EXPECT_TRUE(is_value(a, 5)) << "the operand is spared";
        quoly_makeneg(b, &b);
        EXPECT_TRUE(is_value(b, 5)) << v;
        quoly_inplace(&a);
        EXPECT_TRUE(negtive(a->num, b->num)) << v;
        EXPECT_FALSE(quoly_iszero(a));
        quoly_set(0, &a);
        quoly_inplace(&a);
        EXPECT_TRUE(quoly_iszero(a));
        free_quoly(&a);
        free_quoly(&b);
        audit.expect_unchanged("negation");
    }
}

TEST(Sign, AFloatZeroIsNeverNegated)
{
    const in_view view(view_float);
    quolynode *a = made(0), *b = nullptr;
    quoly_makeneg(a, &b);
    EXPECT_FALSE(__builtin_signbit(b->num->real));
    quoly_inplace(&a);
    EXPECT_FALSE(__builtin_signbit(a->num->real));
    free_quoly(&a);
    free_quoly(&b);
}

TEST(Sign, AbsoluteValueAndGreatestInteger)
{
    {
        const in_view view(view_float);
        quolynode *q = made_real(-2.5);
        quoly_great_int(&q);
        EXPECT_EQ(q->num->real, -3);
        quoly_abs(&q);
        EXPECT_EQ(q->num->real, 3);
        free_quoly(&q);
    }
    {
        const in_view view(view_digits);
        quolynode *q = made(-300000000);
        quoly_great_int(&q);
        EXPECT_TRUE(is_value(q, -300000000));
        quoly_abs(&q);
        EXPECT_TRUE(is_value(q, 300000000));
        free_quoly(&q);
    }
    const in_view view(view_word);
    quolynode *q = made(-4);
    EXPECT_EQ(error_in_view([&] { quoly_great_int(&q); }), err_wrong_ring);
    quoly_abs(&q);
    EXPECT_TRUE(is_value(q, 4));
    free_quoly(&q);
}

// Flavours ----------------------------------------------------------------------------------------------

// Random operands of the live view; a divisor is nonzero, and in the digit view it divides.
void random_pair(test_random *random, quolynode **a, quolynode **b)
{
    const auto word = [&] { return static_cast<std::int32_t>(random->below(1u << 28)) - (1 << 27); };
    const bool residues = modularmode;
    quoly_set(
        residues ? static_cast<std::int32_t>(random->below(static_cast<std::uint64_t>(modulus))) : word(), a);
    quoly_set(residues ? 1 + static_cast<std::int32_t>(random->below(static_cast<std::uint64_t>(modulus) - 1))
                       : word(),
              b);
    if (quoly_iszero(*b)) quoly_set(1, b);
    if (flotemode) (*a)->num->real *= 1e-3;
    if (live_view() == view_digits) quoly_mult(*a, *b, a);
}

using three_operand = void (*)(const quolynode *, const quolynode *, quolynode **);
using in_place = void (*)(quolynode **, const quolynode *);
using consuming = void (*)(quolynode **, quolynode **);

struct flavours {
    three_operand plain;
    in_place better;
    consuming best;
};

const flavours all_flavours[] = {
    {quoly_add, better_quoly_add, best_quoly_add},
    {quoly_sub, better_quoly_sub, best_quoly_sub},
    {quoly_mult, fast_quoly_mult, nullptr},
    {[](const quolynode *a, const quolynode *b, quolynode **c) { quoly_quot(a, b, 0, c); },
     [](quolynode **a, const quolynode *b) { fast_quoly_quot(a, b, 1); }, nullptr},
};

void expect_same(const quolynode *a, const quolynode *b, const char *what)
{
    EXPECT_TRUE(equal(a->num, b->num)) << what;
    if (exact_integers() && !integerflag) {
        EXPECT_TRUE(chain_is_normal(a->num, digit_base)) << what;
    }
}

// Every flavour and aliasing of one operation on a and b.
void try_flavours(const flavours *op, const quolynode *a, const quolynode *b)
{
    quolynode *wanted = nullptr, *x = nullptr, *y = nullptr, *saved_a = nullptr, *saved_b = nullptr;
    quoly_assign(a, &saved_a);
    quoly_assign(b, &saved_b);
    op->plain(a, b, &wanted);
    expect_same(saved_a, a, "a is spared");
    expect_same(saved_b, b, "b is spared");
    quoly_assign(a, &x);
    op->plain(x, b, &x);
    expect_same(x, wanted, "the result in a");
    quoly_assign(b, &y);
    op->plain(a, y, &y);
    expect_same(y, wanted, "the result in b");
    quoly_assign(a, &x);
    op->better(&x, b);
    expect_same(x, wanted, "in place");
    expect_same(saved_b, b, "b is spared in place");
    if (op->best) {
        quoly_assign(a, &x);
        quoly_assign(b, &y);
        op->best(&x, &y);
        expect_same(x, wanted, "both consumed");
        EXPECT_EQ(y, nullptr);
    }
    quoly_assign(b, &x);
    op->plain(b, b, &wanted);
    op->better(&x, x);
    expect_same(x, wanted, "an operand with itself");
    for (quolynode **q : {&wanted, &x, &y, &saved_a, &saved_b}) free_quoly(q);
}

TEST(Flavours, AgreeInEveryViewAndAliasing)
{
    test_random random;
    for (const num_view v : {view_float, view_modular, view_word, view_small, view_digits}) {
        const in_view view(v, 2147483629);
        const record_audit audit;
        quolynode *a = nullptr, *b = nullptr;
        for (int k = 0; k < rounds && !testing::Test::HasFailure(); ++k) {
            random_pair(&random, &a, &b);
            for (const flavours &op : all_flavours) try_flavours(&op, a, b);
        }
        free_quoly(&a);
        free_quoly(&b);
        audit.expect_unchanged("flavours");
        EXPECT_FALSE(testing::Test::HasFailure()) << "view " << v;
    }
}

TEST(Operations, FloatsFollowIeee)
{
    const in_view view(view_float);
    quolynode *a = made_real(1e308), *b = made_real(10), *c = nullptr;
    quoly_mult(a, b, &c);
    EXPECT_EQ(c->num->real, std::numeric_limits<double>::infinity());
    quoly_sub(c, c, &c);
    EXPECT_TRUE(c->num->real != c->num->real) << "infinity less infinity is no number";
    quoly_quot(b, a, 0, &c);
    EXPECT_EQ(c->num->real, 1e-307);
    for (quolynode **q : {&a, &b, &c}) free_quoly(q);
}

TEST(Operations, WordsWrapAndDivideTruncated)
{
    const in_view view(view_word);
    quolynode *a = made(INT32_MIN), *b = made(-1), *c = nullptr;
    quoly_quot(a, b, 0, &c);
    EXPECT_TRUE(is_value(c, INT32_MIN));
    quoly_add(a, b, &c);
    EXPECT_TRUE(is_value(c, INT32_MAX));
    quoly_set(-7, &a);
    quoly_set(2, &b);
    quoly_quot(a, b, 0, &c);
    EXPECT_TRUE(is_value(c, -3));
    for (quolynode **q : {&a, &b, &c}) free_quoly(q);
}

TEST(Operations, LongQuotientsAreExactOrRational)
{
    const in_view view(view_digits);
    const record_audit audit;
    number n;
    number_from_text("-1000000000000000000000000000000", &n);
    quolynode *a = nullptr, *b = made(1000), *c = nullptr;
    scalar_to_quoly(&n, &a);
    EXPECT_EQ(error_in_view([&] { quoly_quot(a, b, 0, &c); }), 0);
    number wanted;
    number_from_text("-1000000000000000000000000000", &wanted);
    EXPECT_TRUE(equal(c->num, &wanted));
    EXPECT_TRUE(chain_is_normal(c->num, digit_base));
    special_free(&wanted);
    quoly_set(7, &b);
    quoly_quot(a, b, 0, &c);
    EXPECT_EQ(c->is_rat, 1);
    EXPECT_TRUE(equal(c->top->num, a->num) && is_longint(c->den->num, 7));
    for (quolynode **q : {&a, &b, &c}) free_quoly(q);
    audit.expect_unchanged("exact quotient");
}

TEST(WholeDivision, QuotientAndRemainder)
{
    for (const num_view v : {view_float, view_word, view_small, view_digits}) {
        const in_view view(v);
        const record_audit audit;
        quolynode *a = made(-17), *b = made(5), *c = nullptr;
        quoly_mod_or_div(a, b, &c, '\\');
        EXPECT_TRUE(is_value(c, -3)) << v;
        quoly_mod_or_div(a, b, &c, '|');
        EXPECT_TRUE(is_value(c, 3)) << v;
        quoly_mod_or_div(a, b, &b, '|');
        EXPECT_TRUE(is_value(b, 3)) << v;
        quoly_mod_or_div(a, c, &a, '\\');
        EXPECT_TRUE(is_value(a, -5)) << v;
        for (quolynode **q : {&a, &b, &c}) free_quoly(q);
        audit.expect_unchanged("whole division");
    }
}

// Zero divisors -----------------------------------------------------------------------------------------

TEST(ZeroDivisor, IsAnErrorAndTheOperandsStay)
{
    for (const num_view v : all_views) {
        const in_view view(v);
        const record_audit audit;
        quolynode *a = made(5), *zero = made(0), *c = made(3), *none = nullptr;
        EXPECT_EQ(error_in_view([&] { quoly_quot(a, zero, 0, &c); }), err_zero_divisor) << v;
        EXPECT_EQ(error_in_view([&] { fast_quoly_quot(&a, zero, 0); }), err_zero_divisor) << v;
        EXPECT_EQ(error_in_view([&] { quoly_mod_or_div(a, zero, &c, '|'); }), err_zero_divisor) << v;
        EXPECT_EQ(error_in_view([&] { quoly_quot(a, zero, 0, &none); }), err_zero_divisor) << v;
        EXPECT_TRUE(is_value(a, 5));
        EXPECT_TRUE(is_value(c, 3));
        EXPECT_EQ(none, nullptr);
        for (quolynode **q : {&a, &zero, &c}) free_quoly(q);
        audit.expect_unchanged("zero divisor");
    }
}

TEST(ZeroDivisor, GivesOneWhereTheErrorComesBack)
{
    for (const num_view v : all_views) {
        const in_view view(v);
        const record_audit audit;
        quolynode *a = made(5), *zero = made(0), *c = nullptr, *d = nullptr;
        {
            const level_two level;
            EXPECT_EQ(error_in_view([&] {
                          quoly_quot(a, zero, 0, &c);
                          quoly_mod_or_div(a, zero, &d, '\\');
                          fast_quoly_quot(&a, zero, 0);
                      }),
                      0);
        }
        EXPECT_TRUE(is_value(a, 1)) << v;
        EXPECT_TRUE(is_value(c, 1)) << v;
        EXPECT_TRUE(is_value(d, 1)) << v;
        for (quolynode **q : {&a, &zero, &c, &d}) free_quoly(q);
        audit.expect_unchanged("zero divisor at a level");
    }
}

TEST(ZeroDivisor, OfNumbersGivesOneForDigitsAndElseTheDividend)
{
    for (const num_view v : all_views) {
        const in_view view(v);
        quolynode *a = made(5), *zero = made(0), *c = made(3);
        {
            const level_two level;
            EXPECT_EQ(error_in_view([&] { quot(a->num, zero->num, c->num); }), 0);
        }
        EXPECT_TRUE(is_value(c, v == view_digits || v == view_small ? 1 : 5)) << v;
        for (quolynode **q : {&a, &zero, &c}) free_quoly(q);
    }
}

}  // namespace
