// matrix/work_arrays.cpp -- the dense tables of matrix algorithms.
#include "matrix/work_arrays.h"
#include "numbers/heap.h"
#include "session/report.h"

namespace kelmar {

// default null; the blocks, got at first use and kept; new_worknode; reset: never
static quolynode **workhead[work_array_count];

quolynode **new_worknode(std::int32_t *index, const char *name)
{
    *index = 0;
    if (first_available > work_array_count) {
        error(err_work_arrays_full, name);
        return nullptr;
    }
    quolynode ***block = &workhead[first_available - 1];
    if (!*block) *block = static_cast<quolynode **>(zeroed_block(array_entries * sizeof(quolynode *)));
    *index = first_available++;
    if (first_available < 2 || first_available > work_array_count + 1) kelmar_error("first available.", 1);
    return *block;
}

void free_work()
{
    --first_available;
}

void swap_work(std::int32_t a, std::int32_t b)
{
    quolynode **table = workhead[a - 1];
    workhead[a - 1] = workhead[b - 1];
    workhead[b - 1] = table;
}

std::int64_t work_arrays_in_being()
{
    std::int64_t count = 0;
    for (quolynode *const *block : workhead) {
        if (block) ++count;
    }
    return count;
}

}  // namespace kelmar
