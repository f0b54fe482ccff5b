// Rational numbers: every operation in every flavour against GMP, aliases, zero divisors, order.
#include "quoly/rational.h"
#include <gtest/gtest.h>
#include "quoly/add.h"
#include "quoly/divide.h"
#include "quoly/mul.h"
#include "session/report.h"
#include "tests/support/by_build.h"
#include "tests/support/catch_error.h"
#include "tests/support/quolys.h"
#include "tests/support/views.h"

using namespace kelmar;
using namespace kelmar_test;

namespace {

constexpr int rounds = by_build(1000, 20000);

// A rational of a test beside the value that it should have.
struct rational_operand {
    quolynode *q = nullptr;
    mpq_t v;
    rational_operand()
    {
        mpq_init(v);
    }
    ~rational_operand()
    {
        if (q) free_quoly(&q);
        mpq_clear(v);
    }
    rational_operand(const rational_operand &) = delete;
    rational_operand &operator=(const rational_operand &) = delete;

    // Numerator and denominator of up to `digits` digits each; one in four is whole, one in eight zero.
    void draw(test_random *r, std::int32_t digits)
    {
        biased_mpz(r, 1 + static_cast<std::int32_t>(r->below(static_cast<std::uint64_t>(digits))), true,
                   mpq_numref(v));
        biased_mpz(r, 1 + static_cast<std::int32_t>(r->below(static_cast<std::uint64_t>(digits))), false,
                   mpq_denref(v));
        if (r->below(8) == 0) mpz_set_ui(mpq_numref(v), 0);
        if (r->below(4) == 0 || mpz_sgn(mpq_denref(v)) == 0) mpz_set_ui(mpq_denref(v), 1);
        load();
    }
    // A denominator that shares a factor with that of `other`, as sums in practice do.
    void draw_related(test_random *r, std::int32_t digits, const rational_operand &other)
    {
        draw(r, digits);
        if (r->below(3) == 0) mpz_mul(mpq_denref(v), mpq_denref(v), mpq_denref(other.v));
        if (r->below(3) == 0) mpz_mul(mpq_numref(v), mpq_numref(v), mpq_denref(other.v));
        if (r->below(6) == 0) mpz_set(mpq_denref(v), mpq_denref(other.v));
        load();
    }
    void load()
    {
        number n, d;
        number_from_mpz(mpq_numref(v), &n);
        number_from_mpz(mpq_denref(v), &d);
        quot_numbs(&n, &d, &q);
        special_free(&n);
        special_free(&d);
        mpq_canonicalize(v);
    }
};

bool holds(const quolynode *q, const mpq_t v)
{
    if (!quoly_is_normal(q, 1)) return false;
    if (q->is_num) return mpz_cmp_ui(mpq_denref(v), 1) == 0 && holds_value(q->num, mpq_numref(v));
    return q->is_rat && holds_value(q->top->num, mpq_numref(v)) && holds_value(q->den->num, mpq_denref(v));
}

using spared_operation = void (*)(const quolynode *, const quolynode *, quolynode **);
using in_place_operation = void (*)(quolynode **, const quolynode *);
using consuming_operation = void (*)(quolynode **, quolynode **);
using reference_operation = void (*)(mpq_t, const mpq_t, const mpq_t);

struct operation {
    const char *name;
    spared_operation spared;
    in_place_operation in_place;
    consuming_operation consuming;
    reference_operation reference;
};

const operation operations[] = {
    {"sum", quoly_add, better_quoly_add, best_quoly_add,
     [](mpq_t c, const mpq_t a, const mpq_t b) { mpq_add(c, a, b); }},
    {"difference", quoly_sub, better_quoly_sub, best_quoly_sub,
     [](mpq_t c, const mpq_t a, const mpq_t b) { mpq_sub(c, a, b); }},
    {"product", quoly_mult, fast_quoly_mult, nullptr,
     [](mpq_t c, const mpq_t a, const mpq_t b) { mpq_mul(c, a, b); }},
    {"quotient", [](const quolynode *a, const quolynode *b, quolynode **c) { quoly_quot(a, b, 0, c); },
     [](quolynode **a, const quolynode *b) { fast_quoly_quot(a, b, 0); }, nullptr,
     [](mpq_t c, const mpq_t a, const mpq_t b) { mpq_div(c, a, b); }},
    {"// quotient", [](const quolynode *a, const quolynode *b, quolynode **c) { quoly_quot(a, b, 1, c); },
     [](quolynode **a, const quolynode *b) { fast_quoly_quot(a, b, 1); }, nullptr,
     [](mpq_t c, const mpq_t a, const mpq_t b) { mpq_div(c, a, b); }},
};

void check_operation(const operation &op, const rational_operand &a, const rational_operand &b)
{
    rational_operand wanted;
    op.reference(wanted.v, a.v, b.v);
    quolynode *c = nullptr;
    op.spared(a.q, b.q, &c);
    EXPECT_TRUE(holds(c, wanted.v)) << op.name << " " << value_text(a.q) << " , " << value_text(b.q) << " = "
                                    << value_text(c);
    EXPECT_TRUE(holds(a.q, a.v) && holds(b.q, b.v)) << op.name << " alters an operand";
    op.spared(a.q, b.q, &c);
    EXPECT_TRUE(holds(c, wanted.v)) << op.name << " on an old result";

    quoly_assign(a.q, &c);
    op.spared(c, b.q, &c);
    EXPECT_TRUE(holds(c, wanted.v)) << op.name << " on the first";
    quoly_assign(b.q, &c);
    op.spared(a.q, c, &c);
    EXPECT_TRUE(holds(c, wanted.v)) << op.name << " on the second";
    quoly_assign(a.q, &c);
    op.in_place(&c, b.q);
    EXPECT_TRUE(holds(c, wanted.v)) << op.name << " in place";
    if (op.consuming) {
        quolynode *second = nullptr;
        quoly_assign(a.q, &c);
        quoly_assign(b.q, &second);
        op.consuming(&c, &second);
        EXPECT_TRUE(holds(c, wanted.v)) << op.name << " of both consumed";
        EXPECT_EQ(second, nullptr);
    }
    free_quoly(&c);
}

TEST(Rational, OperationsInEveryFlavourAgreeWithGmp)
{
    test_random r;
    const in_view live(view_digits);
    for (int round = 0; round < rounds; ++round) {
        const poly_audit audit;
        {
            const std::int32_t digits = round % 8 == 0 ? 6 : 1 + round % 3;
            rational_operand a, b;
            a.draw(&r, digits);
            b.draw_related(&r, digits, a);
            EXPECT_TRUE(holds(a.q, a.v) && holds(b.q, b.v)) << value_text(a.q) << " , " << value_text(b.q);
            const bool zero = quoly_iszero(b.q);
            for (const operation &op : operations) {
                if (op.name[0] == 'q' && zero) continue;
                if (op.name[0] == '/' && zero) continue;
                check_operation(op, a, b);
            }
        }
        audit.expect_unchanged("rational operations");
        if (HasFailure()) FAIL() << "seed " << r.seed;
    }
}

TEST(Rational, ALongOperandBesideASingleDigit)
{
    test_random r;
    const in_view live(view_digits);
    for (int round = 0; round < rounds; ++round) {
        const poly_audit audit;
        {
            rational_operand a, b;
            b.draw(&r, 1);
            a.draw(&r, 2 + round % 9);
            // The denominators share a factor, and the sum may lose it again.
            mpz_mul_ui(mpq_denref(a.v), mpq_denref(a.v), 1 + r.below(60));
            mpz_mul_ui(mpq_numref(a.v), mpq_numref(a.v), 1 + r.below(60));
            a.load();
            if (round % 3 != 0) {
                mpq_set_si(b.v, static_cast<long>(r.below(200)) - 100, 1 + r.below(60));
                mpq_canonicalize(b.v);
                b.load();
            }
            for (const operation &op : operations) {
                const bool divides = op.name[0] == 'q' || op.name[0] == '/';
                if (!(divides && quoly_iszero(b.q))) check_operation(op, a, b);
                if (!(divides && quoly_iszero(a.q))) check_operation(op, b, a);
            }
        }
        audit.expect_unchanged("a long operand and a short one");
        if (HasFailure()) FAIL() << "seed " << r.seed;
    }
}

TEST(Rational, OneValueAsBothOperands)
{
    test_random r;
    const in_view live(view_digits);
    for (int round = 0; round < rounds / 10; ++round) {
        const poly_audit audit;
        {
            rational_operand a, wanted;
            a.draw(&r, 3);
            if (quoly_iszero(a.q)) continue;
            for (const operation &op : operations) {
                op.reference(wanted.v, a.v, a.v);
                quolynode *c = nullptr;
                op.spared(a.q, a.q, &c);
                EXPECT_TRUE(holds(c, wanted.v)) << op.name << " of a with itself";
                quoly_assign(a.q, &c);
                op.in_place(&c, c);
                EXPECT_TRUE(holds(c, wanted.v)) << op.name << " in place with itself";
                quoly_assign(a.q, &c);
                op.spared(c, c, &c);
                EXPECT_TRUE(holds(c, wanted.v)) << op.name << " all three the same";
                free_quoly(&c);
            }
        }
        audit.expect_unchanged("one operand");
        if (HasFailure()) FAIL() << "seed " << r.seed;
    }
}

TEST(Rational, OrderIsThatOfGmp)
{
    test_random r;
    const in_view live(view_digits);
    for (int round = 0; round < rounds; ++round) {
        rational_operand a, b;
        a.draw(&r, 3);
        b.draw_related(&r, 3, a);
        if (round % 5 == 0) mpq_set(b.v, a.v), b.load();
        const int order = mpq_cmp(a.v, b.v);
        EXPECT_EQ(compare_rats(a.q, b.q), order < 0 ? -1 : order > 0 ? 1 : 0) << "seed " << r.seed;
        EXPECT_EQ(quoly_equal(a.q, b.q), order == 0);
    }
}

TEST(Rational, GreatestWholeNumberAndMagnitude)
{
    test_random r;
    const in_view live(view_digits);
    const poly_audit audit;
    for (int round = 0; round < rounds / 4; ++round) {
        rational_operand a, wanted;
        a.draw(&r, 3);
        mpz_fdiv_q(mpq_numref(wanted.v), mpq_numref(a.v), mpq_denref(a.v));
        quolynode *c = nullptr;
        quoly_assign(a.q, &c);
        quoly_great_int(&c);
        EXPECT_TRUE(holds(c, wanted.v)) << "seed " << r.seed << " " << value_text(a.q);
        mpq_abs(wanted.v, a.v);
        quoly_assign(a.q, &c);
        quoly_abs(&c);
        EXPECT_TRUE(holds(c, wanted.v)) << "seed " << r.seed << " " << value_text(a.q);
        mpq_neg(wanted.v, a.v);
        quoly_makeneg(a.q, &c);
        EXPECT_TRUE(holds(c, wanted.v)) << "seed " << r.seed << " " << value_text(a.q);
        free_quoly(&c);
    }
    audit.expect_unchanged("floor");
}

TEST(Rational, ReciprocalTurnsOverInPlace)
{
    test_random r;
    const in_view live(view_digits);
    const poly_audit audit;
    for (int round = 0; round < rounds / 4; ++round) {
        rational_operand a;
        a.draw(&r, 3);
        if (quoly_iszero(a.q)) continue;
        mpq_inv(a.v, a.v);
        quoly_reciprocal(&a.q);
        EXPECT_TRUE(holds(a.q, a.v)) << "seed " << r.seed << " " << value_text(a.q);
    }
    audit.expect_unchanged("reciprocal");
}

quolynode *quotient(std::int32_t a, std::int32_t b)
{
    quolynode *p = nullptr, *q = nullptr;
    quoly_set(a, &p);
    quoly_set(b, &q);
    fast_quoly_quot(&p, q, 0);
    free_quoly(&q);
    return p;
}

TEST(Rational, HalfAndHalfIsThePlainNumberOne)
{
    const in_view live(view_digits);
    const poly_audit audit;
    quolynode *a = quotient(1, 2), *b = quotient(1, 2);
    EXPECT_EQ(value_text(a), "{#1} / {#2}");
    EXPECT_EQ(a->is_rat, 1);
    best_quoly_add(&a, &b);
    EXPECT_TRUE(a->is_num);
    EXPECT_EQ(value_text(a), "{#1}");
    free_quoly(&a);
    audit.expect_unchanged("halves");
}

TEST(Rational, ReciprocalsOfUnitsStayPlain)
{
    const in_view live(view_digits);
    for (const std::int32_t v : {1, -1}) {
        quolynode *q = nullptr;
        quoly_set(v, &q);
        quoly_reciprocal(&q);
        EXPECT_TRUE(q->is_num);
        EXPECT_EQ(q->num->head->digit, v);
        free_quoly(&q);
        q = quotient(v, 7);
        quoly_reciprocal(&q);
        EXPECT_TRUE(q->is_num);
        EXPECT_EQ(q->num->head->digit, 7 * v);
        free_quoly(&q);
    }
    quolynode *q = quotient(-2, 7);
    quoly_reciprocal(&q);
    EXPECT_EQ(value_text(q), "{#-7} / {#2}");
    free_quoly(&q);
}

TEST(Rational, DivisionByZeroIsAnErrorAndNothingChanges)
{
    const in_view live(view_digits);
    const poly_audit audit;
    quolynode *a = quotient(2, 3), *zero = nullptr, *c = quotient(1, 5);
    quoly_set(0, &zero);
    EXPECT_EQ(error_in_view([&] { quoly_quot(a, zero, 0, &c); }), err_zero_divisor);
    EXPECT_EQ(error_in_view([&] { fast_quoly_quot(&a, zero, 1); }), err_zero_divisor);
    EXPECT_EQ(error_in_view([&] { quoly_reciprocal(&zero); }), err_zero_divisor);
    EXPECT_EQ(error_in_view([&] { quot_rat_numb(a, zero->num, &c); }), err_zero_divisor);
    EXPECT_EQ(value_text(a), "{#2} / {#3}");
    EXPECT_EQ(value_text(c), "{#1} / {#5}");
    EXPECT_TRUE(quoly_iszero(zero));
    for (quolynode **q : {&a, &zero, &c}) free_quoly(q);
    audit.expect_unchanged("zero divisor");
}

TEST(Rational, SumInPlaceTakesNoRecord)
{
    const in_view live(view_digits);
    quolynode *a = quotient(1, 6), *b = quotient(1, 35);
    const poly_audit before;
    better_quoly_add(&a, b);
    before.expect_unchanged("1/6 + 1/35 in place");
    EXPECT_EQ(value_text(a), "{#41} / {#210}");
    free_quoly(&a);
    free_quoly(&b);
}

}  // namespace
