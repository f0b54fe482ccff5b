#pragma once
// session/levels.h -- command levels: a read-evaluate loop on top of an interrupted computation.

#include <cstdint>

namespace kelmar {

inline constexpr int highest_level = 9;

// Wall-clock seconds and CPU milliseconds.
struct clock_pair {
    long real;
    long cpu;
};

// default 1; the command level, 1 at the top; push_level; reset: unwind
inline std::int32_t levelcount = 1;
// default 1; the member of the timing arrays in force; push_level; reset: unwind
inline std::int16_t time_level = 1;
inline clock_pair mytime[highest_level + 1];     // the statement's start, then its elapsed time
inline clock_pair time_off[highest_level + 1];   // time spent in deeper levels, to be taken off
inline clock_pair breaktime[highest_level + 1];  // when the level was left for a deeper one

// default 0; an error pushes a level instead of unwinding; the switch &e
inline std::int32_t errorpush = 0;
// default 0; leave the present level after this statement; &_p; reset: statement
inline std::int32_t time_to_quit = 0;
// default 1, 1, 32; when a computation looks for interrupts; &m; kept as the user set them
inline std::int32_t command_int = 1;
inline std::int32_t m_interrupt = 1;
inline std::int32_t cmd_modder = 32;

// default -1; the modulus of the stretch that the present level stands on, and comes back to; error,
// push_level
inline std::int32_t was_modulus = -1;
// default 1; the present modular stretch was entered from exact arithmetic; the mode changes
inline std::int32_t was_in_rat = 1;
// default 0; above 0 while the table of polynomial variables is rebuilt
inline std::int32_t globalpoly = 0;
// default 0; depth of true-integer evaluations inside modular mode; check_modular; reset: unwind
inline std::int16_t mod_is_changed = 0;

// Run a statement loop at one level more, and return when the user leaves it.
void push_level();

}  // namespace kelmar
