// session/builtin_numbers.cpp -- built-ins of numbers: primes, binomials, roots, rounding, random values.
#include <cmath>
#include "numbers/combinat.h"
#include "numbers/compare.h"
#include "numbers/dispatch.h"
#include "numbers/long_root.h"
#include "numbers/primes.h"
#include "numbers/random.h"
#include "numbers/startup.h"
#include "numbers/word_mod.h"
#include "poly/laurent.h"
#include "quoly/add.h"
#include "quoly/divide.h"
#include "quoly/mul.h"
#include "quoly/owned.h"
#include "quoly/power.h"
#include "session/builtin_args.h"
#include "session/builtin_handlers.h"
#include "session/expr.h"
#include "session/factor.h"
#include "session/output.h"
#include "session/report.h"

namespace kelmar {

// What number a value is ------------------------------------------------------------------------------------

static void answer(quolynode **n, bool yes)
{
    quoly_set(yes, n);
}

void builtin_isint(input_stream **stream, quolynode **n, name_node **cursor)
{
    if (!standard_read(stream, n, cursor)) return;
    answer(n, is_finite_number(*n) && (!flotemode || std::trunc((*n)->num->real) == (*n)->num->real));
}

void builtin_isratl(input_stream **stream, quolynode **n, name_node **cursor)
{
    if (!standard_read(stream, n, cursor)) return;
    answer(n, is_finite_number(*n) || (!(*n)->is_num && (*n)->is_rat));
}

void builtin_isnum(input_stream **stream, quolynode **n, name_node **cursor)
{
    if (!standard_read(stream, n, cursor)) return;
    answer(n, (*n)->is_num);
}

// The sign of a number or rational number: -1, 0, 1. False for another value.
static bool sign_of(const quolynode *q, std::int32_t *sign)
{
    if (!q->is_num && !q->is_rat) return false;
    const number *top = q->is_num ? q->num : q->top->num;
    *sign = iszero(top) ? 0 : num_isneg(top) ? -1 : 1;
    return true;
}

void builtin_sign(input_stream **stream, quolynode **n, name_node **cursor)
{
    std::int32_t sign = 0;
    if (!standard_read(stream, n, cursor)) return;
    if (!sign_of(*n, &sign)) error(err_not_a_number, token.text);
    quoly_set(sign, n);
}

// Read two numbers; *n = the one that is greater, or less.
static void choose(input_stream **stream, quolynode **n, name_node **cursor, int greater)
{
    quolynode *other = nullptr, *difference = nullptr;
    own(&other);
    own(&difference);
    if (read_with_comma(stream, n, &other, cursor)) {
        std::int32_t sign = 0;
        quoly_sub(*n, other, &difference);
        if (!sign_of(*n, &sign) || !sign_of(other, &sign) || !sign_of(difference, &sign)) {
            error(err_not_comparable, token.text);
        } else if (greater ? sign < 0 : sign > 0) {
            quoly_assign(other, n);
        }
        close_argument(stream, cursor);
    }
    disown();
    disown();
    free_quoly(&difference);
    free_quoly(&other);
}

void builtin_max(input_stream **stream, quolynode **n, name_node **cursor)
{
    choose(stream, n, cursor, 1);
}

void builtin_min(input_stream **stream, quolynode **n, name_node **cursor)
{
    choose(stream, n, cursor, 0);
}

// Rounding --------------------------------------------------------------------------------------------------

// *n = its whole part, after one half was added to the magnitude where that is asked for.
static void round_magnitude(quolynode **n, bool add_half)
{
    std::int32_t sign = 0;
    if (!sign_of(*n, &sign)) {
        error(err_not_a_number, token.text);
        return;
    }
    if ((*n)->is_num && !flotemode) return;
    if (flotemode) {
        double *const v = &(*n)->num->real;
        *v = (add_half ? std::round(*v) : std::trunc(*v)) + 0.0;
        return;
    }
    quolynode *half = nullptr, *two = nullptr;
    if (sign < 0) quoly_inplace(n);
    if (add_half) {
        quoly_set(1, &half);
        quoly_set(2, &two);
        fast_quoly_quot(&half, two, 0);
        best_quoly_add(n, &half);
        free_quoly(&two);
    }
    quoly_great_int(n);
    if (sign < 0) quoly_inplace(n);
}

void builtin_round(input_stream **stream, quolynode **n, name_node **cursor)
{
    if (standard_read(stream, n, cursor)) round_magnitude(n, true);
}

void builtin_trunc(input_stream **stream, quolynode **n, name_node **cursor)
{
    if (standard_read(stream, n, cursor)) round_magnitude(n, false);
}

// Primes and binomials --------------------------------------------------------------------------------------

static constexpr double largest_tested = 18446744073709551615.0;  // 64 bits

// *value = |q| rounded to a whole number of 64 bits. Declines (0) for anything else.
static int magnitude_word(const quolynode *q, std::uint64_t *value)
{
    if (!is_finite_number(q)) return 0;
    const double v = std::fabs(std::round(num_to_double(q->num)));
    if (!(v < largest_tested)) return 0;
    if (!exact_integers()) {
        *value = static_cast<std::uint64_t>(v);
        return 1;
    }
    *value = 0;
    const numnode *digit = q->num->head;
    for (std::int32_t k = q->num->size; k > 0; --k, digit = digit->next) {
        *value = (*value << digit_bits) + static_cast<std::uint64_t>(std::abs(digit->digit));
    }
    return 1;
}

// *q = the divisor v. One beyond a word is told of digits only: doubles above 2^53 are even.
static void set_divisor_word(std::uint64_t v, quolynode **q)
{
    if (v <= INT32_MAX) return quoly_set(static_cast<std::int32_t>(v), q);
    number *n = number_result(q);
    quolynode *low = nullptr;
    setvalue(static_cast<std::int32_t>(v >> digit_bits), n);
    quoly_set(digit_base / 2, &low);
    fast_quoly_mult(q, low);
    quoly_set(2, &low);
    fast_quoly_mult(q, low);
    quoly_set(static_cast<std::int32_t>(v & digit_mask), &low);
    best_quoly_add(q, &low);
}

void builtin_isprime(input_stream **stream, quolynode **n, name_node **cursor)
{
    std::uint64_t v = 0;
    if (!standard_read(stream, n, cursor)) return;
    if (!magnitude_word(*n, &v)) {
        error(err_not_a_number, token.text);
        quoly_set(0, n);
        return;
    }
    if (v <= INT32_MAX) {
        quoly_set(long_is_prime(static_cast<std::int32_t>(v)), n);
        return;
    }
    const std::int64_t divisor = longg_is_prime(static_cast<std::int32_t>(v >> 56),
                                                static_cast<std::int32_t>(v >> digit_bits & digit_mask),
                                                static_cast<std::int32_t>(v & digit_mask));
    set_divisor_word(static_cast<std::uint64_t>(divisor), n);
}

void builtin_prime(input_stream **stream, quolynode **n, name_node **cursor)
{
    std::int32_t k = 0;
    quoly_set(0, n);
    if (!open_argument(stream, cursor, err_need_open_paren)) return;
    const int whole = read_whole(stream, cursor, &k, err_not_a_number);
    close_argument(stream, cursor);
    if (!whole) return;
    if (k < 1 || k > small_prime_count) {
        error(err_prime_range, token.text);
        return;
    }
    quoly_set(small_prime[k - 1], n);
}

void builtin_bin(input_stream **stream, quolynode **n, name_node **cursor)
{
    std::int32_t upper = 0, lower = 0;
    quoly_set(0, n);
    if (!open_argument(stream, cursor, err_need_open_paren)) return;
    if (!read_whole(stream, cursor, &upper, err_not_a_number)) return;
    if (!pass_comma(stream, cursor, err_need_comma)) return;
    if (!read_whole(stream, cursor, &lower, err_not_a_number)) return;
    close_argument(stream, cursor);
    binomial(upper, lower, (*n)->num);
}

// Roots and powers ------------------------------------------------------------------------------------------

// n = the square root of n: of doubles itself, of residues one if there is one, else 0, of integers the
// nearest integer. Declines (0) for a negative number.
static int take_root(number *n)
{
    if (num_isneg(n)) return 0;
    switch (live_view()) {
    case view_float: n->real = std::sqrt(n->real); break;
    case view_field:
    case view_modular: n->word = modular_sqrt(to_residue(n->word)); break;
    case view_word: n->word = static_cast<std::int32_t>(std::lround(std::sqrt(n->word))); break;
    case view_small:
    case view_digits: int_sqrt(n, n, 1); break;
    }
    return 1;
}

void builtin_sqrt(input_stream **stream, quolynode **n, name_node **cursor)
{
    scanner(stream, &token, cursor);
    old_fact(stream, n, cursor);
    if (!(*n)->is_num || !take_root((*n)->num)) error(err_bad_root, token.text);
}

// *n = *n modulo m.
static void reduce_by(quolynode **n, const quolynode *m)
{
    quoly_mod_or_div(*n, m, n, '|');
}

// *n = *n ^ e modulo m.
static void power_modulo(quolynode **n, std::int32_t e, const quolynode *m)
{
    quolynode *power = nullptr;
    own(&power);
    quoly_set(1, &power);
    reduce_by(n, m);
    for (; e > 0; e /= 2) {
        poll_interrupt();
        if (e & 1) {
            fast_quoly_mult(&power, *n);
            reduce_by(&power, m);
        }
        if (e == 1) break;
        fast_quoly_mult(n, *n);
        reduce_by(n, m);
    }
    disown();
    free_quoly(n);
    *n = power;
}

static bool has_den(const quolynode *q)
{
    return !q->is_num && q->den;
}

static bool goes_below_zero(const quolynode *q)
{
    return laurent && !q->is_num && has_negative_exponents(q->top);
}

// What is wrong with the operands of Powermod, as an error number; 0: nothing. A null m stands for none. An
// inverse is there for residues only, and only where no modulus of another kind is asked for.
static int powermod_fault(const quolynode *q, std::int32_t e, const quolynode *m)
{
    if (has_den(q) || (m && has_den(m))) return err_power_denominator;
    if (e < 0 && !(q->is_num && !m && modularmode && mod_is_prime)) {
        std::fprintf(Output, "*** bad exponent (negative): %d\n", static_cast<int>(e));
        return err_negative_power;
    }
    if (!m) return 0;
    if (goes_below_zero(q) || goes_below_zero(m)) return err_negative_exponents;
    if (quoly_iszero(m)) return err_zero_divisor;
    if (m->is_num || ground_field()) return 0;
    int minus = 0;
    const polynode *lead = m->top;
    while (is_wrapper(lead)) lead = lead->coef;
    const bool unit = is_constant(lead->coef) && equal_to_pm1(lead->coef->num, &minus);
    return unit ? 0 : err_modulus_not_monic;
}

void builtin_powermod(input_stream **stream, quolynode **n, name_node **cursor)
{
    std::int32_t e = 0;
    quolynode *m = nullptr;
    own(&m);
    quoly_set(0, n);
    bool complete = false;
    if (open_argument(stream, cursor, err_need_open_paren)) {
        read_argument_value(stream, n, cursor);
        complete = pass_comma(stream, cursor, err_need_argument_comma) &&
                   read_whole(stream, cursor, &e, err_bad_exponent);
    }
    if (complete && token.text[0] == ',') {
        scanner(stream, &token, cursor);
        read_argument_value(stream, &m, cursor);
    }
    if (complete) close_argument(stream, cursor);
    const int fault = complete ? powermod_fault(*n, e, m) : 0;
    if (fault) {
        error(fault, token.text);
    } else if (complete && m) {
        power_modulo(n, e, m);
    } else if (complete) {
        raise_to_power(n, e);
    }
    disown();
    if (m) free_quoly(&m);
}

// Random values ---------------------------------------------------------------------------------------------

void builtin_rand(input_stream **stream, quolynode **n, name_node **cursor)
{
    scanner(stream, &token, cursor);
    randomize(0, n);
}

void builtin_rrand(input_stream **stream, quolynode **n, name_node **cursor)
{
    scanner(stream, &token, cursor);
    randomize(1, n);
}

void builtin_modulus(input_stream **stream, quolynode **n, name_node **cursor)
{
    scanner(stream, &token, cursor);
    quoly_set(flotemode || (lintmode && !modularmode) ? -1 : modularmode ? modulus : 0, n);
}

}  // namespace kelmar
