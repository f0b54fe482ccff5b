// session/errors.cpp -- the one way of failing.
//
// error is a page of named steps in a fixed order: forget, report, show the place, show the trace, then
// either unwind to the restart point or push a command level on top of what failed. It comes back only from a
// downgraded error and from a pushed level; every caller says what value goes on then.
#include "session/errors.h"
#include "gcd/polygcd.h"
#include "matrix/pins.h"
#include "numbers/startup.h"
#include "poly/ring_change.h"
#include "session/evaluator.h"
#include "session/files.h"
#include "session/func_run.h"
#include "session/levels.h"
#include "session/output.h"
#include "session/report.h"
#include "session/scanner.h"
#include "session/trace.h"
#include "session/unwind.h"

namespace kelmar {

// Messages ----------------------------------------------------------------------------------------------

void out_err_mess(int n)
{
    if (n == err_unknown_switch) {
        std::fputs("After &, legal symbols are: v,f,F,r,R,d,D,C,B,I,X,L,K,c,W,@,_s,_t,_G\n", Output);
    }
    const char *text = erp + (n - 1) * message_stride;
    std::size_t length = strnlen(text, message_stride - 1);
    while (length > 0 && (text[length - 1] == ' ' || text[length - 1] == '\n')) --length;
    std::fwrite(text, 1, length, Output);
    std::fputc('\n', Output);
}

// The warnings with a text of their own; %s is the name. Others are "Can't do" and a numbered message.
struct warning_text {
    int number;
    const char *text;
};

static const warning_text warning_texts[] = {
    {0, " *** Loop counter in Content is negative.  Will reset.\n"},
    {1, " Specified factor for Det is unusable. Will ignore it.\n"},
    {2, " Specified degree is unreasonable. Will ignore it.\n"},
    {3, " Power is of use only over ground rings Z or Z/p.\n"},
    {4, " With even power, |power| must be 2^k, and modulus mod 4 must equal 3.\n"},
    {5, " With odd power, gcd(|power|, modulus-1) must be 1.\n"},
    {err_undefined, " *** Undefined variable: %s.  will use 0\n"},
    {err_zero_divisor, " *** Trying to divide by 0, in variable: %s.  will set quotient to 0\n"},
    {90, " *** Can't do Det\n"},
};

static void write_warning(int n, const char *name)
{
    for (const warning_text &row : warning_texts) {
        if (row.number != n) continue;
        std::fprintf(Output, row.text, name);
        return;
    }
    if (n != err_sparse_parameter) std::fprintf(Output, " *** Can't do %s\n", name);
    out_err_mess(n);
    if (n != err_sparse_parameter) return;
    std::fputs(" If necessary, do a panic stop as soon as possible. Then if\n", Output);
    std::fprintf(Output, " necessary, delete the parameter %s.\n", name);
}

void warning(int n, const char *name)
{
    std::fputs("\n *** Warning.\n", Output);
    write_warning(n, name);
    std::fputc('\n', Output);
}

void tell(const char *text)
{
    std::fputs(text, Output);
}

void tell_error(int n)
{
    std::fprintf(Output, " *** Inappropriate symbol: %s\n", token.text);
    out_err_mess(n);
}

void push_level_here()
{
    pin_values();
    error(new_level, " ");
    unpin_values();
}

void kelmar_error(const char *text, int stop)
{
    std::fprintf(Output, "*** Kelmar error. %s\n", text);
    std::fflush(Output);
    if (stop) push_level_here();
}

void report_too_deep()
{
    error(err_too_deep, token.text);
}

// The report --------------------------------------------------------------------------------------------

static void write_tokens_from(const name_node *list)
{
    for (; list; list = list->next) {
        if (std::strcmp(list->text, endlist) != 0) std::fputs(list->text, Output);
    }
    std::fputc('\n', Output);
}

static void report_definition(int status, const char *errname)
{
    if (status == err_dangling_array) {
        std::fputs("that you have just deleted.  Any reference to this parameter \n", Output);
        std::fprintf(Output, "%s may crash Kelmar. There may be other such dangling array parameters.\n",
                     errname);
        return;
    }
    const bool too_many_ends = status == err_too_many_blank_lines;
    const bool cancelled = status == err_bad_body_token || status == err_end_inside_definition ||
                           (status == err_bad_end && func_def_count > 0);
    if (!too_many_ends && !cancelled) return;
    std::fputs(too_many_ends ? "Here is the last line read:\n" : "Here is the last line successfully read:\n",
               Output);
    write_tokens_from(too_many_ends ? last_good_one : last_attached);
    std::fprintf(Output, "*** Definition of %s cancelled.\n", current_func.text);
}

static void report_panic_stop()
{
    std::fputs("*** Panic stop.\n", Output);
    if (levelcount == 1 && statcount == 0) std::fputs("    You were already at the lowest level.\n", Output);
    if (!was_in_rat || !modularmode) return;
    std::fputs("\n*** You have interrupted at a delicate time. You are now in modular arithmetic.  Beware!\n"
               "    Your variables are unreadable and unusable.  If you wish\n"
               "    to revert, do &(p=_i:) .\n\n",
               Output);
}

static void report_failure(int status, const char *errname)
{
    if (status > 0) {
        std::fprintf(Output, "*** Inappropriate symbol: %s\n", errname);
        out_err_mess(status);
        report_definition(status, errname);
    } else if (status == panic_stop) {
        report_panic_stop();
    } else {
        std::fputs("*** New command level.\n", Output);
    }
}

// The place -----------------------------------------------------------------------------------------------

static void report_file()
{
    if (tt_flag || !inpuf) return;
    std::fputs("*** Stopped right before this:\n", Output);
    show_file_place();
    if (!close_inpuf) return;
    std::fprintf(Output, "\n*** Closing file %s\n", input_file_name);
    close_input_file();
}

static void report_ring()
{
    if (!tt_flag || !finish) return;
    std::fputs("*** Error occurred at this point:\n", Output);
    for (const name_node *cell = start;; cell = cell->next) {
        std::fputs(cell->text, Output);
        if (cell == finish) break;
    }
    if (statcount > 0) std::fputc('\n', Output);
}

static void report_place(int status, bool unwinding)
{
    if (status >= 0) report_file();
    if (status > 0) report_ring();
    clear_ring();
    leave_flag = exit_flag = cycle_flag = cancelflag = matrix_eval = syst_dump = 0;
    if (statcount > 0) write_function_trace(unwinding);
    if (startexpr || prev_expr) write_interrupted_statement();
    extra_line_end();
}

// The steps -------------------------------------------------------------------------------------------------

static const char *const poly_table_changed =
    "\n*** You have interrupted at a delicate time. The global poly table has been\n"
    "    changed. Your variables that are polynomials are unreadable and unusable.\n";

// What ends with the computation: calls, and the tables that were being changed.
static void give_up_computation()
{
    statcount = 0;
    if (globalpoly > 0) {
        std::fprintf(Output, "%s    Beware!  You should probably quit immediately.\n\n", poly_table_changed);
        globalpoly = 0;
    }
}

static void reset_levels()
{
    levelcount = 1;
    time_level = 1;
    time_off[1] = {0, 0};
    mod_is_changed = 0;
    set_token(&token, "");
}

[[noreturn]] static void unwind_for_good()
{
    reset_levels();
    flush_output();
    jump_to_restart();
}

// The flags that a statement of the user expects, at a new level or at the restart point.
static void set_terminal_state()
{
    startexpr = prev_expr = currentchar = nullptr;
    if (mod_is_changed >= 1) modularmode = lintmode = 1;
    tt_flag = 1;
    func_def_count = integerflag = time_to_quit = 0;
}

void abandon_session()
{
    clear_ring();
    set_terminal_state();
    give_up_computation();
    reset_levels();
    release_abandoned();
}

void restart_session()
{
    abandon_session();
    unwind_for_good();
}

static void warn_of_delicate_time()
{
    if (was_in_rat && modularmode) {
        was_modulus = modulus;
        std::fputs("\n*** You have interrupted at a delicate time. Kelmar had switched\n"
                   "    internally to arithmetic mod p. It has switched back for your \n"
                   "    convenience during this interrupt. Do not do any significant \n"
                   "    polynomial computations.  To abort, enter &@ followed by  &(p=_i:) .\n\n",
                   Output);
    }
    if (globalpoly > 0) {
        std::fprintf(Output, "%s    Beware! (You can use ZZ3 to display a variable.)\n\n",
                     poly_table_changed);
    }
}

// What a pushed level keeps for the computation beneath it: what the report itself forgets, and
// what the statements of the level will write over.
struct interrupted_state {
    std::int32_t integer, definitions, modular, lint, loaded, at_terminal, flote;
    std::int32_t leaving, exiting, cycling, cancelling, evaluating, dumping, quitting;
    char pending;
    token_rec tok;
    name_node *started, *previous, *scanned;
    saved_ring ring;
    gcd_counters gcd;
};

static void save_state(interrupted_state *s)
{
    s->integer = integerflag;
    s->definitions = func_def_count;
    s->modular = modularmode;
    s->lint = lintmode;
    s->loaded = done_load;
    s->at_terminal = tt_flag;
    s->flote = flotemode;
    s->leaving = leave_flag;
    s->exiting = exit_flag;
    s->cycling = cycle_flag;
    s->cancelling = cancelflag;
    s->evaluating = matrix_eval;
    s->dumping = syst_dump;
    s->quitting = time_to_quit;
    s->pending = leftover[0];
    s->tok = token;
    s->started = startexpr;
    s->previous = prev_expr;
    s->scanned = currentchar;
    save_ring(&s->ring);
    save_gcd_counters(&s->gcd);
}

static void restore_state(const interrupted_state *s)
{
    integerflag = s->integer;
    func_def_count = s->definitions;
    modularmode = s->modular;
    lintmode = s->lint;
    done_load = s->loaded;
    tt_flag = s->at_terminal;
    flotemode = s->flote;
    token = s->tok;
    startexpr = s->started;
    prev_expr = s->previous;
    currentchar = s->scanned;
    leave_flag = s->leaving;
    exit_flag = s->exiting;
    cycle_flag = s->cycling;
    cancelflag = s->cancelling;
    matrix_eval = s->evaluating;
    syst_dump = s->dumping;
    time_to_quit = s->quitting;
    leftover[0] = s->pending;
    restore_ring(&s->ring);
    restore_gcd_counters(&s->gcd);
}

// An error in a level, or in a function, with &e on keeps the computation and pushes one more level; not when
// the stack is used up, for a level stands on top of it.
static bool pushes_level(int status)
{
    if (status < 0) return true;
    return status > 0 && status != err_too_deep && errorpush && (statcount > 0 || levelcount > 1);
}

// A level works in the ring of the session; what it stands on may be in the middle of another one.
static void push_level_in_session_ring()
{
    ring_bracket ring;
    enter_session_ring(&ring);
    if (mod_is_changed >= 1) modularmode = lintmode = 1;
    push_level();
    leave_ring(&ring);
}

void error(int status, const char *errname)
{
    const bool push = pushes_level(status);
    forget_on_error(status);
    if (status >= 0) was_modulus = -1;
    extra_line_end();
    if (std::strcmp(errname, endlist) == 0) errname = ";";
    if (status > 0 && levelcount != 1 && (status == err_undefined || status == err_zero_divisor)) {
        warning(status, errname);
        clear_ring();
        return;
    }
    last_error = status;
    if (status >= 0) leave_abandoned_rings(!push);
    interrupted_state kept;
    save_state(&kept);
    report_failure(status, errname);
    report_place(status, !push);
    set_terminal_state();
    if (!push) {
        give_up_computation();
        unwind_for_good();
    }
    if (levelcount >= highest_level) {
        std::fprintf(Output, "*** Highest legal command level is %d.\n", highest_level);
        restore_state(&kept);
        error(panic_stop, " ");
    }
    warn_of_delicate_time();
    push_level_in_session_ring();
    restore_state(&kept);
    if (status > 0) abandon_statement();
}

}  // namespace kelmar
