// session/scratch.cpp -- values put together in memory.
#include "session/scratch.h"

namespace kelmar {

// default null; the text, made at first use; reset: never
static std::FILE *scratch = nullptr;
static char *text = nullptr;
static std::size_t size = 0;

std::FILE *open_scratch()
{
    if (!scratch) scratch = open_memstream(&text, &size);
    if (scratch) std::rewind(scratch);
    return scratch;
}

const char *scratch_text(std::size_t *length)
{
    std::fflush(scratch);
    *length = size;
    return text;
}

}  // namespace kelmar
