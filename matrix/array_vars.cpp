// matrix/array_vars.cpp -- arrays and the coming and going of variables.
//
// A chain of frames may be shared by an array and its parameters; the mark of the first frame has it visited
// once. Parameters share the slots of ordinary arrays too, and slots are walked by themselves.
#include "matrix/array_vars.h"
#include "matrix/array_rings.h"
#include "matrix/sparse_ops.h"
#include "matrix/store.h"
#include "poly/attach.h"
#include "poly/node.h"
#include "session/report.h"

namespace kelmar {

void wrap_entry(quolynode **value)
{
    quolynode *q = *value;
    if (!q || q->is_num) return;
    add_pad(&q->top, 1);
    if (q->den) add_pad(&q->den, 1);
}

void entry_down(quolynode **value, std::int32_t level, const char *report)
{
    quolynode *q = *value;
    if (!q || q->is_num) return;
    poly_at_one(&q->top, level);
    if (q->den) poly_at_one(&q->den, level);
    if (q->den && poly_iszero(q->den)) {
        if (++badcnt <= told_cases) tell(report);
        quoly_set(1, value);
        return;
    }
    polynum_to_quoly(value);
}

// Sparse arrays -----------------------------------------------------------------------------------------

// Call f on each chain once.
static void for_each_chain(void (*f)(sparse_frame *frames, std::int32_t rows))
{
    for (array *a = oldest_array; a; a = a->younger) {
        if (a->arr_sparse) a->arr_sparse->frame_seen = 1;
    }
    for (array *p = array_params; p; p = p->older) {
        if (p->arr_sparse) p->arr_sparse->frame_seen = 1;
    }
    for (int params = 0; params < 2; ++params) {
        for (array *a = params ? array_params : oldest_array; a; a = params ? a->older : a->younger) {
            if (!a->arr_sparse || !a->arr_sparse->frame_seen) continue;
            a->arr_sparse->frame_seen = 0;
            f(a->arr_sparse, a->arr_rows);
        }
    }
}

static void wrap_chain(sparse_frame *frames, std::int32_t rows)
{
    change_entries(frames, rows, wrap_entry);
}

void redo_sparses()
{
    for_each_chain(wrap_chain);
}

// default null; the reduction by a relation; sparse_update
static void (*reduction)(quolynode **value) = nullptr;

static void reduce_chain(sparse_frame *frames, std::int32_t rows)
{
    change_entries(frames, rows, reduction);
}

void sparse_update(void (*reduce)(quolynode **value))
{
    reduction = reduce;
    for_each_chain(reduce_chain);
}

// default 0; the level that goes; sparse_down
static std::int32_t going = 0;

static void sparse_entry_down(quolynode **value)
{
    entry_down(value, going,
               "Warning. A quoly denominator in a sparse array entry has become 0.  That entry has been set "
               "to 1.\n");
}

static void chain_down(sparse_frame *frames, std::int32_t rows)
{
    change_entries(frames, rows, sparse_entry_down);
}

void sparse_down(std::int32_t level)
{
    going = level;
    for_each_chain(chain_down);
}

// Ordinary arrays -----------------------------------------------------------------------------------------

void redo_dense()
{
    for (std::int32_t s = 0; s <= endarr; ++s) wrap_entry(store_slot(s));
}

void dense_update(void (*reduce)(quolynode **value))
{
    change_arrays(reduce);
}

void dense_down(std::int32_t level)
{
    for (std::int32_t s = 0; s <= endarr; ++s) {
        entry_down(store_slot(s), level,
                   "Warning. A quoly denominator has become 0.  That array entry has been set to 1.\n");
    }
}

}  // namespace kelmar
