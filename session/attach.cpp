// session/attach.cpp -- adjoining and cancelling polynomial variables.
//
// First the whole command is read, and every error found; then the table of variables and all stored values
// change in one stretch, in which nothing can fail. Stored are the scalars, shadowed ones too, the last
// value, and what the evaluators of the running statement own.
#include "session/attach.h"
#include "matrix/pins.h"
#include "poly/attach.h"
#include "poly/variables.h"
#include "quoly/normal_form.h"
#include "quoly/owned.h"
#include "quoly/quoly.h"
#include "session/arr_stored.h"
#include "session/arr_system.h"
#include "session/errors.h"
#include "session/evaluator.h"
#include "session/names.h"
#include "session/output.h"
#include "session/prompt.h"
#include "session/report.h"
#include "session/seams.h"
#include "session/stored_values.h"
#include "session/texts.h"

namespace kelmar {

static constexpr std::int32_t told_cases = 40;  // vanished denominators that are reported one by one

// What the command asks for.
struct attach_request {
    token_rec name;
    bool cancel;
    bool lowest;    // > was seen
    bool relation;  // a modding polynomial follows; = is in hand
};

// Stored values ------------------------------------------------------------------------------------------

static void wrap_value(quolynode **slot)
{
    quolynode *q = *slot;
    if (!q || q->is_num) return;
    add_pad(&q->top, 1);
    if (q->den) add_pad(&q->den, 1);
}

// default 0; the level that is being cancelled, and values whose denominator vanished; cancel_variable
static std::int32_t going_level = 0;
static std::int32_t vanished = 0;

static void set_one(quolynode **slot)
{
    quolynode *q = *slot;
    if (!q || q->is_num) return;
    poly_at_one(&q->top, going_level);
    if (q->den) poly_at_one(&q->den, going_level);
    if (q->den && poly_iszero(q->den)) {
        if (++vanished <= told_cases) {
            std::fputs("Warning. A quoly denominator has become 0.  That variable has been set to 1.\n",
                       Output);
        }
        quoly_set(1, slot);
        return;
    }
    polynum_to_quoly(slot);
}

// Without the variable, numerator and denominator may have a common divisor.
static void tidy_value(quolynode **slot)
{
    if (*slot && !(*slot)->is_num && (*slot)->den) check_quoly(slot, 1);
}

static void tidy_all_values()
{
    ++interrupts_held;
    for_each_stored(tidy_value);
    for_each_array_entry(tidy_value);
    --interrupts_held;
}

// Adjoining and cancelling -------------------------------------------------------------------------------

static void adjoin(const attach_request *r)
{
    if (its_a_polyname(r->name.text)) {
        error(err_poly_exists, r->name.text);
        return;
    }
    if (r->lowest && field_depth > 0) {
        error(err_below_field, r->name.text);
        return;
    }
    if (number_polys >= variable_limit) {
        error(err_too_many_polys, r->name.text);
        return;
    }
    insert_poly_name(r->name.text, r->name.index, r->lowest);
    if (field_depth > 0) ++field_depth;
    if (r->lowest) return;
    for_each_stored(wrap_value);
    arrays_on_adjoin();
}

static void cancel_variable(const attach_request *r)
{
    if (!is_poly_name(r->name.text, &going_level)) {
        error(err_no_such_poly, r->name.text);
        return;
    }
    if (r->lowest) std::fputs("Warning.  '>' ignored.\n", Output);
    vanished = 0;
    for_each_stored(set_one);
    arrays_on_cancel(going_level);
    if (vanished > told_cases) {
        std::fprintf(Output, "... There were %d more such cases.\n", static_cast<int>(vanished - told_cases));
    }
    delete_poly_name(going_level);
    if (field_depth > going_level) --field_depth;
    tidy_all_values();
    std::fprintf(Output, "%s now cancelled.\n", r->name.text);
}

// The command --------------------------------------------------------------------------------------------

// The text is a name: a small letter, then letters, digits and _. Declines (0) after error 124.
static bool check_name(const char *text)
{
    bool good = is_lower(text[0]);
    for (const char *c = text; *c; ++c) good = good && (is_letter(*c) || is_digit(*c) || *c == '_');
    good = good && std::strlen(text) < static_cast<std::size_t>(polyvar_room);
    if (!good) error(err_bad_poly_name, text);
    return good;
}

// The [ of an array is in hand; its ] is left in hand. The name is the array's text.
static bool read_name_from_array(input_stream **stream, name_node **cursor, token_rec *name)
{
    char text[token_room];
    if (!read_array_text(stream, cursor, text, token_room)) return false;
    set_token(name, text);
    return true;
}

// The name, or the [ of an array, is in hand; the token behind is left in hand.
static bool read_name(input_stream **stream, name_node **cursor, token_rec *name)
{
    if (token.text[0] == '[') {
        if (!read_name_from_array(stream, cursor, name)) return false;
    } else {
        *name = token;
    }
    if (!check_name(name->text)) return false;
    scanner(stream, &token, cursor);
    return true;
}

// The token behind the name is in hand: `)`, or a comma and P = .
static bool read_tail(input_stream **stream, name_node **cursor, attach_request *r)
{
    if (token.text[0] == ')') return true;
    if (!expect_and_pass(',', err_need_close_switch, stream, cursor)) return false;
    int wrong = 0;
    if (!token_is(&token, "P")) {
        wrong = err_need_relation;
    } else if (r->cancel) {
        wrong = err_cancel_with_relation;
    } else if (r->lowest) {
        wrong = err_lowest_with_relation;
    } else {
        scanner(stream, &token, cursor);
        if (token.text[0] != '=') wrong = err_need_equals;
    }
    r->relation = !wrong;
    if (wrong) error(wrong, token.text);
    return r->relation;
}

// The = or > of &(J = x) is in hand.
static bool read_request(input_stream **stream, name_node **cursor, attach_request *r)
{
    r->lowest = token.text[0] == '>';
    scanner(stream, &token, cursor);
    if (token.text[0] == '>') {
        r->lowest = true;
        scanner(stream, &token, cursor);
    }
    if (r->lowest && field_depth > 0) {
        error(err_below_field, token.text);
        return false;
    }
    if (token.text[0] == '-') {
        r->cancel = true;
        scanner(stream, &token, cursor);
    }
    return read_name(stream, cursor, &r->name) && read_tail(stream, cursor, r);
}

// Ask for the name. Its line end stays unread, and is the end of the statement.
static bool ask_request(attach_request *r)
{
    asking a;
    std::fputs(" Enter variable name:\n", Output);
    begin_answer(&a);
    await_answer();
    scanner(&Input, &token, &zilch);
    bool good = token.text[0] != '>';
    if (!good) error(err_prompted_lowest, token.text);
    if (good && token.text[0] == '-') {
        r->cancel = true;
        scanner(&Input, &token, &zilch);
    }
    good = good && read_name(&Input, &zilch, &r->name);
    if (good && token.text[0] != ';') {
        error(err_need_close_switch, token.text);
        good = false;
    }
    end_answer(&a);
    return good;
}

void attach_poly(input_stream **stream, name_node **cursor, bool asks)
{
    attach_request r = {};
    if (!(asks ? ask_request(&r) : read_request(stream, cursor, &r))) return;
    if (values_pinned > 0) {  // a computation waits that has values on its frames
        error(err_not_at_level, r.name.text);
        return;
    }
    if (r.cancel) {
        cancel_variable(&r);
        return;
    }
    adjoin(&r);
    if (r.relation) set_mod_out_command(stream, cursor, false);
}

}  // namespace kelmar
