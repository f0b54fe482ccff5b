#pragma once
// gcd/value_grid.h -- a polynomial over doubles as values on circles.
//
// The grid has a number of nodes for each variable, as many as coefficients: those of a polynomial stand on
// it, become values by a sum along each line in turn, and back. Each circle begins at an angle of its own,
// so that no node is one that a polynomial is likely to vanish at.

#include "poly/mul_work.h"

namespace kelmar {

struct complex_value {
    double re, im;
};

inline complex_value complex_product(complex_value a, complex_value b)
{
    return {a.re * b.re - a.im * b.im, a.re * b.im + a.im * b.re};
}

inline constexpr std::int32_t grid_levels = 8, grid_side = 128;
inline constexpr std::int64_t grid_nodes = std::int64_t{1} << 17;

// Sizes by list, the outer one 0; the innermost varies fastest.
struct value_grid {
    std::int32_t levels;
    std::int32_t side[grid_levels];
    std::int64_t stride[grid_levels];
    std::int64_t nodes;
    double turn[grid_levels];  // the angle of the first node of each circle
};

inline std::int32_t exponent_at(const value_grid *g, std::int32_t level, std::int64_t node)
{
    return static_cast<std::int32_t>(node / g->stride[level] % g->side[level]);
}

// Set the grid for polynomials up to the degrees of p and q. Declines (0): it has too many nodes.
int make_grid(const polynode *p, const polynode *q, value_grid *g);

// Return the coefficients of the function a / b on the grid, in room 0; room 1 is used. Declines (null): no
// memory, or a value of b is next to nothing. Polls: between variables.
complex_value *ratio_on_grid(product_work *work, const polynode *a, const polynode *b, const value_grid *g);

// The node has an exponent that is not below the side `side` of its list.
bool lies_beyond(const value_grid *g, const std::int32_t *side, std::int64_t node);

}  // namespace kelmar
