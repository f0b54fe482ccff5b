// matrix/flat_product.cpp -- products of matrices of plain numbers that are words or doubles.
//
// The operands are laid out as flat arrays and multiplied column by column, each column of the result a sum
// of multiples of the columns of a: the inner loop runs through memory in order, and sums are taken in the
// order of the definition.
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
        return q ? static_cast<std::uint32_t>(to_residue(q->num->word)) : 0;
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

// Flat arrays --------------------------------------------------------------------------------------------

// default empty; the operands, and a column of the result; get_room; reset: never
static kept_room flat_a, flat_b, flat_c;

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
