// tests/fuzz/statements.cpp -- any bytes as standard input of a session.
//
// Whatever is typed, the session answers with values and numbered errors, and ends in order at the end of its
// input. One process runs session after session, so what one leaves behind is met by the next.
#include <cstdint>
#include <cstdio>
#include "session/output.h"
#include "session/start.h"

extern "C" int LLVMFuzzerInitialize(int *, char ***)
{
    kelmar::Output = std::fopen("/dev/null", "w");
    kelmar::prepare_session(KELMAR_SOURCE_DIR "/BACKWARD/");
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *bytes, std::size_t n)
{
    kelmar::run_text(bytes, n);
    return 0;
}
