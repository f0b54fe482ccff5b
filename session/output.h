#pragma once
// session/output.h -- the terminal's output stream, and the switches of what is written to it.

#include <cstdint>
#include <cstdio>

namespace kelmar {

// default standard output; all results and reports; tests replace it; reset: never
inline std::FILE *Output = stdout;

// default 1; a blank line after each value; the switch &E
inline std::int32_t extra_line = 1;
// default 1; results are shown; the switch &N
inline std::int32_t noisy = 1;

// Show what was written, where somebody may be watching: a terminal or a pipe. A file gets it when its buffer
// is full, and everything is shown before the session waits for input.
void flush_output();

// Look at what kind of file Output is. Called once.
void find_watchers();

// Write one line end when extra_line is on.
inline void extra_line_end()
{
    if (extra_line) std::fputc('\n', Output);
}

}  // namespace kelmar
