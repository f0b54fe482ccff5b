// session/arr_value.cpp -- array values in flight.
#include "session/arr_value.h"
#include <cstring>
#include <utility>
#include "matrix/sparse_ops.h"
#include "matrix/store.h"
#include "matrix/work_arrays.h"
#include "session/arr_system.h"
#include "session/report.h"

namespace kelmar {

// Work arrays -------------------------------------------------------------------------------------------

static int take_work(arr_value *v)
{
    if (v->work) return 1;
    v->entries = new_worknode(&v->work, "[");
    return v->entries != nullptr;
}

// Give the work array back. It need not be the one taken last: then it is exchanged with that one.
static void drop_work(arr_value *v)
{
    const std::int32_t top = first_available - 1;
    if (!v->work) return;
    if (v->work != top) {
        arr_value *other = newest_value;
        while (other && other->work != top) other = other->outer;
        if (other) {
            swap_work(v->work, top);
            other->work = v->work;
        }
    }
    v->work = 0;
    v->entries = nullptr;
    free_work();
}

// Announced values ----------------------------------------------------------------------------------------

void open_value(arr_value *v)
{
    *v = {};
    v->outer = newest_value;
    newest_value = v;
}

void empty_value(arr_value *v)
{
    free_quoly(&v->n);
    if (v->owned && v->entries) {
        for (std::int32_t k = 0; k < v->filled; ++k) free_quoly(&v->entries[k]);
    }
    if (v->sparse && v->owned) free_sparse(&v->sparse, v->rows, 1);
    drop_work(v);
    arr_value *const outer = v->outer;
    *v = {};
    v->outer = outer;
}

void close_value(arr_value *v)
{
    empty_value(v);
    newest_value = v->outer;
}

void release_values(arr_value *mark)
{
    while (newest_value != mark) close_value(newest_value);
}

void move_value(arr_value *from, arr_value *to)
{
    empty_value(to);
    arr_value *const from_outer = from->outer;
    arr_value *const to_outer = to->outer;
    *to = *from;
    to->outer = to_outer;
    *from = {};
    from->outer = from_outer;
}

// References ----------------------------------------------------------------------------------------------

void refer_to_array(arr_value *v, const array *a)
{
    refer_to_section(v, a, 0, 0, a->arr_rows, a->arr_cols);
    v->onedim = a->arr_onedim;
}

void refer_to_section(arr_value *v, const array *a, std::int32_t row0, std::int32_t col0, std::int32_t rows,
                      std::int32_t cols)
{
    empty_value(v);
    v->source = a;
    v->stamp = a->arr_time;
    v->row0 = row0;
    v->col0 = col0;
    v->rows = rows;
    v->cols = cols;
    v->is_sparse = a->arr_sparse != nullptr;
}

// The array that v stands for is still there, in a shape that holds the section.
static bool source_is_there(const arr_value *v)
{
    const array *a = v->source;  // rows: a parameter whose array has gone has none
    return a->arr_time == v->stamp && (a->arr_sparse != nullptr) == (v->is_sparse != 0) &&
           std::int64_t{v->row0} + v->rows <= a->arr_rows && std::int64_t{v->col0} + v->cols <= a->arr_cols;
}

int gather(arr_value *v)
{
    if (v->owned) return 1;
    if (!take_work(v)) return 0;
    if (!source_is_there(v)) {
        error(err_no_such_array, "[");
        std::memset(v->entries, 0, static_cast<std::size_t>(entry_count(v)) * sizeof *v->entries);
        return 1;
    }
    const array *a = v->source;
    for (std::int32_t col = 0; col < v->cols; ++col) {
        const std::int32_t k = v->row0 + (v->col0 + col) * a->arr_rows;
        quolynode **target = v->entries + col * v->rows;
        if (a == &syst) {
            std::memcpy(target, syst_entries + k, static_cast<std::size_t>(v->rows) * sizeof *target);
        } else {
            borrow_slots(static_cast<std::int32_t>(a->arr_first) + k, v->rows, target);
        }
    }
    return 1;
}

sparse_frame *chain_of(arr_value *v)
{
    if (v->owned) return v->sparse;
    if (source_is_there(v)) return v->source->arr_sparse;
    error(err_no_such_array, "[");
    begin_sparse(v, v->rows, v->cols);
    return v->sparse;
}

// Owned values --------------------------------------------------------------------------------------------

int begin_dense(arr_value *v, std::int32_t rows, std::int32_t cols)
{
    empty_value(v);
    if (oversize(rows, cols)) {
        error(err_array_too_big, "[");
        return 0;
    }
    if (!take_work(v)) return 0;
    v->rows = rows;
    v->cols = cols;
    v->owned = 1;
    return 1;
}

void begin_sparse(arr_value *v, std::int32_t rows, std::int32_t cols)
{
    empty_value(v);
    sparse_init(&v->sparse, rows);
    v->rows = rows;
    v->cols = cols;
    v->owned = 1;
    v->is_sparse = 1;
}

static void own_chain(arr_value *v)
{
    sparse_frame *copy = nullptr;
    sparse_frame *const from = chain_of(v);
    if (v->owned) return;
    copy_sparse(from, &copy, v->rows, 0);
    v->sparse = copy;
    v->owned = 1;
    v->source = nullptr;
}

int make_owned_value(arr_value *v)
{
    if (v->owned || !is_array(v)) return 1;
    if (v->is_sparse) {
        own_chain(v);
        return 1;
    }
    if (!gather(v)) return 0;
    const std::int32_t count = entry_count(v);
    for (std::int32_t k = 0; k < count; ++k) {
        const quolynode *entry = v->entries[k];
        v->entries[k] = nullptr;
        if (entry) quoly_assign(entry, &v->entries[k]);
    }
    v->filled = count;
    v->owned = 1;
    v->source = nullptr;
    return 1;
}

int densify(arr_value *v)
{
    arr_value dense;
    if (!v->is_sparse) return make_owned_value(v);
    open_value(&dense);
    if (!begin_dense(&dense, v->rows, v->cols)) {
        close_value(&dense);
        return 0;
    }
    std::memset(dense.entries, 0, static_cast<std::size_t>(entry_count(&dense)) * sizeof *dense.entries);
    dense.filled = entry_count(&dense);
    sparse_frame *chain = chain_of(v);
    add_one_sparse(dense.entries, v->rows, 0, &chain, true);
    for (std::int32_t k = 0; k < dense.filled; ++k) {
        if (!dense.entries[k]) quoly_set(0, &dense.entries[k]);
    }
    move_value(&dense, v);
    close_value(&dense);
    return 1;
}

}  // namespace kelmar
