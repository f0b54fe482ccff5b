// session/arr_join.cpp -- arrays put together, side by side or end to end.
#include "session/arr_join.h"
#include <cstring>
#include "quoly/owned.h"
#include "session/errors.h"
#include "session/report.h"

namespace kelmar {

// *v = a dense array of that shape; the entries of both are moved, or copied, one array behind the other.
static void join_columns(arr_value *v, arr_value *r, std::int32_t rows, std::int32_t cols)
{
    arr_value whole;
    if (!make_owned_value(v) || !make_owned_value(r)) return;
    open_value(&whole);
    if (begin_dense(&whole, rows, cols)) {
        arr_value *const parts[] = {v, r};
        for (arr_value *part : parts) {
            const std::int32_t count = entry_count(part);
            std::memcpy(whole.entries + whole.filled, part->entries,
                        static_cast<std::size_t>(count) * sizeof *part->entries);
            whole.filled += count;
            part->filled = 0;
        }
        whole.onedim = cols == 1;
        move_value(&whole, v);
    }
    close_value(&whole);
}

static void concatenate(arr_value *v, arr_value *r)
{
    if (v->is_sparse || r->is_sparse) {
        error(err_sparse_refused, "_");
    } else if (v->cols == 1 && r->cols == 1) {
        join_columns(v, r, v->rows + r->rows, 1);
    } else if (v->rows == r->rows) {
        join_columns(v, r, v->rows, v->cols + r->cols);
    } else {
        error(v->cols == 1 || r->cols == 1 ? err_join_shapes : err_join_sizes, "_");
    }
}

// A scalar as an array of one entry.
static int as_single(arr_value *v)
{
    quolynode *n = v->n;
    v->n = nullptr;
    own(&n);
    const int ok = begin_dense(v, 1, 1);
    disown();
    if (ok) {
        put_entry(v, &n);
    } else {
        free_quoly(&n);
    }
    return ok;
}

void join_values(arr_value *v, arr_value *r)
{
    if (!is_array(v) && !is_array(r)) {
        error(err_join_scalars, "_");
        return;
    }
    arr_value *const array = is_array(v) ? v : r;
    if (array->is_sparse) {
        error(err_sparse_refused, "_");
        return;
    }
    if ((!is_array(v) && !as_single(v)) || (!is_array(r) && !as_single(r))) return;
    concatenate(v, r);
}

}  // namespace kelmar
