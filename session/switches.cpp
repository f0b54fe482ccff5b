// session/switches.cpp -- the table of switches, and the one routine that runs all those that are on or off.
//
// The rows of switches.def become one constant table. It is searched by letter in one of three columns; no
// letter stands twice in a column, which the compiler checks. A handler leaves its last own token in hand.
// When that ends the statement nothing more is scanned; otherwise the token behind the command is.
#include "session/switches.h"
#include "gcd/polygcd.h"
#include "numbers/decimal.h"
#include "poly/display.h"
#include "poly/div_fast.h"
#include "poly/mul.h"
#include "session/arr_access.h"
#include "session/change_prec.h"
#include "session/errors.h"
#include "session/files.h"
#include "session/levels.h"
#include "session/loop.h"
#include "session/output.h"
#include "session/poly_readin.h"
#include "session/report.h"
#include "session/seams.h"
#include "session/set_switch.h"
#include "session/settings.h"
#include "session/switch_commands.h"
#include "session/switch_values.h"
#include "session/timing.h"

namespace kelmar {

// Hooks of flags ----------------------------------------------------------------------------------------

// For what would have no effect where numbers are words or doubles.
static bool refuse_in_word_ring(std::int32_t)
{
    if (!lintmode) return true;
    error(err_not_in_this_ring, token.text);
    return false;
}

static bool choose_continuation(std::int32_t ugly)
{
    continuation = ugly ? ' ' : '`';
    return true;
}

static bool choose_fast_division(std::int32_t fast)
{
    rat_yes = fast;
    return true;
}

static bool choose_laurent(std::int32_t negative_exponents)
{
    if (negative_exponents) check_for_mod_out();
    return change_laurent(negative_exponents);
}

// The table ---------------------------------------------------------------------------------------------

static constexpr char none = 0;
static constexpr const char *same = nullptr;
static constexpr bool quiet = false;
static constexpr bool loud = true;
static constexpr bool bit = false;
static constexpr bool any = true;

static constexpr switch_row flag_row(char plain, char under, char code, std::int32_t *global, bool talk,
                                     bool values, bool (*hook)(std::int32_t), const char *on, const char *off,
                                     const char *set_on, const char *set_off, const char *unchanged,
                                     const char *what)
{
    return {plain,
            under,
            code,
            flag_switch,
            talk,
            values,
            what,
            nullptr,
            global,
            hook,
            on,
            off,
            set_on ? set_on : on,
            set_off ? set_off : off,
            unchanged,
            nullptr,
            nullptr,
            nullptr};
}

static constexpr switch_row other_row(char plain, char under, char code, switch_kind kind, bool values,
                                      switch_handler run, const char *what)
{
    return {plain,   under, code, kind, true, values, what,    run,     nullptr,
            nullptr, "",    "",   "",   "",   "",     nullptr, nullptr, nullptr};
}

static constexpr switch_row number_row(char plain, char under, char code, bool values, switch_handler ask,
                                       number_setter assign, const char *what)
{
    switch_row row = other_row(plain, under, code, number_switch, values, ask, what);
    row.assign = assign;
    return row;
}

static constexpr switch_row text_row(char plain, char under, char code, switch_handler run, text_setter take,
                                     const char *what)
{
    switch_row row = other_row(plain, under, code, text_switch, any, run, what);
    row.take = take;
    return row;
}

static constexpr switch_row tail_row(char plain, char under, char code, switch_handler run,
                                     switch_handler read, const char *what)
{
    switch_row row = other_row(plain, under, code, tail_switch, any, run, what);
    row.read = read;
    return row;
}

static constexpr switch_row rows[] = {
#define KELMAR_FLAG(plain, under, code, global, talk, values, hook, on, off, set_on, set_off, unchanged,     \
                    what)                                                                                    \
    flag_row(plain, under, code, &global, talk, values, hook, on, off, set_on, set_off, unchanged, what),
#define KELMAR_NUMBER(plain, under, code, global, values, ask, assign, what)                                 \
    number_row(plain, under, code, values, ask, assign, what),
#define KELMAR_TEXT(plain, under, code, run, take, what) text_row(plain, under, code, run, take, what),
#define KELMAR_TAIL(plain, under, code, run, read, what) tail_row(plain, under, code, run, read, what),
#define KELMAR_COMMAND(plain, under, run, what) other_row(plain, under, none, command_switch, any, run, what),
#include "session/switches.def"
#undef KELMAR_FLAG
#undef KELMAR_NUMBER
#undef KELMAR_TEXT
#undef KELMAR_TAIL
#undef KELMAR_COMMAND
};

// No letter stands twice in a column.
static constexpr bool letters_differ(char switch_row::*column)
{
    for (const switch_row &a : rows) {
        for (const switch_row &b : rows) {
            if (&a != &b && a.*column && a.*column == b.*column) return false;
        }
    }
    return true;
}
static_assert(letters_differ(&switch_row::plain));
static_assert(letters_differ(&switch_row::under));
static_assert(letters_differ(&switch_row::code));

// Within a kind the rows rise by their letter, those of the second set behind the others.
static constexpr bool rows_rise()
{
    const switch_row *before = nullptr;
    for (const switch_row &row : rows) {
        if (before && before->kind > row.kind) return false;
        if (before && before->kind == row.kind) {
            const int a = before->plain ? before->plain : 256 + before->under;
            const int b = row.plain ? row.plain : 256 + row.under;
            if (a >= b) return false;
        }
        before = &row;
    }
    return true;
}
static_assert(rows_rise());

static const switch_row *find_switch(char switch_row::*column, char c)
{
    for (const switch_row &row : rows) {
        if (c && row.*column == c) return &row;
    }
    return nullptr;
}

const switch_row *find_plain(char c)
{
    return find_switch(&switch_row::plain, c);
}

const switch_row *find_under(char c)
{
    return find_switch(&switch_row::under, c);
}

const switch_row *find_code(char c)
{
    return find_switch(&switch_row::code, c);
}

const switch_row *all_switches(int *count)
{
    *count = sizeof rows / sizeof rows[0];
    return rows;
}

// Flags -------------------------------------------------------------------------------------------------

// Put the flag in that state. Declines (0) when its hook refuses.
static bool change_flag(const switch_row *row, std::int32_t state)
{
    if (row->hook && !row->hook(state)) return false;
    *row->global = state;
    return true;
}

void toggle(const switch_row *row, bool talk)
{
    const std::int32_t state = *row->global ? 0 : 1;
    if (change_flag(row, state) && talk) std::fputs(state ? row->on : row->off, Output);
}

void tell_unchanged(const char *ending)
{
    std::fprintf(Output, " Already had that value; no change%s\n", ending);
}

void set_flag(const switch_row *row, std::int32_t v)
{
    const std::int32_t state = v == 1;
    // A switch that is refused is refused also where it has that state already.
    if (row->hook == refuse_in_word_ring && !refuse_in_word_ring(state)) return;
    if (*row->global == state) {
        tell_unchanged(row->unchanged);
    } else if (change_flag(row, state)) {
        std::fputs(state ? row->set_on : row->set_off, Output);
    }
}

// Statements --------------------------------------------------------------------------------------------

// The row of the command behind & ; null after error 17 or 114.
static const switch_row *scan_letter(input_stream **stream, name_node **cursor)
{
    const switch_row *row = nullptr;
    scanner(stream, &token, cursor);
    const bool second_set = token.text[0] == '_';
    if (second_set) scanner(stream, &token, cursor);
    if (token.text[1] && !token_is(&token, endlist)) {
        error(err_long_switch, token.text);
        return nullptr;
    }
    row = second_set ? find_under(token.text[0]) : find_plain(token.text[0]);
    if (!row) error(err_unknown_switch, token.text);
    return row;
}

void switch_statement(input_stream **stream, quolynode **result, name_node **cursor)
{
    quoly_set(0, result);
    const switch_row *row = scan_letter(stream, cursor);
    if (!row) return;
    if (row->kind == flag_switch) {
        toggle(row, row->talks_in_function || !*cursor);
    } else {
        row->run(stream, result, cursor);
    }
    if (!ends_statement(&token)) scanner(stream, &token, cursor);
}

}  // namespace kelmar
