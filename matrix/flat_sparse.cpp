// matrix/flat_sparse.cpp -- products of sparse matrices of plain numbers that are words or doubles.
//
// The rows of the second operand are met in any order and many times, so its entries are laid out one behind
// the other: a row is then one or two lines of the cache, where each entry of a list is three. A row of the
// result is collected by column, in an array of sums.
#include "matrix/flat_sparse.h"
#include <algorithm>
#include <cstdlib>
#include "matrix/kept_room.h"
#include "numbers/dispatch.h"

namespace kelmar {

// The two rings ------------------------------------------------------------------------------------------

struct sparse_doubles {
    typedef double item;
    static double of(const number *n)
    {
        return n->real;
    }
    static void add_product(double *sum, double a, double b)
    {
        *sum += a * b;
    }
    static bool vanishes(double *sum)
    {
        return *sum == 0;
    }
    static void store(number *n, double v)
    {
        n->real = v;
    }
};

struct sparse_residues {
    typedef std::uint64_t item;
    static std::uint64_t of(const number *n)
    {
        return static_cast<std::uint32_t>(to_residue(n->word));
    }
    // *sum stays below the square of the modulus, which is below 2^62
    static void add_product(std::uint64_t *sum, std::uint64_t a, std::uint64_t b)
    {
        const std::uint64_t m = static_cast<std::uint32_t>(modulus);
        const std::uint64_t next = *sum + a * b;
        *sum = next >= m * m ? next - m * m : next;
    }
    static bool vanishes(std::uint64_t *sum)
    {
        *sum %= static_cast<std::uint32_t>(modulus);
        return *sum == 0;
    }
    static void store(number *n, std::uint64_t v)
    {
        n->word = static_cast<std::int32_t>(v);
    }
};

// Flat rows ----------------------------------------------------------------------------------------------

template <class ring> struct flat_entry {
    std::int32_t col;  // from 0
    typename ring::item value;
};

// default empty; the entries of the second operand, and where its rows begin; get_room; reset: never
static kept_room flat_entries, row_starts;

// The entries; -1 when one is no number.
static std::int64_t count_numbers(const sparse_frame *frames, std::int32_t rows)
{
    std::int64_t count = 0;
    row_walk w = {const_cast<sparse_frame *>(frames), 0, rows};
    while (colm **head = next_row(&w)) {
        for (const colm *node = *head; node; node = node->next, ++count) {
            if (!node->val->is_num) return -1;
        }
    }
    return count;
}

template <class ring> static void lay_out(const sparse_frame *frames, std::int32_t rows)
{
    auto *entries = static_cast<flat_entry<ring> *>(flat_entries.start);
    auto *starts = static_cast<std::int64_t *>(row_starts.start);
    std::int64_t count = 0;
    row_walk w = {const_cast<sparse_frame *>(frames), 0, rows};
    while (colm **head = next_row(&w)) {
        starts[w.row - 1] = count;
        for (const colm *node = *head; node; node = node->next)
            entries[count++] = {node->coord - 1, ring::of(node->val->num)};
    }
    starts[rows] = count;
}

// A row of the result ------------------------------------------------------------------------------------

// default empty; sums by column, those that are in use, which of them they are; get_room; reset: never
static kept_room column_sums, used_columns, column_marks;

template <class ring> struct row_sums_of {
    typename ring::item *sum;
    std::int32_t *used;
    unsigned char *mark;  // all zero between rows
    std::int32_t count;
};

template <class ring> static bool open_sums(row_sums_of<ring> *s, std::int32_t cols)
{
    const auto n = static_cast<std::size_t>(cols);
    s->sum = static_cast<typename ring::item *>(get_room(&column_sums, n * sizeof(typename ring::item)));
    s->used = static_cast<std::int32_t *>(get_room(&used_columns, n * sizeof(std::int32_t)));
    if (column_marks.bytes < n) {
        std::free(column_marks.start);
        column_marks.start = std::calloc(n, 1);
        column_marks.bytes = column_marks.start ? n : 0;
    }
    s->mark = static_cast<unsigned char *>(column_marks.start);
    s->count = 0;
    return s->sum && s->used && s->mark;
}

// Take the products of an entry with a row of the second operand in.
template <class ring>
static void collect(row_sums_of<ring> *s, typename ring::item x, const flat_entry<ring> *from,
                    const flat_entry<ring> *to)
{
    for (; from < to; ++from) {
        typename ring::item *const sum = &s->sum[from->col];
        if (!s->mark[from->col]) {
            s->mark[from->col] = 1;
            s->used[s->count++] = from->col;
            *sum = 0;
        }
        ring::add_product(sum, x, from->value);
    }
}

// Make a row of what was collected.
template <class ring> static void deliver(row_sums_of<ring> *s, colm **tail)
{
    std::sort(s->used, s->used + s->count);
    for (std::int32_t k = 0; k < s->count; ++k) {
        const std::int32_t col = s->used[k];
        s->mark[col] = 0;
        if (ring::vanishes(&s->sum[col])) continue;
        quolynode *q = nullptr;
        quoly_set(0, &q);
        ring::store(q->num, s->sum[col]);
        *tail = newcolm(col + 1, q);
        tail = &(*tail)->next;
    }
    s->count = 0;
}

// Products -----------------------------------------------------------------------------------------------

template <class ring>
static int product_in(const sparse_frame *a, const sparse_frame *b, sparse_frame *out, std::int32_t rows,
                      std::int32_t inner, std::int32_t cols, std::int64_t entries)
{
    row_sums_of<ring> sums;
    const std::size_t starts = (static_cast<std::size_t>(inner) + 1) * sizeof(std::int64_t);
    if (!get_room(&flat_entries, static_cast<std::size_t>(entries + 1) * sizeof(flat_entry<ring>)) ||
        !get_room(&row_starts, starts) || !open_sums(&sums, cols))
        return 0;
    lay_out<ring>(b, inner);
    const auto *flat = static_cast<const flat_entry<ring> *>(flat_entries.start);
    const auto *start = static_cast<const std::int64_t *>(row_starts.start);
    row_walk left = {const_cast<sparse_frame *>(a), 0, rows};
    row_walk target = {out, 0, rows};
    while (colm **head = next_row(&left)) {
        colm **tail = next_row(&target);
        for (const colm *node = *head; node; node = node->next) {
            const std::int64_t *const row = start + (node->coord - 1);
            collect(&sums, ring::of(node->val->num), flat + row[0], flat + row[1]);
        }
        deliver(&sums, tail);
    }
    return 1;
}

int flat_sparse_product(const sparse_frame *a, const sparse_frame *b, sparse_frame *out, std::int32_t rows,
                        std::int32_t inner, std::int32_t cols)
{
    const num_view view = live_view();
    if (view != view_float && view != view_modular) return 0;
    const std::int64_t entries = count_numbers(b, inner);
    if (entries < 0 || count_numbers(a, rows) < 0) return 0;
    if (view == view_modular) return product_in<sparse_residues>(a, b, out, rows, inner, cols, entries);
    return product_in<sparse_doubles>(a, b, out, rows, inner, cols, entries);
}

}  // namespace kelmar
