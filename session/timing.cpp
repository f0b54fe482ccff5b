// session/timing.cpp -- clocks, and the text of a statement's time.
#include "session/timing.h"
#include <ctime>
#include "session/output.h"

namespace kelmar {

clock_pair read_clocks()
{
    return {static_cast<long>(std::time(nullptr)), static_cast<long>(std::clock() / (CLOCKS_PER_SEC / 1000))};
}

static constexpr long not_read = -1;  // of a CPU clock

// The CPU clock is a call of the kernel, so it is read only where the time will be written. A statement that
// turns timing on has itself spent next to nothing.
void start_timing()
{
    if (timerflag) {
        mytime[time_level] = read_clocks();
    } else {
        mytime[time_level] = {static_cast<long>(std::time(nullptr)), not_read};
    }
}

void start_timing_of_start_up()
{
    mytime[time_level] = read_clocks();
}

void stop_timing()
{
    clock_pair *mine = &mytime[time_level];
    clock_pair *off = &time_off[time_level];
    if (timerflag) {
        const clock_pair now = read_clocks();
        mine->real = now.real - mine->real - off->real;
        mine->cpu = mine->cpu == not_read ? 0 : now.cpu - mine->cpu - off->cpu;
    }
    *off = {0, 0};
}

void write_timing()
{
    typedef unsigned long ulong_t;
    const ulong_t r = static_cast<ulong_t>(mytime[time_level].real);
    const ulong_t c = static_cast<ulong_t>(mytime[time_level].cpu);
    const ulong_t h = r / 3600;
    const ulong_t m = r % 3600 / 60;
    const ulong_t s = r % 60;
    char digits[4];
    std::snprintf(digits, sizeof digits, "%03d", static_cast<int>(c % 1000));
    if (h > 0) {
        std::fprintf(Output, " Elapsed real time: %lu:%2lu:%2lu.  CPU time: %lu:%2lu.%s\n", h, m, s,
                     c / 60000, c / 1000 % 60, digits);
    } else if (m > 0) {
        std::fprintf(Output, " Elapsed real time: %2lu:%2lu.  CPU time: %lu:%2lu.%s\n", m, s, c / 60000,
                     c / 1000 % 60, digits);
    } else if (s >= 5) {
        std::fprintf(Output, " Elapsed real time: %2lu.  CPU time: %2lu.%s\n", s, c / 1000 % 60, digits);
    } else {
        std::fprintf(Output, " Elapsed CPU time: %2lu.%s\n", c / 1000 % 60, digits);
    }
}

void showtime()
{
    const std::time_t now = std::time(nullptr);
    std::fputs(std::asctime(std::localtime(&now)), Output);
}

}  // namespace kelmar
