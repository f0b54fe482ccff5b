// tests/hostile/fail_alloc.cpp -- a session in which one request to the heap fails.
//
//   fail_alloc K [exact] < statements
//
// The K-th request fails, once. The session must answer as it does when memory is short, and end in order.
// "not reached" on standard error says that the session made fewer requests.
#include <cstdio>
#include <cstdlib>
#include <string>
#include "numbers/stash.h"
#include "session/start.h"

using namespace kelmar;

int main(int argc, char **argv)
{
    if (argc < 2) return 2;
    exact_session = argc > 2;
    std::string statements;
    char buffer[4096];
    while (std::size_t n = std::fread(buffer, 1, sizeof(buffer), stdin)) statements.append(buffer, n);

    prepare_session(KELMAR_SOURCE_DIR "/BACKWARD/");
    fail_block_at = std::atoll(argv[1]);
    run_text(reinterpret_cast<const unsigned char *>(statements.data()), statements.size());
    if (fail_block_at > 0) std::fputs("not reached\n", stderr);
    return 0;
}
