// session/expr.cpp -- sums and terms.
//
// A sum keeps its running value in the left operand. While that still stands in storage the copying form
// of an operation makes it private; from then on every operation works in place. The old_ and half_
// families are the same loops entered at another point.
#include "session/expr.h"
#include "quoly/add.h"
#include "quoly/divide.h"
#include "quoly/mul.h"
#include "quoly/owned.h"
#include "session/arr_access.h"
#include "session/assign.h"
#include "session/factor.h"
#include "session/func_run.h"
#include "session/plain_run.h"
#include "session/postfix.h"
#include "session/private_value.h"
#include "session/pset.h"
#include "session/report.h"
#include "session/token_list.h"  // no_builtin

namespace kelmar {

// Operations on operands --------------------------------------------------------------------------------

// The value of an operand; an absent entry, and a variable that a statement inside the
// expression has emptied, become 0.
static const quolynode *read_value(operand *v)
{
    if (v->at.array_time && !v->n && v->at.moves != array_moves) refresh_entry(v);
    if (!v->p || !*v->p) make_private(v);
    return *v->p;
}

static void add_operand(operand *v, operand *r, bool minus)
{
    if (!v->n) {
        const quolynode *a = read_value(v);
        const quolynode *b = read_value(r);
        if (!v->n) {
            if (minus) {
                quoly_sub(a, b, &v->n);
            } else {
                quoly_add(a, b, &v->n);
            }
            v->p = &v->n;
            return;
        }
    }
    if (r->n) {
        if (minus) {
            best_quoly_sub(&v->n, &r->n);
        } else {
            best_quoly_add(&v->n, &r->n);
        }
        r->p = &r->n;
    } else if (minus) {
        better_quoly_sub(&v->n, read_value(r));
    } else {
        better_quoly_add(&v->n, read_value(r));
    }
}

static void multiply_operand(operand *v, operand *r)
{
    const quolynode *b = read_value(r);
    if (v->n) {
        fast_quoly_mult(&v->n, b);
    } else {
        quoly_mult(read_value(v), b, &v->n);
        v->p = &v->n;
    }
}

// v = v / r. A zero divisor whose error came back as a warning leaves 0, as that warning says.
static void divide_operand(operand *v, operand *r, std::int32_t no_reduce)
{
    const quolynode *b = read_value(r);
    if (quoly_iszero(b)) {
        error(err_zero_divisor, "/");
        quoly_set(0, &v->n);
    } else if (v->n) {
        fast_quoly_quot(&v->n, b, no_reduce);
    } else {
        quoly_quot(read_value(v), b, no_reduce, &v->n);
    }
    v->p = &v->n;
}

static void mod_or_div_operand(operand *v, operand *r, char op)
{
    const char symbol[2] = {op, 0};
    const quolynode *b = read_value(r);
    if (quoly_iszero(b)) {
        error(err_zero_divisor, symbol);
        quoly_set(0, &v->n);
    } else {
        quoly_mod_or_div(read_value(v), b, &v->n, op);
    }
    v->p = &v->n;
}

// Terms -----------------------------------------------------------------------------------------------------

static bool term_goes_on()
{
    const char c = token.text[0];
    if (c == ';' || c == '+' || c == '-') return false;  // what ends most terms
    if (is_letter(c)) return !token_is(&token, "or") && !token_is(&token, "and");
    return in_set(term_set, c);
}

// The operator in hand is consumed; `(` or a letter is none, and begins the next factor.
// *no_reduce tells `//`.
static char take_operator(input_stream **stream, name_node **cursor, std::int32_t *no_reduce)
{
    const char op = token.text[0];
    *no_reduce = 0;
    if (op == '(' || is_letter(op)) return '*';
    next_token(stream, cursor);
    if (token.text[0] != '/') return op;
    if (op != '/') {
        error(err_double_operator, token.text);
        return op;
    }
    *no_reduce = 1;
    next_token(stream, cursor);
    return op;
}

static void apply_operator(operand *v, operand *r, char op, std::int32_t no_reduce)
{
    if (op == '*') {
        multiply_operand(v, r);
    } else if (op == '/') {
        divide_operand(v, r, no_reduce);
    } else {
        mod_or_div_operand(v, r, op);
    }
}

// The factors behind the first one, which is in *v; v->n is announced.
static void term_rest(input_stream **stream, operand *v, name_node **cursor)
{
    while (term_goes_on()) {
        std::int32_t no_reduce;
        const char op = take_operator(stream, cursor, &no_reduce);
        operand r = {};
        own(&r.n);
        borrow();
        fact(stream, &r, cursor, 0);
        apply_operator(v, &r, op, no_reduce);
        give_back();
        disown();
        free_quoly(&r.n);
    }
}

// A call of a function of the user is in hand, in a stored list.
static inline bool begins_call(const name_node *at)
{
    return at && at->kind == no_builtin && is_upper(at->text[0]) && is_upper(token.text[0]);
}

// fact, for the call in hand.
static void read_call(input_stream **stream, operand *v, name_node **cursor)
{
    v->at.array_time = 0;
    evaluate_stored(stream, &v->n, cursor);
    v->p = &v->n;
    postfix(stream, v, cursor);
}

static void announced_term(input_stream **stream, operand *v, name_node **cursor)
{
    if (begins_call(*cursor)) {
        read_call(stream, v, cursor);
    } else {
        fact(stream, v, cursor, 0);
    }
    if (term_goes_on()) term_rest(stream, v, cursor);
}

void term(input_stream **stream, operand *v, name_node **cursor)
{
    own(&v->n);
    announced_term(stream, v, cursor);
    disown();
}

// Sums ------------------------------------------------------------------------------------------------------

// The terms behind the first one, which is in *v; v->n is announced.
static void sum_rest(input_stream **stream, operand *v, name_node **cursor)
{
    while (token.text[0] == '+' || token.text[0] == '-') {
        const bool minus = token.text[0] == '-';
        next_token(stream, cursor);
        operand r = {};
        own(&r.n);
        borrow();
        announced_term(stream, &r, cursor);
        add_operand(v, &r, minus);
        give_back();
        disown();
        free_quoly(&r.n);
    }
}

void expre_from(input_stream **stream, operand *v, name_node **cursor)
{
    if (token.text[0] == ':') {
        assign(stream, v, cursor);
        return;
    }
    term_rest(stream, v, cursor);
    sum_rest(stream, v, cursor);
}

void expre(input_stream **stream, operand *v, name_node **cursor)
{
    own(&v->n);
    announced_term(stream, v, cursor);
    if (token.text[0] == ':') {
        assign(stream, v, cursor);
    } else {
        sum_rest(stream, v, cursor);
    }
    disown();
}

// The other families ----------------------------------------------------------------------------------------

void sum_of_terms(input_stream **stream, operand *v, name_node **cursor)
{
    announced_term(stream, v, cursor);
    sum_rest(stream, v, cursor);
}

void old_expre(input_stream **stream, quolynode **n, name_node **cursor)
{
    if (read_plain_sum(cursor, n)) return;
    read_private<sum_of_terms>(stream, n, cursor);
}

void old_term(input_stream **stream, quolynode **n, name_node **cursor)
{
    read_private<announced_term>(stream, n, cursor);
}

static void sum_from_factor(input_stream **stream, operand *v, name_node **cursor)
{
    term_rest(stream, v, cursor);
    sum_rest(stream, v, cursor);
}

void half_term(input_stream **stream, quolynode **n, name_node **cursor)
{
    continue_private<term_rest>(stream, n, cursor);
}

void half_expre(input_stream **stream, quolynode **n, name_node **cursor)
{
    continue_private<sum_from_factor>(stream, n, cursor);
}

}  // namespace kelmar
