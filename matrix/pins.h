#pragma once
// matrix/pins.h -- values that must stay while an interrupted computation waits below.
//
// An interrupt is answered in the middle of an operation, whose operands stand in storage. While the level
// that it pushed runs, what statements replace or delete is set aside, and freed when the operation has gone
// on.

#include "quoly/quoly.h"

namespace kelmar {

struct colm;
struct sparse_frame;

// default 0; interrupted computations that wait; answer_interrupt; reset: unwind
inline std::int32_t values_pinned = 0;

// Set aside what was freed meanwhile.
void retire_pinned(quolynode *q);
void retire_node(colm *node);
void retire_frame(sparse_frame *frame);

// Free *q, or set it aside; it becomes null. null is allowed.
inline void retire_value(quolynode **q)
{
    if (__builtin_expect(values_pinned > 0, 0)) {
        if (*q) retire_pinned(*q);
        *q = nullptr;
    } else {
        free_quoly(q);
    }
}

// An interrupted computation begins to wait; it goes on, or all of them are given up.
inline void pin_values()
{
    ++values_pinned;
}
void unpin_values();
void release_pinned();

}  // namespace kelmar
