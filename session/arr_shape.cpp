// session/arr_shape.cpp -- transposes, diagonals and sums of array values.
#include "session/arr_shape.h"
#include "matrix/sparse_ops.h"
#include "matrix/sparse_order.h"
#include "quoly/add.h"
#include "session/report.h"
#include "session/token.h"

namespace kelmar {

void transpose_value(arr_value *v)
{
    arr_value flipped;
    if (v->is_sparse) {
        if (!make_owned_value(v)) return;
        trans_sparse(&v->sparse, v->rows, v->cols);
        const std::int32_t rows = v->rows;
        v->rows = v->cols;
        v->cols = rows;
        v->onedim = v->cols == 1;
        return;
    }
    if (!make_owned_value(v)) return;
    open_value(&flipped);
    if (begin_dense(&flipped, v->cols, v->rows)) {
        for (std::int32_t row = 0; row < v->rows; ++row) {
            const std::int32_t target = row * v->cols;
            for (std::int32_t col = 0; col < v->cols; ++col) {
                flipped.entries[target + col] = v->entries[row + col * v->rows];
            }
        }
        flipped.filled = v->filled;
        flipped.onedim = flipped.cols == 1;
        v->filled = 0;
        move_value(&flipped, v);
    }
    close_value(&flipped);
}

// The entry in row and column k of the value, whose rows w walks when it is sparse; null for an unset one.
static const quolynode *diagonal_entry(const arr_value *v, row_walk *w, std::int32_t k)
{
    if (!v->is_sparse) return v->entries[k + k * v->rows];
    const colm *node = *column_link(next_row(w), k + 1);
    return node && node->coord == k + 1 ? node->val : nullptr;
}

void extract_diagonal(arr_value *v)
{
    arr_value diagonal;
    const std::int32_t count = v->rows < v->cols ? v->rows : v->cols;
    if (!v->is_sparse && !gather(v)) return;
    open_value(&diagonal);
    if (begin_dense(&diagonal, count, 1)) {
        row_walk w = {v->is_sparse ? chain_of(v) : nullptr, 0, count};
        for (std::int32_t k = 0; k < count; ++k) {
            quolynode *copy = nullptr;
            quoly_assign(entry_or_zero(diagonal_entry(v, &w, k)), &copy);
            put_entry(&diagonal, &copy);
        }
        diagonal.onedim = 1;
        move_value(&diagonal, v);
    }
    close_value(&diagonal);
}

void sum_value(arr_value *v, quolynode **q)
{
    if (v->is_sparse) {
        sparse_sum(chain_of(v), v->rows, q);
        return;
    }
    quoly_set(0, q);
    if (!gather(v)) return;
    for (std::int32_t k = 0; k < entry_count(v); ++k) {
        if (v->entries[k]) better_quoly_add(q, v->entries[k]);
    }
}

void trace_value(arr_value *v, quolynode **q)
{
    quoly_set(0, q);
    if (!is_square(v) || !is_array(v)) {
        error(err_trace_not_square, token.text);
    } else if (v->is_sparse) {
        sparse_trace(chain_of(v), v->rows, q);
    } else if (gather(v)) {
        for (std::int32_t k = 0; k < v->rows; ++k) {
            const quolynode *entry = v->entries[k + k * v->rows];
            if (entry) better_quoly_add(q, entry);
        }
    }
}

}  // namespace kelmar
