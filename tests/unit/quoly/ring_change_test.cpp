// Scalar values taken to another ground ring: fractions, quotients, denominators that vanish, and back.
#include "quoly/ring_change.h"
#include <gtest/gtest.h>
#include <sstream>
#include "numbers/word_mod.h"
#include "poly/variables.h"
#include "quoly/divide.h"
#include "session/report.h"
#include "tests/support/by_build.h"
#include "tests/support/quolys.h"
#include "tests/support/reports.h"
#include "tests/support/ring_brackets.h"
#include "tests/support/session_text.h"
#include "tests/support/views.h"

using namespace kelmar;
using namespace kelmar_test;

namespace {

constexpr int rounds = by_build(100, 1500);

constexpr std::int32_t primes[] = {2, 3, 7, 101, 65521, 2147483629};

void write_records(const polynode *p, std::ostringstream *out)
{
    for (; p; p = p->next) {
        *out << p << ' ' << p->exp << ' ' << p->isnum << ' ' << p->next << ' ';
        if (p->isnum) {
            *out << p->num << ' ' << p->num->head << ' ' << p->num->size << ';';
            for (const numnode *d = p->num->head; d; d = d->next) *out << d->digit << ',';
        } else {
            *out << p->coef << '(';
            write_records(p->coef, out);
            *out << ')';
        }
    }
}

// All that makes up the value, addresses included.
std::string records_of(const quolynode *q)
{
    std::ostringstream out;
    out << q << ' ' << q->is_num << ' ' << q->num << ' ';
    if (q->is_num) {
        for (const numnode *d = q->num->head; d; d = d->next) out << d->digit << ',';
        return out.str();
    }
    out << q->den << ' ' << q->is_rat << ' ';
    write_records(q->top, &out);
    out << '/';
    write_records(q->den, &out);
    return out.str();
}

// Variables x and y, so that gcds have something to name.
struct two_variables {
    two_variables()
    {
        prepare_session_once();
        insert_poly_name("y", 0, 0);
        insert_poly_name("x", 0, 0);
    }
    ~two_variables()
    {
        delete_poly_name(1);
        delete_poly_name(1);
    }
};

// top / den in lowest terms, in the live view. Takes both.
quolynode *quotient(polynode *top, polynode *den)
{
    value_operand a(top), b(den);
    quolynode *c = nullptr;
    quoly_quot(a.q, b.q, 0, &c);
    return c;
}

quolynode *quotient(const char *top, const char *den)
{
    return quotient(poly_of_text(top), poly_of_text(den));
}

std::string in_ring(const char *top, const char *den, std::int32_t p)
{
    in_view digits(view_digits);
    value_operand v;
    v.q = quotient(top, den);
    const std::string before = records_of(v.q);
    ring_bracket b;
    enter_any_modulus(p, &b);
    quoly_change_to_mod(&v.q);
    const std::string text = value_text(v.q);
    leave_ring(&b);
    EXPECT_EQ(records_of(v.q), before);
    return text;
}

std::string for_good(const char *top, const char *den, std::int32_t p)
{
    in_view digits(view_digits);
    quolynode *q = quotient(top, den);
    ring_bracket b;
    enter_any_modulus(p, &b);
    quoly_change_num(&q);
    const std::string text = value_text(q);
    free_quoly(&q);
    leave_ring(&b);
    return text;
}

}  // namespace

TEST(QuolyChangeToMod, AFractionIsAResidueAndThenAFractionAgain)
{
    const two_variables variables;
    EXPECT_EQ(in_ring("{#2}", "{#3}", 7), "{#3}");
    EXPECT_EQ(in_ring("{#7}", "{#3}", 7), "{#0}");
    in_view digits(view_digits);
    value_operand v;
    v.q = quotient("{#2}", "{#3}");
    EXPECT_EQ(v.q->is_rat, 1);
    ring_bracket b;
    enter_modulus(7, &b);
    quoly_change_to_mod(&v.q);
    EXPECT_EQ(v.q->is_num, 1);
    leave_ring(&b);
    EXPECT_EQ(v.q->is_rat, 1);
}

TEST(QuolyChangeToMod, PolynomialsMayCollapse)
{
    const two_variables variables;
    EXPECT_EQ(in_ring("{2{#7}, #3}", "{#1}", 7), "{#3}");
    EXPECT_EQ(in_ring("{2{#7}, 1{#14}}", "{#1}", 7), "{#0}");
    EXPECT_EQ(in_ring("{2{#8}, #3}", "{#2}", 7), "{2{#4}, #5}");
}

TEST(QuolyChangeToMod, QuotientsAreInLowestTermsThere)
{
    const two_variables variables;
    EXPECT_EQ(in_ring("{2{#1}, #1}", "{1{#1}, #1}", 2), "{1{#1}, #1}");
    EXPECT_EQ(in_ring("{1{#1}, #1}", "{2{#3}, #5}", 7), "{1{#5}, #5} / {2{#1}, #4}");
    EXPECT_EQ(in_ring("{1{#7}, #1}", "{1{#7}, #2}", 7), "{#4}");
}

TEST(QuolyChangeToMod, AVanishedDenominatorIsToldAndComesBack)
{
    const two_variables variables;
    const std::string text = told(
        [] { EXPECT_EQ(in_ring("{1{#1}, #1}", "{1{#7}, #14}", 7), "{1{#1}, #1}"); });
    EXPECT_NE(text.find(" *** Inappropriate symbol: "), std::string::npos);
    EXPECT_NE(text.find("A denominator has become zero."), std::string::npos);
    EXPECT_NE(text.find(" Change of precedence will continue. Some data may not be reasonably changed.\n"),
              std::string::npos);
    told([] { EXPECT_EQ(in_ring("{#3}", "{#7}", 7), "{#3}"); });
}

TEST(QuolyChangeToMod, ComesBackByteForByte)
{
    const two_variables variables;
    test_random r;
    in_view digits(view_digits);
    const poly_audit audit;
    for (int round = 0; round < rounds; ++round) {
        poly_shape shape;
        shape.vars = 2;
        shape.terms = 5;
        shape.degree = 3;
        value_operand v;
        polynode *top = random_poly(&r, shape), *den = random_poly(&r, shape);
        if (poly_iszero(den)) poly_set(7, &den);
        v.q = quotient(top, den);
        const std::string before = records_of(v.q);
        ring_bracket b;
        told([&] {
            enter_modulus(primes[r.below(std::size(primes))], &b);
            quoly_change_to_mod(&v.q);
            leave_ring(&b);
        });
        ASSERT_EQ(records_of(v.q), before);
    }
    audit.expect_unchanged("values and back");
}

TEST(QuolyChangeNum, ConvertsForGood)
{
    const two_variables variables;
    EXPECT_EQ(for_good("{#2}", "{#3}", 7), "{#3}");
    EXPECT_EQ(for_good("{#-1}", "{#1}", 101), "{#100}");
    EXPECT_EQ(for_good("{2{#7}, #3}", "{#1}", 7), "{#3}");
    EXPECT_EQ(for_good("{2{#7}, #14}", "{#1}", 7), "null");
    EXPECT_EQ(for_good("{1{#1}, #1}", "{2{#3}, #5}", 7), "{1{#5}, #5} / {2{#1}, #4}");
}

TEST(QuolyChangeNum, AVanishedDenominatorIsToldAndTheValueGoes)
{
    const two_variables variables;
    std::string value;
    EXPECT_EQ(told([&] { value = for_good("{1{#1}, #1}", "{#7}", 7); }),
              "Warning. A zero quoly denominator was found. That quoly was set to 0.\n");
    EXPECT_EQ(value, "null");
}

TEST(QuolyChangeNum, ADenominatorThatIsNoUnitIsToldAndTheValueGoes)
{
    const two_variables variables;
    std::string value;
    const std::string text = told([&] { value = for_good("{1{#1}, #1}", "{#2}", 4); });
    EXPECT_NE(text.find("This has no inverse"), std::string::npos);
    EXPECT_NE(text.find(" Change of precedence will continue."), std::string::npos);
    EXPECT_EQ(value, "null");
    EXPECT_EQ(for_good("{1{#1}, #1}", "{#3}", 4), "{1{#3}, #3}");
}

TEST(QuolyChangeNum, NeverRaisesAnErrorModuloAComposite)
{
    const two_variables variables;
    test_random r;
    const poly_audit audit;
    for (int round = 0; round < rounds; ++round) {
        in_view digits(view_digits);
        poly_shape shape;
        shape.vars = 2;
        shape.terms = 4;
        shape.degree = 2;
        polynode *top = random_poly(&r, shape), *den = random_poly(&r, shape);
        if (poly_iszero(den)) poly_set(7, &den);
        quolynode *q = quotient(top, den);
        ring_bracket b;
        told([&] {
            EXPECT_EQ(caught_error([&] {
                          enter_any_modulus(r.below(2) ? 6 : 12, &b);
                          quoly_change_num(&q);
                      }),
                      0);
        });
        free_quoly(&q);
        leave_ring(&b);
    }
    audit.expect_unchanged("composite moduli");
}

TEST(QuolyChangeToFlote, DividesNumbersInAndMakesDenominatorsMonic)
{
    const two_variables variables;
    const auto as_float = [](const char *top, const char *den) {
        in_view digits(view_digits);
        quolynode *q = quotient(top, den);
        quoly_change_to_flote(&q);
        in_view doubles(view_float);
        const std::string text = value_text(q);
        EXPECT_TRUE(q->is_num || !q->is_rat);
        free_quoly(&q);
        return text;
    };
    EXPECT_EQ(as_float("{#1}", "{#4}"), "{#0.25}");
    EXPECT_EQ(as_float("{#-6}", "{#1}"), "{#-6}");
    EXPECT_EQ(as_float("{1{#1}, #3}", "{#4}"), "{1{#0.25}, #0.75}");
    EXPECT_EQ(as_float("{1{#1}, #3}", "{2{#4}, #1}"), "{1{#0.25}, #0.75} / {2{#1}, #0.25}");
}

TEST(QuolyChangeToFlote, ReleasesTheDigits)
{
    const two_variables variables;
    test_random r;
    const poly_audit audit;
    for (int round = 0; round < rounds; ++round) {
        in_view digits(view_digits);
        poly_shape shape;
        shape.vars = 2;
        shape.terms = 4;
        shape.degree = 3;
        shape.digits = 3;
        polynode *top = random_poly(&r, shape), *den = random_poly(&r, shape);
        if (poly_iszero(den)) poly_set(7, &den);
        quolynode *q = quotient(top, den);
        quoly_change_to_flote(&q);
        in_view doubles(view_float);
        EXPECT_TRUE(q->is_num || poly_is_normal(q->top, 2));
        EXPECT_TRUE(q->is_num || !q->den || !is_constant(q->den));
        free_quoly(&q);
    }
    audit.expect_unchanged("doubles");
}
