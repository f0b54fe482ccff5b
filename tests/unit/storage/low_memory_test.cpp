// The answer to a heap that is used up.
#include "storage/low_memory.h"
#include <gtest/gtest.h>
#include <cstring>
#include <string>
#include "quoly/quoly.h"
#include "tests/support/long_numbers.h"
#include "tests/support/catch_error.h"
#include "tests/support/reports.h"
#include "tests/support/session_text.h"
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

// What is written when nothing is left to be freed, up to the next safe point.
std::string end_of_heap()
{
    prepare_session_once();
    keep_reserve();
    return report_of([] {
        mem_error();
        std::printf("The computation goes on with the reserve.\n");
        poll_interrupt();
    });
}

constexpr const char *out_text = "\n*** Warning.  You are out of heap space.  Abort this computation.\n";

TEST(MemError, PushesALevelWhenTheStashIsOff)
{
    const in_view view(view_float);
    lookupgcd = 0;
    const std::string text = end_of_heap();
    EXPECT_EQ(text.substr(0, std::strlen(out_text)), out_text);
    EXPECT_LT(text.find("The computation goes on with the reserve.\n"),
              text.find("*** New command level.\n"));
    EXPECT_NE(text.find("*** New command level.\n"), std::string::npos) << text;
}

TEST(MemError, PushesALevelHereWhenTheReserveIsSpent)
{
    const in_view view(view_float);
    lookupgcd = 0;
    prepare_session_once();
    keep_reserve();
    testing::internal::CaptureStdout();
    mem_error();
    EXPECT_EQ(testing::internal::GetCapturedStdout(), out_text);
    const std::string text = report_of([] { mem_error(); });
    EXPECT_NE(text.find("*** New command level.\n"), std::string::npos) << text;
    interrupt_flag = 0;
}

TEST(MemError, LeavesAStashInUseAlone)
{
    const in_view view(view_float);
    fill_stash();
    polygcd_stack_depth = 1;
    EXPECT_NE(end_of_heap().find(out_text), std::string::npos);
    release_gcd_stash();
}

TEST(ReleaseGcdStash, TakesAnEmptyStash)
{
    release_gcd_stash();
    expect_empty();
}

}  // namespace
