#pragma once
// session/func_records.h -- the records of stored statements, and what must be released when one is given up.
//
// A function's body is a chain of forms, one a statement. A statement is a cond record: a plain statement has
// its tokens, an `if` or a loop has a header and chains of its own. Token lists end in the record endlist.
//
// A formal parameter is a name record: next is the next parameter, kind is 1 when it is by reference, chain
// is the first token of a linked body that names it, and ptr the slot that these tokens read.

#include "session/names.h"

namespace kelmar {

struct cond_node {
    name_node *header;     // the condition of if or while; the head of a for loop, behind ":"; null: plain
    std::int32_t loop;     // 0 for if, 1 for while and for
    form_node *then_part;  // the body
    form_node *else_part;  // null when there is none
    name_node *plain;      // the tokens, when header is null
    cond_node *link;       // free list
};
static_assert(std::is_trivial_v<cond_node>);

struct form_node {
    cond_node *cond;
    name_node *comments;  // those in front of it, for listings: a chain each, the heads linked through chain
    form_node *next;      // the next statement; free list
};
static_assert(std::is_trivial_v<form_node>);

// default null; free records; new*, free_*; reset: never
inline form_node *formhead = nullptr;
inline cond_node *condhead = nullptr;
inline func_node *func_garb = nullptr;

void newform(form_node **f);  // *f filled: a record with all fields null
void newcond(cond_node **c);
void newfunc(func_node **f);

// Release the whole chain with all that hangs on it; *f becomes null. Needs no stack, however deep the
// nesting.
void free_form(form_node **f);

// Release a function that stands in no bucket, now or when its last active call ends.
void retire_function(func_node *f);

// What is given up with a computation -----------------------------------------------------------------------

// A definition or an expression that is being read. It stands on the frame of its reader, which links it in;
// an error that abandons the reader releases what it holds.
struct pending {
    name_node *names;     // a list of tokens
    form_node *forms;     // a chain of statements
    func_node *function;  // with its parameters and body
    pending *outer;
};

// default null; the innermost; open_pending, close_pending; reset: unwind
inline pending *pending_top = nullptr;

void open_pending(pending *p);   // *p filled, and linked in
void close_pending(pending *p);  // unlinked; what it holds stays its reader's

// Release all that was opened since pending_top was `until`.
void release_pending(pending *until);

// An active call, on the frame of its evaluate.
struct call_frame {
    func_node *function;
    var_node *params;  // params_top before its parameters were bound
    array *arrays;     // array_params then
    call_frame *outer;
};

// default null; the innermost; evaluate; reset: unwind
inline call_frame *newest_call = nullptr;

void enter_call(call_frame *call, func_node *f);
void leave_call(call_frame *call);

// Leave all calls entered since newest_call was `until`.
void release_calls(call_frame *until);

}  // namespace kelmar
