// matrix/sparse.cpp -- sparse frames, and updates of single entries.
//
// Whoever keeps the address of an entry while user code may run keeps an entry_ref beside it, and looks the
// entry up again when array_moves has changed.
#include "matrix/sparse.h"
#include "numbers/heap.h"
#include "matrix/pins.h"
#include "matrix/store.h"
#include "numbers/dispatch.h"
#include "quoly/add.h"
#include "session/report.h"

namespace kelmar {

// default null; the zero that absent entries show; made at first use; reset: never
quolynode *quol_num_0 = nullptr;

// Records -----------------------------------------------------------------------------------------------

void give_colm(colm *node)
{
    ++array_moves;
    if (values_pinned) {
        retire_node(node);
        return;
    }
#ifdef KELMAR_MALLOC_RECORDS
    free_record(colmstash, node);
#else
    node->next = colm_garb;
    colm_garb = node;
#endif
}

void newsparse(sparse_frame **frame)
{
    sparse_frame *fresh = spargarb;
    if (fresh) {
        spargarb = fresh->frame_next;
    } else {
        fresh = static_cast<sparse_frame *>(zeroed_block(sizeof(sparse_frame)));
    }
    fresh->frame_mode = modularmode;
    fresh->frame_seen = 0;
    fresh->frame_next = nullptr;
    *frame = fresh;
}

void give_frame(sparse_frame *frame)
{
    ++array_moves;
    if (values_pinned) {
        retire_frame(frame);
        return;
    }
    frame->frame_next = spargarb;
    spargarb = frame;
}

// Places ------------------------------------------------------------------------------------------------

// Row and column of a position, both from 0.
struct position {
    std::int32_t row, col;
};

static inline position position_of(const array *a, std::int32_t i, std::int32_t j, bool two)
{
    return two ? position{i, j} : position{i % a->arr_rows, i / a->arr_rows};
}

static int bad_index(const char *name)
{
    error(err_bad_index, name);
    return 0;
}

static int sparse_place(array *a, position at, const char *name, entry_place *place)
{
    if (at.col >= a->arr_cols) return bad_index(name);
    place->row = head_of_row(a->arr_sparse, at.row + 1);
    place->col = at.col + 1;
    colm *node = *column_link(place->row, place->col);
    if (node && node->coord == place->col) place->slot = &node->val;
    return 1;
}

int new_array_quoly_ptr(array *a, std::int32_t i, std::int32_t j, bool two, std::int32_t base,
                        const char *name, entry_place *place)
{
    *place = {};
    // on purpose: 64 bits, so that no index wraps into the array
    const std::int64_t row = std::int64_t{i} - base;
    const std::int64_t col = two ? std::int64_t{j} - base : 0;
    if (row < 0 || col < 0 || (two && row >= a->arr_rows)) return bad_index(name);
    if (a->arr_sparse) {
        const position at = position_of(a, static_cast<std::int32_t>(row), static_cast<std::int32_t>(col),
                                        two);
        return sparse_place(a, at, name, place);
    }
    const std::int64_t k = row + col * a->arr_rows;
    if (k >= a->arr_size || a->arr_last < 0) return bad_index(name);
    place->slot = store_slot(static_cast<std::int32_t>(a->arr_first + k));
    return 1;
}

int find_entry(const entry_ref *ref, entry_place *place)
{
    array *a = array_of_stamp(ref->array_time);
    *place = {};
    if (!a || ref->position >= a->arr_size) return 0;
    if (!a->arr_sparse) {
        place->slot = store_slot(static_cast<std::int32_t>(a->arr_first + ref->position));
        return 1;
    }
    const std::int64_t rows = a->arr_rows;
    return sparse_place(
        a, {static_cast<std::int32_t>(ref->position % rows), static_cast<std::int32_t>(ref->position / rows)},
        a->arr_name.text, place);
}

const quolynode *spar_retrieve(sparse_frame *frame, std::int32_t row, std::int32_t col)
{
    const colm *node = *column_link(head_of_row(frame, row), col);
    if (node && node->coord == col) return node->val;
    quoly_set(0, &quol_num_0);
    return quol_num_0;
}

quolynode **get_sparse(std::int32_t i, std::int32_t col, colm ***slot, sparse_frame **frame)
{
    colm *node = *column_link(*slot, col);
    if (i % frame_rows != 0) {
        ++*slot;
    } else if ((*frame)->frame_next) {
        *frame = (*frame)->frame_next;
        *slot = (*frame)->row_head;
    }
    return node && node->coord == col ? &node->val : nullptr;
}

colm **get_sparse_colm(sparse_frame *frame, std::int32_t row, std::int32_t col)
{
    return column_link(&frame->row_head[(row - 1) % frame_rows], col);
}

void sparse_qq_set(std::int32_t row, sparse_frame **frame, quolynode ***q)
{
    colm *node = *get_sparse_colm(*frame, row, row);
    *q = nullptr;
    if (!node) {
        kelmar_error("bad t in sparse_qq_set, 1.", 1);
        return;
    }
    if (node->coord != row) {
        kelmar_error("bad t in sparse_qq_set, 2.", 1);
        return;
    }
    *q = &node->val;
    if (row % frame_rows == 0) *frame = (*frame)->frame_next;
}

// Updates -----------------------------------------------------------------------------------------------

static inline colm **link_of(const array *a, std::int32_t i, std::int32_t j, bool two, std::int32_t *col)
{
    const position at = position_of(a, i, j, two);
    *col = at.col + 1;
    return column_link(head_of_row(a->arr_sparse, at.row + 1), *col);
}

static colm *link_node(colm **link, std::int32_t col, quolynode *val)
{
    colm *node = newcolm(col, val);
    node->next = *link;
    *link = node;
    return node;
}

void sparse_insert(std::int32_t i, std::int32_t j, array *a, bool two, const quolynode *q)
{
    std::int32_t col;
    quolynode *copy = nullptr;
    if (quoly_iszero(q)) return;
    quoly_assign(q, &copy);
    colm **link = link_of(a, i, j, two, &col);
    link_node(link, col, copy);
}

void isparse_insert(std::int32_t i, std::int32_t j, std::int32_t value, array *a, bool two, bool replace)
{
    std::int32_t col;
    quolynode *fresh = nullptr;
    colm **link = link_of(a, i, j, two, &col);
    colm *node = *link;
    const bool there = node && node->coord == col;
    if (value == 0) {
        if (there && replace) free_colm(link);
        return;
    }
    if (there && replace) {
        quoly_set(value, &node->val);
        return;
    }
    quoly_set(value, &fresh);
    if (!there) {
        link_node(link, col, fresh);
        return;
    }
    best_quoly_add(&node->val, &fresh);
    if (quoly_iszero(node->val)) free_colm(link);
}

quolynode **sparse_zero_set(colm **head, std::int32_t col)
{
    quolynode *zero = nullptr;
    quoly_set(0, &zero);
    return &link_node(column_link(head, col), col, zero)->val;
}

quolynode **sparse_set(std::int32_t i, std::int32_t j, array *a, bool two)
{
    const position at = position_of(a, i, j, two);
    return sparse_zero_set(head_of_row(a->arr_sparse, at.row + 1), at.col + 1);
}

void sparse_delete(std::int32_t i, std::int32_t j, array *a, bool two)
{
    std::int32_t col;
    free_colm(link_of(a, i, j, two, &col));
}

void free_colm(colm **link)
{
    colm *node = *link;
    *link = node->next;
    quolynode *value = node->val;  // on purpose: a walk that waits may still read the field
    retire_value(&value);
    give_colm(node);
}

void purge_sparse(colm **head, std::int32_t col)
{
    colm **link = column_link(head, col);
    if (*link && (*link)->coord == col && quoly_iszero((*link)->val)) free_colm(link);
}

}  // namespace kelmar
