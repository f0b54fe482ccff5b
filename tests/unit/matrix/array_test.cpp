// Ordinary arrays: records, the paged store and its compaction, entries, parameters, against plain vectors.
#include "matrix/array.h"
#include <gtest/gtest.h>
#include <cstring>
#include <deque>
#include <string>
#include <vector>
#include "matrix/sparse.h"
#include "matrix/sparse_tests.h"
#include "matrix/store.h"
#include "matrix/work_arrays.h"
#include "tests/support/by_build.h"
#include "tests/support/polys.h"
#include "tests/support/views.h"

using namespace kelmar;
using namespace kelmar_test;

namespace {

constexpr int rounds = by_build(20000, 100000);

array_name name_of(const char *text)
{
    array_name n = {};
    std::strncpy(n.text, text, sizeof n.text - 1);
    int h = 0;
    for (const char *c = text; *c; ++c) h = (h * 123 + static_cast<unsigned char>(*c)) % array_buckets;
    n.index = static_cast<std::int16_t>(h);
    return n;
}

array *made(const char *name, std::int32_t rows, std::int32_t cols)
{
    array *a = nullptr;
    const array_name n = name_of(name);
    insertarr(&n, rows, cols, cols == 1, &a);
    return a;
}

// What must hold before and after a test: no arrays, no slots.
struct no_arrays {
    in_view live{view_float};
    std::int64_t quolys = live_quolys();
    no_arrays()
    {
        EXPECT_EQ(endarr, -1);
    }
    ~no_arrays()
    {
        while (newest_array) EXPECT_EQ(removearray(newest_array), 1);
        EXPECT_TRUE(store_is_sound());
        EXPECT_EQ(endarr, -1);
        EXPECT_EQ(live_quolys(), quolys);
    }
};

void put(array *a, std::int32_t i, std::int32_t j, std::int32_t v)
{
    entry_place place;
    ASSERT_EQ(new_array_quoly_ptr(a, i, j, true, 0, "a", &place), 1);
    quoly_set(v, place.slot);
}

double got(array *a, std::int32_t i, std::int32_t j)
{
    entry_place place;
    if (!new_array_quoly_ptr(a, i, j, true, 0, "a", &place) || !place.slot) return -1;
    return *place.slot ? (*place.slot)->num->real : 0;
}

// Limits ------------------------------------------------------------------------------------------------

TEST(Array, RowsAndColumnsAreAtLeastOne)
{
    no_arrays clean;
    EXPECT_EQ(caught_error([] { made("a", 0, 3); }), 27);
    EXPECT_EQ(caught_error([] { made("a", 3, 0); }), 27);
    EXPECT_EQ(caught_error([] { made("a", -1, 1); }), 27);
    EXPECT_EQ(caught_error([] { made("a", 1, 1); }), 0);
}

TEST(Array, AMillionEntriesAreTheMost)
{
    no_arrays clean;
    EXPECT_EQ(caught_error([] { made("a", 1000, 1000); }), 0);
    EXPECT_EQ(caught_error([] { made("b", 1001, 1000); }), 43);
    EXPECT_EQ(caught_error([] { made("b", 1000001, 1); }), 43);
    EXPECT_EQ(caught_error([] { made("b", 2000000000, 2000000000); }), 43);
    EXPECT_TRUE(store_is_sound());
}

TEST(Array, TheStoreHasFiveMillionSlots)
{
    no_arrays clean;
    for (int k = 0; k < 5; ++k) ASSERT_EQ(caught_error([] { made("a", 1000000, 1); }), 0);
    EXPECT_EQ(caught_error([] { made("a", 120001, 1); }), 26);
    EXPECT_EQ(caught_error([] { made("a", 120000, 1); }), 0);
    EXPECT_EQ(endarr, last_slot);
    EXPECT_EQ(caught_error([] { made("a", 1, 1); }), 26);
    EXPECT_TRUE(store_is_sound());
}

TEST(Array, SparseArraysHaveNeitherLimit)
{
    no_arrays clean;
    const array_name n = name_of("s");
    array *a = nullptr;
    sparse_create(&n, 5000, 2000000000, 0, true, &a);
    ASSERT_NE(a, nullptr);
    EXPECT_EQ(a->arr_size, 10000000000000);
    EXPECT_EQ(endarr, -1);
    EXPECT_TRUE(sparse_is_sound(a->arr_sparse, 5000, 2000000000));
    EXPECT_TRUE(store_is_sound());
}

TEST(Array, TwentyWorkArraysAreTheMost)
{
    no_arrays clean;
    std::int32_t index = 0;
    for (int k = 1; k <= work_array_count; ++k) {
        ASSERT_NE(new_worknode(&index, " "), nullptr);
        EXPECT_EQ(index, k);
        EXPECT_EQ(first_available, k + 1);
    }
    EXPECT_EQ(caught_error([] {
                  std::int32_t one_more;
                  new_worknode(&one_more, "w");
              }),
              88);
    first_available = 1;
}

// Entries -----------------------------------------------------------------------------------------------

TEST(Array, EntriesStandColumnAfterColumn)
{
    no_arrays clean;
    array *a = made("a", 3, 4);
    for (std::int32_t j = 0; j < 4; ++j) {
        for (std::int32_t i = 0; i < 3; ++i) put(a, i, j, 10 * i + j);
    }
    entry_place place;
    for (std::int32_t k = 0; k < 12; ++k) {
        ASSERT_EQ(new_array_quoly_ptr(a, k, 0, false, 0, "a", &place), 1);
        EXPECT_EQ((*place.slot)->num->real, 10 * (k % 3) + k / 3);
        ASSERT_EQ(new_array_quoly_ptr(a, k + 1, 0, false, 1, "a", &place), 1);
        EXPECT_EQ((*place.slot)->num->real, 10 * (k % 3) + k / 3);
    }
}

TEST(Array, IndicesOutsideAreErrors)
{
    no_arrays clean;
    array *a = made("a", 3, 4);
    struct wrong {
        std::int32_t i, j;
        bool two;
        std::int32_t base;
    };
    const wrong cases[] = {{-1, 0, true, 0},        {0, -1, true, 0},        {3, 0, true, 0},
                           {0, 4, true, 0},         {12, 0, false, 0},       {-1, 0, false, 0},
                           {0, 1, true, 1},         {1, 0, true, 1},         {13, 0, false, 1},
                           {INT32_MIN, 1, true, 1}, {1, INT32_MAX, true, 1}, {INT32_MAX, 0, false, 0}};
    for (const wrong &w : cases) {
        EXPECT_EQ(caught_error([&] {
                      entry_place place;
                      new_array_quoly_ptr(a, w.i, w.j, w.two, w.base, "a", &place);
                  }),
                  27)
            << w.i << " " << w.j;
    }
}

// Names -------------------------------------------------------------------------------------------------

TEST(Array, TheNewestOfANameIsFound)
{
    no_arrays clean;
    const array_name n = name_of("a");
    array *first = made("a", 1, 1);
    array *second = made("a", 2, 2);
    EXPECT_EQ(find_array(&n), second);
    EXPECT_EQ(array_of_stamp(first->arr_time), first);
    EXPECT_EQ(removearray(second), 1);
    EXPECT_EQ(find_array(&n), first);
    EXPECT_EQ(removearray(first), 1);
    EXPECT_EQ(find_array(&n), nullptr);
}

TEST(Array, RenamingMovesTheRecord)
{
    no_arrays clean;
    const array_name a = name_of("a");
    const array_name b = name_of("b");
    array *x = made("a", 1, 1);
    made("b", 2, 1);
    rename_array(x, &b);
    EXPECT_EQ(find_array(&a), nullptr);
    EXPECT_EQ(find_array(&b), x);
    EXPECT_TRUE(store_is_sound());
}

// Parameters --------------------------------------------------------------------------------------------

// A session that runs for days makes more arrays than a word of 32 bits counts.
TEST(Array, StampsPassThirtyTwoBits)
{
    no_arrays clean;
    const std::int64_t kept = array_time;
    array_time = INT32_MAX - std::int64_t{1};
    array *hole = made("h", 2, 2);
    array *a = made("a", 2, 2);
    array *b = made("b", 2, 2);
    array *p = nullptr;
    const array_name n = name_of("p");
    put(b, 1, 1, 6);
    push_array_param(&n, b, &p);
    EXPECT_GT(b->arr_time, INT32_MAX);
    EXPECT_EQ(p->arr_time, -b->arr_time);
    EXPECT_FALSE(is_array_parameter(b));
    EXPECT_TRUE(is_array_parameter(p));
    EXPECT_EQ(array_of_stamp(p->arr_time), b);
    const entry_ref ref = {b->arr_time, 3, nullptr, 0, 0};
    entry_place place;
    ASSERT_EQ(find_entry(&ref, &place), 1);
    EXPECT_EQ((*place.slot)->num->real, 6);
    EXPECT_TRUE(store_is_sound());
    pop_array_params(nullptr);
    EXPECT_EQ(removearray(hole), 1);
    EXPECT_EQ(removearray(b), 1);
    EXPECT_EQ(removearray(a), 1);
    array_time = kept;
}

TEST(Array, AParameterSharesTheStorage)
{
    no_arrays clean;
    array *a = made("a", 2, 2);
    array *p = nullptr;
    const array_name n = name_of("p");
    push_array_param(&n, a, &p);
    EXPECT_TRUE(is_array_parameter(p));
    EXPECT_EQ(find_array(&n), p);
    put(p, 1, 1, 7);
    EXPECT_EQ(got(a, 1, 1), 7);
    EXPECT_TRUE(store_is_sound());
    EXPECT_EQ(caught_error([=] { removearray(p); }), 138);
    EXPECT_EQ(caught_error([=] { make_sparse(p); }), 138);
    EXPECT_EQ(caught_error([=] { rename_array(p, &n); }), 140);
    pop_array_params(nullptr);
    EXPECT_EQ(find_array(&n), nullptr);
}

TEST(Array, ParametersMoveWithTheirArrays)
{
    no_arrays clean;
    array *hole = made("h", 500, 3);
    array *a = made("a", 2, 2);
    array *p = nullptr;
    const array_name n = name_of("p");
    put(a, 0, 1, 5);
    push_array_param(&n, a, &p);
    EXPECT_EQ(removearray(hole), 1);
    EXPECT_EQ(p->arr_first, a->arr_first);
    EXPECT_EQ(p->arr_last, a->arr_last);
    EXPECT_EQ(got(p, 0, 1), 5);
    pop_array_params(nullptr);
}

TEST(Array, ParametersFollowAnArrayThatBecomesSparse)
{
    no_arrays clean;
    array *a = made("a", 2, 2);
    array *p = nullptr;
    const array_name n = name_of("p");
    put(a, 0, 1, 5);
    push_array_param(&n, a, &p);
    EXPECT_EQ(caught_error([=] { make_sparse(a); }), 342);
    EXPECT_EQ(p->arr_sparse, a->arr_sparse);
    EXPECT_EQ(got(p, 0, 1), 5);
    EXPECT_EQ(caught_error([=] { removearray(a); }), 342);
    EXPECT_EQ(p->arr_sparse, nullptr);
    EXPECT_EQ(p->arr_rows, 0);
    pop_array_params(nullptr);
}

TEST(Array, AParameterWhoseArrayHasGoneHasNoEntries)
{
    no_arrays clean;
    array *a = made("a", 2, 2);
    array *p = nullptr;
    const array_name n = name_of("p");
    push_array_param(&n, a, &p);
    EXPECT_EQ(caught_error([=] { removearray(a); }), 139);
    EXPECT_EQ(caught_error([=] {
                  entry_place place;
                  new_array_quoly_ptr(p, 0, 0, true, 0, "p", &place);
              }),
              27);
    EXPECT_TRUE(store_is_sound());
    pop_array_params(nullptr);
}

TEST(Array, FramesThatAParameterReplacedGoBack)
{
    no_arrays clean;
    const array_name n = name_of("s");
    array *a = nullptr;
    array *p = nullptr;
    sparse_create(&n, 3, 3, 0, true, &a);
    push_array_param(&n, a, &p);
    sparse_frame *const old = p->arr_sparse;
    newsparse(&p->arr_sparse);
    for (int k = 0; k < 3; ++k) p->arr_sparse->row_head[k] = nullptr;
    sparse_frame *const fresh = p->arr_sparse;
    pop_array_params(nullptr);
    EXPECT_EQ(a->arr_sparse, fresh);
    give_frame(old);
}

// Conversion --------------------------------------------------------------------------------------------

TEST(Array, MakeSparseDropsZerosAndUnsetEntries)
{
    no_arrays clean;
    array *below = made("b", 7, 3);
    array *a = made("a", 3, 2);
    array *above = made("c", 5, 5);
    put(a, 0, 0, 1);
    put(a, 1, 1, 0);
    put(a, 2, 1, 9);
    put(above, 4, 4, 3);
    put(below, 6, 2, 4);
    make_sparse(a);
    ASSERT_NE(a->arr_sparse, nullptr);
    EXPECT_EQ(a->arr_first, 0u);
    EXPECT_EQ(a->arr_last, -1);
    EXPECT_EQ(sparse_entries(a->arr_sparse, 3), 2);
    EXPECT_TRUE(sparse_is_sound(a->arr_sparse, 3, 2));
    EXPECT_EQ(got(above, 4, 4), 3);
    EXPECT_EQ(got(below, 6, 2), 4);
    EXPECT_TRUE(store_is_sound());
    make_sparse(a);
    EXPECT_EQ(sparse_entries(a->arr_sparse, 3), 2);
}

// Model -------------------------------------------------------------------------------------------------

struct model_array {
    array *record;
    std::vector<double> entries;
    std::int32_t rows, cols;
};

void expect_equal(const model_array &m)
{
    for (std::int32_t k = 0; k < m.rows * m.cols; ++k) {
        ASSERT_EQ(got(m.record, k % m.rows, k / m.rows), m.entries[static_cast<std::size_t>(k)]);
    }
}

// Declarations, removals in any order, conversions, and writes: after each some array is compared, and now
// and then all of them.
TEST(Array, RandomOperationsAgreeWithVectors)
{
    no_arrays clean;
    test_random r;
    SCOPED_TRACE("seed " + std::to_string(r.seed));
    std::vector<model_array> arrays;
    for (int round = 0; round < rounds; ++round) {
        const int kind = static_cast<int>(r.below(10));
        if (arrays.empty() || (kind == 0 && arrays.size() < 60)) {
            model_array m;
            m.rows = 1 + static_cast<std::int32_t>(r.below(round % 50 == 0 ? 700 : 9));
            m.cols = 1 + static_cast<std::int32_t>(r.below(7));
            m.record = made(r.below(2) ? "a" : "b", m.rows, m.cols);
            m.entries.assign(static_cast<std::size_t>(m.rows * m.cols), 0);
            arrays.push_back(m);
            continue;
        }
        const std::size_t which = r.below(arrays.size());
        model_array &m = arrays[which];
        if (kind == 1) {
            ASSERT_EQ(removearray(m.record), 1);
            arrays.erase(arrays.begin() + static_cast<std::ptrdiff_t>(which));
            continue;
        }
        if (kind == 2 && r.below(8) == 0) {
            make_sparse(m.record);
        } else if (!m.record->arr_sparse) {
            const std::int32_t i = static_cast<std::int32_t>(r.below(static_cast<std::size_t>(m.rows)));
            const std::int32_t j = static_cast<std::int32_t>(r.below(static_cast<std::size_t>(m.cols)));
            const std::int32_t v = static_cast<std::int32_t>(r.below(5));
            put(m.record, i, j, v);
            m.entries[static_cast<std::size_t>(i + j * m.rows)] = v;
        }
        if (round % 1000 == 0) {
            // absent entries of sparse arrays read as -1 in got; compare dense ones only
            if (!m.record->arr_sparse) expect_equal(m);
            ASSERT_TRUE(store_is_sound()) << round;
        }
    }
    for (const model_array &m : arrays) {
        if (!m.record->arr_sparse) expect_equal(m);
    }
}

TEST(Array, GapsAreClosedBeforeTheStoreIsFull)
{
    no_arrays clean;
    array *arrays[5];
    for (array *&a : arrays) a = made("a", 1000000, 1);
    put(arrays[4], 999999, 0, 7);
    EXPECT_EQ(removearray(arrays[1]), 1);
    EXPECT_EQ(removearray(arrays[3]), 1);
    EXPECT_EQ(caught_error([] { made("b", 1000000, 1); }), 0);
    EXPECT_EQ(caught_error([] { made("b", 1000000, 1); }), 0);
    EXPECT_EQ(caught_error([] { made("b", 120001, 1); }), 26);
    EXPECT_EQ(got(arrays[4], 999999, 0), 7);
    EXPECT_TRUE(store_is_sound());
}

TEST(Array, GapsSmallerThanWhatIsInUseStay)
{
    no_arrays clean;
    array *hole = made("h", 100000, 1);
    array *a = made("a", 200000, 1);
    put(a, 7, 0, 5);
    EXPECT_EQ(removearray(hole), 1);
    EXPECT_EQ(a->arr_first, 100000u);
    EXPECT_EQ(got(a, 7, 0), 5);
    EXPECT_TRUE(store_is_sound());
}

TEST(Array, RemovingTheOldestOfThreeLowersTheOthersWithTheirValues)
{
    no_arrays clean;
    array *oldest = made("a", 200000, 1), *b = made("b", 2, 2), *c = made("c", 3, 1);
    put(b, 1, 1, 5);
    put(c, 2, 0, 6);
    EXPECT_EQ(b->arr_first, 200000u);
    EXPECT_EQ(removearray(oldest), 1);
    EXPECT_EQ(b->arr_first, 0u);
    EXPECT_EQ(b->arr_last, 3);
    EXPECT_EQ(c->arr_first, 4u);
    EXPECT_EQ(c->arr_last, 6);
    EXPECT_EQ(got(b, 1, 1), 5);
    EXPECT_EQ(got(c, 2, 0), 6);
    EXPECT_TRUE(store_is_sound());
}

TEST(Array, TheRecordOfARemovedArrayIsTakenAgain)
{
    no_arrays clean;
    array *first = made("a", 2, 2);
    EXPECT_EQ(removearray(first), 1);
    EXPECT_EQ(made("b", 3, 3), first);
}

TEST(Array, ParametersMoveWhenGapsAreClosed)
{
    no_arrays clean;
    array *hole = made("h", 200000, 1);
    array *a = made("a", 2, 2);
    array *p = nullptr;
    const array_name n = name_of("p");
    put(a, 0, 1, 5);
    push_array_param(&n, a, &p);
    EXPECT_EQ(removearray(hole), 1);
    EXPECT_EQ(a->arr_first, 0u);
    EXPECT_EQ(p->arr_first, 0u);
    EXPECT_EQ(got(p, 0, 1), 5);
    EXPECT_TRUE(store_is_sound());
    pop_array_params(nullptr);
}

TEST(Array, TenThousandArraysAreClosedUp)
{
    no_arrays clean;
    std::deque<array *> arrays;
    for (int k = 0; k < 10000; ++k) {
        arrays.push_back(made("a", 1 + k % 13, 1 + k % 5));
        put(arrays.back(), k % 13, k % 5, k);
    }
    for (int k = 0; k < 5000; ++k) ASSERT_EQ(removearray(arrays[static_cast<std::size_t>(2 * k)]), 1);
    EXPECT_TRUE(store_is_sound());
    for (int k = 1; k < 10000; k += 2) {
        ASSERT_EQ(got(arrays[static_cast<std::size_t>(k)], k % 13, k % 5), k);
    }
}

}  // namespace
