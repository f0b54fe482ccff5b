// The text of a statement's time, and what counts as its time.
#include "session/timing.h"
#include <gtest/gtest.h>
#include <string>
#include "session/output.h"
#include "tests/support/reports.h"

using namespace kelmar;
using namespace kelmar_test;

namespace {

// The text of so many real seconds and CPU milliseconds.
std::string timing(long real, long cpu)
{
    mytime[time_level] = {real, cpu};
    return told([] { write_timing(); });
}

// Use the processor for some milliseconds.
void work()
{
    const long until = read_clocks().cpu + 30;
    while (read_clocks().cpu < until) {}
}

// The CPU time of a stretch that works: timing is on or off when it starts, and on when it stops.
long worked(void (*start)(), int timing_at_start)
{
    timerflag = timing_at_start;
    start();
    work();
    timerflag = 1;
    stop_timing();
    timerflag = 0;
    return mytime[time_level].cpu;
}

TEST(Timing, BelowFiveSecondsTheCpuTimeStandsAlone)
{
    EXPECT_EQ(timing(0, 0), " Elapsed CPU time:  0.000\n");
    EXPECT_EQ(timing(4, 3999), " Elapsed CPU time:  3.999\n");
    EXPECT_EQ(timing(1, 7), " Elapsed CPU time:  0.007\n");
}

TEST(Timing, FromFiveSecondsOnTheRealTimeStandsInFront)
{
    EXPECT_EQ(timing(5, 4100), " Elapsed real time:  5.  CPU time:  4.100\n");
    EXPECT_EQ(timing(59, 59999), " Elapsed real time: 59.  CPU time: 59.999\n");
}

TEST(Timing, MinutesAndHoursAreSetApart)
{
    EXPECT_EQ(timing(60, 59000), " Elapsed real time:  1: 0.  CPU time: 0:59.000\n");
    EXPECT_EQ(timing(3599, 61001), " Elapsed real time: 59:59.  CPU time: 1: 1.001\n");
    EXPECT_EQ(timing(3600, 3600000), " Elapsed real time: 1: 0: 0.  CPU time: 60: 0.000\n");
    EXPECT_EQ(timing(360125, 7325250), " Elapsed real time: 100: 2: 5.  CPU time: 122: 5.250\n");
}

TEST(Timing, StatementTimesCountWhereTimingWasOnBefore)
{
    EXPECT_GE(worked(start_timing, 1), 30);
    EXPECT_EQ(worked(start_timing, 0), 0);
}

TEST(Timing, StartUpTimeCountsWhereItsFileTurnsTimingOn)
{
    EXPECT_GE(worked(start_timing_of_start_up, 0), 30);
}

TEST(Timing, TimeOfDeeperLevelsIsTakenOff)
{
    timerflag = 1;
    start_timing();
    work();
    time_off[time_level] = {0, 25};
    const long all = read_clocks().cpu - mytime[time_level].cpu;
    stop_timing();
    timerflag = 0;
    EXPECT_GE(mytime[time_level].cpu, all - 25);
    EXPECT_LE(mytime[time_level].cpu, all - 20);
    EXPECT_EQ(time_off[time_level].cpu, 0);
}

}  // namespace
