// session/postfix.cpp -- postfix forms.
//
// The exponent is itself a factor, so its own power nests to the right: 2^3^2 is 2^9.
#include "session/postfix.h"
#include "numbers/combinat.h"
#include "numbers/dispatch.h"
#include "numbers/long_power.h"
#include "poly/power.h"
#include "quoly/divide.h"
#include "session/expr.h"
#include "session/factor.h"
#include "session/owned.h"
#include "session/report.h"

namespace kelmar {

// its digits still have a decimal form of legal size
static constexpr std::int32_t largest_factorial = 66000;
static constexpr std::int64_t largest_power = std::int64_t{1} << 22;  // digits of an exact power

// Powers ------------------------------------------------------------------------------------------------

// True when n is a number that a whole number is asked of; infinities and nan are not.
static bool is_finite_number(const quolynode *q)
{
    return q->is_num && (!flotemode || q->num->real - q->num->real == 0.0);
}

int get_exponent(input_stream **stream, name_node **cursor, std::int32_t *e, int as_factor)
{
    std::int32_t saved;
    quolynode *value = nullptr;
    own(&value);
    check_modular(&saved);
    if (as_factor) {
        old_fact(stream, &value, cursor);
    } else {
        old_expre(stream, &value, cursor);
    }
    int wrong = 0;
    if (!is_finite_number(value)) {
        wrong = err_exponent_not_number;
    } else if (!num_to_int(value->num, e)) {
        wrong = err_bad_exponent;
    }
    restore_modular(&saved);
    disown();
    free_quoly(&value);
    if (!wrong) return 1;
    *e = 1;
    error(wrong, token.text);
    return 0;
}

// 0, 1 or -1: its powers stay small.
static bool is_unit(const number *n)
{
    int minus;
    return iszero(n) || equal_to_pm1(n, &minus);
}

static void raise_number(quolynode **q, std::int32_t e)
{
    number *n = (*q)->num;
    if (exact_integers() && n->size * std::int64_t{e < 0 ? -(e + 1) : e} > largest_power && !is_unit(n)) {
        error(err_bad_exponent, "^");
        quoly_set(1, q);
        return;
    }
    if (e >= 0) {
        number_power(n, e);
        return;
    }
    if (iszero(n)) {
        error(err_zero_divisor, "^");
        quoly_set(1, q);
        return;
    }
    if (e == INT32_MIN) {
        error(err_bad_exponent, "^");
        return;
    }
    quolynode *one = nullptr;
    number_power(n, -e);
    quoly_set(1, &one);
    quoly_quot(one, *q, 0, q);
    free_quoly(&one);
}

void raise_to_power(quolynode **q, std::int32_t e)
{
    if ((*q)->is_num) {
        raise_number(q, e);
    } else if (e >= 0) {
        compute_power(&(*q)->top, e, polynames);
        polynum_to_quoly(q);
    } else if (e == INT32_MIN) {
        error(err_bad_exponent, "^");
    } else {
        quolynode *one = nullptr;
        own(&one);
        quoly_set(1, &one);
        quoly_quot(one, *q, 0, q);
        disown();
        free_quoly(&one);
        raise_to_power(q, -e);
    }
}

static void power(input_stream **stream, operand *v, name_node **cursor)
{
    std::int32_t e;
    scanner(stream, &token, cursor);
    borrow();
    const int usable = get_exponent(stream, cursor, &e, 1);
    make_private(v);
    give_back();
    if (usable) raise_to_power(&v->n, e);
}

// The others ----------------------------------------------------------------------------------------------

static void take_factorial(input_stream **stream, operand *v, name_node **cursor)
{
    std::int32_t n;
    make_private(v);
    if (!v->n->is_num) {
        error(err_factorial_not_number, token.text);
        return;
    }
    if (!num_to_int(v->n->num, &n) || n < 0) {
        error(err_bad_factorial, token.text);
        return;
    }
    if (exact_integers() && n > largest_factorial) {
        error(err_factorial_too_big, token.text);
        return;
    }
    scanner(stream, &token, cursor);
    factorial(n, v->n->num);
}

// A number is its own value at any point, and has no derivative.
static void take_evaluation(input_stream **stream, operand *v, name_node **cursor)
{
    make_private(v);
    scanner(stream, &token, cursor);
    error(err_bad_evaluation_list, token.text);
}

static void differentiate(operand *v)
{
    make_private(v);
    quoly_differen_once(&v->n);
}

void postfix(input_stream **stream, operand *v, name_node **cursor)
{
    switch (token.text[0]) {
    case '^': power(stream, v, cursor); break;
    case '!': take_factorial(stream, v, cursor); break;
    case '#': take_evaluation(stream, v, cursor); break;
    default: break;
    }
    while (token.text[0] == '"') {
        differentiate(v);
        scanner(stream, &token, cursor);
    }
}

}  // namespace kelmar
