// Behaviour of the slab allocator.
#include "numbers/stash.h"
#include <gtest/gtest.h>
#include <cstring>
#include <set>
#include <vector>
#include "numbers/plain_quoly.h"
#include "storage/low_memory.h"
#include "storage/sizes.h"

using namespace kelmar;

namespace {

constexpr const char *heading = "STASH NAME: number of blocks, number of slugs, slugs_used, slug_size\n";

TEST(Stash, FiveStashesHaveTheirNominalSizesAndNames)
{
    if (!numstash) open_stashes();
    EXPECT_EQ(polystash->slug_size, 16);
    EXPECT_EQ(quolystash->slug_size, 20);
    EXPECT_EQ(numstash->slug_size, 8);
    EXPECT_EQ(imagstash->slug_size, 32);
    EXPECT_EQ(colmstash->slug_size, 12);
    EXPECT_STREQ(polystash->name, "stash of polynodes");
    EXPECT_STREQ(quolystash->name, "stash of quolynodes");
    EXPECT_STREQ(numstash->name, "stash of numnodes");
    EXPECT_STREQ(imagstash->name, "stash of numbers");
    EXPECT_STREQ(colmstash->name, "stash of colms");
    EXPECT_GE(quolystash->stride, static_cast<std::int32_t>(sizeof(quolynode)));
    EXPECT_GE(imagstash->stride, static_cast<std::int32_t>(sizeof(number)));
}

TEST(Stash, OpensBehindTheRoot)
{
    stash *s = open_stash(8, 8, "one");
    EXPECT_EQ(primal_stash.next, s);
    EXPECT_EQ(s->prev, &primal_stash);
    EXPECT_EQ(s->next->prev, s);
    endof_stash(s);
    EXPECT_NE(primal_stash.next, s);
}

TEST(Stash, SlugSizeIsRoundedUpAndStrideHoldsTheRecord)
{
    const struct {
        std::int32_t asked;
        std::size_t record;
        std::int32_t nominal, stride;
    } rows[] = {{-3, 1, 4, 8}, {0, 1, 4, 8},     {1, 8, 4, 8},     {4, 9, 4, 16},
                {5, 1, 8, 8},  {20, 40, 20, 40}, {40, 20, 40, 40}, {12, 1, 12, 16}};
    for (const auto &row : rows) {
        stash *s = open_stash(row.asked, row.record, "sizes");
        EXPECT_EQ(s->slug_size, row.nominal) << row.asked;
        EXPECT_EQ(s->stride, row.stride) << row.asked;
        endof_stash(s);
    }
}

TEST(Stash, ANullStashGivesNull)
{
    EXPECT_EQ(get_slug(nullptr), nullptr);
}

TEST(Stash, SlugsDoNotOverlap)
{
    stash *s = open_stash(20, 40, "apart");
    constexpr int count = 3000;
    std::vector<unsigned char *> slugs;
    for (int k = 0; k < count; ++k) {
        slugs.push_back(static_cast<unsigned char *>(get_slug(s)));
        EXPECT_EQ(reinterpret_cast<std::uintptr_t>(slugs.back()) % 8, 0u);
        std::memset(slugs.back(), k % 251, 40);
    }
    EXPECT_EQ(s->slugs_used, count);
    for (int k = 0; k < count; ++k) {
        for (int byte = 0; byte < 40; ++byte) ASSERT_EQ(slugs[k][byte], k % 251) << k;
    }
    for (unsigned char *slug : slugs) free_slug(s, slug);
    EXPECT_EQ(s->slugs_used, 0);
    endof_stash(s);
}

TEST(Stash, HeadingIsPrintedWithoutRows)
{
    testing::internal::CaptureStdout();
    stash_stats();
    EXPECT_EQ(testing::internal::GetCapturedStdout(), heading);
}

TEST(Stash, SmallPiecesAreApartAndMayExceedAPiece)
{
    static std::int32_t *a, *b, *c;  // the words stay until the end, so they stay reachable
    a = get_small(10);
    b = get_small(0x20001);
    c = get_small(0x1ffff);
    for (int k = 0; k < 10; ++k) a[k] = 1;
    for (int k = 0; k < 0x20001; ++k) b[k] = 2;
    for (int k = 0; k < 0x1ffff; ++k) c[k] = 3;
    for (int k = 0; k < 10; ++k) ASSERT_EQ(a[k], 1);
    for (int k = 0; k < 0x20001; ++k) ASSERT_EQ(b[k], 2);
    std::int32_t *d = get_small(1);
    *d = 4;
    EXPECT_EQ(c[0x1fffe], 3);
}

#ifndef KELMAR_MALLOC_RECORDS

TEST(Stash, SlugsGoOutFromTheTopOfTheBlockDownward)
{
    stash *s = open_stash(8, 16, "downward");
    char *above = static_cast<char *>(get_slug(s));
    const char *top = reinterpret_cast<char *>(s->blocks + 1) + s->stride * (block_data_size / 8 - 1);
    EXPECT_EQ(above, top);
    for (int k = 1; k < block_data_size / 8; ++k) {
        char *slug = static_cast<char *>(get_slug(s));
        ASSERT_EQ(above - slug, s->stride) << k;
        above = slug;
    }
    EXPECT_EQ(s->num_blocks, 1);
    EXPECT_EQ(s->free, nullptr);
    get_slug(s);
    EXPECT_EQ(s->num_blocks, 2);
    endof_stash(s);
}

TEST(Stash, ABlockHoldsTheNominalNumberOfSlugs)
{
    const std::int32_t sizes[] = {4, 8, 12, 16, 20, 32, block_data_size, block_data_size / 2 + 4};
    const std::int32_t counts[] = {131072, 65536, 43690, 32768, 26214, 16384, 1, 1};
    for (int k = 0; k < 8; ++k) {
        stash *s = open_stash(sizes[k], static_cast<std::size_t>(sizes[k]), "counts");
        get_slug(s);
        EXPECT_EQ(s->num_slugs, counts[k]);
        EXPECT_EQ(s->num_blocks, 1);
        endof_stash(s);
    }
}

TEST(Stash, AReturnedSlugIsTheNextToGoOut)
{
    stash *s = open_stash(16, 16, "reuse");
    void *a = get_slug(s);
    void *b = get_slug(s);
    free_slug(s, a);
    free_slug(s, b);
    EXPECT_EQ(get_slug(s), b);
    EXPECT_EQ(get_slug(s), a);
    EXPECT_EQ(s->slugs_used, 2);
    endof_stash(s);
}

TEST(Stash, BlocksOfAClosedStashAreUsedAgain)
{
    stash *s = open_stash(16, 32, "first");
    get_slug(s);
    stash_block *block = s->blocks;
    endof_stash(s);
    EXPECT_EQ(extra_blocks, block);
    stash *t = open_stash(16, 32, "second");
    get_slug(t);
    EXPECT_EQ(t->blocks, block);
    EXPECT_NE(extra_blocks, block);
    endof_stash(t);
}

TEST(Stash, ABlockTooSmallIsPassedOver)
{
    stash *small = open_stash(32, 32, "small");
    get_slug(small);
    stash_block *half = small->blocks;
    endof_stash(small);
    stash *large = open_stash(8, 64, "large");
    get_slug(large);
    EXPECT_NE(large->blocks, half);
    endof_stash(large);
}

TEST(Stash, ABlockTakenInAdvanceIsUsedByTheNextCarving)
{
    ASSERT_EQ(more_mem(), 1);
    stash_block *block = extra_blocks;
    stash *s = open_stash(12, 24, "advance");
    ASSERT_EQ(get_block(s), 1);
    EXPECT_EQ(s->blocks, block);
    EXPECT_EQ(s->num_slugs, 43690);
    ASSERT_EQ(get_block(s), 1);
    std::set<void *> seen;
    for (int k = 0; k < 2 * 43690; ++k) seen.insert(get_slug(s));
    EXPECT_EQ(s->num_slugs, 2 * 43690);
    EXPECT_EQ(seen.size(), 2u * 43690);
    EXPECT_EQ(s->free, nullptr);
    endof_stash(s);
}

TEST(Stash, ARowHasNameBlocksSlugsUsedAndSize)
{
    stash *s = open_stash(20, 40, "row");
    get_slug(s);
    get_slug(s);
    testing::internal::CaptureStdout();
    print_stash_stats(s);
    EXPECT_EQ(testing::internal::GetCapturedStdout(), "row: \t1, \t26214, \t2, \t20\n");
    endof_stash(s);
}

#endif

#ifdef KELMAR_FAIL_ALLOC

TEST(Stash, AFailingRequestIsReportedAndRepeatedWhenTheGcdStashCouldBeFreed)
{
    stash *s = open_stash(8, 8, "failing");
    stash_block *const spare = extra_blocks;
    extra_blocks = nullptr;
    lookupgcd = 1;
    fail_block_at = 1;
    testing::internal::CaptureStdout();
    void *slug = get_slug(s);
    EXPECT_EQ(testing::internal::GetCapturedStdout(),
              std::string("out of memory while trying to accesss stash failing\n") + heading +
                  "\n*** Warning.  You are low on heap space.  Will try freeing the gcd stash.\n");
    EXPECT_NE(slug, nullptr);
    EXPECT_EQ(lookupgcd, 0);
    EXPECT_EQ(fail_block_at, 0);
    extra_blocks = spare;
    free_slug(s, slug);
    endof_stash(s);
}

TEST(Stash, MoreMemDeclinesWhenTheHeapDoes)
{
    stash_block *before = extra_blocks;
    fail_block_at = 1;
    EXPECT_EQ(more_mem(), 0);
    EXPECT_EQ(extra_blocks, before);
}

#endif

}  // namespace
