// Draws against the C library's generator, and random values in every view.
#include "numbers/random.h"
#include <gtest/gtest.h>
#include <cstdlib>
#include "numbers/compare.h"
#include "numbers/plain_quoly.h"
#include "tests/support/long_numbers.h"

using namespace kelmar;

// rand_denom_n = v in every view.
static void set_denominator(std::int32_t v)
{
    special_set(v, &rand_denom_n);
    rand_denom_n.word = v;
    rand_denom_n.real = v;
}

TEST(Random, DrawsAreTheLeadingBits)
{
    srandom(1);
    std::int64_t drawn[3];
    for (std::int64_t &d : drawn) d = random();
    srandom(1);
    EXPECT_EQ(rand_integer2(), drawn[0] >> 17);
    EXPECT_EQ(rand_integer(), (drawn[1] >> 17) * 16384 + (drawn[2] >> 17));
}

TEST(Random, DrawsStayInRange)
{
    std::int32_t lowest = digit_base, highest = 0;
    for (int i = 0; i < 1000000; ++i) {
        const std::int32_t v = rand_integer();
        ASSERT_TRUE(v >= 0 && v < digit_base);
        lowest = v < lowest ? v : lowest;
        highest = v > highest ? v : highest;
        const std::int32_t w = rand_integer3();
        ASSERT_TRUE(w >= 0 && w < 48871);
    }
    EXPECT_LT(lowest, 10000);
    EXPECT_GT(highest, digit_base - 10000);
}

TEST(Random, ValuesInEveryView)
{
    set_denominator(1);
    kelmar_test::record_audit audit;
    quolynode *q = nullptr;

    srandom(7);
    const std::int32_t first = rand_integer();
    srandom(7);
    randomize(0, &q);
    ASSERT_TRUE(q->is_num);
    EXPECT_TRUE(is_longint(q->num, first));

    special_free(q->num);
    srandom(7);
    flotemode = lintmode = 1;
    randomize(0, &q);
    EXPECT_EQ(q->num->real, first);
    set_denominator(8);
    srandom(7);
    randomize(0, &q);
    EXPECT_EQ(q->num->real, first / 8.0);
    flotemode = 0;

    srandom(7);
    randomize(0, &q);
    EXPECT_EQ(q->num->word, first / 8);

    modularmode = 1;
    modulus = 101;
    smallmodulus = 1;
    set_denominator(1);
    srandom(7);
    randomize(0, &q);
    EXPECT_EQ(q->num->word, first % 101);
    modularmode = lintmode = smallmodulus = 0;
    modulus = -1;
    q->num->size = 0;
    free_plain(&q);
    audit.expect_unchanged("random values");
}

TEST(Random, ClockIsAddedWithinDigitRange)
{
    set_denominator(1);
    quolynode *q = nullptr;
    for (int i = 0; i < 10000; ++i) {
        randomize(1, &q);
        ASSERT_EQ(q->num->size, 1);
        ASSERT_TRUE(q->num->head->digit >= 0 && q->num->head->digit < digit_base);
    }
    free_plain(&q);
}
