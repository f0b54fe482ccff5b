// session/func_params.cpp -- the arguments of a call.
//
// One frame a formal parameter: each reads its argument, then the frames for the others run, and only then is
// its parameter bound. So no argument sees a parameter of this call, and until all are read every value
// stands in a slot that an error releases.
//
// Arrays as arguments have one door, read_array_argument: there are no arrays yet.
#include "session/func_params.h"
#include "poly/variables.h"
#include "session/arr_statement.h"
#include "session/expr.h"
#include "session/owned.h"
#include "session/report.h"

namespace kelmar {

struct arguments {
    input_stream **stream;
    name_node **cursor;
    std::int32_t closed;  // the list of arguments has ended
    std::int32_t lends;   // a parameter refers to a variable of the caller
};

// `[` is in hand. There is no array: the statement ends in an error.
static void read_array_argument(arguments *a, quolynode **value)
{
    arr_parse(a->stream, value, a->cursor, '[');
}

static void read_value(arguments *a, quolynode **value)
{
    if (token.text[0] == '[') {
        read_array_argument(a, value);
    } else {
        old_expre(a->stream, value, a->cursor);
    }
}

// *value = a copy of the variable in hand, *ref = its slot; null when it has none.
static void read_reference(arguments *a, quolynode **value, quolynode ***ref)
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
        new_arretrieve(a->stream, &name, &slot, a->cursor);
        return;
    }
    if (at && at->linked) {
        slot = static_cast<quolynode **>(at->ptr);
        quoly_assign(*slot, value);
    } else {
        spec_retrieve(&name, value, &slot);
    }
    if (slot == value) return;  // undefined, at a pushed level
    *ref = slot;
    a->lends = 1;
}

// Read the argument for the formal parameter; behind it, the next one or the end.
static void read_argument(arguments *a, const name_node *formal, quolynode **value, quolynode ***ref)
{
    const bool by_reference = formal->kind != 0;
    if (a->closed) {
        quoly_set(0, value);
        if (by_reference) error(err_missing_reference, formal->text);
        return;
    }
    if (by_reference) {
        read_reference(a, value, ref);
    } else {
        read_value(a, value);
    }
    if (token.text[0] == ')') {
        a->closed = 1;
    } else if (!formal->next) {
        error(err_too_many_arguments, token.text);
    } else if (token.text[0] != ',') {
        error(err_need_more_arguments, token.text);
    } else {
        scanner(a->stream, &token, a->cursor);
    }
}

// Read the arguments for the formal parameter and those behind it, then bind it.
static void bind_from(arguments *a, name_node *formal)
{
    check_stack();
    if (its_a_polyname(formal->text)) error(err_name_is_poly, formal->text);
    quolynode *value = nullptr;
    quolynode **ref = nullptr;
    own(&value);
    read_argument(a, formal, &value, &ref);
    if (formal->next) bind_from(a, formal->next);
    disown();
    token_rec name;
    std::memcpy(name.text, formal->text, sizeof name.text);
    name.index = formal->index;
    formal->ptr = &push_param(&name, &value, ref)->value;
}

bool setargs(input_stream **stream, func_node *f, token_rec *after, name_node **cursor)
{
    arguments a = {stream, cursor, 1, 0};
    if (token.text[0] != '(') {
        *after = token;
        if (f->params) bind_from(&a, f->params);
        return false;
    }
    scanner(stream, &token, cursor);
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
