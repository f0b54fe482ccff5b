// session/func_link.cpp -- Compile.
//
// The names to be linked are gathered in a sorted table; then one walk over the rest of the body marks every
// token that is one of them. The tokens of a parameter are chained behind the formal parameter, since each
// call binds new storage and must tell them. Arrays, and entries with a fixed index, stand in the table by a
// text of their own: [a] as A, and x[3], x[i] as they are written.
#include "session/func_link.h"
#include "poly/variables.h"
#include "session/arr_access.h"
#include "session/entry_links.h"
#include "session/evaluator.h"
#include "session/func_run.h"
#include "session/report.h"
#include "session/trace.h"
#include "session/words.h"

namespace kelmar {

struct link_entry {
    char text[token_room];
    linked_kind kind;
    void *slot;       // as the field ptr of its tokens
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

static void insert_and_update(link_table *t, const char *text, linked_kind kind, void *slot, name_node **end)
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
    e->kind = kind;
    e->slot = slot;
    e->end = end;
}

// The text by which an array is found: its name with a capital letter.
static void array_key(const char *name, char *key)
{
    std::memcpy(key, name, token_room);
    key[0] = static_cast<char>(key[0] - 'a' + 'A');
}

// Append the text to a key. Declines (0) when it gets too long; then no token can be meant.
static int append_to_key(char *key, const char *text)
{
    const std::size_t length = std::strlen(key);
    const std::size_t more = std::strlen(text);
    if (length + more > token_room - 2) return 0;
    std::memcpy(key + length, text, more);
    return 1;
}

// [a] is to be linked, its name in hand; the token behind `]` is in hand then.
static void read_array_item(link_table *t, func_node *f, input_stream **stream, name_node **cursor)
{
    char key[token_room];
    entry_link *link;
    token_rec name = token;
    if (!is_lower(name.text[0]) || its_a_polyname(name.text)) {
        error(err_compile_item, name.text);
        return;
    }
    scanner(stream, &token, cursor);
    if (!expect_and_pass(']', err_need_close_bracket, stream, cursor)) return;
    array *a = known_array(&name);
    if (!a) return;
    if (a->arr_sparse) {
        error(err_sparse_refused, name.text);
        return;
    }
    array_key(name.text, key);
    new_link(&f->links, &link);
    link_to_array(link, a);
    insert_and_update(t, key, linked_array, link, nullptr);
}

// Read the digits in hand into *k, and behind the key.
static int read_fixed_digits(input_stream **stream, char *key, std::int32_t *k, name_node **cursor)
{
    std::int64_t value = 0;
    int fits = 1;
    for (; is_digit(token.text[0]); scanner(stream, &token, cursor)) {
        value = value * 10 + (token.text[0] - '0');
        if (value > INT32_MAX) value = INT32_MAX;
        fits = append_to_key(key, token.text) && fits;
    }
    *k = static_cast<std::int32_t>(value);
    return fits;
}

// Read the index in hand: digits, or a variable that holds a number. Declines (0) when there is nothing to
// link.
static int read_fixed_index(input_stream **stream, char *key, std::int32_t *k, name_node **cursor)
{
    if (is_digit(token.text[0])) return read_fixed_digits(stream, key, k, cursor);
    const var_node *v = is_lower(token.text[0]) ? find_var(&token) : nullptr;
    if (!v || is_array_mark(v->value) || !value_to_word(v->value, k)) {
        error(err_compile_index, token.text);
        return 0;
    }
    const int fits = append_to_key(key, token.text);
    scanner(stream, &token, cursor);
    return fits;
}

// *link = the entry of that name at position k, counted from addresser. Declines (0) after an error.
static int spec_lookup(token_rec *name, std::int32_t k, entry_link *link)
{
    operand v = {};
    array *a = known_array(name);
    if (!a) return 0;
    entry_place place;
    if (!new_array_quoly_ptr(a, k, 0, false, addresser, name->text, &place)) return 0;
    if (!a->arr_sparse && !*place.slot) {
        error(err_empty_entry, name->text);
        return 0;
    }
    const coordinates c = {k, 0, false};
    if (!entry_operand(a, &c, name->text, &v)) return 0;
    link->at = v.at;
    link->slot = v.p;
    return 1;
}

// x[3] or x[i] is to be linked, the `[` in hand; the token behind `]` is in hand then.
static void read_entry_item(link_table *t, func_node *f, token_rec *name, input_stream **stream,
                            name_node **cursor)
{
    char key[token_room];
    entry_link *link;
    std::int32_t k = 0;
    std::memcpy(key, name->text, token_room);
    scanner(stream, &token, cursor);
    int fits = append_to_key(key, "[");
    fits = read_fixed_index(stream, key, &k, cursor) && fits;
    if (!expect(']', err_compile_bracket)) return;
    fits = append_to_key(key, "]") && fits;
    scanner(stream, &token, cursor);
    new_link(&f->links, &link);
    if (!spec_lookup(name, k, link) || !fits) return;
    insert_and_update(t, key, linked_entry, link, nullptr);
}

// One item of the list, in hand.
static void read_item(link_table *t, func_node *f, input_stream **stream, name_node **cursor)
{
    token_rec name = token;
    if ((!is_lower(name.text[0]) && name.text[0] != '[') || its_a_polyname(name.text)) {
        error(err_compile_item, name.text);
        return;
    }
    scanner(stream, &token, cursor);
    if (name.text[0] == '[') {
        read_array_item(t, f, stream, cursor);
        return;
    }
    if (token.text[0] == '[') {
        read_entry_item(t, f, &name, stream, cursor);
        return;
    }
    var_node *v = find_var(&name);
    if (!v) {
        error(err_undefined, name.text);
        return;
    }
    if (v->role == parameter && !find_entry(t, name.text)) return;  // a caller's: its storage will not last
    insert_and_update(t, name.text, linked_scalar, &v->value, nullptr);
    v->role = v->role == plain_variable ? linked_variable : v->role;
}

// The parameter holds an array.
static bool holds_array(const name_node *formal)
{
    return is_array_mark(*static_cast<quolynode **>(formal->ptr));
}

static array *array_of_parameter(const name_node *formal)
{
    token_rec name;
    if (!holds_array(formal)) return nullptr;
    std::memcpy(name.text, formal->text, sizeof name.text);
    name.index = formal->index;
    return find_array_named(&name);
}

static void insert_parameter(link_table *t, func_node *f, name_node *p)
{
    char key[token_room];
    entry_link *link;
    p->chain = nullptr;
    insert_and_update(t, p->text, linked_scalar, p->ptr, &p->chain);
    if (!holds_array(p)) return;
    array_key(p->text, key);
    new_link(&f->links, &link);
    link->formal = p;
    insert_and_update(t, key, linked_array, link, nullptr);
}

// The table of f's parameters and of the list behind Compile, in hand; the token behind the list is then in
// hand.
static void read_and_link(link_table *t, func_node *f, input_stream **stream, name_node **cursor)
{
    t->count = 0;
    for (name_node *p = f->params; p; p = p->next) insert_parameter(t, f, p);
    scanner(stream, &token, cursor);
    if (token.text[0] != '(') return;
    do {
        scanner(stream, &token, cursor);
        read_item(t, f, stream, cursor);
    } while (token.text[0] == ',');
    expect_and_pass(')', err_compile_end, stream, cursor);
}

// The body ----------------------------------------------------------------------------------------------

// *key = the name with the digits, or the one variable, in its brackets. Declines (0) when something else
// stands there.
static int entry_key(const name_node *name, char *key)
{
    std::memcpy(key, name->text, token_room);
    const name_node *at = name->next;
    int fits = append_to_key(key, "[");
    at = at->next;
    if (at && is_lower(at->text[0])) {
        return append_to_key(key, at->text) && at->next && at->next->text[0] == ']' &&
               append_to_key(key, "]");
    }
    for (; fits && at && is_digit(at->text[0]); at = at->next) fits = append_to_key(key, at->text);
    return fits && at && at->text[0] == ']' && append_to_key(key, "]");
}

// What the name in the list stands for; null when it is not linked.
static link_entry *entry_of_token(link_table *t, const name_node *name)
{
    char key[token_room];
    if (!name->next || name->next->text[0] != '[') return find_entry(t, name->text);
    link_entry *e = entry_key(name, key) ? find_entry(t, key) : nullptr;
    if (e) return e;
    array_key(name->text, key);
    return find_entry(t, key);
}

static void do_tok_list(link_table *t, name_node *list)
{
    for (; list; list = list->next) {
        if (!is_lower(list->text[0]) || list->linked) continue;
        link_entry *e = entry_of_token(t, list);
        if (!e) continue;
        list->linked = 1;
        list->kind = e->kind;
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

// Calls -------------------------------------------------------------------------------------------------

// The tokens of each parameter read the slot, or the array, that the call has bound.
static void refresh_links(func_node *f)
{
    for (name_node *p = f->params; p; p = p->next) {
        for (name_node *one = p->chain; one; one = one->chain) one->ptr = p->ptr;
    }
    for (entry_link *link = f->links; link; link = link->next) {
        if (link->formal) link_to_array(link, array_of_parameter(link->formal));
    }
}

// A parameter stands for a sparse array.
static const name_node *sparse_parameter(const func_node *f)
{
    for (const name_node *p = f->params; p; p = p->next) {
        const array *a = array_of_parameter(p);
        if (a && a->arr_sparse) return p;
    }
    return nullptr;
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
    if (f->linked) refresh_links(f);  // the statements behind may run even after an error
    const form_node *here = present_form(f);
    if (!here || (f->linked && here->next != f->linked_at)) {
        error(err_compile_not_found, token.text);
        return;
    }
    if (const name_node *sparse = sparse_parameter(f)) {
        error(err_compile_sparse, sparse->text);
        return;
    }
    if (!f->linked) {
        link_table t;
        read_and_link(&t, f, stream, cursor);
        do_form(&t, here->next);
        f->linked_at = here->next;
        f->linked = 1;
        refresh_links(f);
    }
    if (f->linked_at) eval_form(stream, f->linked_at, n);
    set_token(&token, endlist);
    exit_flag = 1;
}

}  // namespace kelmar
