// poly/div_fast.cpp -- trial division behind tests at random points.
//
// A test keeps the outer variable and gives small values to the others: if m divides n, the image of m
// divides that of n. With long integers a number test can come first, where all variables get values and two
// numbers are divided. Images are found by Horner's rule from the innermost level out, with no polynomial in
// between.
#include "poly/div_fast.h"
#include <cmath>
#include "numbers/dispatch.h"
#include "numbers/long_div.h"
#include "numbers/long_power.h"
#include "numbers/primes.h"
#include "numbers/random.h"
#include "numbers/startup.h"
#include "poly/div.h"
#include "poly/div_exact.h"
#include "poly/div_steps.h"
#include "poly/laurent.h"
#include "poly/measure.h"
#include "poly/mul_work.h"
#include "poly/ring_change.h"
#include "session/report.h"

namespace kelmar {

// Images --------------------------------------------------------------------------------------------------

// Values by level; level 1 is not looked at where the outer variable stays.
struct test_point {
    std::int32_t value[variable_limit + 1];
};

// *v = *v * x^e for the word x >= 0, in the live view.
static void multiply_by_power(number *v, std::int32_t x, std::int32_t e)
{
    if (e == 0 || x == 1) return;
    number power;
    power.size = 0;
    setvalue(x, &power);
    number_power(&power, e);
    num_mul(v, &power, v);
    if (!lintmode) special_free(&power);
}

// *v = the value of p, a list at `level`. v->size is 0 before. No negative exponents.
static void value_at(const polynode *p, std::int32_t level, const test_point *at, number *v)
{
    setvalue(0, v);
    for (std::int32_t last = p->exp; p; p = p->next) {
        number coef;
        coef.size = 0;
        multiply_by_power(v, at->value[level], last - p->exp);
        last = p->exp;
        if (p->isnum) {
            num_add(v, p->num, v);
        } else {
            value_at(p->coef, level + 1, at, &coef);
            num_add(v, &coef, v);
            if (!lintmode) special_free(&coef);
        }
        if (!p->next) multiply_by_power(v, at->value[level], last);
    }
}

// Return the image of p with the outer variable kept.
static polynode *image_of(const polynode *p, const test_point *at)
{
    polynode *image = nullptr;
    polynode **end = &image;
    for (; p; p = p->next) {
        number *v = nullptr;
        newimag(&v);
        v->size = 0;
        if (p->isnum) {
            num_assign(p->num, v);
        } else {
            value_at(p->coef, 2, at, v);
        }
        if (iszero(v)) {
            free_imag(&v);
            continue;
        }
        make_monomial(end, p->exp, new_constant(v));
        end = &(*end)->next;
    }
    if (!image) poly_set(0, &image);
    return image;
}

// Points ----------------------------------------------------------------------------------------------------

// A value in the range of the live view: modular words below the modulus.
static std::int32_t fit_modulus(std::int32_t v)
{
    return modularmode && !flotemode ? v % modulus : v;
}

static void set_narrow_point(std::int32_t depth, std::int32_t i, test_point *at)
{
    for (std::int32_t k = depth; k >= 2; --k) at->value[k] = k < 7 ? fit_modulus(rand_integer2() % 5 + i) : 0;
}

static std::int32_t listed_prime(std::int32_t k, std::int32_t i)
{
    return global_list[(rand_integer2() % 3 + (k + i) * 3) % global_list_count];
}

static void set_wide_point(std::int32_t depth, std::int32_t i, test_point *at)
{
    const std::int32_t last = depth > 6 ? 3 * (depth + 1) / 4 : 6;
    for (std::int32_t k = depth; k >= 2; --k) {
        at->value[k] = 0;
        if (k > last) continue;
        const std::int32_t v = listed_prime(k, i);
        at->value[k] = modularmode && !flotemode ? v % modulus : v % 181;
        if (at->value[k] == 0) at->value[k] = 1;
    }
}

// The polynomial test ------------------------------------------------------------------------------------

// What the terms of a pair sum up to at a point, each taken positive: the values are right but for rounding
// relative to this, also where terms cancel.
struct pair_size {
    double n, m;
};

// That sum for p, a list of `level`; the variable of level 1 stays and counts as 1.
static double size_at(const polynode *p, std::int32_t level, const test_point *at)
{
    const double x = level == 1 ? 1 : at->value[level];
    double sum = 0;
    for (; p; p = p->next) {
        const double coef = p->isnum ? std::fabs(p->num->real) : size_at(p->coef, level + 1, at);
        sum += coef * std::pow(x, p->exp);
    }
    return sum;
}

// Does m divide n but for rounding errors; doubles, one level. A divisor whose lead is not its largest number
// blows errors up from step to step, and values that cancelled are errors themselves: a remainder that this
// may explain says nothing.
static test_verdict divides_within_noise(polynode *n, polynode *m, const pair_size *size)
{
    polynode *q = nullptr, *r = nullptr;
    school_poly_divide(n, m, &q, &r, nilpol);
    const double rest = largest_magnitude(r), divisor = largest_magnitude(m);
    const double quotient = largest_magnitude(q);
    double bound = float_noise * (largest_magnitude(n) + quotient * divisor);
    free_poly(&q);
    free_poly(&r);
    if (rest <= bound) return test_yes;
    if (rest <= float_noise * (size->n + quotient * size->m)) return not_performed;
    const double growth = divisor / __builtin_fabs(leading_coef(m)->real);
    for (std::int32_t k = n->exp - m->exp; k >= 0 && bound < rest && growth > 1; --k) bound *= growth;
    return rest > bound ? test_no : not_performed;
}

// Does m divide n, both of one level. size: of what they are the values of, for doubles.
static test_verdict image_divides(polynode *n, polynode *m, const pair_size *size)
{
    if (poly_iszero(n) || is_constant(m)) return test_yes;
    if (n->exp < m->exp) return test_no;
    if (flotemode) return divides_within_noise(n, m, size);
    polynode *result = nullptr;
    bool divides;
    if (modularmode && mod_is_prime && field_depth == 0) {
        poly_div_no_q(n, m, &result);
        divides = poly_iszero(result);
    } else {
        result = exact_quotient(n, m, nilpol);
        divides = result != nullptr;
    }
    free_poly(&result);
    return divides ? test_yes : test_no;
}

void set_test_pair(polynode *n, polynode *m, test_pair *pair)
{
    const std::int32_t nd = quick_depth_below(n), md = quick_depth_below(m);
    *pair = {static_cast<std::int16_t>(nd > md ? nd : md),
             static_cast<std::int16_t>(md),
             m,
             nullptr,
             static_cast<std::int16_t>(nd),
             n,
             nullptr};
}

// A list of one level stands for its image. *room holds one that is made.
static polynode *image_or_self(polynode *p, const test_point *at, polynode **room)
{
    if (height_is_1(p)) return p;
    return *room = image_of(p, at);
}

[[gnu::noinline]] test_verdict fast_test(test_pair *pair, std::int32_t i, int wide)
{
    if (laurent) return not_performed;  // values of negative powers are no whole numbers
    test_point at = {};
    if (wide) {
        set_wide_point(pair->depth, i, &at);
    } else {
        set_narrow_point(pair->depth, i, &at);
    }
    test_verdict verdict = not_performed;
    product_work *work = open_work(__builtin_frame_address(0));
    pair->mdup = image_or_self(pair->m, &at, &work->parts[0]);
    if (pair->mdup->exp == pair->m->exp) {
        pair->ndup = image_or_self(pair->n, &at, &work->parts[1]);
        pair_size size = {0, 0};
        if (flotemode) size = {size_at(pair->n, 1, &at), size_at(pair->m, 1, &at)};
        if (pair->ndup->exp == pair->n->exp) verdict = image_divides(pair->ndup, pair->mdup, &size);
    }
    pair->mdup = pair->ndup = nullptr;
    close_work(work);
    return verdict;
}

// The number test ----------------------------------------------------------------------------------------

static void set_number_point(std::int32_t depth, std::int32_t i, int small, test_point *at)
{
    for (std::int32_t k = depth; k >= 1; --k) {
        const std::int32_t v = listed_prime(k, i);
        at->value[k] = small ? v % 23 + 2 : v;
    }
}

static test_verdict compare_values(const number *n, const number *m)
{
    if (m->size == 1 && m->head->digit > -40 && m->head->digit < 40) return not_performed;
    if (iszero(n)) return not_performed;
    number q, r;
    q.size = r.size = 0;
    divide(n, m, &q, &r);
    const test_verdict verdict = iszero(&r) ? test_yes : test_no;
    special_free(&q);
    special_free(&r);
    return verdict;
}

test_verdict fast_test_rat(const test_pair *pair, std::int32_t i, int small)
{
    if (laurent || !exact_integers() || integerflag) return not_performed;
    test_point at = {};
    set_number_point(depth_below(pair->n) > depth_below(pair->m) ? depth_below(pair->n)
                                                                 : depth_below(pair->m),
                     i, small, &at);
    number n_value, m_value;
    n_value.size = m_value.size = 0;
    value_at(pair->m, 1, &at, &m_value);
    value_at(pair->n, 1, &at, &n_value);
    const test_verdict verdict = compare_values(&n_value, &m_value);
    special_free(&n_value);
    special_free(&m_value);
    return verdict;
}

// Trials -------------------------------------------------------------------------------------------------

static constexpr std::int32_t node_limit = 40;  // no count asks for more

// count + the nodes of p, stopping above node_limit.
static std::int32_t count_nodes(const polynode *p, std::int32_t count)
{
    for (; p && count <= node_limit; p = p->next)
        count = p->isnum ? count + 1 : count_nodes(p->coef, count + 1);
    return count;
}

std::int32_t trial_count(const polynode *n, const polynode *m)
{
    const std::int32_t length = fast_poly_length(n, 10) + fast_poly_length(m, 10);
    const std::int32_t total = count_nodes(m, count_nodes(n, 0));
    const std::int32_t trials = length < 14 ? (total <= 17 ? 3 : 4) : (total < 35 ? 4 : 5);
    return modularmode && !flotemode && modulus - 1 < trials ? modulus - 1 : trials;
}

// The tests of trial_poly_divide.
static test_verdict run_tests(polynode *n, polynode *m)
{
    test_pair pair;
    set_test_pair(n, m, &pair);
    if (pair.depth < 2) return not_performed;
    const std::int32_t trials = trial_count(n, m);
    for (std::int32_t i = 0; i <= trials; ++i) {
        const test_verdict verdict = fast_test(&pair, i, 0);
        if (verdict != not_performed) return verdict;
    }
    return not_performed;
}

// One trial of trial_poly_divide_noq: numbers where they serve, then the polynomial test.
static test_verdict run_trial(test_pair *pair, std::int32_t i)
{
    if (pair->depth > 2 && exact_integers() && field_depth == 0) {
        const test_verdict first = fast_test_rat(pair, i, 1);
        if (first == test_no) return test_no;
        const test_verdict second = fast_test_rat(pair, i, 0);
        if (second == test_no) return test_no;
        const bool believed = try_rat && pair->depth >= 5 && pair->m_depth >= 2;
        if (believed && first == test_yes && second == test_yes) return test_yes;
    }
    return fast_test(pair, i, 1);
}

static test_verdict run_all_tests(polynode *n, polynode *m)
{
    test_pair pair;
    set_test_pair(n, m, &pair);
    if (pair.depth < 2 || pair.m_depth > pair.n_depth) return not_performed;
    const std::int32_t trials = trial_count(n, m);
    for (std::int32_t i = 0; i <= trials; ++i) {
        const test_verdict verdict = run_trial(&pair, i);
        if (verdict != not_performed) return verdict;
    }
    return not_performed;
}

// Trial division -----------------------------------------------------------------------------------------

static bool can_try(const polynode *m, const pt *var)
{
    if (!var) {
        kelmar_error("pt nil in trial_poly_divide.", 1);
    } else if (is_constant(m)) {
        kelmar_error("m is a number in trial_poly_divide. Try turning off the fast divide test with &_t.", 1);
    } else {
        return true;
    }
    return false;
}

// The degrees alone say no. m is no number.
static bool degrees_say_no(const polynode *n, const polynode *m)
{
    if (laurent || poly_iszero(n)) return false;
    if (n->exp < m->exp) return true;
    if (m->next || flotemode) return false;  // a term too low may be a rounding error
    while (n->next) n = n->next;
    return n->exp < m->exp;  // a single term divides all of n or nothing
}

// Return 1 with *q = n / m, or null when a test's yes was enough; 0: m does not divide n.
static int try_division(polynode *n, polynode *m, polynode **q, const pt *var,
                        test_verdict (*tests)(polynode *, polynode *), int no_q)
{
    *q = nullptr;
    if (degrees_say_no(n, m)) return 0;
    const bool quick = tests && !is_constant(n) && !is_wrapper(m) && !is_wrapper(n);
    const bool told = verbose && windy;
    const std::int32_t length = told ? poly_length(n) : 0;
    if (told) dumpitt("trial divide, counting to ", length, 0, 1, 0);
    const test_verdict verdict = quick ? tests(n, m) : not_performed;
    const bool sure = verdict == test_no || (verdict == test_yes && no_q);
    if (!sure) *q = exact_quotient(n, m, var);
    if (told) decr_dumpitt(length);
    return sure ? verdict == test_yes : *q != nullptr;
}

// try_division below the wrappers that both have, which go back on the quotient.
static int try_below_wrappers(polynode *n, polynode *m, polynode **q, const pt *var,
                              test_verdict (*tests)(polynode *, polynode *), int no_q)
{
    std::int32_t pads = 0;
    for (; is_wrapper(n) && is_wrapper(m); ++pads) {
        n = n->coef;
        m = m->coef;
        var = inner(var);
    }
    const int divides = try_division(n, m, q, var, tests, no_q);
    if (*q) add_pad(q, pads);
    return divides;
}

[[gnu::noinline]] int trial_poly_divide(polynode *n, polynode *m, polynode **q, const pt *var, int fast,
                                        int no_q, int free_n)
{
    product_work *work = open_work(__builtin_frame_address(0));
    if (free_n) work->parts[0] = n;
    *q = nullptr;
    const int divides = can_try(m, var) ? try_below_wrappers(n, m, q, var, fast ? run_tests : nullptr, no_q)
                                        : 0;
    close_work(work);
    return divides;
}

// m involves variables of the ground field alone: no variable of a relation comes before them.
static bool lies_in_field(const polynode *m, const pt *var)
{
    return field_depth > 0 && poly_depth(m) + var->level > field_depth;
}

[[gnu::noinline]] int trial_poly_divide_noq(polynode *n, polynode *m, const pt *var, int fast, int no_q,
                                            int free_n)
{
    product_work *work = open_work(__builtin_frame_address(0));
    if (free_n) work->parts[0] = n;
    polynode *q = nullptr;
    int divides = 0;
    if (can_try(m, var)) {
        divides = lintmode && lies_in_field(m, var)
                      ? 1
                      : try_below_wrappers(n, m, &q, var, fast ? run_all_tests : nullptr, no_q);
    }
    if (q && laurent && has_negative_exponents(q))
        divides = has_negative_exponents(n) || has_negative_exponents(m);
    free_poly(&q);
    close_work(work);
    return divides;
}

// Images modulo primes -------------------------------------------------------------------------------------

static int divides_modulo(std::int32_t p, polynode *n, polynode *m, int fast, const pt *var)
{
    ring_bracket ring;
    enter_modulus(p, &ring);
    poly_change_to_mod(&n, 1);
    poly_change_to_mod(&m, 1);
    const int divides = trial_poly_divide_noq(n, m, var, 1, fast, 0);
    leave_ring(&ring);
    return divides;
}

void mod_trial_poly_divide(polynode *n, polynode *m, int fast, int *decided, int *result, const pt *var)
{
    *decided = 0;
    if (!exact_integers() || integerflag || !can_try(m, var)) return;
    const number *const a = leading_coef(n), *const b = leading_coef(m);
    if (iszero(leading_coef(n))) return;
    const std::int32_t first = select_prime(a, b, 530, 64, prime_count, prime);
    if (first > prime_count) return;
    *result = divides_modulo(prime[first - 1].word, n, m, fast, var);
    if (!*result) {
        *decided = 1;
        return;
    }
    std::int32_t second = select_prime(a, b, 530, 64, prime_count, prime);
    if (second == first) second = select_prime(a, b, prime_count - first - 1, 0, prime_count, prime);
    if (second > prime_count) return;
    *result = divides_modulo(prime[second - 1].word, n, m, fast, var);
    *decided = *result;
}

}  // namespace kelmar
