// session/storm.cpp -- a level pushed and resumed at every n-th poll, or a panic stop at one.
//
// The level gets an input of its own that says &_p, and an output that nobody reads. What it leaves behind in
// the state of the session is then the interrupted statement's to suffer: transcripts must not change.
#include "session/storm.h"
#ifdef KELMAR_STORM
#include <cstring>
#include "session/evaluator.h"
#include "session/input.h"
#include "session/levels.h"
#include "session/output.h"
#include "session/prompt.h"
#include "session/report.h"
#include "session/scanner.h"

namespace kelmar {

static constexpr int storm_period = 3;  // polls from one level to the next

// What an unseen level puts aside.
struct surroundings {
    input_stream *input;
    std::FILE *output;
    quolynode *last_value;
    std::int32_t warned, unset, prompt_length;
};

static int raging = 0;       // default 0; an unseen level runs; reset: unwind
static surroundings kept;    // default none; those of the level that runs; storm_poll; reset: unwind
static input_stream answer;  // default none; what it reads; storm_poll; reset: unwind

static void put_back()
{
    warn_cnt = kept.warned;
    uninit = kept.unset;
    promptsize = kept.prompt_length;
    Input = kept.input;
    Output = kept.output;
    raging = 0;
}

void storm_on_unwind()
{
    if (!raging) return;
    free_quoly(&kept.last_value);
    put_back();
}

// Push a level that reads `answers`, and whose output nobody reads. Given answers are those of a user, whose
// last value becomes that of the session.
static void push_unseen_level(const char *answers, bool given)
{
    static std::FILE *const unseen = std::fopen("/dev/null", "w");
    kept = {Input, Output, given ? nullptr : prevnum, warn_cnt, uninit, promptsize};
    open_text(&answer, reinterpret_cast<const unsigned char *>(answers), std::strlen(answers));
    Input = &answer;
    Output = unseen;
    if (!given) prevnum = nullptr;
    promptsize = 1;  // a longer prompt swallows more of the answer
    raging = 1;
    push_level_here();
    put_back();
    if (given) return;
    free_quoly(&prevnum);
    prevnum = kept.last_value;
}

void storm_poll()
{
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
    push_unseen_level(storm_answers ? storm_answers : "\n&_p\n", storm_answers != nullptr);
}

}  // namespace kelmar
#endif
