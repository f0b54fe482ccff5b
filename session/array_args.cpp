// session/array_args.cpp -- how built-in functions read arrays as arguments.
#include "session/array_args.h"
#include "session/arr_target.h"
#include "session/builtin_args.h"
#include "session/report.h"

namespace kelmar {

static void pass_star(input_stream **stream, star_use star, name_node **cursor)
{
    if (token.text[0] != '*') return;
    if (star == star_ignored) {
        tell(" *** Warning. leading * in argument list makes no sense here and was ignored\n");
    }
    scanner(stream, &token, cursor);
}

array *read_stored_array(input_stream **stream, star_use star, int section, name_node **cursor)
{
    array_target t;
    pass_star(stream, star, cursor);
    if (!expect_and_pass('[', err_need_open_bracket, stream, cursor)) return nullptr;
    if (!begins_target()) {
        error(err_need_array_name, token.text);
        return nullptr;
    }
    if (!left_side(stream, &t, cursor)) return nullptr;
    if (!t.a) {
        error(t.slot >= 0 ? err_empty_slot : err_no_such_array, t.slot >= 0 ? "%" : t.name.text);
    } else if (t.section) {
        error(section, t.slot >= 0 ? "%" : t.name.text);
        t.a = nullptr;
    }
    return t.a;
}

array *read_command(input_stream **stream, star_use star, int section, name_node **cursor)
{
    if (!open_argument(stream, cursor, err_need_open_paren)) return nullptr;
    return read_stored_array(stream, star, section, cursor);
}

array *read_one_array(input_stream **stream, name_node **cursor)
{
    scanner(stream, &token, cursor);
    const bool brackets = token.text[0] == '(';
    if (brackets) scanner(stream, &token, cursor);
    array *a = read_stored_array(stream, star_ignored, err_need_array_name, cursor);
    if (a && brackets) close_argument(stream, cursor);
    return a;
}

}  // namespace kelmar
