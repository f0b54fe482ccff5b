// bench/matrix/product_bench.cpp -- products, transposes, and the store of arrays.
//
// `entry` is nanoseconds an entry of the operands. Dense products stand beside a triple loop over plain
// doubles in the order of the definition. Every benchmark prints a checksum of its result.
#include <benchmark/benchmark.h>
#include <cstdio>
#include <vector>
#include "matrix/array.h"
#include "matrix/product.h"
#include "matrix/sparse_ops.h"
#include "matrix/sparse_order.h"
#include "matrix/sparse_product.h"
#include "matrix/store.h"

using namespace kelmar;

static std::uint32_t seed = 1;

static std::uint32_t draw()
{
    seed = seed * 1664525u + 1013904223u;
    return seed >> 8;
}

static void enter_floats()
{
    if (!polystash) open_stashes();
    flotemode = lintmode = 1;
    modularmode = 0;
    seed = 1;
}

static void free_table(std::vector<quolynode *> *t)
{
    for (quolynode *&q : *t) free_quoly(&q);
}

static std::vector<quolynode *> table(std::int32_t n)
{
    std::vector<quolynode *> t(static_cast<std::size_t>(n) * static_cast<std::size_t>(n), nullptr);
    for (quolynode *&q : t) quoly_set(static_cast<std::int32_t>(draw() % 1000), &q);
    return t;
}

static void show(benchmark::State &state, double checksum, double entries)
{
    state.counters["checksum"] = checksum;
    state.counters["entry"] = benchmark::Counter(
        entries * 1e-9, benchmark::Counter::kIsIterationInvariantRate | benchmark::Counter::kInvert);
}

// Dense -------------------------------------------------------------------------------------------------

static void dense(benchmark::State &state)
{
    enter_floats();
    const auto n = static_cast<std::int32_t>(state.range(0));
    std::vector<quolynode *> a = table(n), b = table(n), c(a.size(), nullptr);
    double checksum = 0;
    for (auto _ : state) {
        std::int32_t filled = 0;
        dense_product(a.data(), b.data(), c.data(), &filled, n, n, n);
        checksum = c[0]->num->real + c.back()->num->real;
        state.PauseTiming();
        free_table(&c);
        state.ResumeTiming();
    }
    show(state, checksum, 2.0 * n * n);
    free_table(&a);
    free_table(&b);
}
BENCHMARK(dense)->Arg(100)->Arg(300)->Unit(benchmark::kMillisecond);

static void triple_loop(benchmark::State &state)
{
    enter_floats();
    const auto n = static_cast<std::size_t>(state.range(0));
    std::vector<double> a(n * n), b(n * n), c(n * n);
    for (double &x : a) x = draw() % 1000;
    for (double &x : b) x = draw() % 1000;
    for (auto _ : state) {
        for (std::size_t i = 0; i < n; ++i) {
            for (std::size_t k = 0; k < n; ++k) {
                double sum = 0;
                for (std::size_t j = 0; j < n; ++j) sum += a[i + j * n] * b[j + k * n];
                c[i + k * n] = sum;
            }
        }
        benchmark::DoNotOptimize(c.data());
    }
    show(state, c[0] + c.back(), 2.0 * static_cast<double>(n * n));
}
BENCHMARK(triple_loop)->Arg(100)->Arg(300)->Unit(benchmark::kMillisecond);

// Sparse ------------------------------------------------------------------------------------------------

static sparse_frame *sparse(std::int32_t n, std::int32_t a_row)
{
    sparse_frame *frames = nullptr;
    sparse_init(&frames, n);
    row_walk w = {frames, 0, n};
    while (colm **head = next_row(&w)) {
        const std::int32_t step = n / a_row;
        for (std::int32_t k = 0; k < a_row; ++k) {
            const auto col = static_cast<std::int32_t>(
                k * step + static_cast<std::int32_t>(draw() % static_cast<std::uint32_t>(step)) + 1);
            quolynode *q = nullptr;
            quoly_set(static_cast<std::int32_t>(draw() % 1000 + 1), &q);
            *head = newcolm(col, q);
            head = &(*head)->next;
        }
    }
    return frames;
}

static void sparse_product(benchmark::State &state)
{
    enter_floats();
    const std::int32_t n = 100000, a_row = 10;  // 10^6 entries
    sparse_frame *a = sparse(n, a_row), *b = sparse(n, 2);
    double checksum = 0;
    for (auto _ : state) {
        sparse_frame *c = nullptr;
        sparse_init(&c, n);
        mult_sparses(a, b, c, n, n, n);
        checksum = c->row_head[0] ? c->row_head[0]->val->num->real : 0;
        state.PauseTiming();
        free_sparse(&c, n, 1);
        state.ResumeTiming();
    }
    show(state, checksum, 1e6);
    free_sparse(&a, n, 1);
    free_sparse(&b, n, 1);
}
BENCHMARK(sparse_product)->Unit(benchmark::kMillisecond);

static void sparse_transpose(benchmark::State &state)
{
    enter_floats();
    const std::int32_t n = 100000;
    sparse_frame *a = sparse(n, 10);
    for (auto _ : state) trans_sparse(&a, n, n);
    show(state, a->row_head[0] ? a->row_head[0]->val->num->real : 0, 1e6);
    free_sparse(&a, n, 1);
}
BENCHMARK(sparse_transpose)->Unit(benchmark::kMillisecond);

// Store -------------------------------------------------------------------------------------------------

// Declare 10^4 arrays of 100 entries, then delete every other one, the oldest first.
static void compaction(benchmark::State &state)
{
    enter_floats();
    for (auto _ : state) {
        state.PauseTiming();
        std::vector<array *> arrays(10000);
        array_name name = {};
        name.text[0] = 'a';
        for (std::size_t k = 0; k < arrays.size(); ++k) {
            name.index = static_cast<std::int16_t>(k % array_buckets);
            std::snprintf(name.text, sizeof name.text, "a%zu", k);
            insertarr(&name, 100, 1, 1, &arrays[k]);
        }
        state.ResumeTiming();
        for (std::size_t k = 0; k < arrays.size(); k += 2) removearray(arrays[k]);
        state.PauseTiming();
        while (newest_array) removearray(newest_array);
        state.ResumeTiming();
    }
    show(state, endarr, 5000);
}
BENCHMARK(compaction)->Unit(benchmark::kMillisecond)->Iterations(3);
