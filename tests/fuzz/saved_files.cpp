// tests/fuzz/saved_files.cpp -- any bytes as a file that a session reads.
//
// The session reads the file in stages, saves what it then has, and reads that back. Compiled once with
// FUZZ_EXACT 0 and once with 1, the sort of session.
#include "tests/fuzz/harness.h"

static const std::uint8_t session[] =
    "&(R = 'saved')\n&r\n&v;\n&r\n&f*\n&(S = 'again')\n&(S = '@')\n&(R = 'again')\n&v;\n&g;\n";

extern "C" int LLVMFuzzerInitialize(int *, char ***)
{
    kelmar_fuzz::prepare(FUZZ_EXACT);
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *bytes, std::size_t n)
{
    kelmar_fuzz::note_input(bytes, n);
    if (kelmar_fuzz::write_file("saved", bytes, n)) kelmar_fuzz::run(session, sizeof session - 1);
    return 0;
}
