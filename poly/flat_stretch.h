#pragma once
// poly/flat_stretch.h -- the product of two flat arrays, stretch by stretch.
//
// A stretch is summed up in a table or collected and sorted, by its width. Either way it fits the cache, and
// its terms come out in their final order. The width follows what the stretches hold.

#include <algorithm>
#include "poly/flat_collect.h"
#include "poly/flat_table.h"

namespace kelmar {

// One more than the greatest packed exponent that is still to come; 0 when all is done.
template <class R> std::uint64_t next_top(const flat_job<R> *job)
{
    std::uint64_t top = 0;
    for (std::int64_t i = job->first; i < job->rows.count; ++i) {
        if (job->cursor[i] == job->inner.count) continue;
        const std::uint64_t end = job->rows.key[i] + job->inner.key[job->cursor[i]];
        if (end > top) top = end;
        if (i >= job->reached) break;  // it has not begun, and those after it are lower
    }
    return top;
}

// The width of stretches: what makes a good table, and what holds a batch of products on the average.
struct flat_widths {
    std::uint64_t table, first;
};

template <class R> flat_widths choose_widths(std::uint64_t span, std::int64_t rows, std::int64_t inner)
{
    const std::int64_t least = std::max<std::int64_t>(1, flat_table_least / sum_share<R>());
    const std::int64_t most = std::max(least, flat_table_most / sum_share<R>());
    const double products = static_cast<double>(rows) * static_cast<double>(inner);
    const double all = static_cast<double>(span);
    const double a_row = 16 * all / static_cast<double>(inner);  // so that a row has 16 products a stretch
    double table = std::min(a_row, static_cast<double>(most));
    table = std::min(std::max(table, static_cast<double>(least)), all);
    double first = table;
    if (all > 8 * products) first = std::max(table, all / products * static_cast<double>(flat_batch) / 2);
    return {static_cast<std::uint64_t>(table), static_cast<std::uint64_t>(std::min(first, all))};
}

// Sum up all products from the top down. Declines (0) when the heap has no room.
template <class R> int run_stretches(flat_job<R> *job, std::uint64_t span)
{
    using sum = typename R::sum;
    const flat_widths widths = choose_widths<R>(span, job->rows.count, job->inner.count);
    const std::size_t cells = static_cast<std::size_t>(widths.table);
    job->batch = std::max<std::int64_t>(1, flat_batch / sum_share<R>());
    const std::size_t batch = static_cast<std::size_t>(job->batch);
    const std::size_t bytes = cells * sizeof(sum) + batch * sizeof(sparse_product<R>) + 16;
    char *const room = static_cast<char *>(get_room(job->work, room_products, bytes));
    if (!room) return 0;
    auto *const products = reinterpret_cast<sparse_product<R> *>(room);
    auto *const table = reinterpret_cast<sum *>(products + batch);
    std::fill(table, table + cells, sum{});

    std::uint64_t width = widths.first;
    for (std::uint64_t hi = next_top(job); hi > 0;) {
        const std::uint64_t lo = hi > width ? hi - width : 0;
        const std::uint64_t here = hi - lo;
        move_rows(job, lo);
        std::int64_t n = 0;
        if (here <= widths.table) {
            n = table_stretch(job, lo, here, table);
            if (n < 0) return 0;
            if (static_cast<std::uint64_t>(n) < here / 16) width *= 2;
        } else {
            std::copy(job->cursor + job->first, job->cursor + job->reached, job->kept_cursor + job->first);
            n = collect(job, lo, products, job->batch);
            if (n < 0) {  // too many: the same again, with half the width
                std::copy(job->kept_cursor + job->first, job->kept_cursor + job->reached,
                          job->cursor + job->first);
                width = std::max(here / 2, widths.table);
                continue;
            }
            if (n > 0 &&
                !(reserve_sums(job->work, &job->out, n) && empty_products(job, lo, here, products, n)))
                return 0;
            if (n < job->batch / 4 && width < span) width *= 2;
        }
        hi = n == 0 || lo == 0 ? next_top(job) : lo;
    }
    return 1;
}

}  // namespace kelmar
