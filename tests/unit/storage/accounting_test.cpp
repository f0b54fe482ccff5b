// What the data takes, what lies idle, what is left, and the report of it.
#include "storage/accounting.h"
#include <gtest/gtest.h>
#include <cstdlib>
#include <cstring>
#include <string>
#include "poly/variables.h"
#include "quoly/quoly.h"
#include "storage/low_memory.h"
#include "tests/support/long_numbers.h"
#include "tests/support/mul_operands.h"
#include "tests/support/views.h"

using namespace kelmar;
using namespace kelmar_test;

namespace {

// The free lists empty, and the memory budget, until the end of the block.
struct own_lists {
    numnode *digits = numhead;
    number *numbers = imhead;
    quolynode *quolys = quolygarb;
    std::int64_t total = totalavailablememory, tables = size_data_strucs;
    record_kind kinds[record_rows];
    own_lists()
    {
        numhead = nullptr;
        imhead = nullptr;
        quolygarb = nullptr;
        for (int k = 0; k < record_rows; ++k) {
            kinds[k] = record_kinds[k];
            const bool below = k == row_digit || k == row_number || k == row_quoly;
            if (!below) record_kinds[k].count = nullptr;
        }
    }
    ~own_lists()
    {
        numhead = digits;
        imhead = numbers;
        quolygarb = quolys;
        totalavailablememory = total;
        size_data_strucs = tables;
        for (int k = 0; k < record_rows; ++k) record_kinds[k] = kinds[k];
        count_work_arrays = nullptr;
    }
};

std::string report(char letter)
{
    char *text = nullptr;
    std::size_t length = 0;
    std::FILE *out = open_memstream(&text, &length);
    garbage(out, letter);
    std::fclose(out);
    std::string result(text, length);
    std::free(text);
    return result;
}

constexpr std::int64_t no_limit = INT64_MAX - 1;

// Sizes of values ---------------------------------------------------------------------------------------

TEST(Size, OfNumbersCountsDigitsInTheDigitViewOnly)
{
    number n;
    number_from_text("123456789012345678901234567890", &n);
    ASSERT_EQ(n.size, 4);
    {
        const in_view view(view_digits);
        EXPECT_EQ(sizenumber(&n), 32 + 4 * 8);
        const quolynode q = {nullptr, 1, {&n}, nullptr, 0};
        EXPECT_EQ(sizequoly(&q), 20 + 32 + 4 * 8);
    }
    const in_view view(view_float);
    EXPECT_EQ(sizenumber(&n), 32);
    special_free(&n);
}

TEST(Size, OfTheGcdStash)
{
    const in_view view(view_digits);
    const std::int64_t before = mass_gcd_stash();
    for (const int list : {3, 3, 366}) {
        quolynode *entry = nullptr;
        quoly_set(1 << 28, &entry);
        entry->next = gcd_stash[list];
        gcd_stash[list] = entry;
    }
    EXPECT_EQ(mass_gcd_stash() - before, 3 * (20 + 32 + 2 * 8));
    release_gcd_stash();
    EXPECT_EQ(mass_gcd_stash(), before);
}

// Idle records ------------------------------------------------------------------------------------------

TEST(CountList, StopsOneBehindTheLimit)
{
    numnode nodes[5];
    for (int k = 0; k < 5; ++k) nodes[k] = {k, k < 4 ? &nodes[k + 1] : nullptr};
    const auto count = count_list<numnode, &numnode::next>;
    EXPECT_EQ(count(nodes, no_limit), 5);
    EXPECT_EQ(count(nodes, 6), 5);
    EXPECT_EQ(count(nodes, 5), 5);
    EXPECT_EQ(count(nodes, 4), 5);
    EXPECT_EQ(count(nodes, 3), 4);
    EXPECT_EQ(count(nodes, 0), 1);
    EXPECT_EQ(count(nullptr, 0), 0);
}

TEST(GarbSize, FourListsByTheirNominalSizes)
{
    const own_lists own;
    numnode digits[3] = {{0, &digits[1]}, {0, &digits[2]}, {0, nullptr}};
    number numbers[2] = {{nullptr, nullptr, 0, 0, &numbers[1], 0}, {nullptr, nullptr, 0, 0, nullptr, 0}};
    quolynode quoly = {nullptr, 1, {nullptr}, nullptr, 0};
    numhead = digits;
    imhead = numbers;
    quolygarb = &quoly;
    record_kinds[row_poly].count = [](std::int64_t limit) {
        return limit < 11 ? limit + 1 : std::int64_t{11};
    };
    const std::int64_t all = 3 * 8 + 2 * 32 + 11 * 16 + 20;
    EXPECT_EQ(garbsize(), all);
    EXPECT_EQ(fast_garbsize(), all);
    EXPECT_EQ(med_garbsize(), all);
    EXPECT_EQ(big_garbsize(), all - 20) << "scalar values are not counted";
}

TEST(GarbSize, LongListsStopAtTheirLimits)
{
    const own_lists own;
    const auto endless = [](std::int64_t limit) { return limit + 1; };
    for (const record_row row : {row_digit, row_number, row_poly, row_quoly})
        record_kinds[row].count = endless;
    EXPECT_EQ(fast_garbsize(), 60001 * 8 + 100001 * 32 + 100001 * 16 + 30001 * 20);
    EXPECT_EQ(med_garbsize(), 1000001 * 8 + 1000001 * 32 + 1000001 * 16 + 100001 * 20);
    EXPECT_EQ(big_garbsize(), 1000001LL * 8 + 6000001LL * 32 + 10000001LL * 16);
}

TEST(GarbSize, MoreThanSixtyThousandDigitsCountAs480008Bytes)
{
    const own_lists own;
    numnode *chain = static_cast<numnode *>(std::calloc(60002, sizeof(numnode)));
    for (int k = 0; k < 60001; ++k) chain[k].next = &chain[k + 1];
    numhead = chain;
    EXPECT_EQ(fast_garbsize(), 480008);
    EXPECT_EQ(garbsize(), 60002 * 8);
    numhead = chain + 2;
    EXPECT_EQ(fast_garbsize(), 480000);
    numhead = nullptr;
    std::free(chain);
}

// The memory budget -------------------------------------------------------------------------------------

std::int64_t used_bytes()
{
    std::int64_t used = 0;
    for (const stash *s : {polystash, quolystash, numstash, imagstash, colmstash}) {
        used += std::int64_t{s->slug_size} * s->slugs_used;
    }
    return used;
}

TEST(MemAvail, IsTheBudgetLessTheHighWaterMark)
{
    const own_lists own;
    totalavailablememory = 1000000000;
    EXPECT_EQ(memory_left(), 1000000000 - used_bytes());
    EXPECT_EQ(memavail(), static_cast<std::uint32_t>(1000000000 - used_bytes()));
    const std::int64_t before = memory_left();
    quolynode *q = nullptr;
    newquoly(&q);
    q->is_num = 0;
    q->top = q->den = nullptr;
    EXPECT_EQ(memory_left(), before - 20);
#ifndef KELMAR_MALLOC_RECORDS
    free_quoly(&q);
    EXPECT_EQ(memory_left(), before - 20) << "slugs do not come back";
    newquoly(&q);
    q->is_num = 0;
    q->top = q->den = nullptr;
    EXPECT_EQ(memory_left(), before - 20) << "a record from the free list takes nothing";
#endif
    free_quoly(&q);
}

TEST(MemAvail, IsZeroWhenTheBudgetIsReached)
{
    const own_lists own;
    quolynode *q = nullptr;
    newquoly(&q);
    q->is_num = 0;
    q->top = q->den = nullptr;
    totalavailablememory = used_bytes() + 1;
    EXPECT_EQ(memavail(), 1u);
    totalavailablememory = used_bytes();
    EXPECT_EQ(memavail(), 0u);
    totalavailablememory = 1;
    EXPECT_EQ(memavail(), 0u);
    totalavailablememory = 0;
    EXPECT_EQ(memory_left(), 0);
    free_quoly(&q);
}

TEST(MemAvail, ShowsThirtyTwoBitsWhileTheTriggersSeeAll)
{
    const own_lists own;
    totalavailablememory = 9000LL * 900000;
    EXPECT_EQ(memory_left(), 9000LL * 900000 - used_bytes());
    EXPECT_EQ(memavail(), static_cast<std::uint32_t>((9000LL * 900000 - used_bytes()) % (1LL << 32)));
}

TEST(MemAvail, BudgetsBelowTenBytesAreSet)
{
    const own_lists own;
    totalavailablememory = 9;
    find_total_available_memory();
    EXPECT_EQ(totalavailablememory, 1LL << 32);
    totalavailablememory = 10;
    find_total_available_memory();
    EXPECT_EQ(totalavailablememory, 10);
}

#ifndef KELMAR_MALLOC_RECORDS
// A list that goes back and is made again in the same shape takes the same records, and nothing more.
TEST(MemAvail, APolynomialThatIsFreedAndMadeAgainTakesNothing)
{
    const in_view live(view_float);
    test_random r;
    polynode *p = dense_poly(&r, 0, 2000), *again = copy_poly(p);
    free_poly(&again);
    const std::int64_t left = memory_left();
    again = copy_poly(p);
    EXPECT_EQ(memory_left(), left);
    free_poly(&again);
    EXPECT_EQ(memory_left(), left);
    free_poly(&p);
    EXPECT_EQ(memory_left(), left);
}
#endif

// The report --------------------------------------------------------------------------------------------

TEST(Garbage, EmptyListsOfNamesAreLeftOut)
{
    const own_lists own;
    size_data_strucs = 12345;
    EXPECT_EQ(report('g'), "num count:     0, 8\n"
                           "im count:     0, 32\n"
                           "poly count:     0, 16\n"
                           "quoly count:     0, 20\n"
                           "work arrays:     0, 4000000\n"
                           "total garbage:         0\n"
                           "system data size:     12345\n"
                           "total size:     12345\n");
}

TEST(Garbage, AllRowsInTheirOrder)
{
    const own_lists own;
    size_data_strucs = 1;
    for (record_kind &kind : record_kinds) {
        kind.count = [](std::int64_t) { return std::int64_t{1}; };
    }
    count_work_arrays = []() { return std::int64_t{2}; };
    const long total = 8 + 32 + 28 + 80 + 40 + 16 + 16 + 20 + 8197 + 12 + 16 + 64 + 12 + 24 + 8000000;
    char last[120];
    std::snprintf(last, sizeof last, "total garbage: %9ld\nsystem data size: %9d\ntotal size: %9ld\n", total,
                  1, total + 1);
    EXPECT_EQ(report('g'), std::string("num count:     1, 8\n"
                                       "im count:     1, 32\n"
                                       "var count:     1\n"
                                       "array count:     1, 80\n"
                                       "name count:     1\n"
                                       "fix count:     1\n"
                                       "poly count:     1, 16\n"
                                       "quoly count:     1, 20\n"
                                       "sparse count:     1, 2048\n"
                                       "colm count:     1\n"
                                       "matrix col count:     1\n"
                                       "poly pointer count:     1\n"
                                       "form node count:     1\n"
                                       "cond expr count:     1\n"
                                       "work arrays:     2, 4000000\n") +
                               last);
}

#ifndef KELMAR_MALLOC_RECORDS
// The figure behind the name of a row.
long figure(const std::string &text, const char *row)
{
    return std::strtol(text.c_str() + text.find(row) + std::strlen(row), nullptr, 10);
}

TEST(Garbage, AFreedPolynomialIsIdle)
{
    const own_lists own;
    const in_view live(view_float);
    register_poly_records();
    test_random r;
    polynode *p = dense_poly(&r, 0, 2000);
    const std::string before = report('g');
    free_poly(&p);
    const std::string after = report('g');
    EXPECT_GE(figure(after, "poly count: "), figure(before, "poly count: ") + 2000);
    EXPECT_GE(figure(after, "total garbage: "), figure(before, "total garbage: ") + 2000 * 16);
    EXPECT_EQ(figure(after, "system data size: "), figure(before, "system data size: "));
}
#endif

TEST(Garbage, TheLetterGListsDigitsAndNames)
{
    const own_lists own;
    numnode digits[2] = {{-4, &digits[1]}, {268435455, nullptr}};
    numhead = digits;
    record_kinds[row_name].count = [](std::int64_t) { return std::int64_t{1}; };
    record_kinds[row_name].list = [](std::FILE *out) { std::fputs("abc\n", out); };
    const std::string listed = report('G');
    EXPECT_EQ(listed.substr(0, listed.find("poly")),
              "num count:     2, 8\n-4\n268435455\nim count:     0, 32\n"
              "name count:     1\nabc\n");
    EXPECT_EQ(report('g').find("abc"), std::string::npos);
    numhead = nullptr;
}

}  // namespace
