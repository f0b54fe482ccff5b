// session/many_names.cpp -- a table of slots over the records of scalars.
//
// The slot of a name is told by its twelve bytes, multiplied into one word. When the table gets too small a
// larger one is filled from the buckets; where the heap has no room for it the old one goes on, or the
// buckets.
#include "session/many_names.h"
#include <cstdlib>
#include "session/names.h"

namespace kelmar {

#ifdef KELMAR_TINY_LIMITS
static constexpr std::int64_t few_names = 4;
static constexpr int first_bits = 2;
#else
static constexpr std::int64_t few_names = 1500;  // ten in a bucket
static constexpr int first_bits = 12;
#endif
static constexpr int more_bits = 2;  // a larger table has four times the slots

// default 0; records in all buckets; name_was_added, name_was_removed; reset: never
static std::int64_t names_there = 0;
// default 0; the table has 2^slot_bits slots; make_slots; reset: never
static int slot_bits = 0;

static inline var_node **slot_of(var_node **slots, int bits, const char *text)
{
    std::uint64_t first;
    std::uint32_t rest;
    static_assert(sizeof first + sizeof rest == token_room);
    std::memcpy(&first, text, sizeof first);
    std::memcpy(&rest, text + sizeof first, sizeof rest);
    const std::uint64_t mixed = (first ^ (first >> 32) ^ (std::uint64_t{rest} << 24)) * 0x9E3779B97F4A7C15;
    return &slots[mixed >> (64 - bits)];
}

var_node *find_among_many(const char *text)
{
    for (var_node *v = *slot_of(many_names, slot_bits, text); v; v = v->alike) {
        if (std::memcmp(v->text, text, token_room) == 0) return v;
    }
    return nullptr;
}

// Put the records of a bucket before those in the slots. A bucket has its newest record first, and so has a
// slot: they go in from the oldest. Calls within calls put very many records of one name into a slot.
static void fill_slots(var_node **slots, int bits, var_node *bucket)
{
    var_node *oldest = nullptr;
    for (var_node *v = bucket; v; v = v->next) {
        v->alike = oldest;
        oldest = v;
    }
    while (oldest) {
        var_node *const v = oldest;
        var_node **const slot = slot_of(slots, bits, v->text);
        oldest = v->alike;
        v->alike = *slot;
        *slot = v;
    }
}

// Go over to a table of 2^bits slots.
static void make_slots(int bits)
{
    auto **slots = static_cast<var_node **>(std::calloc(std::size_t{1} << bits, sizeof(var_node *)));
    if (!slots) return;
    for (var_node *bucket : sca_store) fill_slots(slots, bits, bucket);
    std::free(many_names);
    many_names = slots;
    slot_bits = bits;
}

void name_was_added(var_node *v)
{
    ++names_there;
    if (many_names) {
        var_node **const slot = slot_of(many_names, slot_bits, v->text);
        v->alike = *slot;
        *slot = v;
        if (names_there > std::int64_t{1} << slot_bits) make_slots(slot_bits + more_bits);
    } else if (names_there > few_names) {
        make_slots(first_bits);
    }
}

void name_was_removed(var_node *v)
{
    --names_there;
    if (!many_names) return;
    var_node **link = slot_of(many_names, slot_bits, v->text);
    while (*link != v) link = &(*link)->alike;
    *link = v->alike;
}

}  // namespace kelmar
