// tests/unit/session/plain_run_test.cpp -- the walk over stored tokens gives what the evaluators give.
//
// What is typed is read from a stream, which is never walked: the same expression typed, and stored in a
// function, is the comparison. Behind Integer a power keeps the evaluator at work: the walk declines it.
#include "session/plain_run.h"
#include <random>
#include <string>
#include "session/func_records.h"
#include "tests/support/session_text.h"

using namespace kelmar;
using namespace kelmar_test;

namespace {

const std::string variables = "a := 7\nb := -3\nc := 0.4\nd := 12345678901\n";

struct expression {
    std::mt19937 random;
    bool whole;  // no fractions

    int below(int n)
    {
        return static_cast<int>(random() % static_cast<unsigned>(n));
    }

    std::string factor(int depth)
    {
        static const char *const literals[] = {"0",   "1",    "2",    "31",     "123456789",
                                               "0.1", "0.75", "2.50", "1 7.0 3"};
        switch (below(depth > 0 ? 7 : 4)) {
        case 0: return literals[below(whole ? 4 : 9)];
        case 4: return "(" + sum(depth - 1) + ")";
        case 5: return "-" + factor(depth - 1);
        case 6: return below(2) ? "(" + sum(depth - 1) + ")^2" : "3(" + sum(depth - 1) + ")";
        default: return std::string(1, "abcd"[below(whole ? 2 : 4)]);
        }
    }

    std::string sum(int depth)
    {
        static const char *const signs[] = {" + ", " - ", "*", "*", "/", "\\", "|", " "};
        std::string text = factor(depth);
        for (int more = below(4); more > 0; --more) {
            const int sign = below(8);
            text += sign == 7 ? " " + std::string(1, "ab"[below(2)]) : signs[sign] + factor(depth);
        }
        return text;
    }
};

bool failed(const std::string &output)
{
    return output.find("***") != std::string::npos;
}

TEST(PlainRun, StoredExpressionsHaveTheValueOfTypedOnes)
{
    int values = 0;
    for (unsigned seed = 1; seed <= 3000; ++seed) {
        expression g{std::mt19937(seed), false};
        const std::string e = g.sum(3);
        const std::string typed = session_text(variables + "x := " + e + "\n");
        const std::string stored = session_text(variables + "Func T = " + e + " .:\nx := T\n");
        ASSERT_EQ(failed(typed), failed(stored)) << "seed " << seed << ": " << e << "\n" << typed << stored;
        if (failed(typed)) continue;
        ASSERT_EQ(last_value(variables + "x := T\nx - (" + e + ")"), "0") << "seed " << seed << ": " << e;
        ++values;
    }
    EXPECT_GT(values, 1500);
}

TEST(PlainRun, WordsAreThoseOfTheIntegerEvaluator)
{
    for (unsigned seed = 1; seed <= 2000; ++seed) {
        expression g{std::mt19937(seed), true};
        const std::string e = g.sum(3);
        const std::string head = variables + "Func T = Integer; ";
        const std::string walked = session_text(head + e + " .:\nT\n");
        const std::string evaluated = session_text(head + "(" + e + ")*1^1 .:\nT\n");
        ASSERT_EQ(failed(walked), failed(evaluated)) << "seed " << seed << ": " << e;
        if (failed(walked)) continue;
        ASSERT_EQ(last_value(head + e + " .:\nT"), last_value(head + "(" + e + ")*1^1 .:\nT"))
            << "seed " << seed << ": " << e;
    }
}

TEST(PlainRun, ConditionsHoldAsTyped)
{
    static const char *const signs[] = {" < ", " > ", " = ", " <= ", " >= ", " <> "};
    for (unsigned seed = 1; seed <= 1000; ++seed) {
        expression g{std::mt19937(seed), false};
        const std::string c = g.sum(1) + signs[g.below(6)] + g.sum(1);
        const std::string power = "[" + c + "] and 1^1 = 1";  // declined as a whole, its brackets walked
        const std::string tail = " then x := 1 else x := 2 fi; x .:\nT\n";
        const std::string walked = session_text(variables + "Func T = if " + c + tail);
        const std::string mixed = session_text(variables + "Func T = if " + power + tail);
        ASSERT_EQ(failed(walked), failed(mixed)) << "seed " << seed << ": " << c;
        if (failed(walked)) continue;
        ASSERT_EQ(walked, mixed) << "seed " << seed << ": " << c;
    }
}

TEST(PlainRun, AssignsInPlaceOnlyWhatHasAPlainValue)
{
    EXPECT_EQ(last_value("Func T = y := 2; y := y*y + 1; y:+; y:-3; y :+ (y); y .:\nT"), "6");
    EXPECT_EQ(last_value("@y\nFunc T = y:+2 .:\ny := 5\nT"), "7");
    EXPECT_EQ(last_value("Func T = y := 7; z := y; y := y + 1; z .:\nT"), "7");
    EXPECT_EQ(last_value("Func T(x) = x := x + 1; x .:\ny := 4\nT(y) + y"), "9");
    EXPECT_EQ(last_value("Func T(^x) = x := x + 1; x .:\ny := 4\nT(y) + 10*y"), "55");
}

TEST(PlainRun, WordAndPointNames)
{
    EXPECT_EQ(last_value("Func T = 2e+3 + 1 .:\nT"), "2001");
    EXPECT_EQ(last_value("e := 5\nFunc T = e*2 + 1 .:\nT"), "11");
    EXPECT_TRUE(failed(session_text("Func T = 1 + nothing .:\nT\n")));
    EXPECT_TRUE(failed(session_text("a := 1\nFunc T = (a + 1 .:\nT\n@T\n")));
}

TEST(PlainRun, DeepBracketsAreLeftToTheEvaluators)
{
    const std::string open(300, '('), close(300, ')');
    EXPECT_EQ(last_value("a := 1\nFunc T = " + open + "a + 1" + close + " .:\nT"), "2");
}

TEST(PlainRun, DeclinesWithNothingDone)
{
    session_text("a := 3\n@nothing\nFunc T = a := a + 1; a + nothing .\n");
    token_rec name;
    set_token(&name, "T");
    const func_node *f = find_func(&name);
    ASSERT_NE(f, nullptr);
    quolynode *n = nullptr;
    EXPECT_EQ(run_plain_statement(f->body->next->cond->plain, &n), 0);
    EXPECT_EQ(n, nullptr);
    EXPECT_EQ(run_plain_statement(f->body->cond->plain, &n), 1);
    EXPECT_EQ(n->num->real, 0.0);
    free_quoly(&n);
    EXPECT_EQ(last_value("a"), "4");
}

}  // namespace
