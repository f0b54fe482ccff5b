// session/loop.cpp -- one statement after the other.
//
// The loop of level 1 and that of a pushed level are the same function on another frame: a pushed level has a
// result slot of its own, and is left when time_to_quit is set. An error that pushed a deeper level, which
// was then left, comes back here as an abandoned statement.
#include "session/loop.h"
#include "quoly/owned.h"
#include "session/evaluator.h"
#include "matrix/pins.h"
#include "poly/variables.h"
#include "quoly/display.h"
#include "session/arr_display.h"
#include "session/output.h"
#include "session/prompt.h"
#include "session/report.h"
#include "session/statement.h"
#include "session/timing.h"
#include "session/unwind.h"
#include "storage/low_memory.h"

namespace kelmar {

// One statement -------------------------------------------------------------------------------------------

bool ends_statement(const token_rec *tok)
{
    const char c = tok->text[0];
    if (c == ';' || c == '@' || c == ':') return tok->text[1] == 0;
    return token_is(tok, endlist);
}

static void show_result(const quolynode *result)
{
    if (token.text[0] == ':') {
        extra_line_end();
        return;
    }
    const bool show = token.text[0] != '@' && noisy;
    if (syst_dump && show) display_system_array();
    extra_line_end();
    const bool variables = polynames != nullptr;
    const value_form form = {1, 1, promptsize > 0, variables && extra_line, 0, nullptr};
    std::int32_t dummy = 0;
    if (show) quoly_display(Output, &form, result, &dummy);
    if (noisy && !variables) extra_line_end();
}

// Show the value and the time, and make the value the one that `<` yields.
static void close_statement(quolynode **result)
{
    clear_ring();
    show_result(*result);
    syst_dump = 0;
    if (timerflag) {
        write_timing();
        extra_line_end();
    }
    free_quoly(&prevnum);
    prevnum = *result;
    *result = nullptr;
}

// Read and run one statement. Returns when it is shown.
static void run_round(quolynode **result)
{
    warn_cnt = 0;
    if (levelcount == 1) {
        release_pinned();
        keep_reserve();
    }
    if (input_is_over()) jump_to_exit();
    const std::int32_t held = command_int;
    command_int = 0;
    scanner(&Input, &token, &zilch);
    command_int = held;
    reset_statement();
    start_timing();
    parse(&Input, result, &zilch);
    zilch = nullptr;
    stop_timing();
    if (!*result) quoly_set(0, result);
    if (!ends_statement(&token)) {
        error(err_bad_end, token.text);
        return;
    }
    close_statement(result);
}

// Levels ----------------------------------------------------------------------------------------------------

// The end of a round: leave the level, or ask for the next statement. True when the level is left.
static bool level_is_left()
{
    if (time_to_quit) {
        time_to_quit = 0;
        if (levelcount > 1) return true;
        std::fputs(" You must use \"&q\" to quit the highest level.\n", Output);
    }
    next_prompt();
    return false;
}

void statement_loop()
{
    quolynode *local = nullptr;
    quolynode **result = levelcount > 1 ? &local : &sysnum;
    abandon_point here;
    own(result);
    set_abandon_point(&here);
    if (sigsetjmp(here.buf, 0)) {
        token = {};
        owned_count = here.owned_mark;
        clear_ring();
        next_prompt();
    }
    do {
        run_round(result);
    } while (!level_is_left());
    drop_abandon_point(&here);
    disown();
    free_quoly(&local);
}

void push_level()
{
    ++levelcount;
    breaktime[time_level] = read_clocks();
    ++time_level;
    time_off[time_level] = {0, 0};
    std::fprintf(Output, "%d", levelcount);
    if (promptsize >= 1) std::fputs(prompt, Output);
    std::fflush(Output);
    leftover[0] = 0;
    statement_loop();
    was_modulus = -1;
    --levelcount;
    --time_level;
    const clock_pair now = read_clocks();
    time_off[time_level].real += now.real - breaktime[time_level].real;
    time_off[time_level].cpu += now.cpu - breaktime[time_level].cpu;
    std::fputs("*** Resuming earlier command level\n", Output);
    std::fflush(Output);
    zilch = nullptr;
}

}  // namespace kelmar
