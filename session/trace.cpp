// session/trace.cpp -- the trace of an error.
//
// Names are written as they come off the ring, newest first. A name that repeats is written ten times at most
// and then only counted, so that a runaway recursion stays readable.
#include "session/trace.h"
#include "session/func_run.h"
#include "numbers/heap.h"
#include "session/output.h"

namespace kelmar {

static constexpr int names_a_line = 20;
static constexpr int repeats_shown = 9;     // of a name, after its first
static constexpr int statement_width = 69;  // columns of an interrupted statement

void make_trace()
{
    trace_frame *ring = static_cast<trace_frame *>(heap_record(trace_frames * sizeof(trace_frame)));
    for (int i = 0; i < trace_frames; ++i) {
        ring[i].next = &ring[(i + 1) % trace_frames];
        ring[i].prev = &ring[(i + trace_frames - 1) % trace_frames];
        ring[i].function = nullptr;
    }
    first = ring;
    lastf = ring;
}

void forget_in_trace(const func_node *f)
{
    if (!first) return;
    for (int i = 0; i < trace_frames; ++i) {
        if (first[i].function == f) first[i].function = nullptr;
    }
}

static void write_repeats(int repeats)
{
    if (repeats > repeats_shown) {
        std::fprintf(Output, " ... %d more with this name. \n", repeats - repeats_shown);
    }
}

void write_function_trace(int release)
{
    std::fputs("*** The most recent function evaluations were:\n ", Output);
    const int active = statcount < trace_frames ? statcount : trace_frames;
    const func_node *before = nullptr;
    trace_frame *frame = lastf;
    int repeats = 0;
    int written = 0;
    for (int i = 0; i < active; ++i, frame = frame->prev) {
        const func_node *f = frame->function;
        if (!f) continue;
        const bool same = before && std::strcmp(before->text, f->text) == 0;
        if (!same) write_repeats(repeats);
        repeats = same ? repeats + 1 : 0;
        before = f;
        if (repeats <= repeats_shown) {
            std::fprintf(Output, "%s ", f->text);
            if (++written % names_a_line == 0) std::fputs("\n ", Output);
        }
    }
    write_repeats(repeats);
    if (release) lastf = frame;
}

// Write the tokens up to and without `stop`, or to the end of the list; the end marker as ";" when shown.
static void write_tokens(const name_node *list, const name_node *stop, bool show_end)
{
    int column = 0;
    for (; list && list != stop; list = list->next) {
        const bool end = std::strcmp(list->text, endlist) == 0;
        if (end && !show_end) continue;
        const char *text = end ? ";" : list->text;
        std::fputs(text, Output);
        column += static_cast<int>(std::strlen(text));
        if (column >= statement_width) {
            std::fputc('\n', Output);
            column = 0;
        }
    }
}

void write_interrupted_statement()
{
    std::fputs("\n*** Function was interrupted at:\n", Output);
    write_tokens(prev_expr, nullptr, true);
    std::fputc('\n', Output);
    write_tokens(startexpr, currentchar, false);
}

}  // namespace kelmar
