// session/cancel.cpp -- the statement @ : deletion of names.
//
// Each item of the list is told by its first token. Deleting takes the newest record of a name, so an older
// one of the same name becomes visible again.
#include "session/cancel.h"
#include "session/arr_stored.h"
#include "session/names.h"
#include "session/report.h"

namespace kelmar {

// `[` is in hand: [a], [*a], [**].
static void cancel_arrays(input_stream **stream, name_node **cursor)
{
    scanner(stream, &token, cursor);
    const bool starred = token.text[0] == '*';
    if (starred) scanner(stream, &token, cursor);
    const bool all = starred && token.text[0] == '*';
    if (token.text[0] == '<' && !starred) {
        error(err_system_array_refused, token.text);
        return;
    }
    token_rec name = token;
    scanner(stream, &token, cursor);
    if (!expect(']', err_need_close_bracket)) return;
    if (!all && !remove_arrays(&name, starred)) error(err_no_such_array, name.text);
    if (all) remove_all_arrays();
}

// `<` is in hand: <Name> keeps the newest definition of a function, <[a]> the newest array of a name.
static void cancel_older(input_stream **stream, name_node **cursor)
{
    scanner(stream, &token, cursor);
    const bool array = token.text[0] == '[';
    if (array) scanner(stream, &token, cursor);
    token_rec name = token;
    if (array ? !is_lower(name.text[0]) : !is_upper(name.text[0])) {
        error(err_bad_cancel_angle, token.text);
        return;
    }
    scanner(stream, &token, cursor);
    if (array) {
        if (!expect_and_pass(']', err_need_close_bracket, stream, cursor)) return;
    }
    if (!expect('>', err_cancel_need_angle)) return;
    if (array ? !keep_newest_array(&name) : !keep_newest_function(&name)) {
        error(array ? err_no_such_array : err_no_such_function, name.text);
    }
}

// One item, whose first token is in hand.
static void single_rubout(input_stream **stream, name_node **cursor)
{
    const char c = token.text[0];
    if (is_lower(c)) {
        if (!remove_var(&token)) error(err_undefined, token.text);
    } else if (is_upper(c)) {
        if (!remove_function(&token)) error(err_no_such_function, token.text);
    } else if (c == '[') {
        cancel_arrays(stream, cursor);
    } else if (c == '<') {
        cancel_older(stream, cursor);
    } else {
        error(err_bad_cancel, token.text);
    }
}

void rubout(input_stream **stream, name_node **cursor)
{
    scanner(stream, &token, cursor);
    if (token.text[0] != '(') {
        single_rubout(stream, cursor);
        scanner(stream, &token, cursor);
        return;
    }
    do {
        scanner(stream, &token, cursor);
        single_rubout(stream, cursor);
        scanner(stream, &token, cursor);
    } while (token.text[0] == ',');
    expect_and_pass(')', err_bad_cancel_list, stream, cursor);
}

}  // namespace kelmar
