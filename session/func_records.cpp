// session/func_records.cpp -- records of stored statements.
//
// Chains are released by one loop: the chains inside a statement are put in front of what is still to be
// released, so that neither a long body nor a deep nesting needs stack. That matters because the report of a
// nesting that is too deep runs on the last pages of it.
#include "session/func_records.h"
#include "session/arr_params.h"
#include <cstdlib>
#include "session/entry_links.h"
#include "session/errors.h"
#include "numbers/heap.h"
#include "session/trace.h"

namespace kelmar {

// Records -----------------------------------------------------------------------------------------------

void newform(form_node **f)
{
    form_node *fresh = formhead;
    if (fresh) {
        formhead = fresh->next;
    } else {
        fresh = static_cast<form_node *>(heap_record(sizeof(form_node)));
    }
    *fresh = {};
    *f = fresh;
}

void newcond(cond_node **c)
{
    cond_node *fresh = condhead;
    if (fresh) {
        condhead = fresh->link;
    } else {
        fresh = static_cast<cond_node *>(heap_record(sizeof(cond_node)));
    }
    *fresh = {};
    *c = fresh;
}

void newfunc(func_node **f)
{
    func_node *fresh = func_garb;
    if (fresh) {
        func_garb = fresh->next;
    } else {
        fresh = static_cast<func_node *>(heap_record(sizeof(func_node)));
    }
    *fresh = {};
    *f = fresh;
}

static void release_form(form_node *f)
{
#ifdef KELMAR_MALLOC_RECORDS
    std::free(f);
#else
    f->next = formhead;
    formhead = f;
#endif
}

static void release_cond(cond_node *c)
{
#ifdef KELMAR_MALLOC_RECORDS
    std::free(c);
#else
    c->link = condhead;
    condhead = c;
#endif
}

static void free_comments(name_node **comments)
{
    while (*comments) {
        name_node *one = *comments;
        *comments = one->chain;
        freename(&one);
    }
}

// The chain `front` with `rest` behind it.
static form_node *put_in_front(form_node *front, form_node *rest)
{
    if (!front) return rest;
    form_node *last = front;
    while (last->next) last = last->next;
    last->next = rest;
    return front;
}

void free_form(form_node **f)
{
    form_node *rest = *f;
    *f = nullptr;
    while (rest) {
        form_node *one = rest;
        rest = one->next;
        if (cond_node *c = one->cond) {
            rest = put_in_front(c->then_part, put_in_front(c->else_part, rest));
            freename(&c->header);
            freename(&c->plain);
            release_cond(c);
        }
        free_comments(&one->comments);
        release_form(one);
    }
}

static void free_function(func_node *f)
{
    forget_in_trace(f);
    freename(&f->params);
    free_form(&f->body);
    free_links(&f->links);
#ifdef KELMAR_MALLOC_RECORDS
    std::free(f);
#else
    f->next = func_garb;
    func_garb = f;
#endif
}

void retire_function(func_node *f)
{
    f->retired = 1;
    if (f->in_use == 0) free_function(f);
}

// What is given up with a computation -----------------------------------------------------------------------

void open_pending(pending *p)
{
    *p = {nullptr, nullptr, nullptr, pending_top};
    pending_top = p;
}

void close_pending(pending *p)
{
    pending_top = p->outer;
}

void release_pending(pending *until)
{
    while (pending_top != until) {
        pending *p = pending_top;
        pending_top = p->outer;
        freename(&p->names);
        free_form(&p->forms);
        if (p->function) free_function(p->function);
        last_attached = last_good_one = nullptr;
    }
}

void enter_call(call_frame *call, func_node *f)
{
    ++f->in_use;
    *call = {f, params_top, array_params, newest_call};
    newest_call = call;
}

void leave_call(call_frame *call)
{
    func_node *f = call->function;
    if (array_params != call->arrays) pop_array_arguments(call->arrays);
    pop_params(call->params);
    newest_call = call->outer;
    if (--f->in_use == 0 && f->retired) free_function(f);
}

void release_calls(call_frame *until)
{
    while (newest_call != until) leave_call(newest_call);
}

}  // namespace kelmar
