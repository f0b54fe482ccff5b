// session/stored_values.cpp -- all values that outlive a statement, and those that a running one holds.
//
// Evaluators that call each other announce one slot several times. The announced slots are sorted, so that
// each is met once.
#include "session/stored_values.h"
#include <algorithm>
#include <cstdlib>
#include <cstring>
#include "quoly/owned.h"
#include "session/evaluator.h"
#include "numbers/heap.h"
#include "session/names.h"

namespace kelmar {

static void change_slot(quolynode **slot, void (*change)(quolynode **))
{
    if (*slot) change(slot);
}

void for_each_stored(void (*change)(quolynode **slot))
{
    const std::size_t bytes = static_cast<std::size_t>(owned_count) * sizeof(quolynode **);
    quolynode ***slots = static_cast<quolynode ***>(heap_record(bytes + 1));
    std::memcpy(slots, owned_slots, bytes);
    for_each_scalar(change);
    change_slot(&prevnum, change);
    std::sort(slots, slots + owned_count);
    quolynode ***const end = std::unique(slots, slots + owned_count);
    for (quolynode ***slot = slots; slot != end; ++slot) {
        if (*slot != &prevnum) change_slot(*slot, change);
    }
    std::free(slots);
}

}  // namespace kelmar
