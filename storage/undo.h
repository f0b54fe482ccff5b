#pragma once
// storage/undo.h -- repairs for operands that are altered in place.
//
// A few routines cut a list in two, or turn its signs over, for the length of a call, instead of copying it.
// The list often belongs to a stored variable, so whoever leaves by a jump must first put it back. Each
// alteration pushes its repair, the normal exit pops it, and an unwinding error replays what is left, newest
// first. Interrupts are answered only while the stack is empty.

#include <cstdint>

namespace kelmar {

struct undo_record {
    void **slot;  // where the pointer stood
    void *saved;  // what stood there
};

inline constexpr std::int32_t undo_limit = 4096;  // two a level of Karatsuba, and every recursion is guarded

inline undo_record undo_stack[undo_limit];
inline std::int32_t undo_depth = 0;  // default 0; records in use; its pushers; reset: unwind

// Remember that *slot holds its present pointer. Undone by undo_restore, or by unwinding.
template <class T> inline void undo_push(T **slot)
{
    if (undo_depth >= undo_limit) __builtin_trap();
    undo_stack[undo_depth++] = {reinterpret_cast<void **>(slot), static_cast<void *>(*slot)};
}

// Put the newest remembered pointer back, and forget it.
inline void undo_restore()
{
    const undo_record *r = &undo_stack[--undo_depth];
    *r->slot = r->saved;
}

// Put back all that is remembered, newest first.
inline void undo_all()
{
    while (undo_depth > 0) undo_restore();
}

}  // namespace kelmar
