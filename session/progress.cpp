// session/progress.cpp -- progress lines.
//
// Steps nest. A step writes its own line only while the loops around it have few rounds in all, so that the
// inmost loops of a long run do not flood the screen.
#include "session/progress.h"
#include <algorithm>
#include "numbers/decimal.h"
#include "session/output.h"
#include "session/report.h"

namespace kelmar {

static constexpr std::int64_t many_rounds = std::int64_t{1} << 62;

static std::int64_t rounds_of(std::int32_t n)
{
    return n > 1 ? n : 1;
}

void doblanks(std::int32_t level)
{
    std::fprintf(Output, "%*s", 2 * level, "");
    dumpitt_length += 2 * level;
}

static void end_progress_line()
{
    std::putc('\n', Output);
    flush_output();
    dumpitt_length = 0;
}

void dumpitt(const char *text, std::int32_t n, int drop, int show, int colon)
{
    ++dumpitt_level;
    const bool quiet = suppressor > progress_limit || dumpitt_level > dispcutoff;
    if (verbose && show && !quiet) {
        if (drop && dumpitt_length > 0) end_progress_line();
        if (dumpitt_length == 0) doblanks(dumpitt_level - 1);
        const int written = std::fprintf(Output, "%s%li%s", text, static_cast<long>(n), colon ? ": " : ". ");
        dumpitt_length += written;
        if (dumpitt_length > dispcutoff + 2) end_progress_line();
        flush_output();
    }
    if (dumpitt_level >= 2 && suppressor <= many_rounds / rounds_of(n)) suppressor *= rounds_of(n);
}

void decr_dumpitt(std::int32_t n)
{
    if (dumpitt_level >= 2) suppressor = std::max<std::int64_t>(1, suppressor / rounds_of(n));
    if (dumpitt_level > 0) --dumpitt_level;
    if (dumpitt_level < 2) suppressor = 1;
    if (dumpitt_level == 0 && dumpitt_length > 0) end_progress_line();
}

void progress_on_unwind()
{
    dumpitt_level = 0;
    dumpitt_length = 0;
    suppressor = 1;
}

}  // namespace kelmar
