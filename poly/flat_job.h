#pragma once
// poly/flat_job.h -- a product of flat arrays under way: its rows, and how far each has come.
//
// Every term of the shorter operand is a row: its products with the other operand, which fall in packed
// exponent. The range of the product is taken in stretches, from the top; in a stretch each row goes on from
// where it stopped.

#include "poly/flat_terms.h"

namespace kelmar {

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

}  // namespace kelmar
