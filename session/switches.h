#pragma once
// session/switches.h -- the commands that begin with & , as one table of rows.
//
// switches.def has the rows. A letter behind & or &_ finds its row through find_switch; so does the letter of
// &(x = v). Whatever is only on or off is changed by one routine, for both forms.

#include "quoly/quoly.h"
#include "session/scanner.h"

namespace kelmar {

enum switch_kind { flag_switch, number_switch, text_switch, tail_switch, command_switch };

typedef void (*switch_handler)(input_stream **stream, quolynode **result, name_node **cursor);

// What &(x = v) brings to a switch with a number.
struct setting {
    const quolynode *value;  // v; null for a ground ring
    std::int32_t v;          // v as a word; 0 where a switch takes v as it is
    bool talk;               // write the text
    bool integers;           // for v stands _i
};
static_assert(std::is_trivial_v<setting>);

typedef void (*number_setter)(const setting *s);
typedef void (*text_setter)(const char *text, input_stream **stream, quolynode **result, name_node **cursor);

struct switch_row {
    char plain, under, code;  // letters behind & , &_ and &( ; 0: no such form
    switch_kind kind;
    bool talks_in_function;  // flag: &x writes its text inside a function too
    bool any_value;          // &(x = v) takes values above 1
    const char *what;
    switch_handler run;  // &x, and &(x for a form of its own; null for a flag
    // flag
    std::int32_t *global;
    bool (*hook)(std::int32_t state);  // false: refused; may be null
    const char *on, *off, *set_on, *set_off, *unchanged;
    // number, text; from the = sign on
    number_setter assign;
    text_setter take;
    switch_handler read;
};
static_assert(std::is_trivial_v<switch_row>);

// The row whose letter of that form is c; null when there is none.
const switch_row *find_plain(char c);
const switch_row *find_under(char c);
const switch_row *find_code(char c);

// All rows, for listings and tests.
const switch_row *all_switches(int *count);

// &x of a flag: turn it over. talk: write the text.
void toggle(const switch_row *row, bool talk);

// &(x = v) of a flag: on for 1. Writes a text in any case.
void set_flag(const switch_row *row, std::int32_t v);

// Write that &(x = v) had nothing to do.
void tell_unchanged(const char *ending);

// Run the command behind the & in hand, and scan the token behind it, unless the command has read up to the
// end of the statement. *result replaced with its value. Errors: 17 114 and those of the command.
void switch_statement(input_stream **stream, quolynode **result, name_node **cursor);

}  // namespace kelmar
