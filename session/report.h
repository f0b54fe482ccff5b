#pragma once
// session/report.h -- the one header through which the lower folders reach the session.
//
// A routine that fails calls error with a number of session/errors.def and the offending text. error reports
// and unwinds by one jump; it comes back only when the failure was downgraded to a warning, or when a level
// that it pushed was left again. So the line after a call of error says what value goes on.

#include <cstdint>
#include <cstdio>
#include "session/errnums.h"
#ifdef KELMAR_STORM
#include "session/storm.h"
#endif

namespace kelmar {

inline constexpr int panic_stop = 0;  // status of error: abandon the statement, no number
inline constexpr int new_level = -1;  // status of error: push a command level

// Report failure `status` at the offending text `errname`, then unwind, or push a level.
void error(int status, const char *errname);

// Write warning `n` about `errname` and return.
void warning(int n, const char *errname);

// Write the text to the terminal's output and return.
void tell(const char *text);

// Write the report of error n at the token in hand, led by a blank, and return: nothing is unwound.
void tell_error(int n);

// Push a level in the middle of an operation, which goes on when the level is left: what its statements
// replace or delete stays until then, and what would not be followed on the frames below is refused there.
void push_level_here();

// Report an internal fault. With `stop` a new command level is pushed, on top of the intact state.
void kelmar_error(const char *text, int stop);

// default 0; an interrupt waits to be answered; the signal handler sets, answer_interrupt clears; reset:
// unwind
inline volatile int interrupt_flag = 0;

// default 0; above 0 an interrupt goes on waiting: data are between two rings; who is there; reset: unwind
inline std::int32_t interrupts_held = 0;
// default 0; an algorithm may be interrupted in a delicate stretch; the switch &Z
inline std::int32_t danger_ok = 0;

// Answer a waiting interrupt: push a command level here. Returns when that level is left; at once while
// interrupts are held.
void answer_interrupt();

// Answer a waiting interrupt, if there is one. Stands at safe points only, never inside the number layer.
inline void poll_interrupt()
{
#ifdef KELMAR_STORM
    storm_poll();
#endif
    if (__builtin_expect(interrupt_flag, 0)) answer_interrupt();
}

// default null; the lowest address a frame may reach, 256 KiB above the end of the stack; start; reset: never
inline char *stack_floor = nullptr;

// Raise error err_too_deep. check_stack calls it.
void report_too_deep();

// Raise error err_too_deep and unwind when the stack is nearly used up. Every recursion asks it.
inline void check_stack()
{
    if (__builtin_expect(static_cast<char *>(__builtin_frame_address(0)) < stack_floor, 0)) report_too_deep();
}

// default 0; warnings written by this statement, to stop floods; each warner; reset: statement, unwind
inline std::int32_t warn_cnt = 0;

// default 0; progress lines are written; the switch &V
inline std::int32_t verbose = 0;
// default 0; more progress lines than verbose gives; &W; reset: never
inline std::int32_t windy = 0;

// Long output -------------------------------------------------------------------------------------------

// `out` is the terminal's output stream.
bool is_terminal_output(const std::FILE *out);

// A line of a long value was written: show it, where somebody may be watching.
void line_written(std::FILE *out);

// Progress of long runs, of which each step may report its own steps -------------------------------------

// default 0; steps inside steps that report; dumpitt, decr_dumpitt; reset: unwind
inline std::int32_t dumpitt_level = 0;

// A step inside the present one begins that has n parts. With verbose, and not too deep inside loops, write
// text and n on the progress line; drop: on a new one. show 0: count only. colon: a colon follows, else a
// point.
void dumpitt(const char *text, std::int32_t n, int drop, int show, int colon);

// The step that dumpitt(.., n, ..) began is done.
void decr_dumpitt(std::int32_t n);

}  // namespace kelmar
