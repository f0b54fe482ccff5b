// session/heap.cpp -- heap memory for the session's records.
#include "session/heap.h"
#include <cstdlib>
#include "storage/low_memory.h"

namespace kelmar {

void *heap_record(std::size_t size)
{
    void *fresh = std::malloc(size);
    while (!fresh) {
        mem_error();
        fresh = std::malloc(size);
    }
    return fresh;
}

}  // namespace kelmar
