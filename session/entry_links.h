#pragma once
// session/entry_links.h -- arrays and entries that tokens of a linked body name.
//
// A token of kind 2 names one entry, whatever stands in its brackets; one of kind 3 an array, whose
// coordinates are read as machine integers. A link knows the stamp of its array: when that array is gone, the
// token is read by its name again.

#include "session/evaluator.h"

namespace kelmar {

struct entry_link {
    array *target;       // of kind 3: the array, null when there is none
    std::int64_t stamp;  // of the target
    entry_ref at;        // of kind 2: the entry
    quolynode **slot;    // of kind 2: its place while at.moves is array_moves; null: it is absent
    name_node *formal;   // the formal parameter that the array belongs to; null: it is none
    entry_link *next;    // of the same body
};
static_assert(std::is_trivial_v<entry_link>);

// *link = a fresh link in front of the list.
void new_link(entry_link **list, entry_link **link);
void free_links(entry_link **list);

// Make the link that of the array, which may be null.
void link_to_array(entry_link *link, array *a);

// *v = the entry that the linked token in hand, of kind 2 or 3, names; as retrieve_entry. Errors: 61, those
// of retrieve_entry and of old_iexpre.
void retrieve_linked_entry(input_stream **stream, operand *v, name_node **cursor);

}  // namespace kelmar
