#pragma once
// tests/support/answer_time.h -- how long a waiting interrupt waits inside a computation.

#include <sys/time.h>
#include <csignal>
#include <ctime>
#include "session/levels.h"
#include "session/report.h"
#include "tests/support/views.h"

namespace kelmar_test {

// Milliseconds that the process has computed: others on the machine do not count.
inline double spent()
{
    timespec t;
    clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &t);
    return 1e3 * static_cast<double>(t.tv_sec) + 1e-6 * static_cast<double>(t.tv_nsec);
}

inline double asked;

inline void ask(int)
{
    asked = spent();
    kelmar::interrupt_flag = 1;
}

// Ask for an interrupt 20 ms after the start of f. Return how many milliseconds it waited; -1: it came too
// late. f is left by the jump of an error: what it held on its frames is gone.
template <class F> double answer_time(F f)
{
    using namespace kelmar;
    bool came_back = false;
    const auto saved = levelcount;
    levelcount = highest_level;  // no further level is pushed there: an interrupt unwinds
    std::signal(SIGALRM, ask);
    itimerval timer = {};
    timer.it_value.tv_usec = 20000;
    setitimer(ITIMER_REAL, &timer, nullptr);
    error_in_view([&] {
        f();
        came_back = true;
    });
    const double waited = spent() - asked;
    timer.it_value.tv_usec = 0;
    setitimer(ITIMER_REAL, &timer, nullptr);
    interrupt_flag = 0;
    levelcount = saved;
    return came_back ? -1 : waited;
}

}  // namespace kelmar_test
