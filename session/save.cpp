// session/save.cpp -- writing a session as statements.
//
// A saved file has no format of its own: running its statements sets the switches, adjoins the variables,
// defines the functions and assigns the values. Whatever stands in a chain is written from its oldest member
// on, so that a session which has read the file has the same order, and saves the same file again.
#include "session/save.h"
#include "numbers/decimal.h"
#include "numbers/mode.h"
#include "poly/display.h"
#include "session/arr_access.h"
#include "session/arr_listing.h"
#include "session/errors.h"
#include "session/files.h"
#include "session/levels.h"
#include "session/list_functions.h"
#include "session/listing.h"
#include "session/loop.h"
#include "session/names.h"
#include "session/output.h"
#include "session/prompt.h"
#include "session/report.h"
#include "session/settings.h"
#include "session/timing.h"

namespace kelmar {

// Switches ----------------------------------------------------------------------------------------------

// A switch that is written only where it differs from what a session begins with.
static void write_if(bool differs, const char *statement)
{
    if (differs) std::fputs(statement, outpuf);
}

static void write_prompt_switch()
{
    if (std::strcmp(prompt, ">") == 0) return;
    std::fprintf(outpuf, "&(M = '%s');\n", prompt[0] == '\r' ? " " : prompt);
}

static void write_switches()
{
    std::FILE *out = outpuf;
    write_if(errorpush, "&(e = 1);\n");
    write_if(!noisy, "&(N = 0);\n");
    std::fprintf(out, "&(m = %li);\n", static_cast<long>(m_interrupt));
    std::fputs(addresser ? "&(a = 1);\n" : "&(a = 0);\n", out);
    write_if(!chpoly_block, "&(B = 0);\n");
    if (detcutoff >= 0) std::fprintf(out, "&(D = %li);\n", static_cast<long>(detcutoff));
    write_prompt_switch();
    if (namelength != 10) std::fprintf(out, "&(n = %li);\n", static_cast<long>(namelength));
    write_if(uglyprint, "&(U = 1);\n");
    write_if(monomial_list, "&(_l = 1);\n");
    write_if(timerflag, "&(t = 1);\n");
    write_if(verbose, "&(V = 1);\n");
    write_if(windy, "&(W = 1);\n");
    write_if(lagrange_stash, "&(_L = 1);\n");
    write_if(rat_det_method_cut == 1, "&(L = 1);\n");
    std::fprintf(out, "&(u = %li);\n", static_cast<long>(pseudet_heur));
}

// The variables, from the innermost to that of level 1: each is adjoined in front of those before it.
static void polylist(const pt *r)
{
    if (!r) return;
    polylist(r->next);
    std::fprintf(outpuf, "&(J = %s);\n", r->name);
}

static void write_ring()
{
    polylist(polynames);
    write_if(laurent, "&(l = 1);\n");
    if (modularmode) std::fprintf(outpuf, "&(p = %li);\n", static_cast<long>(modulus));
}

// Everything --------------------------------------------------------------------------------------------

// The functions that the tokens behind the command name, or all.
static void save_functions(input_stream **stream, name_node **cursor)
{
    std::fputs("\n\n;;** functions:\n", outpuf);
    scanner(stream, &token, cursor);
    if (token.text[0] == '*') {
        scanner(stream, &token, cursor);
        list_all_functions(outpuf, true);
    } else if (ends_statement(&token)) {
        list_all_functions(outpuf, true);
    } else {
        list_named_functions(outpuf, true, stream, cursor);
    }
}

static void save_everything(input_stream **stream, name_node **cursor)
{
    round_trip = 1;
    write_switches();
    write_ring();
    save_functions(stream, cursor);
    std::fputs("\n;;** scalars:\n", outpuf);
    save_scalars(outpuf);
    std::fputs("\n;;**  arrays:\n", outpuf);
    save_arrays(outpuf);
    std::fputs("&x;\n", outpuf);
    round_trip = 0;
    commit_output();
    if (uglyprint) {
        std::fputs(" Warning: You saved with ugly format! File is unreadable, except for the variables.\n",
                   Output);
    }
}

// Some things -------------------------------------------------------------------------------------------

// `[` is in hand; the `]` is left in hand.
static void append_array(input_stream **stream, name_node **cursor)
{
    scanner(stream, &token, cursor);
    token_rec name = token;
    if (!save_array(outpuf, &name)) error(err_no_such_array, name.text);
    scanner(stream, &token, cursor);
    expect(']', err_need_close_bracket);
}

// One item, whose first token is in hand.
static void append_item(input_stream **stream, name_node **cursor)
{
    if (token.text[0] == '[') {
        append_array(stream, cursor);
    } else if (is_lower(token.text[0])) {
        token_rec name = token;
        const var_node *v = find_var(&name);
        if (v) {
            save_scalar(outpuf, v);
        } else {
            error(err_undefined, name.text);
        }
    } else {
        list_named_functions(outpuf, true, stream, cursor);
        return;
    }
    scanner(stream, &token, cursor);
}

// Append what the tokens behind the command name.
static void append_named(input_stream **stream, name_node **cursor)
{
    round_trip = 1;
    scanner(stream, &token, cursor);
    while (!ends_statement(&token)) {
        append_item(stream, cursor);
        if (token.text[0] != ',') break;
        scanner(stream, &token, cursor);
    }
    round_trip = 0;
    flush_output_file();
}

void saves_on_unwind()
{
    round_trip = 0;
}

// The command -------------------------------------------------------------------------------------------

// The name "@" was given.
static void close_by_name()
{
    if (outpuf) {
        std::fprintf(Output, " Now closing %s.\n", output_file_name);
        close_output_file();
    } else {
        std::fputs(" *** Warning. No output file had been open.\n", Output);
    }
}

// Declines (0): nothing is to be written.
static bool open_named_output(const char *name)
{
    if (!check_file_name(name, input_file_name)) return false;
    if (std::strcmp(name, "@") == 0) {
        close_by_name();
        return false;
    }
    if (open_output_file(name)) return true;
    error(err_cannot_open_file, name);
    return false;
}

void save_command(input_stream **stream, name_node **cursor, char letter, const char *name)
{
    char answer[file_name_room];
    if (round_trip) {  // of a computation that waits below this level: its file stays open
        std::fputs(" *** Warning. A save is being interrupted; this one is cancelled.\n", Output);
    } else if (letter == 'S' && !name && outpuf) {
        append_named(stream, cursor);
    } else {
        if (!name) {
            if (!ask_file_name("Enter name of output file: \n", "*** Save cancelled\n", answer)) return;
            name = answer;
        }
        if (!open_named_output(name)) return;
        save_everything(stream, cursor);
    }
    if (!*cursor && ends_statement(&token)) set_token(&token, "@");
}

}  // namespace kelmar
