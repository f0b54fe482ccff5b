// session/plain_calls.cpp -- calls of functions inside a walk over stored tokens.
//
// Whether a body can be walked is told once, at its first call; its tokens then know which parameter they
// name. Other names are looked up as ever: on the frames of the calls around, newest first, then among the
// variables. So a name has the value that it would have in a call of the evaluators.
#include "session/plain_calls.h"
#include "session/evaluator.h"
#include "session/func_records.h"
#include "session/plain_walk.h"
#include "session/report.h"

namespace kelmar {

static constexpr int deepest_call = 1000;  // calls inside each other; beyond: the evaluators
static constexpr int deepest_if = 30;
static constexpr std::int64_t most_credit = 100000;  // calls: some milliseconds

// default most_credit; calls that may yet be walked in vain; below 0: none is walked; reset: never
static std::int64_t credit = most_credit;

// Bodies ------------------------------------------------------------------------------------------------

// The number of the parameter of that name, counted from 1; 0: none.
static std::uint8_t param_number(const func_node *f, const name_node *name)
{
    std::uint8_t number = 1;
    for (const name_node *p = f->params; p; p = p->next, ++number) {
        if (std::memcmp(p->text, name->text, token_room) == 0) return number;
    }
    return 0;
}

// Tell the tokens of the list which parameters they are. False: it holds what cannot be walked.
static bool tell_params(const func_node *f, name_node *list)
{
    look_at(list);
    if (list->evaluated) return false;
    for (name_node *t = list; t; t = t->next) {
        if (t->text[0] == ':') return false;  // an assignment
        if (t->form == form_name) t->param = param_number(f, t);
    }
    return true;
}

static bool tell_body(const func_node *f, const form_node *form, int depth)
{
    if (depth > deepest_if) return false;
    for (; form; form = form->next) {
        const cond_node *c = form->cond;
        if (!c->header) {
            if (!tell_params(f, c->plain)) return false;
        } else if (c->loop || !tell_params(f, c->header) || !tell_body(f, c->then_part, depth + 1) ||
                   !tell_body(f, c->else_part, depth + 1)) {
            return false;
        }
    }
    return true;
}

[[gnu::noinline]] static void tell_walkable(func_node *f)
{
    int count = 0;
    f->walkable = -1;
    for (const name_node *p = f->params; p; p = p->next) {
        if (p->kind != 0 || ++count > plain_params) return;
    }
    f->param_count = count;
    if (tell_body(f, f->body, 0)) f->walkable = 1;
}

// Calls ---------------------------------------------------------------------------------------------------

// *v = the value of the statements; false when the walk declines.
static bool walk_body(const form_node *form, const plain_frame *frame, double *v)
{
    *v = 0.0;
    for (; form; form = form->next) {
        const cond_node *c = form->cond;
        if (!c->header) {
            const walked<double> value = walk_sum<double>(c->plain, 0, frame);
            if (!value.at || !is_end(value.at)) return false;
            *v = value.v;
            continue;
        }
        int holds;
        const name_node *const end = walk_condition<double>(c->header, frame, &holds);
        if (!end || !is_end(end)) return false;
        if (!walk_body(holds ? c->then_part : c->else_part, frame, v)) return false;
    }
    return true;
}

// The arguments behind the function's name go to the frame `here`. Returns the token behind them; null when
// the walk declines.
static const name_node *walk_arguments(const name_node *t, const plain_frame *frame, plain_frame *here)
{
    const int count = here->function->param_count;
    int given = 0;
    if (t->form == form_open) {
        t = t->next;
        while (t->text[0] != ')') {
            if (given == count) return nullptr;
            const walked<double> argument = frame ? walk_sum<double>(t, 0, frame)
                                                  : walk_sum<double>(t, 0, no_frame{});
            if (!argument.at) return nullptr;
            here->values[given++] = argument.v;
            t = argument.at;
            if (t->text[0] == ')') break;
            if (t->text[0] != ',' || given == count) return nullptr;
            t = t->next;
            if (t->text[0] == ')') return nullptr;
        }
        t = t->next;
    }
    while (given < count) here->values[given++] = 0.0;
    return t;
}

static bool has_poly_param(const func_node *f)
{
    for (const name_node *p = f->params; p; p = p->next) {
        if (its_a_polyname(p->text)) return true;
    }
    return false;
}

// A function can be called here and now: not so deep inside other calls, nor while credit is used up.
static inline bool may_call(func_node *f, int level)
{
    if (!f || interrupt_flag || level > deepest_call) return false;
    if (f->walkable < 0) {
        calls_walked |= call_refused;
        return false;
    }
    if (credit < 0) {
        ++credit;
        return false;
    }
    if (static_cast<char *>(__builtin_frame_address(0)) < stack_floor) return false;
    if (f->walkable == 0) tell_walkable(f);
    return f->walkable > 0 && !(number_polys > 0 && has_poly_param(f));
}

walked<double> walk_call(const name_node *t, const plain_frame *frame)
{
    const walked<double> nothing = {nullptr, 0.0};
#ifdef KELMAR_STORM
    return nothing;  // calls are where that build polls
#endif
    func_node *f = stored_func(t);
    const int level = frame ? frame->level + 1 : 1;
    if (!may_call(f, level)) return nothing;
    calls_walked += one_call;
    plain_frame here;
    here.function = f;
    here.outer = frame;
    here.level = level;
    const name_node *const behind = walk_arguments(t->next, frame, &here);
    double value;
    if (!behind || !walk_body(f->body, &here, &value)) return nothing;
    return {behind, value};
}

void settle_calls(name_node *begin, bool done)
{
    const std::int64_t calls = calls_walked / one_call;
    if (!done) {
        credit -= calls;
        if (calls_walked & call_refused) begin->refused = definitions;
        return;
    }
    credit += calls;
    if (credit > most_credit) credit = most_credit;
    exit_flag = leave_flag = cycle_flag = syst_dump = 0;
}

}  // namespace kelmar
