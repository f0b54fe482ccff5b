// matrix/sparse_product.cpp -- products in which an operand is sparse.
//
// Plain words and doubles go by flat arrays (matrix/flat_sparse.h). Else a product of two sparse matrices
// collects one row of the result at a time, by column, in an array of sums. Where the columns are too many
// for that, or the array is in use by a product that waits, the entries of a row are merged with the rows of
// the transpose.
#include "matrix/sparse_product.h"
#include <algorithm>
#include <cstdlib>
#include "matrix/entry_product.h"
#include "matrix/flat_sparse.h"
#include "matrix/kept_room.h"
#include "matrix/sparse_ops.h"
#include "matrix/sparse_order.h"
#include "matrix/sparse_tests.h"
#include "session/report.h"

namespace kelmar {

// Sparse products -----------------------------------------------------------------------------------------

static constexpr std::int32_t most_counted = 1 << 24;  // columns for which an array of sums is made

// The row of the result that is being collected: sums by column, and the columns that have one.
struct row_sums {
    quolynode **sum;
    std::int32_t *touched;
    std::int32_t room, count;
    std::int32_t busy;  // a product that waits uses it
};

// default empty; mult_sparses; reset: unwind
static row_sums sums;

static bool get_sums(std::int32_t cols)
{
    if (cols <= sums.room) return true;
    std::free(sums.sum);
    std::free(sums.touched);
    sums.room = 0;
    sums.sum = static_cast<quolynode **>(std::calloc(static_cast<std::size_t>(cols), sizeof(quolynode *)));
    sums.touched = static_cast<std::int32_t *>(
        std::malloc(static_cast<std::size_t>(cols) * sizeof(std::int32_t)));
    if (!sums.sum || !sums.touched) return false;
    sums.room = cols;
    return true;
}

static void forget_sums()
{
    for (std::int32_t k = 0; k < sums.count; ++k) free_quoly(&sums.sum[sums.touched[k]]);
    sums.count = 0;
    sums.busy = 0;
}

// Take the products of an entry with a row of the other operand in.
static void collect(const quolynode *x, const colm *row)
{
    for (; row; row = row->next) {
        quolynode **sum = &sums.sum[row->coord - 1];
        if (!*sum) sums.touched[sums.count++] = row->coord - 1;
        add_product(x, row->val, sum);
    }
}

// Make a row of what was collected.
static void deliver(colm **tail)
{
    std::sort(sums.touched, sums.touched + sums.count);
    for (std::int32_t k = 0; k < sums.count; ++k) {
        const std::int32_t col = sums.touched[k];
        quolynode *value = sums.sum[col];
        sums.sum[col] = nullptr;
        if (quoly_iszero(value)) {
            free_quoly(&value);
            continue;
        }
        *tail = newcolm(col + 1, value);
        tail = &(*tail)->next;
    }
    sums.count = 0;
}

// default empty; the heads of the rows of an operand; index_rows; reset: never
static kept_room row_heads;

// The heads of the rows of b, by number, until the next call.
static const colm **index_rows(const sparse_frame *b, std::int32_t rows)
{
    auto **heads = static_cast<const colm **>(
        get_room(&row_heads, static_cast<std::size_t>(rows) * sizeof(colm *)));
    row_walk w = {const_cast<sparse_frame *>(b), 0, rows};
    if (!heads) return nullptr;
    while (colm **head = next_row(&w)) heads[w.row - 1] = *head;
    return heads;
}

// Products of numbers alone do not poll, so their rows may be indexed. Others find a row by its frame.
static void counted_product(const sparse_frame *a, const sparse_frame *b, sparse_frame *out,
                            std::int32_t rows, std::int32_t inner)
{
    const bool numbers = sparse_allnumbs(a, rows) && sparse_allnumbs(b, inner);
    row_walk left = {const_cast<sparse_frame *>(a), 0, rows};
    row_walk target = {out, 0, rows};
    const colm **heads = numbers ? index_rows(b, inner) : nullptr;
    sums.busy = 1;
    while (colm **head = next_row(&left)) {
        colm **tail = next_row(&target);
        for (const colm *node = *head; node; node = node->next) {
            const colm *row = heads ? heads[node->coord - 1]
                                    : *head_of_row(const_cast<sparse_frame *>(b), node->coord);
            if (!heads) poll_interrupt();
            collect(node->val, row);
        }
        deliver(tail);
    }
    sums.busy = 0;
}

void mult_sparses(const sparse_frame *a, const sparse_frame *b, sparse_frame *out, std::int32_t rows,
                  std::int32_t inner, std::int32_t cols)
{
    if (cols <= most_counted && flat_sparse_product(a, b, out, rows, inner, cols)) return;
    if (cols <= most_counted && !sums.busy && get_sums(cols)) {
        counted_product(a, b, out, rows, inner);
    } else {
        mult_by_rows(a, b, out, rows, inner, cols);
    }
}

// *sum = the dot product of two rows; null when no columns meet.
static void merge_product(const colm *x, const colm *y, quolynode **sum)
{
    while (x && y) {
        if (x->coord == y->coord) {
            add_product(x->val, y->val, sum);
            x = x->next;
            y = y->next;
        } else if (x->coord < y->coord) {
            x = x->next;
        } else {
            y = y->next;
        }
    }
}

static void multiply_by_view(const sparse_frame *a, sparse_frame *view, sparse_frame *out, std::int32_t rows,
                             std::int32_t cols)
{
    row_walk left = {const_cast<sparse_frame *>(a), 0, rows};
    row_walk target = {out, 0, rows};
    while (colm **head = next_row(&left)) {
        colm **tail = next_row(&target);
        if (!*head) continue;
        row_walk right = {view, 0, cols};
        while (colm **other = next_row(&right)) {
            quolynode *sum = nullptr;
            merge_product(*head, *other, &sum);
            if (sum && quoly_iszero(sum)) free_quoly(&sum);
            if (!sum) continue;
            *tail = newcolm(right.row, sum);
            tail = &(*tail)->next;
        }
    }
}

// default null; the view that a product by merges has made, and its rows; mult_by_rows; reset: unwind
static sparse_frame *open_view = nullptr;
static std::int32_t open_rows = 0;

static void close_view()
{
    free_sparse_frame(&open_view, open_rows);
}

void mult_by_rows(const sparse_frame *a, const sparse_frame *b, sparse_frame *out, std::int32_t rows,
                  std::int32_t inner, std::int32_t cols)
{
    sparse_frame *view = nullptr;
    const bool first = !open_view;
    flip_sparse(b, &view, inner, cols);
    if (first) {
        open_view = view;
        open_rows = cols;
    }
    multiply_by_view(a, view, out, rows, cols);
    if (first) {
        close_view();
    } else {
        free_sparse_frame(&view, cols);
    }
}

void sparse_products_on_unwind()
{
    forget_sums();
    close_view();
}

// Mixed products --------------------------------------------------------------------------------------------

static void fill_zeros(quolynode **out, std::int64_t count)
{
    for (std::int64_t k = 0; k < count; ++k) {
        if (!out[k]) quoly_set(0, &out[k]);
    }
}

// Add x times a row of b to a row of the product. A row's entries stand a stride apart.
static void add_row_multiple(const quolynode *x, quolynode *const *b, std::int32_t stride_b, quolynode **out,
                             std::int32_t stride_out, std::int32_t cols)
{
    for (std::int32_t col = 0; col < cols; ++col) {
        const quolynode *y = b[std::int64_t{col} * stride_b];
        if (!is_zero_entry(y)) add_product(x, y, &out[std::int64_t{col} * stride_out]);
    }
}

// Add a column times y to a column of the product.
static void add_column_multiple(quolynode *const *column, const quolynode *y, quolynode **out,
                                std::int32_t rows)
{
    for (std::int32_t row = 0; row < rows; ++row) {
        if (!is_zero_entry(column[row])) add_product(column[row], y, &out[row]);
    }
}

void mult_sparse_norm(const sparse_frame *a, quolynode *const *b, quolynode **out, std::int32_t rows,
                      std::int32_t inner, std::int32_t cols)
{
    row_walk w = {const_cast<sparse_frame *>(a), 0, rows};
    while (colm **head = next_row(&w)) {
        poll_interrupt();
        for (const colm *node = *head; node; node = node->next) {
            add_row_multiple(node->val, b + (node->coord - 1), inner, out + (w.row - 1), rows, cols);
        }
    }
    fill_zeros(out, std::int64_t{rows} * cols);
}

void mult_norm_sparse(quolynode *const *a, const sparse_frame *b, quolynode **out, std::int32_t rows,
                      std::int32_t inner, std::int32_t cols)
{
    row_walk w = {const_cast<sparse_frame *>(b), 0, inner};
    while (colm **head = next_row(&w)) {
        poll_interrupt();
        quolynode *const *column = a + std::int64_t{w.row - 1} * rows;
        for (const colm *node = *head; node; node = node->next) {
            add_column_multiple(column, node->val, out + std::int64_t{node->coord - 1} * rows, rows);
        }
    }
    fill_zeros(out, std::int64_t{rows} * cols);
}

void mult_cons_sparse(sparse_frame *frames, std::int32_t rows, const quolynode *q)
{
    row_walk w = {frames, 0, rows};
    while (colm **head = next_row(&w)) {
        for (colm **link = head; *link;) {
            fast_quoly_mult(&(*link)->val, q);
            if (quoly_iszero((*link)->val)) {
                free_colm(link);
            } else {
                link = &(*link)->next;
            }
        }
    }
}

}  // namespace kelmar
