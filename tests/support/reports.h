#pragma once
// tests/support/reports.h -- what the product writes.

#include <gtest/gtest.h>
#include <cstdio>
#include <cstdlib>
#include <string>
#include "session/levels.h"
#include "session/output.h"
#include "tests/support/views.h"

namespace kelmar_test {

// What f writes to Output.
template <class F> std::string told(F f)
{
    char *bytes = nullptr;
    std::size_t size = 0;
    std::FILE *const shown = kelmar::Output;
    kelmar::Output = open_memstream(&bytes, &size);
    f();
    std::fclose(kelmar::Output);
    kelmar::Output = shown;
    const std::string text(bytes, size);
    std::free(bytes);
    return text;
}

// What f writes to standard output. At the highest command level no further one is pushed, so a fault
// unwinds.
template <class F> std::string report_of(F f)
{
    using namespace kelmar;
    const kept_view view;
    const auto saved = levelcount;
    levelcount = highest_level;
    testing::internal::CaptureStdout();
    caught_error([&] {
        Output = stdout;
        f();
    });
    levelcount = saved;
    return testing::internal::GetCapturedStdout();
}

}  // namespace kelmar_test
