// Questions about whole sparse matrices: empty ones, entries with denominators, rows that are heavy.
#include "matrix/sparse_tests.h"
#include <gtest/gtest.h>
#include "matrix/sparse_ops.h"
#include "poly/measure.h"
#include "tests/support/quolys.h"
#include "tests/support/views.h"

using namespace kelmar;
using namespace kelmar_test;

namespace {

struct SparseTests : testing::Test {
    static constexpr std::int32_t rows = 3000;  // two frames
    in_view live{view_float};
    sparse_frame *frames = nullptr;
    std::int32_t allnums = 7;
    SparseTests()
    {
        sparse_init(&frames, rows);
    }
    ~SparseTests() override
    {
        free_sparse(&frames, rows, 1);
    }
    void put(std::int32_t row, std::int32_t column, quolynode *q)
    {
        quoly_assign(q, sparse_zero_set(head_of_row(frames, row), column));
    }
};

TEST_F(SparseTests, AnEmptyMatrixHasNumbersAloneAndNoVariable)
{
    EXPECT_EQ(sparse_allpolys(frames, rows, &allnums), 1);
    EXPECT_EQ(allnums, 1);
    EXPECT_EQ(sparse_allnumbs(frames, rows), 1);
    EXPECT_EQ(sparse_polydepth(frames, rows), 16384);
    EXPECT_EQ(sparse_negexponents(frames, rows), 0);
    EXPECT_EQ(sparse_entries(frames, rows), 0);
    std::int32_t zero = 1;
    sparse_iszero(frames, rows, &zero);
    EXPECT_EQ(zero, 1);
}

TEST_F(SparseTests, NumbersHaveTheDepthOfConstants)
{
    value_operand five("{#5}");
    put(1, 1, five.q);
    put(rows, 2, five.q);
    EXPECT_EQ(sparse_allpolys(frames, rows, &allnums), 1);
    EXPECT_EQ(allnums, 1);
    EXPECT_EQ(sparse_polydepth(frames, rows), constant_depth);
    EXPECT_EQ(sparse_entries(frames, rows), 2);
}

TEST_F(SparseTests, TheLastRowIsSeenAsTheFirst)
{
    value_operand five("{#5}"), line("{1{#1}, #2}");
    put(1, 1, five.q);
    put(rows, 1, line.q);
    EXPECT_EQ(sparse_allpolys(frames, rows, &allnums), 1);
    EXPECT_EQ(allnums, 0);
    EXPECT_EQ(sparse_allnumbs(frames, rows), 0);
    EXPECT_EQ(sparse_polydepth(frames, rows), 1);
    std::int32_t zero = 1;
    sparse_iszero(frames, rows, &zero);
    EXPECT_EQ(zero, 0);
}

}  // namespace
