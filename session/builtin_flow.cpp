// session/builtin_flow.cpp -- built-ins of definitions and control flow.
//
// The integer evaluator reads stored lists only, so Int stores its bracket first when it is typed at the
// terminal.
#include "session/builtin_flow.h"
#include "session/builtin_args.h"
#include "session/evaluator.h"
#include "session/expr.h"
#include "session/func_define.h"
#include "session/int_expr.h"
#include "session/loops.h"
#include "session/output.h"
#include "session/report.h"
#include "session/stored_expr.h"

namespace kelmar {

void builtin_func_definition(input_stream **stream, quolynode **n, name_node **cursor)
{
    quoly_set(0, n);
    scanner(stream, &token, cursor);
    funcdef(stream, cursor);
}

// Scan `(` behind the name.
static bool stop_at_open(input_stream **stream, name_node **cursor)
{
    scanner(stream, &token, cursor);
    return expect('(', err_need_open_paren);
}

// `(` is in hand, in a stored list.
static void read_integer(input_stream **stream, quolynode **n, name_node **cursor)
{
    std::int32_t value;
    scanner(stream, &token, cursor);
    old_iexpre(stream, &value, cursor);
    quoly_set(value, n);
}

void builtin_return(input_stream **stream, quolynode **n, name_node **cursor)
{
    quoly_set(0, n);
    if (!stop_at_open(stream, cursor)) return;
    if (integerflag && *cursor) {
        read_integer(stream, n, cursor);
    } else {
        scanner(stream, &token, cursor);
        old_expre(stream, n, cursor);
    }
    close_argument(stream, cursor);
    if (*cursor) {
        exit_flag = 1;
    } else {
        std::fputs(" *** Warning. 'Return' ignored.\n", Output);
    }
}

void builtin_int(input_stream **stream, quolynode **n, name_node **cursor)
{
    quoly_set(0, n);
    if (!stop_at_open(stream, cursor)) return;
    if (*cursor) {
        read_integer(stream, n, cursor);
        close_argument(stream, cursor);
        return;
    }
    list_reader reader = {stream, cursor, {}, 0, 0};
    stored_expr stored;
    open_stored(&reader, obtain_expression, &stored);
    read_integer(stream, n, &stored.at);
    close_argument(stream, &stored.at);
    close_stored(&stored);
}

void builtin_sigma(input_stream **stream, quolynode **n, name_node **cursor)
{
    scanner(stream, &token, cursor);
    sum_mult_up(stream, false, n, cursor);
}

void builtin_prod(input_stream **stream, quolynode **n, name_node **cursor)
{
    scanner(stream, &token, cursor);
    sum_mult_up(stream, true, n, cursor);
}

}  // namespace kelmar
