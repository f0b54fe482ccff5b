// session/prompt.cpp -- prompts.
//
// Rewinding standard input, as a terminal driver might do here, has no effect on any kind of input: a file
// that was rewound after an error would run for ever.
#include "session/prompt.h"
#include "session/levels.h"
#include "session/output.h"
#include "session/scanner.h"
#include "session/unwind.h"

namespace kelmar {

static void write_level()
{
    if (levelcount > 1) std::fprintf(Output, "%d", levelcount);
}

// Drop one character, the two of a CR LF line end together.
static void drop_pending()
{
    if (get_char(Input) == '\r' && peek_char(Input) == '\n') get_char(Input);
}

static void drop_more(int count)
{
    for (; count > 0; --count) get_char(Input);
}

void next_prompt()
{
    write_level();
    if (promptsize >= 1) std::fputs(prompt, Output);
    flush_output();
    drop_pending();
    drop_more(promptsize - 1);
}

void restart_prompt()
{
    if (promptsize >= 1) std::fputs(prompt, Output);
    flush_output();
    drop_more(promptsize - 1);
}

void do_prompts()
{
    write_level();
    if (promptsize >= 1 || prompt[0] == '\r') std::fputs(prompt, Output);
    flush_output();
    drop_pending();
    leftover[0] = 0;
}

void await_answer()
{
    std::fflush(Output);
    if (input_is_over()) jump_to_exit();
}

void begin_answer(asking *a)
{
    *a = {tt_flag, {leftover[0], 0}, token};
    tt_flag = 1;
    do_prompts();
}

void end_answer(const asking *a)
{
    token = a->tok;
    tt_flag = a->at_terminal;
    leftover[0] = tt_flag ? 0 : a->pending[0];
}

}  // namespace kelmar
