// gcd/balance.cpp -- the factors come from a plane through the logarithms of the numbers over their
// exponents, by least squares: a few that are only what rounding left do not tilt it.
#include "gcd/balance.h"
#include <cmath>
#include "poly/measure.h"

namespace kelmar {

static constexpr std::int32_t unknowns = balance_levels + 1;  // slopes, and the height in place 0

// Terms looked at, and the sums of their products: entries are 1 and the exponents.
struct term_sums {
    std::int32_t levels;
    std::int32_t exp[unknowns];  // of the term, down to the list where the walk is; [0] is 1
    double matrix[unknowns][unknowns];
    double right[unknowns];
    double cut;  // numbers below it are not looked at
};

// What scaling must keep in range, and where variables occur.
struct pair_extent {
    std::int32_t high[unknowns];  // exponents
    double least, most;           // magnitudes
};

static void measure_extent(const polynode *p, std::int32_t level, pair_extent *e)
{
    for (; p; p = p->next) {
        if (p->exp > e->high[level]) e->high[level] = p->exp;
        if (!p->isnum) {
            measure_extent(p->coef, level + 1, e);
            continue;
        }
        const double size = std::fabs(p->num->real);
        if (size < e->least) e->least = size;
        if (size > e->most) e->most = size;
    }
}

static void add_terms(const polynode *p, std::int32_t level, term_sums *s)
{
    for (; p; p = p->next) {
        s->exp[level] = p->exp;
        if (!p->isnum) {
            add_terms(p->coef, level + 1, s);
            continue;
        }
        const double size = std::fabs(p->num->real);
        if (!(size > s->cut)) continue;
        const double height = std::log2(size);
        for (std::int32_t i = 0; i <= level; ++i) {
            for (std::int32_t j = 0; j <= level; ++j) s->matrix[i][j] += double{1} * s->exp[i] * s->exp[j];
            s->right[i] += s->exp[i] * height;
        }
    }
}

// Solve for the plane; what the terms do not tell is 0.
static void solve_plane(term_sums *s, double *plane)
{
    const std::int32_t n = s->levels + 1;
    for (std::int32_t i = 0; i < n; ++i) s->matrix[i][i] += 1e-6 * (1 + s->matrix[i][i]);
    for (std::int32_t i = 0; i < n; ++i) {
        for (std::int32_t k = i + 1; k < n; ++k) {
            const double factor = s->matrix[k][i] / s->matrix[i][i];
            for (std::int32_t j = i; j < n; ++j) s->matrix[k][j] -= factor * s->matrix[i][j];
            s->right[k] -= factor * s->right[i];
        }
    }
    for (std::int32_t i = n - 1; i >= 0; --i) {
        plane[i] = s->right[i];
        for (std::int32_t j = i + 1; j < n; ++j) plane[i] -= s->matrix[i][j] * plane[j];
        plane[i] /= s->matrix[i][i];
    }
}

// The numbers of the pair stay well within the range when variables are scaled.
static bool stays_in_range(const pair_extent *e, const balance *s)
{
    constexpr std::int64_t range = 900;
    std::int64_t up = std::ilogb(e->most), down = std::ilogb(e->least);
    for (std::int32_t k = 1; k <= s->levels; ++k) {
        const std::int64_t by = std::int64_t{s->shift[k]} * e->high[k];
        (by > 0 ? up : down) += by;
    }
    return up < range && down > -range;
}

bool find_balance(const polynode *p, const polynode *other, balance *s)
{
    constexpr double noise = 0x1p-40;
    const std::int32_t depth = depth_below(p), other_depth = depth_below(other);
    s->levels = depth > other_depth ? depth : other_depth;
    if (s->levels < 2 || s->levels > balance_levels) return false;
    pair_extent e = {{}, __builtin_inf(), 0};
    measure_extent(p, 1, &e);
    term_sums sums = {s->levels, {1}, {}, {}, noise * e.most};
    measure_extent(other, 1, &e);
    if (!(e.least > 0) || !(e.most < __builtin_inf())) return false;
    add_terms(p, 1, &sums);
    double plane[unknowns];
    solve_plane(&sums, plane);
    std::int32_t variables = 0;
    bool changes = false;
    for (std::int32_t k = 1; k <= s->levels; ++k) {
        variables += e.high[k] > 0;
        s->shift[k] = e.high[k] > 0 ? static_cast<std::int32_t>(std::lround(-plane[k])) : 0;
        changes = changes || s->shift[k] != 0;
    }
    return changes && variables > 1 && stays_in_range(&e, s);
}

// sign times the shifts of a term with this exponent in the list `level`.
static std::int32_t shift_of(const balance *s, std::int32_t level, std::int32_t exp, std::int32_t sign)
{
    return level <= s->levels ? sign * s->shift[level] * exp : 0;
}

static void scale_lists(polynode *p, std::int32_t level, const balance *s, std::int32_t sign, std::int32_t by)
{
    for (; p; p = p->next) {
        const std::int32_t all = by + shift_of(s, level, p->exp, sign);
        if (p->isnum) {
            p->num->real = std::ldexp(p->num->real, all);
        } else {
            scale_lists(p->coef, level + 1, s, sign, all);
        }
    }
}

void scale_variables(polynode *p, const balance *s, std::int32_t sign, std::int32_t extra)
{
    scale_lists(p, 1, s, sign, extra);
}

std::int32_t leading_shift(const polynode *p, const balance *s)
{
    std::int32_t by = 0;
    for (std::int32_t level = 1;; ++level, p = p->coef) {
        by += shift_of(s, level, p->exp, 1);
        if (p->isnum) return by;
    }
}

}  // namespace kelmar
