// session/plain_run.cpp -- stored statements and expressions of plain numbers.
//
// The walk has a value, or declines; only then is anything put where the evaluators keep it.
#include "session/plain_run.h"
#include "matrix/pins.h"
#include "session/evaluator.h"
#include "session/plain_calls.h"
#include "session/plain_walk.h"
#include "session/report.h"
#include "session/trace.h"

namespace kelmar {

// Statements ------------------------------------------------------------------------------------------------

static inline void put_number(double v, quolynode **n)
{
    number_result(n)->real = v;
}

// The new value behind :+ or :- , whose sign the token is: what is added is one factor, 1 when there is none.
template <class V> static walked<V> walk_increment(const name_node *t, const quolynode *target)
{
    const walked<V> nothing = {nullptr, 0};
    walked<V> amount = {t->next, 1};
    V old;
    if ((t->form != form_plus && t->form != form_minus) || !number_of(target, &old)) return nothing;
    if (!is_end(t->next)) {
        const char c = t->next->text[0];
        if (!is_digit(c) && !is_lower(c) && c != '(') return nothing;
        amount = walk_factor<V>(t->next, 0, no_frame{});
    }
    return {amount.at, sum(old, t->form == form_minus ? negative(amount.v) : amount.v)};
}

static inline void put_in_hand(const name_node *t)
{
    copy_token(&token, t);
    currentchar = t->next;
}

// Run an assignment, or take the value of a sum.
template <class V> static inline bool run_statement(name_node *list, quolynode **n)
{
    quolynode **target = nullptr;
    bool shown = true;
    walked<V> value;
    if (list->form == form_name && list->next->text[0] == ':') {
        const name_node *const sign = list->next->next;
        target = stored_slot(list);
        if (!target || !(*target)->is_num || (*target)->den) return false;
        shown = sign->text[0] != '=' && !integerflag;
        value = sign->text[0] == '=' ? walk_sum<V>(sign->next, 0, no_frame{})
                                     : walk_increment<V>(sign, *target);
    } else {
        value = walk_sum<V>(list, 0, no_frame{});
    }
    if (!value.at || !is_end(value.at)) return false;
    if (target) (*target)->num->real = value.v;
    put_number(shown ? value.v : 0, n);
    startexpr = list;
    uninit = 0;
    put_in_hand(value.at);
    return true;
}

// A waiting interrupt is answered by the evaluators, and what is pinned is theirs to set aside.
static inline bool may_run()
{
    return flotemode && !interrupt_flag && !values_pinned;
}

int run_plain_statement(name_node *list, quolynode **n)
{
    if (!may_run()) return 0;
    look_at(list);
    if (list->evaluated || is_refused(list)) return 0;
    begin_walk();
    if (!integerflag) return end_walk(list, run_statement<double>(list, n));
    return !modularmode && end_walk(list, run_statement<std::int32_t>(list, n));
}

int plain_header(name_node *header, bool *holds)
{
    int result;
    if (!may_run()) return 0;
    look_at(header);
    if (header->evaluated || is_refused(header) || (integerflag && modularmode)) return 0;
    begin_walk();
    const name_node *const end = integerflag ? walk_condition<std::int32_t>(header, no_frame{}, &result)
                                             : walk_condition<double>(header, no_frame{}, &result);
    if (!end_walk(header, end && is_end(end))) return 0;
    startexpr = header;
    put_in_hand(end);
    *holds = result != 0;
    return 1;
}

// Inside expressions ----------------------------------------------------------------------------------------

// The token in hand is the one at the cursor, in a list that can be walked.
static inline bool may_walk(name_node *t)
{
    if (!t || !may_run() || std::memcmp(t->text, token.text, sizeof token.text) != 0) return false;
    look_at(t);
    return !is_refused(t);
}

static inline void go_on_at(const name_node *t, name_node **cursor)
{
    *cursor = const_cast<name_node *>(t);
    put_in_hand(t);
}

int plain_comparison(name_node **cursor, int *result)
{
    if (!may_walk(*cursor) || (integerflag && modularmode)) return 0;
    begin_walk();
    const name_node *const behind = integerflag ? walk_comparison<std::int32_t>(*cursor, no_frame{}, result)
                                                : walk_comparison<double>(*cursor, no_frame{}, result);
    if (!end_walk(*cursor, behind != nullptr)) return 0;
    go_on_at(behind, cursor);
    return 1;
}

int read_plain_sum(name_node **cursor, quolynode **n)
{
    if (!may_walk(*cursor)) return 0;
    begin_walk();
    const walked<double> value = walk_sum<double>(*cursor, 0, no_frame{});
    if (!end_walk(*cursor, value.at != nullptr)) return 0;
    put_number(value.v, n);
    go_on_at(value.at, cursor);
    return 1;
}

}  // namespace kelmar
