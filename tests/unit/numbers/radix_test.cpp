// Decimal chains against GMP's text, with and without the table of powers; products in base 10^8.
#include "numbers/radix.h"
#include <gtest/gtest.h>
#include <cstdlib>
#include <string>
#include "tests/support/by_build.h"
#include "tests/support/long_numbers.h"

using namespace kelmar;
using kelmar_test::biased_mpz;
using kelmar_test::by_build;
using kelmar_test::number_from_mpz;
using kelmar_test::number_to_mpz;
using kelmar_test::record_audit;
using kelmar_test::test_random;

static constexpr int rounds = by_build(20000, 1000000);

// The decimal text of a chain, groups written to eight digits.
static std::string text_of(const number *n)
{
    std::string text = n->head->digit < 0 ? "-" : "";
    char group[16];
    for (const numnode *node = n->head; node; node = node->next) {
        std::snprintf(group, sizeof group, node == n->head ? "%d" : "%08d", std::abs(node->digit));
        text += group;
    }
    return text;
}

// n = the decimal chain of z. n filled.
static void decimal_from_mpz(const mpz_t z, number *n)
{
    mpz_t rest, group;
    mpz_inits(rest, group, nullptr);
    mpz_abs(rest, z);
    const int sign = mpz_sgn(z) < 0 ? -1 : 1;
    *n = {};
    do {
        const std::int32_t digit = static_cast<std::int32_t>(mpz_tdiv_q_ui(rest, rest, decimal_base));
        n->head = new_digit(sign * digit, n->head);
        if (n->size++ == 0) n->tail = n->head;
    } while (mpz_sgn(rest) != 0);
    mpz_clears(rest, group, nullptr);
}

struct Radix : testing::Test {
    test_random r;
    mpz_t a, b, c;
    number x = {}, y = {}, z = {};
    void SetUp() override
    {
        mpz_inits(a, b, c, nullptr);
    }
    void TearDown() override
    {
        mpz_clears(a, b, c, nullptr);
    }

    void release()
    {
        for (number *n : {&x, &y, &z}) special_free(n);
    }
    static std::string want(const mpz_t v)
    {
        char *text = mpz_get_str(nullptr, 10, v);
        const std::string s = text;
        std::free(text);
        return s;
    }
    void expect_text()
    {
        number_from_mpz(a, &x);
        verybig_base_10(x.head, x.tail, x.size, &z);
        ASSERT_TRUE(chain_is_normal(&z, decimal_base)) << "seed " << r.seed;
        ASSERT_EQ(text_of(&z), want(a)) << "seed " << r.seed;
        number_to_mpz(&x, b);
        ASSERT_EQ(mpz_cmp(a, b), 0) << "the operand is spared";
        verybig_base_10(x.head, x.tail, x.size, &x);  // replaced: the old chain goes last
        ASSERT_EQ(text_of(&x), want(a)) << "seed " << r.seed;
        release();
    }
};

struct RadixWithTable : Radix {
    void SetUp() override
    {
        Radix::SetUp();
        mpz_set_ui(a, 1);
        for (number &entry : two_28) {
            mpz_mul_2exp(a, a, digit_bits);
            decimal_from_mpz(a, &entry);
        }
    }
    void TearDown() override
    {
        for (number &entry : two_28) special_free(&entry);
        Radix::TearDown();
    }
};

// Conversion ------------------------------------------------------------------------------------------------

TEST_F(RadixWithTable, SmallNumbersAgreeWithGmp)
{
    record_audit audit;
    for (int i = 0; i < rounds; ++i) {
        biased_mpz(&r, 1 + static_cast<int>(r.below(4)), true, a);
        expect_text();
        if (HasFatalFailure()) return;
    }
    audit.expect_unchanged("verybig_base_10");
}

TEST_F(RadixWithTable, EverySizeUpToThreeTablesAgreesWithGmp)
{
    record_audit audit;
    for (int size = 1; size <= 400; ++size) {
        for (int i = 0; i < 4; ++i) {
            biased_mpz(&r, size, true, a);
            expect_text();
            if (HasFatalFailure()) return;
        }
        mpz_ui_pow_ui(a, 2, digit_bits * (size - 1));  // zeros below the head
        expect_text();
        mpz_ui_pow_ui(a, 2, digit_bits * size);
        mpz_sub_ui(a, a, 1);
        expect_text();
    }
    audit.expect_unchanged("verybig_base_10");
}

TEST_F(RadixWithTable, SizesOnBothSidesOfEveryCut)
{
    for (int size : {519, 520, 521, 522, 1039, 1040, 1041, 1300, 2080, 2081, 4160, 4161, 5000, 9000}) {
        for (int i = 0; i < 3; ++i) {
            biased_mpz(&r, size, true, a);
            expect_text();
            if (HasFatalFailure()) return;
        }
    }
}

TEST_F(Radix, WithoutTheTableThePowersAreComputed)
{
    ASSERT_EQ(two_28[0].size, 0);
    for (int size = 1; size <= 300; ++size) {
        biased_mpz(&r, size, true, a);
        expect_text();
        if (HasFatalFailure()) return;
    }
    for (int size : {600, 1041, 3000}) {
        biased_mpz(&r, size, true, a);
        expect_text();
    }
}

TEST_F(Radix, EntriesOfTheWrongLengthAreNotUsed)
{
    mpz_set_ui(a, 5);
    for (number &entry : two_28) decimal_from_mpz(a, &entry);
    for (int size : {30, 100, 260, 261, 700}) {
        biased_mpz(&r, size, true, a);
        expect_text();
    }
    for (number &entry : two_28) special_free(&entry);
}

TEST_F(RadixWithTable, GroupsPast16BitsAreExact)
{
    mpz_ui_pow_ui(a, 7, 400000);
    number_from_mpz(a, &x);
    verybig_base_10(x.head, x.tail, x.size, &y);
    EXPECT_GT(x.size, 32767);
    EXPECT_GT(y.size, 32767);
    char *want = mpz_get_str(nullptr, 10, a);
    EXPECT_EQ(text_of(&y), want);
    std::free(want);
    special_free(&x);
    special_free(&y);
}

TEST_F(RadixWithTable, TenDigitsAndSixteen)
{
    for (int size : {9, 10, 11, 15, 16, 17}) {
        mpz_ui_pow_ui(a, 2, digit_bits * (size - 1));
        expect_text();
        mpz_neg(a, a);
        expect_text();
    }
}

TEST_F(Radix, ZeroAndMinusTenToTheEighth)
{
    mpz_set_si(a, 0);
    expect_text();
    mpz_set_si(a, -100000000);
    number_from_mpz(a, &x);
    verybig_base_10(x.head, x.tail, x.size, &z);
    ASSERT_EQ(z.size, 2);
    EXPECT_EQ(z.head->digit, -1);
    EXPECT_EQ(z.tail->digit, 0);
    release();
}

// Products --------------------------------------------------------------------------------------------------

struct RadixProduct : Radix {
    void draw(int groups_a, int groups_b)
    {
        biased_mpz(&r, groups_a, true, a);
        biased_mpz(&r, groups_b, true, b);
        if (r.below(4) == 0) mpz_ui_pow_ui(a, 10, 8 * groups_a);
        if (r.below(4) == 0) mpz_sub_ui(a, a, 1);
        mpz_mul(c, a, b);
        decimal_from_mpz(a, &x);
        decimal_from_mpz(b, &y);
    }
    void expect_product(void (*routine)(const number *, const number *, number *))
    {
        const std::string text = want(c);
        routine(&x, &y, &z);
        ASSERT_TRUE(chain_is_normal(&z, decimal_base)) << "seed " << r.seed;
        ASSERT_EQ(text_of(&z), text) << "seed " << r.seed;
        ASSERT_EQ(text_of(&x), want(a));
        ASSERT_EQ(text_of(&y), want(b));
        switch (r.below(3)) {
        case 0:
            routine(&x, &y, &x);
            ASSERT_EQ(text_of(&x), text) << "seed " << r.seed;
            break;
        case 1:
            routine(&x, &y, &y);
            ASSERT_EQ(text_of(&y), text) << "seed " << r.seed;
            break;
        case 2:
            routine(&y, &y, &y);
            mpz_mul(c, b, b);
            ASSERT_EQ(text_of(&y), want(c)) << "seed " << r.seed;
            break;
        }
        release();
    }
};

TEST_F(RadixProduct, SmallProductsAgreeWithGmp)
{
    record_audit audit;
    for (int i = 0; i < rounds; ++i) {
        draw(1 + static_cast<int>(r.below(3)), 1 + static_cast<int>(r.below(3)));
        expect_product(i & 1 ? base_10_multiply : base_10_fast_mult);
        if (HasFatalFailure()) return;
    }
    audit.expect_unchanged("base_10 products");
}

TEST_F(RadixProduct, LongProductsAgreeWithGmp)
{
    record_audit audit;
    for (int i = 0; i < rounds / 500; ++i) {
        const int size_a = 1 + static_cast<int>(r.below(i % 8 ? 200 : 1500));
        draw(size_a, i % 3 ? 1 + static_cast<int>(r.below(400)) : size_a);
        expect_product(base_10_fast_mult);
        if (i % 4 == 0) {
            draw(1 + static_cast<int>(r.below(150)), 1 + static_cast<int>(r.below(150)));
            expect_product(base_10_multiply);
        }
        if (HasFatalFailure()) return;
    }
    audit.expect_unchanged("base_10 products");
}

TEST_F(RadixProduct, SizesAroundTheCutsOfTheMethods)
{
    const struct {
        int from, to, step;
    } stretches[] = {{74, 86, 1}, {156, 164, 2}, {590, 620, 5}, {1200, 1260, 11}};
    for (const auto &stretch : stretches) {
        for (int groups = stretch.from; groups <= stretch.to; groups += stretch.step) {
            for (int other = stretch.from; other <= stretch.to; other += stretch.step) {
                mpz_ui_pow_ui(a, 10, 8 * groups);
                mpz_sub_ui(a, a, 1);
                mpz_ui_pow_ui(b, 10, 8 * other);
                mpz_sub_ui(b, b, r.below(2));
                mpz_mul(c, a, b);
                decimal_from_mpz(a, &x);
                decimal_from_mpz(b, &y);
                expect_product(base_10_fast_mult);
                if (HasFatalFailure()) return;
            }
        }
    }
}

TEST_F(RadixProduct, ZeroTimesAnythingIsOneNode)
{
    for (auto routine : {base_10_multiply, base_10_fast_mult}) {
        mpz_set_ui(a, 0);
        mpz_set_str(b, "-123456789012345678901234567890", 10);
        mpz_set_ui(c, 0);
        decimal_from_mpz(a, &x);
        decimal_from_mpz(b, &y);
        routine(&x, &y, &z);
        EXPECT_EQ(z.size, 1);
        EXPECT_EQ(z.head->digit, 0);
        release();
    }
}

TEST_F(RadixProduct, WordMultiplesAgreeWithGmpAndTellTheCut)
{
    record_audit audit;
    const std::int32_t ends[] = {0, 1, -1, decimal_base - 1, 1 - decimal_base};
    for (int i = 0; i < rounds; ++i) {
        biased_mpz(&r, 1 + static_cast<int>(r.below(5)), true, a);
        const std::int32_t any = static_cast<std::int32_t>(r.below(2 * decimal_base - 1)) - decimal_base + 1;
        const std::int32_t d = r.below(3) ? any : ends[r.below(5)];
        mpz_mul_si(c, a, d);
        decimal_from_mpz(a, &x);
        numnode *cut;
        number *out = i & 1 ? &x : &z;
        simp_base_10_mult(&x, out, d, &cut);
        ASSERT_TRUE(chain_is_normal(out, decimal_base)) << "seed " << r.seed;
        ASSERT_EQ(text_of(out), want(c)) << "seed " << r.seed;
        ASSERT_EQ(out->size == 1 ? out->tail : cut->next, out->tail);
        ASSERT_EQ(cut == nullptr, out->size == 1);
        release();
    }
    audit.expect_unchanged("simp_base_10_mult");
}
