#pragma once
// poly/flat_collect.h -- a stretch that is wide and nearly empty: its products are collected, sorted and
// joined.

#include <algorithm>
#include "poly/flat_job.h"

namespace kelmar {

template <class R> struct sparse_product {
    std::uint64_t key;  // above the low end of the stretch
    typename R::sum sum;
};

// Collect the products of the stretch from lo up. Return their number, or -1 when they are more than `room`.
template <class R>
std::int64_t collect(flat_job<R> *job, std::uint64_t lo, sparse_product<R> *to, std::int64_t room)
{
    const std::uint64_t *const inner_key = job->inner.key;
    const typename R::coef *const inner = job->inner.coef;
    const R ring = job->ring;
    std::int64_t count = 0;
    for (std::int64_t i = job->first; i < job->reached; ++i) {
        const std::uint64_t least = least_inner(lo, job->rows.key[i]);
        const std::uint64_t shift = job->rows.key[i] - lo - 1;
        const typename R::coef c = job->rows.coef[i];
        std::int64_t j = job->cursor[i];
        for (; inner_key[j] >= least; ++j) {
            if (count == room) return -1;
            to[count].key = shift + inner_key[j];
            to[count].sum = typename R::sum{};
            add_product(ring, &to[count++].sum, c, inner[j]);
        }
        job->cursor[i] = j;
    }
    count_products(&job->unpolled, count * sum_share<R>());
    return count;
}

// Order p[0 .. n) by falling key.
template <class R> void sort_products(sparse_product<R> *p, std::int64_t n)
{
    if (n > 24) {
        std::sort(p, p + n,
                  [](const sparse_product<R> &x, const sparse_product<R> &y) { return x.key > y.key; });
        return;
    }
    for (std::int64_t i = 1; i < n; ++i) {
        const sparse_product<R> moved = p[i];
        std::int64_t k = i;
        for (; k > 0 && p[k - 1].key < moved.key; --k) p[k] = p[k - 1];
        p[k] = moved;
    }
}

// Write out p[0 .. n), equal keys joined.
template <class R>
void emit_joined(flat_job<R> *job, std::uint64_t lo, const sparse_product<R> *p, std::int64_t n)
{
    for (std::int64_t i = 0; i < n;) {
        const std::uint64_t key = p[i].key;
        typename R::sum s = p[i].sum;
        while (++i < n && p[i].key == key) add_sum(job->ring, &s, p[i].sum);
        append_sum(job->ring, lo + key, s, &job->out);
    }
}

// Sort and write out the n products of a stretch of `width` cells: by the leading bits of their keys into
// buckets of a few, then each bucket.
template <class R>
int empty_products(flat_job<R> *job, std::uint64_t lo, std::uint64_t width, sparse_product<R> *from,
                   std::int64_t n)
{
    const int all_bits = bits_of(width - 1), wanted = bits_of(static_cast<std::uint64_t>(n) / 2);
    const int shift = all_bits > wanted ? all_bits - wanted : 0;
    const std::size_t buckets = static_cast<std::size_t>((width - 1) >> shift) + 1;
    auto *start = static_cast<std::uint32_t *>(
        get_room(job->work, room_counts, (buckets + 1) * sizeof(std::uint32_t)));
    const std::size_t bytes = static_cast<std::size_t>(n) * sizeof(sparse_product<R>);
    auto *sorted = static_cast<sparse_product<R> *>(get_room(job->work, room_sorted, bytes));
    if (!start || !sorted) return 0;
    std::fill(start, start + buckets + 1, 0u);
    for (std::int64_t i = 0; i < n; ++i) ++start[buckets - 1 - (from[i].key >> shift) + 1];
    for (std::size_t k = 1; k <= buckets; ++k) start[k] += start[k - 1];
    for (std::int64_t i = 0; i < n; ++i) sorted[start[buckets - 1 - (from[i].key >> shift)]++] = from[i];
    std::int64_t begin = 0;  // start[k] is now where bucket k ends
    for (std::size_t k = 0; k < buckets; ++k) {
        sort_products(sorted + begin, start[k] - begin);
        begin = start[k];
    }
    emit_joined(job, lo, sorted, n);
    return 1;
}

}  // namespace kelmar
