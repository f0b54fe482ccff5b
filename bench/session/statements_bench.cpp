// bench/session/statements_bench.cpp -- statements through scanner and evaluator, and look-ups of names.
//
// The input is a text in memory and the output a scratch file, so that the figures are the interpreter's own.
// The counter "records" shows that a statement takes no record that it does not give back.
#include <benchmark/benchmark.h>
#include <cstdio>
#include <string>
#include "session/names.h"
#include "session/output.h"
#include "session/start.h"
#include "session/evaluator.h"

using namespace kelmar;

namespace {

void prepare_once()
{
    static bool done = false;
    if (done) return;
    done = true;
    Output = std::fopen("/dev/null", "w");
    find_watchers();
    prepare_session(KELMAR_SOURCE_DIR "/BACKWARD/");
}

void run(const std::string &text)
{
    run_text(reinterpret_cast<const unsigned char *>(text.data()), text.size());
}

void statements(benchmark::State &state, const std::string &line, int tokens)
{
    prepare_once();
    const int lines = 10000;
    std::string text = "&(N = 0)\nx := 1:\ny := 2:\n";
    for (int i = 0; i < lines; ++i) text += line + ":\n";
    run(text);
    const std::int64_t before = live_numbers();
    for (auto _ : state) run(text);
    state.counters["records"] = static_cast<double>(live_numbers() - before);
    state.counters["statements/s"] = benchmark::Counter(static_cast<double>(lines),
                                                        benchmark::Counter::kIsIterationInvariantRate);
    state.counters["tokens/s"] = benchmark::Counter(static_cast<double>(lines) * tokens,
                                                    benchmark::Counter::kIsIterationInvariantRate);
    token_rec x;
    set_token(&x, "x");
    const var_node *v = find_var(&x);
    state.SetLabel("x = " + std::to_string(v ? v->value->num->real : 0.0));
}

void lookup(benchmark::State &state)
{
    prepare_once();
    flotemode = lintmode = 1;
    const int count = static_cast<int>(state.range(0));
    for (int i = 0; i < count; ++i) {
        token_rec t;
        quolynode *q = nullptr;
        var_node *v;
        set_token(&t, ("v" + std::to_string(i)).c_str());
        quoly_set(i, &q);
        insert_var(&t, &q, &v);
    }
    double sum = 0;
    unsigned next = 1;
    for (auto _ : state) {
        token_rec t;
        char name[12];
        next = next * 1103515245u + 12345u;
        std::snprintf(name, sizeof name, "v%u", next / 65536 % static_cast<unsigned>(count));
        set_token(&t, name);
        const var_node *v = find_var(&t);
        sum += v->value->num->real;
        benchmark::DoNotOptimize(sum);
    }
    state.SetLabel(sum > 0 ? "found" : "not found");
}

}  // namespace

BENCHMARK_CAPTURE(statements, step, "x := x*1.0001 + 1", 17);
BENCHMARK_CAPTURE(statements, sum_of_two, "x + y", 5);
BENCHMARK_CAPTURE(statements, increment, "x:+", 4);
BENCHMARK_CAPTURE(statements, nested, "((((x))))*(((y)))", 17);
BENCHMARK(lookup)->Arg(100)->Arg(10000);
