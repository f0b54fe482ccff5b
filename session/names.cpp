// session/names.cpp -- look-up and insertion of names.
//
// A bucket is a chain of records, newest first. Texts are zero-padded to twelve bytes, so two texts are equal
// exactly when three words are, and a chain of many names is walked at the speed of memory.
#include "session/names.h"
#include "session/arr_access.h"
#include "session/evaluator.h"
#include "session/func_records.h"
#include "session/func_run.h"
#include "matrix/pins.h"
#include "numbers/heap.h"
#include "session/output.h"
#include "session/report.h"
#include "storage/accounting.h"

namespace kelmar {

// default null; variables cancelled while an operand may point at them; remove_var; reset: end of borrowing
static var_node *doomed = nullptr;
// default null; linked variables that were cancelled; remove_var; reset: never
static var_node *orphans = nullptr;
// nothing is in it: its address as the denominator of a number marks an array parameter
static polynode array_mark;

std::int16_t hash(const char *text, int m)
{
    int h = 0;
    for (; *text; ++text) h = (h * 123 + static_cast<unsigned char>(*text)) % m;
    return static_cast<std::int16_t>(h);
}

// Scalars -----------------------------------------------------------------------------------------------

static inline bool same_text(const char *a, const char *b)
{
    return std::memcmp(a, b, token_room) == 0;
}

static inline void hash_token(token_rec *tok, int m)
{
    if (tok->index < 0) tok->index = hash(tok->text, m);
}

var_node *find_var(token_rec *tok)
{
    hash_token(tok, lower_buckets);
    if (many_names) return find_among_many(tok->text);
    for (var_node *v = sca_store[tok->index]; v; v = v->next) {
        if (same_text(v->text, tok->text)) return v;
    }
    return nullptr;
}

void mark_array_param(var_node *v)
{
    quoly_set(0, &v->value);
    v->value->den = &array_mark;
}

void retrieve(token_rec *name, quolynode ***p, quolynode **n, input_stream **stream, name_node **cursor)
{
    var_node *v = find_var(name);
    if (v) {
        *p = &v->value;
        if (!is_array_mark(v->value)) return;
        std::fprintf(Output, "Warning. %s is an array parameter used as a scalar.\n", name->text);
        std::fprintf(Output, "  Value 0 used for %s.\n", name->text);
        quoly_set(0, n);
        *p = n;
        return;
    }
    *p = nullptr;
    if (!token_is(name, "for") && !token_is(name, "if") && !token_is(name, "while")) return;
    if (*cursor) {
        error(err_not_in_function, name->text);
        return;
    }
    run_control_statement(name, stream, n, cursor);
    *p = n;
}

void spec_retrieve(token_rec *name, quolynode **n, quolynode ***p)
{
    var_node *v = find_var(name);
    if (!v) {
        error(err_undefined, name->text);
        quoly_set(0, n);
        *p = n;
        return;
    }
    *p = &v->value;
    if (is_array_mark(v->value)) {
        std::fprintf(Output, "Warning. %s is an array parameter.\n", name->text);
        std::fprintf(Output, "  Value 0 used for %s.\n", name->text);
        quoly_set(0, n);
        return;
    }
    quoly_assign(v->value, n);
}

// A fresh record of the name at the head of its bucket; its value is null.
static var_node *push_var(token_rec *name)
{
    hash_token(name, lower_buckets);
    var_node *v = var_garb;
    if (v) {
        var_garb = v->next;
    } else {
        v = static_cast<var_node *>(heap_record(sizeof(var_node)));
    }
    std::memcpy(v->text, name->text, sizeof v->text);
    v->index = name->index;
    v->role = plain_variable;
    v->ref = nullptr;
    v->at.array_time = 0;
    v->value = nullptr;
    v->below = nullptr;
    v->next = sca_store[v->index];
    sca_store[v->index] = v;
    name_was_added(v);
    return v;
}

void insert_var(token_rec *name, quolynode **value, var_node **record)
{
    var_node *v = find_var(name);
    if (!v) v = push_var(name);
    quolynode *old = v->value;
    v->value = *value;
    *value = nullptr;
    if (v->value->is_num) v->value->den = nullptr;
    retire_value(&old);
    *record = v;
}

int remove_var(token_rec *name)
{
    hash_token(name, lower_buckets);
    for (var_node **link = &sca_store[name->index]; *link; link = &(*link)->next) {
        var_node *v = *link;
        if (!same_text(v->text, name->text)) continue;
        *link = v->next;
        name_was_removed(v);
        ++cancel_count;
        if (v->role == parameter) {
            v->role = cancelled_parameter;
        } else if (v->role == linked_variable) {  // on purpose: a linked body may still read that record
            v->next = orphans;
            orphans = v;
        } else {
            v->next = doomed;
            doomed = v;
            doomed_wait = 1;
            if (!borrowed) free_doomed_vars();
        }
        return 1;
    }
    return 0;
}

void free_doomed_vars()
{
    doomed_wait = 0;
    if (values_pinned > 0) return;  // an interrupted computation may use them; whoever comes next frees them
    while (doomed) {
        var_node *v = doomed;
        doomed = v->next;
        free_quoly(&v->value);
        v->next = var_garb;
        var_garb = v;
    }
}

void for_each_scalar(void (*f)(quolynode **slot))
{
    for (var_node *bucket : sca_store) {
        for (var_node *v = bucket; v; v = v->next) f(&v->value);
    }
    for (var_node *v = doomed; v; v = v->next) f(&v->value);
    for (var_node *v = params_top; v; v = v->below) {
        if (v->role == cancelled_parameter) f(&v->value);
    }
    for (var_node *v = orphans; v; v = v->next) f(&v->value);
}

// Parameters --------------------------------------------------------------------------------------------

var_node *push_param(token_rec *name, quolynode **value, quolynode **ref)
{
    var_node *v = push_var(name);
    v->role = parameter;
    v->ref = ref;
    v->value = *value;
    *value = nullptr;
    if (v->value->is_num) v->value->den = nullptr;
    v->below = params_top;
    params_top = v;
    return v;
}

// Take the parameter off its bucket, where it is the newest of its name, and so near the head.
static void unlink_param(var_node *v)
{
    var_node **link = &sca_store[v->index];
    while (*link != v) link = &(*link)->next;
    *link = v->next;
    name_was_removed(v);
}

// Give the value to the entry of an array that was passed.
static void write_back(var_node *v)
{
    operand entry = {};
    entry.at = v->at;
    refresh_entry(&entry);
    store_entry(&entry, &v->value);
}

void pop_params(var_node *mark)
{
    while (params_top != mark) {
        var_node *v = params_top;
        params_top = v->below;
        if (v->role == parameter) {
            unlink_param(v);
            if (v->at.array_time) {
                write_back(v);
            } else if (v->ref) {
                retire_value(v->ref);
                *v->ref = v->value;
                v->value = nullptr;
            }
        }
        free_quoly(&v->value);
        v->next = var_garb;
        var_garb = v;
    }
}

// Functions ---------------------------------------------------------------------------------------------

int remove_function(token_rec *name)
{
    hash_token(name, upper_buckets);
    for (func_node **link = &func_store[name->index]; *link; link = &(*link)->next) {
        if (!same_text((*link)->text, name->text)) continue;
        func_node *gone = *link;
        *link = gone->next;
        retire_function(gone);
        return 1;
    }
    return 0;
}

int keep_newest_function(token_rec *name)
{
    func_node *newest = find_func(name);
    if (!newest) return 0;
    for (func_node **link = &newest->next; *link;) {
        if (same_text((*link)->text, name->text)) {
            func_node *gone = *link;
            *link = gone->next;
            retire_function(gone);
        } else {
            link = &(*link)->next;
        }
    }
    return 1;
}

std::int64_t count_free_vars(std::int64_t limit)
{
    return count_list<var_node, &var_node::next>(var_garb, limit);
}

}  // namespace kelmar
