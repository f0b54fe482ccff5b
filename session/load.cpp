// session/load.cpp -- running the statements of a file.
//
// A load is a statement loop of its own, on another source: it sets an abandon point, so that a statement
// which an error gave up ends the reading and no more. An error at the top unwinds past it; the file
// stays open, and &r goes on with the next line.
#include "session/load.h"
#include "quoly/owned.h"
#include "session/evaluator.h"
#include "session/files.h"
#include "session/loop.h"
#include "session/output.h"
#include "session/poly_readin.h"
#include "session/report.h"
#include "session/statement.h"
#include "session/unwind.h"

namespace kelmar {

// Opening -----------------------------------------------------------------------------------------------

// The name "@" was given.
static void close_by_name()
{
    if (inpuf) {
        std::fprintf(Output, " Now closing %s.\n", input_file_name);
        close_input_file();
    } else {
        std::fputs(" *** Warning. No input file had been open.\n", Output);
    }
}

// Open the file in the place of the one that is being read. Declines (0): nothing is to be read.
static bool open_named_file(const char *name)
{
    if (!check_file_name(name, output_file_name)) return false;
    if (std::strcmp(name, "@") == 0) {
        close_by_name();
        return false;
    }
    close_input_file();
    if (open_input_file(name)) return true;
    std::fprintf(Output, " *** Warning. %s: no such file. Read cancelled.\n", name);
    error(err_cannot_open_file, name);
    return false;
}

// Make the file to be read the open one, at the place where reading begins.
static bool prepare_file(char letter, const char *name)
{
    char answer[file_name_room];
    if (letter == 'r' && !name && inpuf) {
        if (inpuf->ended) rewind_input_file(inpuf);
        return true;
    }
    if (name) return open_named_file(name);
    return ask_file_name("Enter name of input file: \n", "*** Read cancelled\n", answer) &&
           open_named_file(answer);
}

// Reading -----------------------------------------------------------------------------------------------

// Run the statement that begins in this line; what stands behind it in its last line is ignored.
static void run_file_statement(open_file *file, quolynode **result)
{
    input_stream *stream = &file->in;
    warn_cnt = 0;
    scanner(&stream, &token, &zilch);
    if (token.text[0] == ';' && peek_char(stream) == end_of_input) return;
    reset_statement();
    clear_ring();
    parse(&stream, result, &zilch);
    if (!ends_statement(&token)) error(err_bad_end, token.text);
    leftover[0] = 0;
    drop_line(stream);
}

// Run the file's statements. A statement that a pushed level gave up is the last one.
static void run_file(open_file *file, quolynode **result)
{
    abandon_point here;
    set_abandon_point(&here);
    if (sigsetjmp(here.buf, 0)) {
        owned_count = here.owned_mark;
    } else {
        while (!done_load && peek_char(&file->in) != end_of_input) run_file_statement(file, result);
        if (!done_load) file->ended = 1;
    }
    drop_abandon_point(&here);
}

// default 0; loads under way, each begun by a statement of the one before; load; reset: unwind
static std::int32_t load_depth = 0;
static constexpr std::int32_t deepest_load = 1000;  // far below what the stack holds

void loads_on_unwind()
{
    load_depth = 0;
}

// What the statements of a file change, and the statement that loads it needs again.
struct load_frame {
    token_rec tok;
    char pending;
    std::int32_t at_terminal, integer, depth, minus;
};

static void begin_load(load_frame *f)
{
    *f = {token, leftover[0], tt_flag, integerflag, load_depth, minus_warning};
    tt_flag = integerflag = done_load = 0;
    minus_warning = 1;
    leftover[0] = 0;
}

static void end_load(const load_frame *f)
{
    clear_ring();
    token = f->tok;
    leftover[0] = f->pending;
    tt_flag = f->at_terminal;
    load_depth = f->depth;
    integerflag = f->integer;
    minus_warning = f->minus;
}

void load_command(quolynode **result, char letter, const char *name)
{
    load_frame frame;
    if (load_depth >= deepest_load) report_too_deep();
    if (!prepare_file(letter, name)) return;
    open_file *file = inpuf;
    enter_file(file);  // from here on a level that an interrupt pushes may close it
    begin_load(&frame);
    if (peek_char(&file->in) == end_of_input) {
        std::fprintf(Output, "*** Warning.  End of file %s encountered.\n", input_file_name);
    }
    ++load_depth;
    check_stack();
    run_file(file, result);
    leave_file(file);
    end_load(&frame);
    if (!*result) quoly_set(0, result);
}

}  // namespace kelmar
