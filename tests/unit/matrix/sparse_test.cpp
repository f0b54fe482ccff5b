// Sparse matrices: single entries and whole-matrix operations against maps from places to values.
#include "matrix/sparse.h"
#include <gtest/gtest.h>
#include <map>
#include <string>
#include <vector>
#include "matrix/array_rings.h"
#include "matrix/limits.h"
#include "matrix/pins.h"
#include "matrix/sparse_ops.h"
#include "matrix/sparse_order.h"
#include "matrix/sparse_tests.h"
#include "numbers/word_mod.h"
#include "poly/measure.h"
#include "quoly/mass.h"
#include "quoly/ring_change.h"
#include "storage/mass.h"
#include "tests/support/by_build.h"
#include "tests/support/quolys.h"
#include "tests/support/reports.h"
#include "tests/support/views.h"

using namespace kelmar;
using namespace kelmar_test;

namespace {

constexpr int rounds = by_build(10000, 100000);

using place = std::pair<std::int32_t, std::int32_t>;  // row, column, from 1
using model = std::map<place, double>;

struct sparse_operand {
    sparse_frame *frames = nullptr;
    std::int32_t rows, cols;
    sparse_operand(std::int32_t r, std::int32_t c) : rows(r), cols(c)
    {
        sparse_init(&frames, r);
    }
    ~sparse_operand()
    {
        free_sparse(&frames, rows, 1);
    }
    sparse_operand(const sparse_operand &) = delete;
    sparse_operand &operator=(const sparse_operand &) = delete;
};

double value_of(const quolynode *q)
{
    return lintmode && !flotemode ? q->num->word : q->num->real;
}

model read(const sparse_frame *frames, std::int32_t rows)
{
    model m;
    row_walk w = {const_cast<sparse_frame *>(frames), 0, rows};
    while (colm **head = next_row(&w)) {
        for (const colm *node = *head; node; node = node->next) m[{w.row, node->coord}] = value_of(node->val);
    }
    return m;
}

void set_entry(sparse_frame *frames, std::int32_t row, std::int32_t col, std::int32_t v)
{
    colm **head = head_of_row(frames, row);
    colm **link = column_link(head, col);
    if (*link && (*link)->coord == col) free_colm(link);
    if (v) quoly_set(v, sparse_zero_set(head, col));
}

// Random entries; the model is the same matrix.
model fill(test_random *r, sparse_operand *s, int count)
{
    for (int k = 0; k < count; ++k) {
        set_entry(s->frames, 1 + static_cast<std::int32_t>(r->below(static_cast<std::uint64_t>(s->rows))),
                  1 + static_cast<std::int32_t>(r->below(static_cast<std::uint64_t>(s->cols))),
                  static_cast<std::int32_t>(r->below(9)) - 4);
    }
    return read(s->frames, s->rows);
}

std::int64_t colms_out()
{
    std::int64_t out = colmstash->slugs_used;
    for (const colm *node = colm_garb; node; node = node->next) --out;
    return out;
}

// Nodes and values that a test takes are given back.
struct sparse_audit {
    in_view live{view_float};
    std::int64_t nodes = colms_out();
    std::int64_t quolys = live_quolys();
    ~sparse_audit()
    {
        free_quoly(&quol_num_0);
        EXPECT_EQ(colms_out(), nodes);
        EXPECT_EQ(live_quolys(), quolys);
    }
};

// Entries -----------------------------------------------------------------------------------------------

TEST(Sparse, TheLastRowOfAFrameAndTheFirstOfTheNext)
{
    sparse_audit audit;
    sparse_operand s(2049, 3);
    ASSERT_NE(s.frames->frame_next, nullptr);
    EXPECT_EQ(s.frames->frame_next->frame_next, nullptr);
    set_entry(s.frames, 2048, 1, 5);
    set_entry(s.frames, 2049, 3, 6);
    EXPECT_EQ(s.frames->row_head[2047]->val->num->real, 5);
    EXPECT_EQ(s.frames->frame_next->row_head[0]->val->num->real, 6);
    EXPECT_TRUE(sparse_is_sound(s.frames, 2049, 3));
    sparse_operand one(2048, 3);
    EXPECT_EQ(one.frames->frame_next, nullptr);
}

TEST(Sparse, AFrameThatWasGivenBackIsTakenAgain)
{
    sparse_frame *first = nullptr, *second = nullptr;
    newsparse(&first);
    give_frame(first);
    newsparse(&second);
    EXPECT_EQ(second, first);
    give_frame(second);
}

TEST(Sparse, AnAbsentEntryReadsAsZero)
{
    sparse_audit audit;
    sparse_operand s(3, 3);
    set_entry(s.frames, 2, 2, 5);
    EXPECT_EQ(value_of(spar_retrieve(s.frames, 2, 2)), 5);
    EXPECT_EQ(value_of(spar_retrieve(s.frames, 2, 1)), 0);
    EXPECT_EQ(value_of(spar_retrieve(s.frames, 3, 3)), 0);
}

TEST(Sparse, TheColumnCursorGoesFromFrameToFrame)
{
    sparse_audit audit;
    sparse_operand s(2050, 2);
    set_entry(s.frames, 2047, 2, 1);
    set_entry(s.frames, 2048, 2, 2);
    set_entry(s.frames, 2050, 2, 3);
    sparse_frame *frame = s.frames;
    colm **slot = &frame->row_head[2046];
    std::vector<double> seen;
    for (std::int32_t i = 2047; i <= 2050; ++i) {
        quolynode **q = get_sparse(i, 2, &slot, &frame);
        seen.push_back(q ? value_of(*q) : 0);
    }
    EXPECT_EQ(seen, (std::vector<double>{1, 2, 0, 3}));
}

TEST(Sparse, TheColumnCursorStaysWhereTheLastFrameEnds)
{
    sparse_audit audit;
    sparse_operand s(2048, 2);
    set_entry(s.frames, 2048, 2, 9);
    sparse_frame *frame = s.frames;
    colm **slot = head_of_row(s.frames, 2048);
    quolynode **q = get_sparse(2048, 2, &slot, &frame);
    ASSERT_NE(q, nullptr);
    EXPECT_EQ(value_of(*q), 9);
    EXPECT_EQ(frame, s.frames);
    EXPECT_EQ(slot, head_of_row(s.frames, 2048));
}

TEST(Sparse, AChainPutBackIntoItselfStays)
{
    sparse_audit audit;
    sparse_operand s(3, 3);
    set_entry(s.frames, 2, 3, 4);
    put_back_sparse(s.frames, s.frames, 3);
    EXPECT_EQ(sparse_entries(s.frames, 3), 1);
    EXPECT_EQ(value_of(spar_retrieve(s.frames, 2, 3)), 4);
}

TEST(Sparse, TheDiagonalCursorNeedsItsEntry)
{
    sparse_audit audit;
    sparse_operand s(3, 3);
    set_entry(s.frames, 1, 1, 4);
    set_entry(s.frames, 2, 3, 4);
    sparse_frame *frame = s.frames;
    quolynode **q = nullptr;
    sparse_qq_set(1, &frame, &q);
    ASSERT_NE(q, nullptr);
    EXPECT_EQ(value_of(*q), 4);
    const auto report = [&](std::int32_t row) { return report_of([&] { sparse_qq_set(row, &frame, &q); }); };
    EXPECT_NE(report(2).find("bad t in sparse_qq_set, 2."), std::string::npos);
    EXPECT_EQ(q, nullptr);
    EXPECT_NE(report(3).find("bad t in sparse_qq_set, 1."), std::string::npos);
    EXPECT_EQ(q, nullptr);
}

TEST(Sparse, TheDiagonalCursorGoesFromFrameToFrame)
{
    sparse_audit audit;
    sparse_operand s(2049, 2049);
    quolynode **q = nullptr;
    for (std::int32_t k : {2047, 2048, 2049}) set_entry(s.frames, k, k, k);
    sparse_frame *frame = s.frames;
    for (std::int32_t k : {2047, 2048, 2049}) {
        EXPECT_EQ(frame, k < 2049 ? s.frames : s.frames->frame_next);
        sparse_qq_set(k, &frame, &q);
        ASSERT_NE(q, nullptr);
        EXPECT_EQ(value_of(*q), k);
    }
}

TEST(Sparse, MachineIntegersAreSetAndAdded)
{
    for (num_view view : {view_float, view_word}) {
        in_view live(view);
        array a = {};
        a.arr_rows = 2;
        a.arr_cols = 3;
        sparse_init(&a.arr_sparse, 2);
        const auto text = [&] {
            std::string t;
            for (const auto &[p, v] : read(a.arr_sparse, 2)) {
                t += std::to_string(p.first) + "," + std::to_string(p.second) + "=" +
                     std::to_string(static_cast<int>(v)) + " ";
            }
            return t;
        };
        isparse_insert(1, 2, 0, &a, true, true);
        EXPECT_EQ(text(), "");
        isparse_insert(1, 2, 5, &a, true, false);
        isparse_insert(0, 0, 3, &a, true, true);
        EXPECT_EQ(text(), "1,1=3 2,3=5 ");
        isparse_insert(1, 2, 4, &a, true, false);
        isparse_insert(0, 0, 9, &a, true, true);
        EXPECT_EQ(text(), "1,1=9 2,3=9 ");
        isparse_insert(1, 2, 0, &a, true, false);
        EXPECT_EQ(text(), "1,1=9 2,3=9 ");
        isparse_insert(1, 2, -9, &a, true, false);
        EXPECT_EQ(text(), "1,1=9 ");
        isparse_insert(0, 0, 0, &a, true, true);
        EXPECT_EQ(text(), "");
        isparse_insert(3, 0, 8, &a, false, true);  // storage order: row 2, column 2
        EXPECT_EQ(text(), "2,2=8 ");
        free_sparse(&a.arr_sparse, 2, 1);
    }
}

TEST(Sparse, ZerosArePurged)
{
    sparse_audit audit;
    sparse_operand s(1, 5);
    colm **head = head_of_row(s.frames, 1);
    sparse_zero_set(head, 3);
    quoly_set(7, sparse_zero_set(head, 4));
    purge_sparse(head, 4);
    purge_sparse(head, 3);
    purge_sparse(head, 2);
    EXPECT_EQ(read(s.frames, 1), (model{{{1, 4}, 7}}));
}

TEST(Sparse, RandomUpdatesAgreeWithAMap)
{
    sparse_audit audit;
    test_random r;
    SCOPED_TRACE("seed " + std::to_string(r.seed));
    sparse_operand s(4100, 60);
    array a = {};
    a.arr_rows = s.rows;
    a.arr_cols = s.cols;
    a.arr_sparse = s.frames;
    model m;
    for (int round = 0; round < rounds; ++round) {
        const auto i = static_cast<std::int32_t>(r.below(r.below(2) ? 4100 : 40));
        const auto j = static_cast<std::int32_t>(r.below(60));
        const auto v = static_cast<std::int32_t>(r.below(5)) - 2;
        const place at = {i + 1, j + 1};
        switch (r.below(4)) {
        case 0:
            isparse_insert(i, j, v, &a, true, true);
            m[at] = v;
            break;
        case 1:
            isparse_insert(i + j * a.arr_rows, 0, v, &a, false, false);
            m[at] += v;
            break;
        case 2:
            if (m.count(at) && m[at] != 0) sparse_delete(i, j, &a, true);
            m[at] = 0;
            break;
        default: {
            value_operand q;
            quoly_set(v, &q.q);
            if (!m.count(at)) {
                sparse_insert(i, j, &a, true, q.q);
                m[at] = v;
            }
        }
        }
        if (m[at] == 0) m.erase(at);
        if (round % 1000 == 0) {
            ASSERT_TRUE(sparse_is_sound(s.frames, s.rows, s.cols));
            ASSERT_EQ(read(s.frames, s.rows), m);
        }
    }
    EXPECT_EQ(read(s.frames, s.rows), m);
}

// Whole matrices ----------------------------------------------------------------------------------------

TEST(Sparse, CopiesSumsAndNegatives)
{
    sparse_audit audit;
    test_random r;
    SCOPED_TRACE("seed " + std::to_string(r.seed));
    for (int round = 0; round < 200; ++round) {
        const auto rows = 1 + static_cast<std::int32_t>(r.below(round % 20 ? 30 : 3000));
        const auto cols = 1 + static_cast<std::int32_t>(r.below(30));
        sparse_operand a(rows, cols), b(rows, cols), sum(1, 1), other(1, 1);
        const model ma = fill(&r, &a, 100);
        const model mb = fill(&r, &b, 100);
        const bool plus = r.below(2) != 0;
        const int owna = static_cast<int>(r.below(2));
        const int ownb = static_cast<int>(r.below(2));
        model wanted = ma;
        for (const auto &[p, v] : mb) {
            wanted[p] += plus ? v : -v;
            if (wanted[p] == 0) wanted.erase(p);
        }
        sparse_frame *left = a.frames;
        sparse_frame *right = b.frames;
        if (owna) sparse_init(&a.frames, rows);
        if (ownb) sparse_init(&b.frames, rows);
        add_sparses(&left, &right, owna, ownb, rows, plus);
        EXPECT_EQ(right, nullptr);
        EXPECT_TRUE(sparse_is_sound(left, rows, cols));
        ASSERT_EQ(read(left, rows), wanted);
        ASSERT_TRUE(owna || read(a.frames, rows) == ma);
        ASSERT_TRUE(ownb || read(b.frames, rows) == mb);
        int owned = 1;
        sparse_makeneg(&left, rows, &owned);
        for (auto &[p, v] : wanted) v = -v;
        ASSERT_EQ(read(left, rows), wanted);
        free_sparse(&left, rows, 1);
    }
}

TEST(Sparse, ADenseTableTakesASparseMatrixIn)
{
    sparse_audit audit;
    test_random r;
    SCOPED_TRACE("seed " + std::to_string(r.seed));
    sparse_operand a(7, 5);
    model m = fill(&r, &a, 30);
    quolynode *table[35] = {};
    add_one_sparse(table, 7, 0, &a.frames, true);
    add_one_sparse(table, 7, 0, &a.frames, true);
    add_one_sparse(table, 7, 0, &a.frames, false);
    for (std::int32_t k = 0; k < 35; ++k) {
        const place at = {k % 7 + 1, k / 7 + 1};
        EXPECT_EQ(table[k] ? value_of(table[k]) : 0, m.count(at) ? m[at] : 0);
        free_quoly(&table[k]);
    }
}

TEST(Sparse, TransposesAndViews)
{
    sparse_audit audit;
    test_random r;
    SCOPED_TRACE("seed " + std::to_string(r.seed));
    for (int round = 0; round < 60; ++round) {
        const auto rows = 1 + static_cast<std::int32_t>(r.below(round % 3 ? 50 : 5000));
        const auto cols = 1 + static_cast<std::int32_t>(r.below(round % 4 ? 50 : 5000));
        sparse_operand a(rows, cols);
        const model ma = fill(&r, &a, 300);
        model flipped;
        for (const auto &[p, v] : ma) flipped[{p.second, p.first}] = v;
        sparse_frame *view = nullptr;
        flip_sparse(a.frames, &view, rows, cols);
        ASSERT_TRUE(sparse_is_sound(view, cols, rows));
        ASSERT_EQ(read(view, cols), flipped);
        free_sparse_frame(&view, cols);
        trans_sparse(&a.frames, rows, cols);
        std::swap(a.rows, a.cols);
        ASSERT_TRUE(sparse_is_sound(a.frames, a.rows, a.cols));
        ASSERT_EQ(read(a.frames, a.rows), flipped);
        trans_sparse(&a.frames, a.rows, a.cols);
        std::swap(a.rows, a.cols);
        ASSERT_EQ(read(a.frames, a.rows), ma);
    }
}

// Large matrices are sorted: on both sides of the limit, with empty rows and columns, one of them long.
TEST(Sparse, LargeTransposes)
{
    sparse_audit audit;
    test_random r;
    SCOPED_TRACE("seed " + std::to_string(r.seed));
    const std::int32_t shapes[][3] = {{100, 90, 6000},   {90, 100, 12000},  {3000, 5000, 9000},
                                      {1, 20000, 12000}, {20000, 1, 12000}, {5000, 4500, 4200}};
    for (const auto &shape : shapes) {
        sparse_operand a(shape[0], shape[1]);
        const model ma = fill(&r, &a, shape[2]);
        model flipped;
        for (const auto &[p, v] : ma) flipped[{p.second, p.first}] = v;
        for (int turn = 0; turn < 4; ++turn) {
            trans_sparse(&a.frames, a.rows, a.cols);
            std::swap(a.rows, a.cols);
            ASSERT_TRUE(sparse_is_sound(a.frames, a.rows, a.cols));
            ASSERT_EQ(read(a.frames, a.rows), turn % 2 ? ma : flipped);
        }
    }
}

TEST(Sparse, RowsAndColumnsChangePlaces)
{
    sparse_audit audit;
    test_random r;
    SCOPED_TRACE("seed " + std::to_string(r.seed));
    for (int round = 0; round < 100; ++round) {
        sparse_operand a(2100, 20);
        model m = fill(&r, &a, 200);
        const auto r1 = 1 + static_cast<std::int32_t>(r.below(2100));
        const auto r2 = 1 + static_cast<std::int32_t>(r.below(2100));
        const auto c1 = 1 + static_cast<std::int32_t>(r.below(20));
        const auto c2 = 1 + static_cast<std::int32_t>(r.below(20));
        const auto first = 1 + static_cast<std::int32_t>(r.below(2100));
        sp_switchrow(a.frames, r1, r2);
        sp_switchcol(a.frames, c1, c2, 2100, first);
        model wanted;
        for (const auto &[p, v] : m) {
            place at = p;
            at.first = p.first == r1 ? r2 : p.first == r2 ? r1 : p.first;
            if (at.first >= first) at.second = p.second == c1 ? c2 : p.second == c2 ? c1 : p.second;
            wanted[at] = v;
        }
        ASSERT_TRUE(sparse_is_sound(a.frames, 2100, 20));
        ASSERT_EQ(read(a.frames, 2100), wanted);
        reverse_sparse(a.frames, 2100);
        model turned;
        for (const auto &[p, v] : wanted) turned[{2101 - p.first, p.second}] = v;
        ASSERT_EQ(read(a.frames, 2100), turned);
    }
}

TEST(Sparse, ReversalOfRowsAndOfElementsAgreeForOneColumnOnly)
{
    sparse_audit audit;
    sparse_operand s(2, 2);
    for (std::int32_t k = 0; k < 4; ++k) set_entry(s.frames, k % 2 + 1, k / 2 + 1, k + 1);
    reverse_sparse(s.frames, 2);
    EXPECT_EQ(read(s.frames, 2), (model{{{1, 1}, 2}, {{1, 2}, 4}, {{2, 1}, 1}, {{2, 2}, 3}}));
}

TEST(Sparse, SumsTracesAndDiagonals)
{
    sparse_audit audit;
    test_random r;
    SCOPED_TRACE("seed " + std::to_string(r.seed));
    sparse_operand a(20, 20);
    const model m = fill(&r, &a, 120);
    double sum = 0, trace = 0;
    for (const auto &[p, v] : m) {
        sum += v;
        if (p.first == p.second) trace += v;
    }
    value_operand q;
    sparse_sum(a.frames, 20, &q.q);
    EXPECT_EQ(value_of(q.q), sum);
    sparse_trace(a.frames, 20, &q.q);
    EXPECT_EQ(value_of(q.q), trace);
    quoly_set(2, &q.q);
    add_to_diag(q.q, a.frames, 20);
    model wanted = m;
    for (std::int32_t k = 1; k <= 20; ++k) {
        wanted[{k, k}] += 2;
        if (wanted[{k, k}] == 0) wanted.erase({k, k});
    }
    EXPECT_EQ(read(a.frames, 20), wanted);
    EXPECT_TRUE(sparse_is_sound(a.frames, 20, 20));
}

TEST(Sparse, IdentityScalarsAndMoves)
{
    sparse_audit audit;
    sparse_operand id(3, 3);
    spar_identi(&id.frames, 3, 1);
    EXPECT_EQ(read(id.frames, 3), (model{{{1, 1}, 1}, {{2, 2}, 1}, {{3, 3}, 1}}));
    sparse_operand to(3, 3);
    set_entry(to.frames, 1, 3, 9);
    put_back_sparse(id.frames, to.frames, 3);
    EXPECT_TRUE(read(id.frames, 3).empty());
    EXPECT_EQ(read(to.frames, 3).size(), 3u);
    array a = {};
    a.arr_rows = 3;
    a.arr_cols = 3;
    a.arr_sparse = to.frames;
    value_operand q;
    quoly_set(4, &q.q);
    sparse_set_scalar(&a, 3, q.q);
    EXPECT_EQ(sparse_entries(to.frames, 3), 9);
    quoly_set(0, &q.q);
    sparse_set_scalar(&a, 3, q.q);
    EXPECT_EQ(sparse_entries(to.frames, 3), 0);
}

TEST(Sparse, AZeroOnTheDiagonalGoes)
{
    sparse_audit audit;
    sparse_operand s(2, 2);
    value_operand five;
    quoly_set(5, &five.q);
    set_entry(s.frames, 1, 1, -5);
    set_entry(s.frames, 1, 2, 3);
    add_to_diag(five.q, s.frames, 2);
    EXPECT_TRUE(sparse_is_sound(s.frames, 2, 2));
    EXPECT_EQ(sparse_entries(s.frames, 2), 2);
    EXPECT_EQ(value_of(spar_retrieve(s.frames, 2, 2)), 5);
}

TEST(Sparse, TransposesKeepTheModeOfTheirFrames)
{
    sparse_audit audit;
    sparse_operand s(2, 2);
    set_entry(s.frames, 1, 2, 3);
    s.frames->frame_mode = 1;
    trans_sparse(&s.frames, 2, 2);
    EXPECT_EQ(s.frames->frame_mode, 1);
    EXPECT_EQ(value_of(spar_retrieve(s.frames, 2, 1)), 3);
}

TEST(Sparse, ADenominatorIsNoPolynomial)
{
    sparse_audit audit;
    sparse_operand s(2, 2);
    std::int32_t allnums = 5;
    value_operand q("{0{2{#1}, #3}}");
    set_entry(s.frames, 1, 1, 3);
    quoly_assign(q.q, sparse_zero_set(head_of_row(s.frames, 2), 1));
    EXPECT_EQ(sparse_allpolys(s.frames, 2, &allnums), 1);
    EXPECT_EQ(allnums, 0);
    (*head_of_row(s.frames, 2))->val->den = copy_poly(q.q->top);
    EXPECT_EQ(sparse_allpolys(s.frames, 2, &allnums), 0);
    EXPECT_EQ(allnums, 0);
    EXPECT_EQ(sparse_one_var_polys(s.frames, 2), 0);
}

TEST(Sparse, IntegerDataAndBack)
{
    in_view live(view_word);
    sparse_operand a(3, 3);
    set_entry(a.frames, 1, 2, 5);
    set_entry(a.frames, 3, 3, -7);
    const model m = read(a.frames, 3);
    sparse_frame *words = nullptr;
    special_copy_sparse(a.frames, &words, 3);
    EXPECT_EQ(words->row_head[0]->word, 5);
    EXPECT_EQ(quick_row_mass(words->row_head[0]), 1);
    EXPECT_EQ(quick_row_mass(words->row_head[2]), 0);
    free_sparse_frame(&words, 3);
    move_data_into_quoly(a.frames, 3);
    EXPECT_EQ(a.frames->row_head[2]->word, -7);
    move_data_outof_quoly(a.frames, 3);
    EXPECT_EQ(read(a.frames, 3), m);
    move_data_into_quoly(a.frames, 3);
    a.frames->row_head[2]->word = 0;
    const std::string report = report_of([&] { move_data_outof_quoly(a.frames, 3); });
    EXPECT_NE(report.find("0 value in move_data_outof_quoly."), std::string::npos);
}

TEST(Sparse, QuestionsAboutEntries)
{
    sparse_audit audit;
    sparse_operand s(3, 3);
    std::int32_t flag = 1;
    std::int32_t allnums = 0;
    sparse_iszero(s.frames, 3, &flag);
    EXPECT_EQ(flag, 1);
    set_entry(s.frames, 2, 2, 5);
    sparse_iszero(s.frames, 3, &flag);
    EXPECT_EQ(flag, 0);
    EXPECT_EQ(sparse_allnumbs(s.frames, 3), 1);
    EXPECT_EQ(sparse_polydepth(s.frames, 3), constant_depth);
    value_operand q("{0{2{#1}, #3}}");
    quoly_assign(q.q, sparse_zero_set(head_of_row(s.frames, 3), 1));
    EXPECT_EQ(sparse_allnumbs(s.frames, 3), 0);
    EXPECT_EQ(sparse_allpolys(s.frames, 3, &allnums), 1);
    EXPECT_EQ(allnums, 0);
    EXPECT_EQ(sparse_polydepth(s.frames, 3), 2);
    EXPECT_EQ(sparse_one_var_polys(s.frames, 3), 1);
    value_operand other("{1{#1}, #3}");
    quoly_assign(other.q, sparse_zero_set(head_of_row(s.frames, 3), 2));
    EXPECT_EQ(sparse_polydepth(s.frames, 3), 1);
    EXPECT_EQ(sparse_one_var_polys(s.frames, 3), 0);
    EXPECT_EQ(sparse_negexponents(s.frames, 3), 0);
}

TEST(Sparse, NegativeExponentsInMatricesAndInTables)
{
    sparse_audit audit;
    sparse_operand s(3, 3);
    quolynode *table[] = {nullptr, nullptr, nullptr};
    quoly_set(5, &table[1]);
    EXPECT_EQ(negexponents(table, 3), 0);
    value_operand below("{1{#1}, -1{#2}}"), deep("{1{-2{#1}, #4}, #1}"), above("{2{#1}, #1}");
    quoly_assign(above.q, &table[2]);
    quoly_assign(above.q, sparse_zero_set(head_of_row(s.frames, 2), 3));
    EXPECT_EQ(negexponents(table, 3), 0);
    EXPECT_EQ(sparse_negexponents(s.frames, 3), 0);
    for (const value_operand *q : {&below, &deep}) {
        quoly_assign(q->q, &table[2]);
        EXPECT_EQ(negexponents(table, 3), 1);
        EXPECT_EQ(negexponents(table, 2), 0);
        quoly_assign(q->q, &(*head_of_row(s.frames, 2))->val);
        EXPECT_EQ(sparse_negexponents(s.frames, 3), 1);
    }
    for (quolynode *&q : table) free_quoly(&q);
}

TEST(Sparse, ARowIsAsHeavyAsItsEntriesTogether)
{
    sparse_audit audit;
    const std::int32_t full = INT32_MAX / mass_limit;
    sparse_operand s(2, full + 1);
    EXPECT_EQ(row_mass(*head_of_row(s.frames, 1)), 0);
    value_operand a("{3{#1}, #7}"), b("{1{2{#1}, #1}, #4}");
    quoly_assign(a.q, sparse_zero_set(head_of_row(s.frames, 1), 2));
    quoly_assign(b.q, sparse_zero_set(head_of_row(s.frames, 1), 4));
    EXPECT_EQ(row_mass(*head_of_row(s.frames, 1)), quoly_mass(a.q) + quoly_mass(b.q));
    value_operand heavy("{2147483647{2147483647{#1}, #1}, #1}");
    ASSERT_EQ(quoly_mass(heavy.q), mass_limit);
    for (std::int32_t col = 1; col <= full; ++col) {
        quoly_assign(heavy.q, sparse_zero_set(head_of_row(s.frames, 2), col));
    }
    EXPECT_EQ(row_mass(*head_of_row(s.frames, 2)), full * mass_limit);
    quoly_assign(heavy.q, sparse_zero_set(head_of_row(s.frames, 2), full + 1));
    EXPECT_EQ(row_mass(*head_of_row(s.frames, 2)), heavy_row);
}

TEST(Sparse, ANewEntryIsFoundByBothKindsOfIndices)
{
    sparse_audit audit;
    sparse_operand s(2, 3);
    array a = {};
    a.arr_rows = 2;
    a.arr_cols = 3;
    a.arr_sparse = s.frames;
    quolynode **first = sparse_set(1, 2, &a, true);
    EXPECT_EQ(value_of(*first), 0);
    quoly_set(6, first);
    quoly_set(7, sparse_set(2, 0, &a, false));  // storage order: row 1, column 2
    EXPECT_EQ(read(s.frames, 2), (model{{{1, 2}, 7}, {{2, 3}, 6}}));
    EXPECT_TRUE(sparse_is_sound(s.frames, 2, 3));
}

TEST(Sparse, TheIdentityAsATableKeepsWhatStandsBetweenItsColumns)
{
    sparse_audit audit;
    quolynode *table[12] = {};
    for (quolynode *&q : table) quoly_set(9, &q);
    identi(table, 3, 4);
    for (int k = 0; k < 12; ++k) EXPECT_EQ(value_of(table[k]), k % 4 == 3 ? 9 : k % 4 == k / 4) << k;
    free_quoly(&table[0]);
    uppertri(table, 3);
    for (int k = 0; k < 9; ++k) EXPECT_EQ(value_of(table[k]), k % 4 == 0) << k;
    for (quolynode *&q : table) free_quoly(&q);
}

TEST(Sparse, ACopyForOneVariableIsTheSameMatrix)
{
    sparse_audit audit;
    const std::int32_t rows = frame_rows + 2;
    sparse_operand s(rows, 3);
    set_entry(s.frames, 1, 1, 5);
    value_operand p("{5{#1}, 2{#3}, #7}"), fraction("{1{#1}, #2}");
    fraction.q->den = copy_poly(p.q->top);
    quoly_assign(p.q, sparse_zero_set(head_of_row(s.frames, 2), 3));
    quoly_assign(p.q, sparse_zero_set(head_of_row(s.frames, rows), 1));
    quoly_assign(fraction.q, sparse_zero_set(head_of_row(s.frames, rows), 2));
    sparse_operand copy(1, 1);
    free_sparse(&copy.frames, 1, 1);
    one_var_copy_sparse(s.frames, &copy.frames, rows);
    copy.rows = rows;
    EXPECT_TRUE(sparse_is_sound(copy.frames, rows, 3));
    row_walk left = {s.frames, 0, rows}, right = {copy.frames, 0, rows};
    for (int row = 0; row < rows; ++row) {
        const colm *a = *next_row(&left), *b = *next_row(&right);
        for (; a && b; a = a->next, b = b->next) {
            EXPECT_EQ(a->coord, b->coord);
            EXPECT_NE(a->val, b->val);
            EXPECT_EQ(value_text(a->val), value_text(b->val));
        }
        EXPECT_TRUE(!a && !b) << row;
    }
}

// Rings -------------------------------------------------------------------------------------------------

TEST(Sparse, AnExcursionModuloAPrimeLeavesEveryChainAsItWas)
{
    in_view live(view_digits);
    test_random r;
    SCOPED_TRACE("seed " + std::to_string(r.seed));
    sparse_operand a(40, 40);
    fill(&r, &a, 0);
    std::vector<std::pair<place, const colm *>> before;
    for (int k = 0; k < 300; ++k) {
        set_entry(a.frames, 1 + static_cast<std::int32_t>(r.below(40)),
                  1 + static_cast<std::int32_t>(r.below(40)), static_cast<std::int32_t>(r.below(8)) * 7 - 21);
    }
    const auto nodes = [&] {
        std::vector<std::pair<place, const colm *>> seen;
        row_walk w = {a.frames, 0, 40};
        while (colm **head = next_row(&w)) {
            for (const colm *node = *head; node; node = node->next)
                seen.push_back({{w.row, node->coord}, node});
        }
        return seen;
    };
    before = nodes();
    kept_view kept;
    ring_bracket stretch;
    enter_modulus(7, &stretch);
    fast_change_spar(a.frames, 40, true);
    EXPECT_TRUE(nodes().empty());
    restore_sparsefix();
    leave_ring(&stretch);
    EXPECT_EQ(nodes(), before);
    EXPECT_TRUE(sparse_is_sound(a.frames, 40, 40));
}

// Entry [i, j] = 10 i + j in all of 4 rows and columns; those that are 0 modulo the prime come and go.
TEST(Sparse, ComingOutOfAModulusFreesWhatHasBecomeZero)
{
    in_view live(view_digits);
    sparse_operand a(4, 4);
    for (std::int32_t i = 1; i <= 4; ++i) {
        for (std::int32_t j = 1; j <= 4; ++j) set_entry(a.frames, i, j, 10 * i + j);
    }
    kept_view kept;
    ring_bracket stretch;
    enter_modulus(7, &stretch);
    fast_change_spar(a.frames, 4, true);
    EXPECT_EQ(sparse_entries(a.frames, 4), 13);  // 14, 21 and 42 have gone
    EXPECT_EQ(spar_retrieve(a.frames, 1, 1)->num->word, 4);
    EXPECT_EQ(*column_link(head_of_row(a.frames, 1), 4), nullptr);
    quoly_set(0, &(*column_link(head_of_row(a.frames, 1), 1))->val);
    fast_change_spar(a.frames, 4, false);
    EXPECT_EQ(sparse_entries(a.frames, 4), 12);
    EXPECT_NE(sparse_fix, nullptr);
    restore_sparsefix();
    EXPECT_EQ(sparse_fix, nullptr);
    EXPECT_EQ(sparse_entries(a.frames, 4), 15);
    leave_ring(&stretch);
    EXPECT_TRUE(sparse_is_sound(a.frames, 4, 4));
    EXPECT_EQ((*column_link(head_of_row(a.frames, 1), 1))->coord, 2);
}

// Pins --------------------------------------------------------------------------------------------------

TEST(Sparse, WhatIsFreedWhilePinnedStaysReadable)
{
    sparse_audit audit;
    sparse_operand s(1, 5);
    for (std::int32_t c = 1; c <= 5; ++c) set_entry(s.frames, 1, c, c);
    const colm *walk = s.frames->row_head[0];
    pin_values();
    free_sparse_data(s.frames, 1);
    double sum = 0;
    for (; walk; walk = walk->next) sum += value_of(walk->val);
    EXPECT_EQ(sum, 15);
    unpin_values();
    release_pinned();
    EXPECT_TRUE(read(s.frames, 1).empty());
}

TEST(Sparse, FramesAreSetAsideWhileAComputationWaits)
{
    sparse_audit audit;
    constexpr std::int32_t cols = 1200;
    for (int round = 0; round < 2; ++round) {
        sparse_frame *frames = nullptr, *meanwhile = nullptr;
        sparse_init(&frames, 1);
        for (std::int32_t c = 1; c <= cols; ++c) set_entry(frames, 1, c, c);
        const sparse_frame *const waiting = frames;
        const colm *walk = frames->row_head[0];
        pin_values();
        free_sparse(&frames, 1, 1);
        sparse_init(&meanwhile, 1);
        EXPECT_NE(meanwhile, waiting);
        double sum = 0;
        for (; walk; walk = walk->next) sum += value_of(walk->val);
        EXPECT_EQ(sum, cols * (cols + 1) / 2);
        unpin_values();
        free_sparse(&meanwhile, 1, 1);
        release_pinned();
    }
}

TEST(Sparse, WhatIsChangedInPlaceWhileAComputationWaitsIsACopy)
{
    sparse_audit audit;
    value_operand v("{1{#1}, #2}");
    quolynode *none = nullptr;
    const quolynode *const waiting = v.q;
    unshare(&v.q);
    EXPECT_EQ(v.q, waiting);
    pin_values();
    unshare(&none);
    EXPECT_EQ(none, nullptr);
    unshare(&v.q);
    EXPECT_NE(v.q, waiting);
    EXPECT_EQ(value_text(v.q), "{1{#1}, #2}");
    quoly_set(7, &v.q);
    EXPECT_EQ(value_text(waiting), "{1{#1}, #2}");
    unpin_values();
    release_pinned();
}

}  // namespace
