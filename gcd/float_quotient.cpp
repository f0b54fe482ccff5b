// gcd/float_quotient.cpp -- values of a are divided by those of b, and become the coefficients of the
// quotient. Where b does not divide, the values are those of no polynomial of the degree that the quotient
// must have, and numbers stand beyond it.
#include "gcd/float_quotient.h"
#include <cmath>
#include "gcd/float_gcd.h"
#include "gcd/measure.h"
#include "gcd/value_grid.h"
#include "poly/add.h"
#include "poly/div_exact.h"
#include "poly/measure.h"
#include "poly/mul.h"

namespace kelmar {

// Numbers beyond the quotient of a divisor come of nodes where that nearly vanishes, and may be far above the
// noise of its product, which decides.
static constexpr double doubtful_part = 0x1p-26;

// The numbers of the grid below the degrees of the sides `side`, as a list. What is at most `least` is 0.
static polynode *take_coefficients(const value_grid *g, const std::int32_t *side, std::int32_t level,
                                   const complex_value *from, double least)
{
    polynode *list = nullptr;
    if (level == g->levels) {
        if (std::fabs(from->re) <= least) return nullptr;
        poly_set(1, &list);
        list->num->real = from->re;
        return list;
    }
    for (std::int32_t e = 0; e < side[level]; ++e) {
        polynode *term = take_coefficients(g, side, level + 1, from + e * g->stride[level], least);
        if (!term) continue;
        make_monomial(&term, e, term);
        term->next = list;
        list = term;
    }
    return list;
}

// The largest number on the grid, and the largest beyond the sides `side`.
struct grid_sizes {
    double within, beyond;
};

static grid_sizes measure_grid(const value_grid *g, const std::int32_t *side, const complex_value *values)
{
    grid_sizes most = {0, 0};
    for (std::int64_t k = 0; k < g->nodes; ++k) {
        double *const size = lies_beyond(g, side, k) ? &most.beyond : &most.within;
        *size = std::fmax(*size, std::hypot(values[k].re, values[k].im));
    }
    return most;
}

// Return the quotient as the grid tells it, or null.
static polynode *quotient_on_grid(product_work *work, const polynode *a, const polynode *b)
{
    value_grid g;
    std::int32_t side[grid_levels];
    if (!make_grid(a, b, &g)) return nullptr;
    for (std::int32_t k = 0; k < g.levels; ++k) {
        side[k] = max_degree(a, k + 1) - max_degree(b, k + 1) + 1;
        if (side[k] < 1) return nullptr;
    }
    const complex_value *const u = ratio_on_grid(work, a, b, &g);
    if (!u) return nullptr;
    const grid_sizes sizes = measure_grid(&g, side, u);
    if (!(sizes.beyond <= doubtful_part * sizes.within)) return nullptr;
    const double noise = std::fmax(sizes.within * 0x1p-44, 2 * sizes.beyond);
    return take_coefficients(&g, side, 0, u, noise);
}

// a = q b but for noise. product, rest: slots.
static bool is_product(polynode *a, polynode *b, polynode *q, polynode **product, polynode **rest,
                       const pt *names)
{
    poly_mult(q, b, product, names);
    poly_sub(a, *product, rest);
    return largest_magnitude(*rest) <= noise_part * largest_magnitude(a);
}

[[gnu::noinline]] polynode *float_quotient(polynode *a, polynode *b, const pt *names)
{
    product_work *work = open_work(__builtin_frame_address(0));
    polynode **const q = &work->parts[0];
    *q = quotient_on_grid(work, a, b);
    polynode *result = nullptr;
    if (*q && is_product(a, b, *q, &work->parts[1], &work->parts[2], names)) {
        result = *q;
        *q = nullptr;
    }
    close_work(work);
    return result;
}

}  // namespace kelmar
