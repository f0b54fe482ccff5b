// matrix/product.cpp -- products of matrices.
//
// Where all entries are plain numbers and numbers are words or doubles, the operands are laid out as flat
// arrays and multiplied column by column, each column of the result a sum of multiples of the columns of a:
// the inner loop runs through memory in order, and sums are taken in the order of the definition. A sparse
// product collects one row of the result at a time, by column, in an array of sums.
#include "matrix/product.h"
#include <algorithm>
#include <cstdlib>
#include <cstring>
#include "matrix/sparse_ops.h"
#include "matrix/sparse_order.h"
#include "matrix/sparse_tests.h"
#include "numbers/compare.h"
#include "numbers/dispatch.h"
#include "quoly/add.h"
#include "quoly/mul.h"
#include "session/report.h"

namespace kelmar {

// default null; a product on its way into a sum; add_product; reset: next use
static quolynode *scratch = nullptr;

// *sum = *sum + a b; a null sum is 0.
static void add_product(const quolynode *a, const quolynode *b, quolynode **sum)
{
    quoly_mult(a, b, &scratch);
    if (!*sum) {
        *sum = scratch;
        scratch = nullptr;
    } else {
        best_quoly_add(sum, &scratch);
    }
}

static inline bool is_zero_entry(const quolynode *q)
{
    return !q || quoly_iszero(q);
}

static bool all_numbers(quolynode *const *table, std::int64_t count)
{
    for (std::int64_t k = 0; k < count; ++k) {
        if (table[k] && !table[k]->is_num) return false;
    }
    return true;
}

// Flat arrays ---------------------------------------------------------------------------------------------

// A flat array that is kept from product to product; nothing polls while it is in use.
struct flat_room {
    void *start;
    std::size_t bytes;
};

// default empty; get_room; reset: never
static flat_room flat_a, flat_b, flat_c;

static void *get_room(flat_room *room, std::size_t bytes)
{
    if (room->bytes < bytes) {
        std::free(room->start);
        room->start = std::malloc(bytes);
        room->bytes = room->start ? bytes : 0;
    }
    return room->start;
}

struct double_ring {
    typedef double item;
    static double of(const quolynode *q)
    {
        return q ? q->num->real : 0.0;
    }
    static void store(number *n, double v)
    {
        n->real = v == 0 ? 0.0 : v;  // on purpose: no zero has a sign
    }
    static constexpr std::int32_t together = 4;  // columns of a that one pass adds

    // c += b[0] a + b[1] (a + n) + ..., the sums in this order
    static void add_multiples(double *c, const double *a, const double *b, std::int32_t n)
    {
        typedef double pair __attribute__((vector_size(16), aligned(8), may_alias));
        const double *const a1 = a + n, *const a2 = a1 + n, *const a3 = a2 + n;
        std::int32_t i = 0;
        for (; i + 1 < n; i += 2) {
            pair sum = *reinterpret_cast<const pair *>(c + i);
            sum += *reinterpret_cast<const pair *>(a + i) * b[0];
            sum += *reinterpret_cast<const pair *>(a1 + i) * b[1];
            sum += *reinterpret_cast<const pair *>(a2 + i) * b[2];
            sum += *reinterpret_cast<const pair *>(a3 + i) * b[3];
            *reinterpret_cast<pair *>(c + i) = sum;
        }
        for (; i < n; ++i) c[i] = (((c[i] + a[i] * b[0]) + a1[i] * b[1]) + a2[i] * b[2]) + a3[i] * b[3];
    }
    static void add_multiple(double *c, const double *a, double b, std::int32_t n)
    {
        for (std::int32_t i = 0; i < n; ++i) c[i] += a[i] * b;
    }
};

struct residue_ring {
    typedef std::uint64_t item;
    static std::uint64_t of(const quolynode *q)
    {
        return q ? static_cast<std::uint32_t>(q->num->word) : 0;
    }
    static void store(number *n, std::uint64_t v)
    {
        n->word = static_cast<std::int32_t>(v % static_cast<std::uint32_t>(modulus));
    }
    static constexpr std::int32_t together = 1;
    static void add_multiples(std::uint64_t *, const std::uint64_t *, const std::uint64_t *, std::int32_t)
    {
    }
    // c stays below the square of the modulus, which is below 2^62
    static void add_multiple(std::uint64_t *c, const std::uint64_t *a, std::uint64_t b, std::int32_t n)
    {
        const std::uint64_t m = static_cast<std::uint32_t>(modulus);
        const std::uint64_t square = m * m;
        for (std::int32_t i = 0; i < n; ++i) {
            const std::uint64_t sum = c[i] + a[i] * b;
            c[i] = sum >= square ? sum - square : sum;
        }
    }
};

// The product of one column, out of flat arrays: c = a b[.., col].
template <class ring>
static void flat_column(const typename ring::item *a, const typename ring::item *b, typename ring::item *c,
                        std::int32_t rows, std::int32_t inner)
{
    std::fill(c, c + rows, typename ring::item(0));
    std::int32_t j = 0;
    for (; ring::together > 1 && j + ring::together <= inner; j += ring::together) {
        ring::add_multiples(c, a + std::int64_t{j} * rows, b + j, rows);
    }
    for (; j < inner; ++j) {
        if (b[j] != 0) ring::add_multiple(c, a + std::int64_t{j} * rows, b[j], rows);
    }
}

template <class ring> static bool flatten(flat_room *room, quolynode *const *table, std::int64_t count)
{
    auto *flat = static_cast<typename ring::item *>(
        get_room(room, static_cast<std::size_t>(count) * sizeof(typename ring::item)));
    if (!flat) return false;
    for (std::int64_t k = 0; k < count; ++k) flat[k] = ring::of(table[k]);
    return true;
}

template <class ring>
static bool flat_product(quolynode *const *a, quolynode *const *b, quolynode **out, std::int32_t *filled,
                         std::int32_t rows, std::int32_t inner, std::int32_t cols)
{
    typedef typename ring::item item;
    if (!flatten<ring>(&flat_a, a, std::int64_t{rows} * inner)) return false;
    if (!flatten<ring>(&flat_b, b, std::int64_t{inner} * cols)) return false;
    auto *c = static_cast<item *>(get_room(&flat_c, static_cast<std::size_t>(rows) * sizeof(item)));
    if (!c) return false;
    for (std::int32_t col = 0; col < cols; ++col) {
        flat_column<ring>(static_cast<const item *>(flat_a.start),
                          static_cast<const item *>(flat_b.start) + std::int64_t{col} * inner, c, rows,
                          inner);
        for (std::int32_t row = 0; row < rows; ++row) {
            quolynode *q = nullptr;
            quoly_set(0, &q);
            ring::store(q->num, c[row]);
            out[(*filled)++] = q;
        }
    }
    return true;
}

// A product that is not finite leaves the order of skipped zeros visible: nan * 0 is nan.
static bool all_finite(quolynode *const *table, std::int64_t count)
{
    for (std::int64_t k = 0; k < count; ++k) {
        if (table[k] && !(table[k]->num->real - table[k]->num->real == 0.0)) return false;
    }
    return true;
}

// Dense products --------------------------------------------------------------------------------------------

// The sum of products for one entry; null factors are skipped.
static void dense_entry(quolynode *const *row, std::int32_t stride, quolynode *const *column,
                        std::int32_t inner, quolynode **sum)
{
    for (std::int32_t j = 0; j < inner; ++j) {
        const quolynode *x = row[std::int64_t{j} * stride];
        if (is_zero_entry(x) || is_zero_entry(column[j])) continue;
        add_product(x, column[j], sum);
    }
    if (!*sum) quoly_set(0, sum);
}

void dense_product(quolynode *const *a, quolynode *const *b, quolynode **out, std::int32_t *filled,
                   std::int32_t rows, std::int32_t inner, std::int32_t cols)
{
    const std::int64_t na = std::int64_t{rows} * inner;
    const std::int64_t nb = std::int64_t{inner} * cols;
    const num_view view = live_view();
    if ((view == view_float || view == view_modular) && all_numbers(a, na) && all_numbers(b, nb)) {
        if (view == view_modular && flat_product<residue_ring>(a, b, out, filled, rows, inner, cols)) return;
        if (view == view_float && all_finite(a, na) && all_finite(b, nb) &&
            flat_product<double_ring>(a, b, out, filled, rows, inner, cols)) {
            return;
        }
    }
    for (std::int32_t col = 0; col < cols; ++col) {
        for (std::int32_t row = 0; row < rows; ++row) {
            poll_interrupt();
            quolynode **sum = &out[*filled];
            *sum = nullptr;
            ++*filled;
            dense_entry(a + row, rows, b + std::int64_t{col} * inner, inner, sum);
        }
    }
}

// By pairs ------------------------------------------------------------------------------------------------

// The two sums that make one factor of a pair, and the sum of the corrections.
// default null; fast_mat_mult; reset: next use
static quolynode *left_sum = nullptr;
static quolynode *right_sum = nullptr;

static const quolynode *value_of(const quolynode *q)
{
    if (q) return q;
    quoly_set(0, &quol_num_0);
    return quol_num_0;
}

// *sum = the sum over the pairs of x[2j] x[2j + 1].
static void pair_products(quolynode *const *x, std::int32_t stride, std::int32_t inner, quolynode **sum)
{
    *sum = nullptr;
    for (std::int32_t j = 0; j + 1 < inner; j += 2) {
        const quolynode *p = x[std::int64_t{j} * stride];
        const quolynode *q = x[std::int64_t{j + 1} * stride];
        if (!is_zero_entry(p) && !is_zero_entry(q)) add_product(p, q, sum);
    }
    if (!*sum) quoly_set(0, sum);
}

static void pair_entry(quolynode *const *row, std::int32_t stride, quolynode *const *column,
                       std::int32_t inner, quolynode **sum)
{
    std::int32_t j = 0;
    quoly_set(0, sum);
    for (; j + 1 < inner; j += 2) {
        quoly_add(value_of(row[std::int64_t{j} * stride]), value_of(column[j + 1]), &left_sum);
        quoly_add(value_of(row[std::int64_t{j + 1} * stride]), value_of(column[j]), &right_sum);
        add_product(left_sum, right_sum, sum);
    }
    if (j < inner) add_product(value_of(row[std::int64_t{j} * stride]), value_of(column[j]), sum);
}

// The sums of pairs of each row, and of the column at hand, behind them.
struct pair_sums {
    quolynode **sum;
    std::int32_t count;  // filled; 0: nobody uses them
};

// default empty; fast_mat_mult; reset: unwind
static pair_sums pairs;

static void free_pairs()
{
    for (std::int32_t k = 0; k < pairs.count; ++k) free_quoly(&pairs.sum[k]);
    std::free(pairs.sum);
    pairs = {};
}

static bool get_pairs(std::int32_t count)
{
    if (pairs.count) return false;
    pairs.sum = static_cast<quolynode **>(std::calloc(static_cast<std::size_t>(count), sizeof(quolynode *)));
    pairs.count = pairs.sum ? count : 0;
    return pairs.sum != nullptr;
}

void fast_mat_mult(quolynode *const *a, quolynode *const *b, quolynode **out, std::int32_t *filled,
                   std::int32_t rows, std::int32_t inner, std::int32_t cols)
{
    if (!get_pairs(rows + 1)) {
        dense_product(a, b, out, filled, rows, inner, cols);
        return;
    }
    for (std::int32_t row = 0; row < rows; ++row) pair_products(a + row, rows, inner, &pairs.sum[row]);
    for (std::int32_t col = 0; col < cols; ++col) {
        quolynode *const *column = b + std::int64_t{col} * inner;
        free_quoly(&pairs.sum[rows]);
        pair_products(column, 1, inner, &pairs.sum[rows]);
        for (std::int32_t row = 0; row < rows; ++row) {
            quolynode **sum = &out[*filled];
            *sum = nullptr;
            ++*filled;
            poll_interrupt();
            pair_entry(a + row, rows, column, inner, sum);
            better_quoly_sub(sum, pairs.sum[row]);
            better_quoly_sub(sum, pairs.sum[rows]);
        }
    }
    free_pairs();
}

// Sparse products -----------------------------------------------------------------------------------------

static constexpr std::int32_t most_counted = 1 << 24;  // columns for which an array of sums is made

// The row of the result that is being collected: sums by column, and the columns that have one.
struct row_sums {
    quolynode **sum;
    std::int32_t *touched;
    std::int32_t room, count;
    std::int32_t busy;  // a product that waits uses it
};

// default empty; mult_sparses; reset: unwind
static row_sums sums;

static bool get_sums(std::int32_t cols)
{
    if (cols <= sums.room) return true;
    std::free(sums.sum);
    std::free(sums.touched);
    sums.room = 0;
    sums.sum = static_cast<quolynode **>(std::calloc(static_cast<std::size_t>(cols), sizeof(quolynode *)));
    sums.touched = static_cast<std::int32_t *>(
        std::malloc(static_cast<std::size_t>(cols) * sizeof(std::int32_t)));
    if (!sums.sum || !sums.touched) return false;
    sums.room = cols;
    return true;
}

static void forget_sums()
{
    for (std::int32_t k = 0; k < sums.count; ++k) free_quoly(&sums.sum[sums.touched[k]]);
    sums.count = 0;
    sums.busy = 0;
}

// Take the products of an entry with a row of the other operand in.
static void collect(const quolynode *x, const colm *row)
{
    for (; row; row = row->next) {
        quolynode **sum = &sums.sum[row->coord - 1];
        if (!*sum) sums.touched[sums.count++] = row->coord - 1;
        add_product(x, row->val, sum);
    }
}

// Make a row of what was collected.
static void deliver(colm **tail)
{
    std::sort(sums.touched, sums.touched + sums.count);
    for (std::int32_t k = 0; k < sums.count; ++k) {
        const std::int32_t col = sums.touched[k];
        quolynode *value = sums.sum[col];
        sums.sum[col] = nullptr;
        if (quoly_iszero(value)) {
            free_quoly(&value);
            continue;
        }
        *tail = newcolm(col + 1, value);
        tail = &(*tail)->next;
    }
    sums.count = 0;
}

// The heads of the rows of b, by number, in a flat array that lives as long as the product.
static const colm **index_rows(const sparse_frame *b, std::int32_t rows)
{
    auto **heads = static_cast<const colm **>(
        get_room(&flat_a, static_cast<std::size_t>(rows) * sizeof(colm *)));
    row_walk w = {const_cast<sparse_frame *>(b), 0, rows};
    if (!heads) return nullptr;
    while (colm **head = next_row(&w)) heads[w.row - 1] = *head;
    return heads;
}

// Products of numbers alone do not poll, so their rows may be indexed. Others find a row by its frame.
static void counted_product(const sparse_frame *a, const sparse_frame *b, sparse_frame *out,
                            std::int32_t rows, std::int32_t inner)
{
    const bool numbers = sparse_allnumbs(a, rows) && sparse_allnumbs(b, inner);
    row_walk left = {const_cast<sparse_frame *>(a), 0, rows};
    row_walk target = {out, 0, rows};
    const colm **heads = numbers ? index_rows(b, inner) : nullptr;
    sums.busy = 1;
    while (colm **head = next_row(&left)) {
        colm **tail = next_row(&target);
        for (const colm *node = *head; node; node = node->next) {
            const colm *row = heads ? heads[node->coord - 1]
                                    : *head_of_row(const_cast<sparse_frame *>(b), node->coord);
            if (!heads) poll_interrupt();
            collect(node->val, row);
        }
        deliver(tail);
    }
    sums.busy = 0;
}

void mult_sparses(const sparse_frame *a, const sparse_frame *b, sparse_frame *out, std::int32_t rows,
                  std::int32_t inner, std::int32_t cols)
{
    if (cols <= most_counted && !sums.busy && get_sums(cols)) {
        counted_product(a, b, out, rows, inner);
    } else {
        mult_by_rows(a, b, out, rows, inner, cols);
    }
}

// *sum = the dot product of two rows; null when no columns meet.
static void merge_product(const colm *x, const colm *y, quolynode **sum)
{
    while (x && y) {
        if (x->coord == y->coord) {
            add_product(x->val, y->val, sum);
            x = x->next;
            y = y->next;
        } else if (x->coord < y->coord) {
            x = x->next;
        } else {
            y = y->next;
        }
    }
}

static void multiply_by_view(const sparse_frame *a, sparse_frame *view, sparse_frame *out, std::int32_t rows,
                             std::int32_t cols)
{
    row_walk left = {const_cast<sparse_frame *>(a), 0, rows};
    row_walk target = {out, 0, rows};
    while (colm **head = next_row(&left)) {
        colm **tail = next_row(&target);
        if (!*head) continue;
        row_walk right = {view, 0, cols};
        while (colm **other = next_row(&right)) {
            quolynode *sum = nullptr;
            merge_product(*head, *other, &sum);
            if (sum && quoly_iszero(sum)) free_quoly(&sum);
            if (!sum) continue;
            *tail = newcolm(right.row, sum);
            tail = &(*tail)->next;
        }
    }
}

// default null; the view that a product by merges has made, and its rows; mult_by_rows; reset: unwind
static sparse_frame *open_view = nullptr;
static std::int32_t open_rows = 0;

static void close_view()
{
    free_sparse_frame(&open_view, open_rows);
}

void mult_by_rows(const sparse_frame *a, const sparse_frame *b, sparse_frame *out, std::int32_t rows,
                  std::int32_t inner, std::int32_t cols)
{
    sparse_frame *view = nullptr;
    const bool first = !open_view;
    flip_sparse(b, &view, inner, cols);
    if (first) {
        open_view = view;
        open_rows = cols;
    }
    multiply_by_view(a, view, out, rows, cols);
    if (first) {
        close_view();
    } else {
        free_sparse_frame(&view, cols);
    }
}

void products_on_unwind()
{
    forget_sums();
    free_pairs();
    close_view();
}

// Mixed products --------------------------------------------------------------------------------------------

static void fill_zeros(quolynode **out, std::int64_t count)
{
    for (std::int64_t k = 0; k < count; ++k) {
        if (!out[k]) quoly_set(0, &out[k]);
    }
}

void mult_sparse_norm(const sparse_frame *a, quolynode *const *b, quolynode **out, std::int32_t rows,
                      std::int32_t inner, std::int32_t cols)
{
    row_walk w = {const_cast<sparse_frame *>(a), 0, rows};
    while (colm **head = next_row(&w)) {
        poll_interrupt();
        for (const colm *node = *head; node; node = node->next) {
            for (std::int32_t col = 0; col < cols; ++col) {
                const quolynode *y = b[node->coord - 1 + std::int64_t{col} * inner];
                if (!is_zero_entry(y)) add_product(node->val, y, &out[w.row - 1 + std::int64_t{col} * rows]);
            }
        }
    }
    fill_zeros(out, std::int64_t{rows} * cols);
}

void mult_norm_sparse(quolynode *const *a, const sparse_frame *b, quolynode **out, std::int32_t rows,
                      std::int32_t inner, std::int32_t cols)
{
    row_walk w = {const_cast<sparse_frame *>(b), 0, inner};
    while (colm **head = next_row(&w)) {
        poll_interrupt();
        quolynode *const *column = a + std::int64_t{w.row - 1} * rows;
        for (const colm *node = *head; node; node = node->next) {
            quolynode **target = out + std::int64_t{node->coord - 1} * rows;
            for (std::int32_t row = 0; row < rows; ++row) {
                if (!is_zero_entry(column[row])) add_product(column[row], node->val, &target[row]);
            }
        }
    }
    fill_zeros(out, std::int64_t{rows} * cols);
}

void mult_cons_sparse(sparse_frame *frames, std::int32_t rows, const quolynode *q)
{
    row_walk w = {frames, 0, rows};
    while (colm **head = next_row(&w)) {
        for (colm **link = head; *link;) {
            fast_quoly_mult(&(*link)->val, q);
            if (quoly_iszero((*link)->val)) {
                free_colm(link);
            } else {
                link = &(*link)->next;
            }
        }
    }
}

}  // namespace kelmar
