// session/storm.cpp -- a level pushed and resumed at every n-th poll, or a panic stop at one.
//
// The level gets an input of its own that says &_p, and an output that nobody reads. What it leaves behind in
// the state of the session is then the interrupted statement's to suffer: transcripts must not change.
#include "session/storm.h"
#ifdef KELMAR_STORM
#include <cstring>
#include "matrix/pins.h"
#include "session/evaluator.h"
#include "session/input.h"
#include "session/levels.h"
#include "session/output.h"
#include "session/prompt.h"
#include "session/report.h"
#include "session/scanner.h"

namespace kelmar {

static constexpr int storm_period = 3;  // polls from one level to the next

// Push a level that reads `answers`, and whose output nobody reads.
static void push_unseen_level(const char *answers)
{
    static std::FILE *const unseen = std::fopen("/dev/null", "w");
    input_stream stream;
    input_stream *const input = Input;
    std::FILE *const output = Output;
    quolynode *const last_value = prevnum;
    const std::int32_t warned = warn_cnt, unset = uninit;
    const std::int32_t prompt_length = promptsize;
    open_text(&stream, reinterpret_cast<const unsigned char *>(answers), std::strlen(answers));
    Input = &stream;
    Output = unseen;
    prevnum = nullptr;
    promptsize = 1;  // a longer prompt swallows more of the answer
    pin_values();
    error(new_level, " ");
    unpin_values();
    free_quoly(&prevnum);
    prevnum = last_value;
    warn_cnt = warned;
    uninit = unset;
    promptsize = prompt_length;
    Input = input;
    Output = output;
}

void storm_poll()
{
    static int raging = 0;
    if (raging || interrupts_held) return;
    ++storm_polls;
    if (storm_stop_at >= 0) {
        if (storm_polls != storm_stop_at) return;
        storm_stop_at += storm_stop_every;
        if (!storm_answers) {
            error(panic_stop, " ");
            return;
        }
    } else if (levelcount >= highest_level || storm_polls % storm_period != 0) {
        return;
    }
    raging = 1;
    push_unseen_level(storm_answers ? storm_answers : "\n&_p\n");
    raging = 0;
}

}  // namespace kelmar
#endif
