// tests/support/resumed.cpp -- an input that leaves the level that reads it.
#include "tests/support/resumed.h"
#include <cstdio>
#include <cstdlib>
#include "session/input.h"
#include "session/output.h"
#include "session/scanner.h"
#include "session/start.h"
#include "tests/support/catch_error.h"
#include "tests/support/views.h"

namespace kelmar_test {

// The call, and where it writes.
struct resumed_call {
    void (*f)(void *);
    void *arg;
    std::FILE *shown;
};

static void run_shown(void *p)
{
    const resumed_call *const call = static_cast<const resumed_call *>(p);
    kelmar::Output = call->shown;
    call->f(call->arg);
}

std::string report_and_resume_of(void (*f)(void *), void *arg, const char *directory)
{
    using namespace kelmar;
    static bool prepared = false;
    const kept_view view;
    if (!prepared) prepare_session(directory);
    prepared = true;
    static constexpr char resume[] = "\n&_p\n";
    input_stream text;
    input_stream *const input = Input;
    open_text(&text, reinterpret_cast<const unsigned char *>(resume), sizeof resume - 1);
    Input = &text;
    char *bytes = nullptr;
    std::size_t size = 0;
    std::FILE *const shown = Output;
    resumed_call call = {f, arg, open_memstream(&bytes, &size)};
    caught_error_of(run_shown, &call);
    Output = shown;
    std::fclose(call.shown);
    Input = input;
    const std::string all(bytes, size);
    std::free(bytes);
    return all;
}

}  // namespace kelmar_test
