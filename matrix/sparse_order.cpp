// matrix/sparse_order.cpp -- transposes, exchanges and reversals.
//
// A transpose visits the source rows from the last to the first, and pushes each node on the front of the
// list of its column: so every list rises with no sorting. The frames of the target stand in a table, because
// a column number leads straight to its frame. In a large matrix each step of that waits for memory, and
// leaves lists that do so again: there the contents of the nodes are sorted instead, and put back into the
// nodes in the order in which these were met.
#include "matrix/sparse_order.h"
#include <cstdlib>
#include <type_traits>
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

static constexpr std::int64_t sorted_from = 1 << 12;  // entries; fewer nodes are all in the caches

// What a node holds, and the node.
struct node_content {
    std::int32_t row, col;
    std::intptr_t word;
    colm *node;
};
static_assert(std::is_trivial_v<node_content>);

struct content_list {
    node_content *at;
    std::int64_t count, room;
};

static bool widen(content_list *l)
{
    const std::int64_t room = l->room ? 2 * l->room : 4 * sorted_from;
    void *const at = std::realloc(l->at, static_cast<std::size_t>(room) * sizeof(node_content));
    if (!at) return false;
    l->at = static_cast<node_content *>(at);
    l->room = room;
    return true;
}

static bool gather_contents(sparse_frame *frames, std::int32_t rows, content_list *l)
{
    row_walk w = {frames, 0, rows};
    while (colm **head = next_row(&w)) {
        for (colm *node = *head; node; node = node->next) {
            if (l->count == l->room && !widen(l)) return false;
            l->at[l->count++] = {w.row, node->coord, node->word, node};
        }
    }
    return true;
}

// Link the nodes of the list, in its order, to rows in `to`: its entries by column, which begin at
// starts[col].
static void refill(const content_list *l, sparse_frame *to, std::int32_t cols, std::int64_t *starts,
                   node_content *sorted)
{
    for (std::int64_t k = 0; k < l->count; ++k) sorted[starts[l->at[k].col]++] = l->at[k];
    std::int64_t k = 0;
    row_walk w = {to, 0, cols};
    while (colm **tail = next_row(&w)) {
        for (; k < starts[w.row]; ++k) {  // by now where the column ends
            colm *const node = l->at[k].node;
            node->coord = sorted[k].row;
            node->word = sorted[k].word;
            *tail = node;
            tail = &node->next;
        }
        *tail = nullptr;
    }
}

// Fill the empty frames `to` with the transpose, out of the nodes of `from`, whose heads are void then.
// Declines (0): memory is short; nothing is changed.
static int transpose_by_sorting(sparse_frame *from, sparse_frame *to, std::int32_t rows, std::int32_t cols)
{
    content_list l = {nullptr, 0, 0};
    const bool gathered = gather_contents(from, rows, &l);
    auto *starts = static_cast<std::int64_t *>(
        std::calloc(static_cast<std::size_t>(cols) + 2, sizeof(std::int64_t)));
    auto *sorted = static_cast<node_content *>(
        std::malloc(static_cast<std::size_t>(l.count) * sizeof(node_content)));
    const bool ready = gathered && starts && sorted;
    if (ready) {
        for (std::int64_t k = 0; k < l.count; ++k) ++starts[l.at[k].col + 1];
        for (std::int64_t col = 1; col <= cols; ++col) starts[col + 1] += starts[col];
        refill(&l, to, cols, starts, sorted);
    }
    std::free(sorted);
    std::free(starts);
    std::free(l.at);
    return ready;
}

// The number of entries, up to `limit`.
static std::int64_t count_entries(sparse_frame *frames, std::int32_t rows, std::int64_t limit)
{
    std::int64_t count = 0;
    row_walk w = {frames, 0, rows};
    while (colm **head = next_row(&w)) {
        for (const colm *node = *head; node; node = node->next) ++count;
        if (count > limit) break;
    }
    return count;
}

// transpose_by_sorting by pushes, one node at a time.
static void transpose_by_pushes(sparse_frame *from, sparse_frame *to, std::int32_t rows)
{
    index_frames(&source_table, from);
    index_frames(&target_table, to);
    for (std::int32_t row = rows; row >= 1; --row) {
        for (colm *node = *indexed_head(&source_table, row); node;) {
            colm *next = node->next;
            colm **head = indexed_head(&target_table, node->coord);
            node->coord = row;
            node->next = *head;
            *head = node;
            node = next;
        }
    }
}

void trans_sparse(sparse_frame **frames, std::int32_t rows, std::int32_t cols)
{
    sparse_frame *flipped = nullptr;
    sparse_init(&flipped, cols);
    flipped->frame_mode = (*frames)->frame_mode;
    const bool large = count_entries(*frames, rows, sorted_from) > sorted_from;
    if (!large || !transpose_by_sorting(*frames, flipped, rows, cols))
        transpose_by_pushes(*frames, flipped, rows);
    while (sparse_frame *frame = *frames) {
        *frames = frame->frame_next;
        give_frame(frame);
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
