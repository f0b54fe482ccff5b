// bench/numbers/gcd_bench.cpp -- common divisors, reduced fractions and square roots beside GMP's.
//
// Each line times the routine and GMP's on the same values, turn by turn in one run. Time is a round over all
// pairs; `ns` is one operation of ours, `gmp` one of GMP's, `ratio` ours by GMP's. The label is a checksum of
// the results, the same on every machine.
#include <benchmark/benchmark.h>
#include <gmp.h>
#include <chrono>
#include <cstdio>
#include "numbers/long_gcd.h"
#include "numbers/long_root.h"

using namespace kelmar;

// Operands --------------------------------------------------------------------------------------------------

static constexpr int most_pairs = 64;

struct operands {
    int pairs;
    number a[most_pairs], b[most_pairs], c, u, v;
    mpz_t za[most_pairs], zb[most_pairs], zc, zu, zv;
};

static void take_mpz(const mpz_t z, number *n)
{
    number chain = {};
    for (std::size_t bit = 0; bit == 0 || bit < mpz_sizeinbase(z, 2); bit += digit_bits) {
        std::int32_t digit = 0;
        for (int i = 0; i < digit_bits; ++i) digit |= mpz_tstbit(z, bit + i) << i;
        chain.head = new_digit(digit, chain.head);
        if (chain.size++ == 0) chain.tail = chain.head;
    }
    *n = chain;
}

// Random values of `size` digits; `common` of them make a factor that each pair shares.
static void set_up(operands *o, std::int64_t size, std::int64_t common)
{
    if (!numstash) open_stashes();
    static gmp_randstate_t state;
    gmp_randinit_default(state);
    gmp_randseed_ui(state, static_cast<unsigned long>(size));
    mpz_inits(o->zc, o->zu, o->zv, nullptr);
    o->pairs = size <= 64 ? most_pairs : size <= 1024 ? 8 : 1;
    for (int i = 0; i < o->pairs; ++i) {
        mpz_inits(o->za[i], o->zb[i], nullptr);
        mpz_urandomb(o->za[i], state, static_cast<mp_bitcnt_t>((size - common) * digit_bits));
        mpz_urandomb(o->zb[i], state, static_cast<mp_bitcnt_t>((size - common) * digit_bits));
        mpz_setbit(o->za[i], static_cast<mp_bitcnt_t>((size - common) * digit_bits - 1));
        mpz_setbit(o->zb[i], static_cast<mp_bitcnt_t>((size - common) * digit_bits - 1));
        if (common > 0) {
            mpz_urandomb(o->zc, state, static_cast<mp_bitcnt_t>(common * digit_bits));
            mpz_setbit(o->zc, static_cast<mp_bitcnt_t>(common * digit_bits - 1));
            mpz_mul(o->za[i], o->za[i], o->zc);
            mpz_mul(o->zb[i], o->zb[i], o->zc);
        }
        take_mpz(o->za[i], &o->a[i]);
        take_mpz(o->zb[i], &o->b[i]);
    }
    o->c.size = o->u.size = o->v.size = 0;
}

static void tear_down(operands *o)
{
    for (int i = 0; i < o->pairs; ++i) {
        special_free(&o->a[i]);
        special_free(&o->b[i]);
        mpz_clears(o->za[i], o->zb[i], nullptr);
    }
    for (number *n : {&o->c, &o->u, &o->v}) special_free(n);
    mpz_clears(o->zc, o->zu, o->zv, nullptr);
}

// Routines --------------------------------------------------------------------------------------------------

struct routine {
    const char *name;
    void (*ours)(operands *o, int i);
    void (*gmp)(operands *o, int i);
    int shared;  // of 4 parts of the size, how many the operands share
};

static void reduce_with_gmp(operands *o, int i)
{
    mpz_gcd(o->zc, o->za[i], o->zb[i]);
    mpz_divexact(o->zu, o->za[i], o->zc);
    mpz_divexact(o->zv, o->zb[i], o->zc);
}

static void reduce(operands *o, int i)
{
    int is_one;
    extgcd(&o->a[i], &o->b[i], &o->c, &o->u, &o->v, &is_one);
}

static const routine routines[] = {
    {"gcd", [](operands *o, int i) { binary_gcd(&o->a[i], &o->b[i], &o->c); },
     [](operands *o, int i) { mpz_gcd(o->zc, o->za[i], o->zb[i]); }, 0},
    {"reduce_coprime", reduce, reduce_with_gmp, 0},
    {"reduce_half", reduce, reduce_with_gmp, 2},
    {"sqrt", [](operands *o, int i) { int_sqrt(&o->a[i], &o->c, 1); },
     [](operands *o, int i) { mpz_sqrt(o->zc, o->za[i]); }, 0},
};

// Measuring -------------------------------------------------------------------------------------------------

template <class F> static double seconds_of(F f)
{
    const auto start = std::chrono::steady_clock::now();
    f();
    return std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
}

static void run(benchmark::State &state, const routine *r)
{
    static operands o;
    const std::int64_t n = state.range(0);
    set_up(&o, n, n * r->shared / 4);
    const int repeats = n <= 16 ? 20 : n <= 256 ? 4 : 1;
    double ours = 0, gmp = 0, count = 0;
    for (auto _ : state) {
        const double t = seconds_of([&] {
            for (int k = 0; k < repeats; ++k) {
                for (int i = 0; i < o.pairs; ++i) r->ours(&o, i);
            }
        });
        gmp += seconds_of([&] {
            for (int k = 0; k < repeats; ++k) {
                for (int i = 0; i < o.pairs; ++i) r->gmp(&o, i);
            }
        });
        ours += t;
        count += repeats * o.pairs;
        state.SetIterationTime(t);
    }
    std::uint32_t sum = 0;
    for (int i = 0; i < o.pairs; ++i) {
        r->ours(&o, i);
        for (const numnode *node = o.c.head; node; node = node->next) {
            sum = sum * 31 + static_cast<std::uint32_t>(node->digit);
        }
    }
    char label[32];
    std::snprintf(label, sizeof label, "sum %08x", sum);
    state.SetLabel(label);
    state.counters["ns"] = ours / count * 1e9;
    state.counters["gmp"] = gmp / count * 1e9;
    state.counters["ratio"] = ours / gmp;
    tear_down(&o);
}

int main(int argc, char **argv)
{
    for (const routine &r : routines) {
        benchmark::internal::Benchmark *b = benchmark::RegisterBenchmark(
            r.name, [&r](benchmark::State &state) { run(state, &r); });
        b->UseManualTime()->MinTime(0.1);
        for (std::int64_t n : {1, 2, 4, 16, 17, 64, 256, 1024, 4096, 16384}) b->Arg(n);
    }
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    return 0;
}
