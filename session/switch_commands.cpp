// session/switch_commands.cpp -- what the commands behind & do.
//
// Each begins with its letter in hand and leaves its own last token in hand. Who reads to the end of the
// statement leaves the terminator, and by that tells the caller to scan no further.
#include "session/switch_commands.h"
#include <ctime>
#include "gcd/stash.h"
#include "numbers/mode.h"
#include "quoly/add.h"
#include "quoly/mul.h"
#include "quoly/owned.h"
#include "session/attach.h"
#include "session/errors.h"
#include "session/evaluator.h"
#include "session/expr.h"
#include "session/files.h"
#include "session/global_dump.h"
#include "session/levels.h"
#include "session/list_functions.h"
#include "session/listing.h"
#include "session/loop.h"
#include "session/output.h"
#include "session/poly_readin.h"
#include "session/report.h"
#include "session/seams.h"
#include "session/unwind.h"
#include "storage/accounting.h"
#include "storage/low_memory.h"

namespace kelmar {

static bool typed_at_terminal(name_node **cursor)
{
    return !*cursor && tt_flag;
}

// The session and its levels ----------------------------------------------------------------------------

void quit(input_stream **, quolynode **, name_node **)
{
    jump_to_exit();
}

void panic(input_stream **, quolynode **, name_node **)
{
    error(panic_stop, " ");
}

void push_command_level(input_stream **, quolynode **, name_node **cursor)
{
    const bool stored = *cursor != nullptr;
    error(new_level, " ");
    if (stored) return;
    set_token(&token, "@");  // in place of the terminator, which may have been looked at already
    leftover[0] = 0;
}

void pop_command_level(input_stream **, quolynode **, name_node **)
{
    time_to_quit = 1;
}

// Loops, functions and files ----------------------------------------------------------------------------

// Set the flag that a loop or function looks at, inside one; a statement typed as such is in none.
static void leave_by(std::int32_t *flag, name_node **cursor)
{
    if (*cursor) {
        *flag = 1;
    } else {
        std::fprintf(Output, "Warning. &%s ignored.\n", token.text);
    }
}

void leave_loop(input_stream **, quolynode **, name_node **cursor)
{
    leave_by(&leave_flag, cursor);
}

void next_round(input_stream **, quolynode **, name_node **cursor)
{
    leave_by(&cycle_flag, cursor);
}

void leave_function(input_stream **, quolynode **, name_node **cursor)
{
    leave_by(&exit_flag, cursor);
}

void stop_loading(input_stream **, quolynode **, name_node **)
{
    if (!tt_flag) done_load = 1;
}

void refuse_output_form(input_stream **, quolynode **, name_node **)
{
    error(err_file_output_form, token.text);
}

// Storage and clocks ------------------------------------------------------------------------------------

// *result = v in the live view, also beyond the words.
static void set_large(std::uint64_t v, quolynode **result)
{
    quolynode *digit = nullptr;
    own(&digit);
    quoly_set(0, result);
    for (int shift = 2 * digit_bits; shift >= 0; shift -= digit_bits) {
        quoly_set(digit_base, &digit);
        fast_quoly_mult(result, digit);
        quoly_set(static_cast<std::int32_t>((v >> shift) & digit_mask), &digit);
        better_quoly_add(result, digit);
    }
    disown();
    free_quoly(&digit);
}

void read_memory(input_stream **, quolynode **result, name_node **cursor)
{
    const std::uint32_t left = memavail();
    set_large(left, result);
    if (exact_integers() && typed_at_terminal(cursor)) std::fprintf(Output, "%u\n", left);
}

void read_cpu_clock(input_stream **, quolynode **result, name_node **)
{
    set_large(static_cast<std::uint64_t>(std::clock()), result);
}

void show_garbage(input_stream **, quolynode **, name_node **)
{
    garbage(Output, 'g');
}

// Figures of the minors stand at 0 while nothing keeps any.
void show_statistics(input_stream **, quolynode **, name_node **)
{
    const unsigned minor_memory = 0;
    const int idle = static_cast<int>(garbsize());
    const int minor_prime = 0, branches = 0, leaves = 0, nodes = 0, hits = 0;
    std::fputs(
        " memavail, minor memory, garbsize, minor prime, total branches, leaf count, stash nodes, hits: ",
        Output);
    std::fprintf(Output, "%u, %u, %d, %d, %d, %d, %d, %d\n", memavail(), minor_memory, idle, minor_prime,
                 branches, leaves, nodes, hits);
}

// Values go back to the free lists as soon as they are given up, so that nothing waits to be cleaned up.
void clean_up(input_stream **, quolynode **, name_node **)
{
}

void count_gcd_stash(input_stream **stream, quolynode **result, name_node **cursor)
{
    scanner(stream, &token, cursor);
    const bool plus = token.text[0] == '+';
    if (!plus && token.text[0] != '-') {
        error(err_need_plus_minus, token.text);
        return;
    }
    lookupgcd += plus ? 1 : -1;
    const char *text = " stashing off.";
    if (lookupgcd > 0) text = plus ? " stashing on." : " popped, but stashing remains in effect.";
    if (lookupgcd < 0) text = plus ? " pushed, but stashing still off." : "";
    if (typed_at_terminal(cursor)) std::fputs(text, Output);
    if (!plus && lookupgcd == 0) free_gcd_stash();
    quoly_set(lookupgcd, result);
}

// Values ------------------------------------------------------------------------------------------------

void true_integer_value(input_stream **stream, quolynode **result, name_node **cursor)
{
    std::int32_t saved;
    scanner(stream, &token, cursor);
    if (!expect_and_pass('(', err_need_open_paren_m, stream, cursor)) return;
    check_modular(&saved);
    old_expre(stream, result, cursor);
    restore_modular(&saved);
    if (!expect_and_pass(')', err_need_close_paren, stream, cursor)) return;
    if (!ends_statement(&token)) error(err_bad_end_m, token.text);
}

void read_value_literal(input_stream **stream, quolynode **result, name_node **cursor)
{
    scanner(stream, &token, cursor);
    quoly_readin(stream, result, cursor);
}

// Listings ----------------------------------------------------------------------------------------------

void list_functions_switch(input_stream **stream, quolynode **, name_node **cursor)
{
    scanner(stream, &token, cursor);
    listfuncs(stream, cursor);
}

void list_variables_switch(input_stream **stream, quolynode **, name_node **cursor)
{
    scanner(stream, &token, cursor);
    if (token.text[0] != ';' && token.text[0] != ':' && !token_is(&token, endlist)) {
        error(err_bad_list_end, token.text);
        return;
    }
    const bool names_only = token.text[0] == ':';
    listvars(names_only);
    if (*cursor && names_only) scanner(stream, &token, cursor);  // ":" ends no statement of a function
}

void global_dump_switch(input_stream **, quolynode **, name_node **)
{
    global_dump();
}

// A computation shows its work array only while it runs.
void show_dup(input_stream **, quolynode **, name_node **)
{
}

// Polynomial variables ----------------------------------------------------------------------------------

void attach_poly_switch(input_stream **stream, quolynode **, name_node **cursor)
{
    attach_poly(stream, cursor, true);
}

void read_attach_poly(input_stream **stream, quolynode **, name_node **cursor)
{
    attach_poly(stream, cursor, false);
}

void set_mod_out_switch(input_stream **stream, quolynode **, name_node **cursor)
{
    set_mod_out_command(stream, cursor, true);
}

void read_set_mod_out(input_stream **stream, quolynode **, name_node **cursor)
{
    set_mod_out_command(stream, cursor, false);
}

}  // namespace kelmar
