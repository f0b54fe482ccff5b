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
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <string>
#include <vector>
#include "matrix/pins.h"
#include "matrix/store.h"
#include "numbers/mode.h"
#include "numbers/stash.h"
#include "poly/node.h"
#include "quoly/owned.h"
#include "session/levels.h"
#include "session/stored_values.h"
#include "session/storm.h"
#include "tests/support/session_text.h"

using namespace kelmar;
using namespace kelmar_test;

namespace {

// What is interrupted --------------------------------------------------------------------------------------

struct waiting_case {
    const char *name;
    const char *statement;
};

// Every session begins so.
const char *const clean =
    "&@\n@[**]\n&(l = 0)\n@a\n@b\n@c\n@d\n@e\n@g\n@h\n@i\n@j\n@k\n@s\n@t\n@w\n@z\n@<F>\n@F\n@G\n@H\n@P\n"
    "&(J = -x)\n&(J = -y)\n&(J = -u)\n&(e = 0)\n&(R = '@')\n&(S = '@')\n";
const char *const store =
    "&(J = x)\n&(J = y)\na := (1 + x + 2*y)^4*(x - y):\nb := (3 - x*y + y)^3*(1 + x + 2*y):\n"
    "c := (x + 2*y)^2/(x*y - 1):\nd := 5:\nk := 0:\ns := 0:\n"
    "[m] := [[1, x, 3][4, 5 - x, 6][7, 8, x^2]]:\n[k] := [[1, 2, 3][4, 5, 6][7, 8, 9]]:\n[r] := [(3, 2, "
    "1)]:\n"
    "Array t[9, 9] Sparse:\nt[1, 2] := x:\nt[2, 1] := 5:\nt[2, 7] := y:\nt[9, 9] := 1:\nArray n[3, 3]:\nn[1, "
    "2] := x:\n"
    "Func F(n) = s := 0; for i = 1 to n do s := s + i; k := s*a od; s .\n"
    "Func G(^p, q) = p := p*q; for i = 1 to 3 do p := p + i od; p .\n"
    "Func H(p, n) = for i = 1 to n do p[i, i] := i*p[1, 1]; [p] := [p]*[p] od; p[1, 2] .\n"
    "Func L(n) = Compile(s, r[2]); for i = 1 to n do s := s + i*r[2]; r[2] := s od; s .\n"
    "Func I(n) = Integer; j := 0; while j < n do j := j + 1; r[1] := j od; j .\n"
    "Func P(n) = if n < 2 then Return(1) else Return(n*P(n - 1) + a) fi .\n";

const waiting_case waiting_cases[] = {
    {"sum", "a + b*c - c"},
    {"product", "a*b"},
    {"assigned_product", "a := a*b"},
    {"increment", "d :+ 3*d"},
    {"power", "a^3"},
    {"quotient", "a/b"},
    {"remainder", "a|b"},
    {"whole_quotient", "a\\b"},
    {"gcd", "GCD(a, b)"},
    {"fractions", "c*c + 1/c"},
    {"hand_over", "g := *a*b"},
    {"evaluation", "a#(x = b, y = 3)"},
    {"evaluation_of_a_fraction", "c#(2, b)"},
    {"derivative", "Deriv(a*b, x, 2)"},
    {"content", "Content(a*(y + 1), x)"},
    {"square_free", "Sqfree(b*b, [h])"},
    {"last_value", "a; < * b + <"},
    {"for_loop", "for i = 1 to 6 do s := s + i*a; a := a + 1 od"},
    {"while_loop", "while k < 6 do k := k + 1; s := s + k; a := a*1 od"},
    {"if", "for i = 1 to 3 do if i > 1 and a <> b then s := s + 1 else s := s - a fi od"},
    {"call", "F(5) + a*F(3)"},
    {"reference", "G(a, b) + a"},
    {"reference_to_an_entry", "G(m[1, 1], b) + m[1, 1]"},
    {"array_parameter", "H([m], 2) + H([k], 2)"},
    {"linked_body", "L(6) + L(4)"},
    {"integers", "I(9)"},
    {"recursion", "P(5)"},
    {"sum_of_terms", "Sigma< i = 1, 6 > [i*a + Prod< j = 1, 2 > [j*b]]"},
    {"array_product", "[w] := [m]*[k]*[m]"},
    {"array_that_becomes_its_product", "[m] := [m]*[k]"},
    {"array_sum", "[m] := [m] + 3*[k] - [n]"},
    {"sparse_product", "[t] := [t]*[t]"},
    {"sparse_sum", "[w] := [t] + 2*[t] - [t]"},
    {"sparse_and_dense", "[w] := [t[1~3, 1~3]]*1; [t]"},
    {"entries_by_entries", "[w] := [m]/[k]"},
    {"section", "[m[1~2, 1~2]] := [k[2~3, 2~3]]*a"},
    {"diagonal", "Diag[m] := [(a, b, c)]*2"},
    {"literal", "[w] := [[a, b, c][1, F(2), 3]]"},
    {"angle_literal", "[w] := [<i = 1, 4> <j = 1, 3> [a*i + j]]"},
    {"sparse_literal", "Array w[5, 5] Sparse; [w] := [[1, 2, a, 4, b][3, 1, F(2)]]"},
    {"transposed", "[w] := Trans[m]*[m]"},
    {"entry", "m[1, F(1)] := m[F(1), 2]*a + t[2, 1]"},
    {"entry_of_a_sparse_array", "t[F(1), 3] := t[2, 7]*a"},
    {"entry_increment", "r[F(1)] :+ d*2"},
    {"system_array", "[m]*[k]; [<]*2; <[2, 2] + a"},
    {"array_at_values", "a#[k]"},
    {"joined", "[w] := [k]_[m]"},
    {"sumup", "Sumup[m] + Trace[m]"},
    {"displayed_array", "[m]; ![t]; !([k]:7)"},
    {"written_out", "!(a, b, ' text ', [m], d)"},
    {"listing", "&v; &f*; &(F = 1)"},
    {"switched_rows", "Switchrow([m], 1, 3); Switchcol([t], 1, 2); Reverse[r]; Scale([m], a)"},
    {"located", "Locate([t], y) + Iszero[n]"},
    {"declared", "Array w[4, 4], z[3, 3] Sparse, h[7]; Array m[2, 2]; m[1, 1] := a"},
    {"made_sparse", "Sparse[m]; [m]*[m]"},
    {"renamed", "Rename[m] := '[w]'; [w]"},
    {"swapped", "Swap(a, b); Move(c, d); Multo(a, b); Addto(a, b); Setcoef(a, 1, b)"},
    {"array_of_arrays", "%[1] := [m]; %[2] := [k]; [%1]*[%2]"},
    {"saved", "&(S = 'levels_saved')"},
    {"saved_by_name", "&(S = 'levels_named'); &S a, b, [m], [t], F"},
    {"loaded", "&(R = 'levels_stored')"},
    {"loaded_twice", "&(R = 'levels_stored'); &r"},
    {"definition", "Func Q(n) = for i = 1 to n do a := a*i od; a ."},
    {"cancelled", "@(a, b, [m], F)"},
    {"fast_reader", "&_n [(3x^2 + x)y^2 + 7]*a + &_n [x y]/[x + 1]"},
    {"errors", "&(e = 1); nowhere + 1; x/0; F(1; 2); 3"},
    {"variable", "&(J = u); a*u + b; &(J = -u)"},
    {"negative_exponents", "&(l = 1); a/x^2; &(l = 0)"},
    {"pushed_level", "a + &_P; b*c; &_p; 5"},
    {"factorials", "20! + Bin(30, 7)"},
    {"merged", "[w] := Merge([r], [r]); Max([r]) + Topoly[r]"},
};

// What the level does -----------------------------------------------------------------------------------

const char *const hostile[] = {
    // other values for every name
    "a := 5\nb := 6\nc := 7\nd := 1/3\nk := 2\ns := a\nm[1, 1] := 0\nm[2, 2] := a\nt[2, 1] := 0\nt[2, 7] := "
    "x + 1\n"
    "t[5, 5] := 9\n[m] := [[1, 1, 1][1, 1, 1][1, 1, 1]]\n[k] := [[2, 2, 2][2, 2, 2][2, 2, 2]]\n[r] := 0\n"
    "[t] := 2*[t]\nw := (x + 1)^20*(x - 2)^9\nw := (x - y)^9\n",
    // values that change in place, or are handed over
    "a :+ 1\nb :- 2\nd :+ 7\ng := *a + *b*2\nc := *c\nm[1, 1] :+ 1\nr[1] :- 3\nMulto(a, b)\nAddto(b, "
    "3)\nSwap(a, b)\nMove(a, c)\n"
    "Setcoef(b, 1, x + 1)\nAddcoef(b, 1, 2)\nSwap(a, b)\nScale([m], 3)\nScale([t], 1/2)\nSwitchrow([m], 1, "
    "2)\n"
    "Switchcol([t], 1, 2)\nReverse[r]\nReverse[t]\nSTrans[t]\nDiag[m] := 1\nDiag[t] := 0\n[m[1~2, 1~2]] := "
    "4\nw := (x + 1)^20\n",
    // nothing is left
    "@(a, b, c, d)\n@k\n@s\n@i\n@j\n@[**]\n@F\n@G\n@H\n@L\n@I\n@P\nw := (x + 1)^20\nArray w[3, 3], z[9]\n[w] "
    ":= 3\n[z] := 4\n",
    // other shapes, kinds and names
    "Array m[2, 2]\nArray k[2, 9] Sparse\nArray t[3, 3]\n[r] := [[1, 2][3, 4]]\nSparse[n]\nRename[r] := "
    "'[w]'\n[m] := [(1)]\n"
    "Rename[m] := '[k]'\n%[1] := [w]\n[t] := [[1, 2][3, 4]]\nSparse[t]\n@[t]\nArray t[2, 2] "
    "Sparse\n@[w]\nArray r[1]\nr[1] := x\n",
    // other functions, and names as counters and parameters
    "Func F(n) = 7 .\nFunc G(^p, q) = p := q .\nFunc H(p, n) = 1 .\nG(a, b)\nG(m[1, 1], 2)\nfor a = 1 to 3 "
    "do b := a od\n"
    "for i = 1 to 2 do s := i od\nF(3)\n@<F>\n@<G>\nFunc Z(a, b) = a := b; for k = 1 to 3 do a := a + k od; "
    "a .\nZ(1, 2)\nH([m], 3)\n",
    "Func L(n) = Compile(s, a); s := n; a := n; s .\nL(2)\nL(3)\n",
    // files
    "&(S = 'levels_other')\n&(S = '@')\n&(R = 'levels_stored')\n&r\n&(R = '@')\n&(R = 'levels_stored')\n&S "
    "a, [m]\n&(S = '@')\n",
    "&(R = '@')\n&(R = 'levels_short')\n&(S = 'levels_other'); \n",
    // the display, listings, the array [<] and the last value
    "[m]*2\n[<] + [<]\n<[1, 1]\n< + 1\n![t]\n!(a, b, [m])\n&v\n&f*\n&g\n&_G\n&G\n&j\na#(x = 2)\n[<]\n",
    // variables and negative exponents
    "&(J = u)\na*u\n&(J = -u)\nb\n",
    "&(J = -x)\n",
    "&(J = -y)\n&(J = y)\n",
    "&(l = 1)\na/x\nc\n&(l = 0)\nc\n",
    "&(J = u)\n&(l = 1)\n&(P = u^2 + 1)\n",
    // the ground ring, and settings
    "&(p = 101)\n",
    "&(a = 0)\nm[0, 0]\n&(a = 1)\n&(# = 6)\n&(# = 40)\n&Z\n&Z\n&(t = 1)\n&(t = 0)\n&(N = 0)\n&(N = "
    "1)\n&_l\n&_l\n",
    // errors, and levels on top
    "x/0\nnowhere\n&_P\na := 1\n&_p\nb\n",
    "&(e = 1)\n2 + )\na := 3\n&_p\n&(e = 0)\n",
    "2 + )\n",
    "&@\n",
};

constexpr int kinds = sizeof hostile / sizeof *hostile;

// Leaves the level, and those that errors have pushed on top of it; what is too much is never read.
const char *const leave_levels = "&_p\n&_p\n&_p\n&_p\n&_p\n&_p\n&_p\n&_p\n";

const char *const short_file = "a := a + 1;\nb := 7;\n[m] := 3*[m];\nx/0;\n";

// Sessions -----------------------------------------------------------------------------------------------

// Records in use.
std::int64_t records()
{
    std::int64_t n = live_polynodes() + owned_count;
    for (const stash *s = primal_stash.next; s != &primal_stash; s = s->next) n += s->slugs_used;
    return n;
}

std::int32_t malformed = 0;

void check_form(quolynode **slot)
{
    if (!(*slot)->is_num && !(*slot)->top) ++malformed;
}

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

// The session is in order.
std::string disorder(const session_end &end)
{
    std::ostringstream wrong;
    if (end.text.find("Kelmar error") != std::string::npos) wrong << " an internal fault;";
    if (end.text.size() < 6 || end.text.substr(end.text.size() - 6) != "\n bye\n") wrong << " no farewell;";
    if (!store_is_sound()) wrong << " the store is unsound;";
    malformed = 0;
    for_each_stored(check_form);
    if (malformed) wrong << " malformed values;";
    if (owned_count) wrong << " values are owned;";
    if (values_pinned > 0) wrong << " values are pinned;";
    if (levelcount != 1) wrong << " a level is left over;";
    return wrong.str().empty()
               ? ""
               : wrong.str() + "\n" + end.text.substr(end.text.size() > 3000 ? end.text.size() - 3000 : 0);
}

class directory {
public:
    directory() : before(std::filesystem::current_path())
    {
        char name[] = "/tmp/kelmar-levels.XXXXXX";
        path = mkdtemp(name);
        std::filesystem::current_path(path);
        std::ofstream("levels_short") << short_file;
    }
    ~directory()
    {
        std::filesystem::current_path(before);
        std::filesystem::remove_all(path);
    }

private:
    std::filesystem::path before, path;
};

const char *const shown = "\n&@\n&(l = 0)\na\nb\nc\n[m]\n[k]\n[t]\n[r]\n&(S = 'levels_end')\n&(S = '@')\n&v\n"
                          "&(R = 'levels_end')\n6*7\n";

constexpr std::int64_t all_levels = 8;

// At so many polls of a statement.
std::int64_t levels()
{
    const char *const wanted = std::getenv("KELMAR_LEVELS");
    return wanted ? std::atoll(wanted) : all_levels;
}

// At which polls: all of a short statement, some of a long one.
std::vector<std::int64_t> chosen_polls(std::int64_t first, std::int64_t last)
{
    const std::int64_t step = (last - first) / levels() + 1;
    std::vector<std::int64_t> chosen;
    for (std::int64_t k = first; k <= last; k += step) chosen.push_back(k + (chosen.size() * 7) % step);
    return chosen;
}

// Answers of that index are given to the statement: all, or where few levels are wanted a quarter of them, or
// in a run by hand those of the environment.
bool is_wanted(int index, const char *statement, int exact)
{
    const char *const only = std::getenv("KELMAR_ANSWERS");
    if (only) return std::atoi(only) == index;
    return levels() >= all_levels || (index + std::strlen(statement) + exact) % 4 == 0;
}

// It calls the function whose body is linked.
bool keeps_links(const std::string &statement)
{
    return statement.find("L(") != std::string::npos;
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
    ASSERT_EQ(disorder(idle), "") << "without any level";
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
                ASSERT_EQ(disorder(end), "");
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

void PrintTo(const waiting_case &c, std::ostream *out)
{
    *out << c.statement;
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
        EXPECT_EQ(disorder(end), "");
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
        ASSERT_EQ(disorder(end), "") << path;
        run(std::string("&@\n&(p = _i)\n&(N = 1)\n&(a = 1)\n&(M = '>')\n") + clean, 0, nullptr);
    }
    exact_session = 0;
}

INSTANTIATE_TEST_SUITE_P(Answers, HostileTranscript, testing::Range(0, kinds));

}  // namespace
