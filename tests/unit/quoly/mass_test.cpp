// Masses and storage of scalar values: plain numbers, polynomials, quotients.
#include "quoly/mass.h"
#include <gtest/gtest.h>
#include "poly/mass.h"
#include "quoly/quoly.h"
#include "storage/accounting.h"
#include "storage/low_memory.h"
#include "tests/support/polys.h"
#include "tests/support/views.h"

using namespace kelmar;
using namespace kelmar_test;

namespace {

// top / den, or top alone.
quolynode *value_of(const char *top, const char *den)
{
    quolynode *q = nullptr;
    newquoly(&q);
    q->is_num = 0;
    q->top = poly_of_text(top);
    q->den = den ? poly_of_text(den) : nullptr;
    q->is_rat = 0;
    return q;
}

constexpr const char *cubic = "{3{#5}, 1{#7}, #-2}";
constexpr const char *square = "{2{#1}, #100}";

TEST(QuolyMass, NumeratorPlusDenominator)
{
    const in_view live(view_digits);
    quolynode *q = value_of(cubic, square);
    EXPECT_EQ(quoly_mass(q), (3 + 1 + 1) + (2 + 1));
    EXPECT_EQ(better_quoly_mass(q), (4 + 2 + 1) + (3 + 1));
    EXPECT_EQ(quoly_max_digits(q), 7) << "the larger of both";
    free_quoly(&q);
    q = value_of(cubic, nullptr);
    EXPECT_EQ(quoly_mass(q), 3 + 1 + 1);
    EXPECT_EQ(better_quoly_mass(q), 4 + 2 + 1);
    EXPECT_EQ(quoly_max_digits(q), 3);
    free_quoly(&q);
}

TEST(QuolyMass, OfAPlainNumberIsItsSize)
{
    const in_view live(view_digits);
    quolynode *q = nullptr;
    quoly_set(1 << 28, &q);
    q->den = nullptr;
    EXPECT_EQ(quoly_mass(q), 2);
    EXPECT_EQ(better_quoly_mass(q), 2);
    EXPECT_EQ(quoly_max_digits(q), 29);
    free_quoly(&q);
    const in_view words(view_modular);
    quoly_set(17, &q);
    EXPECT_EQ(quoly_mass(q), 1);
    free_quoly(&q);
}

TEST(QuolyMass, TheRestOfAPlainNumberIsNotLookedAt)
{
    const in_view live(view_digits);
    polynode poison = {5, 0, nullptr, {nullptr}};
    quolynode *q = nullptr;
    quoly_set(3, &q);
    q->den = &poison;
    q->is_rat = 1;
    EXPECT_EQ(quoly_mass(q), 1);
    EXPECT_EQ(quoly_max_digits(q), 2);
    EXPECT_EQ(sizequoly(q), 20 + 32 + 8);
    q->den = nullptr;
    free_quoly(&q);
}

TEST(QuolyMass, TwoHeavyPartsWeighNoMoreThanTheLimit)
{
    const in_view live(view_digits);
    quolynode *q = value_of("{2147483647{#1}, #1}", "{2147483647{#1}, #1}");
    EXPECT_EQ(quoly_mass(q), 33554430);
    EXPECT_EQ(better_quoly_mass(q), 33554430);
    free_quoly(&q);
    q = value_of("{33554428{#1}}", "{#1}");
    EXPECT_EQ(quoly_mass(q), 33554429);
    free_quoly(&q);
    q = value_of("{33554429{#1}}", "{#1}");
    EXPECT_EQ(quoly_mass(q), 33554430);
    free_quoly(&q);
}

TEST(SizeQuoly, AllThatAValueHolds)
{
    const in_view live(view_digits);
    quolynode *q = value_of(cubic, square);
    EXPECT_EQ(sizequoly(q), 20 + (5 * 16 + 3 * 40) + (3 * 16 + 2 * 40));
    EXPECT_EQ(sizequoly(q), 20 + sizepoly(q->top) + sizepoly(q->den));
    free_quoly(&q);
    q = value_of(cubic, nullptr);
    EXPECT_EQ(sizequoly(q), 20 + (5 * 16 + 3 * 40));
    free_quoly(&q);
}

TEST(SizeQuoly, TheGcdStashCountsPolynomials)
{
    const in_view live(view_digits);
    const poly_audit audit;
    const std::int64_t before = mass_gcd_stash();
    for (const int list : {0, 0, 366}) {
        quolynode *entry = value_of(cubic, square);
        entry->next = gcd_stash[list];
        gcd_stash[list] = entry;
    }
    EXPECT_EQ(mass_gcd_stash() - before, 3 * (20 + 5 * 16 + 3 * 40 + 3 * 16 + 2 * 40));
    release_gcd_stash();
    EXPECT_EQ(mass_gcd_stash(), before);
    audit.expect_unchanged("the gcd stash");
}

}  // namespace
