// A level that a heap without memory pushes at any request, and whose statements change everything in use.
//
// Each statement runs in a function again and again, and another of its requests fails. What the level does
// is what an interrupted statement must stand (levels_test.cpp); then the statement goes on, or is given up.
// Best with sanitizers and every record a request of its own.
#include <gtest/gtest.h>
#include <cstdio>
#include "tests/hostile/level_cases.h"

using namespace kelmar;
using namespace kelmar_test;

namespace {

constexpr std::int64_t never = std::int64_t{1} << 60;

// What a session on the input writes; request `k` of it fails. *made = how many it makes.
std::string starved_text(const std::string &input, std::int64_t k, std::int64_t *made = nullptr)
{
    fail_block_at = k;
    const std::string text = session_text(input);
    if (made) *made = k - fail_block_at;
    fail_block_at = 0;
    return text;
}

void starve_everywhere(int exact, const std::string &statement)
{
    directory here;
    exact_session = exact;
    session_text(std::string(clean) + store + "&(S = 'levels_stored')\n&(S = '@')\n");
    const std::string head = std::string(clean) + store + "&(e = 0)\nFunc Z = " + statement + " .\n";
    const std::string tail = std::string("\n&@\n@Z\n") + shown;
    ASSERT_EQ(disorder(session_text(head + "Z\n" + tail)), "") << "while there is memory";
    std::int64_t first, last;
    starved_text(head, never, &first);
    starved_text(head + "Z\n", never, &last);
    const std::int64_t step = (last - first) / (levels() * 4) + 1;
    int h = exact;
    for (std::int64_t k = first + 1; k <= last; k += step) {
        for (int n = 0; n < 2 + 3 * (levels() >= all_levels); ++n, h = (h + 1) % kinds) {
            for (const char *leave : {leave_levels, "&@\n"}) {
                const std::string answers = std::string("\n") + hostile[h] + leave;
                SCOPED_TRACE("answers " + std::to_string(h) + ", " + leave + "request " + std::to_string(k));
                if (std::getenv("KELMAR_TRACE")) std::fprintf(stderr, "%d %s %ld\n", h, leave, long(k));
                const std::string end = starved_text(head + "Z\n" + answers + tail, k);
                ASSERT_EQ(disorder(end), "");
                ASSERT_NE(end.find("\n42\n"), std::string::npos) << end;
            }
        }
    }
    session_text(std::string(clean) + "@Z\n");
    exact_session = 0;
}

class StarvedStatement : public testing::TestWithParam<waiting_case> {};

TEST_P(StarvedStatement, LeavesTheSessionInOrder)
{
    starve_everywhere(0, GetParam().statement);
}

TEST_P(StarvedStatement, LeavesTheExactSessionInOrder)
{
    starve_everywhere(1, GetParam().statement);
}

INSTANTIATE_TEST_SUITE_P(Statements, StarvedStatement, testing::ValuesIn(waiting_cases),
                         [](const auto &each) { return std::string(each.param.name); });

}  // namespace
