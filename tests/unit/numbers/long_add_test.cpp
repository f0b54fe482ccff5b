// tests/unit/numbers/long_add_test.cpp -- sums and differences of digit chains.
#include "numbers/long_add.h"
#include <gtest/gtest.h>
#include "numbers/compare.h"
#include "tests/support/by_build.h"
#include "tests/support/long_numbers.h"

namespace kelmar_test {

using namespace kelmar;

constexpr int rounds = by_build(100000, 1000000);

// b = a value that shares leading digits with a, or is near it, or is a stranger.
static void draw_partner(test_random *r, const long_operand *a, long_operand *b, std::int32_t digits)
{
    const std::uint64_t kind = r->below(4);
    if (kind >= 2) return b->draw(r, digits);
    biased_mpz(r, kind == 0 ? 1 : digits, true, b->z);
    mpz_add(b->z, b->z, a->z);
    if (r->below(2)) mpz_neg(b->z, b->z);
    b->load();
}

static std::int32_t some_size(test_random *r)
{
    return 1 + static_cast<std::int32_t>(r->below(r->below(8) == 0 ? 40 : 5));
}

// Edges -------------------------------------------------------------------------------------------------

TEST(LongAdd, BaseMinusOnePlusOneGivesTwoDigits)
{
    record_audit audit;
    number a = chain_of({digit_mask}), b = chain_of({1});
    fastsum(&a, &b);
    expect_digits(&a, {1, 0});
    special_free(&a);
    a = chain_of({-digit_mask});
    fastdiff(&a, &b);
    expect_digits(&a, {-1, 0});
    special_free(&a);
    special_free(&b);
    audit.expect_unchanged("base minus one");
}

TEST(LongAdd, BaseMinusOneStripsTheHead)
{
    record_audit audit;
    number a = chain_of({1, 0}), b = chain_of({1}), c;
    c.size = 0;
    meddiff(a.size, b.size, a.head, b.head, &c);
    expect_digits(&c, {digit_mask});
    fastdiff(&a, &b);
    expect_digits(&a, {digit_mask});
    special_free(&a);
    special_free(&b);
    special_free(&c);
    audit.expect_unchanged("base less one");
}

TEST(LongAdd, BaseSquaredMinusOneIsMendedBackToTheHead)
{
    record_audit audit;
    number a = chain_of({1, 0, 0}), b = chain_of({1}), c;
    c.size = 0;
    diff(a.head, a.size, &b, &c, digit_base);
    expect_digits(&c, {digit_mask, digit_mask});
    fastsum(&c, &b);
    expect_digits(&c, {1, 0, 0});
    special_free(&a);
    special_free(&b);
    special_free(&c);
    audit.expect_unchanged("base squared less one");
}

TEST(LongAdd, MinusItselfIsOneZeroNode)
{
    for (std::int32_t size = 1; size <= 6; ++size) {
        record_audit audit;
        long_operand a, c;
        mpz_ui_pow_ui(a.z, 3, static_cast<unsigned long>(17 * size));
        a.load();
        meddiff(a.n.size, a.n.size, a.n.head, a.n.head, &c.n);
        expect_digits(&c.n, {0});
        fastdiff(&a.n, &a.n);
        expect_digits(&a.n, {0});
    }
}

TEST(LongAdd, PlusItsNegativeLeavesOneNodeInPlace)
{
    record_audit audit;
    number a = chain_of({5, 0, 7}), b = chain_of({-5, 0, -7});
    fastsum(&a, &b);
    expect_digits(&a, {0});
    special_free(&a);
    special_free(&b);
    audit.expect_unchanged("a + -a");
}

TEST(LongAdd, NegativePlusLongerPositiveIsAllPositive)
{
    record_audit audit;
    number a = chain_of({-3, -9}), b = chain_of({1, 0, 0, 5}), c;
    c.size = 0;
    summ(&a, &b, &c, digit_base);
    expect_digits(&c, {digit_mask, digit_base - 4, digit_base - 4});
    fastsum(&a, &b);
    EXPECT_EQ(a.size, c.size);
    expect_digits(&a, {digit_mask, digit_base - 4, digit_base - 4});
    special_free(&a);
    special_free(&b);
    special_free(&c);
    audit.expect_unchanged("mixed signs");
}

TEST(LongAdd, LeadingDigitsThatCancelAreReleasedInPlace)
{
    record_audit audit;
    number a = chain_of({7, 8, 9, 1}), b = chain_of({7, 8, 8, digit_mask});
    fastdiff(&a, &b);
    expect_digits(&a, {2});
    special_free(&a);
    special_free(&b);
    audit.expect_unchanged("cancelling heads");
}

TEST(LongAdd, ZeroIsNeutralOnBothSides)
{
    record_audit audit;
    number zero = chain_of({0}), a = chain_of({-4, 0, -1}), c;
    c.size = 0;
    summ(&zero, &a, &c, digit_base);
    expect_digits(&c, {-4, 0, -1});
    diff(zero.head, zero.size, &a, &c, digit_base);
    expect_digits(&c, {4, 0, 1});
    fastsum(&zero, &a);
    expect_digits(&zero, {-4, 0, -1});
    special_free(&zero);
    special_free(&a);
    special_free(&c);
    audit.expect_unchanged("zero");
}

TEST(LongAdd, DecimalGroupsCarryAtTenToTheEighth)
{
    record_audit audit;
    number a = chain_of({99999999, 99999999}), b = chain_of({1}), c;
    c.size = 0;
    summ(&a, &b, &c, decimal_base);
    expect_digits(&c, {1, 0, 0});
    diff(c.head, c.size, &b, &c, decimal_base);
    expect_digits(&c, {99999999, 99999999});
    special_free(&a);
    special_free(&b);
    special_free(&c);
    audit.expect_unchanged("decimal groups");
}

TEST(LongAdd, HalvesOfAChainAreOperands)
{
    record_audit audit;
    number a = chain_of({1, 2, 3, digit_mask});
    medsum(2, 2, a.head, a.head->next->next, &a);  // the result takes the place of what holds both
    expect_digits(&a, {5, 1});
    special_free(&a);
    audit.expect_unchanged("halves");
}

// Against GMP -------------------------------------------------------------------------------------------

TEST(LongAdd, InPlaceAgreesWithGmp)
{
    test_random r;
    record_audit audit;
    {
        long_operand a, b;
        for (int i = 0; i < rounds; ++i) {
            const std::int32_t digits = some_size(&r);
            if (i % 16 == 0) a.draw(&r, digits);  // else the last result goes on
            draw_partner(&r, &a, &b, digits);
            const bool minus = r.below(2);
            if (minus) {
                fastdiff(&a.n, &b.n);
                mpz_sub(a.z, a.z, b.z);
            } else {
                fastsum(&a.n, &b.n);
                mpz_add(a.z, a.z, b.z);
            }
            ASSERT_TRUE(holds_value(&a.n, a.z, digit_base)) << "round " << i;
            ASSERT_TRUE(holds_value(&b.n, b.z, digit_base)) << "spared operand, round " << i;
        }
    }
    audit.expect_unchanged("in place");
}

TEST(LongAdd, InPlaceWithItselfAgreesWithGmp)
{
    test_random r;
    record_audit audit;
    {
        long_operand a;
        for (int i = 0; i < rounds / 4; ++i) {
            a.draw(&r, some_size(&r));
            fastsum(&a.n, &a.n);
            mpz_add(a.z, a.z, a.z);
            ASSERT_TRUE(holds_value(&a.n, a.z, digit_base)) << "round " << i;
            fastdiff(&a.n, &a.n);
            ASSERT_TRUE(is_longint(&a.n, 0));
        }
    }
    audit.expect_unchanged("with itself");
}

TEST(LongAdd, ApartAgreesWithGmpUnderEveryAlias)
{
    test_random r;
    record_audit audit;
    {
        long_operand a, b, c;
        for (int i = 0; i < rounds; ++i) {
            const std::int32_t digits = some_size(&r);
            a.draw(&r, digits);
            draw_partner(&r, &a, &b, digits);
            const std::uint64_t form = r.below(4), alias = r.below(4);
            long_operand *to = alias == 0 ? &a : alias == 1 ? &b : &c;
            const long_operand *x = &a, *y = alias == 3 ? &a : &b;
            mpz_t sum;
            mpz_init(sum);
            if (form < 2) {
                mpz_add(sum, x->z, y->z);
            } else {
                mpz_sub(sum, x->z, y->z);
            }
            switch (form) {
            case 0: medsum(x->n.size, y->n.size, x->n.head, y->n.head, &to->n); break;
            case 1: summ(&x->n, &y->n, &to->n, digit_base); break;
            case 2: meddiff(x->n.size, y->n.size, x->n.head, y->n.head, &to->n); break;
            default: diff(x->n.head, x->n.size, &y->n, &to->n, digit_base); break;
            }
            mpz_swap(to->z, sum);
            mpz_clear(sum);
            ASSERT_TRUE(holds_value(&a.n, a.z, digit_base)) << "round " << i;
            ASSERT_TRUE(holds_value(&b.n, b.z, digit_base)) << "round " << i;
            ASSERT_TRUE(to != &c || holds_value(&c.n, c.z, digit_base)) << "round " << i;
        }
    }
    audit.expect_unchanged("apart");
}

// A base 10^8 chain of the value z, |z| small enough for any test here.
static number decimal_chain(const mpz_t z)
{
    mpz_t rest;
    mpz_init_set(rest, z);
    number n;
    n.size = 0;
    n.head = n.tail = nullptr;
    const bool negative = mpz_sgn(z) < 0;
    mpz_abs(rest, rest);
    do {
        const std::int32_t digit = static_cast<std::int32_t>(mpz_tdiv_q_ui(rest, rest, decimal_base));
        n.head = new_digit(negative ? -digit : digit, n.head);
        if (!n.tail) n.tail = n.head;
        ++n.size;
    } while (mpz_sgn(rest) != 0);
    mpz_clear(rest);
    return n;
}

// z = a value whose decimal groups are often 0, 1 and 99999999.
static void draw_decimal(test_random *r, mpz_t z)
{
    mpz_set_ui(z, 0);
    for (std::uint64_t groups = 1 + r->below(5); groups > 0; --groups) {
        const std::uint64_t kind = r->below(4);
        mpz_mul_ui(z, z, decimal_base);
        const std::uint64_t group[4] = {0, 1, decimal_base - 1, r->below(decimal_base)};
        mpz_add_ui(z, z, group[kind]);
    }
    if (r->below(2)) mpz_neg(z, z);
}

TEST(LongAdd, DecimalBaseAgreesWithGmp)
{
    test_random r;
    record_audit audit;
    mpz_t za, zb;
    mpz_init(za);
    mpz_init(zb);
    for (int i = 0; i < rounds; ++i) {
        draw_decimal(&r, za);
        draw_decimal(&r, zb);
        number a = decimal_chain(za), b = decimal_chain(zb), c;
        c.size = 0;
        number *to = r.below(3) == 0 ? &a : &c;
        if (r.below(2)) {
            summ(&a, &b, to, decimal_base);
            mpz_add(za, za, zb);
        } else {
            diff(a.head, a.size, &b, to, decimal_base);
            mpz_sub(za, za, zb);
        }
        ASSERT_TRUE(holds_value(to, za, decimal_base)) << "round " << i;
        ASSERT_TRUE(holds_value(&b, zb, decimal_base)) << "round " << i;
        special_free(&a);
        special_free(&b);
        special_free(&c);
    }
    mpz_clear(za);
    mpz_clear(zb);
    audit.expect_unchanged("decimal");
}

// The live view -----------------------------------------------------------------------------------------

TEST(Sub, FloatView)
{
    flotemode = lintmode = 1;
    number a, b;
    a.size = b.size = 0;
    a.real = 2.5;
    b.real = 4;
    sub(&a, &b, &a);
    flotemode = lintmode = 0;
    EXPECT_EQ(a.real, -1.5);
}

TEST(Sub, WordsWrap)
{
    lintmode = 1;
    number a, b;
    a.size = b.size = 0;
    a.word = -2147483647 - 1;
    b.word = 1;
    sub(&a, &b, &a);
    lintmode = 0;
    EXPECT_EQ(a.word, 2147483647);
}

TEST(Sub, ResiduesStayInRange)
{
    modularmode = lintmode = 1;
    modulus = 2147483646;
    number a, b;
    a.size = b.size = 0;
    a.word = 0;
    b.word = 2147483645;
    sub(&a, &b, &b);
    EXPECT_EQ(b.word, 1);
    finf = 1;
    a.word = 6;
    b.word = 5;
    sub(&a, &b, &b);
    EXPECT_EQ(b.word, 3);
    finf = modularmode = lintmode = 0;
    modulus = -1;
}

TEST(Sub, DigitsAgreeWithGmpUnderEveryAlias)
{
    test_random r;
    record_audit audit;
    {
        long_operand a, b, c;
        for (int i = 0; i < rounds / 2; ++i) {
            const std::int32_t digits = some_size(&r);
            a.draw(&r, digits);
            draw_partner(&r, &a, &b, digits);
            const std::uint64_t alias = r.below(4);
            long_operand *to = alias == 0 ? &a : alias == 1 ? &b : &c;
            const long_operand *y = alias == 3 ? &a : &b;
            sub(&a.n, &y->n, &to->n);
            mpz_sub(to->z, a.z, y->z);
            ASSERT_TRUE(holds_value(&to->n, to->z, digit_base)) << "round " << i;
            ASSERT_TRUE(holds_value(&a.n, a.z, digit_base)) << "round " << i;
        }
        sub(&a.n, &a.n, &a.n);
        EXPECT_TRUE(is_longint(&a.n, 0));
    }
    audit.expect_unchanged("sub");
}

TEST(LongAdd, ModeFlagsSayNothingToTheChainForms)
{
    number a = chain_of({3, 4}), b = chain_of({3, 5}), c;
    c.size = 0;
    flotemode = lintmode = 1;
    meddiff(a.size, b.size, a.head, b.head, &c);
    fastsum(&a, &b);
    flotemode = lintmode = 0;
    expect_digits(&c, {-1});
    expect_digits(&a, {6, 9});
    special_free(&a);
    special_free(&b);
    special_free(&c);
}

}  // namespace kelmar_test
