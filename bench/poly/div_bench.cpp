// bench/poly/div_bench.cpp -- division with remainder modulo a prime, exact division, and refused trials.
//
// The label is a checksum of the results, the same on every machine: terms, and the sum of the numbers modulo
// 2^32.
#include <benchmark/benchmark.h>
#include <cstdio>
#include "numbers/dispatch.h"
#include "poly/add.h"
#include "poly/div.h"
#include "poly/div_exact.h"
#include "poly/div_fast.h"
#include "poly/div_karat.h"
#include "poly/mul.h"

using namespace kelmar;

// Rings and operands -------------------------------------------------------------------------------------

static void set_modular(std::int32_t m)
{
    if (!numstash) open_stashes();
    flotemode = integerflag = finf = 0;
    modularmode = lintmode = mod_is_prime = 1;
    modulus = m;
    half_modulus = m / 2;
    smallmodulus = m < 65535;
    poly_cutoff = 40;
    div_poly_cutoff = 25;
    number_polys = 1;
}

static void set_plain(bool floats)
{
    if (!numstash) open_stashes();
    modularmode = integerflag = finf = 0;
    flotemode = lintmode = floats;
    poly_cutoff = 20;
    div_poly_cutoff = 6;
    number_polys = 5;
}

// Every coefficient is there, small numbers that a fixed generator draws.
static polynode *dense(std::int32_t degree, std::uint32_t seed)
{
    polynode *p = nullptr;
    for (std::int32_t e = 0; e <= degree; ++e) {
        polynode *c = nullptr;
        seed = seed * 1664525u + 1013904223u;
        poly_set(static_cast<std::int32_t>(seed >> 20) + 1, &c);
        make_monomial(&c, e, c);
        c->next = p;
        p = c;
    }
    return p;
}

static const pt *five_variables()
{
    static pt record[5];
    for (int k = 0; k < 5; ++k) {
        record[k].level = static_cast<std::int16_t>(k + 1);
        record[k].cut = poly_cutoff;
        record[k].next = k < 4 ? &record[k + 1] : nullptr;
    }
    return record;
}

// (v + x + y + z + t)^k.
static polynode *power_sum(int k, std::int32_t v)
{
    polynode *base = nullptr, *power = nullptr;
    poly_set(v, &base);
    for (std::int32_t level = 1; level <= 4; ++level) {
        polynode *x = nullptr;
        base_poly(&x, level);
        best_poly_add(base, x, &base);
    }
    poly_set(1, &power);
    for (; k > 0; --k) poly_mult(power, base, &power, nilpol);
    free_poly(&base);
    return power;
}

// Checksums ----------------------------------------------------------------------------------------------

static std::uint32_t number_sum(const polynode *p, std::int64_t *terms)
{
    std::uint32_t sum = 0;
    for (; p; p = p->next) {
        if (!p->isnum) {
            sum += number_sum(p->coef, terms);
            continue;
        }
        ++*terms;
        if (flotemode) {
            sum += static_cast<std::uint32_t>(static_cast<std::int64_t>(p->num->real));
        } else if (modularmode) {
            sum += static_cast<std::uint32_t>(p->num->word);
        } else {
            for (const numnode *d = p->num->head; d; d = d->next)
                sum = sum * 31 + static_cast<std::uint32_t>(d->digit);
        }
    }
    return sum;
}

static void label(benchmark::State &state, const polynode *p)
{
    std::int64_t terms = 0;
    const std::uint32_t sum = p ? number_sum(p, &terms) : 0;
    char text[48];
    std::snprintf(text, sizeof text, "%lld terms, %08x", static_cast<long long>(terms), sum);
    state.SetLabel(text);
}

// With remainder -----------------------------------------------------------------------------------------

// Degree 2 d by d, all coefficients there.
static void divide_dense(benchmark::State &state, int fast)
{
    const std::int32_t d = static_cast<std::int32_t>(state.range(0));
    polynode *n = dense(2 * d, 1), *m = dense(d, 2), *q = nullptr, *r = nullptr;
    for (auto _ : state) basic_poly_divide(n, m, &q, &r, fast);
    label(state, r);
    free_poly(&n);
    free_poly(&m);
    free_poly(&q);
    free_poly(&r);
}

static void modulo_small_prime(benchmark::State &state)
{
    set_modular(65521);
    divide_dense(state, 1);
}
BENCHMARK(modulo_small_prime)
    ->Arg(20)
    ->Arg(100)
    ->Arg(400)
    ->Arg(1000)
    ->Arg(5000)
    ->Arg(12000)
    ->Unit(benchmark::kMicrosecond);

static void modulo_large_prime(benchmark::State &state)
{
    set_modular(2147483629);
    divide_dense(state, 1);
}
BENCHMARK(modulo_large_prime)
    ->Arg(100)
    ->Arg(400)
    ->Arg(1000)
    ->Arg(5000)
    ->Arg(12000)
    ->Unit(benchmark::kMicrosecond);

static void modulo_large_prime_in_arrays(benchmark::State &state)
{
    set_modular(2147483629);
    divide_dense(state, 0);
}
BENCHMARK(modulo_large_prime_in_arrays)
    ->Arg(100)
    ->Arg(400)
    ->Arg(1000)
    ->Arg(5000)
    ->Arg(12000)
    ->Unit(benchmark::kMicrosecond);

static void floats_in_one_variable(benchmark::State &state)
{
    set_plain(true);
    const std::int32_t d = static_cast<std::int32_t>(state.range(0));
    polynode *m = dense(d, 2), *one = nullptr, *n = dense(2 * d, 1), *q = nullptr, *r = nullptr;
    poly_set(1, &one);
    make_monomial(&one, d + 1, one);
    best_poly_add(one, m, &m);  // lead 1
    for (auto _ : state) poly_mod_or_div(n, m, &q, '\\', nilpol);
    state.SetLabel(q->exp == d - 1 ? "degree as it should be" : "wrong degree");
    free_poly(&n);
    free_poly(&m);
    free_poly(&q);
    free_poly(&r);
}
BENCHMARK(floats_in_one_variable)->Arg(100)->Arg(1000)->Unit(benchmark::kMicrosecond);

// Exact -----------------------------------------------------------------------------------------------------

// (1 + x + y + z + t)^k (2 + x + y + z + t)^k by the second factor.
static void divide_product(benchmark::State &state)
{
    const int k = static_cast<int>(state.range(0));
    polynode *a = power_sum(k, 1), *b = power_sum(k, 2), *n = nullptr, *q = nullptr;
    poly_mult(a, b, &n, nilpol);
    for (auto _ : state) {
        free_poly(&q);
        q = exact_quotient(n, b, five_variables());
    }
    label(state, q);
    if (!q || !poly_equal(q, a)) state.SkipWithError("wrong quotient");
    free_poly(&a);
    free_poly(&b);
    free_poly(&n);
    free_poly(&q);
}

static void exact_of_long_integers(benchmark::State &state)
{
    set_plain(false);
    divide_product(state);
}
BENCHMARK(exact_of_long_integers)->Arg(3)->Arg(6)->Arg(12)->Unit(benchmark::kMicrosecond);

static void exact_of_floats(benchmark::State &state)
{
    set_plain(true);
    divide_product(state);
}
BENCHMARK(exact_of_floats)->Arg(3)->Arg(6)->Arg(12)->Unit(benchmark::kMicrosecond);

// A trial that fails: with the tests, and without.
static void refused_trial(benchmark::State &state)
{
    set_plain(false);
    polynode *a = power_sum(6, 1), *b = power_sum(3, 2), *n = nullptr, *one = nullptr;
    poly_mult(a, b, &n, nilpol);
    base_poly(&one, 4);
    best_poly_add(n, one, &n);
    int divides = 0;
    for (auto _ : state)
        divides += trial_poly_divide_noq(n, b, five_variables(), static_cast<int>(state.range(0)), 0, 0);
    state.SetLabel(divides ? "wrong answer" : "no");
    free_poly(&a);
    free_poly(&b);
    free_poly(&n);
}
BENCHMARK(refused_trial)->Arg(0)->Arg(1)->Unit(benchmark::kMicrosecond);
