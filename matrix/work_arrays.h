#pragma once
// matrix/work_arrays.h -- the dense tables in which array expressions and matrix algorithms work.
//
// They are taken and given back strictly last in, first out; a statement that is abandoned gives back what it
// had.

#include "matrix/array.h"

namespace kelmar {

// default 1; number of the next free work array, counted from 1; new_worknode, free_work; reset: unwind
inline std::int32_t first_available = 1;

// Take a work array. Its slots are rubbish. *index = its number. Declines (null) when all are taken. Errors:
// 88 at `name`. Faults: "first available."
quolynode **new_worknode(std::int32_t *index, const char *name);

// Give back the work array taken last. Its slots are somebody else's, or freed.
void free_work();

// Exchange the tables of two work arrays: what was in one is in the other.
void swap_work(std::int32_t a, std::int32_t b);

// Blocks that were ever needed.
std::int64_t work_arrays_in_being();

}  // namespace kelmar
