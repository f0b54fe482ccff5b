// matrix/array_rings.cpp -- arrays and changes of the ground ring.
//
// A node that vanishes on the way into a modulus keeps its record and its next field: when the links are
// written back, the last one first, each chain is as it was.
#include "matrix/array_rings.h"
#include "numbers/heap.h"
#include "matrix/sparse_ops.h"
#include "matrix/store.h"
#include "quoly/ring_change.h"

namespace kelmar {

// default null; free records; fast_change_spar, restore_sparsefix; reset: never
static sparse_fix_record *fix_garb = nullptr;

void change_arrays(void (*change)(quolynode **value))
{
    for (std::int32_t s = 0; s <= endarr; ++s) {
        quolynode **slot = store_slot(s);
        if (!*slot) continue;
        change(slot);
        if (!*slot) quoly_set(0, slot);
    }
}

void change_sparses(void (*change)(quolynode **value), bool all)
{
    for (array *a = oldest_array; a; a = a->younger) {
        if (!a->arr_sparse || (!all && a->arr_sparse->frame_mode == modularmode)) continue;
        change_entries(a->arr_sparse, a->arr_rows, change);
        a->arr_sparse->frame_mode = modularmode;
    }
}

// Unlink the node at the link, and remember it.
static void set_aside(colm **link)
{
    sparse_fix_record *fix = fix_garb;
    if (fix) {
        fix_garb = fix->next;
    } else {
        fix = static_cast<sparse_fix_record *>(zeroed_block(sizeof(sparse_fix_record)));
    }
    fix->link = link;
    fix->node = *link;
    fix->next = sparse_fix;
    sparse_fix = fix;
    *link = (*link)->next;
}

static bool has_vanished(const colm *node)
{
    return !node->val || quoly_iszero(node->val);
}

void fast_change_spar(sparse_frame *frames, std::int32_t rows, bool into)
{
    row_walk w = {frames, 0, rows};
    while (colm **head = next_row(&w)) {
        for (colm **link = head; *link;) {
            if (into) {
                quoly_change_to_mod(&(*link)->val);
            } else {
                quoly_change_from_mod((*link)->val);
            }
            if (!has_vanished(*link)) {
                link = &(*link)->next;
            } else if (into) {
                set_aside(link);
            } else {
                free_colm(link);
            }
        }
    }
}

void restore_sparsefix()
{
    while (sparse_fix) {
        sparse_fix_record *fix = sparse_fix;
        sparse_fix = fix->next;
        *fix->link = fix->node;
        fix->next = fix_garb;
        fix_garb = fix;
    }
}

}  // namespace kelmar
