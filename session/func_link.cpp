// session/func_link.cpp -- Compile.
//
// The names to be linked are gathered in a sorted table; then one walk over the rest of the body marks every
// token that is one of them. The tokens of a parameter are chained behind the formal parameter, since each
// call binds new storage and must tell them.
//
// Arrays and entries have one door, link_array_item: there are no arrays yet.
#include "session/func_link.h"
#include "poly/variables.h"
#include "session/arr_statement.h"
#include "session/evaluator.h"
#include "session/func_run.h"
#include "session/report.h"
#include "session/trace.h"

namespace kelmar {

struct link_entry {
    char text[token_room];
    void *slot;
    name_node **end;  // parameter: where its next token is chained; null for others
};

struct link_table {
    int count;
    link_entry entry[link_limit];
};

// The table ---------------------------------------------------------------------------------------------

// The place of the text, or of the first larger one.
static int place_of(const link_table *t, const char *text)
{
    int i = 0;
    while (i < t->count && std::strcmp(t->entry[i].text, text) < 0) ++i;
    return i;
}

static link_entry *find_entry(link_table *t, const char *text)
{
    const int i = place_of(t, text);
    return i < t->count && std::strcmp(t->entry[i].text, text) == 0 ? &t->entry[i] : nullptr;
}

static void insert_and_update(link_table *t, const char *text, void *slot, name_node **end)
{
    if (find_entry(t, text)) {
        error(err_compile_duplicate, text);
        return;
    }
    if (t->count == link_limit) {
        error(err_compile_full, text);
        return;
    }
    const int place = place_of(t, text);
    for (int i = t->count; i > place; --i) t->entry[i] = t->entry[i - 1];
    ++t->count;
    link_entry *e = &t->entry[place];
    std::memcpy(e->text, text, token_room);
    e->slot = slot;
    e->end = end;
}

// `[` is in hand, in front of an array's name or behind an entry's. There is no array: this ends in an error.
static void link_array_item(input_stream **stream, token_rec *name, name_node **cursor)
{
    quolynode **slot;
    new_arretrieve(stream, name, &slot, cursor);
}

// One item of the list, in hand.
static void read_item(link_table *t, input_stream **stream, name_node **cursor)
{
    token_rec name = token;
    if ((!is_lower(name.text[0]) && name.text[0] != '[') || its_a_polyname(name.text)) {
        error(err_compile_item, name.text);
        return;
    }
    scanner(stream, &token, cursor);
    if (name.text[0] == '[') {
        name = token;
        link_array_item(stream, &name, cursor);
        return;
    }
    if (token.text[0] == '[') {
        link_array_item(stream, &name, cursor);
        return;
    }
    var_node *v = find_var(&name);
    if (!v) {
        error(err_undefined, name.text);
        return;
    }
    if (v->role == parameter && !find_entry(t, name.text)) return;  // a caller's: its storage will not last
    insert_and_update(t, name.text, &v->value, nullptr);
    v->role = v->role == plain_variable ? linked_variable : v->role;
}

// The table of f's parameters and of the list behind Compile, in hand; the token behind the list is then in
// hand.
static void read_and_link(link_table *t, func_node *f, input_stream **stream, name_node **cursor)
{
    t->count = 0;
    for (name_node *p = f->params; p; p = p->next) {
        p->chain = nullptr;
        insert_and_update(t, p->text, p->ptr, &p->chain);
    }
    scanner(stream, &token, cursor);
    if (token.text[0] != '(') return;
    do {
        scanner(stream, &token, cursor);
        read_item(t, stream, cursor);
    } while (token.text[0] == ',');
    if (token.text[0] != ')') {
        error(err_compile_end, token.text);
        return;
    }
    scanner(stream, &token, cursor);
}

// The body
// ----------------------------------------------------------------------------------------------------

static void do_tok_list(link_table *t, name_node *list)
{
    for (; list; list = list->next) {
        if (!is_lower(list->text[0]) || list->linked) continue;
        if (list->next && list->next->text[0] == '[') continue;
        link_entry *e = find_entry(t, list->text);
        if (!e) continue;
        list->linked = 1;
        list->kind = 1;
        list->ptr = e->slot;
        if (!e->end) continue;
        *e->end = list;
        e->end = &list->chain;
    }
}

static void do_form(link_table *t, form_node *form)
{
    check_stack();
    for (; form; form = form->next) {
        const cond_node *c = form->cond;
        do_tok_list(t, c->header);
        do_tok_list(t, c->plain);
        do_form(t, c->then_part);
        do_form(t, c->else_part);
    }
}

// Calls
// -------------------------------------------------------------------------------------------------------

// The tokens of each parameter read the slot that the call has bound.
static void refresh_links(func_node *f)
{
    for (name_node *p = f->params; p; p = p->next) {
        for (name_node *one = p->chain; one; one = one->chain) one->ptr = p->ptr;
    }
}

void refresh_outer_links(func_node *f)
{
    const call_frame *call = newest_call;
    while (call && call->function != f) call = call->outer;
    if (!call) return;
    std::int64_t since = 0;  // parameters bound since that call began; its own are the oldest of them
    for (const var_node *v = params_top; v != call->params; v = v->below) ++since;
    for (const name_node *p = f->params; p; p = p->next) --since;
    var_node *v = params_top;
    for (; since > 0; --since) v = v->below;
    for (name_node *p = f->params; p && v != call->params; p = p->next, v = v->below) p->ptr = &v->value;
    refresh_links(f);
}

// The form of the body that the statement being run stands in; null when it is no statement of the body
// itself.
static form_node *present_form(const func_node *f)
{
    for (form_node *form = f->body; form; form = form->next) {
        if (form->cond->plain == startexpr) return form;
    }
    return nullptr;
}

void compile(quolynode **n, input_stream **stream, name_node **cursor)
{
    quoly_set(0, n);
    if (statcount == 0 || newest_call->function == sys_func) {
        error(err_compile_outside, token.text);
        return;
    }
    func_node *f = newest_call->function;
    const form_node *here = present_form(f);
    if (!here || (f->linked && here->next != f->linked_at)) {
        error(err_compile_not_found, token.text);
        return;
    }
    if (!f->linked) {
        link_table t;
        read_and_link(&t, f, stream, cursor);
        do_form(&t, here->next);
        f->linked_at = here->next;
        f->linked = 1;
    }
    refresh_links(f);
    if (f->linked_at) eval_form(stream, f->linked_at, n);
    set_token(&token, endlist);
    exit_flag = 1;
}

}  // namespace kelmar
