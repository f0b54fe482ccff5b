#pragma once
// matrix/store.h -- the slots of ordinary arrays.
//
// Slot s is arp[s >> 10][s & 0x3ff]. Pages are got, zeroed, when an array first reaches them, and kept. A
// null slot is an entry that was never set, and so is every slot above endarr. Blocks lie in the order of
// age; the gaps between them are null.

#include "matrix/array.h"

namespace kelmar {

inline quolynode **arp[store_pages];
// default -1; the highest slot in use; reset: never
inline std::int32_t endarr = -1;
// default -1; the highest page there is; reset: never
inline std::int32_t numblocks = -1;

inline quolynode **store_slot(std::int32_t s)
{
    return &arp[s >> page_bits][s & (page_slots - 1)];
}

// Take `count` slots at the end of the store, for the array of that name. *first filled. Declines (0) after
// error 26.
int take_slots(std::int32_t count, const char *name, std::int32_t *first);

// Free the values in the slots first .. last, which become null.
void clear_slots(std::int32_t first, std::int32_t last);

// Give back the block of `gone`, whose slots are null by now. close_large_gaps: move blocks down, when the
// gaps are worth it; `gone` is in no list by then, or is sparse.
void give_slots(std::int32_t first, std::int32_t count, const array *gone);
void close_large_gaps();

// table[k] = the value in slot first + k, null where unset. Borrowed from the store.
void borrow_slots(std::int32_t first, std::int32_t count, quolynode **table);

// The store is what its records say: blocks in the order of age, nothing in the gaps and above endarr,
// buckets and the list of ages hold the same records. For tests and debug builds.
bool store_is_sound();

}  // namespace kelmar
