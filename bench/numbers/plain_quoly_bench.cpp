// bench/numbers/plain_quoly_bench.cpp -- plain numbers in the views of a session: arithmetic in place,
// literals in, text out.
//
// Arithmetic is one dependent chain on one record, so the time of a step is its latency. The label is a
// checksum of the results, the same on every machine.
#include <benchmark/benchmark.h>
#include <cstdio>
#include <string>
#include "numbers/decimal.h"
#include "numbers/plain_quoly.h"
#include "quoly/add.h"
#include "quoly/divide.h"
#include "quoly/mul.h"

using namespace kelmar;

static void open_once()
{
    if (!numstash) open_stashes();
}

// The view until the end of the block.
struct in_view {
    saved_view saved;
    in_view(std::int32_t flote, std::int32_t lint)
    {
        open_once();
        enter_digits(&saved);
        flotemode = flote;
        lintmode = lint;
    }
    ~in_view()
    {
        leave_view(&saved);
    }
};

static quolynode *made(double v)
{
    quolynode *q = nullptr;
    quoly_set(static_cast<std::int32_t>(v), &q);
    q->num->real = v;
    return q;
}

static void label(benchmark::State &state, double checksum)
{
    char text[64];
    std::snprintf(text, sizeof text, "checksum %.17g", checksum);
    state.SetLabel(text);
}

// Arithmetic ----------------------------------------------------------------------------------------------

static constexpr int chain_length = 1000;  // steps of one timed round

static void bm_add_in_place(benchmark::State &state)
{
    const in_view view(1, 1);
    quolynode *sum = made(0), *step = made(0.1);
    for (auto _ : state) {
        sum->num->real = 0;
        for (int k = 0; k < chain_length; ++k) quoly_add(sum, step, &sum);
        benchmark::DoNotOptimize(sum->num->real);
    }
    state.SetItemsProcessed(state.iterations() * chain_length);
    label(state, sum->num->real);
    free_quoly(&sum);
    free_quoly(&step);
}
BENCHMARK(bm_add_in_place);

static void bm_mult_in_place(benchmark::State &state)
{
    const in_view view(1, 1);
    quolynode *product = made(1), *step = made(1.0001);
    for (auto _ : state) {
        product->num->real = 1;
        for (int k = 0; k < chain_length; ++k) fast_quoly_mult(&product, step);
        benchmark::DoNotOptimize(product->num->real);
    }
    state.SetItemsProcessed(state.iterations() * chain_length);
    label(state, product->num->real);
    free_quoly(&product);
    free_quoly(&step);
}
BENCHMARK(bm_mult_in_place);

// A fresh value each time: two records from the free lists, and back.
static void bm_add_fresh(benchmark::State &state)
{
    const in_view view(1, 1);
    quolynode *a = made(0.1), *b = made(0.2), *c = nullptr;
    double total = 0;
    for (auto _ : state) {
        total = 0;
        for (int k = 0; k < chain_length; ++k) {
            quoly_add(a, b, &c);
            total += c->num->real;
            free_quoly(&c);
        }
    }
    state.SetItemsProcessed(state.iterations() * chain_length);
    label(state, total);
    free_quoly(&a);
    free_quoly(&b);
}
BENCHMARK(bm_add_fresh);

// Literals ------------------------------------------------------------------------------------------------

static std::string decimals(std::int64_t length)
{
    std::string text;
    for (std::int64_t k = 0; k < length; ++k) text += static_cast<char>('0' + (k * 7 + k / 10 + 1) % 10);
    return text;
}

static double read_all(const std::string &text, number *n)
{
    literal lit;
    open_literal(&lit);
    for (const char c : text) literal_digit(&lit, c - '0');
    close_literal(&lit);
    literal_to_number(&lit, n);
    return flotemode ? n->real : n->size * 1e9 + n->tail->digit;
}

static void read_literals(benchmark::State &state)
{
    const std::string text = decimals(state.range(0));
    number n;
    n.size = 0;
    double checksum = 0;
    for (auto _ : state) checksum = read_all(text, &n);
    state.SetBytesProcessed(state.iterations() * state.range(0));
    label(state, checksum);
    special_free(&n);
}

static void bm_literal_float(benchmark::State &state)
{
    const in_view view(1, 1);
    read_literals(state);
}
BENCHMARK(bm_literal_float)->Arg(1)->Arg(8)->Arg(16)->Arg(100)->Arg(10000000)->Unit(benchmark::kNanosecond);

static void bm_literal_digits(benchmark::State &state)
{
    const in_view view(0, 0);
    read_literals(state);
}
BENCHMARK(bm_literal_digits)
    ->Arg(8)
    ->Arg(100)
    ->Arg(1000)
    ->Arg(10000)
    ->Arg(100000)
    ->Unit(benchmark::kNanosecond);

// Text ------------------------------------------------------------------------------------------------------

static void bm_display_float(benchmark::State &state)
{
    const in_view view(1, 1);
    std::FILE *nowhere = std::fopen("/dev/null", "w");
    const double steps[] = {1, 0.1, 1e-7};  // whole values, short and long fractions
    number n = {nullptr, nullptr, 0, 0, nullptr, 0};
    std::int32_t col = 0;
    for (auto _ : state) {
        n.real = 1;
        col = 0;
        for (int k = 0; k < chain_length; ++k) {
            display(nowhere, 0, 0, &n, &col, 0);
            n.real += steps[state.range(0)];
        }
    }
    state.SetItemsProcessed(state.iterations() * chain_length);
    label(state, col + n.real);
    std::fclose(nowhere);
}
BENCHMARK(bm_display_float)->DenseRange(0, 2);

static void bm_display_long(benchmark::State &state)
{
    const in_view view(0, 0);
    std::FILE *nowhere = std::fopen("/dev/null", "w");
    number n;
    n.size = 0;
    read_all(decimals(state.range(0)), &n);
    std::int32_t col = 0;
    for (auto _ : state) {
        col = 0;
        display(nowhere, 0, 0, &n, &col, 0);
    }
    state.SetBytesProcessed(state.iterations() * state.range(0));
    label(state, col);
    special_free(&n);
    std::fclose(nowhere);
}
BENCHMARK(bm_display_long)->Arg(8)->Arg(120)->Arg(1000)->Arg(10000);
