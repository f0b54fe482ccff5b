// matrix/heap.cpp -- heap memory for records that are never returned.
#include "matrix/heap.h"
#include <cstdlib>
#include "numbers/stash.h"
#include "storage/low_memory.h"

namespace kelmar {

static void *request(std::size_t size)
{
#ifdef KELMAR_FAIL_ALLOC
    if (fail_block_at > 0 && --fail_block_at == 0) return nullptr;
#endif
    return std::calloc(1, size);
}

void *zeroed_block(std::size_t size)
{
    void *fresh = request(size);
    while (!fresh) {
        mem_error();
        fresh = request(size);
    }
    return fresh;
}

}  // namespace kelmar
