// The answer to a heap that is used up.
#include "storage/low_memory.h"
#include <gtest/gtest.h>
#include "quoly/quoly.h"
#include "tests/support/long_numbers.h"
#include "tests/support/views.h"

using namespace kelmar;
using namespace kelmar_test;

namespace {

constexpr const char *low_text =
    "\n*** Warning.  You are low on heap space.  Will try freeing the gcd stash.\n";

// Two entries in the first list, one in the last.
void fill_stash()
{
    for (const int list : {0, 0, gcd_stash_lists - 1}) {
        quolynode *entry = nullptr;
        quoly_set(list + 1, &entry);
        entry->next = gcd_stash[list];
        gcd_stash[list] = entry;
    }
    gcdmass = 77;
    lookupgcd = 2;
    polygcd_stack_depth = 0;
}

void expect_empty()
{
    for (const quolynode *list : gcd_stash) EXPECT_EQ(list, nullptr);
    EXPECT_EQ(gcdmass, 0u);
    EXPECT_EQ(lookupgcd, 0);
    EXPECT_EQ(polygcd_stack_depth, 0);
    EXPECT_EQ(prev_modulus, -1);
}

TEST(MemError, FreesAnIdleStashAndComesBack)
{
    const in_view view(view_float);
    const record_audit audit;
    fill_stash();
    testing::internal::CaptureStdout();
    mem_error();
    EXPECT_EQ(testing::internal::GetCapturedStdout(), low_text);
    expect_empty();
    audit.expect_unchanged("mem_error");
}

TEST(MemError, FreesAStashOfThePresentModulus)
{
    const in_view view(view_modular, 7);
    const record_audit audit;
    fill_stash();
    prev_modulus = 7;
    testing::internal::CaptureStdout();
    mem_error();
    EXPECT_EQ(testing::internal::GetCapturedStdout(), low_text);
    expect_empty();
    audit.expect_unchanged("mem_error, modular");
}

TEST(ReleaseGcdStash, TakesAnEmptyStash)
{
    release_gcd_stash();
    expect_empty();
}

}  // namespace
