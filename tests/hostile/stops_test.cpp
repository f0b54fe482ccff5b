// A panic stop at every poll of a computation, a change of the ring or a save: what is stored stays.
//
// Each statement runs in a session of its own, again and again, and is given up at its first poll, at its
// second, and so on. Then the session shows all that it stores. Nothing may be lost either: sessions that end
// have given back as many records whether or not their statement was given up.
#include <gtest/gtest.h>
#include <set>
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

const char *const fractions =
    "&(J = x)\n&(J = y)\na := (x + 2*y)^3/(x*y - 1)^2:\nb := (x - y + 1)^2/(x + 3*y)^3:\n";
const char *const common =
    "&(J = x)\n&(J = y)\na := (x + 2*y + 1)^3*(x - y)^4:\nb := (x + 2*y + 1)^2*(x*y + 5)^3:\n";
const char *const arrays = "@[**]\n&(J = x)\n[m] := [[x, 2, 3][4, 5 - x, 6][7, 8, x^2]]:\n"
                           "[k] := [[1, x, 3][1/2, 5, x + 1][7, 1, 9]]:\na := 5:\nb := 1/(x + 1):\n"
                           "Array s[30, 30] Sparse:\ns[3, 7] := x:\ns[7, 2] := x + 1:\ns[2, 29] := 7:\n";
const char *const values =
    "@[**]\n&(J = x)\n&(J = y)\na := (x + 2*y)^3/7:\nb := 100/3:\n[m] := [[1, 2/3, x][x*y, 15, 1/y]]:\n"
    "Func F(n) = n + 1 .\n";
const char *const residues =
    "@[**]\n&(p = 101)\n&(J = x)\n&(J = y)\na := (x + 2*y)^3:\nb := 100:\n[m] := [[1, 2, x][x*y, 15, y]]:\n";

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
    {"sum of fractions", 1, fractions, "a := a + b:"},
    {"product of fractions", 1, fractions, "c := a*b:"},
    {"power of a fraction", 1, fractions, "b := b^4:"},
    {"quotient of fractions of floats", 0, fractions, "a := a/b:"},
    {"gcd", 1, common, "c := GCD(a, b):"},
    {"gcd that replaces", 1, common, "a := GCD(a, b):"},
    {"gcd by pseudo division", 1, common, "&(O = 0); c := GCD(a, b):"},
    {"gcd of floats", 0, common, "c := GCD(a, b):"},
    {"fraction in lowest terms", 1, common, "a := a/b:"},
    {"product of arrays", 1, arrays, "[m] := [m]*[k]:"},
    {"product of arrays of floats", 0, arrays, "[m] := [m]*[k]:"},
    {"power of an array", 1, arrays, "[k] := [m]^3:"},
    {"product of sparse arrays", 1, arrays, "[s] := [s]*[s]:"},
    {"sum of arrays", 1, arrays, "[m] := [m] + 3*[k]:"},
    {"residues", 1, values, "&(p = 101)"},
    {"fields", 1, values, "&(p = 256)"},
    {"integers again", 1, residues, "&(p = _i)"},
    {"save", 1, values, "&(S = 'stops_saved');"},
    {"save of floats", 0, values, "&(S = 'stops_saved');"},
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
    const std::string text = session_text(c.store + statement + "\n1234554321\na\nb\n[m]\n[k]\n[s]\n");
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
    run(c, "", 0);
    const session_end idle = run(c, "", 0), whole = run(c, c.statement, 0);
    ASSERT_EQ(run(c, "", 0).nodes, run(c, "", 0).nodes) << "lost without any stop";
    ASSERT_GT(last, first) << "a statement too short for this test";
    EXPECT_FALSE(idle.stopped || whole.stopped);
    for (std::int64_t k = first; k <= last; ++k) {
        const session_end end = run(c, c.statement, k);
        const bool between = k == first || k + 2 >= last;  // before the statement begins, or when it is done
        ASSERT_TRUE(end.stopped) << "poll " << k;
        ASSERT_TRUE(end.shown == idle.shown || (between && end.shown == whole.shown))
            << "poll " << k << " of " << last
            << "; shown from the first difference on: " << from_difference(end.shown, idle.shown);
        if (!between && end.nodes != idle.nodes) {  // an older result may be kept, but only once
            ASSERT_LE(run(c, c.statement, k).nodes, end.nodes) << "poll " << k;
        }
    }
    RecordProperty("stops", static_cast<int>(last - first + 1));
}

INSTANTIATE_TEST_SUITE_P(Statements, PanicStop, testing::ValuesIn(cases), [](const auto &each) {
    std::string name = each.param.name;
    for (char &c : name) c = c == ' ' ? '_' : c;
    return name;
});

// Levels that take the operands away ------------------------------------------------------------------------

struct robbed_case {
    const char *name;
    int exact;
    const char *store;
    const char *value;  // a statement that shows a value
};

const robbed_case robbed_cases[] = {
    {"product", 1, two_dense, "a*b"},
    {"sparse product of floats", 0, three_sparse, "a*b"},
    {"power", 1, two_dense, "a^3"},
    {"quotient", 1, product, "a/b"},
    {"remainder", 1, two_dense, "a|b"},
    {"sum of fractions", 1, fractions, "a + b"},
    {"product of fractions", 1, fractions, "a*b"},
    {"quotient of fractions of floats", 0, fractions, "a/b"},
    {"gcd", 1, common, "GCD(a, b)"},
    {"gcd of floats", 0, common, "GCD(a, b)"},
    {"product of arrays", 1, arrays, "[m]*[k]"},
    {"power of an array", 0, arrays, "[m]^3"},
    {"sum of arrays", 1, arrays, "[m] + 3*[k]"},
    {"save", 1, values, "&(S = 'stops_saved')"},
};

// The level gives the operands other values, twice, and takes the records that they had into use again.
const char *const rob = "\na := 5:\nb := 6:\n@(a, b)\na := 5:\nb := 6:\n"
                        "[m] := [[1, 1, 1][1, 1, 1][1, 1, 1]]:\n[k] := [[2, 2, 2][2, 2, 2][2, 2, 2]]:\n"
                        "&(S = 'stops_other')\n&(S = '@')\nw := (x + 1)^20:\nw := 1/(x + 7)^9:\nw := (x - "
                        "1)^20*(x + 2)^3:\n&_p\n";
const char *const other[2] = {"a := 5:\n[m] := [[1, 1, 1][1, 1, 1][1, 1, 1]]:\n",
                              "b := 6:\n[k] := [[2, 2, 2][2, 2, 2][2, 2, 2]]:\n"};

// What the statement shows, the operands having other values behind `changes`, or robbed at that poll of the
// statement; *polls = how many it has.
std::string value_shown(const robbed_case &c, const std::string &changes, std::int64_t poll,
                        std::int64_t *polls)
{
    const std::string names = "@[**]\n@a\n@b\n@w\n&(J = -x)\n&(J = -y)\n&(J = -z)\n";
    const std::string head = names + c.store + changes + "1234554321\n";
    exact_session = c.exact;
    storm_stop_at = 0;
    const std::int64_t start = storm_polls;
    session_text(head);
    const std::int64_t length = storm_polls - start;
    storm_answers = rob;
    storm_stop_at = poll ? storm_polls + length + poll : 0;
    const std::string text = session_text(head + c.value + "\n");
    storm_answers = nullptr;
    storm_stop_at = -1;
    exact_session = 0;
    if (polls) *polls = storm_polls - start - 2 * length;
    return text.substr(text.rfind("1234554321"));
}

void PrintTo(const robbed_case &c, std::ostream *out)
{
    *out << c.value;
}

class RobbedStatement : public testing::TestWithParam<robbed_case> {};

TEST_P(RobbedStatement, GoesOnWithTheOperandsThatItHasRead)
{
    const robbed_case &c = GetParam();
    std::int64_t polls = 0;
    value_shown(c, "", 0, nullptr);
    std::set<std::string> right = {value_shown(c, "", 0, &polls), value_shown(c, other[0], 0, nullptr),
                                   value_shown(c, other[1], 0, nullptr),
                                   value_shown(c, std::string(other[0]) + other[1], 0, nullptr)};
    ASSERT_GT(polls, 5);
    for (std::int64_t k = 1; k < polls; ++k) {
        const std::string shown = value_shown(c, "", k, nullptr);
        ASSERT_TRUE(right.count(shown)) << "poll " << k << ": " << shown;
    }
}

INSTANTIATE_TEST_SUITE_P(Statements, RobbedStatement, testing::ValuesIn(robbed_cases), [](const auto &each) {
    std::string name = each.param.name;
    for (char &c : name) c = c == ' ' ? '_' : c;
    return name;
});

}  // namespace
