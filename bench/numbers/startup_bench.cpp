// Time to fill the tables of the number layer from the nine start-up files.
//
// "First" is one load in a fresh process, pages not yet touched; it is what a session waits for before its
// first prompt. "Again" is the steady state. The checksum tells that the tables are the right ones.
#include "numbers/startup.h"
#include <benchmark/benchmark.h>
#include <sys/wait.h>
#include <unistd.h>
#include <chrono>
#include <cstdlib>
#include <string>
#include "numbers/combinat.h"
#include "numbers/convert.h"
#include "numbers/fields.h"
#include "numbers/plain_quoly.h"

using namespace kelmar;

// BACKWARD/ beside bench/, or the directory that KELMAR_DATA names.
static std::string data_directory()
{
    if (const char *told = std::getenv("KELMAR_DATA")) return told;
    const std::string source = __FILE__;
    return source.substr(0, source.rfind("bench/")) + "BACKWARD/";
}

static double checksum()
{
    double sum = invs_prod[597] + lrgpme[1999] + binom[1899].real + num_prod[598].size;
    for (std::uint16_t code : f2t16exp) sum += code;
    return sum;
}

static void ready()
{
    if (!numstash) open_stashes();
}

static double seconds_of_one_load(const std::string &directory)
{
    const auto start = std::chrono::steady_clock::now();
    initialize(directory.c_str());
    return std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
}

static void load_first(benchmark::State &state)
{
    ready();
    const std::string directory = data_directory();
    for (auto _ : state) {
        int ends[2];
        if (pipe(ends) != 0) std::abort();
        const pid_t child = fork();
        if (child == 0) {
            const double seconds = seconds_of_one_load(directory);
            if (write(ends[1], &seconds, sizeof seconds) < 0) _exit(1);
            _exit(0);
        }
        double seconds = 0;
        if (read(ends[0], &seconds, sizeof seconds) != sizeof seconds) std::abort();
        waitpid(child, nullptr, 0);
        close(ends[0]);
        close(ends[1]);
        state.SetIterationTime(seconds);
    }
}
BENCHMARK(load_first)->UseManualTime()->Unit(benchmark::kMillisecond);

static void load_again(benchmark::State &state)
{
    ready();
    const std::string directory = data_directory();
    for (auto _ : state) initialize(directory.c_str());
    state.counters["checksum"] = checksum();
}
BENCHMARK(load_again)->Unit(benchmark::kMillisecond);

static void factorial_by_table(benchmark::State &state)
{
    number r;
    r.size = 0;
    for (auto _ : state) factorial(static_cast<std::int32_t>(state.range(0)), &r);
    state.counters["checksum"] = r.head->digit;
    special_free(&r);
}
BENCHMARK(factorial_by_table)->Arg(20)->Arg(215)->Arg(1000)->Arg(20000)->Unit(benchmark::kMicrosecond);

static void residue_of_a_long_integer(benchmark::State &state)
{
    number r;
    r.size = 0;
    factorial(static_cast<std::int32_t>(state.range(0)), &r);
    modularmode = lintmode = 1;
    modulus = 2147483629;
    for (auto _ : state) change_num(&r, 0, 1);
    modularmode = lintmode = 0;
    state.counters["checksum"] = r.word;
    state.counters["digits"] = r.size;
    special_free(&r);
}
BENCHMARK(residue_of_a_long_integer)->Arg(20)->Arg(1000);
