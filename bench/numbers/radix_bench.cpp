// bench/numbers/radix_bench.cpp -- decimal form of long integers beside GMP's, and two whole tasks.
//
// `to_decimal` makes the decimal chain, GMP the text; `ns` and `gmp` are one conversion, `ratio` ours by
// GMP's. `in_products` is the time in products of two numbers of that size, the bound being 3. The tasks make
// a large number and write its text, as a session would. The label is a checksum of the results, the same on
// every machine.
#include <benchmark/benchmark.h>
#include <gmp.h>
#include <chrono>
#include <cstdio>
#include <vector>
#include "numbers/decimal.h"
#include "numbers/long_mul.h"
#include "numbers/long_power.h"
#include "numbers/radix.h"

using namespace kelmar;

// The table of powers, as the start-up code fills it from its file.
static void open_once()
{
    if (numstash) return;
    open_stashes();
    number power = {};
    special_set(1, &power);
    for (number &entry : two_28) {
        fillout(&power, 1);
        number chain = {};
        verybig_base_10(power.head, power.tail, power.size, &chain);
        entry = chain;
    }
    special_free(&power);
}

template <class F> static double seconds_of(F f)
{
    const auto start = std::chrono::steady_clock::now();
    f();
    return std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
}

static std::uint32_t checksum(const number *n)
{
    std::uint32_t sum = 0;
    for (const numnode *node = n->head; node; node = node->next) {
        sum = sum * 31 + static_cast<std::uint32_t>(node->digit);
    }
    return sum;
}

static void label(benchmark::State &state, std::uint32_t sum)
{
    char text[32];
    std::snprintf(text, sizeof text, "sum %08x", sum);
    state.SetLabel(text);
}

// Conversion ------------------------------------------------------------------------------------------------

static void bm_to_decimal(benchmark::State &state)
{
    open_once();
    const std::int32_t size = static_cast<std::int32_t>(state.range(0));
    number n = {}, out = {}, other = {}, product = {};
    mpz_t z;
    mpz_init(z);
    std::uint64_t seed = static_cast<std::uint64_t>(size);
    for (std::int32_t i = 0; i < size; ++i) {
        seed = seed * 6364136223846793005u + 1442695040888963407u;
        const std::int32_t digit = static_cast<std::int32_t>(seed >> 36) | (i == 0 ? digit_base / 2 : 0);
        numnode *node = new_digit(digit, nullptr);
        (n.size++ ? n.tail->next : n.head) = node;
        n.tail = node;
        mpz_mul_2exp(z, z, digit_bits);
        mpz_add_ui(z, z, static_cast<unsigned long>(digit));
    }
    spec_num_assign(&n, &other);
    other.tail->digit ^= 1;
    std::vector<char> text(mpz_sizeinbase(z, 10) + 2);
    const int repeats = size <= 17 ? 500 : size <= 256 ? 20 : 1;
    double ours = 0, gmp = 0, mult = 0;
    for (auto _ : state) {
        const double t = seconds_of([&] {
            for (int k = 0; k < repeats; ++k) verybig_base_10(n.head, n.tail, n.size, &out);
        });
        ours += t;
        gmp += seconds_of([&] {
            for (int k = 0; k < repeats; ++k) mpz_get_str(text.data(), 10, z);
        });
        mult += seconds_of([&] {
            for (int k = 0; k < repeats; ++k) fast_mult(&n, &other, &product);
        });
        state.SetIterationTime(t);
    }
    label(state, checksum(&out));
    state.counters["ns"] = ours * 1e9 / (repeats * static_cast<double>(state.iterations()));
    state.counters["gmp"] = gmp * 1e9 / (repeats * static_cast<double>(state.iterations()));
    state.counters["ratio"] = ours / gmp;
    state.counters["in_products"] = ours / mult;
    for (number *m : {&n, &other, &out, &product}) special_free(m);
    mpz_clear(z);
}
BENCHMARK(bm_to_decimal)
    ->UseManualTime()
    ->MinTime(0.1)
    ->Arg(1)
    ->Arg(2)
    ->Arg(4)
    ->Arg(16)
    ->Arg(17)
    ->Arg(64)
    ->Arg(256)
    ->Arg(1024)
    ->Arg(4096)
    ->Arg(16384);

// Whole tasks -----------------------------------------------------------------------------------------------

// Write n as text, to nowhere, ours and GMP's. Return the seconds.
static double write_ours(const number *n, std::FILE *out)
{
    return seconds_of([&] {
        std::int32_t column = 0;
        display(out, 1, 0, n, &column, 0);
    });
}

static double write_gmp(const mpz_t z, std::FILE *out)
{
    return seconds_of([&] { mpz_out_str(out, 10, z); });
}

static void bm_factorial_20000_written(benchmark::State &state)
{
    open_once();
    std::FILE *out = std::fopen("/dev/null", "w");
    number n = {};
    mpz_t z;
    mpz_init(z);
    double ours = 0, gmp = 0, made = 0;
    for (auto _ : state) {
        const double make = seconds_of([&] { multout(1, 20000, &n); });
        const double t = make + write_ours(&n, out);
        gmp += seconds_of([&] { mpz_fac_ui(z, 20000); }) + write_gmp(z, out);
        ours += t;
        made += make;
        state.SetIterationTime(t);
    }
    label(state, checksum(&n));
    state.counters["product_part"] = made / ours;
    state.counters["ratio"] = ours / gmp;
    special_free(&n);
    mpz_clear(z);
    std::fclose(out);
}
BENCHMARK(bm_factorial_20000_written)->UseManualTime();

static void bm_two_to_the_200000_written(benchmark::State &state)
{
    open_once();
    std::FILE *out = std::fopen("/dev/null", "w");
    number n = {};
    mpz_t z;
    mpz_init(z);
    double ours = 0, gmp = 0;
    for (auto _ : state) {
        double t = seconds_of([&] {
            setvalue(2, &n);
            number_power(&n, 200000);
        });
        t += write_ours(&n, out);
        gmp += seconds_of([&] { mpz_ui_pow_ui(z, 2, 200000); }) + write_gmp(z, out);
        ours += t;
        state.SetIterationTime(t);
    }
    label(state, checksum(&n));
    state.counters["ratio"] = ours / gmp;
    special_free(&n);
    mpz_clear(z);
    std::fclose(out);
}
BENCHMARK(bm_two_to_the_200000_written)->UseManualTime();

BENCHMARK_MAIN();
