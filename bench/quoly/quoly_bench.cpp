// bench/quoly/quoly_bench.cpp -- rational numbers against GMP, sums of fractions against FLINT where it is
// installed.
//
// The label is a checksum of the result: for numbers the value modulo 2^32, for fractions the terms of
// numerator and denominator. FLINT's sums are done as its own fractions do them: gcd of the denominators,
// then of the numerator with that.
#include <benchmark/benchmark.h>
#include <gmp.h>
#include <cstdio>
#include <random>
#include "numbers/number.h"
#include "poly/add.h"
#include "poly/mul.h"
#include "quoly/add.h"
#include "quoly/divide.h"
#include "quoly/mul.h"
#if __has_include(<flint/fmpz_mpoly.h>) && defined(KELMAR_BENCH_FLINT)
#include <flint/fmpz_mpoly.h>
#define HAS_FLINT 1
#else
#define HAS_FLINT 0
#endif

using namespace kelmar;

static void use_digits()
{
    if (!numstash) open_stashes();
    flotemode = modularmode = lintmode = integerflag = 0;
}

static void use_doubles()
{
    use_digits();
    flotemode = lintmode = 1;
}

// Rational numbers ----------------------------------------------------------------------------------------

constexpr int pairs = 512;

// Numerators and denominators of `digits` digits of 28 bits.
struct rational_pairs {
    quolynode *a[pairs] = {}, *b[pairs] = {};
    mpq_t x[pairs], y[pairs];
    explicit rational_pairs(int digits)
    {
        std::mt19937_64 random(7);
        for (int k = 0; k < pairs; ++k) {
            draw(&random, digits, &a[k], x[k]);
            draw(&random, digits, &b[k], y[k]);
        }
    }
    ~rational_pairs()
    {
        for (int k = 0; k < pairs; ++k) {
            free_quoly(&a[k]);
            free_quoly(&b[k]);
            mpq_clear(x[k]);
            mpq_clear(y[k]);
        }
    }
    static std::int64_t word(std::mt19937_64 *random, int digits)
    {
        return 1 + static_cast<std::int64_t>((*random)() >> (64 - 28 * digits + 1));
    }
    static void set_word(std::int64_t v, quolynode **q)
    {
        quolynode *high = nullptr, *base = nullptr;
        quoly_set(static_cast<std::int32_t>(v >> 28), &high);
        quoly_set(1 << 14, &base);
        fast_quoly_mult(&high, base);
        fast_quoly_mult(&high, base);
        quoly_set(static_cast<std::int32_t>(v & digit_mask), q);
        best_quoly_add(q, &high);
        free_quoly(&base);
    }
    static void draw(std::mt19937_64 *random, int digits, quolynode **q, mpq_t v)
    {
        const std::int64_t n = word(random, digits), d = word(random, digits);
        quolynode *den = nullptr;
        set_word(n, q);
        set_word(d, &den);
        fast_quoly_quot(q, den, 0);
        free_quoly(&den);
        mpq_init(v);
        mpq_set_si(v, n, static_cast<unsigned long>(d));
        mpq_canonicalize(v);
    }
};

using value_operation = void (*)(const quolynode *, const quolynode *, quolynode **);
using mpq_operation = void (*)(mpq_ptr, mpq_srcptr, mpq_srcptr);

static void divide(const quolynode *a, const quolynode *b, quolynode **c)
{
    quoly_quot(a, b, 0, c);
}

struct rational_case {
    value_operation ours;
    mpq_operation theirs;
};
static const rational_case rational_cases[] = {
    {quoly_add, mpq_add}, {quoly_sub, mpq_sub}, {quoly_mult, mpq_mul}, {divide, mpq_div}};

static std::uint32_t low_word(const quolynode *q)
{
    std::uint32_t sum = 0;
    const number *const parts[2] = {q->is_num ? q->num : q->top->num, q->is_num ? nullptr : q->den->num};
    for (const number *n : parts) {
        for (const numnode *d = n ? n->head : nullptr; d; d = d->next)
            sum = sum * 31 + static_cast<std::uint32_t>(d->digit);
    }
    return sum;
}

static void label(benchmark::State &state, std::uint32_t sum)
{
    char text[32];
    std::snprintf(text, sizeof text, "checksum %08x", sum);
    state.SetLabel(text);
}

// One operation on pairs of rationals. Arguments: which one; digits.
static void rationals(benchmark::State &state)
{
    use_digits();
    rational_pairs set(static_cast<int>(state.range(1)));
    const value_operation op = rational_cases[state.range(0)].ours;
    quolynode *c = nullptr;
    std::uint32_t sum = 0;
    for (auto _ : state) {
        for (int k = 0; k < pairs; ++k) op(set.a[k], set.b[k], &c);
    }
    for (int k = 0; k < pairs; ++k) {
        op(set.a[k], set.b[k], &c);
        sum += low_word(c);
    }
    free_quoly(&c);
    label(state, sum);
    state.SetItemsProcessed(state.iterations() * pairs);
}

static void rationals_by_gmp(benchmark::State &state)
{
    use_digits();
    rational_pairs set(static_cast<int>(state.range(1)));
    const mpq_operation op = rational_cases[state.range(0)].theirs;
    mpq_t c;
    mpq_init(c);
    for (auto _ : state) {
        for (int k = 0; k < pairs; ++k) op(c, set.x[k], set.y[k]);
    }
    mpq_clear(c);
    state.SetItemsProcessed(state.iterations() * pairs);
}

// 1 + 1/2 + .. + 1/n in place: long numerators over long denominators.
static void harmonic(benchmark::State &state)
{
    use_digits();
    std::uint32_t sum = 0;
    for (auto _ : state) {
        quolynode *h = nullptr, *term = nullptr, *k_value = nullptr, *one = nullptr;
        quoly_set(0, &h);
        quoly_set(1, &one);
        for (std::int32_t k = 1; k <= state.range(0); ++k) {
            quoly_set(k, &k_value);
            quoly_quot(one, k_value, 0, &term);
            better_quoly_add(&h, term);
        }
        sum = low_word(h);
        for (quolynode **q : {&h, &term, &k_value, &one}) free_quoly(q);
    }
    label(state, sum);
}

static void harmonic_by_gmp(benchmark::State &state)
{
    mpq_t h, term;
    mpq_init(h);
    mpq_init(term);
    for (auto _ : state) {
        mpq_set_ui(h, 0, 1);
        for (unsigned long k = 1; k <= static_cast<unsigned long>(state.range(0)); ++k) {
            mpq_set_ui(term, 1, k);
            mpq_add(h, h, term);
        }
    }
    mpq_clear(h);
    mpq_clear(term);
}

// The product of 4 k^2 / (4 k^2 - 1) for k = 1 .. n in place.
static void running_product(benchmark::State &state)
{
    use_digits();
    std::uint32_t sum = 0;
    for (auto _ : state) {
        quolynode *p = nullptr, *factor = nullptr, *den = nullptr;
        quoly_set(1, &p);
        for (std::int32_t k = 1; k <= state.range(0); ++k) {
            quoly_set(4 * k * k, &factor);
            quoly_set(4 * k * k - 1, &den);
            fast_quoly_quot(&factor, den, 0);
            fast_quoly_mult(&p, factor);
        }
        sum = low_word(p);
        for (quolynode **q : {&p, &factor, &den}) free_quoly(q);
    }
    label(state, sum);
}

static void running_product_by_gmp(benchmark::State &state)
{
    mpq_t p, factor;
    mpq_init(p);
    mpq_init(factor);
    for (auto _ : state) {
        mpq_set_ui(p, 1, 1);
        for (unsigned long k = 1; k <= static_cast<unsigned long>(state.range(0)); ++k) {
            mpq_set_ui(factor, 4 * k * k, 4 * k * k - 1);
            mpq_mul(p, p, factor);
        }
    }
    mpq_clear(p);
    mpq_clear(factor);
}

// Fractions -------------------------------------------------------------------------------------------------

constexpr int variables = 3;

static void adjoin_variables()
{
    if (polynames) return;
    for (const char *name : {"z", "y", "x"}) insert_poly_name(name, 0, 0);
}

// A linear form with small coefficients: c x + d y + e z + f.
struct linear_form {
    int c[variables + 1];
};

constexpr int pool_size = 6;
static const linear_form pool[pool_size] = {{{1, 1, 0, 1}},  {{1, -1, 2, 3}}, {{2, 0, 1, -1}},
                                            {{1, 3, -1, 0}}, {{3, 1, 1, 5}},  {{1, 0, -2, 7}}};

// What one fraction is: a small form over the product of some of the pool.
struct fraction_plan {
    linear_form top;
    int factors[3];
    int count;
};

static void plan_fractions(fraction_plan *plans, int n)
{
    std::mt19937_64 random(11);
    const auto below = [&](std::uint64_t m) { return static_cast<int>(random() % m); };
    for (int k = 0; k < n; ++k) {
        for (int &c : plans[k].top.c) c = below(7) - 3;
        plans[k].top.c[variables] = 1 + below(5);
        plans[k].count = 1 + below(3);
        for (int &f : plans[k].factors) f = below(pool_size);
    }
}

static void form_value(const linear_form *form, quolynode **q)
{
    quoly_set(form->c[variables], q);
    for (std::int32_t k = 0; k < variables; ++k) {
        quolynode *term = nullptr, *factor = nullptr;
        quoly_variable(k + 1, &term);
        quoly_set(form->c[k], &factor);
        fast_quoly_mult(&term, factor);
        best_quoly_add(q, &term);
        free_quoly(&factor);
    }
}

static void plan_value(const fraction_plan *plan, quolynode **q)
{
    quolynode *factor = nullptr;
    form_value(&plan->top, q);
    for (int k = 0; k < plan->count; ++k) {
        form_value(&pool[plan->factors[k]], &factor);
        fast_quoly_quot(q, factor, 0);
        free_quoly(&factor);
    }
}

static int count_terms(const polynode *p)
{
    int count = 0;
    for (; p; p = p->next) count += p->isnum ? 1 : count_terms(p->coef);
    return count;
}

static void sum_fractions(benchmark::State &state)
{
    adjoin_variables();
    const int n = static_cast<int>(state.range(0));
    fraction_plan plans[200];
    quolynode *terms[200] = {};
    plan_fractions(plans, n);
    for (int k = 0; k < n; ++k) plan_value(&plans[k], &terms[k]);
    quolynode *sum = nullptr;
    for (auto _ : state) {
        quoly_set(0, &sum);
        for (int k = 0; k < n; ++k) better_quoly_add(&sum, terms[k]);
    }
    char text[64];
    std::snprintf(text, sizeof text, "%d terms over %d", count_terms(sum->is_num ? nullptr : sum->top),
                  count_terms(sum->is_num ? nullptr : sum->den));
    state.SetLabel(text);
    free_quoly(&sum);
    for (int k = 0; k < n; ++k) free_quoly(&terms[k]);
}

static void exact_fractions(benchmark::State &state)
{
    use_digits();
    sum_fractions(state);
}

static void float_fractions(benchmark::State &state)
{
    use_doubles();
    sum_fractions(state);
    use_digits();
}

#if HAS_FLINT
struct flint_fraction {
    fmpz_mpoly_t top, den;
};

static void flint_form(fmpz_mpoly_t p, const linear_form *form, const fmpz_mpoly_ctx_t ctx)
{
    ulong exps[variables];
    fmpz_mpoly_set_si(p, form->c[variables], ctx);
    for (int k = 0; k < variables; ++k) {
        for (int j = 0; j < variables; ++j) exps[j] = j == k;
        fmpz_mpoly_set_coeff_si_ui(p, form->c[k], exps, ctx);
    }
}

// a = a + b in lowest terms.
static void flint_add(flint_fraction *a, const flint_fraction *b, const fmpz_mpoly_ctx_t ctx)
{
    fmpz_mpoly_t g, e1, e2, t, h;
    for (fmpz_mpoly_struct *p : {g, e1, e2, t, h}) fmpz_mpoly_init(p, ctx);
    fmpz_mpoly_gcd_cofactors(g, e1, e2, a->den, b->den, ctx);
    fmpz_mpoly_mul(a->top, a->top, e2, ctx);
    fmpz_mpoly_mul(t, b->top, e1, ctx);
    fmpz_mpoly_add(a->top, a->top, t, ctx);
    fmpz_mpoly_mul(a->den, e1, e2, ctx);
    if (!fmpz_mpoly_is_one(g, ctx)) {
        fmpz_mpoly_gcd_cofactors(h, a->top, g, a->top, g, ctx);
        fmpz_mpoly_mul(a->den, a->den, g, ctx);
    }
    for (fmpz_mpoly_struct *p : {g, e1, e2, t, h}) fmpz_mpoly_clear(p, ctx);
}

static void exact_fractions_by_flint(benchmark::State &state)
{
    const int n = static_cast<int>(state.range(0));
    fraction_plan plans[200];
    flint_fraction terms[200], sum;
    fmpz_mpoly_ctx_t ctx;
    fmpz_mpoly_ctx_init(ctx, variables, ORD_LEX);
    plan_fractions(plans, n);
    fmpz_mpoly_t factor;
    fmpz_mpoly_init(factor, ctx);
    for (int k = 0; k < n; ++k) {
        fmpz_mpoly_init(terms[k].top, ctx);
        fmpz_mpoly_init(terms[k].den, ctx);
        flint_form(terms[k].top, &plans[k].top, ctx);
        fmpz_mpoly_one(terms[k].den, ctx);
        for (int j = 0; j < plans[k].count; ++j) {
            flint_form(factor, &pool[plans[k].factors[j]], ctx);
            fmpz_mpoly_mul(terms[k].den, terms[k].den, factor, ctx);
        }
        fmpz_mpoly_gcd_cofactors(factor, terms[k].top, terms[k].den, terms[k].top, terms[k].den, ctx);
    }
    fmpz_mpoly_init(sum.top, ctx);
    fmpz_mpoly_init(sum.den, ctx);
    for (auto _ : state) {
        fmpz_mpoly_zero(sum.top, ctx);
        fmpz_mpoly_one(sum.den, ctx);
        for (int k = 0; k < n; ++k) flint_add(&sum, &terms[k], ctx);
    }
    char text[64];
    std::snprintf(text, sizeof text, "%d terms over %d", static_cast<int>(fmpz_mpoly_length(sum.top, ctx)),
                  static_cast<int>(fmpz_mpoly_length(sum.den, ctx)));
    state.SetLabel(text);
    for (int k = 0; k < n; ++k) {
        fmpz_mpoly_clear(terms[k].top, ctx);
        fmpz_mpoly_clear(terms[k].den, ctx);
    }
    fmpz_mpoly_clear(sum.top, ctx);
    fmpz_mpoly_clear(sum.den, ctx);
    fmpz_mpoly_clear(factor, ctx);
    fmpz_mpoly_ctx_clear(ctx);
}
#endif

static void rational_arguments(benchmark::internal::Benchmark *b)
{
    for (int op = 0; op < 4; ++op) {
        for (int digits : {1, 2}) b->Args({op, digits});
    }
}

BENCHMARK(rationals)->Apply(rational_arguments);
BENCHMARK(rationals_by_gmp)->Apply(rational_arguments);
BENCHMARK(harmonic)->Arg(100)->Arg(1000);
BENCHMARK(harmonic_by_gmp)->Arg(100)->Arg(1000);
BENCHMARK(running_product)->Arg(100)->Arg(1000);
BENCHMARK(running_product_by_gmp)->Arg(100)->Arg(1000);
BENCHMARK(exact_fractions)->Arg(20)->Arg(50)->Arg(200)->Unit(benchmark::kMillisecond);
#if HAS_FLINT
BENCHMARK(exact_fractions_by_flint)->Arg(20)->Arg(50)->Arg(200)->Unit(benchmark::kMillisecond);
#endif
BENCHMARK(float_fractions)->Arg(20)->Arg(50)->Arg(200)->Unit(benchmark::kMillisecond);
