// session/func_define.cpp -- definitions of functions.
//
// A body is read by two routines that call each other: right_side reads statements up to a stop word,
// basic_form one statement, whose `if` or loop has bodies of its own. Token lists are the business of attach.
// What has been read hangs on a pending record, so that an error which cancels the definition releases it.
#include "session/func_define.h"
#include "session/builtins.h"
#include "session/errors.h"
#include "session/output.h"
#include "session/report.h"

namespace kelmar {

// One statement -----------------------------------------------------------------------------------------

static constexpr char else_or_fi[] = "elfi*";

static bool has_word(const char *word)
{
    return token_is(&token, word);
}

// The token in hand cannot stand here: end of input, `else` without `if`, a comment, or anything else.
static void report_stop(list_reader *r, const char *stop)
{
    if (input_is_cut(r)) {
        error(err_end_inside_definition, token.text);
    } else if (has_word("else") && std::strcmp(stop, "od") == 0) {
        error(err_stray_else, token.text);
    } else {
        error(token.text[0] == '{' ? err_stray_comment : err_bad_body_token, token.text);
    }
}

// Pass over the ";" in hand: at the terminal the line end goes with it.
static void pass_semicolon(list_reader *r)
{
    take_line_end(r);
    next_token(r);
}

// Where a statement should begin in a definition, a ";" is an empty one and makes no form.
static void pass_empty_statements(list_reader *r)
{
    while (!r->control && has_word(";") && !input_is_cut(r)) pass_semicolon(r);
}

static void read_comments(form_node *form, list_reader *r)
{
    name_node **end = &form->comments;
    while (token.text[0] == '{') {
        read_comment(r, end);
        end = &(*end)->chain;
        pass_empty_statements(r);
    }
}

// *header = the tokens of a header, up to the word `stop`, which is passed.
static void read_header(name_node **header, const char *stop, bool loop_head, list_reader *r)
{
    next_token(r);
    attach(r, stop, loop_head, header);
    if (!has_word(stop)) {
        report_stop(r, stop);
        return;
    }
    next_token(r);
}

static void read_if(cond_node *c, list_reader *r)
{
    read_header(&c->header, "then", false, r);
    right_side(&c->then_part, else_or_fi, r);
    if (has_word("else")) {
        next_token(r);
        right_side(&c->else_part, "fi", r);
    }
    next_token(r);
}

static void read_loop(cond_node *c, bool counted, list_reader *r)
{
    c->loop = 1;
    read_header(&c->header, "do", counted, r);
    right_side(&c->then_part, "od", r);
    next_token(r);
}

// The list "0", which an empty statement of a control statement stands for.
static void store_zero(name_node **list)
{
    newname(list);
    (*list)->text[0] = '0';
    newname(&(*list)->next);
    std::memcpy((*list)->next->text, endlist, sizeof endlist);
    (*list)->next->index = 0;
}

static void basic_form(form_node *form, const char *stop, list_reader *r)
{
    check_stack();
    newcond(&form->cond);
    cond_node *c = form->cond;
    read_comments(form, r);
    if (has_word(";") && r->control && !input_is_cut(r)) {
        store_zero(&c->plain);
    } else if (!at_stop(stop) && (has_word("else") || has_word("fi") || has_word("od"))) {
        error(err_stray_keyword, token.text);
    } else if (has_word("if")) {
        read_if(c, r);
    } else if (has_word("while") || has_word("for")) {
        read_loop(c, has_word("for"), r);
    } else {
        attach(r, stop, false, &c->plain);
    }
}

void spec_right_side(form_node **slot, const char *stop, list_reader *r)
{
    newform(slot);
    basic_form(*slot, stop, r);
}

// Statements ------------------------------------------------------------------------------------------------

void right_side(form_node **slot, const char *stop, list_reader *r)
{
    pass_empty_statements(r);
    for (;;) {
        spec_right_side(slot, stop, r);
        slot = &(*slot)->next;
        if (at_stop(stop)) return;
        if (!has_word(";") || input_is_cut(r)) {
            report_stop(r, stop);
            return;
        }
        pass_semicolon(r);
        pass_empty_statements(r);
        if (at_stop(stop)) return;
    }
}

// Definitions -----------------------------------------------------------------------------------------------

static bool is_listed(const name_node *params, const token_rec *name)
{
    for (; params; params = params->next) {
        if (std::memcmp(params->text, name->text, token_room) == 0) return true;
    }
    return false;
}

// *param = the formal parameter in hand.
static void read_parameter(name_node **param, const name_node *before, list_reader *r)
{
    const bool by_reference = token.text[0] == '^';
    if (by_reference) next_token(r);
    if (!is_lower(token.text[0])) {
        error(err_bad_parameter, token.text);
        return;
    }
    if (is_listed(before, &token)) {
        error(err_duplicate_parameter, token.text);
        return;
    }
    newname(param);
    std::memcpy((*param)->text, token.text, token_room);
    (*param)->index = hash(token.text, lower_buckets);
    (*param)->kind = by_reference;
    next_token(r);
}

// Pass `(` or a separator, and the line ends behind it.
static void pass_separators(list_reader *r)
{
    if (!has_word(";")) next_token(r);
    while (has_word(";") && !input_is_cut(r)) pass_semicolon(r);
}

// `(` is in hand: read the parameters and the "=" behind them.
static void read_parameters(func_node *f, list_reader *r)
{
    name_node **end = &f->params;
    do {
        pass_separators(r);
        read_parameter(end, f->params, r);
        end = &(*end)->next;
    } while (token.text[0] == ',' || (token.text[0] == ';' && !input_is_cut(r)));
    if (!expect(')', err_bad_parameter_list)) return;
    next_token(r);
    expect('=', err_need_equals_after_params);
}

// The "." is in hand: read the token behind it. In a file the end of the line counts as ";", so that the next
// line is not taken for a continuation.
static void pass_point(list_reader *r)
{
    if (!r->has_ahead && !*r->cursor && !tt_flag && line_is_over(*r->stream)) {
        set_token(&token, ";");
    } else {
        next_token(r);
    }
}

// The function's name is in hand.
static void read_definition(func_node *f, list_reader *r)
{
    std::memcpy(f->text, token.text, token_room);
    f->index = hash(token.text, upper_buckets);
    next_token(r);
    if (token.text[0] == '(') {
        read_parameters(f, r);
    } else if (token.text[0] != '=') {
        error(err_need_body, token.text);
    }
    next_token(r);
    right_side(&f->body, ".", r);
    pass_point(r);
}

void funcdef(input_stream **stream, name_node **cursor)
{
    list_reader r = {stream, cursor, {}, 0, 0};
    pending held;
    if (!is_upper(token.text[0])) {
        error(err_need_body, token.text);
        return;
    }
    ++func_def_count;
    current_func = token;
    last_good_one = last_attached = nullptr;
    semicount = 0;
    open_pending(&held);
    newfunc(&held.function);
    func_node *f = held.function;
    read_definition(f, &r);
    close_pending(&held);
    --func_def_count;
    f->next = func_store[f->index];
    func_store[f->index] = f;
    if (definitions < UINT16_MAX) ++definitions;
    new_funcs = 1;
    if (find_built_in(f->text) >= 0) {
        std::fprintf(Output, " *** Warning. %s is a built-in. Your definition can't be reached.\n", f->text);
    }
}

}  // namespace kelmar
