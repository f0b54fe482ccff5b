// session/func_run.cpp -- running stored statements.
//
// A statement is its token list, replayed through the parser with a cursor. What a call must put back stands
// on its frame. After an error that pushed a level the statement it stood in is abandoned and the next one
// runs: a call sets the point for that once, for all statements of its body.
#include "session/func_run.h"
#include "session/assign.h"
#include "session/conditions.h"
#include "session/errors.h"
#include "session/evaluator.h"
#include "session/func_define.h"
#include "session/func_link.h"
#include "session/func_params.h"
#include "session/int_expr.h"
#include "session/levels.h"
#include "session/loops.h"
#include "session/plain_run.h"
#include "session/report.h"
#include "session/statement.h"
#include "session/trace.h"
#include "session/unwind.h"

namespace kelmar {

// One statement -----------------------------------------------------------------------------------------

void begin_list(name_node *list)
{
    copy_token(&token, list);
    currentchar = list->next;
    startexpr = list;
}

// The words that are statements of their own in a stored list.
static bool special_statement(input_stream **stream, quolynode **n, name_node **cursor)
{
    if (token_is(&token, "Compile")) {
        compile(n, stream, cursor);
        return true;
    }
    if (!token_is(&token, "Integer")) return false;
    integerflag = 1;
    quoly_set(0, n);
    scanner(stream, &token, cursor);
    return true;
}

// Under Integer, statements of values go through the machine integers.
static bool is_integer_statement()
{
    const char c = token.text[0];
    return is_lower(c) || is_digit(c) || c == '(' || c == '-' || c == '|' || c == '_' || is_upper(c);
}

static void plain_statement(input_stream **stream, name_node *list, quolynode **n)
{
    if (run_plain_statement(list, n)) return;
    name_node *at = list;
    free_quoly(n);
    begin_list(list);
    reset_statement();
    poll_interrupt();
    const char c = token.text[0];
    if ((c == 'C' || c == 'I') && special_statement(stream, n, &at)) {
        // it has run
    } else if (integerflag && is_integer_statement()) {
        integer_statement(stream, n, &at);
    } else if (!assign_variable(stream, n, &at)) {
        parse(stream, n, &at);
    }
    if (token.text[0] != endlist[0] && token.text[0] != ';') error(err_bad_statement_end, token.text);
}

static void if_statement(input_stream **stream, const cond_node *cond, quolynode **n)
{
    poll_interrupt();
    eval_form(stream, header_holds(stream, cond->header) ? cond->then_part : cond->else_part, n);
}

void getval(input_stream **stream, cond_node *cond, quolynode **n)
{
    prev_expr = startexpr;
    if (!cond->header) {
        plain_statement(stream, cond->plain, n);
        return;
    }
    check_stack();
    free_quoly(n);
    if (!cond->loop) {
        if_statement(stream, cond, n);
    } else if (cond->header->text[0] == ':') {
        for_statement(stream, cond, n);
    } else {
        while_statement(stream, cond, n);
    }
}

// Sequences -----------------------------------------------------------------------------------------------

// As eval_form; a statement in which an error pushed a level, that was then left, is abandoned with value 0.
static void guarded_sequence(input_stream **stream, form_node *form, quolynode **n)
{
    abandon_point here;
    form_node *volatile at = form;
    set_abandon_point(&here);
    if (sigsetjmp(here.buf, 0)) {
        quoly_set(0, n);
        exit_flag = leave_flag = cycle_flag = 0;
        at = at->next;
    }
    for (; at; at = at->next) {
        getval(stream, at->cond, n);
        if (leaving()) break;
    }
    drop_abandon_point(&here);
}

void eval_form(input_stream **stream, form_node *form, quolynode **n)
{
    if (errorpush) {
        guarded_sequence(stream, form, n);
        return;
    }
    if (!form) free_quoly(n);
    for (; form; form = form->next) {
        getval(stream, form->cond, n);
        if (leaving()) return;
    }
}

// Calls ---------------------------------------------------------------------------------------------------

// What a call puts back.
struct caller_state {
    std::int32_t integer;
    name_node *started, *previous, *scanned;
};

static void begin_body(caller_state *kept)
{
    *kept = {integerflag, startexpr, prev_expr, currentchar};
    uninit = integerflag = 0;
    startexpr = prev_expr = nullptr;
    exit_flag = leave_flag = cycle_flag = 0;
}

static void end_body(const caller_state *kept)
{
    exit_flag = leave_flag = cycle_flag = syst_dump = 0;
    integerflag = kept->integer;
    startexpr = kept->started;
    prev_expr = kept->previous;
    currentchar = kept->scanned;
}

static void run_body(input_stream **stream, func_node *f, quolynode **n)
{
    caller_state kept;
    begin_body(&kept);
    free_quoly(n);
    guarded_sequence(stream, f->body, n);
    if (!*n) quoly_set(0, n);
    end_body(&kept);
}

static void call(input_stream **stream, func_node *f, quolynode **n, name_node **cursor)
{
    check_stack();
    call_frame here;
    enter_call(&here, f);
    token_rec after;
    const bool lends = setargs(stream, f, &after, cursor);
    if (lends) borrow();
    ++statcount;
    lastf = lastf->next;
    lastf->function = f;
    run_body(stream, f, n);
    lastf = lastf->prev;
    --statcount;
    const bool outer_call = f->linked && f->in_use > 1;
    leave_call(&here);  // may release a function that was cancelled
    if (outer_call) refresh_outer_links(f);
    if (lends) give_back();
    token = after;
}

void evaluate(input_stream **stream, token_rec *name, quolynode **n, name_node **cursor)
{
    if (func_node *f = find_func(name)) {
        call(stream, f, n, cursor);
        return;
    }
    quoly_set(0, n);
    error(err_unknown_function, name->text);
}

void evaluate_stored(input_stream **stream, quolynode **n, name_node **cursor)
{
    const name_node *const name = *cursor;
    next_token(stream, cursor);
    if (func_node *f = stored_func(name)) {
        call(stream, f, n, cursor);
        return;
    }
    quoly_set(0, n);
    error(err_unknown_function, name->text);
}

// Control statements of the terminal ------------------------------------------------------------------------

// Read the control statement whose first word is in hand, and make it sys_func.
static void read_control_statement(list_reader *r)
{
    pending held;
    ++func_def_count;
    set_token(&current_func, "<F");
    last_good_one = last_attached = nullptr;
    semicount = 0;
    open_pending(&held);
    newfunc(&held.function);
    set_token(&current_func, "<F");
    std::memcpy(held.function->text, current_func.text, token_room);
    spec_right_side(&held.function->body, ";", r);
    close_pending(&held);
    --func_def_count;
    if (sys_func) retire_function(sys_func);
    sys_func = held.function;
}

void rerun_control_statement(input_stream **stream, quolynode **n)
{
    const token_rec after = token;
    call_frame here;
    enter_call(&here, sys_func);
    run_body(stream, here.function, n);
    leave_call(&here);
    token = after;
}

void run_control_statement(token_rec *word, input_stream **stream, quolynode **n, name_node **cursor)
{
    list_reader r = {stream, cursor, token, 1, 1};
    token = *word;
    read_control_statement(&r);
    rerun_control_statement(stream, n);
}

}  // namespace kelmar
