// matrix/flat_product.cpp -- products of matrices of plain numbers that are words or doubles.
//
// The operands are laid out as flat arrays and multiplied column by column, each column of the result a sum
// of multiples of the columns of a: the inner loop runs through memory in order, and sums are taken in the
// order of the definition. Of doubles two columns are made together, out of four columns of a in a pass, in
// lanes of two or four; no product is fused with a sum, so that every processor gives the same.
#include "matrix/flat_product.h"
#include <algorithm>
#include "matrix/kept_room.h"
#include "numbers/dispatch.h"

namespace kelmar {

// The two rings ------------------------------------------------------------------------------------------

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
    static void add_multiple(double *c, const double *a, double b, std::int32_t n)
    {
        for (std::int32_t i = 0; i < n; ++i) c[i] += a[i] * b;
    }
};

struct residue_ring {
    typedef std::uint64_t item;
    static std::uint64_t of(const quolynode *q)
    {
        return q ? static_cast<std::uint32_t>(to_residue(q->num->word)) : 0;
    }
    static void store(number *n, std::uint64_t v)
    {
        n->word = static_cast<std::int32_t>(v % static_cast<std::uint32_t>(modulus));
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

// Columns ------------------------------------------------------------------------------------------------

// One column of the result, or two that are neighbours.
template <class item> struct flat_columns {
    item *c;        // the first; the other one stands `rows` behind it
    const item *b;  // its factors; those of the other one stand `inner` behind them
    std::int32_t rows, inner, count;
};

// c += a[0] b[0] + a[1] b[1] + a[2] b[2] + a[3] b[3], the sums in this order, for whole blocks of the columns
// from place i on; a[k] stands k `rows` behind a. Return where they end.
template <class lanes, int columns>
[[gnu::always_inline]] static inline std::int32_t add_blocks(const flat_columns<double> *p, const double *a,
                                                             const double *b, std::int32_t i)
{
    typedef lanes block __attribute__((aligned(8), may_alias));
    constexpr std::int32_t width = sizeof(lanes) / sizeof(double);
    const std::int64_t n = p->rows;
    double *const c0 = p->c, *const c1 = c0 + (columns - 1) * n;
    const double *const other = b + (columns - 1) * std::int64_t{p->inner};
    const double b0[4] = {b[0], b[1], b[2], b[3]};  // on purpose: of b a store into c might change them
    const double b1[4] = {other[0], other[1], other[2], other[3]};
    for (; i + width <= n; i += width) {
        const lanes x0 = *reinterpret_cast<const block *>(a + i);
        const lanes x1 = *reinterpret_cast<const block *>(a + n + i);
        const lanes x2 = *reinterpret_cast<const block *>(a + 2 * n + i);
        const lanes x3 = *reinterpret_cast<const block *>(a + 3 * n + i);
        const lanes sum = *reinterpret_cast<const block *>(c0 + i);
        *reinterpret_cast<block *>(c0 + i) = (((sum + x0 * b0[0]) + x1 * b0[1]) + x2 * b0[2]) + x3 * b0[3];
        if (columns == 1) continue;
        const lanes sum1 = *reinterpret_cast<const block *>(c1 + i);
        *reinterpret_cast<block *>(c1 + i) = (((sum1 + x0 * b1[0]) + x1 * b1[1]) + x2 * b1[2]) + x3 * b1[3];
    }
    return i;
}

template <class lanes, int columns>
[[gnu::always_inline]] static inline void add_fours(const flat_columns<double> *p, const double *a)
{
    for (std::int32_t j = 0; j + 4 <= p->inner; j += 4) {
        const double *const four = a + std::int64_t{j} * p->rows;
        const std::int32_t i = add_blocks<lanes, columns>(p, four, p->b + j, 0);
        add_blocks<double, columns>(p, four, p->b + j, i);
    }
}

typedef double two_lanes __attribute__((vector_size(16)));
typedef double four_lanes __attribute__((vector_size(32)));

static void add_by_twos(const flat_columns<double> *p, const double *a)
{
    if (p->count == 2) {
        add_fours<two_lanes, 2>(p, a);
    } else {
        add_fours<two_lanes, 1>(p, a);
    }
}

#ifdef __x86_64__
[[gnu::target("avx2")]] static void add_by_fours(const flat_columns<double> *p, const double *a)
{
    if (p->count == 2) {
        add_fours<four_lanes, 2>(p, a);
    } else {
        add_fours<four_lanes, 1>(p, a);
    }
}
#endif

// Add to the columns what columns of a from j on give, one by one.
template <class ring>
static void add_rest(const flat_columns<typename ring::item> *p, const typename ring::item *a, std::int32_t j)
{
    for (; j < p->inner; ++j) {
        for (std::int32_t k = 0; k < p->count; ++k) {
            const typename ring::item factor = p->b[j + std::int64_t{k} * p->inner];
            if (factor == 0) continue;
            ring::add_multiple(p->c + std::int64_t{k} * p->rows, a + std::int64_t{j} * p->rows, factor,
                               p->rows);
        }
    }
}

static void fill_columns(double_ring, const flat_columns<double> *p, const double *a)
{
#ifdef __x86_64__
    if (__builtin_cpu_supports("avx2")) {
        add_by_fours(p, a);
    } else
#endif
        add_by_twos(p, a);
    add_rest<double_ring>(p, a, p->inner / 4 * 4);
}

static void fill_columns(residue_ring, const flat_columns<std::uint64_t> *p, const std::uint64_t *a)
{
    add_rest<residue_ring>(p, a, 0);
}

// Flat arrays --------------------------------------------------------------------------------------------

// default empty; the operands, and two columns of the result; get_room; reset: never
static kept_room flat_a, flat_b, flat_c;

template <class ring> static bool flatten(kept_room *room, quolynode *const *table, std::int64_t count)
{
    auto *flat = static_cast<typename ring::item *>(
        get_room(room, static_cast<std::size_t>(count) * sizeof(typename ring::item)));
    if (!flat) return false;
    for (std::int64_t k = 0; k < count; ++k) flat[k] = ring::of(table[k]);
    return true;
}

template <class ring>
static bool product_in(quolynode *const *a, quolynode *const *b, quolynode **out, std::int32_t *filled,
                       std::int32_t rows, std::int32_t inner, std::int32_t cols)
{
    typedef typename ring::item item;
    if (!flatten<ring>(&flat_a, a, std::int64_t{rows} * inner)) return false;
    if (!flatten<ring>(&flat_b, b, std::int64_t{inner} * cols)) return false;
    const std::size_t two_columns = 2 * static_cast<std::size_t>(rows) * sizeof(item);
    auto *c = static_cast<item *>(get_room(&flat_c, two_columns));
    if (!c) return false;
    flat_columns<item> at = {c, static_cast<const item *>(flat_b.start), rows, inner, 2};
    for (std::int32_t col = 0; col < cols; col += at.count, at.b += 2 * std::int64_t{inner}) {
        if (cols - col < 2) at.count = 1;
        std::fill(c, c + std::int64_t{rows} * at.count, item(0));
        fill_columns(ring{}, &at, static_cast<const item *>(flat_a.start));
        for (std::int64_t k = 0; k < std::int64_t{rows} * at.count; ++k) {
            quolynode *q = nullptr;
            quoly_set(0, &q);
            ring::store(q->num, c[k]);
            out[(*filled)++] = q;
        }
    }
    return true;
}

static bool all_numbers(quolynode *const *table, std::int64_t count)
{
    for (std::int64_t k = 0; k < count; ++k) {
        if (table[k] && !table[k]->is_num) return false;
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

int flat_product(quolynode *const *a, quolynode *const *b, quolynode **out, std::int32_t *filled,
                 std::int32_t rows, std::int32_t inner, std::int32_t cols)
{
    const std::int64_t na = std::int64_t{rows} * inner;
    const std::int64_t nb = std::int64_t{inner} * cols;
    const num_view view = live_view();
    if ((view != view_float && view != view_modular) || !all_numbers(a, na) || !all_numbers(b, nb)) return 0;
    if (view == view_modular) return product_in<residue_ring>(a, b, out, filled, rows, inner, cols);
    if (!all_finite(a, na) || !all_finite(b, nb)) return 0;
    return product_in<double_ring>(a, b, out, filled, rows, inner, cols);
}

}  // namespace kelmar
