// poly/laurent.cpp -- shifts of all exponents of a polynomial, in every variable at once.
//
// A number that stops the nesting has exponent 0 in every variable below, so a shift turns it into a term of
// its own list with a monomial below. A shift may as well turn a term into the number of its list. Each
// exponent is looked at before one is written.
#include "poly/laurent.h"
#include "session/report.h"

namespace kelmar {

// Exponents -----------------------------------------------------------------------------------------------

struct exponent_span {
    std::int32_t low[variable_limit + 1];  // by level
    std::int32_t high[variable_limit + 1];
};

static void span_exponent(std::int32_t exp, std::int32_t level, exponent_span *span)
{
    if (exp < span->low[level]) span->low[level] = exp;
    if (exp > span->high[level]) span->high[level] = exp;
}

// Widen the span by the exponents of the list p at `level`, the last of which is `levels`.
static void span_list(const polynode *p, std::int32_t level, std::int32_t levels, exponent_span *span)
{
    if (level > levels) return;
    for (; p; p = p->next) {
        span_exponent(p->exp, level, span);
        if (!p->isnum && !is_constant(p->coef)) {
            span_list(p->coef, level + 1, levels, span);
        } else {
            for (std::int32_t k = level + 1; k <= levels; ++k) span_exponent(0, k, span);
        }
    }
}

static void find_span(const polynode *p, std::int32_t levels, exponent_span *span)
{
    for (std::int32_t k = 1; k <= levels; ++k) {
        span->low[k] = INT32_MAX;
        span->high[k] = INT32_MIN;
    }
    span_list(p, 1, levels, span);
}

static bool is_exponent(std::int64_t e)
{
    return e >= INT32_MIN && e <= INT32_MAX;
}

// Exponents in the span stay words when s is put on them.
static bool span_can_move(const exponent_span *span, const exponent_shifts *s, std::int32_t sign)
{
    for (std::int32_t k = 1; k <= s->levels; ++k) {
        const std::int64_t by = std::int64_t{s->by[k]} * sign;
        if (!is_exponent(span->low[k] + by) || !is_exponent(span->high[k] + by)) return false;
    }
    return true;
}

// Moving ----------------------------------------------------------------------------------------------------

// exp with the shift of the level on it; span_can_move has seen to the range.
static std::int32_t moved(std::int32_t exp, const exponent_shifts *s, std::int32_t level, std::int32_t sign)
{
    return static_cast<std::int32_t>(exp + std::int64_t{s->by[level]} * sign);
}

// Return the constant as a list at `level` times the powers of s from there on.
static polynode *moved_constant(polynode *constant, std::int32_t level, const exponent_shifts *s,
                                std::int32_t sign)
{
    for (std::int32_t k = s->levels; k >= level; --k)
        make_monomial(&constant, moved(0, s, k, sign), constant);
    return constant;
}

// Return the list p at `level` times the powers of s from there on, in place.
static polynode *moved_list(polynode *p, std::int32_t level, const exponent_shifts *s, std::int32_t sign)
{
    if (level > s->levels) return p;
    if (is_constant(p)) return moved_constant(p, level, s, sign);
    polynode *first = nullptr, *rest = nullptr;
    polynode **end = &first;
    for (; p; p = rest) {
        rest = p->next;
        p->next = nullptr;
        const std::int32_t exp = moved(p->exp, s, level, sign);
        polynode *coef = p;
        if (!p->isnum) {
            coef = p->coef;
            give_node(p);
        }
        make_monomial(end, exp, moved_list(coef, level + 1, s, sign));
        end = &(*end)->next;
    }
    return first;
}

void eliminate_bads(polynode **p, const exponent_shifts *s, std::int32_t sign)
{
    if (s->levels == 0 || poly_iszero(*p)) return;
    exponent_span span;
    find_span(*p, s->levels, &span);
    if (span_can_move(&span, s, sign)) {
        *p = moved_list(*p, 1, s, sign);
    } else {
        error(err_bad_exponent, "^");
    }
}

// Shifts --------------------------------------------------------------------------------------------------

static std::int32_t count_variables(const pt *var)
{
    std::int32_t count = 0;
    for (; var && count < variable_limit; var = var->next) ++count;
    return count;
}

int clear_bads(polynode **p, const pt *var, exponent_shifts *s, std::int32_t start, std::int32_t last)
{
    *s = {};
    const std::int32_t variables = count_variables(var), levels = last < variables ? last : variables;
    if (poly_iszero(*p)) return 0;
    exponent_span span;
    find_span(*p, levels, &span);
    for (std::int32_t k = 1; k <= levels; ++k) {
        s->by[k] = span.low[k] < start ? span.low[k] : start;
        if (s->by[k] != 0) s->levels = k;
    }
    if (s->levels == 0) return 0;
    if (span_can_move(&span, s, -1)) {
        *p = moved_list(*p, 1, s, -1);
        return 1;
    }
    *s = {};
    error(err_bad_exponent, "^");
    return 0;
}

bool has_negative_exponents(const polynode *p)
{
    for (; p; p = p->next) {
        if (p->exp < 0 || (!p->isnum && has_negative_exponents(p->coef))) return true;
    }
    return false;
}

}  // namespace kelmar
