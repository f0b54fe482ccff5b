// tests/fuzz/statements.cpp -- any bytes as standard input of a session.
//
// Whatever is typed, the session answers with values and numbered errors, and ends in order at the end of its
// input. One process runs session after session, so what one leaves behind is met by the next.
#include "session/fuzz_entry.h"

#include <cstddef>
#include <cstdint>
#include <cstdlib>

using namespace kelmar;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *bytes, std::size_t n)
{
    if (kelmar_run_session(bytes, n) != 0) std::abort();
    return 0;
}
