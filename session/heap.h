#pragma once
// session/heap.h -- heap memory for the session's own records, with the told answer when it is out.

#include <cstddef>

namespace kelmar {

// Return `size` bytes from the heap, uninitialised. When there are none: mem_error, then once more, until the
// user has made room or abandoned the statement.
void *heap_record(std::size_t size);

}  // namespace kelmar
