// tests/unit/session/func_link_test.cpp -- a linked body computes what the plain one does.
#include "session/func_link.h"
#include <random>
#include <string>
#include "session/errors.h"
#include "session/func_run.h"
#include "tests/support/session_text.h"

using namespace kelmar;
using namespace kelmar_test;

namespace {

// Random programs over three global variables, two parameters and a loop counter. Loops are bounded.
struct program {
    std::mt19937 random;
    int loops = 0;

    int below(int n)
    {
        return static_cast<int>(random() % static_cast<unsigned>(n));
    }

    std::string name()
    {
        static const char *const names[] = {"a", "b", "c", "p", "q"};
        return names[below(5)];
    }

    std::string factor(int depth)
    {
        switch (below(depth > 0 ? 5 : 3)) {
        case 0: return std::to_string(below(10));
        case 3: return "(" + sum(depth - 1) + ")";
        case 4: return "Sigma<k = 1 to 3>[k*" + name() + "]";
        default: return name();
        }
    }

    std::string sum(int depth)
    {
        std::string text = factor(depth);
        if (below(2)) text += (below(2) ? " + " : " - ") + factor(depth);
        if (below(4) == 0) text += "*" + factor(depth);
        return text;
    }

    std::string condition()
    {
        static const char *const signs[] = {" < ", " > ", " = ", " <> ", " <= "};
        return sum(1) + signs[below(5)] + sum(1);
    }

    std::string statement(int depth)
    {
        switch (below(depth > 0 ? 7 : 3)) {
        case 3: return "if " + condition() + " then " + body(depth - 1) + " else " + body(depth - 1) + " fi";
        case 4: return "if " + condition() + " then " + body(depth - 1) + " fi";
        case 5: {
            const std::string i = "i" + std::to_string(++loops);
            return "for " + i + " = " + std::to_string(below(3)) + " to 3 do " + body(depth - 1) + " od";
        }
        case 6: {
            const std::string n = "n" + std::to_string(++loops);
            return n + " := 0; while " + n + " < 3 do " + n + ":+; if " + n + " = 2 then &] fi; " +
                   body(depth - 1) + " od";
        }
        case 2: return name() + ":+" + std::to_string(below(5));
        default: return name() + " := " + sum(2);
        }
    }

    std::string body(int depth)
    {
        std::string text = statement(depth);
        for (int more = below(3); more > 0; --more) text += "; " + statement(depth);
        return text;
    }
};

std::string run(const std::string &head, const std::string &body)
{
    // The names of the counters and of the parts that differ stand outside what is compared.
    const std::string text = session_text("a := 1:\nb := 2:\nc := 3:\ng := 4:\nFunc T(p, ^q) = " + head +
                                          body + "; p + 10*q .:\nT(5, g)\nT(6, g)\na\nb\nc\ng\n@T:\n");
    return text;
}

TEST(Compile, GivesWhatThePlainBodyGives)
{
    for (unsigned seed = 1; seed <= 1000; ++seed) {
        program g{std::mt19937(seed)};
        const std::string body = g.body(3);
        const std::string plain = run("", body);
        const std::string linked = run("Compile(a, b, c); ", body);
        ASSERT_EQ(plain, linked) << "seed " << seed << ": " << body;
        ASSERT_EQ(plain, run("Compile; ", body)) << "seed " << seed << ": " << body;
        ASSERT_EQ(plain.find("***"), std::string::npos) << plain;
    }
}

TEST(Compile, MarksTheTokensOfItsNames)
{
    session_text("s := 1\nFunc T(p) = s + p; Compile(s); s + p + t .\nt := 2\nT(3)\n");
    token_rec name;
    set_token(&name, "T");
    const func_node *f = find_func(&name);
    ASSERT_NE(f, nullptr);
    EXPECT_EQ(f->linked, 1);
    ASSERT_EQ(f->linked_at, f->body->next->next);
    EXPECT_EQ(f->body->cond->plain->linked, 0);
    const name_node *s = f->linked_at->cond->plain;
    EXPECT_EQ(s->linked, 1);
    EXPECT_EQ(s->kind, 1);
    const name_node *p = s->next->next;
    EXPECT_EQ(p->linked, 1);
    EXPECT_EQ(f->params->chain, p);
    EXPECT_EQ(p->ptr, f->params->ptr);
    EXPECT_EQ(p->next->next->linked, 0);
    session_text("@T\n");
}

TEST(Compile, LinksEntriesOfTenCharacters)
{
    EXPECT_EQ(last_value("[abcdefg] := [(1, 2)]:\n[abcdefgh] := [(3, 4)]:\nFunc T = Compile(abcdefg[1], "
                         "abcdefgh[1]); abcdefg[1] + abcdefgh[1] .\nT"),
              "4");
    token_rec name;
    set_token(&name, "T");
    const func_node *f = find_func(&name);
    ASSERT_NE(f, nullptr);
    const name_node *t = f->linked_at->cond->plain;
    EXPECT_EQ(t->linked, 1);
    EXPECT_EQ(t->kind, linked_entry);
    while (std::string(t->text) != "abcdefgh") t = t->next;
    EXPECT_EQ(t->linked, 0);
    session_text("@T\n@[abcdefg]\n@[abcdefgh]\n");
}

TEST(Compile, RecursionReturnsToTheOuterParameters)
{
    const std::string body = "if n < 2 then r := n else r := T(n-1); r := r + 10*n + U(n) fi; Return(r) .\n";
    const std::string rest = "Func U(n) = if n > 2 then Return(T(1)) fi; n .\nT(7)\nT(3)\n@T\n@U\n";
    EXPECT_EQ(session_text("Func T(n) = " + body + rest),
              session_text("Func T(n) = Compile; " + body + rest));
}

TEST(Compile, OfAnIntegerBody)
{
    EXPECT_EQ(last_value("s := 0\nFunc T(n) = Integer; s := 0; Compile(s); for i = 1 to n do s := s + i/2 "
                         "od; s .\nT(5)\n@T:\n"
                         "s"),
              "6");
}

}  // namespace
