#pragma once
// quoly/owned.h -- the values that running evaluators own.
//
// An evaluator that holds a computed value across a call which may fail announces the slot here. When an
// error abandons the statement, every announced slot is freed before the jump, so that a session may fail a
// million times and stay as small as it was. Announce and withdraw are two stores each.

#include "quoly/quoly.h"

namespace kelmar {

inline constexpr int owned_limit = 1 << 22;  // slots; a nesting that deep has met the stack guard before

// default empty; the announced slots, oldest first; evaluators; reset: unwind
inline quolynode ***owned_slots = nullptr;
inline int owned_count = 0;

// Get the table; untouched pages of it cost nothing. Called once.
void make_owned();

// Report that the table is full: the statement is nested too deeply.
void owned_overflow();

// The slot is announced until the matching disown. It must hold a value or null already.
inline void own(quolynode **slot)
{
    if (__builtin_expect(owned_count >= owned_limit, 0)) {
        owned_overflow();
        return;
    }
    owned_slots[owned_count++] = slot;
}

// Withdraw the slot announced last.
inline void disown()
{
    --owned_count;
}

// Free the values of all slots announced since the count was `mark`, and withdraw them.
void free_owned(int mark);

}  // namespace kelmar
