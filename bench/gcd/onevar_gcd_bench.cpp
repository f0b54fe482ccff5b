// bench/gcd/onevar_gcd_bench.cpp -- gcds in one variable modulo a prime, against FLINT where it is found.
//
// The label is a checksum of the result, the same for both: its degree, and the sum of its words modulo 2^32.
#include <benchmark/benchmark.h>
#include <cstdio>
#include "gcd/half_gcd.h"
#include "gcd/onevar_gcd.h"
#include "poly/mul.h"
#include "poly/mul_array.h"
#ifdef KELMAR_BENCH_FLINT
#include <flint/nmod_poly.h>
#endif

using namespace kelmar;

// Operands --------------------------------------------------------------------------------------------------

static void set_modular(std::int32_t m)
{
    if (!numstash) open_stashes();
    flotemode = integerflag = finf = 0;
    modularmode = lintmode = mod_is_prime = 1;
    modulus = m;
    half_modulus = m / 2;
    smallmodulus = m < 65535;
    poly_cutoff = 40;
    number_polys = 1;
    get_word_arrays();
}

// x[0 .. degree] = numbers that a fixed generator draws, the lead not zero.
static void draw(std::int32_t *x, std::int32_t degree, std::uint32_t seed)
{
    for (std::int32_t e = 0; e <= degree; ++e) {
        seed = seed * 1664525u + 1013904223u;
        x[e] = static_cast<std::int32_t>((seed >> 1) % static_cast<std::uint32_t>(modulus - 1)) + 1;
    }
}

// Two polynomials of the degree with a common factor of a third of it, up to the limit of the arrays.
struct operands {
    std::int32_t a[array_degree_limit + 1], b[array_degree_limit + 1];
};
static operands pair;

static void make_pair_of(std::int32_t degree)
{
    static std::int32_t common[array_degree_limit + 1], cofactor[array_degree_limit + 1];
    const std::int32_t third = degree / 3;
    draw(common, third, 1);
    draw(cofactor, degree - third, 2);
    fast_array_onevar_mult(common, cofactor, pair.a, 0, third, 0, degree - third);
    draw(cofactor, degree - third - 1, 3);
    fast_array_onevar_mult(common, cofactor, pair.b, 0, third, 0, degree - third - 1);
}

static std::uint32_t sum_of(const polynode *p)
{
    std::uint32_t sum = 0;
    for (; p; p = p->next) sum += static_cast<std::uint32_t>(p->isnum ? p->num->word : p->coef->num->word);
    return sum;
}

static void set_label(benchmark::State &state, std::int32_t degree, std::uint32_t sum)
{
    char text[40];
    std::snprintf(text, sizeof text, "%d/%08x", degree, sum);
    state.SetLabel(text);
}

// Ours ------------------------------------------------------------------------------------------------------

static void lists(benchmark::State &state)
{
    set_modular(static_cast<std::int32_t>(state.range(0)));
    const std::int32_t degree = static_cast<std::int32_t>(state.range(1));
    make_pair_of(degree);
    polynode *a = nullptr, *b = nullptr, *g = nullptr;
    array_to_poly(pair.a, degree, &a);
    array_to_poly(pair.b, degree - 1, &b);
    for (auto _ : state) basic_poly_gcd(a, b, &g, 1, nilpol);
    set_label(state, g->exp, sum_of(g));
    free_poly(&a);
    free_poly(&b);
    free_poly(&g);
}

static void arrays(benchmark::State &state, void (*method)(word_pair *))
{
    set_modular(static_cast<std::int32_t>(state.range(0)));
    const std::int32_t degree = static_cast<std::int32_t>(state.range(1));
    make_pair_of(degree);
    word_pair degrees = {};
    for (auto _ : state) {
        for (std::int32_t e = 0; e <= degree; ++e) xx[e] = pair.a[e];
        for (std::int32_t e = 0; e < degree; ++e) yy[e] = pair.b[e];
        degrees = {degree - 1, degree, 0};
        method(&degrees);
        benchmark::DoNotOptimize(degrees);
    }
    set_label(state, degrees.deg_x < 0 ? degrees.deg_y : degrees.deg_x, 0);
}

static void steps(benchmark::State &state)
{
    arrays(state, simple_onevar_gcd);
}

static void halves(benchmark::State &state)
{
    arrays(state, hgcd);
}

// FLINT -----------------------------------------------------------------------------------------------------

#ifdef KELMAR_BENCH_FLINT
static void flint(benchmark::State &state)
{
    set_modular(static_cast<std::int32_t>(state.range(0)));
    const std::int32_t degree = static_cast<std::int32_t>(state.range(1));
    make_pair_of(degree);
    nmod_poly_t a, b, g;
    nmod_poly_init(a, static_cast<ulong>(modulus));
    nmod_poly_init(b, static_cast<ulong>(modulus));
    nmod_poly_init(g, static_cast<ulong>(modulus));
    for (std::int32_t e = 0; e <= degree; ++e) nmod_poly_set_coeff_ui(a, e, static_cast<ulong>(pair.a[e]));
    for (std::int32_t e = 0; e < degree; ++e) nmod_poly_set_coeff_ui(b, e, static_cast<ulong>(pair.b[e]));
    for (auto _ : state) nmod_poly_gcd(g, a, b);
    std::uint32_t sum = 0;
    for (slong e = 0; e < nmod_poly_length(g); ++e)
        sum += static_cast<std::uint32_t>(nmod_poly_get_coeff_ui(g, e));
    set_label(state, static_cast<std::int32_t>(nmod_poly_degree(g)), sum);
    nmod_poly_clear(a);
    nmod_poly_clear(b);
    nmod_poly_clear(g);
}
#endif

static void sizes(benchmark::internal::Benchmark *b)
{
    for (const int p : {32749, 65521, 2147483629}) {
        for (const int degree : {25, 100, 300, 1000, 2000, 4000, 8000, 12500, 25000}) b->Args({p, degree});
    }
}
BENCHMARK(lists)->Apply(sizes)->Unit(benchmark::kMicrosecond);
BENCHMARK(steps)->Apply(sizes)->Unit(benchmark::kMicrosecond);
BENCHMARK(halves)->Apply(sizes)->Unit(benchmark::kMicrosecond);
#ifdef KELMAR_BENCH_FLINT
BENCHMARK(flint)->Apply(sizes)->Unit(benchmark::kMicrosecond);
#endif

BENCHMARK_MAIN();
