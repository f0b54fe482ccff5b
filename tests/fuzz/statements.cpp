// tests/fuzz/statements.cpp -- any bytes as standard input of a session.
//
// Whatever is typed, the session answers with values and numbered errors, and ends in order at the end of its
// input. One process runs session after session, so what one leaves behind on free lists is met by the next.
// Compiled once with FUZZ_EXACT 0 and once with 1, the sort of session.
#include "tests/fuzz/harness.h"

extern "C" int LLVMFuzzerInitialize(int *, char ***)
{
    kelmar_fuzz::prepare(FUZZ_EXACT);
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *bytes, std::size_t n)
{
    kelmar_fuzz::note_input(bytes, n);
    kelmar_fuzz::run(bytes, n);
    return 0;
}
