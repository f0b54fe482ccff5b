// session/evaluation.cpp -- the form q # .. of the language.
//
// Values are gathered in a list, one a variable, before any of them is used, so that all are put in at once.
// A variable that gets no value by name is its own value.
#include "session/evaluation.h"
#include "matrix/store.h"
#include "poly/variables.h"
#include "quoly/eval.h"
#include "quoly/owned.h"
#include "session/arr_evaluation.h"
#include "session/arr_expr.h"
#include "session/arr_system.h"
#include "session/array_args.h"
#include "session/expr.h"
#include "session/factor.h"
#include "session/report.h"

namespace kelmar {

// The values so far, the newest first: an announced value stands in a slot, not on a list.
struct value_list {
    quolynode *values[variable_limit];  // of level 1, 2, ..; null: none
    std::int32_t last;                  // the greatest level that has a value
};

static void announce(value_list *list)
{
    for (quolynode *&value : list->values) own(&value);
}

static void withdraw(value_list *list)
{
    for (quolynode *&value : list->values) {
        disown();
        if (value) free_quoly(&value);
    }
}

// The next character that is no blank, which stays unread.
static char char_ahead(input_stream *in)
{
    if (leftover[0] != 0 && leftover[0] != ' ') return leftover[0];
    int c = peek_char(in);
    while (c == ' ' || c == '\t' || c == '\r') {
        ++in->pos;
        c = peek_char(in);
    }
    return c == end_of_input ? ';' : static_cast<char>(c);
}

// A name is in hand, and = follows.
static bool is_named_value(input_stream **stream, name_node *const *cursor)
{
    if (!is_lower(token.text[0])) return false;
    if (*cursor) return (*cursor)->next && (*cursor)->next->text[0] == '=';
    return char_ahead(*stream) == '=';
}

// The name of a variable is in hand. Read = and its value.
static void read_named(input_stream **stream, value_list *list, name_node **cursor)
{
    std::int32_t level = 0;
    if (!is_poly_name(token.text, &level)) {
        error(err_bad_substitute, token.text);
        return;
    }
    scanner(stream, &token, cursor);
    if (!expect_and_pass('=', err_need_equals_value, stream, cursor)) return;
    old_expre(stream, &list->values[level - 1], cursor);
    if (level > list->last) list->last = level;
}

// Read the next value in order.
static void read_ordered(input_stream **stream, value_list *list, name_node **cursor)
{
    if (list->last >= number_polys) {
        error(err_too_many_values, token.text);
        return;
    }
    quolynode **slot = &list->values[list->last++];
    old_expre(stream, slot, cursor);
}

// Read the values behind `(`, up to `)`, which is passed.
static void read_values(input_stream **stream, value_list *list, name_node **cursor)
{
    const bool by_name = is_named_value(stream, cursor);
    for (;;) {
        const bool named = is_named_value(stream, cursor);
        if (by_name && !named && !is_lower(token.text[0])) {
            error(err_mixed_values, token.text);
        } else if (!by_name && named) {
            error(err_mixed_values, token.text);
        } else if (by_name) {
            read_named(stream, list, cursor);
        } else {
            read_ordered(stream, list, cursor);
        }
        if (token.text[0] != ',') break;
        scanner(stream, &token, cursor);
    }
    expect_and_pass(')', err_need_close_paren, stream, cursor);
}

// The values are the entries of the array, in the order of storage. Those of a short one leave the rest.
static void take_entries(const array *a, value_list *list)
{
    if (a->arr_sparse) {
        error(err_need_plain_array, a->arr_name.text);
        return;
    }
    if (a->arr_size > number_polys) {
        error(err_too_many_values, a->arr_name.text);
        return;
    }
    for (std::int32_t k = 0; k < a->arr_size; ++k) {
        const quolynode *entry = *store_slot(static_cast<std::int32_t>(a->arr_first) + k);
        if (!entry) {
            error(err_unset_entry, a->arr_name.text);
            list->last = 0;
            return;
        }
        quoly_assign(entry, &list->values[list->last++]);
    }
}

// `[` is in hand, behind `(`: the entries of an array, and `)`.
static void read_array_values(input_stream **stream, value_list *list, name_node **cursor)
{
    const array *a = read_stored_array(stream, star_ignored, err_need_array_name, cursor);
    if (!a) return;
    take_entries(a, list);
    expect_and_pass(')', err_need_close_paren, stream, cursor);
}

void evaluate_at_array(input_stream **stream, const quolynode *q, arr_value *r, name_node **cursor)
{
    arr_value m;
    open_value(&m);
    arr_fact(stream, &m, cursor);
    quoly_at_matrix(q, &m, r);
    close_value(&m);
}

// `[` is in hand: the array that comes out becomes the system array, and the value is 0.
static void evaluate_to_system(input_stream **stream, quolynode **n, name_node **cursor)
{
    arr_value r;
    open_value(&r);
    evaluate_at_array(stream, *n, &r, cursor);
    if (syst_dump && !*cursor) {
        tell("Warning. System array was changed before it could be displayed.\n");
    }
    if (is_array(&r)) fill_syst_array(&r);
    quoly_set(0, n);
    close_value(&r);
}

// Put the variable itself where no value was given in front of one.
static void fill_gaps(value_list *list)
{
    for (std::int32_t k = 0; k < list->last; ++k) {
        if (!list->values[k]) quoly_variable(k + 1, &list->values[k]);
    }
}

// Put the values into *n.
static void substitute(value_list *list, quolynode **n)
{
    fill_gaps(list);
    for (std::int32_t k = 0; k < list->last; ++k) {
        number_to_residue(list->values[k]);
        list->values[k]->next = k + 1 < list->last ? list->values[k + 1] : nullptr;
    }
    if (list->last == 1 && list->values[0]) {
        horner_quoly_eval(n, list->values[0]);
    } else if (list->last > 0) {
        total_eval(n, list->values[0]);
    }
}

void get_evalquoly(input_stream **stream, quolynode **n, name_node **cursor)
{
    if (token.text[0] == '[') {
        evaluate_to_system(stream, n, cursor);
        return;
    }
    value_list list = {};
    announce(&list);
    if (token.text[0] != '(') {
        if (number_polys == 0) {
            error(err_too_many_values, token.text);
        } else {
            old_fact(stream, &list.values[0], cursor);
            list.last = 1;
        }
    } else {
        scanner(stream, &token, cursor);
        if (token.text[0] == '[') {
            read_array_values(stream, &list, cursor);
        } else {
            read_values(stream, &list, cursor);
        }
    }
    substitute(&list, n);
    withdraw(&list);
}

}  // namespace kelmar
