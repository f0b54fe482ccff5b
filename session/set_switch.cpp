// session/set_switch.cpp -- the form &(x = v).
//
// The letter finds its row, and the kind of the row tells how the value is read: a number is an expression
// with true integers, a text stands in quotes, in an array or as one token, and a form of its own reads
// itself. Nothing changes before the closing parenthesis has been seen, so that an error leaves the switch
// as it was. The letter is looked at last: an unknown one is told only when all else was right.
#include "session/set_switch.h"
#include "quoly/owned.h"
#include "session/arr_data.h"
#include "session/errors.h"
#include "session/evaluator.h"
#include "session/expr.h"
#include "session/loop.h"
#include "session/report.h"
#include "session/switch_values.h"
#include "session/texts.h"

namespace kelmar {

static constexpr char random_code = '3';
static constexpr char columns_code = '4';

// Letters -----------------------------------------------------------------------------------------------

// The code that a letter of the second set stands for; other letters stand for themselves.
static char code_of_under(char letter)
{
    const switch_row *row = find_under(letter);
    return row && row->code ? row->code : letter;
}

// Read the letter, the ( in hand. 0 after error 114.
static char read_code(input_stream **stream, name_node **cursor)
{
    scanner(stream, &token, cursor);
    const bool second_set = token.text[0] == '_';
    if (second_set) scanner(stream, &token, cursor);
    if (token.text[1] && !token_is(&token, endlist)) {
        error(err_long_switch, token.text);
        return 0;
    }
    return second_set ? code_of_under(token.text[0]) : token.text[0];
}

// The = behind the letter is in hand, or the > of a polynomial variable.
static bool read_equals(input_stream **stream, name_node **cursor, char code)
{
    scanner(stream, &token, cursor);
    if (token.text[0] == '=' || (code == 'J' && token.text[0] == '>')) return true;
    error(err_need_equals, token.text);
    return false;
}

static bool at_closing_paren()
{
    return expect(')', err_need_close_switch);
}

// Texts -------------------------------------------------------------------------------------------------

// Append the token to the text of *length bytes. Declines (0) after error 209.
static bool append_token(char *text, int *length)
{
    const int more = static_cast<int>(std::strlen(token.text));
    if (*length + more >= text_room) {
        error(err_text_too_long, token.text);
        return false;
    }
    std::memcpy(text + *length, token.text, static_cast<std::size_t>(more) + 1);
    *length += more;
    return true;
}

// Read the text whose first token is in hand, and the token behind it. Declines (0) after an error.
static bool read_text(input_stream **stream, name_node **cursor, char *text)
{
    int length = 0;
    bool good;
    text[0] = 0;
    if (token.text[0] == '\'') {
        good = read_quoted_text(stream, cursor, text, &length);
    } else if (token.text[0] == '[') {
        good = read_array_text(stream, cursor, text, text_room);
    } else {
        good = append_token(text, &length);
    }
    if (good) scanner(stream, &token, cursor);
    return good;
}

static void set_text(const switch_row *row, input_stream **stream, quolynode **result, name_node **cursor)
{
    char text[text_room];
    if (!read_text(stream, cursor, text) || !at_closing_paren()) return;
    if (row && row->kind == text_switch) {
        row->take(text, stream, result, cursor);
    } else {
        error(err_no_text_switch, token.text);
    }
}

// Numbers -----------------------------------------------------------------------------------------------

// Skip the list of conversions behind the value of a ring, up to the closing parenthesis.
static void skip_conversions(input_stream **stream, name_node **cursor)
{
    for (int depth = 0; depth > 0 || token.text[0] != ')'; scanner(stream, &token, cursor)) {
        if (token.text[0] == '(') ++depth;
        if (token.text[0] == ')') --depth;
        if (token.text[0] == ';' || token_is(&token, endlist)) return;
    }
}

// The integers, _i, as a ground ring: read over it. Another name behind _ begins a value.
static bool integers_follow(input_stream **stream, name_node **cursor, char code)
{
    if (code != 'p' || token.text[0] != '_') return false;
    scanner(stream, &token, cursor);
    if (!token_is(&token, "i")) return false;
    scanner(stream, &token, cursor);
    return true;
}

// *value = the expression that begins with the token in hand: true integers, but for the denominator of
// random numbers, which belongs to the present ring.
static void read_value(input_stream **stream, quolynode **value, name_node **cursor, char code)
{
    std::int32_t saved = 0;
    if (code != random_code) check_modular(&saved);
    old_expre(stream, value, cursor);
    restore_modular(&saved);
}

// *v = the value as a word. Declines (0) after an error.
static bool switch_word(const quolynode *value, char code, std::int32_t *v)
{
    *v = 0;
    if (code == random_code) return true;
    if (!quoly_to_word(value, v)) {
        *v = 0;
        if (code == 'p' && value->is_num) return true;  // beyond every modulus
        error(code == columns_code ? err_denominator_number : err_switch_not_number, token.text);
        return false;
    }
    if (*v >= 0 || code == 'D' || code == columns_code) return true;
    error(err_negative_switch, token.text);
    return false;
}

// Give the switch its value, the closing parenthesis in hand.
static void assign(const switch_row *row, const setting *s)
{
    if (s->v > 1 && (!row || !row->any_value)) {
        error(err_switch_value, token.text);
    } else if (!row || row->kind > number_switch) {
        error(err_switch_not_settable, token.text);
    } else if (row->kind == flag_switch) {
        set_flag(row, s->v);
    } else {
        row->assign(s);
    }
}

// Read what stands behind = and set the switch. *value is announced.
static void set_number(const switch_row *row, char code, input_stream **stream, quolynode **value,
                       name_node **cursor)
{
    setting s = {nullptr, 0, verbose || (!*cursor && tt_flag), integers_follow(stream, cursor, code)};
    if (!s.integers) {
        read_value(stream, value, cursor, code);
        if (!switch_word(*value, code, &s.v)) return;
        s.value = *value;
    }
    if (code == 'p') {
        if (token.text[0] == ':') skip_conversions(stream, cursor);
        free_quoly(value);  // no value of the old ring is to be converted
        s.value = nullptr;
    }
    if (at_closing_paren()) assign(row, &s);
}

// The cutoffs of all polynomial variables, from an array.
static void set_cutoffs(input_stream **stream, name_node **cursor)
{
    get_cut_from_array(stream, cursor);
    at_closing_paren();
}

// The command -------------------------------------------------------------------------------------------

static void set_from_value(const switch_row *row, char code, input_stream **stream, quolynode **result,
                           name_node **cursor)
{
    const char c = token.text[0];
    if (code == '#' && c == '[') {
        set_cutoffs(stream, cursor);
    } else if ((row && row->kind == text_switch) || c == '\'' || c == '[') {
        set_text(row, stream, result, cursor);
    } else {
        quolynode *value = nullptr;
        own(&value);
        set_number(row, code, stream, &value, cursor);
        disown();
        if (!value) return;
        free_quoly(result);
        *result = value;
    }
}

void set_switch(input_stream **stream, quolynode **result, name_node **cursor)
{
    const char code = read_code(stream, cursor);
    if (!code || !read_equals(stream, cursor, code)) return;
    const switch_row *row = find_code(code);
    if (row && row->kind == tail_switch) {
        row->read(stream, result, cursor);
        at_closing_paren();
        return;
    }
    scanner(stream, &token, cursor);
    set_from_value(row, code, stream, result, cursor);
}

}  // namespace kelmar
