// session/storm.cpp -- a level pushed and resumed at every n-th poll, or a panic stop at one.
//
// The level gets an input of its own that says &_p, and an output that nobody reads. What it leaves behind in
// the state of the session is then the interrupted statement's to suffer: transcripts must not change.
#include "session/storm.h"
#ifdef KELMAR_STORM
#include "session/evaluator.h"
#include "session/input.h"
#include "session/levels.h"
#include "session/output.h"
#include "session/prompt.h"
#include "session/report.h"
#include "session/scanner.h"

namespace kelmar {

static constexpr int storm_period = 3;  // polls from one level to the next

void storm_poll()
{
    static int raging = 0;
    static std::FILE *const unseen = std::fopen("/dev/null", "w");
    if (raging || interrupts_held) return;
    ++storm_polls;
    if (storm_stop_at >= 0) {
        if (storm_polls != storm_stop_at) return;
        storm_stop_at += storm_stop_every;
        error(panic_stop, " ");
        return;
    }
    if (levelcount >= highest_level || storm_polls % storm_period != 0) return;
    static const unsigned char leave[] = "\n&_p\n";
    input_stream answers;
    input_stream *const input = Input;
    std::FILE *const output = Output;
    quolynode *const last_value = prevnum;
    const std::int32_t warned = warn_cnt;
    const std::int32_t prompt_length = promptsize;
    raging = 1;
    open_text(&answers, leave, sizeof leave - 1);
    Input = &answers;
    Output = unseen;
    prevnum = nullptr;
    promptsize = 1;  // a longer prompt swallows more of the answer
    error(new_level, " ");
    free_quoly(&prevnum);
    prevnum = last_value;
    warn_cnt = warned;
    promptsize = prompt_length;
    Input = input;
    Output = output;
    raging = 0;
}

}  // namespace kelmar
#endif
