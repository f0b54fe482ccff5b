// bench/poly/add_bench.cpp -- the flavours of a sum beside each other, and the records that each takes.
//
// `term` is nanoseconds a term of both operands together. `records` is what one sum leaves taken beyond what
// its operands held, nodes and numbers: 0 for the consuming flavours when every term of b meets one of a.
// Copies of the operands that a flavour consumes are made outside the clock.
#include <benchmark/benchmark.h>
#include <chrono>
#include "numbers/dispatch.h"
#include "poly/add.h"
#include "poly/measure.h"

using namespace kelmar;

enum shape {
    one_variable,   // n terms, every exponent
    sparse,         // n terms, operands that never meet
    four_variables  // all monomials of a degree
};

static void enter(num_view v)
{
    if (!polystash) open_stashes();
    flotemode = v == view_float;
    modularmode = v == view_modular;
    lintmode = v != view_digits;
    modulus = v == view_modular ? 65521 : -1;
    smallmodulus = v == view_modular;
}

static constexpr std::int64_t not_asked = INT64_MIN;
static std::uint32_t seed = 1;

static std::int32_t next_value()
{
    seed = seed * 1664525u + 1013904223u;
    return static_cast<std::int32_t>(seed >> 18) + 1;
}

static polynode *constant()
{
    polynode *p = nullptr;
    poly_set(next_value(), &p);
    return p;
}

// Exponents e, e - step, .. down to 0 or 1.
static polynode *one_list(std::int32_t top, std::int32_t step)
{
    polynode *first = nullptr;
    polynode **end = &first;
    for (std::int32_t e = top; e >= 0; e -= step) {
        *end = e > 0 ? new_term(e, constant()) : constant();
        end = &(*end)->next;
    }
    return first;
}

// All monomials of at most this degree in so many variables.
static polynode *full(std::int32_t vars, std::int32_t degree)
{
    if (vars == 0 || degree == 0) return constant();
    polynode *first = nullptr;
    polynode **end = &first;
    for (std::int32_t e = degree; e >= 0; --e) {
        polynode *coef = full(vars - 1, degree - e);
        *end = e == 0 && is_constant(coef) ? coef : new_term(e, coef);
        end = &(*end)->next;
    }
    return first;
}

static std::int64_t terms_of(const polynode *p)
{
    std::int64_t count = 0;
    for (; p; p = p->next) count += p->isnum ? 1 : terms_of(p->coef);
    return count;
}

static double checksum(const polynode *p)
{
    double sum = 0;
    for (; p; p = p->next) {
        sum = sum * 0.5 + (p->isnum ? num_to_double(p->num) : p->exp + checksum(p->coef));
    }
    return sum;
}

static void operands(int kind, std::int32_t n, polynode **a, polynode **b)
{
    seed = 1;
    switch (static_cast<shape>(kind)) {
    case one_variable:
        *a = one_list(n - 1, 1);
        *b = one_list(n - 1, 1);
        return;
    case sparse:
        *a = one_list(2 * n, 2);
        *b = one_list(2 * n - 1, 2);
        return;
    case four_variables:
        *a = full(4, n);
        *b = full(4, n);
        return;
    }
}

enum flavour { plain, better, best, simplest };

static void add_by(int how, polynode **a, polynode *b, polynode **c)
{
    switch (static_cast<flavour>(how)) {
    case plain: poly_add(*a, b, c); return;
    case better: better_poly_add(*a, b, c); return;
    case best: best_poly_add(*a, b, c); return;
    case simplest: simplest_poly_add(*a, b, c); return;
    }
}

static void sums(benchmark::State &state, num_view view, int kind, int how)
{
    enter(view);
    polynode *a = nullptr, *b = nullptr;
    operands(kind, static_cast<std::int32_t>(state.range(0)), &a, &b);
    const double terms = static_cast<double>(terms_of(a) + terms_of(b));
    const std::int64_t operand_records = 2 * (live_polynodes() + live_numbers());
    double seconds = 0, check = 0;
    std::int64_t records = not_asked;  // asked once: counting walks the free lists
    for (auto _ : state) {
        polynode *first = copy_poly(a), *second = copy_poly(b), *c = nullptr;
        const auto start = std::chrono::steady_clock::now();
        add_by(how, &first, second, &c);
        const double t = std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
        state.SetIterationTime(t);
        seconds += t;
        if (records == not_asked) records = live_polynodes() + live_numbers() - operand_records;
        if (check == 0) check = checksum(c);
        free_poly(&c);
        if (how == plain) free_poly(&first);
        if (how == plain || how == better) free_poly(&second);
    }
    state.counters["term"] = seconds / static_cast<double>(state.iterations()) / terms * 1e9;
    state.counters["records"] = static_cast<double>(records > 0 ? records : 0);
    state.counters["checksum"] = check;
    free_poly(&a);
    free_poly(&b);
}

static void copies(benchmark::State &state, num_view view)
{
    enter(view);
    polynode *a = one_list(static_cast<std::int32_t>(state.range(0)) - 1, 1);
    double check = 0;
    for (auto _ : state) {
        polynode *c = copy_poly(a);
        check = checksum(c);
        free_poly(&c);
    }
    state.counters["checksum"] = check;
    free_poly(&a);
}

#define FLAVOURS(view, kind, n)                                                                              \
    BENCHMARK_CAPTURE(sums, view##_##kind##_plain, view, kind, plain)->Arg(n)->UseManualTime();              \
    BENCHMARK_CAPTURE(sums, view##_##kind##_better, view, kind, better)->Arg(n)->UseManualTime();            \
    BENCHMARK_CAPTURE(sums, view##_##kind##_best, view, kind, best)->Arg(n)->UseManualTime()

FLAVOURS(view_float, one_variable, 1000);
FLAVOURS(view_float, one_variable, 50000);
FLAVOURS(view_float, sparse, 25000);
FLAVOURS(view_float, four_variables, 16);
FLAVOURS(view_modular, one_variable, 1000);
FLAVOURS(view_modular, one_variable, 50000);
FLAVOURS(view_modular, four_variables, 16);
FLAVOURS(view_digits, one_variable, 1000);
FLAVOURS(view_digits, four_variables, 16);
BENCHMARK_CAPTURE(sums, view_modular_one_variable_simplest, view_modular, one_variable, simplest)
    ->Arg(1000)
    ->Arg(50000)
    ->UseManualTime();
BENCHMARK_CAPTURE(copies, view_modular, view_modular)->Arg(1000);
