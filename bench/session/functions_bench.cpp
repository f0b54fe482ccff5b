// bench/session/functions_bench.cpp -- rounds of loops, plain, linked and on machine integers, and calls.
//
// The counter "records" shows that a round takes no record that it does not give back.
#include <benchmark/benchmark.h>
#include <cstdio>
#include <string>
#include "session/names.h"
#include "session/output.h"
#include "session/start.h"

using namespace kelmar;

namespace {

constexpr int rounds = 1000000;

void run(const std::string &text)
{
    run_text(reinterpret_cast<const unsigned char *>(text.data()), text.size());
}

// Define T by `body` and time T(rounds). `units`: rounds or calls in one run.
void body(benchmark::State &state, const std::string &text, const std::string &call, double units)
{
    static bool done = false;
    if (!done) {
        Output = std::fopen("/dev/null", "w");
        prepare_session(KELMAR_SOURCE_DIR "/BACKWARD/");
    }
    done = true;
    run("s := 0:\ni := 0:\n" + text + "\n" + call + ":\n");
    const std::int64_t before = live_numbers();
    for (auto _ : state) run("result := " + call + ":\n");
    state.counters["records"] = static_cast<double>(live_numbers() - before);
    state.counters["per_second"] = benchmark::Counter(units, benchmark::Counter::kIsIterationInvariantRate);
    token_rec name;
    set_token(&name, "result");
    const var_node *v = find_var(&name);
    state.SetLabel("result = " + std::to_string(v ? v->value->num->real : 0.0));
    run("@T\n");
}

const std::string loop = "for i = 1 to n do s := s + i*i od; s .";
const std::string million = "T(" + std::to_string(rounds) + ")";

BENCHMARK_CAPTURE(body, loop, "Func T(n) = s := 0; " + loop, million, rounds)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(body, loop_linked, "Func T(n) = s := 0; Compile(s, i); " + loop, million, rounds)
    ->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(body, loop_integer, "Func T(n) = Integer; s := 0; " + loop, million, rounds)
    ->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(body, loop_integer_linked, "Func T(n) = Integer; s := 0; Compile(s, i); " + loop, million,
                  rounds)
    ->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(body, while_loop,
                  "Func T(n) = s := 0; i := 0; while i < n do i := i + 1; s := s + i*i od; s .", million,
                  rounds)
    ->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(body, range, "Func T(n) = Sigma<i = 1 to n>[i*i] .", million, rounds)
    ->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(body, calls,
                  "Func U(x, y) = x + y .\nFunc T(n) = s := 0; for i = 1 to n do s := s + U(i, 1) od; s .",
                  million, rounds)
    ->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(body, fibonacci, "Func T(n) = if n < 2 then n else T(n-1) + T(n-2) fi .", "T(25)", 242785.0)
    ->Unit(benchmark::kMillisecond);

}  // namespace
