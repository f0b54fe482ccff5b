#pragma once
// session/scratch.h -- values put together in memory, where blanks must stand in front of them.
//
// There is one such text at a time. Writing a value does not poll, so no level that is pushed can need it
// meanwhile; it is kept for the session, and a value costs no allocation.

#include <cstddef>
#include <cstdio>

namespace kelmar {

// The empty text, to be written to; null when there is no memory.
std::FILE *open_scratch();

// What was written since open_scratch, *length bytes. Lives until the next open_scratch.
const char *scratch_text(std::size_t *length);

}  // namespace kelmar
