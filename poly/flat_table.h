#pragma once
// poly/flat_table.h -- a stretch of few cells, or with many products: it sums up in a table with a cell for
// each exponent.

#include <algorithm>
#include "poly/flat_job.h"

namespace kelmar {

// Whether the terms have every exponent of their range.
template <class R> bool without_gaps(const flat_terms<R> *p)
{
    return p->count > 0 && p->key[0] - p->key[p->count - 1] == static_cast<std::uint64_t>(p->count) - 1;
}

// Take s[-k] + c d[k] to s[-k] for all k < n.
template <class R>
void add_row(R ring, typename R::sum *s, typename R::coef c, const typename R::coef *d, std::int64_t n)
{
    for (std::int64_t k = 0; k < n; ++k) add_product(ring, s - k, c, d[k]);
}

// The same for doubles, two cells a step: each cell gets the same one product.
inline void add_row(real_ring, double *s, double c, const double *d, std::int64_t n)
{
    typedef double pair __attribute__((vector_size(16), aligned(8), may_alias));
    std::int64_t k = 0;
    for (; k + 4 <= n; k += 4) {
        pair *const high = reinterpret_cast<pair *>(s - k - 1);  // on purpose: auto would drop aligned(8)
        pair *const low = reinterpret_cast<pair *>(s - k - 3);
        *high += c * pair{d[k + 1], d[k]};
        *low += c * pair{d[k + 3], d[k + 2]};
    }
    for (; k < n; ++k) s[-k] += c * d[k];
}

// Add the products of the stretch from lo up to the table. Return their number.
template <class R> std::int64_t fill_table(flat_job<R> *job, std::uint64_t lo, typename R::sum *table)
{
    const std::uint64_t *const inner_key = job->inner.key;
    const typename R::coef *const inner = job->inner.coef;
    const R ring = job->ring;
    const bool dense = without_gaps(&job->inner);
    std::int64_t all = 0;
    for (std::int64_t i = job->first; i < job->reached; ++i) {
        const std::uint64_t least = least_inner(lo, job->rows.key[i]);
        const std::uint64_t shift = job->rows.key[i] - lo - 1;  // modulo 2^64: with a key it is a cell
        const typename R::coef c = job->rows.coef[i];
        const std::int64_t from = job->cursor[i];
        std::int64_t j = from;
        if (dense && inner_key[from] >= least) {
            const std::int64_t down = static_cast<std::int64_t>(inner_key[from] - least) + 1;
            j += std::min(down, job->inner.count - from);
            add_row(ring, &table[shift + inner_key[from]], c, inner + from, j - from);
        } else {
            for (; inner_key[j] >= least; ++j) add_product(ring, &table[shift + inner_key[j]], c, inner[j]);
        }
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
    for (std::uint64_t k = width; k-- > 0;) {
        if (is_zero_sum(table[k])) continue;
        append_sum(job->ring, lo + k, table[k], &job->out);
        table[k] = typename R::sum{};
    }
}

// One stretch from lo up, summed up in the table. Return the number of products, -1 without room.
template <class R>
std::int64_t table_stretch(flat_job<R> *job, std::uint64_t lo, std::uint64_t width, typename R::sum *table)
{
    if (!reserve_sums(job->work, &job->out, static_cast<std::int64_t>(width))) return -1;
    const std::int64_t products = fill_table(job, lo, table);
    if (products > 0) empty_table(job, lo, width, table);
    return products;
}

}  // namespace kelmar
