// session/arr_evaluation.cpp -- polynomials at square arrays.
//
// Horner's rule runs down the terms. Between two terms stands the power of the array by which their exponents
// differ, which is made by squaring when it is more than the array itself.
#include "session/arr_evaluation.h"
#include <cstring>
#include "matrix/sparse_ops.h"
#include "poly/node.h"
#include "quoly/add.h"
#include "quoly/eval.h"
#include "quoly/owned.h"
#include "session/arr_ops.h"
#include "session/report.h"
#include "session/token.h"

namespace kelmar {

// *to = another value like m: for a reference the same reference. Declines (0) after an error.
static int copy_value(arr_value *m, arr_value *to)
{
    if (!m->owned) {
        refer_to_section(to, m->source, m->row0, m->col0, m->rows, m->cols);
        return 1;
    }
    if (m->is_sparse) {
        sparse_frame *copy = nullptr;
        copy_sparse(m->sparse, &copy, m->rows, 0);
        begin_sparse(to, m->rows, m->cols);
        put_back_sparse(copy, to->sparse, m->rows);
        free_sparse(&copy, m->rows, 1);
        return 1;
    }
    if (!begin_dense(to, m->rows, m->cols)) return 0;
    for (std::int32_t k = 0; k < m->filled; ++k) {
        quolynode *copy = nullptr;
        quoly_assign(entry_or_zero(m->entries[k]), &copy);
        put_entry(to, &copy);
    }
    return 1;
}

// *v = *v times m. Declines (0) after an error.
static int multiply_by(arr_value *v, arr_value *m)
{
    arr_value factor;
    open_value(&factor);
    const int ok = copy_value(m, &factor);
    if (ok) combine_values(v, &factor, '*');
    close_value(&factor);
    return ok;
}

// *power = m^e, e > 0. Declines (0) after an error.
static int power_of(arr_value *m, std::int32_t e, arr_value *power)
{
    std::int32_t bit = 1;
    while (bit <= e / 2) bit *= 2;
    if (!copy_value(m, power)) return 0;
    for (bit /= 2; bit > 0; bit /= 2) {
        arr_value square;
        open_value(&square);
        const int ok = copy_value(power, &square);
        if (ok) combine_values(power, &square, '*');
        close_value(&square);
        if (!ok || ((e & bit) && !multiply_by(power, m))) return 0;
    }
    return 1;
}

static int multiply_by_power(arr_value *v, arr_value *m, std::int32_t e)
{
    arr_value power;
    if (e == 1) return multiply_by(v, m);
    open_value(&power);
    const int ok = power_of(m, e, &power);
    if (ok) combine_values(v, &power, '*');
    close_value(&power);
    return ok;
}

// *v = *v + c times the identity.
static void add_scalar_matrix(arr_value *v, const quolynode *c)
{
    if (v->is_sparse) {
        add_to_diag(c, v->sparse, v->rows);
        return;
    }
    for (std::int32_t k = 0; k < v->rows; ++k) better_quoly_add(&v->entries[k + k * v->rows], c);
}

// *v = the zero matrix of the shape and the kind of m. Declines (0) after an error.
static int zero_like(const arr_value *m, arr_value *v)
{
    if (m->is_sparse) {
        begin_sparse(v, m->rows, m->cols);
        return 1;
    }
    if (!begin_dense(v, m->rows, m->cols)) return 0;
    for (std::int32_t k = 0; k < entry_count(v); ++k) {
        quolynode *zero = nullptr;
        quoly_set(0, &zero);
        put_entry(v, &zero);
    }
    return 1;
}

// *v = *v + the coefficient of the term times the identity.
static void add_coefficient(const polynode *term, arr_value *v)
{
    quolynode *c = nullptr;
    own(&c);
    if (term->isnum) {
        quoly_set(0, &c);
        num_assign(term->num, c->num);
    } else {
        p_q_assign(term->coef, &c, 1);
    }
    add_scalar_matrix(v, c);
    disown();
    free_quoly(&c);
}

static bool has_negative_power(const polynode *p)
{
    for (; p; p = p->next) {
        if (p->exp < 0) return true;
    }
    return false;
}

void quoly_at_matrix(const quolynode *q, arr_value *m, arr_value *r)
{
    poly_room room;
    if (!is_array(m) || m->rows != m->cols) {
        error(err_bad_matrix_evaluation, token.text);
        return;
    }
    const polynode *p = as_poly(q, &room);
    if ((!q->is_num && q->den) || has_negative_power(p)) {
        decline_matrix_algorithm();
        return;
    }
    if (!zero_like(m, r)) return;
    for (; p; p = p->next) {
        add_coefficient(p, r);
        const std::int32_t step = p->exp - (p->next ? p->next->exp : 0);
        if (step > 0 && !multiply_by_power(r, m, step)) return;
    }
}

}  // namespace kelmar
