// Setting, copying, negating and releasing numbers, in every view.
#include "numbers/number.h"
#include <gtest/gtest.h>
#include <vector>
#include "tests/support/by_build.h"
#include "tests/support/long_numbers.h"
#include "tests/support/views.h"

using namespace kelmar;
using namespace kelmar_test;

namespace {

constexpr int rounds = by_build(3000, 1000000);

std::vector<std::int32_t> digits_of(const number *n)
{
    std::vector<std::int32_t> digits;
    for (const numnode *node = n->head; node; node = node->next) digits.push_back(node->digit);
    return digits;
}

using digit_list = std::vector<std::int32_t>;

// A number of the given digits.
number made_of(const digit_list &digits)
{
    number n;
    n.size = 0;
    numnode *head = nullptr, *tail = nullptr;
    for (auto d = digits.rbegin(); d != digits.rend(); ++d) {
        head = new_digit(*d, head);
        if (!tail) tail = head;
    }
    take_chain(&n, head, tail, static_cast<std::int32_t>(digits.size()));
    return n;
}

TEST(SetValue, LongIntegersGetTwoDigitsFromTheBaseOn)
{
    const in_view view(view_digits);
    const record_audit audit;
    const struct {
        std::int32_t v;
        digit_list digits;
    } rows[] = {{0, {0}},
                {1, {1}},
                {-1, {-1}},
                {digit_mask, {digit_mask}},
                {-digit_mask, {-digit_mask}},
                {digit_base, {1, 0}},
                {-digit_base, {-1, 0}},
                {INT32_MAX, {7, digit_mask}},
                {INT32_MIN, {-8, 0}}};
    number n;
    n.size = 0;
    for (const auto &row : rows) {
        setvalue(row.v, &n);
        EXPECT_EQ(digits_of(&n), row.digits) << row.v;
        EXPECT_TRUE(chain_is_normal(&n, digit_base)) << row.v;
    }
    special_free(&n);
    audit.expect_unchanged("setvalue");
}

TEST(SetValue, SetsTheLiveViewOnly)
{
    number n = {nullptr, nullptr, 11, 2.5, nullptr, 0};
    {
        const in_view view(view_float);
        setvalue(-7, &n);
    }
    EXPECT_EQ(n.real, -7.0);
    EXPECT_EQ(n.word, 11);
    {
        const in_view view(view_word);
        setvalue(INT32_MIN, &n);
    }
    {
        const in_view view(view_modular, 7);
        EXPECT_EQ(n.word, INT32_MIN);
        setvalue(9, &n);
    }
    EXPECT_EQ(n.word, 9) << "a residue is not reduced";
    EXPECT_EQ(n.real, -7.0);
    EXPECT_EQ(n.size, 0);
}

TEST(SpecialSet, MakesDigitsInEveryMode)
{
    const in_view view(view_float);
    const record_audit audit;
    number n;
    n.size = 0;
    special_set(-digit_base, &n);
    EXPECT_EQ(digits_of(&n), (digit_list{-1, 0}));
    special_set(5, &n);
    EXPECT_EQ(digits_of(&n), digit_list{5});
    special_set_2(65536, 65536, &n);
    EXPECT_EQ(digits_of(&n), (digit_list{16, 0}));
    special_set_2(INT32_MAX, INT32_MAX, &n);
    EXPECT_EQ(digits_of(&n), (digit_list{63, digit_base - 16, 1}));
    special_set_2(INT32_MIN, INT32_MIN, &n);
    EXPECT_EQ(digits_of(&n), (digit_list{64, 0, 0}));
    special_set_2(-3, 7, &n);
    EXPECT_EQ(digits_of(&n), digit_list{-21});
    special_set_2(0, -5, &n);
    EXPECT_EQ(digits_of(&n), digit_list{0});
    EXPECT_TRUE(flotemode && lintmode) << "the mode is as before";
    special_free(&n);
    audit.expect_unchanged("special_set");
}

TEST(Copy, RandomChainsAreCopiedNegatedAndLeftAlone)
{
    const in_view view(view_digits);
    test_random random;
    const record_audit audit;
    mpz_t za, zb, minus;
    mpz_inits(za, zb, minus, nullptr);
    number a, b;
    b.size = 0;
    for (int k = 0; k < rounds; ++k) {
        biased_mpz(&random, 6, true, za);
        mpz_neg(minus, za);
        number_from_mpz(za, &a);
        num_assign(&a, &b);
        number_to_mpz(&b, zb);
        ASSERT_EQ(mpz_cmp(zb, za), 0);
        ASSERT_TRUE(chain_is_normal(&b, digit_base));
        makeneg(&a, &b);
        number_to_mpz(&b, zb);
        ASSERT_EQ(mpz_cmp(zb, minus), 0);
        ASSERT_TRUE(chain_is_normal(&b, digit_base));
        number_to_mpz(&a, zb);
        ASSERT_EQ(mpz_cmp(zb, za), 0) << "the operand is spared";
        makeneg(&a, &a);
        number_to_mpz(&a, zb);
        ASSERT_EQ(mpz_cmp(zb, minus), 0) << "the result may be the operand";
        in_place_neg(&a);
        num_assign(&a, &a);
        number_to_mpz(&a, zb);
        ASSERT_EQ(mpz_cmp(zb, za), 0);
        abs_val_num(&a, &b);
        number_to_mpz(&b, zb);
        ASSERT_EQ(mpz_cmpabs(zb, za), 0);
        ASSERT_GE(mpz_sgn(zb), 0);
        special_free(&a);
    }
    special_free(&b);
    mpz_clears(za, zb, minus, nullptr);
    audit.expect_unchanged("copies");
}

TEST(Copy, BareChainsAndDigitsInFloatMode)
{
    const in_view view(view_float);
    const record_audit audit;
    number a = made_of({3, 0, digit_mask});
    number b = made_of({1});
    b.real = 4.5;
    spec_num_assign(&a, &b);
    EXPECT_EQ(digits_of(&b), digits_of(&a));
    EXPECT_EQ(b.real, 4.5);
    fast_num_assign(a.head->next, 2, &b);
    EXPECT_EQ(digits_of(&b), (digit_list{0, digit_mask}));
    fast_assign(a.head, 1, &b);
    EXPECT_EQ(digits_of(&b), digit_list{3});
    EXPECT_EQ(b.tail->next, nullptr);
    fast_assign(b.head, 1, &b);
    EXPECT_EQ(digits_of(&b), digit_list{3}) << "the chain may be that of the result";

    number *fresh = &b;
    faster_num_assign(nullptr, 3, &fresh);
    EXPECT_EQ(fresh, nullptr);
    faster_num_assign(a.head, a.size, &fresh);
    EXPECT_EQ(digits_of(fresh), digits_of(&a));
    special_free(fresh);
    free_imag(&fresh);
    EXPECT_EQ(fresh, nullptr);
    special_free(&a);
    special_free(&b);
    audit.expect_unchanged("bare chains");
}

TEST(Copy, CopiesTheLiveViewOnly)
{
    const number a = {nullptr, nullptr, 6, -1.5, nullptr, 0};
    number b = {nullptr, nullptr, 0, 0, nullptr, 0};
    {
        const in_view view(view_float);
        num_assign(&a, &b);
        EXPECT_EQ(b.real, -1.5);
        EXPECT_EQ(b.word, 0);
    }
    const in_view view(view_modular);
    num_assign(&a, &b);
    EXPECT_EQ(b.word, 6);
}

TEST(Negate, AFloatZeroStaysPositive)
{
    const in_view view(view_float);
    number n = {nullptr, nullptr, 0, 0.0, nullptr, 0};
    makeneg(&n, &n);
    EXPECT_FALSE(__builtin_signbit(n.real));
    in_place_neg(&n);
    EXPECT_FALSE(__builtin_signbit(n.real));
    n.real = -0.0;
    in_place_neg(&n);
    EXPECT_FALSE(__builtin_signbit(n.real));
    n.real = 1e-320;
    in_place_neg(&n);
    EXPECT_EQ(n.real, -1e-320);
    n.real = __builtin_inf();
    makeneg(&n, &n);
    EXPECT_EQ(n.real, -__builtin_inf());
}

TEST(Negate, WordViews)
{
    const auto negated = [](std::int32_t v) {
        number n = {nullptr, nullptr, v, 0, nullptr, 0};
        number m = n;
        makeneg(&n, &m);
        in_place_neg(&n);
        EXPECT_EQ(n.word, m.word) << "both flavours agree";
        return n.word;
    };
    {
        const in_view view(view_modular, 2147483646);
        EXPECT_EQ(negated(0), 0);
        EXPECT_EQ(negated(1), 2147483645);
        EXPECT_EQ(negated(2147483645), 1);
    }
    {
        const in_view view(view_field);
        EXPECT_EQ(negated(0), 0);
        EXPECT_EQ(negated(77), 77);
    }
    const in_view view(view_word);
    EXPECT_EQ(negated(0), 0);
    EXPECT_EQ(negated(INT32_MAX), -INT32_MAX);
    EXPECT_EQ(negated(INT32_MIN), INT32_MIN) << "wraps";
}

TEST(Release, FreeNumLeavesTheChainInWordModesAndSpecialFreeDoesNot)
{
    const record_audit audit;
    number n = made_of({1, 2});
    const std::int64_t live = live_numnodes();
    {
        const in_view view(view_word);
        free_num(&n);
        EXPECT_EQ(live_numnodes(), live);
        EXPECT_EQ(n.size, 2);
        EXPECT_EQ(digits_of(&n), (digit_list{1, 2}));
        special_free(&n);
        EXPECT_EQ(live_numnodes(), live - 2);
        EXPECT_EQ(n.size, 0);
    }
    const in_view view(view_digits);
    n = made_of({4});
    free_num(&n);
    EXPECT_EQ(n.size, 1) << "the record stays as it was";
    audit.expect_unchanged("free_num");
}

TEST(Release, FreeImagReturnsRecordAndChain)
{
    const in_view view(view_digits);
    const record_audit audit;
    number *n = nullptr;
    newimag(&n);
    n->size = 0;
    setvalue(INT32_MIN, n);
    number *first = n;
    free_imag(&n);
    EXPECT_EQ(n, nullptr);
    audit.expect_unchanged("free_imag");
#ifndef KELMAR_MALLOC_RECORDS
    const std::int32_t used = imagstash->slugs_used;
    newimag(&n);
    EXPECT_EQ(n, first) << "a released record is the next to go out";
    EXPECT_EQ(imagstash->slugs_used, used);
    n->size = 0;
    free_imag(&n);
#else
    (void)first;
#endif
}

#ifndef KELMAR_MALLOC_RECORDS
TEST(Release, AChainGoesBackInOneStep)
{
    number n = made_of({1, 2, 3});
    numnode *const head = n.head, *const tail = n.tail, *const below = numhead;
    special_free(&n);
    EXPECT_EQ(numhead, head);
    EXPECT_EQ(tail->next, below);
}
#endif

TEST(NormalForm, EachBrokenRuleIsSeen)
{
    const record_audit audit;
    const digit_list bad[] = {{0, 1}, {1, -1}, {-1, 1}, {digit_base}, {-digit_base}, {1, digit_base}, {0, 0}};
    for (const digit_list &digits : bad) {
        number n = made_of(digits);
        EXPECT_FALSE(chain_is_normal(&n, digit_base)) << digits[0];
        special_free(&n);
    }
    const digit_list good[] = {{0}, {1}, {-1}, {1, 0}, {-1, 0, -5}, {digit_mask, digit_mask}};
    for (const digit_list &digits : good) {
        number n = made_of(digits);
        EXPECT_TRUE(chain_is_normal(&n, digit_base)) << digits[0];
        special_free(&n);
    }
    number n = made_of({1, 2});
    n.size = 1;
    EXPECT_FALSE(chain_is_normal(&n, digit_base)) << "size too small";
    n.size = 3;
    EXPECT_FALSE(chain_is_normal(&n, digit_base)) << "size too large";
    n.size = 2;
    numnode *tail = n.tail;
    n.tail = n.head;
    EXPECT_FALSE(chain_is_normal(&n, digit_base)) << "tail is not last";
    n.tail = tail;
    EXPECT_FALSE(chain_is_normal(&n, 2)) << "another base";
    special_free(&n);
    EXPECT_FALSE(chain_is_normal(&n, digit_base)) << "no chain";
    audit.expect_unchanged("normal form");
}

}  // namespace
