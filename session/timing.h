#pragma once
// session/timing.h -- clocks, and the text of a statement's time.

#include "session/levels.h"

namespace kelmar {

// default 0; the time of each statement is written; the switch &t
inline std::int32_t timerflag = 0;

clock_pair read_clocks();

// Start the clock of the statement at the present level, and stop it: mytime becomes the elapsed time without
// that of pushed levels.
void start_timing();
void stop_timing();

// Start the clock of the start of the session, whose file may turn timing on.
void start_timing_of_start_up();

// Write the elapsed time in mytime.
void write_timing();

// Write the current date and time, and a line end.
void showtime();

}  // namespace kelmar
