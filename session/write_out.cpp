// session/write_out.cpp -- the output statement.
//
// A value goes straight to its place, so that it shows while it is written. Only where a width is asked for
// it is put together first, because blanks stand in front of it: values stand at the right of their column,
// texts at the left.
#include "session/write_out.h"
#include "numbers/decimal.h"
#include "quoly/display.h"
#include "quoly/owned.h"
#include "session/arr_listing.h"
#include "session/evaluator.h"
#include "session/expr.h"
#include "session/factor.h"
#include "session/files.h"
#include "session/loop.h"
#include "session/output.h"
#include "session/report.h"
#include "session/scratch.h"
#include "session/switch_values.h"
#include "session/texts.h"

namespace kelmar {

// Places ------------------------------------------------------------------------------------------------

void put_text(output_place *place, const char *text, std::size_t n)
{
    for (std::FILE *out : place->out) {
        if (out) std::fwrite(text, 1, n, out);
    }
    place->col += static_cast<std::int32_t>(n);
}

static void put_blanks(output_place *place, std::int64_t n)
{
    for (; n > 0; --n) put_text(place, " ", 1);
}

static void put_line_end(output_place *place)
{
    put_text(place, "\n", 1);
    place->col = 0;
}

// Forms -------------------------------------------------------------------------------------------------

// The expression behind ":" is in hand: a number of columns.
static bool read_width(input_stream **stream, name_node **cursor, std::int32_t *width)
{
    quolynode *value = nullptr;
    std::int32_t saved = 0;
    own(&value);
    check_modular(&saved);
    old_expre(stream, &value, cursor);
    restore_modular(&saved);
    const bool good = value && quoly_to_word(value, width);
    disown();
    free_quoly(&value);
    if (!good) error(err_bad_output_list, token.text);
    return good;
}

bool read_item_form(input_stream **stream, name_node **cursor, item_form *form)
{
    while (token.text[0] == ':' && !token.text[1]) {
        scanner(stream, &token, cursor);
        if (token_is(&token, "char")) {
            form->as_char = 1;
            scanner(stream, &token, cursor);
        } else if (!read_width(stream, cursor, &form->width)) {
            return false;
        }
    }
    return true;
}

// Items -------------------------------------------------------------------------------------------------

static void write_in_width(output_place *place, const value_form *form, const quolynode *q,
                           std::int32_t width)
{
    std::int32_t col = 0;
    std::FILE *const scratch = open_scratch();
    if (!scratch) return;
    quoly_display(scratch, form, q, &col);
    std::size_t length;
    const char *text = scratch_text(&length);
    put_blanks(place, std::int64_t{width} - static_cast<std::int64_t>(length));
    put_text(place, text, length);
}

static void write_value(output_place *place, const item_form *form, const quolynode *q)
{
    const value_form shown = {1, 0, 0, 0, form->as_char, nullptr};
    if (form->width > 0) {
        write_in_width(place, &shown, q, form->width);
        return;
    }
    const std::int32_t before = place->col;
    for (std::FILE *out : place->out) {
        place->col = before;
        if (out) quoly_display(out, &shown, q, &place->col);
    }
}

// The first token of a value is in hand. single: one factor, and no form behind it.
static bool value_item(input_stream **stream, name_node **cursor, output_place *place, bool single)
{
    const std::int32_t groups = disp_size;
    item_form form = {0, 0};
    quolynode *value = nullptr;
    own(&value);
    if (token.text[0] == '^') scanner(stream, &token, cursor);
    if (single) {
        old_fact(stream, &value, cursor);
    } else {
        old_expre(stream, &value, cursor);
    }
    const bool good = value && (single || read_item_form(stream, cursor, &form));
    if (good) write_value(place, &form, value);
    disown();
    free_quoly(&value);
    disp_size = groups;
    return good;
}

// Write the characters up to the closing quote, the opening one in hand.
static bool handle_quote(input_stream **stream, name_node **cursor, output_place *place)
{
    char text[text_room];
    int length = 0;
    item_form form = {0, 0};
    if (!read_quoted_text(stream, cursor, text, &length)) return false;
    scanner(stream, &token, cursor);
    if (!read_item_form(stream, cursor, &form)) return false;
    put_text(place, text, static_cast<std::size_t>(length));
    put_blanks(place, std::int64_t{form.width} - length);
    return true;
}

static bool refuse_item()
{
    error(err_need_output_item, token.text);
    return false;
}

// One item of a list, whose first token is in hand; the token behind it is then in hand.
static bool list_item(input_stream **stream, name_node **cursor, output_place *place)
{
    const char c = token.text[0];
    if (c == ';' || c == ')' || token_is(&token, endlist)) return refuse_item();
    if (c == '\'') return handle_quote(stream, cursor, place);
    if (c != '[') return value_item(stream, cursor, place, false);
    write_array_item(stream, cursor, place, false);
    return true;
}

// Statements --------------------------------------------------------------------------------------------

// & is in hand, at the beginning of a list: the items go to the output file.
static bool handle_andsign(input_stream **stream, name_node **cursor, bool to_terminal, output_place *place)
{
    scanner(stream, &token, cursor);
    if (!token_is(&token, "o")) {
        error(err_bad_output_letter, token.text);
        return false;
    }
    if (!outpuf) {
        error(err_no_output_file, token.text);
        return false;
    }
    place->out[0] = outpuf;
    place->out[1] = to_terminal ? Output : nullptr;
    scanner(stream, &token, cursor);
    return true;
}

// ( is in hand; the token behind ) is left in hand.
static void write_list(input_stream **stream, name_node **cursor, output_place *place, bool both)
{
    scanner(stream, &token, cursor);
    bool more = true;
    if (token.text[0] == '&') {
        if (!handle_andsign(stream, cursor, both, place)) return;
        more = token.text[0] == ',';
        if (more) scanner(stream, &token, cursor);
    }
    while (more) {
        if (!list_item(stream, cursor, place)) return;
        more = token.text[0] == ',';
        if (more) scanner(stream, &token, cursor);
    }
    expect_and_pass(')', err_bad_output_list, stream, cursor);
}

// One item without a list, the first token in hand: its line ends behind it.
static void write_single(input_stream **stream, name_node **cursor, output_place *place)
{
    bool good = true;
    if (token.text[0] == '\'') {
        good = handle_quote(stream, cursor, place);
    } else if (token.text[0] == '[') {
        write_array_item(stream, cursor, place, true);
        return;
    } else if (!ends_statement(&token)) {
        good = value_item(stream, cursor, place, true);
    }
    if (good) put_line_end(place);
}

void write_out(input_stream **stream, quolynode **result, name_node **cursor)
{
    scanner(stream, &token, cursor);
    const bool both = token.text[0] == '!';
    if (both) scanner(stream, &token, cursor);
    output_place place = {{Output, both ? outpuf : nullptr}, 0};
    quoly_set(0, result);
    if (token.text[0] == '(') {
        write_list(stream, cursor, &place, both);
    } else {
        write_single(stream, cursor, &place);
    }
    if (place.out[0] == outpuf || place.out[1] == outpuf) {
        if (outpuf) flush_output_file();
    }
    flush_output();
}

}  // namespace kelmar
