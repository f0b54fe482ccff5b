// gcd/float_cofactor.cpp -- the cofactor as the solution of linear equations.
//
// When b = g c and g divides a, then c a / b is a polynomial, and c is the polynomial of the lowest degree
// with that property. The function a / b is known on a grid of values; its coefficients beyond the degree
// that c a / b can have must vanish when they are combined as c says. That gives many equations for the few
// numbers of c; they are brought into triangular form, and what they take nearly to zero is c.
#include "gcd/float_cofactor.h"
#include <cmath>
#include "gcd/measure.h"
#include "gcd/value_grid.h"
#include "poly/add.h"
#include "poly/monic.h"

namespace kelmar {

static constexpr std::int32_t most_unknowns = 35, most_rows = 4000;

// The terms that c may have.
struct unknown_terms {
    std::int32_t count;
    std::int32_t exp[most_unknowns][grid_levels];
};

static std::int32_t total_degree(const polynode *p)
{
    std::int32_t most = 0;
    for (; p; p = p->next) {
        const std::int32_t d = p->exp + (p->isnum ? 0 : total_degree(p->coef));
        if (d > most) most = d;
    }
    return most;
}

// Append the terms of total degree up to `left` from the list `level` on. false: too many.
static bool add_terms(const value_grid *g, const std::int32_t *degree, std::int32_t level, std::int32_t left,
                      std::int32_t *exp, unknown_terms *terms)
{
    if (level == g->levels) {
        if (terms->count == most_unknowns) return false;
        for (std::int32_t k = 0; k < g->levels; ++k) terms->exp[terms->count][k] = exp[k];
        ++terms->count;
        return true;
    }
    for (exp[level] = 0; exp[level] <= left && exp[level] <= degree[level]; ++exp[level]) {
        if (!add_terms(g, degree, level + 1, left - exp[level], exp, terms)) return false;
    }
    return true;
}

// Equations ----------------------------------------------------------------------------------------------

// The problem with c of a given total degree.
struct cofactor_search {
    const value_grid *grid;
    const complex_value *ratio;        // coefficients of a / b
    std::int32_t degree[grid_levels];  // of b
    std::int32_t side[grid_levels];    // of c a / b
    unknown_terms terms;
    double *columns;  // of the equations, real parts and imaginary parts
    std::int32_t rows;
    double triangle[most_unknowns][most_unknowns];
};

// The coefficient of x^exp a / b at a node: that of a / b further down, which goes round the circles.
static complex_value shifted_coefficient(const cofactor_search *s, std::int64_t node, const std::int32_t *exp)
{
    const value_grid *const g = s->grid;
    double angle = 0;
    for (std::int32_t k = 0; k < g->levels; ++k) {
        node -= exp[k] * g->stride[k];
        if (exponent_at(g, k, node + exp[k] * g->stride[k]) >= exp[k]) continue;
        node += g->side[k] * g->stride[k];
        angle += g->side[k] * g->turn[k];
    }
    const complex_value v = s->ratio[node];
    return angle == 0 ? v : complex_product(v, {std::cos(angle), std::sin(angle)});
}

static void put_row(cofactor_search *s, std::int32_t row, std::int64_t node)
{
    for (std::int32_t k = 0; k < s->terms.count; ++k) {
        const complex_value v = shifted_coefficient(s, node, s->terms.exp[k]);
        double *const column = s->columns + std::int64_t{k} * 2 * most_rows;
        column[2 * row] = v.re;
        column[2 * row + 1] = v.im;
    }
}

// Write the equations: of the nodes beyond the degree of c a / b at most most_rows, evenly spread.
static void put_equations(cofactor_search *s)
{
    std::int64_t beyond = 0;
    for (std::int64_t k = 0; k < s->grid->nodes; ++k) beyond += lies_beyond(s->grid, s->side, k);
    const std::int64_t every = beyond / most_rows + 1;
    std::int64_t seen = 0;
    s->rows = 0;
    for (std::int64_t k = 0; k < s->grid->nodes; ++k) {
        if (lies_beyond(s->grid, s->side, k) && seen++ % every == 0) put_row(s, s->rows++, k);
    }
}

static double dot(const double *a, const double *b, std::int32_t n)
{
    double sum = 0;
    for (std::int32_t k = 0; k < n; ++k) sum += a[k] * b[k];
    return sum;
}

// The triangle of the columns made orthogonal one after the other.
static void make_triangle(cofactor_search *s)
{
    const std::int32_t n = 2 * s->rows;
    for (std::int32_t i = 0; i < s->terms.count; ++i) {
        double *const column = s->columns + std::int64_t{i} * 2 * most_rows;
        const double length = std::sqrt(dot(column, column, n));
        s->triangle[i][i] = length;
        if (length > 0) {
            for (std::int32_t k = 0; k < n; ++k) column[k] /= length;
        }
        for (std::int32_t j = i + 1; j < s->terms.count; ++j) {
            double *const other = s->columns + std::int64_t{j} * 2 * most_rows;
            const double part = dot(column, other, n);
            s->triangle[i][j] = part;
            for (std::int32_t k = 0; k < n; ++k) other[k] -= part * column[k];
        }
    }
}

// Solution -----------------------------------------------------------------------------------------------

static double largest_side(const cofactor_search *s)
{
    double most = 0;
    for (std::int32_t k = 0; k < s->terms.count; ++k) most = std::fmax(most, s->triangle[k][k]);
    return most;
}

// v = (R^T R)^-1 v, of length 1. Return what its length was. A side that is nothing counts as `least`.
static double improve(const cofactor_search *s, double *v, double least)
{
    const std::int32_t n = s->terms.count;
    for (std::int32_t i = 0; i < n; ++i) {
        for (std::int32_t j = 0; j < i; ++j) v[i] -= s->triangle[j][i] * v[j];
        v[i] /= std::fmax(s->triangle[i][i], least);
    }
    for (std::int32_t i = n - 1; i >= 0; --i) {
        for (std::int32_t j = i + 1; j < n; ++j) v[i] -= s->triangle[i][j] * v[j];
        v[i] /= std::fmax(s->triangle[i][i], least);
    }
    const double length = std::sqrt(dot(v, v, n));
    for (std::int32_t i = 0; i < n; ++i) v[i] /= length;
    return length;
}

// Find the vector that the equations take nearly to zero. false: there is none.
static bool solve_equations(const cofactor_search *s, double *v)
{
    constexpr double nearly = 0x1p-26;
    const double size = largest_side(s);
    if (!(size > 0) || !std::isfinite(size)) return false;
    double length = 0;
    for (std::int32_t k = 0; k < s->terms.count; ++k) v[k] = 1 + 0.1 * k;
    for (int round = 0; round < 4; ++round) length = improve(s, v, size * 0x1p-60);
    return length * size * size > 1 / (nearly * nearly);
}

// Return the polynomial with these numbers.
static polynode *poly_of(const cofactor_search *s, const double *v)
{
    polynode *sum = nullptr;
    poly_set(0, &sum);
    for (std::int32_t k = 0; k < s->terms.count; ++k) {
        if (std::fabs(v[k]) < 0x1p-36) continue;
        polynode *term = nullptr;
        poly_set(1, &term);
        term->num->real = v[k];
        for (std::int32_t level = s->grid->levels; level > 0; --level)
            make_monomial(&term, s->terms.exp[k][level - 1], term);
        best_poly_add(sum, term, &sum);
    }
    return sum;
}

// Return c of that total degree, or null.
static polynode *cofactor_of_degree(cofactor_search *s, const polynode *a, std::int32_t total)
{
    std::int32_t exp[grid_levels];
    s->terms.count = 0;
    if (!add_terms(s->grid, s->degree, 0, total, exp, &s->terms)) return nullptr;
    for (std::int32_t k = 0; k < s->grid->levels; ++k) {
        const std::int32_t own = total < s->degree[k] ? total : s->degree[k];
        const std::int32_t side = max_degree(a, k + 1) - s->degree[k] + own + 1;
        s->side[k] = side > 0 ? side : 0;
    }
    put_equations(s);
    if (s->rows < s->terms.count) return nullptr;
    make_triangle(s);
    double v[most_unknowns];
    return solve_equations(s, v) ? poly_of(s, v) : nullptr;
}

static polynode *find_cofactor(product_work *work, const polynode *a, const polynode *b)
{
    value_grid grid;
    cofactor_search s;
    if (!make_grid(a, b, &grid)) return nullptr;
    s.grid = &grid;
    s.ratio = ratio_on_grid(work, a, b, &grid);
    s.columns = static_cast<double *>(get_room(work, 2, sizeof(double) * 2 * most_rows * most_unknowns));
    if (!s.ratio || !s.columns) return nullptr;
    for (std::int32_t k = 0; k < grid.levels; ++k) s.degree[k] = max_degree(b, k + 1);
    const std::int32_t total = total_degree(b);
    for (std::int32_t t = 1; t < total; ++t) {
        polynode *c = cofactor_of_degree(&s, a, t);
        if (c) return c;
    }
    return nullptr;
}

[[gnu::noinline]] polynode *float_cofactor(polynode *a, polynode *b)
{
    product_work *work = open_work(__builtin_frame_address(0));
    polynode *c = find_cofactor(work, a, b);
    close_work(work);
    if (!c || is_constant(c)) {
        free_poly(&c);
        return nullptr;
    }
    number lead;
    lead.size = 0;
    monic_poly(&c, &lead);
    return c;
}

}  // namespace kelmar
