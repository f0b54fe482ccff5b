#pragma once
// session/start.h -- a session from the first byte to the last.

#include <cstddef>
#include <cstdint>

namespace kelmar {

// Run a session on standard input and output. Returns the exit status. `exact`: the session's numbers
// are exact integers and fractions instead of floats.
int run_session(char **argv, int exact);

// Make the process ready for sessions without reading any input: stashes, tables, defaults. Tests start here.
void prepare_session(const char *data_directory);

// Run one session on n bytes of input, writing to Output. prepare_session comes first, once.
void run_text(const unsigned char *bytes, std::size_t n);

// default 0; numbers of a session are exact; run_session; reset: never
inline std::int32_t exact_session = 0;

}  // namespace kelmar
