// session/arr_system.cpp -- the system array.
//
// The new value is made whole first, so that an expression may read [<] and become it.
#include "session/arr_system.h"
#include <cstring>
#include "matrix/array_rings.h"
#include "matrix/pins.h"
#include "matrix/product.h"
#include "matrix/sparse_ops.h"
#include "matrix/sparse_product.h"
#include "matrix/work_arrays.h"
#include "numbers/heap.h"
#include "session/arr_expr.h"
#include "session/evaluator.h"
#include "session/report.h"

namespace kelmar {

static void empty_system_array()
{
    if (syst.arr_sparse) {
        free_sparse(&syst.arr_sparse, syst.arr_rows, 1);
    } else {
        for (std::int32_t k = 0; k <= syst.arr_last; ++k) retire_value(&syst_entries[k]);
    }
    syst = {};
    syst.arr_last = -1;
    ++array_moves;
}

// A scalar becomes an array of one entry.
static int as_array(arr_value *v)
{
    if (is_array(v)) return make_owned_value(v);
    quolynode *n = v->n;
    v->n = nullptr;
    if (!n) quoly_set(0, &n);
    if (!begin_dense(v, 1, 1)) {
        free_quoly(&n);
        return 0;
    }
    put_entry(v, &n);
    return 1;
}

void fill_syst_array(arr_value *v)
{
    const std::int32_t onedim = v->onedim;
    if (!as_array(v)) return;
    if (!syst_entries)
        syst_entries = static_cast<quolynode **>(zeroed_block(array_entries * sizeof(quolynode *)));
    if (system_array_is_empty()) syst.arr_last = -1;
    empty_system_array();
    syst.arr_time = ++array_time;
    syst.arr_rows = v->rows;
    syst.arr_cols = v->cols;
    syst.arr_size = std::int64_t{v->rows} * v->cols;
    syst.arr_onedim = onedim || v->cols == 1;
    if (v->is_sparse) {
        syst.arr_sparse = v->sparse;
        v->sparse = nullptr;
    } else {
        syst.arr_last = entry_count(v) - 1;
        std::memcpy(syst_entries, v->entries, static_cast<std::size_t>(v->filled) * sizeof *syst_entries);
        v->filled = 0;
    }
    empty_value(v);
    syst_dump = 1;
}

void copy_syst(arr_value *v)
{
    if (system_array_is_empty()) {
        error(err_system_array_empty, "[<]");
        empty_value(v);
        quoly_set(0, &v->n);
        return;
    }
    refer_to_array(v, &syst);
}

void arrays_on_unwind()
{
    release_values(nullptr);
    products_on_unwind();
    sparse_products_on_unwind();
    release_pinned();
    first_available = 1;
    want_sparse = wanted_rows = wanted_cols = 0;
}

void for_each_system_entry(void (*f)(quolynode **value))
{
    if (syst.arr_sparse) {
        change_entries(syst.arr_sparse, syst.arr_rows, f);
        return;
    }
    if (system_array_is_empty()) return;
    for (std::int32_t k = 0; k <= syst.arr_last; ++k) {
        if (!syst_entries[k]) continue;
        f(&syst_entries[k]);
        if (!syst_entries[k]) quoly_set(0, &syst_entries[k]);
    }
}

void for_each_value_entry(void (*f)(quolynode **value))
{
    for (arr_value *v = newest_value; v; v = v->outer) {
        if (v->n) f(&v->n);
        if (!v->owned) continue;
        if (v->sparse) change_entries(v->sparse, v->rows, f);
        for (std::int32_t k = 0; !v->sparse && k < v->filled; ++k) {
            if (v->entries[k]) f(&v->entries[k]);
        }
    }
}

void for_each_array_entry(void (*f)(quolynode **value))
{
    change_arrays(f);
    change_sparses(f, true);
    for_each_system_entry(f);
    for_each_value_entry(f);
}

}  // namespace kelmar
