// Sums of word arrays, against a plain loop over all degrees.
#include "poly/onevar_add.h"
#include <gtest/gtest.h>
#include <algorithm>
#include <string>
#include <vector>
#include "numbers/word_mod.h"
#include "session/levels.h"
#include "session/output.h"
#include "tests/support/by_build.h"
#include "tests/support/catch_error.h"
#include "tests/support/long_numbers.h"
#include "tests/support/reports.h"
#include "tests/support/views.h"

using namespace kelmar;
using namespace kelmar_test;

namespace {

constexpr int rounds = by_build(5000, 50000);

constexpr std::int32_t room = 40;
constexpr std::int32_t untouched = -99;

using words = std::vector<std::int32_t>;

enum operation { op_add, op_sub, op_add_shift, op_sub_shift };

struct range {
    std::int32_t lo, hi;
    std::int32_t at(const words &a, std::int32_t i) const
    {
        return i < lo || i > hi ? 0 : a[static_cast<std::size_t>(i)];
    }
};

std::int32_t combined(std::int32_t a, std::int32_t b, bool minus)
{
    return minus ? mod_sub(a, b, modulus) : mod_add(a, b, modulus);
}

// What c and the top must be.
std::int32_t expected_sum(const words &a, const words &b, words *c, range ra, range rb, std::int32_t shift,
                          bool minus)
{
    const std::int32_t lo = std::min(ra.lo, rb.lo + shift), hi = std::max(ra.hi, rb.hi + shift);
    std::int32_t top = lo - 1;
    for (std::int32_t i = lo; i <= hi; ++i) {
        const std::int32_t v = combined(ra.at(a, i), rb.at(b, i - shift), minus);
        (*c)[static_cast<std::size_t>(i)] = v;
        if (v != 0) top = i;
    }
    return top;
}

words random_words(test_random *r)
{
    words a(room * 2);
    for (std::int32_t &v : a) {
        const std::uint64_t kind = r->below(4);
        v = kind == 0   ? 0
            : kind == 1 ? modulus - 1
                        : static_cast<std::int32_t>(r->below(static_cast<std::uint64_t>(modulus)));
    }
    return a;
}

range random_range(test_random *r)
{
    const std::int32_t lo = static_cast<std::int32_t>(r->below(room));
    const std::uint64_t width = static_cast<std::uint64_t>(room - lo);
    return {lo, lo + static_cast<std::int32_t>(
                         r->below(r->below(2) ? width : std::min<std::uint64_t>(width, 4)))};
}

void run(operation op, const std::int32_t *a, const std::int32_t *b, std::int32_t *c, range ra, range rb,
         std::int32_t shift, std::int32_t *top)
{
    switch (op) {
    case op_add: onevar_add(a, b, c, ra.lo, ra.hi, rb.lo, rb.hi, top); return;
    case op_sub: onevar_sub(a, b, c, ra.lo, ra.hi, rb.lo, rb.hi, top); return;
    case op_add_shift: onevar_add_shift(a, b, c, ra.lo, ra.hi, rb.lo, rb.hi, shift, top); return;
    case op_sub_shift: onevar_sub_shift(a, b, c, ra.lo, ra.hi, rb.lo, rb.hi, shift, top); return;
    }
}

// Moduli on both sides of 2^30 + 1, where two residues no longer add up to a signed word.
class OnevarAdd : public testing::TestWithParam<std::int32_t> {};

TEST_P(OnevarAdd, FillsTheUnionOfTheRangesAndNothingElse)
{
    in_view live(GetParam() == 0 ? view_field : view_modular, GetParam());
    test_random r;
    for (int k = 0; k < rounds; ++k) {
        const operation op = static_cast<operation>(k % 4);
        words a = random_words(&r), b = random_words(&r);
        if (r.below(4) == 0) {
            b = a;
            if (op == op_add || op == op_add_shift) {
                for (std::int32_t &v : b) v = mod_sub(0, v, modulus);
            }
        }
        const range ra = random_range(&r), rb = r.below(3) ? random_range(&r) : ra;
        const bool shifted = op == op_add_shift || op == op_sub_shift;
        const std::int32_t shift = shifted ? static_cast<std::int32_t>(r.below(room)) : 0;
        words expected(room * 2, untouched), c(room * 2, untouched);
        const bool minus = op == op_sub || op == op_sub_shift;
        const std::int32_t expected_top = expected_sum(a, b, &expected, ra, rb, shift, minus);
        const words a_kept = a, b_kept = b;
        std::int32_t top = 12345;
        run(op, a.data(), b.data(), c.data(), ra, rb, shift, &top);
        ASSERT_EQ(c, expected) << op << " of " << ra.lo << ".." << ra.hi << " and " << rb.lo << ".." << rb.hi;
        ASSERT_EQ(top, expected_top);
        ASSERT_EQ(a, a_kept);
        ASSERT_EQ(b, b_kept);

        words in_place = a_kept;
        words expected_in_place = a_kept;
        expected_sum(a, b, &expected_in_place, ra, rb, shift, minus);
        run(op, in_place.data(), b.data(), in_place.data(), ra, rb, shift, &top);
        ASSERT_EQ(in_place, expected_in_place);
        ASSERT_EQ(top, expected_top);
        if (shifted) continue;
        words into_b = b_kept;
        words expected_into_b = b_kept;
        expected_sum(a, b, &expected_into_b, ra, rb, 0, minus);
        run(op, a.data(), into_b.data(), into_b.data(), ra, rb, 0, &top);
        ASSERT_EQ(into_b, expected_into_b);
    }
}

TEST_P(OnevarAdd, SelfAddGivesTheSumOfTheHalves)
{
    in_view live(GetParam() == 0 ? view_field : view_modular, GetParam());
    test_random r;
    for (int k = 0; k < rounds; ++k) {
        const words a = random_words(&r);
        const std::int32_t lo = static_cast<std::int32_t>(r.below(10));
        const std::int32_t half = 1 + static_cast<std::int32_t>(r.below(20));
        const std::int32_t hi = lo + static_cast<std::int32_t>(r.below(static_cast<std::uint64_t>(2 * half)));
        words expected(room * 2, untouched), b(room * 2, untouched);
        std::int32_t expected_top = lo - 1;
        const range all = {lo, hi};
        for (std::int32_t i = lo; i < lo + half; ++i) {
            const std::int32_t v = combined(all.at(a, i), all.at(a, i + half), false);
            expected[static_cast<std::size_t>(i)] = v;
            if (v != 0) expected_top = i;
        }
        std::int32_t top = 12345;
        onevar_self_add(a.data(), b.data(), lo, hi, half, &top);
        ASSERT_EQ(b, expected) << lo << ".." << hi << " by " << half;
        ASSERT_EQ(top, expected_top);
        words in_place = a;
        onevar_self_add(in_place.data(), in_place.data(), lo, hi, half, &top);
        for (std::int32_t i = 0; i < room * 2; ++i) {
            const std::size_t at = static_cast<std::size_t>(i);
            ASSERT_EQ(in_place[at], i >= lo && i < lo + half ? expected[at] : a[at]);
        }
    }
}

INSTANTIATE_TEST_SUITE_P(Moduli, OnevarAdd,
                         testing::Values(0, 2, 101, 65537, 1073741824, 1073741825, 1073741827, 2147483646));

TEST(OnevarAddCases, RangesThatDoNotMeetLeaveAGapOfZeros)
{
    in_view live(view_modular, 7);
    const words a = {1, 2, 3}, b = {0, 0, 0, 0, 0, 4, 5};
    words c(8, untouched);
    std::int32_t top = 0;
    onevar_add(a.data(), b.data(), c.data(), 0, 2, 5, 6, &top);
    EXPECT_EQ(c, (words{1, 2, 3, 0, 0, 4, 5, untouched}));
    EXPECT_EQ(top, 6);
    onevar_sub(b.data(), a.data(), c.data(), 5, 6, 0, 2, &top);
    EXPECT_EQ(c, (words{6, 5, 4, 0, 0, 4, 5, untouched}));
}

TEST(OnevarAddCases, TheTopComesDownWhenLeadsCancel)
{
    in_view live(view_modular, 7);
    const words a = {1, 2, 3}, b = {1, 2, 4};
    words c(3);
    std::int32_t top = 0;
    onevar_add(a.data(), b.data(), c.data(), 0, 2, 0, 2, &top);
    EXPECT_EQ(top, 1);
    onevar_sub(a.data(), a.data(), c.data(), 1, 2, 1, 2, &top);
    EXPECT_EQ(top, 0) << "one below the range: nothing is left";
}

// Faults ----------------------------------------------------------------------------------------------------

struct reversed_case {
    operation op;
    range a, b;
    const char *line, *fault;
};

const reversed_case reversed_cases[] = {
    {op_add, {3, 2}, {0, 1}, "** onevar_add 3, 2, 0, 1\n", " onevar_add reversed degrees. "},
    {op_add, {0, 1}, {5, 4}, "** onevar_add 0, 1, 5, 4\n", " onevar_add reversed degrees. "},
    {op_sub, {3, 2}, {0, 1}, "** onevar_sub 3, 2, 0, 1\n", " onevar_sub reversed degrees. "},
    {op_add_shift, {3, 2}, {0, 1}, "** onevar_add_shift 3, 2, 0, 1\n", " onevar_add_shift reversed degrees."},
    {op_sub_shift, {0, 0}, {2, 1}, "** onevar_sub_shift 0, 0, 2, 1\n", " onevar_sub_shift reversed degrees."},
};

// What the report of the fault writes. At the highest command level no further one is pushed, so it unwinds.
std::string report_of(const reversed_case &row, bool *came_back)
{
    static const std::int32_t nothing[8] = {};
    static std::int32_t result[8];
    *came_back = false;
    const auto saved = levelcount;
    levelcount = highest_level;
    testing::internal::CaptureStdout();
    caught_error([&] {
        Output = stdout;
        std::int32_t top = 0;
        run(row.op, nothing, nothing, result, row.a, row.b, 0, &top);
        *came_back = true;
    });
    levelcount = saved;
    return testing::internal::GetCapturedStdout();
}

TEST(OnevarAddFaults, ARangeUpsideDownIsReported)
{
    in_view live(view_modular, 7);
    for (const reversed_case &row : reversed_cases) {
        bool came_back = true;
        const std::string report = report_of(row, &came_back);
        const std::string expected = std::string(row.line) + "*** Kelmar error. " + row.fault + "\n";
        EXPECT_EQ(report.substr(0, expected.size()), expected);
        EXPECT_FALSE(came_back);
    }
}

TEST(OnevarAddFaults, ARangeOfOneDegreeIsNone)
{
    in_view live(view_modular, 7);
    const reversed_case row = {op_add, {3, 3}, {2, 2}, "", ""};
    bool came_back = false;
    EXPECT_EQ(report_of(row, &came_back), "");
    EXPECT_TRUE(came_back);
}

}  // namespace
