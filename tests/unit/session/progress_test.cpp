// Progress lines: their form, indents, and what keeps deep loops quiet.
#include "session/progress.h"
#include <gtest/gtest.h>
#include <cstdlib>
#include <string>
#include "numbers/decimal.h"
#include "session/output.h"
#include "session/report.h"
#include "tests/support/reports.h"

using namespace kelmar;
using namespace kelmar_test;

namespace {

// What f writes with verbose on.
template <class F> std::string told_verbose(F f)
{
    return told([&] {
        verbose = 1;
        f();
        verbose = 0;
        progress_on_unwind();
    });
}

TEST(Progress, CountIsFollowedByAPointOrAColon)
{
    EXPECT_EQ(told_verbose([] { dumpitt("counting to ", 12, 0, 1, 0); }), "counting to 12. ");
    EXPECT_EQ(told_verbose([] { dumpitt("counting to ", 12, 0, 1, 1); }), "counting to 12: ");
}

TEST(Progress, LineEndsWithTheOutermostStep)
{
    EXPECT_EQ(told_verbose([] {
                  dumpitt("a ", 1, 0, 1, 0);
                  decr_dumpitt(1);
              }),
              "a 1. \n");
}

TEST(Progress, StepInsideIsIndentedOnItsOwnLine)
{
    EXPECT_EQ(told_verbose([] {
                  dumpitt("a ", 3, 0, 1, 0);
                  dumpitt("b ", 4, 1, 1, 0);
                  decr_dumpitt(4);
                  decr_dumpitt(3);
              }),
              "a 3. \n  b 4. \n");
}

TEST(Progress, LoopsOfMoreThanAThousandRoundsAreQuietInside)
{
    const auto inside = [](std::int32_t rounds) {
        return told_verbose([rounds] {
            dumpitt("", 1, 0, 0, 0);
            dumpitt("", rounds, 0, 0, 0);
            dumpitt("in ", 5, 0, 1, 0);
        });
    };
    EXPECT_EQ(inside(progress_limit), "    in 5. ");
    EXPECT_EQ(inside(progress_limit + 1), "");
}

TEST(Progress, LoopIsForgottenWhenItIsDone)
{
    EXPECT_EQ(told_verbose([] {
                  dumpitt("", 1, 0, 0, 0);
                  dumpitt("", 5000, 0, 0, 0);
                  decr_dumpitt(5000);
                  dumpitt("next ", 2, 0, 1, 0);
              }),
              "  next 2. ");
}

TEST(Progress, NothingIsToldUnlessAsked)
{
    EXPECT_EQ(told_verbose([] {
                  verbose = 0;
                  dumpitt("a ", 1, 0, 1, 0);
              }),
              "");
}

TEST(Progress, FullLineIsEnded)
{
    const std::string text = told_verbose([] {
        for (int k = 0; k < 3; ++k) dumpitt("thirty columns of text, about ", 7, 0, 1, 0);
    });
    EXPECT_EQ(text.find('\n'), text.size() - 1);
}

}  // namespace
