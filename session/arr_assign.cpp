// session/arr_assign.cpp -- assignment to arrays.
//
// The right side is computed whole before the target is touched; owned entries then move into place. The
// target is looked up again at that moment, since a function on the right may have done anything to it.
#include "session/arr_assign.h"
#include "matrix/pins.h"
#include "matrix/sparse_ops.h"
#include "matrix/store.h"
#include "session/arr_access.h"
#include "session/arr_expr.h"
#include "session/arr_system.h"
#include "session/arr_target.h"
#include "session/report.h"

namespace kelmar {

// Whole arrays ------------------------------------------------------------------------------------------

// Put the value into each position of an array.
static void fill_array(array *a, const quolynode *q)
{
    if (a->arr_rows == 0) return;  // a parameter whose array has gone
    if (a->arr_sparse) {
        sparse_set_scalar(a, a->arr_cols, q);
        return;
    }
    for (std::int32_t s = static_cast<std::int32_t>(a->arr_first); s <= a->arr_last; ++s) {
        quolynode *copy = nullptr;
        quoly_assign(q, &copy);
        retire_value(store_slot(s));
        *store_slot(s) = copy;
    }
}

// Move the entries of an owned value of the array's shape into it; the kind of the array stays.
static void move_entries(arr_value *v, array *a)
{
    if (a->arr_sparse && v->is_sparse) {
        put_back_sparse(v->sparse, a->arr_sparse, a->arr_rows);
    } else if (a->arr_sparse) {
        standard_to_sparse(a, v->entries, v->cols, true);
        v->filled = 0;
    } else if (!v->is_sparse || densify(v)) {
        const std::int32_t first = static_cast<std::int32_t>(a->arr_first);
        for (std::int32_t k = 0; k < v->filled; ++k) {
            retire_value(store_slot(first + k));
            *store_slot(first + k) = v->entries[k];
        }
        v->filled = 0;
    }
    ++array_moves;
}

// *a = a new array of the value's shape, of that name; sparse if the value is, or was wanted so. Null after
// an error.
static void make_array(token_rec *name, const arr_value *v, bool sparse, array **a)
{
    const array_name n = array_name_of(name);
    const std::int32_t onedim = v->onedim || v->cols == 1;
    if (sparse) {
        sparse_create(&n, v->rows, v->cols, onedim, true, a);
    } else {
        insertarr(&n, v->rows, v->cols, onedim, a);
    }
}

static bool same_shape(const array *a, const arr_value *v)
{
    return a->arr_rows == v->rows && a->arr_cols == v->cols;
}

// The scalar as an array of one entry.
static int as_single(arr_value *v)
{
    quolynode *n = v->n;
    v->n = nullptr;
    if (!begin_dense(v, 1, 1)) {
        free_quoly(&n);
        return 0;
    }
    put_entry(v, &n);
    v->onedim = 1;
    return 1;
}

// The slot of the array of arrays gets an array without a name.
static void put_in_slot(array_target *t, arr_value *v)
{
    token_rec none = {};
    array *fresh = nullptr;
    none.index = 0;
    make_array(&none, v, v->is_sparse != 0, &fresh);
    if (!fresh) return;
    move_entries(v, fresh);
    arrstash[t->slot] = fresh;
}

void assign_whole(array_target *t, arr_value *v)
{
    array *a = t->a;
    if (!is_array(v) && a) {
        fill_array(a, v->n);
        return;
    }
    if (!is_array(v) ? !as_single(v) : !make_owned_value(v)) return;
    if (a && same_shape(a, v)) {
        move_entries(v, a);
        return;
    }
    if (t->slot >= 0) {
        if (a) {
            error(err_arrarr_shape, "%");
        } else {
            put_in_slot(t, v);
        }
        return;
    }
    const bool sparse = v->is_sparse || (a && a->arr_sparse);
    if (a && !removearray(a)) return;
    make_array(&t->name, v, sparse, &a);
    if (a) move_entries(v, a);
}

// Sections ------------------------------------------------------------------------------------------------

// Entry (row, col) of the section, from 0, = *q, which is taken over.
static void put_in_section(const array_target *t, std::int32_t row, std::int32_t col, quolynode **q)
{
    const std::int32_t k = t->row0 + row + (t->col0 + col) * t->a->arr_rows;
    quolynode **slot = t->system ? &syst_entries[k]
                                 : store_slot(static_cast<std::int32_t>(t->a->arr_first) + k);
    retire_value(slot);
    *slot = *q;
    *q = nullptr;
}

static void assign_section(array_target *t, arr_value *v)
{
    if (!t->a || t->row0 + t->rows > t->a->arr_rows || t->col0 + t->cols > t->a->arr_cols) {
        error(err_section_mismatch, t->name.text);  // the right side has changed it
        return;
    }
    if (t->a->arr_sparse || v->is_sparse) {
        error(err_sparse_section, t->name.text);
        return;
    }
    if (is_array(v) && (v->rows != t->rows || v->cols != t->cols)) {
        error(err_section_mismatch, t->name.text);
        return;
    }
    if (!make_owned_value(v)) return;
    for (std::int32_t k = 0; k < t->rows * t->cols; ++k) {
        quolynode *copy = nullptr;
        if (is_array(v)) {
            copy = v->entries[k];
            v->entries[k] = nullptr;
        } else {
            quoly_assign(v->n, &copy);
        }
        put_in_section(t, k % t->rows, k / t->rows, &copy);
    }
}

// Diagonals -----------------------------------------------------------------------------------------------

// Entry (k, k) of the array, from 0, = *q, which is taken over.
static void put_on_diagonal(array *a, std::int32_t k, quolynode **q)
{
    if (!a->arr_sparse) {
        quolynode **slot = store_slot(static_cast<std::int32_t>(a->arr_first) + k + k * a->arr_rows);
        retire_value(slot);
        *slot = *q;
        *q = nullptr;
        return;
    }
    colm **head = head_of_row(a->arr_sparse, k + 1);
    colm **link = column_link(head, k + 1);
    if (*link && (*link)->coord == k + 1) free_colm(link);
    if (quoly_iszero(*q)) {
        free_quoly(q);
        return;
    }
    quolynode **slot = sparse_zero_set(head, k + 1);
    free_quoly(slot);
    *slot = *q;
    *q = nullptr;
}

// A new square array with zeros off its diagonal. Null after an error.
static array *make_diagonal_array(token_rec *name, std::int32_t n)
{
    array *a = nullptr;
    const array_name named = array_name_of(name);
    insertarr(&named, n, n, n == 1, &a);
    if (!a) return nullptr;
    for (std::int32_t s = static_cast<std::int32_t>(a->arr_first); s <= a->arr_last; ++s) {
        quoly_set(0, store_slot(s));
    }
    return a;
}

// Diag[a] := a row, a column or a number.
static void assign_diagonal(array_target *t, arr_value *v)
{
    if (t->section || (is_array(v) && v->rows != 1 && v->cols != 1)) {
        error(err_need_vector, t->name.text);
        return;
    }
    if (v->is_sparse && !densify(v)) return;
    if (!make_owned_value(v)) return;
    const std::int32_t given = is_array(v) ? v->filled : 1;
    if (!t->a && t->slot < 0) t->a = make_diagonal_array(&t->name, given);
    if (!t->a) return;
    const std::int32_t count = t->a->arr_rows < t->a->arr_cols ? t->a->arr_rows : t->a->arr_cols;
    if (is_array(v) && given != count) {
        error(err_section_mismatch, t->name.text);
        return;
    }
    for (std::int32_t k = 0; k < count; ++k) {
        quolynode *copy = nullptr;
        if (is_array(v)) {
            if (v->entries[k]) quoly_assign(v->entries[k], &copy);
        } else {
            quoly_assign(v->n, &copy);
        }
        if (!copy) quoly_set(0, &copy);
        put_on_diagonal(t->a, k, &copy);
    }
}

// Any target ----------------------------------------------------------------------------------------------

// The kind and the shape of what is assigned to.
static wanted_array wish_of(const array_target *t, bool diagonal)
{
    if (!t->a) return {0, 0, 0};
    const std::int32_t sparse = t->a->arr_sparse && !diagonal;
    if (t->section) return {sparse, t->rows, t->cols};
    return {sparse, t->a->arr_rows, t->a->arr_cols};
}

void assign_array(input_stream **stream, array_target *t, bool diagonal, name_node **cursor)
{
    arr_value v;
    open_value(&v);
    const wanted_array outer = wish_for(wish_of(t, diagonal));
    arr_expre(stream, &v, cursor);
    wish_for(outer);
    refresh_target(t);
    if (diagonal) {
        assign_diagonal(t, &v);
    } else if (t->section) {
        assign_section(t, &v);
    } else {
        assign_whole(t, &v);
    }
    close_value(&v);
}

}  // namespace kelmar
