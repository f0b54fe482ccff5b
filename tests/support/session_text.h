#pragma once
// tests/support/session_text.h -- run statements as a session would, and learn what it wrote.

#include <gtest/gtest.h>
#include <cstdio>
#include <cstdlib>
#include <string>
#include "session/output.h"
#include "session/scanner.h"
#include "session/start.h"

namespace kelmar_test {

inline void prepare_session_once()
{
    static bool done = false;
    if (!done) kelmar::prepare_session(KELMAR_SOURCE_DIR "/BACKWARD/");
    done = true;
}

// What a session on this input writes, from its first prompt to its farewell.
inline std::string session_text(const std::string &input)
{
    prepare_session_once();
    char *bytes = nullptr;
    std::size_t size = 0;
    std::FILE *const shown = kelmar::Output;
    kelmar::Output = open_memstream(&bytes, &size);
    kelmar::run_text(reinterpret_cast<const unsigned char *>(input.data()), input.size());
    std::fclose(kelmar::Output);
    kelmar::Output = shown;
    const std::string text(bytes, size);
    std::free(bytes);
    return text;
}

// The value that the last statement of the input shows.
inline std::string last_value(const std::string &input)
{
    std::string text = session_text(input + "\n");
    const std::string end = "\n\n>\n bye\n";
    EXPECT_GE(text.size(), end.size());
    EXPECT_EQ(text.substr(text.size() - end.size()), end) << text;
    text.resize(text.size() - end.size());
    return text.substr(text.rfind('\n') + 1);
}

}  // namespace kelmar_test
