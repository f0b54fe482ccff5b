#pragma once
// numbers/heap.h -- heap memory for records of their own, with the told answer when it is out.

#include <cstddef>

namespace kelmar {

// Return `size` bytes from the heap, uninitialised. When there are none: mem_error, then once more, until the
// user has made room or abandoned the statement.
void *heap_record(std::size_t size);

// The same, all zero. Untouched parts of a large block cost nothing.
void *zeroed_block(std::size_t size);

}  // namespace kelmar
