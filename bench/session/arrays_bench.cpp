// bench/session/arrays_bench.cpp -- statements about entries of arrays: plain, linked, on machine integers.
//
// a[i,j] := a[i-1,j] + 1 runs over 10^6 entries. The counter "records" shows that a run takes no record that
// it does not give back; the label is a checksum.
#include <benchmark/benchmark.h>
#include <cstdio>
#include <string>
#include "session/names.h"
#include "session/output.h"
#include "session/start.h"

using namespace kelmar;

namespace {

constexpr double entries = 1000.0 * 999.0;

void run(const std::string &text)
{
    run_text(reinterpret_cast<const unsigned char *>(text.data()), text.size());
}

void begin_session()
{
    static bool done = false;
    if (!done) {
        Output = std::fopen("/dev/null", "w");
        prepare_session(KELMAR_SOURCE_DIR "/BACKWARD/");
    }
    done = true;
    run("@[**]\ni := 0:\nj := 0:\n");
}

// Define T by `function` after `before`, and time `call`. `units`: entries in one run.
void body(benchmark::State &state, const std::string &before, const std::string &function,
          const std::string &call, double units)
{
    begin_session();
    run(before + "\n" + function + "\n" + call + ":\n");
    const std::int64_t records = live_numbers();
    for (auto _ : state) run("result := " + call + ":\n");
    state.counters["records"] = static_cast<double>(live_numbers() - records);
    state.counters["per_entry"] = benchmark::Counter(units, benchmark::Counter::kIsIterationInvariantRate |
                                                                benchmark::Counter::kInvert);
    token_rec name;
    set_token(&name, "result");
    const var_node *v = find_var(&name);
    state.SetLabel("result = " + std::to_string(v ? v->value->num->real : 0.0));
    run("@T\n");
}

const std::string matrix = "Array a[1000, 1000]\n[a] := 0";
const std::string loop =
    "for j = 1 to 1000 do for i = 2 to 1000 do a[i,j] := a[i-1,j] + 1 od od; a[1000,1000] .";

BENCHMARK_CAPTURE(body, elements, matrix, "Func T = " + loop, "T", entries)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(body, elements_linked, matrix, "Func T = Compile([a], i, j); " + loop, "T", entries)
    ->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(body, elements_of_parameter, matrix, "Func T(a) = Compile(i, j); " + loop, "T([a])",
                  entries)
    ->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(body, elements_integer, matrix, "Func T = Integer; " + loop, "T", entries)
    ->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(body, elements_integer_linked, matrix, "Func T = Integer; Compile([a], i, j); " + loop, "T",
                  entries)
    ->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(body, fixed_entries, "Array x[3]\n[x] := 1",
                  "Func T(n) = Compile(x[1], x[2], i); for i = 1 to n do x[1] := x[2] + i od; x[1] .",
                  "T(1000000)", 1e6)
    ->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(body, stored_positions,
                  "Array s[1000, 100000] Sparse\n"
                  "for i = 1 to 1000 do for j = 1 to 100 do s[i, 7*j + i] := 1 od od",
                  "Func T = n := 0; for k = [s] do n := n + k od; n .", "T", 1e5)
    ->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(body, array_parameters, "[a] := [(1, 2, 3)]",
                  "Func First(p) = p[1] .\n"
                  "Func T(n) = s := 0; for i = 1 to n do s := s + First([a]) od; s .",
                  "T(100000)", 1e5)
    ->Unit(benchmark::kMillisecond);

}  // namespace
