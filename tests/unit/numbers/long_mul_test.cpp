// tests/unit/numbers/long_mul_test.cpp -- products of long integers.
#include "numbers/long_mul.h"
#include <gtest/gtest.h>
#include "numbers/compare.h"
#include "numbers/limb_mul.h"
#include "numbers/long_add.h"
#include "tests/support/by_build.h"
#include "tests/support/long_numbers.h"

namespace kelmar_test {

using namespace kelmar;

constexpr int rounds = by_build(100000, 1000000);

// Digits of an operand: mostly few, now and then up to both sides of the size where chains leave the stack.
static std::int32_t some_size(test_random *r)
{
    return 1 + static_cast<std::int32_t>(r->below(r->below(32) == 0 ? 70 : 5));
}

static number power_of_base(std::int32_t k)
{
    number n = chain_of({1});
    fillout(&n, k);
    return n;
}

// A method of multiplying, called on spared operands.
using method = void (*)(const number *, const number *, number *);

// Edges -------------------------------------------------------------------------------------------------

TEST(Multiply, ZeroTimesAnythingIsOneZeroNode)
{
    record_audit audit;
    number zero = chain_of({0}), a = chain_of({-3, 0, 5, 7}), c;
    for (method f : {method(multiply), method(fast_mult)}) {
        c.size = 0;
        f(&zero, &a, &c);
        expect_digits(&c, {0});
        f(&a, &zero, &c);
        expect_digits(&c, {0});
        f(&zero, &zero, &c);
        expect_digits(&c, {0});
        special_free(&c);
    }
    special_free(&zero);
    special_free(&a);
    audit.expect_unchanged("zero");
}

TEST(Multiply, DigitsOfOneSignWhateverTheOperands)
{
    record_audit audit;
    number a = chain_of({-1, -digit_mask}), b = chain_of({3}), c;
    for (method f : {method(multiply), method(fast_mult)}) {
        c.size = 0;
        f(&a, &b, &c);
        expect_digits(&c, {-5, -(digit_base - 3)});
        f(&c, &a, &c);
        EXPECT_GT(c.head->digit, 0);
        EXPECT_TRUE(chain_is_normal(&c, digit_base));
        special_free(&c);
    }
    special_free(&a);
    special_free(&b);
    audit.expect_unchanged("signs");
}

TEST(SimpMult, OneDigitProductHasNoCut)
{
    record_audit audit;
    number a = chain_of({-5}), c;
    c.size = 0;
    numnode *cut = a.head;
    simp_mult(&a, &c, 7, &cut);
    expect_digits(&c, {-35});
    EXPECT_EQ(cut, nullptr);
    simp_mult(&a, &c, 0, &cut);
    expect_digits(&c, {0});
    EXPECT_EQ(cut, nullptr);
    special_free(&a);
    special_free(&c);
    audit.expect_unchanged("one digit");
}

TEST(SimpMult, CarryRunsThroughOnes)
{
    record_audit audit;
    number a = chain_of({0x8000000, digit_mask, digit_mask, digit_mask}), c;  // doubled, all digits spill
    c.size = 0;
    numnode *cut;
    simp_mult(&a, &c, -2, &cut);
    expect_digits(&c, {-1, -1, -digit_mask, -digit_mask, -(digit_mask - 1)});
    EXPECT_EQ(cut->next, c.tail);
    special_free(&a);
    special_free(&c);
    audit.expect_unchanged("ones");
}

TEST(FastMult, AgreesWithSchoolbookAroundTheThresholds)
{
    test_random r;
    record_audit audit;
    {
        long_operand a, b, c;
        const int pairs[][2] = {{17, 17}, {17, 16},   {16, 17},   {40, 20},   {2, 3},     {1, 300},
                                {2, 300}, {32, 32},   {33, 31},   {46, 46},   {47, 47},   {48, 48},
                                {49, 49}, {64, 64},   {95, 48},   {96, 48},   {97, 49},   {300, 47},
                                {86, 86}, {89, 89},   {200, 99},  {200, 100}, {200, 101}, {199, 100},
                                {1, 1},   {398, 398}, {400, 400}, {402, 400}, {600, 401}};
        for (const auto &sizes : pairs) {
            for (int i = 0; i < 40; ++i) {
                a.draw(&r, sizes[0]);
                b.draw(&r, sizes[1]);
                fast_mult(&a.n, &b.n, &c.n);
                mpz_mul(c.z, a.z, b.z);
                ASSERT_TRUE(holds_value(&c.n, c.z)) << sizes[0] << " by " << sizes[1];
                multiply(&a.n, &b.n, &c.n);
                ASSERT_TRUE(holds_value(&c.n, c.z)) << sizes[0] << " by " << sizes[1];
            }
        }
    }
    audit.expect_unchanged("thresholds");
}

TEST(FastMult, SeventeenBySeventeenBySixteenAndFortyByTwentyDigits)
{
    long_operand a, b, c;
    const int pairs[][2] = {{17, 17}, {17, 16}, {16, 17}, {40, 20}, {20, 40}};
    for (const auto &sizes : pairs) {
        a.n = power_of_base(sizes[0]);  // one less: every digit at its largest
        b.n = power_of_base(sizes[1]);
        number one = chain_of({1});
        fastdiff(&a.n, &one);
        fastdiff(&b.n, &one);
        ASSERT_EQ(a.n.size, sizes[0]);
        ASSERT_EQ(b.n.size, sizes[1]);
        fast_mult(&a.n, &b.n, &c.n);
        mpz_set_ui(a.z, 1);
        mpz_mul_2exp(a.z, a.z, static_cast<mp_bitcnt_t>(sizes[0]) * digit_bits);
        mpz_sub_ui(a.z, a.z, 1);
        mpz_set_ui(b.z, 1);
        mpz_mul_2exp(b.z, b.z, static_cast<mp_bitcnt_t>(sizes[1]) * digit_bits);
        mpz_sub_ui(b.z, b.z, 1);
        mpz_mul(c.z, a.z, b.z);
        EXPECT_TRUE(holds_value(&c.n, c.z)) << sizes[0] << " by " << sizes[1];
        special_free(&one);
        special_free(&a.n);
        special_free(&b.n);
    }
}

TEST(FastMult, SizesPast16BitsAreExact)
{
    record_audit audit;
    {
        test_random r;
        long_operand a, b, c;
        mpz_ui_pow_ui(a.z, 7, 400000);  // 40,105 digits
        mpz_ui_pow_ui(b.z, 3, 600000);  // 33,964
        mpz_add_ui(a.z, a.z, static_cast<unsigned long>(r.below(1000000)));
        a.load();
        b.load();
        ASSERT_GT(a.n.size, 40000);
        fast_mult(&a.n, &b.n, &c.n);
        mpz_mul(c.z, a.z, b.z);
        EXPECT_GT(c.n.size, 65535);
        EXPECT_TRUE(holds_value(&c.n, c.z)) << "seed " << r.seed;
    }
    audit.expect_unchanged("a long product");
}

TEST(FastMult, LowHalvesOfZerosAreExact)
{
    record_audit audit;
    for (std::int32_t k : {16, 17, 40, 60, 100, 200}) {
        number a = power_of_base(k), b = chain_of({-7}), c;
        c.size = 0;
        fast_mult(&a, &a, &c);
        EXPECT_EQ(c.size, 2 * k + 1);
        EXPECT_EQ(c.head->digit, 1);
        EXPECT_TRUE(chain_is_normal(&c, digit_base));
        fastsum(&a, &b);
        fastdiff(&a, &b);
        fast_mult(&a, &b, &c);
        EXPECT_EQ(c.size, k + 1);
        EXPECT_EQ(c.head->digit, -7);
        special_free(&a);
        special_free(&b);
        special_free(&c);
    }
    audit.expect_unchanged("zeros");
}

TEST(FastMult, ResultMayBeEitherOperandOrBoth)
{
    test_random r;
    record_audit audit;
    {
        long_operand a, b;
        for (std::int32_t size : {1, 2, 3, 17, 60, 150}) {
            for (int i = 0; i < 50; ++i) {
                a.draw(&r, size);
                b.draw(&r, size);
                fast_mult(&a.n, &b.n, &a.n);
                mpz_mul(a.z, a.z, b.z);
                ASSERT_TRUE(holds_value(&a.n, a.z));
                fast_mult(&a.n, &b.n, &b.n);
                mpz_mul(b.z, a.z, b.z);
                ASSERT_TRUE(holds_value(&b.n, b.z));
                fast_mult(&a.n, &a.n, &a.n);
                mpz_mul(a.z, a.z, a.z);
                ASSERT_TRUE(holds_value(&a.n, a.z));
                ASSERT_TRUE(holds_value(&b.n, b.z));
            }
        }
    }
    audit.expect_unchanged("aliases");
}

// Against GMP -------------------------------------------------------------------------------------------

static void agree_with_gmp(method f, int times)
{
    test_random r;
    record_audit audit;
    {
        long_operand a, b, c;
        for (int i = 0; i < times; ++i) {
            a.draw(&r, some_size(&r));
            b.draw(&r, some_size(&r));
            const std::uint64_t alias = r.below(5);
            long_operand *to = alias == 0 ? &a : alias == 1 ? &b : &c;
            const long_operand *y = alias == 2 ? &a : &b;
            f(&a.n, &y->n, &to->n);
            mpz_mul(to->z, a.z, y->z);
            ASSERT_TRUE(holds_value(&a.n, a.z)) << "round " << i;
            ASSERT_TRUE(holds_value(&b.n, b.z)) << "round " << i;
            ASSERT_TRUE(holds_value(&to->n, to->z)) << "round " << i;
        }
    }
    audit.expect_unchanged("products");
}

TEST(Multiply, AgreesWithGmpUnderEveryAlias)
{
    agree_with_gmp(multiply, rounds);
}

TEST(FastMult, AgreesWithGmpUnderEveryAlias)
{
    agree_with_gmp(fast_mult, rounds);
}

TEST(FastMult, LongOperandsAgreeWithGmp)
{
    test_random r;
    record_audit audit;
    {
        long_operand a, b, c;
        for (int i = 0; i < rounds / 2000; ++i) {
            const std::uint64_t longest = i % 20 == 0 ? 3000 : 600;
            a.draw(&r, 1 + static_cast<std::int32_t>(r.below(longest)));
            b.draw(&r, 1 + static_cast<std::int32_t>(r.below(longest)));
            fast_mult(&a.n, i % 8 ? &b.n : &a.n, &c.n);
            mpz_mul(c.z, a.z, i % 8 ? b.z : a.z);
            ASSERT_TRUE(holds_value(&c.n, c.z)) << "round " << i;
            ASSERT_TRUE(holds_value(&a.n, a.z)) << "round " << i;
        }
    }
    audit.expect_unchanged("long products");
}

TEST(SimpMult, AgreesWithGmp)
{
    test_random r;
    record_audit audit;
    {
        long_operand a, d, c;
        for (int i = 0; i < rounds; ++i) {
            a.draw(&r, some_size(&r));
            d.draw(&r, 1);
            long_operand *to = r.below(4) == 0 ? &a : &c;
            numnode *cut;
            simp_mult(&a.n, &to->n, d.n.head->digit, &cut);
            mpz_mul(to->z, a.z, d.z);
            ASSERT_TRUE(holds_value(&to->n, to->z)) << "round " << i;
            ASSERT_TRUE(to->n.size == 1 ? !cut : cut && cut->next == to->n.tail) << "round " << i;
            ASSERT_TRUE(holds_value(&a.n, a.z)) << "round " << i;
        }
    }
    audit.expect_unchanged("by a digit");
}

// Zero digits at the tail ---------------------------------------------------------------------------------

TEST(Fillout, AppendsZerosButNotToZero)
{
    record_audit audit;
    number a = chain_of({-4, -1}), zero = chain_of({0});
    a.tail->next = a.head;  // left to be closed
    fillout(&a, 0);
    expect_digits(&a, {-4, -1});
    fillout(&a, -3);
    expect_digits(&a, {-4, -1});
    fillout(&a, 3);
    expect_digits(&a, {-4, -1, 0, 0, 0});
    zero.tail->next = a.head;
    fillout(&zero, 5);
    expect_digits(&zero, {0});
    special_free(&a);
    special_free(&zero);
    audit.expect_unchanged("fillout");
}

// Product trees -------------------------------------------------------------------------------------------

TEST(Multout, DigitsAreFactorials)
{
    record_audit audit;
    {
        long_operand n;
        for (std::int32_t hi : {1, 2, 5, 6, 20, 100, 1000, 3000}) {
            multout(1, hi, &n.n);
            mpz_fac_ui(n.z, static_cast<unsigned long>(hi));
            EXPECT_TRUE(holds_value(&n.n, n.z)) << hi;
        }
        multout(7, 7, &n.n);
        EXPECT_TRUE(is_longint(&n.n, 7));
        multout(-3, -1, &n.n);
        EXPECT_TRUE(is_longint(&n.n, -6));
        multout(-9, 9, &n.n);
        EXPECT_TRUE(is_longint(&n.n, 0));
        multout(2147483646, 2147483647, &n.n);
        mpz_set_str(n.z, "4611686011984936962", 10);
        EXPECT_TRUE(holds_value(&n.n, n.z));
    }
    audit.expect_unchanged("factorials");
}

TEST(Multout, FloatsAndWords)
{
    number n;
    n.size = 0;
    flotemode = lintmode = 1;
    multout(1, 20, &n);
    EXPECT_EQ(n.real, 2432902008176640000.0);
    flotemode = 0;
    multout(1, 12, &n);
    EXPECT_EQ(n.word, 479001600);
    multout(1, 13, &n);
    EXPECT_EQ(n.word, 1932053504);  // wrapped
    multout(1, 2147483647, &n);     // 0 from the 34th factor on
    EXPECT_EQ(n.word, 0);
    lintmode = 0;
}

TEST(Multout, ResiduesStopAtZero)
{
    number n;
    n.size = 0;
    modularmode = lintmode = 1;
    modulus = 2147483629;
    multout(1, 20, &n);
    EXPECT_EQ(n.word, static_cast<std::int32_t>(2432902008176640000 % 2147483629));
    modulus = 7;
    multout(1, 2147483647, &n);
    EXPECT_EQ(n.word, 0);
    multout(8, 13, &n);  // factors above the modulus
    EXPECT_EQ(n.word, 6);
    multout(-6, -1, &n);
    EXPECT_EQ(n.word, 6);
    modularmode = lintmode = 0;
    modulus = -1;
}

TEST(Multout, SmallViewKeepsOneDigit)
{
    record_audit audit;
    number n = chain_of({1, 2, 3});
    integerflag = 1;
    multout(1, 12, &n);
    integerflag = 0;
    EXPECT_EQ(n.size, 1);
    EXPECT_EQ(n.head->digit, 479001600);
    special_free(&n);
    audit.expect_unchanged("small view");
}

// Limits of arrays ----------------------------------------------------------------------------------------

TEST(Oversize, AboveAMillionElements)
{
    for (auto f : {oversize, sparse_oversize}) {
        EXPECT_FALSE(f(1000, 1000));
        EXPECT_TRUE(f(1000001, 1));
        EXPECT_FALSE(f(1, 1000000));
        EXPECT_TRUE(f(16384, 16384));
        EXPECT_TRUE(f(2147483647, 2147483647));
        EXPECT_FALSE(f(0, 2147483647));
        EXPECT_FALSE(f(-16383, 16384));
        EXPECT_TRUE(f(-16384, 16384));
    }
}

}  // namespace kelmar_test
