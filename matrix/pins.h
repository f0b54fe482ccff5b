#pragma once
// matrix/pins.h -- values that must stay while an interrupted computation waits below.
//
// An interrupt is answered in the middle of an operation, whose operands stand in storage; so is a heap that
// is used up, and an internal fault. While the level that it pushed runs, what statements replace or delete
// is set aside. The operation goes on with it when the level is left, so it is freed at the next statement of
// the lowest level, or when all is given up: nothing is under way then.

#include "quoly/quoly.h"

namespace kelmar {

struct colm;
struct sparse_frame;

// default 0; interrupted computations that wait; push_level_here; reset: unwind
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

// *slot, a place of storage, is about to be changed in place. While a computation waits it gets a copy of its
// value first, and the value is set aside.
void unshare_pinned(quolynode **slot);

inline void unshare(quolynode **slot)
{
    if (__builtin_expect(values_pinned > 0, 0)) unshare_pinned(slot);
}

// An interrupted computation begins to wait, and goes on.
inline void pin_values()
{
    ++values_pinned;
}
inline void unpin_values()
{
    --values_pinned;
}

// No computation is under way: free what was set aside.
void release_pinned();

}  // namespace kelmar
