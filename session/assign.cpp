// session/assign.cpp -- assignment.
//
// The computed value moves into the target's slot; nothing is copied but, at the terminal,
// what is to be shown.
#include "session/assign.h"
#include "numbers/dispatch.h"
#include "quoly/add.h"
#include "session/expr.h"
#include "session/factor.h"
#include "session/owned.h"
#include "session/report.h"
#include "session/token_list.h"

namespace kelmar {

static void store(input_stream **stream, operand *v, name_node **cursor)
{
    quolynode **target = v->p;
    quolynode *value = nullptr;
    scanner(stream, &token, cursor);
    own(&value);
    borrow();
    old_expre(stream, &value, cursor);
    free_quoly(target);
    *target = value;
    value = nullptr;
    disown();
    if (*cursor) {
        quoly_set(0, &v->n);
    } else {
        quoly_assign(*target, &v->n);
    }
    v->p = &v->n;
    give_back();
}

// Read the amount of :+ or :- into *amount; 1 when none stands there.
static void read_amount(input_stream **stream, quolynode **amount, name_node **cursor)
{
    const char c = token.text[0];
    if (!is_digit(c) && !is_lower(c) && c != '(') {
        quoly_set(1, amount);
        return;
    }
    old_fact(stream, amount, cursor);
    if (!(*amount)->is_num) {
        error(err_amount_not_number, token.text);
        quoly_set(0, amount);
    } else if (exact_integers() && (*amount)->num->size > 1) {
        error(err_amount_too_big, token.text);
        quoly_set(0, amount);
    }
}

static void increment(input_stream **stream, operand *v, name_node **cursor)
{
    const bool minus = token.text[0] == '-';
    quolynode **target = v->p;
    quolynode *amount = nullptr;
    scanner(stream, &token, cursor);
    own(&amount);
    borrow();
    read_amount(stream, &amount, cursor);
    if (minus) quoly_inplace(&amount);
    if (!(*target)->is_num && (*target)->den) {
        error(err_has_denominator, token.text);
    } else {
        better_quoly_add(target, amount);
        if (exact_integers() && (*target)->is_num && (*target)->num->size > 1) {
            quoly_sub(*target, amount, target);
            error(err_increment_too_big, token.text);
        }
    }
    give_back();
    disown();
    free_quoly(&amount);
}

void assign(input_stream **stream, operand *v, name_node **cursor)
{
    if (!*cursor && !tt_flag && line_is_over(*stream)) return;  // in a file ":" ends the statement
    borrow();
    scanner(stream, &token, cursor);
    give_back();
    const char form = token.text[0];
    if (form == ';' && !*cursor) {
        set_token(&token, ":");
    } else if (form != '=' && form != '+' && form != '-') {
        error(err_bad_colon, token.text);
    } else if (v->n || !v->p) {
        error(err_not_assignable, token.text);
    } else if (form == '=') {
        store(stream, v, cursor);
    } else {
        increment(stream, v, cursor);
    }
}

}  // namespace kelmar
