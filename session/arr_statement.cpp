// session/arr_statement.cpp -- statements about arrays.
//
// Whether a statement assigns is known only behind the denotation of its first array: with := behind it that
// is where the value goes, and else it is the first operand of an expression.
#include "session/arr_statement.h"
#include "session/arr_access.h"
#include "session/arr_assign.h"
#include "session/arr_expr.h"
#include "session/arr_literal.h"
#include "session/arr_ops.h"
#include "session/arr_shape.h"
#include "session/arr_system.h"
#include "session/arr_target.h"
#include "session/report.h"
#include "session/token_list.h"

namespace kelmar {

// Expressions alone -------------------------------------------------------------------------------------

static void expression_statement(input_stream **stream, quolynode **result, name_node **cursor)
{
    arr_value v;
    quoly_set(0, result);
    open_value(&v);
    arr_expre(stream, &v, cursor);
    fill_syst_array(&v);
    close_value(&v);
}

// The sum of the entries, or the trace, of the factor in hand.
static void reduce_array(input_stream **stream, quolynode **result, name_node **cursor,
                         void (*reduce)(arr_value *v, quolynode **q))
{
    arr_value v;
    open_value(&v);
    arr_fact(stream, &v, cursor);
    if (is_array(&v)) {
        reduce(&v, result);
    } else {
        error(err_need_array, token.text);
        quoly_set(0, result);
    }
    close_value(&v);
}

// Assignments and expressions ---------------------------------------------------------------------------

// The `:` behind the array is in hand. True when it ends the statement, and is in hand; else the token behind
// it is.
static bool ends_silently(input_stream **stream, name_node **cursor)
{
    if (*cursor) {
        scanner(stream, &token, cursor);
        return false;
    }
    if (line_is_over(*stream)) return true;
    scanner(stream, &token, cursor);
    if (token.text[0] != ';') return false;
    set_token(&token, ":");
    return true;
}

// The `=` of := is in hand, as it should be. Declines (0) after an error.
static int pass_equals(input_stream **stream, const array_target *t, name_node **cursor)
{
    if (!expect('=', err_need_equals)) return 0;
    if (t->system) {
        error(err_system_array_refused, "[<]");
        return 0;
    }
    scanner(stream, &token, cursor);
    return 1;
}

// The value of the expression that begins with *v becomes [<].
static void finish_expression(input_stream **stream, arr_value *v, name_node **cursor)
{
    half_arr_expre(stream, v, cursor);
    fill_syst_array(v);
}

// The denotation of a stored array was read: the statement assigns to it, or is an expression.
static void target_statement(input_stream **stream, array_target *t, bool diagonal, name_node **cursor)
{
    arr_value v;
    if (token.text[0] == ':' && !ends_silently(stream, cursor)) {
        if (pass_equals(stream, t, cursor)) assign_array(stream, t, diagonal, cursor);
        return;
    }
    open_value(&v);
    refer_to_target(t, &v);
    if (diagonal && is_array(&v)) extract_diagonal(&v);
    finish_expression(stream, &v, cursor);
    close_value(&v);
}

// A literal begins the statement.
static void literal_statement(input_stream **stream, bool angle, bool diagonal, name_node **cursor)
{
    arr_value v;
    open_value(&v);
    arr_literal(stream, &v, cursor, angle);
    if (token.text[0] == ':' && !ends_silently(stream, cursor)) {
        error(err_bad_left_side, token.text);
    } else {
        if (diagonal && is_array(&v)) extract_diagonal(&v);
        finish_expression(stream, &v, cursor);
    }
    close_value(&v);
}

void arr_asstat(input_stream **stream, quolynode **result, name_node **cursor)
{
    array_target t;
    const bool diagonal = token.text[0] != '[';
    quoly_set(0, result);
    if (diagonal) {
        scanner(stream, &token, cursor);
        if (!expect('[', err_need_bracket_diag)) return;
    }
    scanner(stream, &token, cursor);
    if (begins_target()) {
        if (left_side(stream, &t, cursor)) target_statement(stream, &t, diagonal, cursor);
    } else if (token.text[0] != '<') {
        literal_statement(stream, false, diagonal, cursor);
    } else {
        scanner(stream, &token, cursor);
        if (token.text[0] != ']') {
            literal_statement(stream, true, diagonal, cursor);
        } else if (system_target(stream, &t, cursor)) {
            target_statement(stream, &t, diagonal, cursor);
        }
    }
}

// Dispatch ------------------------------------------------------------------------------------------------

void arr_parse(input_stream **stream, quolynode **result, name_node **cursor, char kind)
{
    const wanted_array outer = wish_for({0, 0, 0});
    switch (kind) {
    case '[':
    case '~': arr_asstat(stream, result, cursor); break;
    case '"':
    case 'A':
    case 'M': expression_statement(stream, result, cursor); break;
    case 'S': reduce_array(stream, result, cursor, sum_value); break;
    case 'T': reduce_array(stream, result, cursor, trace_value); break;
    default: decline_matrix_algorithm(); break;
    }
    wish_for(outer);
}

void builtin_array_sum(input_stream **stream, quolynode **n, name_node **cursor)
{
    scanner(stream, &token, cursor);
    arr_parse(stream, n, cursor, 'S');
}

void builtin_trace(input_stream **stream, quolynode **n, name_node **cursor)
{
    scanner(stream, &token, cursor);
    arr_parse(stream, n, cursor, 'T');
}

void new_arretrieve(input_stream **stream, token_rec *name, quolynode ***p, name_node **cursor)
{
    operand v = {};
    retrieve_entry(stream, name, &v, cursor);
    *p = v.n ? nullptr : v.p;
    free_quoly(&v.n);
}

}  // namespace kelmar
