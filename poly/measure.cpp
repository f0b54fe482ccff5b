// poly/measure.cpp -- lengths, levels, heights and degrees.
//
// A wrapper is no variable, so measures that speak of variables pass over it, and those that speak of lists
// count it. Polynomials are not uniform in depth: what asks for the deepest path walks every branch.
#include "poly/measure.h"
#include <cstring>
#include "poly/variables.h"

namespace kelmar {

// Lengths -------------------------------------------------------------------------------------------------

std::int32_t poly_length(const polynode *p)
{
    std::int32_t count = 0;
    for (; p; p = p->next) ++count;
    return count;
}

std::int32_t fast_poly_length(const polynode *p, std::int32_t limit)
{
    std::int32_t count = 0;
    for (; p && count <= limit; p = p->next) ++count;
    return count;
}

// A term that a word array can hold: a number, or a power with a constant before it.
static inline bool word_term(const polynode *t)
{
    return t->isnum || is_constant(t->coef);
}

std::int32_t exp_poly_length(const polynode *p, std::int32_t *low, int *dense)
{
    const std::int32_t top = p->exp;
    bool fits = *dense && modularmode;
    const bool look = fits && number_polys != 1;
    std::int32_t count = 0;
    const polynode *last = p;
    for (; p; p = p->next) {
        ++count;
        last = p;
        if (look && fits) fits = word_term(p);
    }
    *low = last->exp;
    *dense = fits && *low >= 0;
    const bool sparse = static_cast<std::int64_t>(top) - *low > std::int64_t{6} * count;
    return sparse ? -count : count;
}

// Levels --------------------------------------------------------------------------------------------------

std::int32_t poly_level(const polynode *p)
{
    if (is_constant(p)) return 0;
    std::int32_t level = 1;
    for (; is_wrapper(p); p = p->coef) ++level;
    return level;
}

std::int32_t poly_depth(const polynode *p)
{
    return is_constant(p) ? constant_depth : poly_level(p);
}

// Lists on the longest way down to a number, p among them.
static std::int32_t deepest(const polynode *p)
{
    if (is_constant(p)) return 0;
    std::int32_t below = 0;
    for (; p; p = p->next) {
        const std::int32_t depth = p->isnum ? 0 : deepest(p->coef);
        if (depth > below) below = depth;
    }
    return below + 1;
}

std::int32_t poly_height(const polynode *p)
{
    while (is_wrapper(p)) p = p->coef;
    return deepest(p);
}

std::int32_t depth_below(const polynode *p)
{
    return deepest(p);
}

std::int32_t quick_depth_below(const polynode *p)
{
    std::int32_t depth = 0;
    for (; !is_constant(p); p = p->coef) {
        ++depth;
        if (p->isnum) break;
    }
    return depth;
}

std::int32_t real_degree(const polynode *p, std::int32_t level)
{
    for (; level > 1; --level) {
        if (p->isnum) return 0;
        p = p->coef;
    }
    return p->exp;
}

// Variables -----------------------------------------------------------------------------------------------

std::int32_t poly_vars(const polynode *p, std::int32_t level, char *flags)
{
    if (is_constant(p)) return 0;
    const std::int32_t own = is_wrapper(p) ? 0 : 1;
    if (own) flags[level] = 1;
    std::int32_t below = 0;
    for (; p; p = p->next) {
        const std::int32_t count = p->isnum ? 0 : poly_vars(p->coef, level + 1, flags);
        if (count > below) below = count;
    }
    return own + below;
}

std::int32_t driver_poly_vars(const polynode *p)
{
    char flags[variable_limit + 1];
    std::memset(flags, 0, sizeof flags);
    return poly_vars(p, 1, flags);
}

void mark_vars(const polynode *p, char *flags, std::int32_t level)
{
    for (; p; p = p->next) {
        if (p->exp > 0) flags[level] = 1;
        if (!p->isnum) mark_vars(p->coef, flags, level + 1);
    }
}

void poly_level_depth(std::int32_t a, std::int32_t b, std::int32_t n, std::int32_t *level,
                      std::int32_t *depth)
{
    const std::int32_t most = n < 1200 ? 4 : n <= 9999 ? 8 : 12;
    const std::int32_t deeper = a > b ? a : b;
    *level = 2;
    *depth = deeper < most ? deeper : most;
}

}  // namespace kelmar
