// Decimal literals in, decimal text out, in every view.
#include "numbers/decimal.h"
#include <gtest/gtest.h>
#include <cmath>
#include <cstdlib>
#include <cstring>
#include <limits>
#include <string>
#include <vector>
#include "numbers/compare.h"
#include "numbers/dispatch.h"
#include "session/report.h"
#include "tests/support/by_build.h"
#include "tests/support/long_numbers.h"
#include "tests/support/views.h"

using namespace kelmar;
using namespace kelmar_test;

namespace {

constexpr int rounds = by_build(500, 20000);
constexpr int long_length = by_build(20000, 200000);

constexpr const char *overflow_text = " *** Warning. overflow while reading constant.\n";

// Settings of the display, as before at the end of the block.
struct kept_settings {
    std::int32_t cutoff = dispcutoff, ugly = uglyprint, groups = disp_size, alt = alt_form_display,
                 warned = warn_cnt;
    ~kept_settings()
    {
        dispcutoff = cutoff;
        uglyprint = ugly;
        disp_size = groups;
        alt_form_display = alt;
        warn_cnt = warned;
    }
};

literal read_text(const std::string &text)
{
    literal lit;
    open_literal(&lit);
    for (const char c : text) literal_digit(&lit, c - '0');
    close_literal(&lit);
    return lit;
}

std::vector<std::int32_t> groups_of(const literal *lit)
{
    std::vector<std::int32_t> groups;
    for (const numnode *node = lit->groups.head; node; node = node->next) groups.push_back(node->digit);
    return groups;
}

using group_list = std::vector<std::int32_t>;

// The value of a literal in the live view.
number value_of(const std::string &text)
{
    number n = {nullptr, nullptr, 0, 0, nullptr, 0};
    literal lit = read_text(text);
    literal_to_number(&lit, &n);
    EXPECT_EQ(lit.groups.size, 0) << "the groups are released";
    return n;
}

struct shown {
    std::string text;
    std::int32_t col;
};

// What `write` puts on a stream, and the column after it.
template <class F> shown written(F write, std::int32_t col = 0)
{
    char *text = nullptr;
    std::size_t length = 0;
    std::FILE *out = open_memstream(&text, &length);
    write(out, &col);
    std::fclose(out);
    shown result = {std::string(text, length), col};
    std::free(text);
    return result;
}

shown displayed(const number *n, int spaced_minus = 0, int wrap = 0, int no_sign = 0, std::int32_t col = 0)
{
    return written([=](std::FILE *out, std::int32_t *c) { display(out, wrap, no_sign, n, c, spaced_minus); },
                   col);
}

shown displayed_real(double v, int spaced_minus = 0)
{
    const number n = {nullptr, nullptr, 0, v, nullptr, 0};
    return displayed(&n, spaced_minus);
}

shown displayed_word(std::int32_t v, int spaced_minus = 0)
{
    const number n = {nullptr, nullptr, v, 0, nullptr, 0};
    return displayed(&n, spaced_minus);
}

std::string digits_text(std::int32_t length, char first = '7')
{
    std::string text(1, first);
    for (std::int32_t k = 1; k < length; ++k) text += static_cast<char>('0' + (k * 7 + k / 10) % 10);
    return text;
}

// Reading -----------------------------------------------------------------------------------------------

TEST(Literal, GroupsAndCounts)
{
    const record_audit audit;
    const struct {
        const char *text;
        group_list groups;
        std::int32_t ndigits;
    } rows[] = {{"0", {0}, 1},
                {"00000000000", {0}, 11},
                {"00000000", {0}, 8},
                {"000000001", {1}, 9},
                {"0000000000000000000000000012", {12}, 28},
                {"12345678", {12345678}, 8},
                {"123456789", {1, 23456789}, 9},
                {"0123456789", {1, 23456789}, 10},
                {"0000000123456789", {1, 23456789}, 16},
                {"1234567890123456", {12345678, 90123456}, 16},
                {"100000000", {1, 0}, 9},
                {"10000000000000000", {1, 0, 0}, 17},
                {"123456781234567", {1234567, 81234567}, 15},
                {"012345678", {12345678}, 9},
                {"0000000900000000", {9, 0}, 16},
                {"99999999999999999999999", {9999999, 99999999, 99999999}, 23}};
    for (const auto &row : rows) {
        literal lit = read_text(row.text);
        EXPECT_EQ(groups_of(&lit), row.groups) << row.text;
        EXPECT_EQ(lit.ndigits, row.ndigits) << row.text;
        EXPECT_TRUE(chain_is_normal(&lit.groups, decimal_base)) << row.text;
        special_free(&lit.groups);
    }
    audit.expect_unchanged("literals");
}

TEST(Literal, LeadingZerosTakeNoRecords)
{
    const std::int64_t before = live_numnodes();
    literal lit = read_text(std::string(100000, '0') + "5");
    EXPECT_EQ(live_numnodes(), before + 1);
    EXPECT_EQ(groups_of(&lit), group_list{5});
    special_free(&lit.groups);
}

TEST(Literal, FloatsGoByHorner)
{
    const in_view view(view_float);
    EXPECT_EQ(value_of("0").real, 0.0);
    EXPECT_EQ(value_of("123456789").real, 123456789.0);
    EXPECT_EQ(value_of("9007199254740993").real, 90071992.0 * 1e8 + 54740993.0);
    double horner = 10000;  // the first of 39 groups
    for (int k = 0; k < 38; ++k) horner *= 1e8;
    EXPECT_EQ(value_of("1" + std::string(308, '0')).real, horner);
    EXPECT_EQ(value_of("1" + std::string(400, '0')).real, std::numeric_limits<double>::infinity());
}

TEST(Literal, ResiduesAreReduced)
{
    for (const std::int32_t m : {2, 7, 65521, 100000000, 2147483629}) {
        const in_view view(view_modular, m);
        const std::string text = digits_text(100);
        mpz_t z;
        mpz_init_set_str(z, text.c_str(), 10);
        EXPECT_EQ(value_of(text).word,
                  static_cast<std::int32_t>(mpz_fdiv_ui(z, static_cast<unsigned long>(m))))
            << m;
        EXPECT_EQ(value_of("5").word, 5 % m);
        mpz_clear(z);
    }
}

// The text written to standard output while the literal is read as a word.
std::string word_warning(const char *text, std::int32_t expected)
{
    testing::internal::CaptureStdout();
    const number n = value_of(text);
    std::fflush(stdout);
    EXPECT_EQ(n.word, expected) << text;
    return testing::internal::GetCapturedStdout();
}

TEST(Literal, WordsThatOverflowAreReportedThirtyTimes)
{
    const kept_settings kept;
    const in_view view(view_word);
    warn_cnt = 0;
    EXPECT_EQ(word_warning("99999999", 99999999), "");
    EXPECT_EQ(word_warning("2147483645", 2147483645), "");
    EXPECT_EQ(word_warning("2147483646", 2147483646), overflow_text);
    EXPECT_EQ(word_warning("2147483647", 2147483647), overflow_text);
    EXPECT_EQ(word_warning("2147483648", INT32_MIN), overflow_text);
    EXPECT_EQ(word_warning("4294967296", 0), "") << "two groups that wrap to a small word";
    EXPECT_EQ(
        word_warning("100000000000000000", static_cast<std::int32_t>(100000000000000000ll & 0xffffffff)),
        overflow_text)
        << "three groups";
    EXPECT_EQ(warn_cnt, 4);
    warn_cnt = 29;
    EXPECT_EQ(word_warning("2147483648", INT32_MIN), overflow_text);
    EXPECT_EQ(word_warning("2147483648", INT32_MIN), "");
    EXPECT_EQ(warn_cnt, 30);
}

// Read `length` decimals as a long integer and judge by GMP.
void check_long_literal(std::int32_t length)
{
    const std::string text = digits_text(length);
    number n = value_of(text);
    mpz_t z, got;
    mpz_init_set_str(z, text.c_str(), 10);
    mpz_init(got);
    number_to_mpz(&n, got);
    EXPECT_EQ(mpz_cmp(z, got), 0) << length;
    EXPECT_TRUE(chain_is_normal(&n, digit_base)) << length;
    mpz_clears(z, got, nullptr);
    special_free(&n);
}

TEST(Literal, LongIntegersOnBothSidesOfEveryHalving)
{
    const in_view view(view_digits);
    const record_audit audit;
    for (std::int32_t length = 1; length <= 300; ++length) check_long_literal(length);
    for (const std::int32_t groups : {16, 17, 32, 33, 64, 65, 128, 129, 1000}) {
        for (std::int32_t off = -1; off <= 1; ++off) check_long_literal(8 * groups + off);
    }
    check_long_literal(long_length);
    audit.expect_unchanged("long literals");
}

TEST(Literal, ReplacesTheOldValue)
{
    const in_view view(view_digits);
    const record_audit audit;
    number n;
    number_from_text("99999999999999999999", &n);
    literal lit = read_text("5");
    literal_to_number(&lit, &n);
    EXPECT_TRUE(is_longint(&n, 5));
    special_free(&n);
    audit.expect_unchanged("replaced");
}

// Base 10^8 -----------------------------------------------------------------------------------------------

std::string text_of_groups(const number *g)
{
    std::string text = g->head->digit < 0 ? "-" : "";
    for (const numnode *node = g->head; node; node = node->next) {
        std::string group = std::to_string(std::abs(node->digit));
        if (node != g->head) group.insert(0, 8 - group.size(), '0');
        text += group;
    }
    return text;
}

TEST(BaseTen, BothConversionsAgreeWithGmp)
{
    const in_view view(view_float);  // digits are read whatever the mode
    test_random random;
    const record_audit audit;
    mpz_t z;
    mpz_init(z);
    number out;
    out.size = 0;
    for (int k = 0; k < rounds; ++k) {
        biased_mpz(&random, k % 20 == 0 ? 80 : 18, true, z);  // sizes on both sides of 16
        number n;
        number_from_mpz(z, &n);
        make_base_10(&n, &out);
        char *wanted = mpz_get_str(nullptr, 10, z);
        ASSERT_EQ(text_of_groups(&out), wanted);
        ASSERT_TRUE(chain_is_normal(&out, decimal_base));
        std::free(wanted);
        special_free(&n);
    }
    special_free(&out);
    mpz_clear(z);
    audit.expect_unchanged("make_base_10");
}

TEST(BaseTen, TheResultMayBeTheOperand)
{
    number n;
    number_from_text("-123456789012345678901234567890", &n);
    make_base_10(&n, &n);
    EXPECT_EQ(text_of_groups(&n), "-123456789012345678901234567890");
    special_free(&n);
}

TEST(BaseTen, FifteenAndSixteenDigitsMeetAtTheThreshold)
{
    mpz_t z;
    mpz_init(z);
    for (const unsigned long bits : {28ul * 14, 28ul * 15 - 1, 28ul * 15, 28ul * 16 - 1, 28ul * 16}) {
        mpz_ui_pow_ui(z, 2, bits);
        number n, out;
        out.size = 0;
        number_from_mpz(z, &n);
        make_base_10(&n, &out);
        char *wanted = mpz_get_str(nullptr, 10, z);
        EXPECT_EQ(text_of_groups(&out), wanted) << bits;
        std::free(wanted);
        special_free(&n);
        special_free(&out);
    }
    mpz_clear(z);
}

// Floats --------------------------------------------------------------------------------------------------

TEST(DisplayFloat, TextAndColumns)
{
    const kept_settings kept;
    const in_view view(view_float);
    const double inf = std::numeric_limits<double>::infinity();
    const struct {
        double v;
        const char *text, *spaced, *spaced_ugly;
        std::int32_t width;
    } rows[] = {{0.0, "0", "0", "0", 1},
                {-0.0, "0", "0", "0", 1},
                {1, "1", "1", "1", 1},
                {9, "9", "9", "9", 1},
                {10, "10", "10", "10", 2},
                {-42, "-42", "- 42", "-42", 2},
                {123456789, "123456789", "123456789", "123456789", 9},
                {0.5, "0.5", "0.5", "0.5", 22},
                {-0.1, "-0.1", "- 0.1", "-0.1", 22},
                {1.0 / 3, "0.3333333333333333", "0.3333333333333333", "0.3333333333333333", 22},
                {1e20, "1e+20", "1e+20", "1e+20", 21},
                {inf, "inf", "inf", "inf", 22},
                {-inf, "-inf", "- inf", "-inf", 22}};
    for (const auto &row : rows) {
        uglyprint = 0;
        EXPECT_EQ(displayed_real(row.v).text, row.text);
        EXPECT_EQ(displayed_real(row.v).col, row.width) << row.text;
        EXPECT_EQ(displayed_real(row.v, 1).text, row.spaced);
        EXPECT_EQ(displayed_real(row.v, 1).col, row.width) << row.text;
        uglyprint = 1;
        EXPECT_EQ(displayed_real(row.v, 1).text, row.spaced_ugly);
    }
    EXPECT_EQ(displayed_real(std::nan("")).text, "nan");
    EXPECT_EQ(displayed_real(-std::nan("")).text, "nan");
    EXPECT_EQ(displayed_real(-std::nan(""), 1).text, "nan");
    EXPECT_EQ(displayed_real(std::nan("")).col, 22);
}

TEST(DisplayFloat, TheColumnOfThousandIsThreeByRoundingOfTheLogarithm)
{
    const in_view view(view_float);
    EXPECT_EQ(displayed_real(1000).col,
              static_cast<std::int32_t>(std::floor(std::log(1000.0) / std::log(10.0))) + 1);
    EXPECT_EQ(displayed_real(999).col, 3);
    EXPECT_EQ(displayed_real(1001).col, 4);
}

TEST(DisplayFloat, ColumnsAddUp)
{
    const in_view view(view_float);
    const number n = {nullptr, nullptr, 0, 25, nullptr, 0};
    EXPECT_EQ(displayed(&n, 0, 1, 0, 90).text, "25") << "floats are never broken";
    EXPECT_EQ(displayed(&n, 0, 1, 0, 90).col, 92);
}

// Words ---------------------------------------------------------------------------------------------------

TEST(DisplayWord, SignsAndColumns)
{
    const kept_settings kept;
    const in_view view(view_word);
    const struct {
        std::int32_t v;
        const char *text, *spaced;
        std::int32_t width;
    } rows[] = {{0, "0", "0", 1},
                {1, "1", "1", 1},
                {-1, "-1", "- 1", 1},
                {3, "3", "3", 2},
                {100, "100", "100", 3},
                {-100, "-100", "- 100", 3},
                {INT32_MAX, "2147483647", "2147483647", 10},
                {INT32_MIN, "-2147483648", "- 2147483648", 11}};
    for (const auto &row : rows) {
        EXPECT_EQ(displayed_word(row.v).text, row.text);
        EXPECT_EQ(displayed_word(row.v, 1).text, row.spaced);
        EXPECT_EQ(displayed_word(row.v).col, row.width) << row.text;
    }
    uglyprint = 1;
    EXPECT_EQ(displayed_word(-5, 1).text, "-5");
}

TEST(DisplayWord, ResiduesAboveHalfTheModulusAreNegative)
{
    const kept_settings kept;
    const in_view view(view_modular, 101);
    alt_form_display = 1;
    EXPECT_EQ(displayed_word(50).text, "50");
    EXPECT_EQ(displayed_word(51).text, "-50");
    EXPECT_EQ(displayed_word(100).text, "-1");
    EXPECT_EQ(displayed_word(100, 1).text, "- 1");
    EXPECT_EQ(displayed_word(101).text, "101") << "no residue: as it stands";
    EXPECT_EQ(displayed_word(100).col, 1);
    alt_form_display = 0;
    EXPECT_EQ(displayed_word(100).text, "100");
    EXPECT_EQ(displayed_word(100).col, 1) << "the width is that of the smaller representative";
    const in_view even(view_modular, 10);
    alt_form_display = 1;
    EXPECT_EQ(displayed_word(5).text, "5") << "exactly half";
    EXPECT_EQ(displayed_word(6).text, "-4");
}

// Long integers -------------------------------------------------------------------------------------------

shown displayed_long(const char *text, int spaced_minus = 0, int wrap = 0, int no_sign = 0,
                     std::int32_t col = 0)
{
    const in_view view(view_digits);
    number n;
    number_from_text(text, &n);
    shown result = displayed(&n, spaced_minus, wrap, no_sign, col);
    special_free(&n);
    return result;
}

TEST(DisplayLong, TextSignsAndColumns)
{
    const kept_settings kept;
    const record_audit audit;
    EXPECT_EQ(displayed_long("0").text, "0");
    EXPECT_EQ(displayed_long("0").col, 1);
    EXPECT_EQ(displayed_long("-100000000").text, "-100000000");
    EXPECT_EQ(displayed_long("-100000000").col, 10);
    EXPECT_EQ(displayed_long("-5", 1).text, "- 5");
    EXPECT_EQ(displayed_long("-5", 1).col, 2) << "the blank is not counted";
    EXPECT_EQ(displayed_long("5", 1).text, "5");
    EXPECT_EQ(displayed_long("99999999").col, 8);
    EXPECT_EQ(displayed_long("1000000002000000030000000400000005").text,
              "1000000002000000030000000400000005");
    uglyprint = 1;
    EXPECT_EQ(displayed_long("-5", 1).text, "-5");
    audit.expect_unchanged("display");
}

TEST(DisplayLong, NoSignRightAlignsTheFirstGroupInEightPlaces)
{
    EXPECT_EQ(displayed_long("42", 0, 0, 1).text, "      42");
    EXPECT_EQ(displayed_long("-42", 0, 0, 1).text, "     -42");
    EXPECT_EQ(displayed_long("42", 0, 0, 1).col, 8);
    EXPECT_EQ(displayed_long("-12345678", 0, 0, 1).text, "-12345678");
    EXPECT_EQ(displayed_long("-12345678", 0, 0, 1).col, 8);
    EXPECT_EQ(displayed_long("-4200000001", 0, 0, 1).text, "     -4200000001");
}

TEST(DisplayLong, BreaksFullLinesBetweenGroups)
{
    const kept_settings kept;
    dispcutoff = 16;
    const char *text = "1111111122222222333333334444444455555555";
    EXPECT_EQ(displayed_long(text, 0, 1).text, "1111111122222222 `\n 3333333344444444 `\n 55555555");
    EXPECT_EQ(displayed_long(text, 0, 1).col, 8);
    EXPECT_EQ(displayed_long(text, 0, 0).text, "1111111122222222 33333333 44444444 55555555");
    EXPECT_EQ(displayed_long(text, 0, 0).col, 40) << "without wrap the column runs on";
    EXPECT_EQ(displayed_long("1111111122222222", 0, 1).text, "1111111122222222")
        << "no break behind the last";
    EXPECT_EQ(displayed_long("33333333", 0, 1, 0, 16).text, "33333333") << "no break before the first";
    dispcutoff = 17;
    EXPECT_EQ(displayed_long(text, 0, 1).text, "111111112222222233333333 `\n 4444444455555555");
    uglyprint = 1;
    dispcutoff = 8;
    EXPECT_EQ(displayed_long(text, 0, 1).text, text);
}

shown shown_groups(const group_list &groups, int compact, int pad, int no_sign)
{
    number n;
    n.size = 0;
    numnode *head = nullptr, *tail = nullptr;
    for (auto g = groups.rbegin(); g != groups.rend(); ++g) {
        head = new_digit(*g, head);
        if (!tail) tail = head;
    }
    take_chain(&n, head, tail, static_cast<std::int32_t>(groups.size()));
    shown result = written(
        [&](std::FILE *out, std::int32_t *col) { showint(out, &n, compact, pad, 1, no_sign, 0, 1, col); });
    EXPECT_EQ(n.size, static_cast<std::int32_t>(groups.size())) << "a given chain is spared";
    special_free(&n);
    return result;
}

TEST(ShowInt, GivenGroupsWithAndWithoutLeadingZeros)
{
    const record_audit audit;
    EXPECT_EQ(shown_groups({5, 6}, 1, 0, 0).text, "500000006");
    EXPECT_EQ(shown_groups({5, 6}, 0, 0, 0).text, "0000000500000006");
    EXPECT_EQ(shown_groups({5, 6}, 0, 0, 0).col, 16);
    EXPECT_EQ(shown_groups({-5, -6}, 0, 0, 1).text, "0000000500000006");
    EXPECT_EQ(shown_groups({0}, 1, 0, 0).text, "0");
    audit.expect_unchanged("showint");
}

TEST(ShowInt, PaddingFillsUpToTheDisplaySize)
{
    const kept_settings kept;
    disp_size = 3;
    EXPECT_EQ(shown_groups({7}, 0, 1, 1).text, "00000000 00000000 00000007");
    EXPECT_EQ(shown_groups({7, 8, 9}, 0, 1, 1).text, "000000070000000800000009");
    EXPECT_EQ(shown_groups({1, 7, 8, 9}, 0, 1, 1).text, "00000001000000070000000800000009");
    dispcutoff = 16;
    disp_size = 4;
    EXPECT_EQ(shown_groups({7}, 0, 1, 1).text, "00000000 00000000 `\n 00000000 00000007");
}

std::string decimals_of_one()
{
    number groups;
    groups.size = 0;
    const in_view view(view_digits);
    make_base_10(&disp_cons, &groups);
    std::string text = std::to_string(groups.head->digit);
    for (const numnode *node = groups.head->next; node; node = node->next) text += node->digit ? "?" : "0";
    special_free(&groups);
    return text;
}

TEST(CalcDisp, FiveGroupsAreTenToThe40)
{
    const kept_settings kept;
    disp_size = 5;
    calc_disp();
    EXPECT_EQ(decimals_of_one(), "100000");
}

TEST(CalcDisp, FollowsTheDisplaySizeInEveryView)
{
    const kept_settings kept;
    for (const num_view v : {view_float, view_field, view_modular, view_word, view_small, view_digits}) {
        const in_view view(v);
        for (const std::int32_t groups : {3, 0, 1, 17}) {
            disp_size = groups;
            calc_disp();
            EXPECT_EQ(live_view(), v);
            EXPECT_EQ(decimals_of_one(), "1" + std::string(static_cast<std::size_t>(groups), '0'));
        }
    }
}

TEST(CalcDisp, MoreGroupsThanALongIntegerHasStandForThatMany)
{
    const kept_settings kept;
    disp_size = 2147483647;
    EXPECT_EQ(places_shown(), groups_limit);
    calc_disp();
    EXPECT_EQ(disp_cons.size, 32769);  // the longest integer has 32,767
    disp_size = 5;
    calc_disp();
    EXPECT_EQ(disp_cons.size, 5);
}

TEST(RoundTrip, DisplayedLongIntegersReadBack)
{
    const kept_settings kept;
    const in_view view(view_digits);
    test_random random;
    const record_audit audit;
    uglyprint = 1;
    mpz_t z;
    mpz_init(z);
    for (int k = 0; k < rounds / 10; ++k) {
        biased_mpz(&random, 40, false, z);
        number n;
        number_from_mpz(z, &n);
        number back = value_of(displayed(&n, 0, 1).text);
        ASSERT_TRUE(equal(&n, &back));
        special_free(&n);
        special_free(&back);
    }
    mpz_clear(z);
    audit.expect_unchanged("round trip");
}

// In a saved file a double is as short as 15 to 17 digits allow, and reads back as itself.
TEST(RoundTrip, SavedDoublesReadBackAndAreShort)
{
    const kept_settings kept;
    const in_view view(view_float);
    const struct {
        double value;
        const char *text;
    } rows[] = {{0.1, "0.1"},
                {-0.1, "-0.1"},
                {1.0 / 3, "0.3333333333333333"},
                {0.1 + 0.2, "0.30000000000000004"},
                {9007199254740993.0, "9007199254740992"},
                {1e15 + 0.125, "1000000000000000.1"},
                {1.7976931348623157e+308, "1.7976931348623157e+308"},
                {5e-324, "4.94065645841247e-324"}};
    round_trip = 1;
    for (const auto &row : rows) {
        EXPECT_EQ(displayed_real(row.value).text, row.text);
    }
    test_random random;
    for (int k = 0; k < rounds; ++k) {
        const std::uint64_t bits = random.engine();
        double v;
        std::memcpy(&v, &bits, sizeof v);
        if (!std::isfinite(v)) continue;
        ASSERT_EQ(std::strtod(displayed_real(v).text.c_str(), nullptr), v) << "seed " << random.seed;
    }
    round_trip = 0;
}

}  // namespace
