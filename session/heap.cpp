// session/heap.cpp -- heap memory for the session's records.
#include "session/heap.h"
#include <cstdlib>
#include "numbers/stash.h"
#include "storage/low_memory.h"

namespace kelmar {

static void *request(std::size_t size)
{
#ifdef KELMAR_FAIL_ALLOC
    if (fail_block_at > 0 && --fail_block_at == 0) return nullptr;
#endif
    return std::malloc(size);
}

void *heap_record(std::size_t size)
{
    void *fresh = request(size);
    while (!fresh) {
        mem_error();
        fresh = request(size);
    }
    return fresh;
}

}  // namespace kelmar
