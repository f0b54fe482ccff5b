// session/assign.cpp -- assignment.
//
// The computed value moves into the target's slot; nothing is copied but, at the terminal,
// what is to be shown.
#include "session/assign.h"
#include "matrix/pins.h"
#include "numbers/dispatch.h"
#include "quoly/add.h"
#include "quoly/owned.h"
#include "session/arr_access.h"
#include "session/expr.h"
#include "session/factor.h"
#include "session/names.h"
#include "session/report.h"
#include "session/token_list.h"

namespace kelmar {

static void store(input_stream **stream, operand *v, name_node **cursor)
{
    quolynode **target = v->p;
    quolynode *value = nullptr;
    next_token(stream, cursor);
    own(&value);
    old_expre(stream, &value, cursor);
    if (*cursor) {
        quoly_set(0, &v->n);
    } else {
        quoly_assign(value, &v->n);
    }
    disown();
    if (v->at.array_time) {
        store_entry(v, &value);
    } else {
        retire_value(target);
        *target = value;
    }
    v->p = &v->n;
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
    next_token(stream, cursor);
    own(&amount);
    read_amount(stream, &amount, cursor);
    if (minus) quoly_inplace(&amount);
    if (v->at.array_time && v->at.moves != array_moves) refresh_entry(v);
    quolynode **const place = v->p;
    if (v->at.array_time) make_private(v);  // an entry is stored again as a whole
    if (v->n) target = &v->n;
    if (!(*target)->is_num && (*target)->den) {
        error(err_has_denominator, token.text);
    } else {
        if (!v->n) unshare(target);
        better_quoly_add(target, amount);
        if (exact_integers() && (*target)->is_num && (*target)->num->size > 1) {
            quoly_sub(*target, amount, target);
            error(err_increment_too_big, token.text);
        }
    }
    if (v->at.array_time) {
        quolynode *copy = nullptr;
        quoly_assign(v->n, &copy);
        v->p = place;
        store_entry(v, &copy);
        v->p = &v->n;
    }
    disown();
    free_quoly(&amount);
}

int assign_variable(input_stream **stream, quolynode **n, name_node **cursor)
{
    const name_node *const name = *cursor;
    if (!is_lower(name->text[0]) || name->next->text[0] != ':') return 0;
    name_node *const sign = name->next->next;
    quolynode **const target = sign->text[0] == '=' ? stored_slot(name) : nullptr;
    if (!target) return 0;
    quolynode *value = nullptr;
    *cursor = sign;
    next_token(stream, cursor);
    own(&value);
    borrow();
    old_expre(stream, &value, cursor);
    disown();
    retire_value(target);
    *target = value;
    give_back();
    quoly_set(0, n);
    return 1;
}

static void assign_operand(input_stream **stream, operand *v, name_node **cursor)
{
    next_token(stream, cursor);
    const char form = token.text[0];
    if (form == ';' && !*cursor) {
        set_token(&token, ":");
    } else if (form != '=' && form != '+' && form != '-') {
        error(err_bad_colon, token.text);
    } else if (v->n || (!v->p && !v->at.array_time)) {
        error(err_not_assignable, token.text);
    } else if (form == '=') {
        store(stream, v, cursor);
    } else {
        increment(stream, v, cursor);
    }
}

void assign(input_stream **stream, operand *v, name_node **cursor)
{
    if (!*cursor && !tt_flag && line_is_over(*stream)) return;  // in a file ":" ends the statement
    borrow();
    assign_operand(stream, v, cursor);
    if (doomed_wait) make_private(v);  // a level may have cancelled the variable
    give_back();
}

}  // namespace kelmar
