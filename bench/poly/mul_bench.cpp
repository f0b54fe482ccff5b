// bench/poly/mul_bench.cpp -- products of polynomials.
//
// The label is a checksum of the product, the same on every machine: its terms, and the sum of its
// coefficients, each times a weight made of its exponents, modulo 2^32. Doubles are whole numbers, so that
// they have one too.
#include <benchmark/benchmark.h>
#include <cmath>
#include <cstdio>
#include "poly/add.h"
#include "poly/mul.h"
#include "poly/mul_array.h"
#include "poly/power.h"

using namespace kelmar;

// Views ---------------------------------------------------------------------------------------------------

static void use_floats()
{
    if (!numstash) open_stashes();
    flotemode = lintmode = 1;
    modularmode = 0;
    modulus = -1;
    smallmodulus = mod_is_prime = 0;
}

static void use_modulus(std::int32_t m)
{
    if (!numstash) open_stashes();
    flotemode = 0;
    modularmode = lintmode = mod_is_prime = 1;
    modulus = m;
    half_modulus = m / 2;
    smallmodulus = m < 65535;
}

static void use_integers()
{
    if (!numstash) open_stashes();
    flotemode = modularmode = lintmode = 0;
}

// Operands ------------------------------------------------------------------------------------------------

static std::uint64_t next_random(std::uint64_t *state)
{
    std::uint64_t z = *state += 0x9e3779b97f4a7c15;
    z = (z ^ z >> 30) * 0xbf58476d1ce4e5b9;
    z = (z ^ z >> 27) * 0x94d049bb133111eb;
    return z ^ z >> 31;
}

static number *small_number(std::uint64_t *state)
{
    number *n = nullptr;
    newimag(&n);
    n->size = 0;
    const std::int32_t range = modularmode && modulus > 0 ? modulus - 1 : 99;
    setvalue(1 + static_cast<std::int32_t>(next_random(state) % static_cast<std::uint64_t>(range)), n);
    return n;
}

// Return a polynomial in one variable of degree `degree` with steps 1 .. 2 mean - 1 between exponents, 1
// for mean 1.
static polynode *list_of_steps(std::int32_t terms, std::int32_t mean, std::uint64_t seed)
{
    std::uint64_t state = seed;
    polynode *p = nullptr;
    std::int32_t exp = 0;
    for (std::int32_t k = 0; k < terms; ++k) {
        polynode *constant = new_constant(small_number(&state));
        polynode *term = exp == 0 ? constant : new_term(exp, constant);
        term->next = p;
        p = term;
        exp += 1 + static_cast<std::int32_t>(next_random(&state) % static_cast<std::uint64_t>(2 * mean - 1));
    }
    return p;
}

// Return (1 + x_1 + .. + x_vars)^k.
static polynode *power_of_sum(std::int32_t vars, std::int32_t k)
{
    polynode *sum = nullptr;
    poly_set(1, &sum);
    for (std::int32_t level = 1; level <= vars; ++level) {
        polynode *x = nullptr;
        base_poly(&x, level);
        best_poly_add(sum, x, &sum);
    }
    compute_power(&sum, k, nilpol);
    return sum;
}

static polynode *one_more(const polynode *p)
{
    polynode *one = nullptr, *sum = nullptr;
    poly_set(1, &one);
    poly_assign(p, &sum);
    best_poly_add(sum, one, &sum);
    return sum;
}

// Return a polynomial in two variables, dense up to the degrees.
static polynode *dense_in_two(std::int32_t x_top, std::int32_t y_top, std::uint64_t seed)
{
    polynode *p = nullptr, **end = &p;
    for (std::int32_t x = x_top; x >= 0; --x) {
        *end = new_term(x, list_of_steps(y_top + 1, 1, seed + static_cast<std::uint64_t>(x)));
        end = &(*end)->next;
    }
    return p;
}

// Measuring -------------------------------------------------------------------------------------------------

struct checksum {
    std::int64_t terms;
    std::uint32_t sum;
};

static std::uint32_t word_of(const number *n)
{
    if (flotemode)
        return static_cast<std::uint32_t>(static_cast<std::uint64_t>(std::fmod(n->real, 4294967296.0)));
    if (modularmode) return static_cast<std::uint32_t>(n->word);
    std::uint32_t v = 0;
    for (const numnode *d = n->head; d; d = d->next)
        v = (v << digit_bits) + static_cast<std::uint32_t>(d->digit);
    return v;
}

static void check(const polynode *p, std::uint32_t weight, checksum *c)
{
    for (; p; p = p->next) {
        const std::uint32_t below = weight * 31 + static_cast<std::uint32_t>(p->exp);
        if (!p->isnum && !is_constant(p->coef)) {
            check(p->coef, below, c);
            continue;
        }
        ++c->terms;
        c->sum += below * word_of(p->isnum ? p->num : p->coef->num);
    }
}

// Time a * b; both are released.
static void time_product(benchmark::State &state, polynode *a, polynode *b)
{
    polynode *c = nullptr;
    for (auto _ : state) {
        state.PauseTiming();
        free_poly(&c);
        state.ResumeTiming();
        poly_mult(a, b, &c, nilpol);
    }
    checksum sum = {0, 0};
    check(c, 1, &sum);
    char label[60];
    std::snprintf(label, sizeof label, "%lld terms, sum %08x", static_cast<long long>(sum.terms), sum.sum);
    state.SetLabel(label);
    if (a != b) free_poly(&b);
    free_poly(&a);
    free_poly(&c);
}

// The products ------------------------------------------------------------------------------------------

// f (f + 1), f = (1 + x + y + z + t)^k.
static void float_simplex(benchmark::State &state)
{
    use_floats();
    polynode *f = power_of_sum(4, static_cast<std::int32_t>(state.range(0)));
    time_product(state, f, one_more(f));
}
BENCHMARK(float_simplex)->Arg(8)->Arg(12)->Arg(16)->Unit(benchmark::kMillisecond);

static void float_dense(benchmark::State &state)
{
    use_floats();
    const std::int32_t n = static_cast<std::int32_t>(state.range(0)) + 1;
    time_product(state, list_of_steps(n, 1, 1), list_of_steps(n, 1, 2));
}
BENCHMARK(float_dense)->Arg(20)->Arg(200)->Arg(2000)->Arg(20000)->Unit(benchmark::kMicrosecond);

static void make_fractions(polynode *p)
{
    for (; p; p = p->next) {
        if (p->isnum) {
            p->num->real /= 7;
        } else {
            make_fractions(p->coef);
        }
    }
}

// The same with coefficients that are no whole numbers; few of the checksum's digits are theirs.
static void float_dense_any(benchmark::State &state)
{
    use_floats();
    const std::int32_t n = static_cast<std::int32_t>(state.range(0)) + 1;
    polynode *a = list_of_steps(n, 1, 1), *b = list_of_steps(n, 1, 2);
    make_fractions(a);
    make_fractions(b);
    time_product(state, a, b);
}
BENCHMARK(float_dense_any)->Arg(20)->Arg(200)->Arg(2000)->Arg(20000)->Unit(benchmark::kMicrosecond);

// n by n terms, few of which meet.
static void float_sparse(benchmark::State &state)
{
    use_floats();
    const std::int32_t n = static_cast<std::int32_t>(state.range(0));
    time_product(state, list_of_steps(n, 500000000 / n, 1), list_of_steps(n, 500000000 / n, 2));
}
BENCHMARK(float_sparse)->Arg(100)->Arg(1000)->Arg(3000)->Unit(benchmark::kMillisecond);

static void modular_dense(benchmark::State &state)
{
    use_modulus(static_cast<std::int32_t>(state.range(1)));
    const std::int32_t n = static_cast<std::int32_t>(state.range(0)) + 1;
    time_product(state, list_of_steps(n, 1, 1), list_of_steps(n, 1, 2));
}
BENCHMARK(modular_dense)
    ->ArgsProduct({{100, 1000, 5000, 12500, 25000}, {65521, 2147483629}})
    ->Unit(benchmark::kMicrosecond);

static void modular_rows(benchmark::State &state)
{
    use_modulus(2147483629);
    const std::int32_t x = static_cast<std::int32_t>(state.range(0)),
                       y = static_cast<std::int32_t>(state.range(1));
    time_product(state, dense_in_two(x, y, 1), dense_in_two(x, y, 1000));
}
BENCHMARK(modular_rows)->Args({31, 5})->Args({60, 60})->Args({300, 100})->Unit(benchmark::kMillisecond);

static void modular_simplex(benchmark::State &state)
{
    use_modulus(2147483629);
    polynode *f = power_of_sum(4, static_cast<std::int32_t>(state.range(0)));
    time_product(state, f, one_more(f));
}
BENCHMARK(modular_simplex)->Arg(12)->Unit(benchmark::kMillisecond);

// f (f + 1), f = (1 + x + y + z + t)^k.
static void integer_simplex(benchmark::State &state)
{
    use_integers();
    polynode *f = power_of_sum(4, static_cast<std::int32_t>(state.range(0)));
    time_product(state, f, one_more(f));
}
BENCHMARK(integer_simplex)->Arg(8)->Arg(12)->Arg(20)->Unit(benchmark::kMillisecond);

static void integer_dense(benchmark::State &state)
{
    use_integers();
    const std::int32_t n = static_cast<std::int32_t>(state.range(0)) + 1;
    time_product(state, list_of_steps(n, 1, 1), list_of_steps(n, 1, 2));
}
BENCHMARK(integer_dense)->Arg(20)->Arg(200)->Arg(2000)->Unit(benchmark::kMicrosecond);

// Random coefficients of so many digits in place of those of p.
static void lengthen(polynode *p, std::int32_t digits, std::uint64_t *state)
{
    for (; p; p = p->next) {
        if (!p->isnum) {
            lengthen(p->coef, digits, state);
            continue;
        }
        setvalue(1 + static_cast<std::int32_t>(next_random(state) & (digit_mask >> 1)), p->num);
        for (std::int32_t k = 1; k < digits; ++k) {
            numnode *const tail = new_digit(static_cast<std::int32_t>(next_random(state) & digit_mask),
                                            nullptr);
            p->num->tail->next = tail;
            p->num->tail = tail;
            ++p->num->size;
        }
    }
}

// All terms up to degree k in so many variables, with coefficients of so many digits.
static void integer_long(benchmark::State &state)
{
    use_integers();
    std::uint64_t random = 1;
    polynode *f[2];
    for (polynode *&p : f) {
        p = power_of_sum(static_cast<std::int32_t>(state.range(0)),
                         static_cast<std::int32_t>(state.range(1)));
        lengthen(p, static_cast<std::int32_t>(state.range(2)), &random);
    }
    time_product(state, f[0], f[1]);
}
BENCHMARK(integer_long)
    ->Args({3, 12, 2})
    ->Args({3, 12, 3})
    ->Args({3, 12, 5})
    ->Args({3, 12, 10})
    ->Args({4, 8, 3})
    ->Args({4, 8, 5})
    ->Args({4, 8, 10})
    ->Args({3, 16, 5})
    ->Args({2, 30, 5})
    ->Args({3, 12, 20})
    ->Args({3, 12, 40})
    ->Args({3, 6, 5})
    ->Args({3, 4, 5})
    ->Args({1, 200, 3})
    ->Args({1, 2000, 3})
    ->Args({1, 2000, 10})
    ->Unit(benchmark::kMillisecond);

BENCHMARK_MAIN();
