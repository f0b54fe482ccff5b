// matrix/sparse_ops.cpp -- operations on whole sparse matrices.
//
// Every routine is one walk over the rows. Results are built behind a tail pointer, so that no row is
// searched for its end.
#include "matrix/sparse_ops.h"
#include "numbers/compare.h"
#include "numbers/dispatch.h"
#include "quoly/add.h"
#include "matrix/pins.h"
#include "session/report.h"

namespace kelmar {

// Chains ------------------------------------------------------------------------------------------------

void sparse_init(sparse_frame **frames, std::int32_t rows)
{
    sparse_frame **link = frames;
    *link = nullptr;
    for (; rows > 0; rows -= frame_rows) {
        newsparse(link);
        const std::int32_t used = rows < frame_rows ? rows : frame_rows;
        for (std::int32_t k = 0; k < used; ++k) (*link)->row_head[k] = nullptr;
        link = &(*link)->frame_next;
    }
}

static void free_row(colm **head, bool values)
{
    for (colm *node = *head; node;) {
        colm *next = node->next;
        quolynode *value = node->val;  // on purpose: a walk that waits may still read the field
        if (values) retire_value(&value);
        give_colm(node);
        node = next;
    }
    *head = nullptr;
}

static void give_frames(sparse_frame **frames)
{
    while (*frames) {
        sparse_frame *frame = *frames;
        *frames = frame->frame_next;
        give_frame(frame);
    }
}

static void free_rows(sparse_frame *frames, std::int32_t rows, bool values)
{
    if (!frames) return;
    row_walk w = {frames, 0, rows};
    while (colm **head = next_row(&w)) free_row(head, values);
}

void free_sparse(sparse_frame **frames, std::int32_t rows, int owned)
{
    if (owned) {
        free_rows(*frames, rows, true);
        give_frames(frames);
    }
    *frames = nullptr;
}

void free_sparse_data(sparse_frame *frames, std::int32_t rows)
{
    free_rows(frames, rows, true);
}

void free_sparse_frame(sparse_frame **frames, std::int32_t rows)
{
    free_rows(*frames, rows, false);
    give_frames(frames);
}

void put_back_sparse(sparse_frame *from, sparse_frame *to, std::int32_t rows)
{
    if (from == to) return;
    row_walk source = {from, 0, rows};
    row_walk target = {to, 0, rows};
    while (colm **head = next_row(&source)) {
        colm **goal = next_row(&target);
        free_row(goal, true);
        *goal = *head;
        *head = nullptr;
    }
}

typedef quolynode *(*value_copier)(const quolynode *);
typedef colm *(*node_copier)(const colm *);

static quolynode *copy_of(const quolynode *q)
{
    quolynode *copy = nullptr;
    quoly_assign(q, &copy);
    return copy;
}

static quolynode *negative_of(const quolynode *q)
{
    quolynode *copy = nullptr;
    quoly_makeneg(q, &copy);
    return copy;
}

static quolynode *one_var_copy_of(const quolynode *q)
{
    if (q->is_num || q->den) return copy_of(q);
    quolynode *copy = nullptr;
    polynode *top = nullptr;
    one_var_poly_assign(q->top, &top);
    poly_to_quoly(&top, &copy);
    return copy;
}

template <value_copier copier> static colm *node_with(const colm *node)
{
    return newcolm(node->coord, copier(node->val));
}

template <node_copier copier>
static void copy_rows(const sparse_frame *from, sparse_frame **to, std::int32_t rows)
{
    sparse_init(to, rows);
    row_walk source = {const_cast<sparse_frame *>(from), 0, rows};
    row_walk target = {*to, 0, rows};
    while (colm **head = next_row(&source)) {
        colm **tail = next_row(&target);
        for (const colm *node = *head; node; node = node->next) {
            *tail = copier(node);
            tail = &(*tail)->next;
        }
    }
}

void copy_sparse(const sparse_frame *from, sparse_frame **to, std::int32_t rows, int neg)
{
    if (neg) {
        copy_rows<node_with<negative_of>>(from, to, rows);
    } else {
        copy_rows<node_with<copy_of>>(from, to, rows);
    }
}

void one_var_copy_sparse(const sparse_frame *from, sparse_frame **to, std::int32_t rows)
{
    copy_rows<node_with<one_var_copy_of>>(from, to, rows);
}

// Integer data --------------------------------------------------------------------------------------------

// The machine integer of an entry: the word, or the first digit.
static std::intptr_t data_word(const quolynode *q)
{
    const number *n = q->num;
    if (flotemode) return static_cast<std::intptr_t>(n->real);
    return lintmode ? n->word : n->head->digit;
}

static colm *data_node_of(const colm *node)
{
    colm *copy = newcolm(node->coord, nullptr);
    copy->word = data_word(node->val);
    return copy;
}

void special_copy_sparse(const sparse_frame *from, sparse_frame **to, std::int32_t rows)
{
    copy_rows<data_node_of>(from, to, rows);
}

void move_data_into_quoly(sparse_frame *frames, std::int32_t rows)
{
    row_walk w = {frames, 0, rows};
    while (colm **head = next_row(&w)) {
        for (colm *node = *head; node; node = node->next) {
            const std::intptr_t word = data_word(node->val);
            free_quoly(&node->val);
            node->word = word;
        }
    }
}

void move_data_outof_quoly(sparse_frame *frames, std::int32_t rows)
{
    row_walk w = {frames, 0, rows};
    while (colm **head = next_row(&w)) {
        for (colm **link = head; *link;) {
            colm *node = *link;
            const std::int32_t value = static_cast<std::int32_t>(node->word);
            node->val = nullptr;
            if (value != 0) {
                quoly_set(value, &node->val);
                link = &node->next;
                continue;
            }
            *link = node->next;
            give_colm(node);
            kelmar_error("0 value in move_data_outof_quoly.", 0);
        }
    }
}

// Filling -----------------------------------------------------------------------------------------------

// A node for the value in *slot, which is taken or copied; null for zero, which is released when it is taken.
static colm *node_of(std::int32_t col, quolynode **slot, bool steal)
{
    if (quoly_iszero(*slot)) {
        if (steal) free_quoly(slot);
        return nullptr;
    }
    colm *node = newcolm(col, steal ? *slot : copy_of(*slot));
    if (steal) *slot = nullptr;
    return node;
}

void standard_to_sparse(array *a, quolynode **data, std::int32_t cols, bool steal)
{
    free_sparse_data(a->arr_sparse, a->arr_rows);
    row_walk w = {a->arr_sparse, 0, a->arr_rows};
    while (colm **tail = next_row(&w)) {
        quolynode **slot = data + (w.row - 1);
        for (std::int32_t col = 1; col <= cols; ++col, slot += a->arr_rows) {
            colm *node = *slot ? node_of(col, slot, steal) : nullptr;
            if (!node) continue;
            *tail = node;
            tail = &node->next;
        }
    }
}

void sparse_set_scalar(array *a, std::int32_t cols, const quolynode *q)
{
    free_sparse_data(a->arr_sparse, a->arr_rows);
    if (quoly_iszero(q)) return;
    row_walk w = {a->arr_sparse, 0, a->arr_rows};
    while (colm **tail = next_row(&w)) {
        poll_interrupt();
        for (std::int32_t col = 1; col <= cols; ++col) {
            *tail = newcolm(col, copy_of(q));
            tail = &(*tail)->next;
        }
    }
}

void spar_identi(sparse_frame **frames, std::int32_t n, int owned)
{
    free_sparse(frames, n, owned);
    sparse_init(frames, n);
    row_walk w = {*frames, 0, n};
    while (colm **head = next_row(&w)) {
        quolynode *one = nullptr;
        quoly_set(1, &one);
        *head = newcolm(w.row, one);
    }
}

// Arithmetic --------------------------------------------------------------------------------------------

void sparse_makeneg(sparse_frame **frames, std::int32_t rows, int *owned)
{
    if (!*owned) {
        sparse_frame *copy = nullptr;
        copy_sparse(*frames, &copy, rows, 1);
        *frames = copy;
        *owned = 1;
        return;
    }
    row_walk w = {*frames, 0, rows};
    while (colm **head = next_row(&w)) {
        for (colm *node = *head; node; node = node->next) quoly_inplace(&node->val);
    }
}

// What a merge takes from one operand: nodes that it may use, or values to copy.
struct merge_side {
    colm *node;
    int owned;
    int negate;
};

// A node for the next entry of the side, which goes on.
static colm *take_node(merge_side *s)
{
    colm *node = s->node;
    s->node = node->next;
    if (!s->owned) return newcolm(node->coord, s->negate ? negative_of(node->val) : copy_of(node->val));
    if (s->negate) quoly_inplace(&node->val);
    node->next = nullptr;
    return node;
}

// A node for the sum of the next entries of both sides, or null when they cancel.
static colm *merge_nodes(merge_side *a, merge_side *b)
{
    const quolynode *right = b->node->val;
    colm *sum = take_node(a);
    if (b->negate) {
        better_quoly_sub(&sum->val, right);
    } else {
        better_quoly_add(&sum->val, right);
    }
    colm *gone = b->node;
    b->node = gone->next;
    if (b->owned) {
        free_quoly(&gone->val);
        give_colm(gone);
    }
    if (!quoly_iszero(sum->val)) return sum;
    free_quoly(&sum->val);
    give_colm(sum);
    return nullptr;
}

static void merge_rows(merge_side a, merge_side b, colm **tail)
{
    while (a.node || b.node) {
        const bool left = a.node && (!b.node || a.node->coord <= b.node->coord);
        const bool right = b.node && (!a.node || b.node->coord <= a.node->coord);
        colm *node = left && right ? merge_nodes(&a, &b) : take_node(left ? &a : &b);
        if (!node) continue;
        *tail = node;
        tail = &node->next;
    }
    *tail = nullptr;
}

void add_sparses(sparse_frame **a, sparse_frame **b, int owna, int ownb, std::int32_t rows, bool plus)
{
    sparse_frame *sum = nullptr;
    sparse_init(&sum, rows);
    row_walk left = {*a, 0, rows};
    row_walk right = {*b, 0, rows};
    row_walk target = {sum, 0, rows};
    while (colm **head = next_row(&left)) {
        colm **other = next_row(&right);
        colm *const mine = *head;
        colm *const theirs = *other;
        if (owna) *head = nullptr;
        if (ownb) *other = nullptr;
        merge_rows({mine, owna, 0}, {theirs, ownb, !plus}, next_row(&target));
    }
    free_sparse(a, rows, owna);
    free_sparse(b, rows, ownb);
    *a = sum;
}

void add_one_sparse(quolynode **dense, std::int32_t rows, int owned, sparse_frame **frames, bool plus)
{
    row_walk w = {*frames, 0, rows};
    while (colm **head = next_row(&w)) {
        for (const colm *node = *head; node; node = node->next) {
            quolynode **slot = dense + (w.row - 1) + std::int64_t{node->coord - 1} * rows;
            if (!*slot) quoly_set(0, slot);
            if (plus) {
                better_quoly_add(slot, node->val);
            } else {
                better_quoly_sub(slot, node->val);
            }
        }
    }
    if (owned) free_sparse(frames, rows, 1);
}

void sparse_sum(const sparse_frame *frames, std::int32_t rows, quolynode **q)
{
    quoly_set(0, q);
    row_walk w = {const_cast<sparse_frame *>(frames), 0, rows};
    while (colm **head = next_row(&w)) {
        for (const colm *node = *head; node; node = node->next) better_quoly_add(q, node->val);
    }
}

void sparse_trace(const sparse_frame *frames, std::int32_t rows, quolynode **q)
{
    quoly_set(0, q);
    row_walk w = {const_cast<sparse_frame *>(frames), 0, rows};
    while (colm **head = next_row(&w)) {
        const colm *node = *column_link(head, w.row);
        if (node && node->coord == w.row) better_quoly_add(q, node->val);
    }
}

void add_to_diag(const quolynode *q, sparse_frame *frames, std::int32_t n)
{
    if (quoly_iszero(q)) return;
    row_walk w = {frames, 0, n};
    while (colm **head = next_row(&w)) {
        colm **link = column_link(head, w.row);
        if (!*link || (*link)->coord != w.row) {
            colm *node = newcolm(w.row, copy_of(q));
            node->next = *link;
            *link = node;
            continue;
        }
        better_quoly_add(&(*link)->val, q);
        if (quoly_iszero((*link)->val)) free_colm(link);
    }
}

void change_entries(sparse_frame *frames, std::int32_t rows, void (*f)(quolynode **val))
{
    row_walk w = {frames, 0, rows};
    while (colm **head = next_row(&w)) {
        for (colm **link = head; *link;) {
            f(&(*link)->val);
            if (!(*link)->val || quoly_iszero((*link)->val)) {
                free_colm(link);
            } else {
                link = &(*link)->next;
            }
        }
    }
}

// Dense tables ------------------------------------------------------------------------------------------

void identi(quolynode **table, std::int32_t n, std::int32_t stride)
{
    for (std::int32_t col = 0; col < n; ++col) {
        for (std::int32_t row = 0; row < n; ++row)
            quoly_set(row == col, &table[col * std::int64_t{stride} + row]);
    }
}

void uppertri(quolynode **table, std::int32_t n)
{
    identi(table, n, n);
}

}  // namespace kelmar
