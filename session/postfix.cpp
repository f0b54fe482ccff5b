// session/postfix.cpp -- postfix forms.
//
// The exponent is itself a factor, so its own power nests to the right: 2^3^2 is 2^9.
#include "session/postfix.h"
#include "numbers/combinat.h"
#include "numbers/dispatch.h"
#include "quoly/derivative.h"
#include "quoly/owned.h"
#include "quoly/power.h"
#include "session/evaluation.h"
#include "session/expr.h"
#include "session/factor.h"
#include "session/report.h"

namespace kelmar {

// its digits still have a decimal form of legal size
static constexpr std::int32_t largest_factorial = 66000;

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

static void power(input_stream **stream, operand *v, name_node **cursor)
{
    std::int32_t e;
    scanner(stream, &token, cursor);
    borrow();
    const int usable = get_exponent(stream, cursor, &e, 1);
    make_private(v);
    give_back();
    own(&v->n);
    if (usable) raise_to_power(&v->n, e);
    disown();
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

static void take_evaluation(input_stream **stream, operand *v, name_node **cursor)
{
    make_private(v);
    scanner(stream, &token, cursor);
    get_evalquoly(stream, &v->n, cursor);
}

static void take_derivative(operand *v)
{
    make_private(v);
    quoly_differen_once(&v->n, 1);
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
        take_derivative(v);
        scanner(stream, &token, cursor);
    }
}

}  // namespace kelmar
