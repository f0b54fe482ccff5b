// matrix/sparse_order.cpp -- transposes, exchanges and reversals.
//
// A transpose visits the source rows from the last to the first, and pushes each node on the front of the
// list of its column: so every list rises with no sorting. The frames of the target stand in a table, because
// a column number leads straight to its frame.
#include "matrix/sparse_order.h"
#include <utility>
#include "numbers/heap.h"
#include "matrix/sparse_ops.h"
#include "matrix/store.h"

namespace kelmar {

// Transposes --------------------------------------------------------------------------------------------

// The frames of a chain, by number.
struct frame_table {
    sparse_frame **frame;
    std::int32_t count, room;
};

// default empty; kept from call to call; index_frames; reset: never
static frame_table source_table, target_table;

static void index_frames(frame_table *t, const sparse_frame *frames)
{
    std::int32_t count = 0;
    for (const sparse_frame *f = frames; f; f = f->frame_next) ++count;
    if (count > t->room) {
        t->frame = static_cast<sparse_frame **>(
            zeroed_block(static_cast<std::size_t>(count) * 2 * sizeof *t->frame));
        t->room = 2 * count;
    }
    t->count = 0;
    for (const sparse_frame *f = frames; f; f = f->frame_next) {
        t->frame[t->count++] = const_cast<sparse_frame *>(f);
    }
}

static inline colm **indexed_head(const frame_table *t, std::int32_t row)
{
    return &t->frame[(row - 1) / frame_rows]->row_head[(row - 1) % frame_rows];
}

void flip_sparse(const sparse_frame *from, sparse_frame **to, std::int32_t rows, std::int32_t cols)
{
    sparse_init(to, cols);
    index_frames(&source_table, from);
    index_frames(&target_table, *to);
    for (std::int32_t row = rows; row >= 1; --row) {
        for (const colm *node = *indexed_head(&source_table, row); node; node = node->next) {
            colm **head = indexed_head(&target_table, node->coord);
            colm *twin = newcolm(row, node->val);
            twin->next = *head;
            *head = twin;
        }
    }
}

void trans_sparse(sparse_frame **frames, std::int32_t rows, std::int32_t cols)
{
    sparse_frame *flipped = nullptr;
    sparse_init(&flipped, cols);
    flipped->frame_mode = (*frames)->frame_mode;
    index_frames(&source_table, *frames);
    index_frames(&target_table, flipped);
    for (std::int32_t row = rows; row >= 1; --row) {
        for (colm *node = *indexed_head(&source_table, row); node;) {
            colm *next = node->next;
            colm **head = indexed_head(&target_table, node->coord);
            node->coord = row;
            node->next = *head;
            *head = node;
            node = next;
        }
        if ((row - 1) % frame_rows == 0) give_frame(source_table.frame[(row - 1) / frame_rows]);
    }
    *frames = flipped;
}

// Reversal ----------------------------------------------------------------------------------------------

void reverse_sparse(sparse_frame *frames, std::int32_t rows)
{
    index_frames(&source_table, frames);
    for (std::int32_t low = 1, high = rows; low < high; ++low, --high) {
        std::swap(*indexed_head(&source_table, low), *indexed_head(&source_table, high));
    }
}

void reverse_array(array *a)
{
    for (std::int32_t low = static_cast<std::int32_t>(a->arr_first), high = a->arr_last; low < high;
         ++low, --high) {
        std::swap(*store_slot(low), *store_slot(high));
    }
}

// Exchanges ---------------------------------------------------------------------------------------------

void sp_switchrow(sparse_frame *frames, std::int32_t r1, std::int32_t r2)
{
    std::swap(*head_of_row(frames, r1), *head_of_row(frames, r2));
}

// Take the node of column col out of the row; null when there is none.
static colm *cut_node(colm **head, std::int32_t col)
{
    colm **link = column_link(head, col);
    colm *node = *link;
    if (!node || node->coord != col) return nullptr;
    *link = node->next;
    return node;
}

static void put_node(colm **head, colm *node, std::int32_t col)
{
    if (!node) return;
    colm **link = column_link(head, col);
    node->coord = col;
    node->next = *link;
    *link = node;
}

void sp_switchcol(sparse_frame *frames, std::int32_t c1, std::int32_t c2, std::int32_t last,
                  std::int32_t first)
{
    row_walk w = {frames, 0, last};
    if (c1 == c2) return;
    while (colm **head = next_row(&w)) {
        if (w.row < first) continue;
        colm *node1 = cut_node(head, c1);
        colm *node2 = cut_node(head, c2);
        put_node(head, node1, c2);
        put_node(head, node2, c1);
    }
}

void switchrow_col(char which, std::int32_t a, std::int32_t b, array *arr)
{
    const std::int32_t rows = arr->arr_rows;
    const bool whole_rows = which == ']';
    const std::int32_t count = whole_rows ? arr->arr_cols : rows;
    const std::int32_t stride = whole_rows ? rows : 1;
    const std::int32_t first = static_cast<std::int32_t>(arr->arr_first);
    std::int32_t s = first + (whole_rows ? a : a * rows);
    std::int32_t t = first + (whole_rows ? b : b * rows);
    for (std::int32_t k = 0; k < count; ++k, s += stride, t += stride)
        std::swap(*store_slot(s), *store_slot(t));
}

}  // namespace kelmar
