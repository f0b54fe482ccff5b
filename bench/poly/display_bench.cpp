// bench/poly/display_bench.cpp -- the text of polynomials of a million terms, written to a file.
//
// `MB/s` is the text that comes out. The label is its length.
#include <benchmark/benchmark.h>
#include <cstdio>
#include "numbers/mode.h"
#include "poly/display.h"

using namespace kelmar;

static constexpr std::int32_t terms = 1000000;

static number *coefficient(std::int32_t k)
{
    number *n = nullptr;
    newimag(&n);
    n->size = 0;
    if (exact_integers()) {
        special_set_2(k % 1000 + 1, 99999989, n);
    } else if (flotemode) {
        n->real = k % 3 == 0 ? k / 7.0 : k % 100000 - 50000.5;
    } else {
        n->word = k % 1000000 - 500000;
    }
    return n;
}

// A million terms in one variable, or a thousand coefficients of a thousand.
static polynode *long_list(std::int32_t count, std::int32_t inner)
{
    polynode *first = nullptr;
    for (std::int32_t e = 1; e <= count; ++e) {
        polynode *coef = inner ? long_list(inner, 0) : new_constant(coefficient(e));
        polynode *term = new_term(e, coef);
        term->next = first;
        first = term;
    }
    return first;
}

enum kind { floats, words, digits, nested };

static void bm_display(benchmark::State &state)
{
    const kind k = static_cast<kind>(state.range(0));
    if (!numstash) open_stashes();
    flotemode = k == floats || k == nested;
    lintmode = k != digits;
    while (number_polys < 2) insert_poly_name(number_polys ? "x" : "y", 0, 0);
    polynode *p = k == nested ? long_list(1000, 1000) : long_list(terms, 0);
    std::FILE *out = std::tmpfile();
    long bytes = 0;
    for (auto _ : state) {
        text_place t;
        std::rewind(out);
        begin_text(&t, out, 0, 0);
        poly_display(&t, p, polynames, 0, 1);
        std::fflush(out);
        bytes = std::ftell(out);
    }
    state.counters["MB/s"] = benchmark::Counter(static_cast<double>(bytes) * 1e-6,
                                                benchmark::Counter::kIsIterationInvariantRate);
    state.SetLabel(std::to_string(bytes) + " bytes");
    std::fclose(out);
    free_poly(&p);
    flotemode = lintmode = 0;
}
BENCHMARK(bm_display)->Arg(floats)->Arg(words)->Arg(digits)->Arg(nested)->Unit(benchmark::kMillisecond);

BENCHMARK_MAIN();
