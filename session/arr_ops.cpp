// session/arr_ops.cpp -- the operators between array values and scalars.
//
// An operation on dense entries needs one table for its result: that of an owned operand, else a fresh one.
// The table of the right operand serves too; then the two values change places at the end.
#include "session/arr_ops.h"
#include <cstring>
#include "matrix/product.h"
#include "matrix/sparse_ops.h"
#include "matrix/sparse_order.h"
#include "matrix/sparse_product.h"
#include "matrix/work_arrays.h"
#include "quoly/add.h"
#include "quoly/divide.h"
#include "quoly/mul.h"
#include "quoly/owned.h"
#include "session/arr_join.h"
#include "session/errors.h"
#include "session/output.h"
#include "session/report.h"

namespace kelmar {

void decline_matrix_algorithm()
{
    std::fputs("not implemented\n", Output);
    restart_session();
}

// Entries -----------------------------------------------------------------------------------------------

typedef void (*entry_operation)(const quolynode *a, const quolynode *b, quolynode **c);

static void product_of(const quolynode *a, const quolynode *b, quolynode **c)
{
    quoly_mult(a, b, c);
}

static void quotient_of(const quolynode *a, const quolynode *b, quolynode **c)
{
    if (quoly_iszero(b)) {
        error(err_zero_divisor, "/");
        quoly_set(0, c);
    } else {
        quoly_quot(a, b, 0, c);
    }
}

template <char op> static void whole_quotient_of(const quolynode *a, const quolynode *b, quolynode **c)
{
    const char symbol[2] = {op, 0};
    if (quoly_iszero(b)) {
        error(err_zero_divisor, symbol);
        quoly_set(0, c);
    } else {
        quoly_mod_or_div(a, b, c, op);
    }
}

static entry_operation operation_of(char op)
{
    switch (op) {
    case '+': return quoly_add;
    case '-': return quoly_sub;
    case '*': return product_of;
    case '/': return quotient_of;
    case '\\': return whole_quotient_of<'\\'>;
    default: return whole_quotient_of<'|'>;
    }
}

// Where the result of an operation goes: a table of `count` slots, of which the first ones may be filled.
struct result_place {
    arr_value *of;  // the operand that lends it; or the fresh value
    arr_value fresh;
};

// Declines (0) after an error.
static int open_result(result_place *place, arr_value *v, arr_value *r)
{
    arr_value *const shape = is_array(v) ? v : r;
    open_value(&place->fresh);
    place->of = is_array(v) && v->owned ? v : is_array(r) && r->owned ? r : &place->fresh;
    if (place->of != &place->fresh) return 1;
    if (begin_dense(&place->fresh, shape->rows, shape->cols)) return 1;
    close_value(&place->fresh);
    return 0;
}

static void close_result(result_place *place, arr_value *v)
{
    const std::int32_t onedim = v->onedim;
    if (place->of != v) move_value(place->of, v);
    v->onedim = onedim;
    close_value(&place->fresh);
}

// Dense operands, one of which may be a scalar: entry by entry.
static void entrywise(arr_value *v, arr_value *r, char op)
{
    result_place place;
    const entry_operation f = operation_of(op);
    if ((is_array(v) && !gather(v)) || (is_array(r) && !gather(r)) || !open_result(&place, v, r)) return;
    quolynode **out = place.of->entries;
    const std::int32_t count = entry_count(is_array(v) ? v : r);
    const bool fresh = place.of == &place.fresh;
    for (std::int32_t k = 0; k < count; ++k) {
        const quolynode *a = is_array(v) ? v->entries[k] : v->n;
        const quolynode *b = is_array(r) ? r->entries[k] : r->n;
        if (fresh) {
            out[k] = nullptr;
            ++place.fresh.filled;
        }
        f(entry_or_zero(a), entry_or_zero(b), &out[k]);
    }
    close_result(&place, v);
}

// Report error n at the operator.
static void refuse(int n, char op)
{
    const char symbol[2] = {op, 0};
    error(n, symbol);
}

static bool same_shape(const arr_value *v, const arr_value *r)
{
    return v->rows == r->rows && v->cols == r->cols;
}

// Sums ----------------------------------------------------------------------------------------------------

// A sparse array and a scalar: the scalar is added to every position.
static void add_to_sparse(arr_value *v, arr_value *r, char op)
{
    arr_value *const array = is_array(v) ? v : r;
    if (std::int64_t{array->rows} * array->cols > array_entries) {
        refuse(err_sparse_sum_too_big, op);
        return;
    }
    if (densify(array)) entrywise(v, r, op);
}

static void add_arrays(arr_value *v, arr_value *r, char op)
{
    if (!same_shape(v, r)) {
        refuse(err_unequal_shapes, op);
    } else if (v->is_sparse && r->is_sparse) {
        sparse_frame *left = chain_of(v);
        sparse_frame *right = chain_of(r);
        const int own_left = v->owned;
        const int own_right = r->owned;
        v->sparse = r->sparse = nullptr;
        add_sparses(&left, &right, own_left, own_right, v->rows, op == '+');
        v->sparse = left;
        v->owned = 1;
        v->source = nullptr;
    } else if (!v->is_sparse && !r->is_sparse) {
        entrywise(v, r, op);
    } else if (r->is_sparse) {
        if (!make_owned_value(v)) return;
        sparse_frame *chain = chain_of(r);
        add_one_sparse(v->entries, v->rows, 0, &chain, op == '+');
    } else if (densify(v)) {
        entrywise(v, r, op);
    }
}

static void add_values(arr_value *v, arr_value *r, char op)
{
    if (!is_array(v) && !is_array(r)) {
        if (op == '+') {
            best_quoly_add(&v->n, &r->n);
        } else {
            best_quoly_sub(&v->n, &r->n);
        }
    } else if (is_array(v) && is_array(r)) {
        add_arrays(v, r, op);
    } else if (v->is_sparse || r->is_sparse) {
        add_to_sparse(v, r, op);
    } else {
        entrywise(v, r, op);
    }
}

// Products ------------------------------------------------------------------------------------------------

static void multiply_sparse(arr_value *v, arr_value *r)
{
    arr_value product;
    open_value(&product);
    begin_sparse(&product, v->rows, r->cols);
    mult_sparses(chain_of(v), chain_of(r), product.sparse, v->rows, v->cols, r->cols);
    move_value(&product, v);
    close_value(&product);
}

static void multiply_mixed(arr_value *v, arr_value *r, arr_value *product)
{
    const std::int32_t count = entry_count(product);
    std::memset(product->entries, 0, static_cast<std::size_t>(count) * sizeof *product->entries);
    product->filled = count;
    if (v->is_sparse) {
        mult_sparse_norm(chain_of(v), r->entries, product->entries, v->rows, v->cols, r->cols);
    } else {
        mult_norm_sparse(v->entries, chain_of(r), product->entries, v->rows, v->cols, r->cols);
    }
}

// The matrix product; the inner sizes agree.
static void matrix_mult(arr_value *v, arr_value *r)
{
    arr_value product;
    if (v->is_sparse && r->is_sparse) {
        multiply_sparse(v, r);
        return;
    }
    if ((!v->is_sparse && !gather(v)) || (!r->is_sparse && !gather(r))) return;
    open_value(&product);
    if (begin_dense(&product, v->rows, r->cols)) {
        if (v->is_sparse || r->is_sparse) {
            multiply_mixed(v, r, &product);
        } else {
            dense_product(v->entries, r->entries, product.entries, &product.filled, v->rows, v->cols,
                          r->cols);
        }
        move_value(&product, v);
    }
    close_value(&product);
}

void multiply_by_pairs(arr_value *v, arr_value *r)
{
    arr_value product;
    if (!is_array(v) || !is_array(r)) {
        error(err_need_array, "Altmult");
    } else if (v->is_sparse || r->is_sparse) {
        error(err_sparse_refused, "Altmult");
    } else if (v->cols != r->rows) {
        error(err_unequal_shapes, "Altmult");
    } else if (gather(v) && gather(r)) {
        open_value(&product);
        if (begin_dense(&product, v->rows, r->cols)) {
            fast_mat_mult(v->entries, r->entries, product.entries, &product.filled, v->rows, v->cols,
                          r->cols);
            move_value(&product, v);
        }
        close_value(&product);
    }
}

static void multiply_arrays(arr_value *v, arr_value *r)
{
    if (v->cols == r->rows) {
        matrix_mult(v, r);
    } else if (v->is_sparse || r->is_sparse) {
        refuse(err_sparse_entrywise, '*');
    } else if (same_shape(v, r)) {
        entrywise(v, r, '*');
    } else {
        refuse(err_unequal_shapes, '*');
    }
}

// default null; the scalar of an operation on all entries; scalar_on_sparse; reset: each use
static const quolynode *map_operand = nullptr;

template <char op> static void divide_entry(quolynode **entry)
{
    quoly_mod_or_div(*entry, map_operand, entry, op);
}

// A sparse array and a scalar behind it.
static void scalar_on_sparse(arr_value *v, const quolynode *q, char op)
{
    if (op != '*' && quoly_iszero(q)) {
        const char symbol[2] = {op, 0};
        error(err_zero_divisor, symbol);
        return;
    }
    if (!make_owned_value(v)) return;
    if (op == '*') {
        mult_cons_sparse(v->sparse, v->rows, q);
        return;
    }
    if (op != '/') {
        map_operand = q;
        change_entries(v->sparse, v->rows, op == '\\' ? divide_entry<'\\'> : divide_entry<'|'>);
        return;
    }
    quolynode *reciprocal = nullptr;
    own(&reciprocal);
    quoly_set(1, &reciprocal);
    fast_quoly_quot(&reciprocal, q, 0);
    mult_cons_sparse(v->sparse, v->rows, reciprocal);
    disown();
    free_quoly(&reciprocal);
}

static void scalar_first(arr_value *v, arr_value *r, char op)
{
    if (op == '/' && is_square(r)) {
        if (first_available > work_array_count) error(err_division_too_deep, "/");
        decline_matrix_algorithm();
    } else if (!r->is_sparse) {
        entrywise(v, r, op);
    } else if (op == '*') {
        scalar_on_sparse(r, v->n, op);
        move_value(r, v);
    } else {
        refuse(err_sparse_refused, op);
    }
}

static void divide_arrays(arr_value *v, arr_value *r, char op)
{
    if (op == '/' && is_square(r) && same_shape(v, r)) {
        if (first_available > work_array_count) error(err_division_too_deep, "/");
        decline_matrix_algorithm();
    } else if (v->is_sparse || r->is_sparse) {
        refuse(err_sparse_entrywise, op);
    } else if (same_shape(v, r)) {
        entrywise(v, r, op);
    } else {
        refuse(err_unequal_shapes, op);
    }
}

static void multiply_scalars(arr_value *v, const arr_value *r, char op)
{
    if (op == '*') {
        fast_quoly_mult(&v->n, r->n);
    } else {
        operation_of(op)(v->n, r->n, &v->n);
    }
}

// Operators -------------------------------------------------------------------------------------------------

static void multiply_values(arr_value *v, arr_value *r, char op)
{
    if (!is_array(v)) {
        if (is_array(r)) {
            scalar_first(v, r, op);
        } else {
            multiply_scalars(v, r, op);
        }
    } else if (!is_array(r)) {
        if (v->is_sparse) {
            scalar_on_sparse(v, r->n, op);
        } else {
            entrywise(v, r, op);
        }
    } else if (op == '*') {
        multiply_arrays(v, r);
    } else {
        divide_arrays(v, r, op);
    }
}

void combine_values(arr_value *v, arr_value *r, char op)
{
    if (op == '+' || op == '-') {
        add_values(v, r, op);
    } else if (op == '_') {
        join_values(v, r);
    } else {
        multiply_values(v, r, op);
    }
    empty_value(r);
}

void map_value(arr_value *v, void (*f)(quolynode **entry))
{
    if (!is_array(v)) {
        f(&v->n);
        return;
    }
    if (!make_owned_value(v)) return;
    if (v->is_sparse) {
        change_entries(v->sparse, v->rows, f);
        return;
    }
    for (std::int32_t k = 0; k < v->filled; ++k) {
        if (v->entries[k]) f(&v->entries[k]);
    }
}

void negate_value(arr_value *v)
{
    if (!is_array(v) || !v->is_sparse || v->owned) {
        map_value(v, quoly_inplace);
        return;
    }
    sparse_frame *chain = chain_of(v);
    int owned = v->owned;
    sparse_makeneg(&chain, v->rows, &owned);
    v->sparse = chain;
    v->owned = 1;
    v->source = nullptr;
}

}  // namespace kelmar
