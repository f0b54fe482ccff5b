// session/arr_expr.cpp -- sums, terms and factors of arrays.
//
// A stored array is taken by reference, so that nothing is copied before an operator needs it.
#include "session/arr_expr.h"
#include "gcd/stash.h"
#include "quoly/owned.h"
#include "quoly/quoly.h"
#include "session/arr_literal.h"
#include "session/arr_ops.h"
#include "session/arr_shape.h"
#include "session/arr_target.h"
#include "session/evaluation.h"
#include "session/evaluator.h"
#include "session/expr.h"
#include "session/factor.h"
#include "session/postfix.h"
#include "session/pset.h"
#include "session/report.h"

namespace kelmar {

// Factors -----------------------------------------------------------------------------------------------

// `(` is in hand.
static void read_bracketed(input_stream **stream, arr_value *v, name_node **cursor)
{
    scanner(stream, &token, cursor);
    arr_expre(stream, v, cursor);
    expect_and_pass(')', err_need_close_paren, stream, cursor);
}

// `[` is in hand.
static void read_denotation(input_stream **stream, arr_value *v, name_node **cursor)
{
    array_target t;
    scanner(stream, &token, cursor);
    if (begins_target()) {
        if (left_side(stream, &t, cursor)) refer_to_target(&t, v);
    } else if (token.text[0] != '<') {
        arr_literal(stream, v, cursor, false);
    } else {
        scanner(stream, &token, cursor);
        if (token.text[0] != ']') {
            arr_literal(stream, v, cursor, true);
        } else if (system_target(stream, &t, cursor)) {
            refer_to_target(&t, v);
        }
    }
}

// The operand of a prefix form, behind the token in hand. Declines (0) when it is no array. Errors: wrong.
static int read_operand(input_stream **stream, arr_value *v, int wrong, name_node **cursor)
{
    scanner(stream, &token, cursor);
    arr_fact(stream, v, cursor);
    if (is_array(v)) return 1;
    error(wrong, token.text);
    return 0;
}

// Altmult is in hand.
static void read_pair_product(input_stream **stream, arr_value *v, name_node **cursor)
{
    arr_value r;
    scanner(stream, &token, cursor);
    if (!expect_and_pass('(', err_need_open_paren, stream, cursor)) return;
    open_value(&r);
    arr_expre(stream, v, cursor);
    if (token.text[0] != ',') {
        error(err_need_comma, token.text);
    } else {
        scanner(stream, &token, cursor);
        arr_expre(stream, &r, cursor);
        multiply_by_pairs(v, &r);
    }
    close_value(&r);
    expect_and_pass(')', err_need_close_paren, stream, cursor);
}

// MPowermod is in hand: (matrix, exponent) or (matrix, exponent, modulus).
static void read_power_modulo(input_stream **stream, arr_value *v, name_node **cursor)
{
    quolynode *e = nullptr;
    std::int32_t saved;
    scanner(stream, &token, cursor);
    if (!expect_and_pass('(', err_need_paren_mpower, stream, cursor)) return;
    arr_expre(stream, v, cursor);
    if (!is_array(v)) {
        error(err_need_array, token.text);
        return;
    }
    if (!expect_and_pass(',', err_matrix_power_exponent, stream, cursor)) return;
    own(&e);
    check_modular(&saved);
    old_expre(stream, &e, cursor);
    restore_modular(&saved);
    const bool number = e->is_num;
    if (!number) {
        error(err_matrix_power_exponent, token.text);
    } else if (token.text[0] == ',') {
        scanner(stream, &token, cursor);
        old_expre(stream, &e, cursor);
    }
    disown();
    free_quoly(&e);
    if (number && expect(')', err_need_close_paren)) decline_matrix_algorithm();
}

static void read_absolute(input_stream **stream, arr_value *v, name_node **cursor)
{
    scanner(stream, &token, cursor);
    arr_fact(stream, v, cursor);
    if (!expect('|', err_need_close_bar)) return;
    map_value(v, quoly_abs);
    scanner(stream, &token, cursor);
}

static void read_scalar(input_stream **stream, arr_value *v, name_node **cursor)
{
    fact_before_evaluation(stream, &v->n, cursor);
}

// A word that begins an array function. Returns false when the token in hand is none.
static bool read_array_word(input_stream **stream, arr_value *v, name_node **cursor)
{
    if (token_is(&token, "Trans") || token.text[0] == '"') {
        if (read_operand(stream, v, err_need_array, cursor)) transpose_value(v);
    } else if (token_is(&token, "Diag") || token.text[0] == '~') {
        if (read_operand(stream, v, err_need_matrix_diag, cursor)) extract_diagonal(v);
    } else if (token_is(&token, "Altmult")) {
        read_pair_product(stream, v, cursor);
    } else if (token_is(&token, "MPowermod")) {
        read_power_modulo(stream, v, cursor);
    } else if (token_is(&token, "Adjoint")) {
        if (read_operand(stream, v, err_need_array, cursor)) decline_matrix_algorithm();
    } else if (token_is(&token, "Altpower")) {
        decline_matrix_algorithm();
    } else {
        return false;
    }
    return true;
}

static void read_primary(input_stream **stream, arr_value *v, name_node **cursor)
{
    if (read_array_word(stream, v, cursor)) return;
    switch (token.text[0]) {
    case '[': read_denotation(stream, v, cursor); break;
    case '(': read_bracketed(stream, v, cursor); break;
    case '|': read_absolute(stream, v, cursor); break;
    case '-':
        scanner(stream, &token, cursor);
        arr_fact(stream, v, cursor);
        negate_value(v);
        break;
    case '$':
        scanner(stream, &token, cursor);
        arr_fact(stream, v, cursor);
        map_value(v, quoly_great_int);
        break;
    default: read_scalar(stream, v, cursor); break;
    }
}

// `#` is in hand, behind a scalar.
static void read_evaluation(input_stream **stream, arr_value *v, name_node **cursor)
{
    arr_value r;
    scanner(stream, &token, cursor);
    if (token.text[0] != '[') {
        get_evalquoly(stream, &v->n, cursor);
        return;
    }
    open_value(&r);
    evaluate_at_array(stream, v->n, &r, cursor);
    if (is_array(&r)) move_value(&r, v);
    close_value(&r);
}

// `^` is in hand, behind an array.
static void read_matrix_power(input_stream **stream, name_node **cursor)
{
    quolynode *e = nullptr;
    scanner(stream, &token, cursor);
    own(&e);
    old_fact(stream, &e, cursor);
    disown();
    const bool number = e->is_num;
    free_quoly(&e);
    if (number) {
        decline_matrix_algorithm();
    } else {
        error(err_power_not_number, token.text);
    }
}

void half_arr_fact(input_stream **stream, arr_value *v, name_node **cursor)
{
    const char c = token.text[0];
    if (c == '#' && !is_array(v)) {
        read_evaluation(stream, v, cursor);
    } else if (c == '^' && is_array(v)) {
        read_matrix_power(stream, cursor);
    } else if (c == '#') {
        error(err_bad_array_operand, token.text);
    } else if (c == '^') {
        half_fact(stream, &v->n, cursor);
    }
}

void arr_fact(input_stream **stream, arr_value *v, name_node **cursor)
{
    check_stack();
    empty_value(v);
    read_primary(stream, v, cursor);
    if (!is_array(v) && !v->n) quoly_set(0, &v->n);
    half_arr_fact(stream, v, cursor);
}

// Terms ---------------------------------------------------------------------------------------------------

// The gcd stash is in use while a term is computed, for the entries of matrices share their denominators;
// unless the user has popped it below 0. Between terms it is freed.
static void enter_term()
{
    if (lookupgcd < 0) return;
    ++lookupgcd;
    ++open_terms;
}

void leave_terms(std::int32_t mark)
{
    for (; open_terms > mark; --open_terms) {
        if (lookupgcd == 1 && gcdmass == 0) {
            lookupgcd = 0;  // the common case: there is nothing to free
        } else if (lookupgcd > 0) {
            pop_gcd_stash();
        }
    }
}

static bool term_goes_on()
{
    const char c = token.text[0];
    if (is_letter(c)) return !token_is(&token, "or") && !token_is(&token, "and");
    return in_set(arr_term_ops, c);
}

// The factors behind the first one.
static void further_factors(input_stream **stream, arr_value *v, name_node **cursor)
{
    while (term_goes_on()) {
        arr_value r;
        const char c = token.text[0];
        const bool product = is_letter(c);
        if (!product) scanner(stream, &token, cursor);
        open_value(&r);
        arr_fact(stream, &r, cursor);
        combine_values(v, &r, product ? '*' : c);
        close_value(&r);
    }
}

static void arr_term(input_stream **stream, arr_value *v, name_node **cursor)
{
    const std::int32_t outer = open_terms;
    enter_term();
    arr_fact(stream, v, cursor);
    further_factors(stream, v, cursor);
    leave_terms(outer);
}

// A term whose first factor is in *v.
static void half_arr_term(input_stream **stream, arr_value *v, name_node **cursor)
{
    const std::int32_t outer = open_terms;
    enter_term();
    half_arr_fact(stream, v, cursor);
    further_factors(stream, v, cursor);
    leave_terms(outer);
}

// Sums ----------------------------------------------------------------------------------------------------

static void arr_sum_rest(input_stream **stream, arr_value *v, name_node **cursor)
{
    while (token.text[0] == '+' || token.text[0] == '-') {
        arr_value r;
        const char op = token.text[0];
        scanner(stream, &token, cursor);
        open_value(&r);
        arr_term(stream, &r, cursor);
        combine_values(v, &r, op);
        close_value(&r);
    }
}

void arr_expre(input_stream **stream, arr_value *v, name_node **cursor)
{
    const std::int32_t outer = cancelflag;
    cancelflag = 1;
    arr_term(stream, v, cursor);
    arr_sum_rest(stream, v, cursor);
    cancelflag = outer;
}

void half_arr_expre(input_stream **stream, arr_value *v, name_node **cursor)
{
    const std::int32_t outer = cancelflag;
    cancelflag = 1;
    half_arr_term(stream, v, cursor);
    arr_sum_rest(stream, v, cursor);
    cancelflag = outer;
}

}  // namespace kelmar
