// Products of matrices: every method against the definition, in every view.
#include "matrix/product.h"
#include <gtest/gtest.h>
#include <string>
#include <vector>
#include "matrix/sparse_ops.h"
#include "matrix/sparse_product.h"
#include "matrix/sparse_tests.h"
#include "quoly/add.h"
#include "quoly/mul.h"
#include "tests/support/quolys.h"
#include "tests/support/views.h"

using namespace kelmar;
using namespace kelmar_test;

namespace {

struct table {
    std::vector<quolynode *> entry;
    std::int32_t rows, cols;
    table(std::int32_t r, std::int32_t c) : entry(static_cast<std::size_t>(r * c), nullptr), rows(r), cols(c)
    {
    }
    ~table()
    {
        for (quolynode *&q : entry) free_quoly(&q);
    }
    table(const table &) = delete;
    table &operator=(const table &) = delete;
    quolynode **at(std::int32_t i, std::int32_t j)
    {
        return &entry[static_cast<std::size_t>(i + j * rows)];
    }
};

void draw(test_random *r, table *t, bool polys, unsigned zeros)
{
    for (quolynode *&q : t->entry) {
        if (r->below(zeros) == 0) continue;
        if (polys && r->below(3) == 0) {
            const poly_shape shape;
            polynode *p = random_poly(r, shape);
            poly_to_quoly(&p, &q);
        } else {
            quoly_set(static_cast<std::int32_t>(r->below(19)), &q);
        }
    }
}

std::string text(const quolynode *q)
{
    return q ? value_text(q) : "{#0}";
}

void reference(table *a, table *b, table *c)
{
    quolynode *t = nullptr;
    for (std::int32_t i = 0; i < c->rows; ++i) {
        for (std::int32_t k = 0; k < c->cols; ++k) {
            quoly_set(0, c->at(i, k));
            for (std::int32_t j = 0; j < a->cols; ++j) {
                if (!*a->at(i, j) || !*b->at(j, k)) continue;
                quoly_mult(*a->at(i, j), *b->at(j, k), &t);
                best_quoly_add(c->at(i, k), &t);
            }
        }
    }
}

void expect_same(table *got, table *wanted, const char *what)
{
    for (std::size_t k = 0; k < wanted->entry.size(); ++k) {
        ASSERT_EQ(text(got->entry[k]), text(wanted->entry[k])) << what << " entry " << k;
    }
}

sparse_frame *sparse_of(table *t)
{
    array a = {};
    a.arr_rows = t->rows;
    a.arr_cols = t->cols;
    sparse_init(&a.arr_sparse, t->rows);
    standard_to_sparse(&a, t->entry.data(), t->cols, false);
    return a.arr_sparse;
}

void expect_sparse(const sparse_frame *frames, table *wanted, const char *what)
{
    EXPECT_TRUE(sparse_is_sound(frames, wanted->rows, wanted->cols));
    for (std::int32_t i = 0; i < wanted->rows; ++i) {
        for (std::int32_t k = 0; k < wanted->cols; ++k) {
            const quolynode *q = spar_retrieve(const_cast<sparse_frame *>(frames), i + 1, k + 1);
            ASSERT_EQ(text(q), text(*wanted->at(i, k))) << what;
        }
    }
}

void check_sparse(table *a, table *b, table *wanted)
{
    sparse_frame *left = sparse_of(a);
    sparse_frame *right = sparse_of(b);
    sparse_frame *out = nullptr;
    sparse_init(&out, a->rows);
    mult_sparses(left, right, out, a->rows, a->cols, b->cols);
    expect_sparse(out, wanted, "by rows of sums");
    free_sparse_data(out, a->rows);
    mult_by_rows(left, right, out, a->rows, a->cols, b->cols);
    expect_sparse(out, wanted, "by merges");
    free_sparse(&out, a->rows, 1);
    table mixed(a->rows, b->cols), other(a->rows, b->cols);
    mult_sparse_norm(left, b->entry.data(), mixed.entry.data(), a->rows, a->cols, b->cols);
    expect_same(&mixed, wanted, "sparse times dense");
    mult_norm_sparse(a->entry.data(), right, other.entry.data(), a->rows, a->cols, b->cols);
    expect_same(&other, wanted, "dense times sparse");
    free_sparse(&left, a->rows, 1);
    free_sparse(&right, b->rows, 1);
}

void check_products(test_random *r, bool polys, bool exact)
{
    const auto size = [&] { return 1 + static_cast<std::int32_t>(r->below(polys ? 4 : 12)); };
    const std::int32_t rows = size(), inner = size(), cols = size();
    table a(rows, inner), b(inner, cols), wanted(rows, cols), dense(rows, cols), pairs(rows, cols);
    draw(r, &a, polys, 3);
    draw(r, &b, polys, 3);
    reference(&a, &b, &wanted);
    std::int32_t filled = 0;
    dense_product(a.entry.data(), b.entry.data(), dense.entry.data(), &filled, rows, inner, cols);
    EXPECT_EQ(filled, rows * cols);
    expect_same(&dense, &wanted, "dense");
    if (exact) {
        filled = 0;
        fast_mat_mult(a.entry.data(), b.entry.data(), pairs.entry.data(), &filled, rows, inner, cols);
        expect_same(&pairs, &wanted, "by pairs");
    }
    check_sparse(&a, &b, &wanted);
}

TEST(Product, EveryMethodGivesTheDefinition)
{
    test_random r;
    SCOPED_TRACE("seed " + std::to_string(r.seed));
    for (num_view view : {view_float, view_modular, view_word, view_digits}) {
        in_view live(view);
        for (int round = 0; round < 60; ++round) {
            check_products(&r, false, true);
            check_products(&r, true, true);
        }
    }
}

TEST(Product, EveryModulusPrimeOrNot)
{
    test_random r;
    SCOPED_TRACE("seed " + std::to_string(r.seed));
    for (std::int32_t m : {2, 7, 100, 65534, 65535, 65536, 1000003, 2147483646, 2147483647}) {
        SCOPED_TRACE("modulus " + std::to_string(m));
        in_view live(view_modular, m);
        for (int round = 0; round < 20; ++round) {
            check_products(&r, false, true);
            check_products(&r, true, true);
        }
    }
    in_view live(view_field);
    for (int round = 0; round < 40; ++round) check_products(&r, false, true);
}

// What a built-in counts stands unreduced in its word, negative too.
TEST(Product, CountsAreTakenAsResidues)
{
    in_view live(view_modular, 7);
    table a(1, 6), b(6, 1), wanted(1, 1), out(1, 1);
    const std::int32_t words[] = {-5, INT32_MAX, INT32_MIN, 8, -1, 1000000007};
    for (std::size_t k = 0; k < 6; ++k) {
        quoly_set(1, &a.entry[k]);
        quoly_set(1, &b.entry[k]);
        a.entry[k]->num->word = words[k];
        b.entry[k]->num->word = words[5 - k];
    }
    std::int64_t sum = 0;
    for (std::size_t k = 0; k < 6; ++k) {
        sum += (std::int64_t{words[k]} % 7 + 7) % 7 * ((std::int64_t{words[5 - k]} % 7 + 7) % 7);
    }
    std::int32_t filled = 0;
    dense_product(a.entry.data(), b.entry.data(), out.entry.data(), &filled, 1, 6, 1);
    EXPECT_EQ(out.entry[0]->num->word, sum % 7);
    free_quoly(&out.entry[0]);
    filled = 0;
    fast_mat_mult(a.entry.data(), b.entry.data(), out.entry.data(), &filled, 1, 6, 1);
    EXPECT_EQ(out.entry[0]->num->word, sum % 7);
    reference(&a, &b, &wanted);
    EXPECT_EQ(wanted.entry[0]->num->word, sum % 7);
    check_sparse(&a, &b, &wanted);
}

// Up to 2^24 columns there is an array of sums; beyond, rows are merged.
TEST(Product, MoreColumnsThanSumsAreKeptFor)
{
    in_view live(view_float);
    for (std::int32_t cols : {1 << 24, (1 << 24) + 1}) {
        sparse_frame *a = nullptr, *b = nullptr, *out = nullptr;
        sparse_init(&a, 2);
        sparse_init(&b, 2);
        sparse_init(&out, 2);
        quoly_set(2, sparse_zero_set(head_of_row(a, 1), 1));
        quoly_set(3, sparse_zero_set(head_of_row(a, 1), 2));
        quoly_set(5, sparse_zero_set(head_of_row(b, 1), cols));
        quoly_set(7, sparse_zero_set(head_of_row(b, 2), 1));
        mult_sparses(a, b, out, 2, 2, cols);
        EXPECT_TRUE(sparse_is_sound(out, 2, cols));
        EXPECT_EQ(sparse_entries(out, 2), 2);
        EXPECT_EQ(spar_retrieve(out, 1, 1)->num->real, 21);
        EXPECT_EQ(spar_retrieve(out, 1, cols)->num->real, 10);
        free_sparse(&a, 2, 1);
        free_sparse(&b, 2, 1);
        free_sparse(&out, 2, 1);
    }
}

TEST(Product, LargeResiduesDoNotOverflow)
{
    in_view live(view_modular, 2147483629);
    table a(1, 50), b(50, 1), out(1, 1);
    for (quolynode *&q : a.entry) quoly_set(2147483628, &q);
    for (quolynode *&q : b.entry) quoly_set(2147483628, &q);
    std::int32_t filled = 0;
    dense_product(a.entry.data(), b.entry.data(), out.entry.data(), &filled, 1, 50, 1);
    EXPECT_EQ(out.entry[0]->num->word, 50);
}

TEST(Product, NotANumberIsNotSkippedAwayByZeros)
{
    in_view live(view_float);
    table a(1, 2), b(2, 1), out(1, 1);
    quoly_set(1, &a.entry[0]);
    quoly_set(0, &a.entry[1]);
    quoly_set(1, &b.entry[0]);
    quoly_set(1, &b.entry[1]);
    a.entry[0]->num->real = 1e308 * 10;
    std::int32_t filled = 0;
    dense_product(a.entry.data(), b.entry.data(), out.entry.data(), &filled, 1, 2, 1);
    EXPECT_GT(out.entry[0]->num->real, 1e308);
}

TEST(Product, InfiniteEntriesOfSparseMatrices)
{
    in_view live(view_float);
    table a(2, 2), b(2, 2);
    for (std::size_t k = 0; k < 4; ++k) {
        quoly_set(static_cast<std::int32_t>(k) + 1, &a.entry[k]);
        quoly_set(3 - static_cast<std::int32_t>(k), &b.entry[k]);  // one is 0: it has no node
    }
    a.entry[0]->num->real = 1e308 * 10;
    b.entry[1]->num->real = -1e308 * 10;
    sparse_frame *left = sparse_of(&a), *right = sparse_of(&b), *sums = nullptr, *merged = nullptr;
    sparse_init(&sums, 2);
    sparse_init(&merged, 2);
    mult_sparses(left, right, sums, 2, 2, 2);
    mult_by_rows(left, right, merged, 2, 2, 2);
    for (std::int32_t i = 1; i <= 2; ++i) {
        for (std::int32_t k = 1; k <= 2; ++k)
            EXPECT_EQ(text(spar_retrieve(sums, i, k)), text(spar_retrieve(merged, i, k)));
    }
    for (sparse_frame **frames : {&left, &right, &sums, &merged}) free_sparse(frames, 2, 1);
}

TEST(Product, EntriesThatCancelMakeNoNode)
{
    in_view live(view_float);
    table a(1, 2), b(2, 1), wanted(1, 1);
    quoly_set(1, &a.entry[0]);
    quoly_set(-1, &a.entry[1]);
    quoly_set(3, &b.entry[0]);
    quoly_set(3, &b.entry[1]);
    reference(&a, &b, &wanted);
    check_sparse(&a, &b, &wanted);
}

TEST(Product, AScalarOnASparseMatrix)
{
    in_view live(view_modular, 6);
    table a(2, 1);
    value_operand q;
    quoly_set(2, &a.entry[0]);
    quoly_set(1, &a.entry[1]);
    quoly_set(3, &q.q);
    sparse_frame *frames = sparse_of(&a);
    mult_cons_sparse(frames, 2, q.q);
    EXPECT_EQ(sparse_entries(frames, 2), 1);
    EXPECT_TRUE(sparse_is_sound(frames, 2, 1));
    free_sparse(&frames, 2, 1);
}

}  // namespace
