// poly/flat.cpp -- measuring and packing.
//
// A constant may stop the nesting above any level; the exponents that it does not spell are 0. Level 1
// alone never has such a term, so from level 2 on 0 counts as an exponent that occurs.
#include "poly/flat.h"

namespace kelmar {

// Joins the size of the coefficient n to the measures.
static void measure_number(const number *n, flat_shape *s)
{
    if (n->size > s->size) s->size = n->size;
    if (n->size > 2) return;
    std::int64_t v = n->head->digit;
    if (n->size == 2) v = v * digit_base + n->tail->digit;
    s->magnitude |= static_cast<std::uint64_t>(v < 0 ? -v : v);
}

template <bool digits> static void measure_list(const polynode *p, std::int32_t level, flat_shape *s)
{
    if (level == s->levels) {
        s->low[level] = s->top[level] = level == 0 ? p->exp : 0;
        ++s->levels;
    }
    if (p->exp > s->top[level]) s->top[level] = p->exp;
    for (; p; p = p->next) {
        if (p->exp < s->low[level]) s->low[level] = p->exp;
        const polynode *coef = p->isnum ? p : p->coef;
        if (!p->isnum && !is_constant(coef)) {
            measure_list<digits>(coef, level + 1, s);
            continue;
        }
        ++s->terms;
        if (digits) measure_number(coef->num, s);
    }
}

void measure_flat(const polynode *p, flat_shape *s)
{
    s->levels = 0;
    s->terms = 0;
    s->size = 0;
    s->magnitude = 0;
    if (live_view() == view_digits) {
        measure_list<true>(p, 0, s);
    } else {
        measure_list<false>(p, 0, s);
    }
}

bool exponents_fit(const flat_shape *a, const flat_shape *b)
{
    const std::int32_t levels = a->levels < b->levels ? a->levels : b->levels;
    for (std::int32_t k = 0; k < levels; ++k) {
        std::int32_t sum;
        if (__builtin_add_overflow(a->top[k], b->top[k], &sum)) return false;
        if (__builtin_add_overflow(a->low[k], b->low[k], &sum)) return false;
    }
    return true;
}

int pack_pair(const flat_shape *a, const flat_shape *b, flat_packing *packing)
{
    packing->levels = a->levels > b->levels ? a->levels : b->levels;
    packing->span = 1;
    packing->origin[packing->levels] = 0;
    for (std::int32_t k = packing->levels - 1; k >= 0; --k) {
        std::int64_t low = 0, top = 0;
        if (k < a->levels) low += a->low[k], top += a->top[k];
        if (k < b->levels) low += b->low[k], top += b->top[k];
        packing->low[k] = static_cast<std::int32_t>(low);
        packing->stride[k] = packing->span;
        // modulo 2^64: an origin at level 1 may be negative, and only ever stands beside the term that
        // makes up for it
        packing->origin[k] = packing->origin[k + 1] - static_cast<std::uint64_t>(low) * packing->stride[k];
        const std::uint64_t radix = static_cast<std::uint64_t>(top - low) + 1;
        if (__builtin_mul_overflow(packing->span, radix, &packing->span)) return 0;
        if (packing->span >> 62) return 0;
    }
    return 1;
}

}  // namespace kelmar
