// bench/numbers/long_bench.cpp -- sums, products and quotients of long integers beside GMP's.
//
// Each line times the routine and GMP's on the same values, turn by turn in one run. `ours` and `gmp` are the
// nanoseconds of one operation in the best batch, `ratio` ours by GMP's, `growth` the exponent from the size
// before; the time column is a batch of operations. The label is a checksum of the results, the same on every
// machine.
#include <benchmark/benchmark.h>
#include <gmp.h>
#include <algorithm>
#include <chrono>
#include <cmath>
#include <cstdio>
#include "numbers/long_add.h"
#include "numbers/long_div.h"
#include "numbers/long_mul.h"

using namespace kelmar;

// Operands ------------------------------------------------------------------------------------------------

constexpr int most_pairs = 64;

struct operands {
    int pairs;
    number a[most_pairs], b[most_pairs], c, d;
    mpz_t za[most_pairs], zb[most_pairs], zc, zd;
};

static std::uint64_t next_random(std::uint64_t *state)
{
    std::uint64_t z = *state += 0x9e3779b97f4a7c15;
    z = (z ^ z >> 30) * 0xbf58476d1ce4e5b9;
    z = (z ^ z >> 27) * 0x94d049bb133111eb;
    return z ^ z >> 31;
}

// n and z = a random value of just `size` digits.
static void fill(number *n, mpz_t z, std::int64_t size, std::uint64_t *state)
{
    n->size = 0;
    mpz_init(z);
    for (std::int64_t i = 0; i < size; ++i) {
        std::int32_t digit = static_cast<std::int32_t>(next_random(state) & digit_mask);
        if (i == 0) digit |= digit_base / 2;
        numnode *node = new_digit(digit, nullptr);
        if (i == 0) {
            n->head = node;
        } else {
            n->tail->next = node;
        }
        n->tail = node;
        ++n->size;
        mpz_mul_2exp(z, z, digit_bits);
        mpz_add_ui(z, z, static_cast<unsigned long>(digit));
    }
}

static void set_up(operands *o, std::int64_t size_a, std::int64_t size_b)
{
    if (!numstash) open_stashes();
    std::uint64_t state = static_cast<std::uint64_t>(size_a * 40000 + size_b);
    o->pairs = size_a <= 16 ? most_pairs : size_a <= 256 ? 8 : 1;
    for (int i = 0; i < o->pairs; ++i) {
        fill(&o->a[i], o->za[i], size_a, &state);
        fill(&o->b[i], o->zb[i], size_b, &state);
    }
    o->c.size = o->d.size = 0;
    mpz_init(o->zc);
    mpz_init(o->zd);
}

static void tear_down(operands *o)
{
    for (int i = 0; i < o->pairs; ++i) {
        special_free(&o->a[i]);
        special_free(&o->b[i]);
        mpz_clear(o->za[i]);
        mpz_clear(o->zb[i]);
    }
    special_free(&o->c);
    special_free(&o->d);
    mpz_clear(o->zc);
    mpz_clear(o->zd);
}

static std::uint32_t checksum(std::uint32_t sum, const number *n)
{
    for (const numnode *node = n->head; node; node = node->next) {
        sum = sum * 31 + static_cast<std::uint32_t>(node->digit);
    }
    return sum;
}

// Measuring -----------------------------------------------------------------------------------------------

// One operation on pair i, ours and GMP's; the result is in c and zc, or in the first operand.
struct routine {
    const char *name;
    void (*ours)(operands *o, int i);
    void (*gmp)(operands *o, int i);
    std::int64_t (*size_a)(std::int64_t n);  // of the first operand, for size n of the second
    std::int64_t size, size_before;          // for the growth: this size and the one before it,
    double time, time_before;                // and the seconds of an operation
};

template <class F> static double seconds_of(F f)
{
    const auto start = std::chrono::steady_clock::now();
    f();
    return std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
}

// The exponent of the growth of time from the size before n; 0 for the first. A size may run several times.
static double growth(routine *r, std::int64_t n, double time)
{
    if (n != r->size) {
        r->size_before = r->size;
        r->time_before = r->time;
    }
    r->size = n;
    r->time = time;
    if (r->size_before == 0) return 0;
    const double longer = static_cast<double>(n) / static_cast<double>(r->size_before);
    return std::log(time / r->time_before) / std::log(longer);
}

static void run(benchmark::State &state, routine *r)
{
    static operands o;
    const std::int64_t n = state.range(0);
    set_up(&o, r->size_a(n), n);
    const int repeats = n <= 16 ? 100 : n <= 256 ? 10 : 1;
    const double count = static_cast<double>(repeats) * o.pairs;
    double ours = 1e9, gmp = 1e9;  // the best batch of each: other work on the machine only adds
    for (auto _ : state) {
        const double t = seconds_of([&] {
            for (int k = 0; k < repeats; ++k) {
                for (int i = 0; i < o.pairs; ++i) r->ours(&o, i);
            }
        });
        ours = std::min(ours, t);
        const double theirs = seconds_of([&] {
            for (int k = 0; k < repeats; ++k) {
                for (int i = 0; i < o.pairs; ++i) r->gmp(&o, i);
            }
        });
        gmp = std::min(gmp, theirs);
        state.SetIterationTime(t);
    }
    std::uint32_t sum = 0;
    for (int i = 0; i < o.pairs; ++i) {
        r->ours(&o, i);
        sum = checksum(sum, o.c.size > 0 ? &o.c : &o.a[i]);
        if (o.d.size > 0) sum = checksum(sum, &o.d);
    }
    char label[32];
    std::snprintf(label, sizeof label, "sum %08x", sum);
    state.SetLabel(label);
    state.counters["ours"] = ours / count * 1e9;
    state.counters["gmp"] = gmp / count * 1e9;
    state.counters["ratio"] = ours / gmp;
    state.counters["growth"] = growth(r, n, ours / count);
    tear_down(&o);
}

// Routines ------------------------------------------------------------------------------------------------

static std::int64_t same(std::int64_t n)
{
    return n;
}

static std::int64_t twice(std::int64_t n)
{
    return 2 * n;
}

static routine routines[] = {
    {"add", [](operands *o, int i) { summ(&o->a[i], &o->b[i], &o->c, digit_base); },
     [](operands *o, int i) { mpz_add(o->zc, o->za[i], o->zb[i]); }, same, 0, 0, 0, 0},
    {"sub",
     [](operands *o, int i) { meddiff(o->a[i].size, o->b[i].size, o->a[i].head, o->b[i].head, &o->c); },
     [](operands *o, int i) { mpz_sub(o->zc, o->za[i], o->zb[i]); }, same, 0, 0, 0, 0},
    {"add_in_place",  // and back, so that values do not grow: two operations each
     [](operands *o, int i) { fastsum(&o->a[i], &o->b[i]), fastdiff(&o->a[i], &o->b[i]); },
     [](operands *o, int i) { mpz_add(o->za[i], o->za[i], o->zb[i]), mpz_sub(o->za[i], o->za[i], o->zb[i]); },
     same, 0, 0, 0, 0},
    {"mul", [](operands *o, int i) { fast_mult(&o->a[i], &o->b[i], &o->c); },
     [](operands *o, int i) { mpz_mul(o->zc, o->za[i], o->zb[i]); }, same, 0, 0, 0, 0},
    {"mul_on_chains", [](operands *o, int i) { multiply(&o->a[i], &o->b[i], &o->c); },
     [](operands *o, int i) { mpz_mul(o->zc, o->za[i], o->zb[i]); }, same, 0, 0, 0, 0},
    {"square", [](operands *o, int i) { fast_mult(&o->a[i], &o->a[i], &o->c); },
     [](operands *o, int i) { mpz_mul(o->zc, o->za[i], o->za[i]); }, same, 0, 0, 0, 0},
    {"divide", [](operands *o, int i) { divide(&o->a[i], &o->b[i], &o->c, &o->d); },
     [](operands *o, int i) { mpz_tdiv_qr(o->zc, o->zd, o->za[i], o->zb[i]); }, twice, 0, 0, 0, 0},
    {"divide_same_size", [](operands *o, int i) { divide(&o->a[i], &o->b[i], &o->c, &o->d); },
     [](operands *o, int i) { mpz_tdiv_qr(o->zc, o->zd, o->za[i], o->zb[i]); }, same, 0, 0, 0, 0},
};

int main(int argc, char **argv)
{
    for (routine &r : routines) {
        benchmark::internal::Benchmark *b = benchmark::RegisterBenchmark(
            r.name, [&r](benchmark::State &state) { run(state, &r); });
        b->UseManualTime();
        for (std::int64_t n : {1, 2, 4, 16, 17, 64, 256, 1024, 4096, 16384}) {
            if (r.ours == routines[4].ours && n > 1024) continue;
            b->Arg(n);
        }
    }
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    return 0;
}
