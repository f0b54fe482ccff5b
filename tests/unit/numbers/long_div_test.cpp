// tests/unit/numbers/long_div_test.cpp -- quotients and remainders of long integers.
#include "numbers/long_div.h"
#include <gtest/gtest.h>
#include "numbers/compare.h"
#include "numbers/limb_div.h"
#include "numbers/long_add.h"
#include "numbers/long_mul.h"
#include "tests/support/by_build.h"
#include "tests/support/long_numbers.h"

namespace kelmar_test {

using namespace kelmar;

constexpr int rounds = by_build(100000, 1000000);

static void expect_division(const number *a, const number *b, const char *quotient, const char *remainder)
{
    number q, r;
    q.size = r.size = 0;
    divide(a, b, &q, &r);
    long_operand wanted;
    mpz_set_str(wanted.z, quotient, 10);
    EXPECT_TRUE(holds_value(&q, wanted.z)) << "quotient " << quotient;
    mpz_set_str(wanted.z, remainder, 10);
    EXPECT_TRUE(holds_value(&r, wanted.z)) << "remainder " << remainder;
    special_free(&q);
    special_free(&r);
}

static void expect_division_of(const char *a, const char *b, const char *quotient, const char *remainder)
{
    record_audit audit;
    number x, y;
    number_from_text(a, &x);
    number_from_text(b, &y);
    expect_division(&x, &y, quotient, remainder);
    special_free(&x);
    special_free(&y);
    audit.expect_unchanged(a);
}

// q, r = what divide gives for a and b.
static void wanted_division(const mpz_t a, const mpz_t b, mpz_t q, mpz_t r)
{
    const bool minus = mpz_sgn(a) * mpz_sgn(b) < 0;
    mpz_tdiv_qr(q, r, a, b);
    mpz_abs(q, q);
    mpz_abs(r, r);
    if (!minus) return;
    mpz_neg(q, q);
    mpz_neg(r, r);
}

// a = a dividend for b: a stranger, a multiple, or a value next to one.
static void draw_dividend(test_random *r, const long_operand *b, long_operand *a, std::int32_t digits)
{
    a->draw(r, digits);
    if (r->below(3) == 0) {
        mpz_mul(a->z, a->z, b->z);
        const std::uint64_t off = r->below(4);
        if (off == 1) mpz_add_ui(a->z, a->z, 1);
        if (off == 2) mpz_sub_ui(a->z, a->z, 1);
        a->load();
    }
}

static std::int32_t some_size(test_random *r)
{
    return 1 + static_cast<std::int32_t>(r->below(r->below(32) == 0 ? 70 : 5));
}

// Signs and edges -----------------------------------------------------------------------------------------

TEST(Divide, SignsOfSevenByTwo)
{
    expect_division_of("7", "2", "3", "1");
    expect_division_of("-7", "2", "-3", "-1");
    expect_division_of("7", "-2", "-3", "-1");
    expect_division_of("-7", "-2", "3", "1");
}

TEST(Divide, ShorterDividendIsTheRemainder)
{
    expect_division_of("5", "1000000000000", "0", "5");
    expect_division_of("-5", "1000000000000", "0", "-5");
    expect_division_of("5", "-1000000000000", "0", "-5");
    expect_division_of("-5", "-1000000000000", "0", "5");
    expect_division_of("0", "-3", "0", "0");
    expect_division_of("0", "1000000000000", "0", "0");
}

TEST(Divide, ZeroDivisorDoesNothing)
{
    record_audit audit;
    number a = chain_of({7, 7}), zero = chain_of({0}), q = chain_of({1}), r = chain_of({2});
    divide(&a, &zero, &q, &r);
    expect_digits(&q, {1});
    expect_digits(&r, {2});
    special_free(&a);
    special_free(&zero);
    special_free(&q);
    special_free(&r);
    audit.expect_unchanged("zero divisor");
}

TEST(Divide, ZeroDigitsInsideTheQuotient)
{
    number a = chain_of({1, 0, 0, 1}), base = chain_of({1, 0}), three = chain_of({3}), q, r;
    q.size = r.size = 0;
    divide(&a, &base, &q, &r);
    expect_digits(&q, {1, 0, 0});
    expect_digits(&r, {1});
    number square = chain_of({1, 0, 0});
    divide(&square, &three, &q, &r);
    expect_digits(&q, {digit_mask / 3, digit_mask / 3});
    expect_digits(&r, {1});
    number sparse = chain_of({6, 0, 0, 3, 0, 1});
    divide(&sparse, &three, &q, &r);
    expect_digits(&q, {2, 0, 0, 1, 0, 0});
    expect_digits(&r, {1});
    for (number *n : {&a, &base, &three, &q, &r, &square, &sparse}) special_free(n);
}

TEST(Divide, ByTheBase)
{
    record_audit audit;
    number a = chain_of({1, 0, 0, 1}), b = chain_of({1, 0}), q, r;
    q.size = r.size = 0;
    divide(&a, &b, &q, &r);
    expect_digits(&q, {1, 0, 0});
    expect_digits(&r, {1});
    special_free(&q);
    special_free(&r);
    special_free(&a);
    a = chain_of({1, 0, 0});
    special_free(&b);
    b = chain_of({3});
    divide(&a, &b, &q, &r);
    expect_digits(&q, {digit_base / 3, digit_base / 3});
    expect_digits(&r, {1});
    special_free(&a);
    special_free(&b);
    special_free(&q);
    special_free(&r);
    audit.expect_unchanged("by the base");
}

TEST(Divide, TrialDigitOfTheWholeBaseIsMended)
{
    record_audit audit;
    number a = chain_of({1, 0, 0, digit_mask}), b = chain_of({1, 0, 1}), q, r;
    q.size = r.size = 0;
    divide(&a, &b, &q, &r);
    expect_digits(&q, {digit_mask});
    expect_digits(&r, {1, 0, 0});
    special_free(&a);
    special_free(&b);
    special_free(&q);
    special_free(&r);
    audit.expect_unchanged("trial digit");
}

TEST(Divide, LargestHeadOfTheDivisor)
{
    test_random r;
    record_audit audit;
    {
        long_operand a, b, q, rest;
        for (int i = 0; i < rounds / 10; ++i) {
            b.draw(&r, some_size(&r));
            if (b.n.head->digit == 0) continue;
            b.n.head->digit = b.n.head->digit < 0 ? -digit_mask : digit_mask;
            number_to_mpz(&b.n, b.z);
            draw_dividend(&r, &b, &a, some_size(&r));
            divide(&a.n, &b.n, &q.n, &rest.n);
            wanted_division(a.z, b.z, q.z, rest.z);
            ASSERT_TRUE(holds_value(&q.n, q.z)) << "round " << i;
            ASSERT_TRUE(holds_value(&rest.n, rest.z)) << "round " << i;
        }
    }
    audit.expect_unchanged("largest head");
}

// One less than a multiple of 2^167 + low: two limbs of that divisor give a trial limb that is one too large.
TEST(Divide, RowsThatAreAddedBack)
{
    record_audit audit;
    {
        long_operand a, b, q, rest;
        for (unsigned long low = 1; low < 20; ++low) {
            for (unsigned long multiple : {1UL, 2UL, 12345UL, (1UL << 55) + 3, (1UL << 56) - 1}) {
                mpz_set_ui(b.z, 1);
                mpz_mul_2exp(b.z, b.z, 167);
                mpz_add_ui(b.z, b.z, low);
                mpz_mul_ui(a.z, b.z, multiple);
                mpz_sub_ui(a.z, a.z, 1);
                a.load();
                b.load();
                divide(&a.n, &b.n, &q.n, &rest.n);
                wanted_division(a.z, b.z, q.z, rest.z);
                ASSERT_TRUE(holds_value(&q.n, q.z)) << low << " times " << multiple;
                ASSERT_TRUE(holds_value(&rest.n, rest.z)) << low << " times " << multiple;
            }
        }
    }
    audit.expect_unchanged("added back");
}

// Against GMP ---------------------------------------------------------------------------------------------

TEST(Divide, AgreesWithGmpUnderEveryAlias)
{
    test_random r;
    record_audit audit;
    {
        long_operand a, b, c, d;
        for (int i = 0; i < rounds; ++i) {
            b.draw(&r, some_size(&r));
            draw_dividend(&r, &b, &a, some_size(&r));
            const std::uint64_t alias = r.below(8);
            long_operand *q = alias == 0 || alias == 2 ? &a : alias == 1 || alias == 3 ? &b : &c;
            long_operand *rest = alias == 1 || alias == 4 ? &a : alias == 0 || alias == 5 ? &b : &d;
            const long_operand *y = alias == 6 ? &a : &b;
            if (mpz_sgn(y->z) == 0) continue;
            divide(&a.n, &y->n, &q->n, &rest->n);
            mpz_t zq, zr;
            mpz_init(zq);
            mpz_init(zr);
            wanted_division(a.z, y->z, zq, zr);
            mpz_swap(q->z, zq);
            mpz_swap(rest->z, zr);
            mpz_clear(zq);
            mpz_clear(zr);
            ASSERT_TRUE(holds_value(&q->n, q->z)) << "round " << i;
            ASSERT_TRUE(holds_value(&rest->n, rest->z)) << "round " << i;
            ASSERT_TRUE(holds_value(&a.n, a.z)) << "round " << i;
            ASSERT_TRUE(holds_value(&b.n, b.z)) << "round " << i;
        }
    }
    audit.expect_unchanged("quotients");
}

TEST(Divide, LongOperandsAgreeWithGmp)
{
    test_random r;
    record_audit audit;
    {
        long_operand a, b, q, rest;
        for (int i = 0; i < rounds / 1000; ++i) {
            const std::uint64_t longest = i % 40 == 0 ? 4000 : 500;
            b.draw(&r, 1 + static_cast<std::int32_t>(r.below(longest)));
            if (mpz_sgn(b.z) == 0) continue;
            draw_dividend(&r, &b, &a, 1 + static_cast<std::int32_t>(r.below(longest)));
            divide(&a.n, &b.n, &q.n, &rest.n);
            wanted_division(a.z, b.z, q.z, rest.z);
            ASSERT_TRUE(holds_value(&q.n, q.z)) << "round " << i;
            ASSERT_TRUE(holds_value(&rest.n, rest.z)) << "round " << i;
            ASSERT_TRUE(holds_value(&a.n, a.z)) << "round " << i;
            ASSERT_TRUE(holds_value(&b.n, b.z)) << "round " << i;
        }
    }
    audit.expect_unchanged("long quotients");
}

// Quotients on both sides of the size from which they are found by halves, divisors shorter and longer.
TEST(Divide, AroundTheHalvingThreshold)
{
    test_random r;
    record_audit audit;
    {
        long_operand a, b, q, rest;
        for (std::int32_t quotient = 2 * halving_cut - 5; quotient < 2 * halving_cut + 6; ++quotient) {
            for (std::int32_t divisor : {3, 2 * halving_cut - 3, 2 * halving_cut, 2 * halving_cut + 4, 300}) {
                for (int i = 0; i < 20; ++i) {
                    b.draw(&r, divisor);
                    if (mpz_sgn(b.z) == 0) continue;
                    a.draw(&r, quotient);
                    mpz_mul(a.z, a.z, b.z);
                    if (i & 1) mpz_sub_ui(a.z, a.z, 1);
                    a.load();
                    divide(&a.n, &b.n, &q.n, &rest.n);
                    wanted_division(a.z, b.z, q.z, rest.z);
                    ASSERT_TRUE(holds_value(&q.n, q.z)) << quotient << " by " << divisor;
                    ASSERT_TRUE(holds_value(&rest.n, rest.z)) << quotient << " by " << divisor;
                }
            }
        }
    }
    audit.expect_unchanged("halves");
}

TEST(PosDivide, NoQuotientFormsGiveTheSameRemainder)
{
    test_random r;
    record_audit audit;
    {
        long_operand a, b, q, rest, alone;
        for (int i = 0; i < rounds; ++i) {
            biased_mpz(&r, some_size(&r), false, b.z);
            biased_mpz(&r, some_size(&r), false, a.z);
            if (mpz_sgn(b.z) == 0) continue;
            a.load();
            b.load();
            pos_divide(&a.n, &b.n, &q.n, &rest.n);
            mpz_tdiv_qr(q.z, rest.z, a.z, b.z);
            ASSERT_TRUE(holds_value(&q.n, q.z)) << "round " << i;
            ASSERT_TRUE(holds_value(&rest.n, rest.z)) << "round " << i;
            long_operand *to = r.below(4) == 0 ? &a : &alone;
            const auto f = r.below(2) ? pos_divide_noq : simp_divide_noq;
            f(a.n.head, b.n.head, b.n.tail, a.n.size, b.n.size, &to->n);
            ASSERT_TRUE(holds_value(&to->n, rest.z)) << "round " << i;
            ASSERT_TRUE(holds_value(&b.n, b.z)) << "round " << i;
        }
    }
    audit.expect_unchanged("no quotient");
}

TEST(SimpDivide, OneQuotientDigitFromASpan)
{
    test_random r;
    record_audit audit;
    {
        long_operand a, b, q, rest;
        for (int i = 0; i < rounds; ++i) {
            biased_mpz(&r, some_size(&r), false, b.z);
            if (mpz_sgn(b.z) == 0) continue;
            b.load();
            biased_mpz(&r, 1, false, q.z);
            biased_mpz(&r, some_size(&r), false, rest.z);
            mpz_mod(rest.z, rest.z, b.z);
            mpz_mul(a.z, b.z, q.z);
            mpz_add(a.z, a.z, rest.z);
            a.load();
            const std::int32_t span = a.n.size;
            a.n.tail->next = new_digit(12345, nullptr);  // a longer chain goes on behind the span
            simp_divide(a.n.head, span, &b.n, &q.n, &rest.n);
            give_digit(a.n.tail->next);
            a.n.tail->next = nullptr;
            ASSERT_EQ(q.n.size, 1);
            ASSERT_TRUE(holds_value(&q.n, q.z)) << "round " << i;
            ASSERT_TRUE(holds_value(&rest.n, rest.z)) << "round " << i;
            ASSERT_TRUE(holds_value(&a.n, a.z)) << "round " << i;
        }
    }
    audit.expect_unchanged("one digit");
}

TEST(SimpDivide, ShortSpanIsTheRemainder)
{
    record_audit audit;
    number a = chain_of({0, 4, 9}), b = chain_of({5, 0}), q, r;
    q.size = r.size = 0;
    simp_divide(a.head, 2, &b, &q, &r);  // a span may begin with a zero
    expect_digits(&q, {0});
    expect_digits(&r, {4});
    simp_divide(a.head, 3, &b, &q, &r);
    expect_digits(&q, {0});
    expect_digits(&r, {4, 9});
    special_free(&a);
    special_free(&b);
    special_free(&q);
    special_free(&r);
    audit.expect_unchanged("short span");
}

// Reductions ----------------------------------------------------------------------------------------------

TEST(Modout, AgreesWithGmp)
{
    test_random r;
    record_audit audit;
    {
        long_operand a;
        modularmode = lintmode = 1;
        for (int i = 0; i < rounds; ++i) {
            a.draw(&r, some_size(&r));
            modulus = 2 + static_cast<std::int32_t>(r.below(r.below(2) ? 2147483645 : 300));
            std::int64_t wanted = static_cast<long>(mpz_tdiv_ui(a.z, static_cast<unsigned long>(modulus)));
            if (wanted >= digit_base) wanted >>= digit_bits;
            ASSERT_EQ(modout(&a.n), mpz_sgn(a.z) < 0 ? -wanted : wanted) << "round " << i;
        }
        modularmode = lintmode = 0;
        modulus = -1;
    }
    audit.expect_unchanged("modout");
}

TEST(Modout, HeadOfATwoDigitRemainder)
{
    number a = chain_of({7, 5});
    modulus = 2147483646;
    EXPECT_EQ(modout(&a), 7);
    modulus = 1000;
    EXPECT_EQ(modout(&a), static_cast<std::int32_t>((7LL * digit_base + 5) % 1000));
    modulus = -1;
    special_free(&a);
}

TEST(FastModout, KeepsTheLowDigits)
{
    record_audit audit;
    number a = chain_of({9, 8, 0, 0, 5, 6}), b = chain_of({1, 0, 0, 0, 0});
    fast_modout(&a, &b);
    expect_digits(&a, {5, 6});
    fast_modout(&a, &b);  // shorter than b: nothing
    expect_digits(&a, {5, 6});
    special_free(&b);
    b = chain_of({3});
    fast_modout(&a, &b);
    expect_digits(&a, {0});
    special_free(&a);
    special_free(&b);
    a = chain_of({4, 0, 0});
    b = chain_of({1, 0, 0});
    fast_modout(&a, &b);
    expect_digits(&a, {0});
    special_free(&a);
    special_free(&b);
    audit.expect_unchanged("fast_modout");
}

// Array sizes ---------------------------------------------------------------------------------------------

TEST(ArraySizes, QuotientAndProductWhateverTheMode)
{
    record_audit audit;
    flotemode = lintmode = 1;
    number a;
    a.size = 0;
    special_set_2(40000, 50000, &a);
    EXPECT_EQ(quotient_of(&a, 40000), 50000);
    EXPECT_EQ(quotient_of(&a, 2147483647), 0);
    EXPECT_EQ(quotient_of(&a, 2000000000), 1);
    EXPECT_EQ(quotient_of(&a, 1), 2000000000 >> digit_bits);  // the head digit
    EXPECT_TRUE(is_product_of(&a, 40000, 50000));
    EXPECT_TRUE(is_product_of(&a, 2000000000, 1));
    EXPECT_FALSE(is_product_of(&a, 40000, 50001));
    EXPECT_EQ(flotemode, 1);
    EXPECT_EQ(lintmode, 1);
    flotemode = lintmode = 0;
    special_free(&a);
    audit.expect_unchanged("array sizes");
}

}  // namespace kelmar_test
