#pragma once
// poly/flat_stretch.h -- the product of two flat arrays, stretch by stretch.
//
// Every term of the shorter operand is a row: its products with the other operand, which fall in packed
// exponent. The range of the product is cut into stretches, from the top. In a stretch each row goes on
// from where it stopped. A stretch of few cells, or with many products, sums up in a table with a cell for
// each exponent; in one that is wide and nearly empty products are collected, sorted and joined. Either way
// a stretch fits the cache, and its terms come out in their final order. The width follows what the
// stretches hold.

#include <algorithm>
#include "poly/flat_dense.h"

namespace kelmar {

template <class R> struct sparse_product {
    std::uint64_t key;  // above the low end of the stretch
    typename R::sum sum;
};

// A product under way.
template <class R> struct flat_job {
    R ring;
    product_work *work;
    flat_terms<R> rows, inner;  // inner keys are one more than packed exponents, and a 0 ends them
    std::int64_t *cursor;       // by row: the next term of inner
    std::int64_t *kept_cursor;  // as it was when the stretch began
    std::int64_t first;         // rows before it are done
    std::int64_t reached;       // rows from here on have not begun
    flat_sums<R> out;
    std::int64_t batch;     // products collected before they are sorted
    std::int64_t unpolled;  // products since the last poll
};

#ifdef KELMAR_STORM
inline constexpr std::int64_t products_a_poll = 64;
#else
inline constexpr std::int64_t products_a_poll = std::int64_t{1} << 21;
#endif

// Stretches -------------------------------------------------------------------------------------------------

// How many times a sum is as long as two words, by which tables have fewer cells and polls
// fewer products.
template <class R> constexpr std::int64_t sum_share()
{
    return sizeof(typename R::sum) > 16 ? static_cast<std::int64_t>(sizeof(typename R::sum) / 16) : 1;
}

inline void count_products(std::int64_t *unpolled, std::int64_t products)
{
    *unpolled += products;
    if (*unpolled < products_a_poll) return;
    *unpolled = 0;
    poll_interrupt();
}

// The rows that reach down to lo begin; the rows that are done are passed.
template <class R> void move_rows(flat_job<R> *job, std::uint64_t lo)
{
    const std::uint64_t top = job->inner.key[0];  // one more than the packed exponent
    while (job->reached < job->rows.count && job->rows.key[job->reached] + top > lo) ++job->reached;
    while (job->first < job->reached && job->cursor[job->first] == job->inner.count) ++job->first;
}

// The least inner key whose product with the row of packed exponent `key` is in the stretch from lo up.
inline std::uint64_t least_inner(std::uint64_t lo, std::uint64_t key)
{
    return lo > key ? lo - key + 1 : 1;
}

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

// Output ------------------------------------------------------------------------------------------------

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

// The product -------------------------------------------------------------------------------------------

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

// One stretch from lo up, summed up in the table. Return the number of products, -1 without room.
template <class R>
std::int64_t table_stretch(flat_job<R> *job, std::uint64_t lo, std::uint64_t width, typename R::sum *table)
{
    if (!reserve_sums(job->work, &job->out, static_cast<std::int64_t>(width))) return -1;
    const std::int64_t products = fill_table(job, lo, table);
    if (products > 0) empty_table(job, lo, width, table);
    return products;
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

// The choice --------------------------------------------------------------------------------------------

// Gather p, in the room `k`, with `extra` more entries. Declines (0) when the heap has no room.
template <class R>
int gather(flat_job<R> *job, int k, const polynode *p, const flat_shape *shape, const flat_packing *packing,
           flat_terms<R> *to)
{
    const std::size_t n = static_cast<std::size_t>(shape->terms) + 1;
    auto *room = static_cast<std::uint64_t *>(
        get_room(job->work, k, n * (sizeof(std::uint64_t) + sizeof(typename R::coef))));
    if (!room) return 0;
    to->key = room;
    to->coef = reinterpret_cast<typename R::coef *>(room + n);
    to->count = 0;
    flat_operand o;
    set_operand(packing, shape, &o);
    gather_terms(job->ring, &o, p, 0, 0, to);
    return 1;
}

template <class R> int prepare_rows(flat_job<R> *job)
{
    const std::size_t n = static_cast<std::size_t>(job->rows.count);
    job->cursor = static_cast<std::int64_t *>(
        get_room(job->work, room_cursors, 2 * n * sizeof(std::int64_t)));
    if (!job->cursor) return 0;
    job->kept_cursor = job->cursor + n;
    std::fill(job->cursor, job->cursor + n, 0);
    for (std::int64_t j = 0; j < job->inner.count; ++j) ++job->inner.key[j];
    job->inner.key[job->inner.count] = 0;
    return 1;
}

template <class R>
int sum_up(flat_job<R> *job, const polynode *a, const polynode *b, const flat_shape *sa, const flat_shape *sb,
           const flat_packing *packing)
{
    if (sb->terms < sa->terms) {
        std::swap(a, b);
        std::swap(sa, sb);
    }
    if (!gather(job, room_rows, a, sa, packing, &job->rows)) return 0;
    if (!gather(job, room_inner, b, sb, packing, &job->inner)) return 0;
    if (dense_flat_product(job->ring, job->work, &job->rows, &job->inner, &job->out)) return 1;
    return prepare_rows(job) && run_stretches(job, packing->span);
}

template <class R>
[[gnu::noinline]] int flat_product(R ring, const polynode *a, const polynode *b, const flat_shape *sa,
                                   const flat_shape *sb, const flat_packing *packing, polynode **c)
{
    flat_job<R> job = {};
    job.ring = ring;
    job.work = open_work(__builtin_frame_address(0));
    const int done = sum_up(&job, a, b, sa, sb, packing);
    if (done) {
        polynode **const result = &job.work->parts[0];
        flat_reader<R> reader = {ring, packing, &job.out, 0};
        build_list(&reader, 0, 0, result);
        if (!*result) poly_set(0, result);
        *c = *result;
        *result = nullptr;
    }
    close_work(job.work);
    return done;
}

}  // namespace kelmar
