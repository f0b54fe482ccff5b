// session/arr_params.cpp -- arrays as arguments of user functions.
#include "session/arr_params.h"
#include "session/arr_access.h"
#include "session/arr_target.h"
#include "session/output.h"
#include "session/report.h"

namespace kelmar {

void read_array_argument(input_stream **stream, array_argument *arg, name_node **cursor)
{
    array_target t;
    *arg = {};
    scanner(stream, &token, cursor);
    if (token.text[0] == '<') {
        error(err_system_array_refused, token.text);
        return;
    }
    if (!begins_target()) {
        error(err_no_such_array, token.text);
        return;
    }
    if (!left_side(stream, &t, cursor)) return;
    if (!t.a) {
        error(t.slot >= 0 ? err_empty_slot : err_no_such_array, t.slot >= 0 ? "%" : t.name.text);
        return;
    }
    if (t.section) {  // on purpose: a section has no storage of its own that a parameter could share
        error(err_need_close_bracket, "[");
        return;
    }
    arg->target = t.a;
    arg->stamp = t.a->arr_time;
}

int push_array_argument(token_rec *name, const array_argument *arg)
{
    array *p;
    const array_name n = array_name_of(name);
    if (arg->target->arr_time != arg->stamp) {
        error(err_no_such_array, name->text);
        return 0;
    }
    push_array_param(&n, arg->target, &p);
    return 1;
}

void pop_array_arguments(array *mark)
{
    for (const array *p = array_params; p != mark; p = p->older) {
        const array *found = find_array(&p->arr_name);
        if (is_array_parameter(found)) continue;
        std::fputs("*** Warning. On function termination, found an array with the same name as an \n",
                   Output);
        std::fprintf(Output, "       array parameter, namely: %s\n", p->arr_name.text);
    }
    pop_array_params(mark);
}

}  // namespace kelmar
