#pragma once
// matrix/sparse.h -- sparse frames, their rows, and updates of single entries.
//
// A chain of frames holds the list heads of the rows; a row is a list of colm nodes, strictly rising by
// column. A stored value is never zero: what makes zeros in place purges them. Slots of the last frame above
// the row count are rubbish and never read. Frames do not know their row count: every caller gives it.
//
// In integer-data mode the word of a node is the entry itself.

#include "matrix/array.h"

namespace kelmar {

struct colm {
    std::int32_t coord;  // the column, from 1
    union {
        quolynode *val;
        std::intptr_t word;  // integer-data mode
    };
    colm *next;
};
static_assert(std::is_trivial_v<colm>);

struct sparse_frame {
    colm *row_head[frame_rows];
    std::int32_t frame_mode;  // modularmode when it was taken; of the first frame alone it is read
    std::int32_t frame_seen;  // a walk over shared chains has still to visit this one
    sparse_frame *frame_next;
};
static_assert(std::is_trivial_v<sparse_frame>);

// default null; free records; newcolm, give_colm, newsparse, give_frame; reset: never
inline colm *colm_garb = nullptr;
inline sparse_frame *spargarb = nullptr;

// The entry of a row in which there is none; its value must not be written.
extern quolynode *quol_num_0;

// An entry for reading: null is the number 0.
inline const quolynode *entry_or_zero(const quolynode *q)
{
    if (q) return q;
    quoly_set(0, &quol_num_0);
    return quol_num_0;
}

// Records -----------------------------------------------------------------------------------------------

// A fresh node.
inline colm *newcolm(std::int32_t col, quolynode *val)
{
    colm *node = colm_garb;
    if (__builtin_expect(node != nullptr, 1)) {
        colm_garb = node->next;
    } else {
        node = static_cast<colm *>(get_slug(colmstash));
    }
    node->coord = col;
    node->val = val;
    node->next = nullptr;
    return node;
}

void give_colm(colm *node);  // its value is somebody else's by now, or freed

void newsparse(sparse_frame **frame);  // *frame filled: a frame whose row heads are rubbish
void give_frame(sparse_frame *frame);

// Rows --------------------------------------------------------------------------------------------------

// A walk over the rows of a chain, in rising order.
struct row_walk {
    sparse_frame *frame;
    std::int32_t row;  // from 0, the one that stands next
    std::int32_t rows;
};

// The head of the next row; null behind the last.
inline colm **next_row(row_walk *w)
{
    if (w->row >= w->rows) return nullptr;
    const std::int32_t slot = w->row % frame_rows;
    if (slot == 0 && w->row > 0) w->frame = w->frame->frame_next;
    ++w->row;
    return &w->frame->row_head[slot];
}

// The head of a row, from 1.
inline colm **head_of_row(sparse_frame *frame, std::int32_t row)
{
    for (std::int32_t skip = (row - 1) / frame_rows; skip > 0; --skip) frame = frame->frame_next;
    return &frame->row_head[(row - 1) % frame_rows];
}

// The link at which column col is, or would be, in the row.
inline colm **column_link(colm **head, std::int32_t col)
{
    while (*head && (*head)->coord < col) head = &(*head)->next;
    return head;
}

// Entries -----------------------------------------------------------------------------------------------

// Where an entry stands.
struct entry_place {
    quolynode **slot;  // null: an absent entry of a sparse array
    colm **row;        // sparse: the head of its row; else null
    std::int32_t col;  // sparse: its column, from 1
};

// *place = the place of entry [i, j], or in storage order [i], counted from `base`. Declines (0) after error
// 27 at `name`. Cost: a division when there is one coordinate; sparse: the length of the row.
int new_array_quoly_ptr(array *a, std::int32_t i, std::int32_t j, bool two, std::int32_t base,
                        const char *name, entry_place *place);

// The value of entry row, col, from 1; quol_num_0 where there is none.
const quolynode *spar_retrieve(sparse_frame *frame, std::int32_t row, std::int32_t col);

// A cursor for reading a column row by row: *slot is the head of row i, in *frame. Return the place of the
// value in column col, null when there is none, and move the cursor to row i + 1.
quolynode **get_sparse(std::int32_t i, std::int32_t col, colm ***slot, sparse_frame **frame);

// The link at which col is or would be in that row of the given frame; the row counts modulo frame_rows.
colm **get_sparse_colm(sparse_frame *frame, std::int32_t row, std::int32_t col);

// A cursor over the diagonal: *q = the place of entry (row, row), which must be there; *frame moves on.
// Faults: "bad t in sparse_qq_set, 1.", "bad t in sparse_qq_set, 2."; *q is null then.
void sparse_qq_set(std::int32_t row, sparse_frame **frame, quolynode ***q);

// An entry, by which it is found again.
struct entry_ref {
    std::int64_t array_time;  // of its array or parameter; 0: no entry
    std::int64_t position;    // in storage order, from 0
    colm **row;               // as in entry_place, while nothing has moved
    std::int32_t col;
    std::uint32_t moves;  // array_moves when it was found
};

// The place of the entry now. Declines (0) when its array is gone, or has no such position any more.
int find_entry(const entry_ref *ref, entry_place *place);

// Updates -----------------------------------------------------------------------------------------------

// Positions count from 0 here: [i, j], or with !two i in storage order.

// Link a copy of q, if it is not zero; the entry is known to be absent.
void sparse_insert(std::int32_t i, std::int32_t j, array *a, bool two, const quolynode *q);

// Set the entry to a machine integer, or without `replace` add that to it; a zero unlinks.
void isparse_insert(std::int32_t i, std::int32_t j, std::int32_t value, array *a, bool two, bool replace);

// Link a new entry that holds zero, for the caller to compute into. Return the place of its value.
quolynode **sparse_set(std::int32_t i, std::int32_t j, array *a, bool two);
quolynode **sparse_zero_set(colm **head, std::int32_t col);

// Unlink and free an entry known to exist.
void sparse_delete(std::int32_t i, std::int32_t j, array *a, bool two);

// Free the entry if it is there and zero.
void purge_sparse(colm **head, std::int32_t col);

// Unlink and free the node at a link.
void free_colm(colm **link);

}  // namespace kelmar
