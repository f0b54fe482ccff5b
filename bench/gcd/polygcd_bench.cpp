// bench/gcd/polygcd_bench.cpp -- gcds in several variables over the integers, against FLINT.
//
// Three kinds of pairs: g a and g b; a and b coprime; g and g a. Factors are dense, all terms up to a degree
// in each variable, or sparse. The label is a checksum, the same for both: the terms of the operands, and of
// the gcd.
#include <benchmark/benchmark.h>
#include <cstdio>
#include "gcd/measure.h"
#include "gcd/polygcd.h"
#include "numbers/startup.h"
#include "poly/add.h"
#include "poly/mul.h"
#ifdef KELMAR_BENCH_FLINT
#include <flint/fmpz_mpoly.h>
#endif

using namespace kelmar;

// Operands -----------------------------------------------------------------------------------------------

static constexpr std::int32_t most_variables = 5;

static pt *variables_of(std::int32_t count)
{
    static pt record[most_variables];
    for (std::int32_t k = 0; k < count; ++k) {
        record[k].level = static_cast<std::int16_t>(k + 1);
        record[k].cut = poly_cutoff;
        record[k].next = k + 1 < count ? &record[k + 1] : nullptr;
    }
    number_polys = count;
    return record;
}

static void set_integers()
{
    flotemode = modularmode = lintmode = integerflag = finf = 0;
    if (numstash) return;
    open_stashes();
    initialize(KELMAR_SOURCE_DIR "/BACKWARD/");
}

static std::uint32_t seed = 1;

static std::int32_t draw(std::int32_t below)
{
    seed = seed * 1664525u + 1013904223u;
    return static_cast<std::int32_t>((seed >> 8) % static_cast<std::uint32_t>(below));
}

static polynode *dense(std::int32_t vars, std::int32_t degree)
{
    polynode *list = nullptr;
    if (vars == 0) {
        poly_set(draw(199) - 99, &list);
        if (poly_iszero(list)) poly_set(1, &list);
        return list;
    }
    for (std::int32_t e = 0; e <= degree; ++e) {
        polynode *term = dense(vars - 1, degree);
        make_monomial(&term, e, term);
        term->next = list;
        list = term;
    }
    return list;
}

static polynode *sparse(std::int32_t vars, std::int32_t degree, std::int32_t terms)
{
    polynode *sum = nullptr;
    poly_set(draw(99) + 1, &sum);
    for (std::int32_t k = 1; k < terms; ++k) {
        polynode *term = nullptr;
        poly_set(draw(99) + 1, &term);
        for (std::int32_t v = 0; v < vars; ++v) make_monomial(&term, draw(degree + 1), term);
        best_poly_add(sum, term, &sum);
    }
    return sum;
}

enum pair_kind { common_factor, coprime, divisor };

struct gcd_pair {
    polynode *a, *b;
    pt *names;
    std::int32_t vars;
};

// arguments: variables, degree, terms (0: dense), kind
static gcd_pair make_operands(const benchmark::State &state)
{
    set_integers();
    seed = 1;
    const auto vars = static_cast<std::int32_t>(state.range(0)),
               degree = static_cast<std::int32_t>(state.range(1)),
               terms = static_cast<std::int32_t>(state.range(2));
    polynode *f[3];
    for (polynode *&p : f) p = terms ? sparse(vars, degree, terms) : dense(vars, degree);
    gcd_pair pair = {nullptr, nullptr, variables_of(vars), vars};
    poly_mult(f[0], f[1], &pair.a, pair.names);
    switch (static_cast<pair_kind>(state.range(3))) {
    case common_factor: poly_mult(f[0], f[2], &pair.b, pair.names); break;
    case coprime: poly_mult(f[2], f[2], &pair.b, pair.names); break;
    case divisor: pair.b = copy_poly(f[0]); break;
    }
    for (polynode *&p : f) free_poly(&p);
    return pair;
}

static void set_label(benchmark::State &state, const gcd_pair &pair, long terms)
{
    char text[80];
    std::snprintf(text, sizeof text, "%ld and %ld terms, gcd %ld", static_cast<long>(poly_numterms(pair.a)),
                  static_cast<long>(poly_numterms(pair.b)), terms);
    state.SetLabel(text);
}

// Ours ---------------------------------------------------------------------------------------------------

static void polygcd_integers(benchmark::State &state)
{
    gcd_pair pair = make_operands(state);
    polynode *g = nullptr;
    for (auto _ : state) {
        clear_gcd_counters();
        Lpolygcd(&pair.a, &pair.b, &g, 1, pair.names);
    }
    set_label(state, pair, poly_numterms(g));
    free_poly(&g);
    free_poly(&pair.a);
    free_poly(&pair.b);
}

// FLINT --------------------------------------------------------------------------------------------------

#ifdef KELMAR_BENCH_FLINT
struct flint_terms {
    fmpz_mpoly_struct *f;
    fmpz_mpoly_ctx_struct *ctx;
    ulong exp[most_variables];
};

// Append the terms of p, a list of the variable `level`; numbers are words.
static void append(const polynode *p, std::int32_t level, flint_terms *to)
{
    for (; p; p = p->next) {
        if (level < most_variables) to->exp[level] = static_cast<ulong>(p->exp);
        if (!p->isnum) {
            append(p->coef, level + 1, to);
        } else {
            slong v = 0;
            for (const numnode *d = p->num->head; d; d = d->next) v = v * digit_base + d->digit;
            fmpz_mpoly_push_term_si_ui(to->f, v, to->exp, to->ctx);
        }
        for (std::int32_t k = level; k < most_variables; ++k) to->exp[k] = 0;
    }
}

static void set_flint(fmpz_mpoly_t f, const polynode *p, fmpz_mpoly_ctx_t ctx)
{
    flint_terms to = {f, ctx, {}};
    fmpz_mpoly_init(f, ctx);
    append(p, 0, &to);
    fmpz_mpoly_sort_terms(f, ctx);
}

static void flint_integers(benchmark::State &state)
{
    gcd_pair pair = make_operands(state);
    fmpz_mpoly_ctx_t ctx;
    fmpz_mpoly_ctx_init(ctx, pair.vars, ORD_LEX);
    fmpz_mpoly_t a, b, g;
    set_flint(a, pair.a, ctx);
    set_flint(b, pair.b, ctx);
    fmpz_mpoly_init(g, ctx);
    for (auto _ : state) {
        if (!fmpz_mpoly_gcd(g, a, b, ctx)) state.SkipWithError("no gcd");
    }
    set_label(state, pair, static_cast<long>(fmpz_mpoly_length(g, ctx)));
    fmpz_mpoly_clear(a, ctx);
    fmpz_mpoly_clear(b, ctx);
    fmpz_mpoly_clear(g, ctx);
    fmpz_mpoly_ctx_clear(ctx);
    free_poly(&pair.a);
    free_poly(&pair.b);
}
#endif

// Sizes --------------------------------------------------------------------------------------------------

static void sizes(benchmark::internal::Benchmark *b)
{
    b->Unit(benchmark::kMicrosecond);
    for (const int kind : {common_factor, coprime, divisor}) {
        b->Args({2, 4, 0, kind})->Args({3, 2, 0, kind})->Args({3, 4, 8, kind})->Args({4, 3, 8, kind});
        b->Args({5, 2, 8, kind});
        if (kind == common_factor) continue;
        b->Args({2, 20, 0, kind})->Args({3, 6, 0, kind})->Args({3, 20, 60, kind})->Args({5, 10, 60, kind});
        b->Args({5, 20, 100, kind});
    }
}

BENCHMARK(polygcd_integers)->Apply(sizes);
#ifdef KELMAR_BENCH_FLINT
BENCHMARK(flint_integers)->Apply(sizes);
#endif
