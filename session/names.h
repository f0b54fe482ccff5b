#pragma once
// session/names.h -- the tables of scalar variables and of user functions.
//
// New records go to the head of their bucket, so a look-up finds the newest record of a name. That is how a
// parameter hides a variable for the time of a call, and a second definition an older function.

#include "matrix/sparse.h"
#include "poly/variables.h"
#include "quoly/quoly.h"
#include "session/many_names.h"
#include "session/scanner.h"

namespace kelmar {

inline constexpr int lower_buckets = 151;  // variables and arrays
inline constexpr int upper_buckets = 71;   // functions

enum var_role : std::int16_t {
    plain_variable,
    parameter,            // of an active call; it leaves its bucket when the call ends
    cancelled_parameter,  // it has left its bucket already; its record waits for the end of the call
    linked_variable       // tokens of a linked body point at its value: its record is never used again
};

struct var_node {
    char text[token_room];
    std::int16_t index;
    var_role role;
    var_node *next;    // in the bucket; free list
    quolynode **ref;   // by-reference parameter: the caller's slot, written back on return
    entry_ref at;      // the same, for an entry of an array; ref is null then
    quolynode *value;  // a plain number with a denominator is the mark of an array parameter
    var_node *below;   // the parameter that was bound before this one
    var_node *alike;   // in its slot of many_names
};
static_assert(std::is_trivial_v<var_node>);

struct form_node;   // a statement of a function body
struct entry_link;  // session/entry_links.h

struct func_node {
    char text[token_room];
    std::int16_t index;
    name_node *params;         // formal parameters, linked through their own field
    form_node *body;           // the statements
    form_node *linked_at;      // first statement after Compile; null until linked
    std::int32_t linked;       // it has a name table to rebuild at each call
    entry_link *links;         // what the tokens of its linked body name
    std::int32_t in_use;       // active calls
    std::int32_t retired;      // it was cancelled while in use: released when its last call ends
    std::int16_t walkable;     // 1 its body can be walked (plain_calls.h), -1 it cannot, 0 not told yet
    std::int16_t param_count;  // when it can
    func_node *next;           // in the bucket
};
static_assert(std::is_trivial_v<func_node>);

inline var_node *sca_store[lower_buckets];
inline func_node *func_store[upper_buckets];
// default 1; definitions so far, counted up to 65535; funcdef; reset: never
inline std::uint16_t definitions = 1;
// default null; free variable records; new_var, free_var; reset: never
inline var_node *var_garb = nullptr;
// default null; the parameters of active calls, newest first; push_param, pop_params; reset: unwind
inline var_node *params_top = nullptr;
// default 0; cancellations so far: who keeps a pointer to a record looks it up again when this has moved
inline std::uint32_t cancel_count = 0;

// h = h * 123 + byte, modulo m, over the bytes of the text, from 0.
std::int16_t hash(const char *text, int m);

// The newest variable of the name, or null. Fills tok->index.
var_node *find_var(token_rec *tok);

// find_var for a name of a stored list, which is hashed already. Its text is compared where it stands: a copy
// just made would have to leave the store buffer first.
inline var_node *stored_var(const name_node *name)
{
    if (__builtin_expect(many_names != nullptr, 0)) return find_among_many(name->text);
    for (var_node *v = sca_store[name->index]; v; v = v->next) {
        if (std::memcmp(v->text, name->text, token_room) == 0) return v;
    }
    return nullptr;
}

// *p = the slot of the variable; null when there is none. An array parameter gives *n = 0 and p at n, with a
// warning. "for", "if", "while" at the terminal run as a system function, with p at n; in a list: error 225.
void retrieve(token_rec *name, quolynode ***p, quolynode **n, input_stream **stream, name_node **cursor);

// *p = the slot of the variable, *n = a copy of its value. Errors: 19; when it comes back *n = 0.
void spec_retrieve(token_rec *name, quolynode **n, quolynode ***p);

// Set the variable, taking *value over; a new record goes to the head of its bucket. *record = its record.
void insert_var(token_rec *name, quolynode **value, var_node **record);

// Bind a parameter: insert a record of the name at the head of its bucket, whether or not the name exists,
// with *value taken over. ref: the caller's slot of a by-reference parameter, else null.
var_node *push_param(token_rec *name, quolynode **value, quolynode **ref);

// Release the parameters bound since params_top was `mark`, newest first. A by-reference parameter gives its
// value to the caller's slot.
void pop_params(var_node *mark);

// The value is the mark of an array parameter: no other plain number has a denominator.
inline bool is_array_mark(const quolynode *value)
{
    return value->is_num && value->den != nullptr;
}

// The slot of the scalar that the token of a stored list names; null when it is none that has a value.
inline quolynode **stored_slot(const name_node *name)
{
    if (name->linked) return name->kind == linked_scalar ? static_cast<quolynode **>(name->ptr) : nullptr;
    if (name->index < 0 || (number_polys > 0 && its_a_polyname(name->text))) return nullptr;
    var_node *variable = stored_var(name);
    if (!variable || !variable->value || is_array_mark(variable->value)) return nullptr;
    return &variable->value;
}

// Make the value of a parameter that mark.
void mark_array_param(var_node *v);

// Delete the newest variable of the name. Declines (0) when there is none. While an operand is borrowed the
// record is only taken off its bucket, and free_doomed_vars releases it later; a parameter's is released at
// its call's end.
int remove_var(token_rec *name);
void free_doomed_vars();

// Call f on the slot of every scalar value: shadowed variables and parameters too, and variables that wait
// for their release.
void for_each_scalar(void (*f)(quolynode **slot));

// The newest function of the name, or null. Fills tok->index.
inline func_node *find_func(token_rec *tok)
{
    if (tok->index < 0) tok->index = hash(tok->text, upper_buckets);
    for (func_node *f = func_store[tok->index]; f; f = f->next) {
        if (std::memcmp(f->text, tok->text, token_room) == 0) return f;
    }
    return nullptr;
}

// The same for a name of a stored list, which is hashed already; compared where it stands, as by stored_var.
inline func_node *stored_func(const name_node *name)
{
    for (func_node *f = func_store[name->index]; f; f = f->next) {
        if (std::memcmp(f->text, name->text, token_room) == 0) return f;
    }
    return nullptr;
}

// Take the newest function of the name off its bucket, and release it. Declines (0) when there is none.
int remove_function(token_rec *name);

// Take all functions of the name but the newest off their bucket, and release them. Declines (0) when there
// is none.
int keep_newest_function(token_rec *name);

// Variable records on the free list, but at most limit + 1.
std::int64_t count_free_vars(std::int64_t limit);

}  // namespace kelmar
