// session/output.cpp -- when output is shown.
#include "session/output.h"
#include <sys/stat.h>
#include <unistd.h>
#include "session/report.h"

namespace kelmar {

// default 1; Output is a terminal, a pipe or a socket; find_watchers; reset: never
static int watched = 1;

void find_watchers()
{
    struct stat s;
    const int fd = fileno(Output);
    if (fstat(fd, &s) == 0) watched = isatty(fd) || S_ISFIFO(s.st_mode) || S_ISSOCK(s.st_mode);
    std::setvbuf(Output, nullptr, _IOFBF, 1 << 16);
}

void flush_output()
{
    if (watched) std::fflush(Output);
}

bool is_terminal_output(const std::FILE *out)
{
    return out == Output;
}

void line_written(std::FILE *out)
{
    if (is_terminal_output(out)) flush_output();
}

}  // namespace kelmar
