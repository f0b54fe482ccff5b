// gcd/value_grid.cpp -- sums along lines. Sides are short, so that each sum is formed as it stands.
#include "gcd/value_grid.h"
#include <cmath>
#include "gcd/measure.h"
#include "poly/measure.h"
#include "session/report.h"

namespace kelmar {

// The grid -----------------------------------------------------------------------------------------------

static std::int32_t larger(std::int32_t a, std::int32_t b)
{
    return a > b ? a : b;
}

int make_grid(const polynode *p, const polynode *q, value_grid *g)
{
    g->levels = larger(depth_below(p), depth_below(q));
    if (g->levels > grid_levels) return 0;
    g->nodes = 1;
    for (std::int32_t k = g->levels - 1; k >= 0; --k) {
        g->side[k] = larger(max_degree(p, k + 1), max_degree(q, k + 1)) + 1;
        g->stride[k] = g->nodes;
        g->nodes *= g->side[k];
        if (g->side[k] > grid_side || g->nodes > grid_nodes) return 0;
    }
    for (std::int32_t k = 0; k < g->levels; ++k) {
        const double part = 0.29 + 0.618034 * k;  // no circle begins where another one does
        g->turn[k] = 2 * M_PI / g->side[k] * (part - std::floor(part));
    }
    return 1;
}

static void put_coefficients(const polynode *p, const value_grid *g, std::int32_t level, complex_value *to)
{
    for (; p; p = p->next) {
        complex_value *const place = to + p->exp * g->stride[level];
        if (p->isnum) {
            *place = {p->num->real, 0};
        } else {
            put_coefficients(p->coef, g, level + 1, place);
        }
    }
}

// Sums along lines ---------------------------------------------------------------------------------------

struct circle {
    std::int32_t side;
    complex_value root[grid_side];   // the powers of a root of unity
    complex_value twist[grid_side];  // and of the turn
};

static void make_circle(const value_grid *g, std::int32_t level, double sign, circle *c)
{
    c->side = g->side[level];
    for (std::int32_t k = 0; k < c->side; ++k) {
        const double root = sign * 2 * M_PI * k / c->side, twist = sign * g->turn[level] * k;
        c->root[k] = {std::cos(root), std::sin(root)};
        c->twist[k] = {std::cos(twist), std::sin(twist)};
    }
}

static complex_value sum_of_line(const complex_value *line, const circle *c, std::int32_t step)
{
    complex_value sum = {0, 0};
    std::int32_t at = 0;
    for (std::int32_t k = 0; k < c->side; ++k) {
        const complex_value term = complex_product(line[k], c->root[at]);
        sum = {sum.re + term.re, sum.im + term.im};
        at += step;
        if (at >= c->side) at -= c->side;
    }
    return sum;
}

// One line: coefficients to values, or back.
static void turn_line(complex_value *first, std::int64_t stride, const circle *c, bool back)
{
    complex_value line[grid_side];
    for (std::int32_t k = 0; k < c->side; ++k) {
        line[k] = back ? first[k * stride] : complex_product(first[k * stride], c->twist[k]);
    }
    for (std::int32_t k = 0; k < c->side; ++k) {
        complex_value v = sum_of_line(line, c, k);
        if (back) v = complex_product({v.re / c->side, v.im / c->side}, c->twist[k]);
        first[k * stride] = v;
    }
}

// Coefficients to values, or back.
static void turn_grid(const value_grid *g, complex_value *values, bool back)
{
    circle c;
    for (std::int32_t level = 0; level < g->levels; ++level) {
        poll_interrupt();
        make_circle(g, level, back ? -1 : 1, &c);
        const std::int64_t stride = g->stride[level], block = stride * c.side;
        for (std::int64_t from = 0; from < g->nodes; from += block) {
            for (std::int64_t k = 0; k < stride; ++k) turn_line(values + from + k, stride, &c, back);
        }
    }
}

// Values -------------------------------------------------------------------------------------------------

static complex_value *clear_room(product_work *work, int k, std::int64_t nodes)
{
    const std::size_t bytes = static_cast<std::size_t>(nodes) * sizeof(complex_value);
    complex_value *const room = static_cast<complex_value *>(get_room(work, k, bytes));
    for (std::int64_t i = 0; room && i < nodes; ++i) room[i] = {0, 0};
    return room;
}

// Return the values of p, in room k.
static complex_value *values_on_grid(product_work *work, int k, const polynode *p, const value_grid *g)
{
    complex_value *const values = clear_room(work, k, g->nodes);
    if (!values) return nullptr;
    put_coefficients(p, g, 0, values);
    turn_grid(g, values, false);
    return values;
}

// What a small value of b does to its quotient is spread over all coefficients, each of which gets as small a
// part as there are many; so b may come close to zero at a few nodes.
static constexpr double next_to_nothing = 0x1p-32;  // of the largest value

// a = a / b. 0: a value of b is next to nothing.
static int divide_values(complex_value *a, const complex_value *b, std::int64_t nodes)
{
    double most = 0;
    for (std::int64_t k = 0; k < nodes; ++k) most = std::fmax(most, std::hypot(b[k].re, b[k].im));
    for (std::int64_t k = 0; k < nodes; ++k) {
        const double size = b[k].re * b[k].re + b[k].im * b[k].im;
        if (!(size > most * most * (next_to_nothing * next_to_nothing))) return 0;
        const complex_value p = complex_product(a[k], {b[k].re, -b[k].im});
        a[k] = {p.re / size, p.im / size};
    }
    return 1;
}

complex_value *ratio_on_grid(product_work *work, const polynode *a, const polynode *b, const value_grid *g)
{
    complex_value *const u = values_on_grid(work, 0, a, g), *const v = values_on_grid(work, 1, b, g);
    if (!u || !v || !divide_values(u, v, g->nodes)) return nullptr;
    turn_grid(g, u, true);
    return u;
}

bool lies_beyond(const value_grid *g, const std::int32_t *side, std::int64_t node)
{
    for (std::int32_t level = 0; level < g->levels; ++level) {
        if (exponent_at(g, level, node) >= side[level]) return true;
    }
    return false;
}

}  // namespace kelmar
