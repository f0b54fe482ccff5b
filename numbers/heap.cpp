// numbers/heap.cpp -- heap memory for records of their own.
#include "numbers/heap.h"
#include <cstdlib>
#include "numbers/stash.h"
#include "storage/low_memory.h"

namespace kelmar {

template <bool zeroed> static void *request(std::size_t size)
{
#ifdef KELMAR_FAIL_ALLOC
    if (fail_block_at > 0 && --fail_block_at == 0) return nullptr;
#endif
    return zeroed ? std::calloc(1, size) : std::malloc(size);
}

template <bool zeroed> static void *block(std::size_t size)
{
    void *fresh = request<zeroed>(size);
    while (!fresh) {
        mem_error();
        fresh = request<zeroed>(size);
    }
    return fresh;
}

void *heap_record(std::size_t size)
{
    return block<false>(size);
}

void *zeroed_block(std::size_t size)
{
    return block<true>(size);
}

}  // namespace kelmar
