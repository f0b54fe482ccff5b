#pragma once
// poly/flat_table.h -- a stretch of few cells, or with many products: it sums up in a table with a cell for
// each exponent.

#include <algorithm>
#include "poly/flat_job.h"
#include "poly/real_rows.h"

namespace kelmar {

// Whether the terms have every exponent of their range.
template <class R> bool without_gaps(const flat_terms<R> *p)
{
    return p->count > 0 && p->key[0] - p->key[p->count - 1] == static_cast<std::uint64_t>(p->count) - 1;
}

// Cells stand in falling order of their exponents, as terms do, so that a row is added in the order of both.

// Add c d[k] to s[k] for all k < n.
template <class R>
void add_row(R ring, typename R::sum *s, typename R::coef c, const typename R::coef *d, std::int64_t n)
{
    for (std::int64_t k = 0; k < n; ++k) add_product(ring, s + k, c, d[k]);
}

// The part of a row without gaps that is in a stretch.
template <class R> struct row_part {
    typename R::coef c;
    const typename R::coef *d;
    std::int64_t cell, n;  // the first cell; how many
};

inline constexpr std::int64_t parts_together = 4;

// Add the parts to the table, each cell in the order of the parts.
template <class R>
void add_parts(R ring, typename R::sum *table, const row_part<R> *parts, std::int64_t count)
{
    for (std::int64_t k = 0; k < count; ++k)
        add_row(ring, table + parts[k].cell, parts[k].c, parts[k].d, parts[k].n);
}

// The same for doubles: the cells that four parts have in common are passed once.
inline void add_parts(real_ring, double *table, const row_part<real_ring> *parts, std::int64_t count)
{
    std::int64_t from = parts[0].cell, to = from + parts[0].n;
    double c[parts_together];
    const double *d[parts_together];
    for (std::int64_t k = 1; k < count; ++k) {
        from = std::max(from, parts[k].cell);
        to = std::min(to, parts[k].cell + parts[k].n);
    }
    if (count < parts_together || from >= to) from = to = INT64_MAX;
    for (std::int64_t k = 0; k < count; ++k) {
        const row_part<real_ring> *const p = &parts[k];
        const std::int64_t before = std::min(from - p->cell, p->n), behind = std::max(to - p->cell, before);
        add_real_row(table + p->cell, p->c, p->d, before);
        if (behind < p->n) add_real_row(table + p->cell + behind, p->c, p->d + behind, p->n - behind);
        c[k] = p->c;
        d[k] = p->d + before;
    }
    if (from < to) add_four_real_rows(table + from, c, d, to - from);
}

// fill_table where the terms of the inner operand have no gaps.
template <class R>
std::int64_t fill_by_parts(flat_job<R> *job, std::uint64_t lo, std::uint64_t top, typename R::sum *table)
{
    row_part<R> parts[parts_together];
    std::int64_t all = 0, counted = 0, count = 0;
    for (std::int64_t i = job->first; i < job->reached; ++i) {
        const std::uint64_t least = least_inner(lo, job->rows.key[i]);
        const std::int64_t from = job->cursor[i];
        const std::uint64_t key = job->inner.key[from];
        if (key < least) continue;
        const std::int64_t n = std::min(static_cast<std::int64_t>(key - least) + 1, job->inner.count - from);
        const std::uint64_t cell = top - job->rows.key[i] - key;
        parts[count++] = {job->rows.coef[i], job->inner.coef + from, static_cast<std::int64_t>(cell), n};
        job->cursor[i] = from + n;
        all += n;
        if (count < parts_together) continue;
        add_parts(job->ring, table, parts, count);
        count = 0;
        count_products(&job->unpolled, (all - counted) * sum_share<R>());
        counted = all;
    }
    if (count > 0) add_parts(job->ring, table, parts, count);
    return all;
}

// Add the products of the stretch from lo up, of `width` cells, to the table. Return their number.
template <class R>
std::int64_t fill_table(flat_job<R> *job, std::uint64_t lo, std::uint64_t width, typename R::sum *table)
{
    const std::uint64_t *const inner_key = job->inner.key;
    const typename R::coef *const inner = job->inner.coef;
    const R ring = job->ring;
    const std::uint64_t top = lo + width;  // one less is the exponent of the first cell
    if (without_gaps(&job->inner)) return fill_by_parts(job, lo, top, table);
    std::int64_t all = 0;
    for (std::int64_t i = job->first; i < job->reached; ++i) {
        const std::uint64_t least = least_inner(lo, job->rows.key[i]);
        const std::uint64_t place = top - job->rows.key[i];  // modulo 2^64: less a key it is a cell
        const typename R::coef c = job->rows.coef[i];
        const std::int64_t from = job->cursor[i];
        std::int64_t j = from;
        for (; inner_key[j] >= least; ++j) add_product(ring, &table[place - inner_key[j]], c, inner[j]);
        job->cursor[i] = j;
        all += j - from;
        count_products(&job->unpolled, (j - from) * sum_share<R>());
    }
    return all;
}

// Write out the table of the stretch from lo up, and clear it.
template <class R>
void empty_table(flat_job<R> *job, std::uint64_t lo, std::uint64_t width, typename R::sum *table)
{
    for (std::uint64_t k = 0; k < width; ++k) {
        if (is_zero_sum(table[k])) continue;
        append_sum(job->ring, lo + (width - 1 - k), table[k], &job->out);
        table[k] = typename R::sum{};
    }
}

// One stretch from lo up, summed up in the table. Return the number of products, -1 without room.
template <class R>
std::int64_t table_stretch(flat_job<R> *job, std::uint64_t lo, std::uint64_t width, typename R::sum *table)
{
    if (!reserve_sums(job->work, &job->out, static_cast<std::int64_t>(width))) return -1;
    const std::int64_t products = fill_table(job, lo, width, table);
    if (products > 0) empty_table(job, lo, width, table);
    return products;
}

}  // namespace kelmar
