// matrix/pins.cpp -- what is set aside while a computation waits.
//
// What was set aside keeps its links, for a walk may stand on it: so the tables hold addresses, and nothing
// is chained through the records themselves.
#include "matrix/pins.h"
#include "numbers/heap.h"
#include "matrix/sparse.h"

namespace kelmar {

struct pin_block {
    pin_block *next;
    std::int32_t count;
    struct {
        int kind;
        void *record;
    } kept[500];
};

enum kept_kind { kept_value, kept_node, kept_frame };

// default null; what is set aside, newest block first; retire_*; reset: release_pinned
static pin_block *pinned = nullptr;
static pin_block *idle_blocks = nullptr;

static void keep(int kind, void *record)
{
    if (!pinned || pinned->count == 500) {
        pin_block *fresh = idle_blocks;
        if (fresh) {
            idle_blocks = fresh->next;
        } else {
            fresh = static_cast<pin_block *>(zeroed_block(sizeof(pin_block)));
        }
        fresh->count = 0;
        fresh->next = pinned;
        pinned = fresh;
    }
    pinned->kept[pinned->count].kind = kind;
    pinned->kept[pinned->count].record = record;
    ++pinned->count;
}

void retire_pinned(quolynode *q)
{
    keep(kept_value, q);
}

void unshare_pinned(quolynode **slot)
{
    quolynode *copy = nullptr;
    if (!*slot) return;
    quoly_assign(*slot, &copy);
    retire_pinned(*slot);
    *slot = copy;
}

void retire_node(colm *node)
{
    keep(kept_node, node);
}

void retire_frame(sparse_frame *frame)
{
    keep(kept_frame, frame);
}

static void release(int kind, void *record)
{
    if (kind == kept_value) {
        quolynode *q = static_cast<quolynode *>(record);
        free_quoly(&q);
    } else if (kind == kept_node) {
        give_colm(static_cast<colm *>(record));
    } else {
        give_frame(static_cast<sparse_frame *>(record));
    }
}

void release_pinned()
{
    values_pinned = 0;
    while (pinned) {
        pin_block *block = pinned;
        pinned = block->next;
        for (std::int32_t k = 0; k < block->count; ++k) release(block->kept[k].kind, block->kept[k].record);
        block->next = idle_blocks;
        idle_blocks = block;
    }
}

}  // namespace kelmar
