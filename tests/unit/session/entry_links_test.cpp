// tests/unit/session/entry_links_test.cpp -- linked arrays and entries give what the plain ones give.
#include "session/entry_links.h"
#include <random>
#include <string>
#include "matrix/sparse_tests.h"
#include "matrix/store.h"
#include "session/func_records.h"
#include "tests/support/session_text.h"

using namespace kelmar;
using namespace kelmar_test;

namespace {

// Random bodies over dense arrays a and x, a sparse one s, and an array parameter p. Indices are brought into
// range by a remainder, and values kept small by another.
struct body_maker {
    std::mt19937 random;
    int loops = 0;

    int below(int n)
    {
        return static_cast<int>(random() % static_cast<unsigned>(n));
    }

    std::string index()
    {
        switch (below(4)) {
        case 0: return std::to_string(1 + below(3));
        case 1: return "k";
        case 2: return "(i + " + std::to_string(below(5)) + ")|3 + 1";
        default: return "(x[2] + j)|3 + 1";
        }
    }

    std::string entry()
    {
        switch (below(7)) {
        case 0: return "a[" + index() + ", " + index() + "]";
        case 1: return "x[" + index() + "]";
        case 2: return "s[" + index() + ", " + index() + "]";
        case 3: return "p[" + index() + "]";
        case 4: return "s[5]";
        case 5: return "x[k]";
        default: return "x[2]";
        }
    }

    std::string factor()
    {
        static const char *const names[] = {"i", "j", "k"};
        if (below(3) == 0) return std::to_string(below(50));
        return below(2) ? entry() : names[below(3)];
    }

    std::string statement(int depth)
    {
        switch (below(depth > 0 ? 6 : 5)) {
        case 0: return entry() + " :+ " + std::to_string(below(9));
        case 1: return entry() + " :- (" + factor() + ")";
        case 2: return below(4) ? entry() + " := 0" : "@[y]; [y] := [(1, 2, 3)]";
        case 5: {
            const std::string to = std::to_string(1 + below(3));
            return std::string(depth > 1 ? "for i" : "for j") + " = 1 to " + to + " do " + body(depth - 1) +
                   " od";
        }
        default: return entry() + " := (" + factor() + " + " + factor() + "*" + factor() + ")|97";
        }
    }

    std::string body(int depth)
    {
        std::string text = statement(depth);
        for (int more = below(5); more > 0; --more) text += "; " + statement(depth);
        return text;
    }
};

// The arrays after two calls of the function with that head and body.
std::string run(const std::string &head, const std::string &body)
{
    return session_text(
        "[y] := [(1, 2)]:\ni := 1:\nj := 1:\nk := 3:\n[a] := [[1, 2, 3][4, 5, 6][7, 8, 9]]:\n"
        "[x] := [(5, 6, 7)]:\n[b] := [(1, 2, 3)]:\n[c] := [(4, 5, 6)]:\nArray s[3, 3] Sparse:\n"
        "s[2, 2] := 8:\nFunc T(p) = " +
        head + body + "; 0 .:\nT([b])\nT([c])\n[a]\n[x]\n[s]\n[b]\n[c]\ni\nj\n@T\n@[**]\n");
}

const std::string all = "Compile([a], [x], x[2], x[k], s[5], i, j); ";

TEST(EntryLinks, GiveWhatThePlainBodyGives)
{
    for (unsigned seed = 1; seed <= 500; ++seed) {
        body_maker g{std::mt19937(seed)};
        const std::string body = g.body(2);
        const std::string plain = run("", body);
        ASSERT_EQ(plain.find("***"), std::string::npos) << "seed " << seed << ": " << body << plain;
        ASSERT_EQ(plain, run(all, body)) << "seed " << seed << ": " << body;
        ASSERT_EQ(plain, run("Compile; ", body)) << "seed " << seed << ": " << body;
        ASSERT_TRUE(store_is_sound());
    }
}

TEST(EntryLinks, GiveTheSameOnMachineIntegers)
{
    for (unsigned seed = 1001; seed <= 1500; ++seed) {
        body_maker g{std::mt19937(seed)};
        // statements about whole arrays are none of integers
        const std::string body = g.body(2);
        if (body.find('@') != std::string::npos) continue;
        const std::string plain = run("", body);
        ASSERT_EQ(plain, run("Integer; ", body)) << "seed " << seed << ": " << body;
        ASSERT_EQ(plain, run("Integer; " + all, body)) << "seed " << seed << ": " << body;
    }
}

TEST(EntryLinks, MarkTheTokensOfArraysAndEntries)
{
    session_text("Array x[3], a[2, 2]\n[x] := 1\nFunc T = Compile(x[2], [a]); x[2] + a[1, 2] + x[1] .\nT\n");
    token_rec name;
    set_token(&name, "T");
    const func_node *f = find_func(&name);
    ASSERT_NE(f, nullptr);
    ASSERT_NE(f->linked_at, nullptr);
    const name_node *at = f->linked_at->cond->plain;
    EXPECT_EQ(at->kind, linked_entry);
    for (int k = 0; k < 5; ++k) at = at->next;
    EXPECT_STREQ(at->text, "a");
    EXPECT_EQ(at->kind, linked_array);
    EXPECT_EQ(at->linked, 1);
    for (int k = 0; k < 7; ++k) at = at->next;
    EXPECT_STREQ(at->text, "x");
    EXPECT_EQ(at->linked, 0);
    session_text("@T\n@[**]\n");
}

TEST(EntryLinks, AreReleasedWithTheirFunction)
{
    const std::string text =
        "Array x[3]\n[x] := 1\nFunc T(p) = Compile(x[2], [x]); x[2] + p[1] .\nT([x])\n@T\n@[x]\n";
    session_text(text);
    const std::int64_t before = live_numbers();
    for (int k = 0; k < 100; ++k) session_text(text);
    EXPECT_EQ(live_numbers(), before);
}

}  // namespace
