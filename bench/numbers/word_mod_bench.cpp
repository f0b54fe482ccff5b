// bench/numbers/word_mod_bench.cpp -- the word kernels beside plain loops that do the same reduction.
//
// `ours` goes through modmult, mod_add and mod_sub, which test the kind of ring each time; `plain` is the
// loop that a caller would write for one fixed kind. Time is a round of 4096 calls, `ns` is one call, `ratio`
// ours by plain in the same run; the bound is 1.5.
#include <benchmark/benchmark.h>
#include <chrono>
#include <cstdio>
#include "numbers/primes.h"
#include "numbers/word_mod.h"

using namespace kelmar;

static constexpr int length = 4096;
static std::int32_t left_words[length], right_words[length], results[length];

template <class F> static double seconds_of(F f)
{
    const auto start = std::chrono::steady_clock::now();
    f();
    return std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
}

static void enter(std::int32_t m)
{
    modularmode = lintmode = 1;
    finf = f256 = f2t16 = 0;
    modulus = m;
    smallmodulus = m < 65535;
    std::uint64_t seed = 1;
    for (int i = 0; i < length; ++i) {
        seed = seed * 6364136223846793005u + 1442695040888963407u;
        left_words[i] = static_cast<std::int32_t>((seed >> 33) % static_cast<std::uint64_t>(m));
        seed = seed * 6364136223846793005u + 1442695040888963407u;
        right_words[i] = static_cast<std::int32_t>((seed >> 33) % static_cast<std::uint64_t>(m));
    }
}

static void enter_field(int bits)
{
    enter(1 << bits);
    finf = 1;
    f256 = bits == 8;
    f2t16 = bits == 16;
    for (int i = 0; i < 65536; ++i) {  // any tables serve for timing
        f256prod[i] = static_cast<std::uint16_t>(i * 167 & 255);
        f2t16log[i] = static_cast<std::uint16_t>(i * 40503u % 65535);
        f2t16exp[i] = static_cast<std::uint16_t>(i * 30011u);
    }
}

template <bool chained, class F> static void apply(F f)
{
    std::int32_t running = 0;
    for (int i = 0; i < length; ++i) {
        running = f(chained ? running : left_words[i], right_words[i]);
        if (!chained) results[i] = running;
    }
    results[0] = running;
    benchmark::ClobberMemory();
}

// `chained`: each result is the next left operand, as in a running sum. Otherwise the calls are independent.
template <bool chained = false, class F, class G>
static void compare(benchmark::State &state, F ours, G plain)
{
    double time_ours = 0, time_plain = 0, count = 0;
    std::uint32_t sum_ours = 0, sum_plain = 0;
    for (auto _ : state) {
        const double t = seconds_of([&] { apply<chained>(ours); });
        for (std::int32_t v : results) sum_ours = sum_ours * 31 + static_cast<std::uint32_t>(v);
        time_plain += seconds_of([&] { apply<chained>(plain); });
        for (std::int32_t v : results) sum_plain = sum_plain * 31 + static_cast<std::uint32_t>(v);
        time_ours += t;
        state.SetIterationTime(t);
        count += length;
        if (sum_ours != sum_plain) state.SkipWithError("results differ");
    }
    std::uint32_t sum = 0;
    for (std::int32_t v : results) sum = sum * 31 + static_cast<std::uint32_t>(v);
    char label[32];
    std::snprintf(label, sizeof label, "sum %08x", sum);
    state.SetLabel(label);
    state.counters["ns"] = time_ours / count * 1e9;
    state.counters["ratio"] = time_ours / time_plain;
    modularmode = lintmode = finf = f256 = f2t16 = smallmodulus = 0;
    modulus = -1;
}

static const auto through_modmult = [](std::int32_t a, std::int32_t b) { return modmult(a, b); };

static void bm_mult_small(benchmark::State &state)
{
    enter(static_cast<std::int32_t>(state.range(0)));
    const std::uint32_t m = static_cast<std::uint32_t>(modulus);
    compare(state, through_modmult, [m](std::int32_t a, std::int32_t b) {
        return static_cast<std::int32_t>(static_cast<std::uint32_t>(a) * static_cast<std::uint32_t>(b) % m);
    });
}
BENCHMARK(bm_mult_small)->UseManualTime()->Arg(97)->Arg(46337)->Arg(65521);

static void bm_mult_large(benchmark::State &state)
{
    enter(static_cast<std::int32_t>(state.range(0)));
    const std::uint64_t m = static_cast<std::uint64_t>(modulus);
    compare(state, through_modmult, [m](std::int32_t a, std::int32_t b) {
        return static_cast<std::int32_t>(static_cast<std::uint64_t>(a) * static_cast<std::uint64_t>(b) % m);
    });
}
BENCHMARK(bm_mult_large)->UseManualTime()->Arg(65537)->Arg(2147483629);

static void bm_add(benchmark::State &state)
{
    enter(static_cast<std::int32_t>(state.range(0)));
    const std::uint32_t m = static_cast<std::uint32_t>(modulus);
    compare<true>(
        state, [](std::int32_t a, std::int32_t b) { return mod_add(a, b, modulus); },
        [m](std::int32_t a, std::int32_t b) {
            const std::uint32_t s = static_cast<std::uint32_t>(a) + static_cast<std::uint32_t>(b);
            return static_cast<std::int32_t>(s >= m ? s - m : s);
        });
}
BENCHMARK(bm_add)->UseManualTime()->Arg(65521)->Arg(2147483629);

static void bm_sub(benchmark::State &state)
{
    enter(static_cast<std::int32_t>(state.range(0)));
    const std::int32_t m = modulus;
    compare<true>(
        state, [](std::int32_t a, std::int32_t b) { return mod_sub(a, b, modulus); },
        [m](std::int32_t a, std::int32_t b) { return a < b ? a - b + m : a - b; });
}
BENCHMARK(bm_sub)->UseManualTime()->Arg(2147483629);

static void bm_octic_field(benchmark::State &state)
{
    enter_field(8);
    compare(state, through_modmult,
            [](std::int32_t a, std::int32_t b) { return std::int32_t{f256prod[a * 256 + b]}; });
}
BENCHMARK(bm_octic_field)->UseManualTime();

static void bm_wide_field(benchmark::State &state)
{
    enter_field(16);
    compare(state, through_modmult, [](std::int32_t a, std::int32_t b) {
        if (a == 0 || b == 0) return 0;
        const std::int32_t s = f2t16log[a] + f2t16log[b];
        return std::int32_t{f2t16exp[s < 65535 ? s : s - 65535]};
    });
}
BENCHMARK(bm_wide_field)->UseManualTime();

// A plain extended Euclid, with the division by `%`.
static std::int32_t plain_inverse(std::int32_t a, std::int32_t)
{
    std::int64_t r0 = modulus, r1 = a, t0 = 0, t1 = 1;
    while (r1) {
        const std::int64_t q = r0 / r1;
        const std::int64_t r = r0 - q * r1, t = t0 - q * t1;
        r0 = r1;
        r1 = r;
        t0 = t1;
        t1 = t;
    }
    return static_cast<std::int32_t>(t0 < 0 ? t0 + modulus : t0);
}

static void bm_inverse(benchmark::State &state)
{
    enter(static_cast<std::int32_t>(state.range(0)));
    for (std::int32_t &a : left_words) a += a == 0;
    compare(
        state, [](std::int32_t a, std::int32_t) { return imod_inverse(a); }, plain_inverse);
}
BENCHMARK(bm_inverse)->UseManualTime()->Arg(65521)->Arg(2147483629);

// One call each; there is nothing to compare with.
static void bm_is_prime(benchmark::State &state)
{
    const std::int32_t n = static_cast<std::int32_t>(state.range(0));
    for (auto _ : state) benchmark::DoNotOptimize(is_prime(n));
}
BENCHMARK(bm_is_prime)->Arg(65521)->Arg(2147483647);

BENCHMARK_MAIN();
