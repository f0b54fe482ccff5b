// gcd/balance.cpp -- one walk looks at the numbers at both ends of each variable; the factor is the root of
// their ratio.
#include "gcd/balance.h"
#include <cmath>
#include "poly/measure.h"

namespace kelmar {

// The ends of a variable: its lowest and highest exponents, and the largest numbers that stand there.
struct variable_ends {
    std::int32_t low, high;
    double at_low, at_high;
};

struct end_search {
    std::int32_t levels;
    std::int32_t exp[variable_limit + 1];  // of the term, down to the list where the walk is
    variable_ends ends[variable_limit + 1];
    double least, most;  // magnitudes
};

static void meet_end(variable_ends *v, std::int32_t exp, double size)
{
    if (exp < v->low) *v = {exp, v->high, 0, v->at_high};
    if (exp > v->high) *v = {v->low, exp, v->at_low, 0};
    if (exp == v->low && size > v->at_low) v->at_low = size;
    if (exp == v->high && size > v->at_high) v->at_high = size;
}

static void search_ends(const polynode *p, std::int32_t level, end_search *s)
{
    for (; p; p = p->next) {
        s->exp[level] = p->exp;
        if (!p->isnum) {
            search_ends(p->coef, level + 1, s);
            continue;
        }
        const double size = std::fabs(p->num->real);
        if (size < s->least) s->least = size;
        if (size > s->most) s->most = size;
        for (std::int32_t k = 1; k <= s->levels; ++k) meet_end(&s->ends[k], k <= level ? s->exp[k] : 0, size);
    }
}

static std::int32_t deepest(std::int32_t a, std::int32_t b)
{
    return a > b ? a : b;
}

// The numbers of the polynomial stay well within the range when its variables are scaled.
static bool stays_in_range(const end_search *e, const balance *s)
{
    constexpr std::int32_t range = 900;
    if (!(e->least > 0) || !(e->most < __builtin_inf())) return false;
    std::int64_t up = std::ilogb(e->most), down = std::ilogb(e->least);
    for (std::int32_t k = 1; k <= s->levels; ++k) {
        const std::int64_t by = std::int64_t{s->shift[k]} * (e->ends[k].high > 0 ? e->ends[k].high : 0);
        (by > 0 ? up : down) += by;
    }
    return up < range && down > -range;
}

static void begin_search(end_search *e, std::int32_t levels)
{
    e->levels = levels;
    e->least = __builtin_inf();
    e->most = 0;
    for (std::int32_t k = 1; k <= levels; ++k) e->ends[k] = {INT32_MAX, -1, 0, 0};
}

// The shift that brings both ends of a variable to one size.
static std::int32_t levelling_shift(const variable_ends *v)
{
    if (v->high <= v->low) return 0;
    return static_cast<std::int32_t>(std::lround(std::log2(v->at_low / v->at_high) / (v->high - v->low)));
}

bool find_balance(const polynode *p, const polynode *other, balance *s)
{
    end_search e, f;
    s->levels = deepest(depth_below(p), depth_below(other));
    if (s->levels < 2 || s->levels > variable_limit) return false;
    begin_search(&e, s->levels);
    begin_search(&f, s->levels);
    search_ends(p, 1, &e);
    search_ends(other, 1, &f);
    std::int32_t variables = 0;
    bool changes = false;
    for (std::int32_t k = 1; k <= s->levels; ++k) {
        variables += e.ends[k].high > 0 || f.ends[k].high > 0;
        s->shift[k] = levelling_shift(&e.ends[k]);
        changes = changes || s->shift[k] != 0;
    }
    return changes && variables > 1 && stays_in_range(&e, s) && stays_in_range(&f, s);
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
