// session/func_params.cpp -- the arguments of a call.
//
// One frame a formal parameter: each reads its argument, then the frames for the others run, and only then is
// its parameter bound. So no argument sees a parameter of this call, and until all are read every value
// stands in a slot that an error releases.
#include "session/func_params.h"
#include "poly/variables.h"
#include "quoly/owned.h"
#include "session/arr_access.h"
#include "session/arr_params.h"
#include "session/expr.h"
#include "session/report.h"

namespace kelmar {

struct arguments {
    input_stream **stream;
    name_node **cursor;
    std::int32_t closed;  // the list of arguments has ended
    std::int32_t lends;   // a parameter refers to a variable of the caller
};

// What was read for one formal parameter, beside its value.
struct argument {
    quolynode **ref;       // by reference: the slot of the variable
    entry_ref entry;       // by reference: the entry of an array
    array_argument array;  // an array
};

static void read_value(arguments *a, quolynode **value, argument *arg)
{
    if (token.text[0] == '[') {
        quoly_set(0, value);
        read_array_argument(a->stream, &arg->array, a->cursor);
    } else {
        old_expre(a->stream, value, a->cursor);
    }
}

// The `[` behind the name is in hand: *value = a copy of the entry.
static void read_entry_reference(arguments *a, token_rec *name, quolynode **value, argument *arg)
{
    operand v = {};
    own(&v.n);
    retrieve_entry(a->stream, name, &v, a->cursor);
    disown();
    if (v.n || !v.p) {
        free_quoly(&v.n);
        error(err_entry_not_stored, name->text);
        return;
    }
    arg->entry = v.at;
    quoly_assign(*v.p, value);
}

// *value = a copy of the variable in hand, arg->ref = its slot; null when it has none.
static void read_reference(arguments *a, quolynode **value, argument *arg)
{
    if (!is_lower(token.text[0]) || its_a_polyname(token.text)) {
        error(err_bad_reference, token.text);
        return;
    }
    token_rec name = token;
    const name_node *at = *a->cursor;
    quolynode **slot = nullptr;
    scanner(a->stream, &token, a->cursor);
    if (token.text[0] == '[') {
        read_entry_reference(a, &name, value, arg);
        return;
    }
    if (at && at->linked) {
        slot = static_cast<quolynode **>(at->ptr);
        quoly_assign(*slot, value);
    } else {
        spec_retrieve(&name, value, &slot);
    }
    if (slot == value) return;  // undefined, at a pushed level
    arg->ref = slot;
    a->lends = 1;
}

// Read the argument for the formal parameter; behind it, the next one or the end.
static void read_argument(arguments *a, const name_node *formal, quolynode **value, argument *arg)
{
    const bool by_reference = formal->kind != 0;
    if (a->closed) {
        quoly_set(0, value);
        if (by_reference) error(err_missing_reference, formal->text);
        return;
    }
    if (by_reference) {
        read_reference(a, value, arg);
    } else {
        read_value(a, value, arg);
    }
    if (token.text[0] == ')') {
        a->closed = 1;
    } else if (!formal->next) {
        error(err_too_many_arguments, token.text);
    } else if (token.text[0] != ',') {
        error(err_need_more_arguments, token.text);
    } else {
        next_token(a->stream, a->cursor);
    }
}

// Read the arguments for the formal parameter and those behind it, then bind it.
static void bind_from(arguments *a, name_node *formal)
{
    check_stack();
    if (number_polys > 0 && its_a_polyname(formal->text)) error(err_name_is_poly, formal->text);
    quolynode *value = nullptr;
    argument arg = {};
    own(&value);
    read_argument(a, formal, &value, &arg);
    if (!value) quoly_set(0, &value);
    if (formal->next) bind_from(a, formal->next);
    disown();
    token_rec name;
    copy_token(&name, formal);
    var_node *v = push_param(&name, &value, arg.ref);
    v->at = arg.entry;
    formal->ptr = &v->value;
    if (arg.array.target && push_array_argument(&name, &arg.array)) mark_array_param(v);
}

bool setargs(input_stream **stream, func_node *f, token_rec *after, name_node **cursor)
{
    arguments a = {stream, cursor, 1, 0};
    if (token.text[0] != '(') {
        *after = token;
        if (f->params) bind_from(&a, f->params);
        return false;
    }
    next_token(stream, cursor);
    a.closed = token.text[0] == ')';
    if (f->params) bind_from(&a, f->params);
    if (!a.closed) {
        error(err_too_many_arguments, token.text);
        return false;
    }
    scanner(stream, after, cursor);
    return a.lends != 0;
}

}  // namespace kelmar
