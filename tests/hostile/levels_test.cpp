// A level that is pushed at any poll, and whose statements change everything that the interrupted one uses.
//
// Each statement runs in a session of its own, again and again, and is interrupted at its first poll, at its
// second, and so on. The level assigns, deletes, declares, renames, saves and loads; then the statement
// goes on, or is given up. What it yields may be anything, but the session stays in order: sanitizers
// find nothing, the store is sound, values have their normal form, nothing is lost, and what it saves can
// be read.
#include <gtest/gtest.h>
#include <algorithm>
#include <cstdio>
#include <vector>
#include "session/storm.h"
#include "tests/hostile/level_cases.h"

using namespace kelmar;
using namespace kelmar_test;

namespace {

// Sessions -----------------------------------------------------------------------------------------------

struct session_end {
    std::string text;
    std::int64_t polls;
};

// A session on the input; at poll `stop` of it, and each `every` polls later, a level answers so.
session_end run(const std::string &input, std::int64_t stop, const char *answers, std::int64_t every = 0)
{
    const std::int64_t before = storm_polls;
    storm_answers = answers;
    storm_stop_at = stop ? before + stop : 0;
    storm_stop_every = every;
    session_end end;
    end.text = session_text(input);
    end.polls = storm_polls - before;
    storm_answers = nullptr;
    storm_stop_at = -1;
    storm_stop_every = 0;
    return end;
}

// At which polls: all of a short statement, some of a long one.
std::vector<std::int64_t> chosen_polls(std::int64_t first, std::int64_t last)
{
    const std::int64_t step = (last - first) / levels() + 1;
    std::vector<std::int64_t> chosen;
    for (std::int64_t k = first; k <= last; k += step) chosen.push_back(k + (chosen.size() * 7) % step);
    return chosen;
}

void interrupt_everywhere(int exact, const char *statement)
{
    directory here;
    exact_session = exact;
    run(std::string(clean) + store + "&(S = 'levels_stored')\n&(S = '@')\n", 0, nullptr);
    const std::string head = std::string(clean) + store, whole = head + statement + shown;
    const std::int64_t first = run(head, 0, nullptr).polls + 1;
    const session_end idle = run(whole, 0, nullptr);
    const std::int64_t last = run(head + statement + "\n", 0, nullptr).polls;
    ASSERT_EQ(disorder(idle.text), "") << "without any level";
    ASSERT_GE(last, first);
    for (int h = 0; h < kinds; ++h) {
        if (!is_wanted(h, statement, exact)) continue;
        for (const char *leave : {leave_levels, "&@\n"}) {
            const char *const given = std::getenv("KELMAR_TEXT");
            const std::string answers = std::string("\n") + (given ? given : hostile[h]) + leave;
            for (const std::int64_t k : chosen_polls(first, last)) {
                SCOPED_TRACE("answers " + std::to_string(h) + ", " + leave + "poll " + std::to_string(k));
                if (std::getenv("KELMAR_TRACE")) std::fprintf(stderr, "%d %s %ld\n", h, leave, long(k));
                const session_end end = run(whole, k, answers.c_str());
                ASSERT_EQ(disorder(end.text), "");
                ASSERT_NE(end.text.find("\n42\n"), std::string::npos) << end.text;
            }
            // On purpose: a variable that was linked keeps its record when it is cancelled.
            if (answers.find("Compile") != std::string::npos || keeps_links(statement)) continue;
            const std::int64_t middle = (first + last) / 2;
            run(whole, middle, answers.c_str());
            run(clean, 0, nullptr);
            const std::int64_t before = records();
            run(whole, middle, answers.c_str());
            run(clean, 0, nullptr);
            EXPECT_EQ(records(), before)
                << "answers " << h << ", " << leave << " at poll " << middle << " lose records";
        }
    }
    run(clean, 0, nullptr);
    exact_session = 0;
}

class HostileLevel : public testing::TestWithParam<waiting_case> {};

TEST_P(HostileLevel, LeavesTheSessionInOrder)
{
    interrupt_everywhere(0, GetParam().statement);
}

TEST_P(HostileLevel, LeavesTheExactSessionInOrder)
{
    interrupt_everywhere(1, GetParam().statement);
}

INSTANTIATE_TEST_SUITE_P(Statements, HostileLevel, testing::ValuesIn(waiting_cases),
                         [](const auto &each) { return std::string(each.param.name); });

// Long loops over words -----------------------------------------------------------------------------------

// The number on the first line that holds nothing else and at least seven digits.
std::string residue_shown(const std::string &text)
{
    std::istringstream lines(text);
    for (std::string line; std::getline(lines, line);) {
        if (line.size() > 6 && line.find_first_not_of("0123456789") == std::string::npos) return line;
    }
    return "none: " + text;
}

TEST(LongFactorial, AnswersInterruptsAndGoesOn)
{
    const std::string head = "&(p = 2147483629)\n", tail = "\n&(p = _i)\n";
    exact_session = 1;
    const session_end brief = run(head + "2! + Bin(2, 1)" + tail, 0, nullptr);
    const session_end whole = run(head + "20000000! + Bin(20000000, 9000000)" + tail, 0, nullptr);
    EXPECT_GE(whole.polls, brief.polls + 6);
    for (std::int64_t k = brief.polls / 2; k < whole.polls; k += 3) {
        const session_end end = run(head + "20000000! + Bin(20000000, 9000000)" + tail, k,
                                    "\n7! + Bin(9, 3)\n&_p\n");
        EXPECT_EQ(disorder(end.text), "");
        EXPECT_EQ(residue_shown(end.text), residue_shown(whole.text)) << "poll " << k;
    }
    exact_session = 0;
}

// Transcripts ---------------------------------------------------------------------------------------------

// Every transcript, a level now and then. Where few levels are wanted a transcript gets one of the answers.
std::vector<std::filesystem::path> transcripts()
{
    std::vector<std::filesystem::path> found;
    for (const auto &entry :
         std::filesystem::recursive_directory_iterator(KELMAR_SOURCE_DIR "/tests/session")) {
        if (entry.path().extension() == ".in" && entry.file_size() < 4096) found.push_back(entry.path());
    }
    std::sort(found.begin(), found.end());
    return found;
}

class HostileTranscript : public testing::TestWithParam<int> {};

TEST_P(HostileTranscript, LeavesTheSessionInOrder)
{
    directory here;
    const std::string answers = std::string("\n") + hostile[GetParam()] + leave_levels;
    run(std::string(clean) + store + "&(S = 'levels_stored')\n&(S = '@')\n", 0, nullptr);
    int number = 0;
    for (const std::filesystem::path &path : transcripts()) {
        if (number++ % kinds != GetParam() && levels() < all_levels) continue;
        std::stringstream text;
        text << std::ifstream(path).rdbuf();
        if (text.str().find("1000000") != std::string::npos) continue;  // long work
        exact_session = path.string().find(".exact") != std::string::npos;
        if (std::getenv("KELMAR_TRACE")) std::fprintf(stderr, "%s\n", path.c_str());
        const session_end end = run(text.str(), 20 + 7 * GetParam(), answers.c_str(), 97);
        ASSERT_EQ(disorder(end.text), "") << path;
        run(std::string("&@\n&(p = _i)\n&(N = 1)\n&(a = 1)\n&(M = '>')\n") + clean, 0, nullptr);
    }
    exact_session = 0;
}

INSTANTIATE_TEST_SUITE_P(Answers, HostileTranscript, testing::Range(0, kinds));

}  // namespace
