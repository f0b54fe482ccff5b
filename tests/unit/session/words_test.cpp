// tests/unit/session/words_test.cpp -- values as words of 32 bits, and the arithmetic of words.
#include "session/words.h"
#include <climits>
#include <cmath>
#include <vector>
#include "numbers/dispatch.h"
#include "quoly/mul.h"
#include "session/errors.h"
#include "session/report.h"
#include "tests/support/session_text.h"
#include "tests/support/views.h"

using namespace kelmar;
using namespace kelmar_test;

namespace {

// What `convert` says of a float, and the word that it gives: the row of a table.
struct converted {
    double value;
    int said;
    std::int32_t word;
};

void expect_converted(const std::vector<converted> &rows, int (*convert)(const quolynode *, std::int32_t *))
{
    prepare_session_once();
    in_view live(view_float);
    quolynode *q = nullptr;
    std::int32_t word;
    quoly_set(0, &q);
    for (const converted &row : rows) {
        q->num->real = row.value;
        EXPECT_EQ(convert(q, &word), row.said) << row.value;
        EXPECT_EQ(word, row.word) << row.value;
    }
    free_quoly(&q);
}

TEST(ValueToWord, FloatsNearAWholeNumberAreThatNumber)
{
    expect_converted({{2.5, 1, 2},
                      {-2.5, 1, -2},
                      {3 - 1e-10, 1, 3},
                      {3 - 1e-8, 1, 2},
                      {-0.0, 1, 0},
                      {2147483647.0, 1, INT_MAX},
                      {2147483648.0, 0, 0},
                      {-2147483648.0, 1, INT_MIN},
                      {-2147483649.0, 0, 0},
                      {HUGE_VAL, 0, 0},
                      {-HUGE_VAL, 0, 0},
                      {std::nan(""), 0, 0}},
                     value_to_word);
}

TEST(ValueToWord, LongIntegersAreTakenModuloTheWord)
{
    prepare_session_once();
    flotemode = lintmode = 0;
    quolynode *q = nullptr;
    quolynode *base = nullptr;
    std::int32_t word;
    quoly_set(1, &q);
    quoly_set(-3, &base);
    std::uint32_t expected = 1;
    for (int i = 0; i < 100; ++i) {
        EXPECT_EQ(value_to_word(q, &word), 1);
        EXPECT_EQ(static_cast<std::uint32_t>(word), expected) << i;
        fast_quoly_mult(&q, base);
        expected *= static_cast<std::uint32_t>(-3);
    }
    free_quoly(&q);
    free_quoly(&base);
    flotemode = lintmode = 1;
}

TEST(ValueToCount, TellsWhatIsNoNumberFromWhatIsTooLarge)
{
    expect_converted(
        {{-7.5, 0, -7},
         {2147483647.0, 0, INT_MAX},
         {-2147483647.0, 0, -INT_MAX},
         {2147483648.0, err_counter_too_big, 0},
         {-2147483648.0, err_counter_too_big, 0},
         {HUGE_VAL, err_bad_coordinate, 0},
         {std::nan(""), err_bad_coordinate, 0}},
        [](const quolynode *q, std::int32_t *word) { return value_to_count(q, err_bad_coordinate, word); });
}

TEST(Words, WrapAtTheirEnds)
{
    prepare_session_once();
    EXPECT_EQ(add_words(INT_MAX, 1), INT_MIN);
    EXPECT_EQ(subtract_words(INT_MIN, 1), INT_MAX);
    EXPECT_EQ(multiply_words(1 << 16, 1 << 16), 0);
    EXPECT_EQ(negate_word(INT_MIN), INT_MIN);
    EXPECT_EQ(divide_words(INT_MIN, -1, '/'), INT_MIN);
    EXPECT_EQ(divide_words(INT_MIN, -1, '|'), 0);
}

TEST(Words, QuotientsAreTruncatedAndRemaindersFollowTheSwitch)
{
    prepare_session_once();
    pos_mod = 0;
    EXPECT_EQ(divide_words(-7, 2, '/'), -3);
    EXPECT_EQ(divide_words(-7, 2, '\\'), -3);
    EXPECT_EQ(divide_words(-7, 2, '|'), -1);
    pos_mod = 1;
    EXPECT_EQ(divide_words(-7, 2, '|'), 1);
    EXPECT_EQ(divide_words(-7, -2, '|'), 1);
    EXPECT_EQ(divide_words(-7, INT_MIN, '|'), INT_MAX - 6);
}

TEST(Words, ModularModeIsTheRingOfTheModulus)
{
    prepare_session_once();
    in_view modular(view_modular, 101);
    EXPECT_EQ(add_words(100, 2), 1);
    EXPECT_EQ(subtract_words(1, 2), 100);
    EXPECT_EQ(multiply_words(100, 100), 1);
    EXPECT_EQ(negate_word(0), 0);
    EXPECT_EQ(negate_word(1), 100);
}

TEST(Words, InATableFieldEachIsItsOwnNegative)
{
    prepare_session_once();
    in_view field(view_field, 256);
    EXPECT_EQ(negate_word(77), 77);
    EXPECT_EQ(add_words(77, 77), 0);
    EXPECT_EQ(subtract_words(0, 77), 77);
}

}  // namespace
