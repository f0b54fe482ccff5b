// matrix/product.cpp -- products of dense matrices.
//
// Matrices of plain numbers go to flat arrays. Others follow the definition, or pair the inner products: with
// the sums of the products within a row and within a column in hand, one product of two sums serves for two.
#include "matrix/product.h"
#include <cstdlib>
#include "matrix/entry_product.h"
#include "matrix/flat_product.h"
#include "matrix/sparse.h"
#include "session/report.h"

namespace kelmar {

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
    if (flat_product(a, b, out, filled, rows, inner, cols)) return;
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
        quoly_add(entry_or_zero(row[std::int64_t{j} * stride]), entry_or_zero(column[j + 1]), &left_sum);
        quoly_add(entry_or_zero(row[std::int64_t{j + 1} * stride]), entry_or_zero(column[j]), &right_sum);
        add_product(left_sum, right_sum, sum);
    }
    if (j < inner) add_product(entry_or_zero(row[std::int64_t{j} * stride]), entry_or_zero(column[j]), sum);
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

void products_on_unwind()
{
    free_pairs();
}

}  // namespace kelmar
