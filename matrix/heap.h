#pragma once
// matrix/heap.h -- heap memory for records that are never returned.

#include <cstddef>

namespace kelmar {

// Return `size` bytes from the heap, all zero. Untouched parts of a large block cost nothing. When there are
// none: mem_error, then once more, until there is room or the statement was abandoned.
void *zeroed_block(std::size_t size);

}  // namespace kelmar
