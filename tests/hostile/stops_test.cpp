// A panic stop at every poll of a long product, division or power: what is stored is as it was.
//
// Each statement runs in a session of its own, again and again, and is given up at its first poll, at its
// second, and so on. Then the session shows all that it stores. Nothing may be lost either: sessions that end
// have given back as many records whether or not their statement was given up.
#include <gtest/gtest.h>
#include "poly/node.h"
#include "session/storm.h"
#include "tests/support/session_text.h"

using namespace kelmar;
using namespace kelmar_test;

namespace {

struct stop_case {
    const char *name;
    int exact;
    const char *store;      // statements whose values must last
    const char *statement;  // the one that is given up
};

const char *const two_dense = "&(J = x)\n&(J = y)\na := (1 + x + 2*y)^9:\nb := (3 - x*y + y)^8 + x:\n";
const char *const three_sparse = "&(J = x)\n&(J = y)\n&(J = z)\na := (1 + x^30*y + z^40 - x*z)^4:\n"
                                 "b := (3 - x^9*y*z + y^17)^5:\n";
const char *const one_long = "&(J = x)\na := (1 + 3*x)^60:\nb := (x^2 - 5*x + 7)^20:\n";
const char *const product = "&(J = x)\n&(J = y)\nb := (3 - x*y + y)^5 + x:\na := b*(1 + x + 2*y)^5:\n";

const stop_case cases[] = {
    {"product of floats", 0, two_dense, "c := a*b:"},
    {"product of integers", 1, two_dense, "c := a*b:"},
    {"product that replaces its factor", 1, two_dense, "a := a*b:"},
    {"sparse product", 1, three_sparse, "c := a*b:"},
    {"sparse product of floats", 0, three_sparse, "b := a*b:"},
    {"long product", 1, one_long, "c := a*b:"},
    {"square", 1, one_long, "a := a*a:"},
    {"power", 1, two_dense, "c := b^4:"},
    {"power that replaces its base", 0, three_sparse, "b := b^3:"},
    {"quotient of floats", 0, product, "c := a/b:"},
    {"quotient of integers", 1, product, "a := a/b:"},
    {"remainder", 1, two_dense, "c := a|b:"},
    {"whole quotient", 1, two_dense, "c := a\\b:"},
    {"whole quotient in one variable", 1, one_long, "a := a\\b:"},
    {"remainder of floats", 0, one_long, "a := a|b:"},
};

struct session_end {
    std::string shown;  // what is stored
    bool stopped;
    std::int64_t polls;
    std::int64_t nodes;
};

// A session that stores, runs the statement, and shows; given up at poll `stop`, counted from its start. 0:
// not.
session_end run(const stop_case &c, const std::string &statement, std::int64_t stop)
{
    exact_session = c.exact;
    const std::int64_t before = storm_polls;
    storm_stop_at = stop ? before + stop : 0;
    const std::string text = session_text(c.store + statement + "\n1234554321\na\nb\n");
    storm_stop_at = -1;
    exact_session = 0;
    const std::size_t mark = text.rfind("1234554321");
    return {mark == std::string::npos ? text : text.substr(mark),
            text.find("*** Panic stop.") != std::string::npos, storm_polls - before, live_polynodes()};
}

// The polls of a session on the input.
std::int64_t polls_of(const stop_case &c, const std::string &input)
{
    const std::int64_t before = storm_polls;
    exact_session = c.exact;
    storm_stop_at = 0;
    session_text(input);
    storm_stop_at = -1;
    exact_session = 0;
    return storm_polls - before;
}

std::string from_difference(const std::string &a, const std::string &b)
{
    std::size_t k = 0;
    while (k < a.size() && k < b.size() && a[k] == b[k]) ++k;
    return a.substr(k, 200);
}

void PrintTo(const stop_case &c, std::ostream *out)
{
    *out << c.statement;
}

class PanicStop : public testing::TestWithParam<stop_case> {};

TEST_P(PanicStop, AtAnyPollLeavesWhatIsStored)
{
    const stop_case &c = GetParam();
    const std::int64_t first = polls_of(c, c.store) + 1;
    const std::int64_t last = polls_of(c, std::string(c.store) + c.statement + "\n");
    const session_end idle = run(c, "", 0), whole = run(c, c.statement, 0);
    ASSERT_GT(last, first + 10) << "a statement too short for this test";
    EXPECT_FALSE(idle.stopped || whole.stopped);
    for (std::int64_t k = first; k <= last; ++k) {
        const session_end end = run(c, c.statement, k);
        const bool between = k == first || k + 2 >= last;  // before the statement begins, or when it is done
        ASSERT_TRUE(end.stopped) << "poll " << k;
        ASSERT_TRUE(end.shown == idle.shown || (between && end.shown == whole.shown))
            << "poll " << k << " of " << last
            << "; shown from the first difference on: " << from_difference(end.shown, idle.shown);
        if (!between) {
            ASSERT_EQ(end.nodes, idle.nodes) << "poll " << k;
        }
    }
    RecordProperty("stops", static_cast<int>(last - first + 1));
}

INSTANTIATE_TEST_SUITE_P(Statements, PanicStop, testing::ValuesIn(cases), [](const auto &each) {
    std::string name = each.param.name;
    for (char &c : name) c = c == ' ' ? '_' : c;
    return name;
});

}  // namespace
