// bench/rings/rings_bench.cpp -- what a change of the ground ring costs.
//
// ToResidues: a polynomial of a million terms to its residues and back; the counter `ns` is one number, there
// and back; `fixes` the fix records, one for each run of terms that vanishes. Product and Evaluate: the same
// work modulo a prime below 65535, with products of residues in 32 bits and in 64. ModeTests: a sum of
// doubles by way of num_add, which tests the mode each time, beside the bare sum.
#include <benchmark/benchmark.h>
#include "numbers/dispatch.h"
#include "numbers/stash.h"
#include "poly/eval.h"
#include "poly/mul.h"
#include "poly/ring_change.h"
#include "session/start.h"

using namespace kelmar;

namespace {

constexpr std::int32_t small_prime_modulus = 65521;
constexpr std::int32_t terms = 1000000;

std::uint64_t seed;  // set anew by each benchmark, so that checksums can be compared

void prepare_once()
{
    static bool done = false;
    if (!done) prepare_session(KELMAR_SOURCE_DIR "/BACKWARD/");
    done = true;
    seed = 1;
    flotemode = lintmode = modularmode = integerflag = 0;
}

std::uint32_t drawn()
{
    seed = seed * 6364136223846793005u + 1442695040888963407u;
    return static_cast<std::uint32_t>(seed >> 33);
}

number *long_number(std::int32_t digits)
{
    number *n = nullptr;
    newimag(&n);
    n->size = 0;
    special_set(static_cast<std::int32_t>(drawn() % digit_base) | 1, n);
    for (std::int32_t k = 1; k < digits; ++k) {
        numnode *tail = new_digit(static_cast<std::int32_t>(drawn() % digit_base), nullptr);
        n->tail->next = tail;
        n->tail = tail;
        ++n->size;
    }
    return n;
}

// A dense polynomial in one variable. one_in: each so many-th number is a multiple of the prime; 0: none.
polynode *dense(std::int32_t count, std::int32_t digits, std::int32_t one_in)
{
    polynode *list = nullptr;
    for (std::int32_t e = 0; e < count; ++e) {
        number *n = long_number(digits);
        if (one_in && e % one_in == one_in - 1) {
            special_free(n);
            special_set(small_prime_modulus * 3, n);
        }
        polynode *coef = new_constant(n);
        polynode *term = e ? new_term(e, coef) : coef;
        term->next = list;
        list = term;
    }
    return list;
}

std::int64_t word_sum(const polynode *p)
{
    std::int64_t sum = 0;
    for (; p; p = p->next) sum += p->isnum ? p->num->word : word_sum(p->coef);
    return sum;
}

}  // namespace

static void ToResidues(benchmark::State &state)
{
    prepare_once();
    polynode *p = dense(terms, static_cast<std::int32_t>(state.range(0)),
                        static_cast<std::int32_t>(state.range(1)));
    std::int64_t fixes = 0, sum = 0;
    for (auto _ : state) {
        ring_bracket b;
        enter_modulus(small_prime_modulus, &b);
        poly_change_to_mod(&p, 1);
        state.PauseTiming();
        fixes = 0;
        for (const fix_node *f = masterfix; f; f = f->next) ++fixes;
        sum = word_sum(p);
        state.ResumeTiming();
        leave_ring(&b);
    }
    free_poly(&p);
    state.SetLabel("checksum " + std::to_string(sum));
    state.counters["fixes"] = static_cast<double>(fixes);
    state.counters["s a number"] = benchmark::Counter(terms, benchmark::Counter::kIsIterationInvariantRate |
                                                                 benchmark::Counter::kInvert);
}
BENCHMARK(ToResidues)
    ->ArgNames({"digits", "one_in"})
    ->Args({1, 0})
    ->Args({1, 10})
    ->Args({3, 0})
    ->Unit(benchmark::kMillisecond);

// The same polynomial for good, and back to digits.
static void ForGood(benchmark::State &state)
{
    prepare_once();
    std::int64_t sum = 0;
    for (auto _ : state) {
        state.PauseTiming();
        polynode *p = dense(terms, 1, 0);
        ring_bracket b;
        enter_modulus(small_prime_modulus, &b);
        state.ResumeTiming();
        poly_change_num(&p);
        poly_change_from_mod(p);
        state.PauseTiming();
        sum = word_sum(p);
        leave_ring(&b);
        free_poly(&p);
        state.ResumeTiming();
    }
    state.SetLabel("checksum " + std::to_string(sum));
    state.counters["s a number"] = benchmark::Counter(terms, benchmark::Counter::kIsIterationInvariantRate |
                                                                 benchmark::Counter::kInvert);
}
BENCHMARK(ForGood)->Unit(benchmark::kMillisecond);

static void Product(benchmark::State &state)
{
    prepare_once();
    ring_bracket b;
    enter_modulus(small_prime_modulus, &b);
    smallmodulus = static_cast<std::int32_t>(state.range(1));
    const std::int32_t count = static_cast<std::int32_t>(state.range(0));
    polynode *f = dense(count, 1, 0), *g = dense(count, 1, 0), *product = nullptr;
    poly_change_num(&f);
    poly_change_num(&g);
    for (auto _ : state) poly_mult(f, g, &product, nilpol);
    state.SetLabel("checksum " + std::to_string(word_sum(product)));
    free_poly(&f);
    free_poly(&g);
    free_poly(&product);
    leave_ring(&b);
}
BENCHMARK(Product)
    ->ArgNames({"terms", "small"})
    ->ArgsProduct({{20, 100, 1000}, {1, 0}})
    ->Unit(benchmark::kMicrosecond);

static void Evaluate(benchmark::State &state)
{
    prepare_once();
    ring_bracket b;
    enter_modulus(small_prime_modulus, &b);
    smallmodulus = static_cast<std::int32_t>(state.range(1));
    polynode *f = dense(static_cast<std::int32_t>(state.range(0)), 1, 0), *point = new_point(12345);
    poly_change_num(&f);
    std::int32_t v = 0;
    for (auto _ : state) benchmark::DoNotOptimize(mod_all_poly_eval(f, point, &v));
    state.SetLabel("checksum " + std::to_string(v));
    free_poly(&f);
    free_poly(&point);
    leave_ring(&b);
}
BENCHMARK(Evaluate)
    ->ArgNames({"terms", "small"})
    ->ArgsProduct({{1000, 100000}, {1, 0}})
    ->Unit(benchmark::kMicrosecond);

static void ModeTests(benchmark::State &state)
{
    prepare_once();
    flotemode = lintmode = 1;
    const bool tested = state.range(0) != 0;
    number x[1024] = {};
    for (number &n : x) n.real = drawn();
    number sum = {};
    for (auto _ : state) {
        sum.real = 0;
        for (number &n : x) {
            if (tested) {
                num_add(&sum, &n, &sum);
            } else {
                sum.real += n.real;
            }
        }
        benchmark::DoNotOptimize(sum.real);
    }
    state.counters["s a sum"] = benchmark::Counter(1024, benchmark::Counter::kIsIterationInvariantRate |
                                                             benchmark::Counter::kInvert);
    flotemode = lintmode = 0;
}
BENCHMARK(ModeTests)->ArgNames({"tested"})->Arg(1)->Arg(0);
