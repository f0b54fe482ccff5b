// tests/unit/session/plain_calls_test.cpp -- calls that are walked have the values, errors and traces of
// calls.
//
// A function with more parameters than a frame holds is left to the evaluators. The same functions with and
// without such parameters, which no call gives a value, must write the same session.
#include "session/plain_calls.h"
#include <random>
#include <string>
#include "session/func_records.h"
#include "session/plain_run.h"
#include "tests/support/session_text.h"

using namespace kelmar;
using namespace kelmar_test;

namespace {

const std::string unused = ", k, l, m, o, p, q, r, s";

bool failed(const std::string &output)
{
    return output.find("***") != std::string::npos;
}

// Functions F, G, H of two parameters; each calls those behind it, H calls nobody.
struct program {
    std::mt19937 random;

    int below(int n)
    {
        return static_cast<int>(random() % static_cast<unsigned>(n));
    }

    std::string factor(int depth, int callee)
    {
        static const char *const literals[] = {"0", "1", "2", "3.5", "17"};
        switch (below(depth > 0 ? 9 : 5)) {
        case 0: return literals[below(5)];
        case 5: return "(" + sum(depth - 1, callee) + ")";
        case 6: return "-" + factor(depth - 1, callee);
        case 7:
        case 8: return call(depth - 1, callee);
        default: return std::string(1, "abyz"[below(4)]);
        }
    }

    // The call of a function from number `callee` on; the name behind it ends what juxtaposition would join.
    std::string call(int depth, int callee)
    {
        if (callee > 2) return "y";
        const int which = callee + below(3 - callee);
        const std::string name(1, "FGH"[which]);
        switch (below(4)) {
        case 0: return name + "(" + sum(depth, callee) + ")";
        case 1: return name + "()";
        default: return name + "(" + sum(depth, callee) + ", " + factor(depth, callee) + ")";
        }
    }

    std::string sum(int depth, int callee)
    {
        static const char *const signs[] = {" + ", " - ", "*", "*", "/", " + ", " - ", "|"};
        std::string text = factor(depth, callee);
        for (int more = below(3); more > 0; --more) text += signs[below(8)] + factor(depth, callee);
        return text;
    }

    std::string condition(int callee)
    {
        static const char *const signs[] = {" < ", " > ", " = ", " <= ", " >= ", " <> "};
        static const char *const joins[] = {" and ", " or ", " and not ", " or not not "};
        std::string text = below(4) ? "" : "not ";
        text += sum(1, callee) + signs[below(6)] + sum(1, callee);
        for (int more = below(3); more > 1; --more) {
            text += joins[below(4)] + sum(0, callee) + signs[below(6)] + sum(0, callee);
        }
        return text;
    }

    std::string statement(int depth, int callee)
    {
        if (below(3) || depth == 0) return sum(2, callee);
        std::string text = "if " + condition(callee) + " then " + statement(depth - 1, callee);
        if (below(2)) text += " else " + statement(depth - 1, callee);
        return text + " fi";
    }

    std::string function(int number, const std::string &more)
    {
        static const char *const params[] = {"(a, b", "(b, y", "(z, a"};
        std::string text = std::string("Func ") + "FGH"[number] + params[number] + more + ") = ";
        for (int count = 1 + below(2); count > 0; --count) {
            text += statement(2, number + 1) + (count > 1 ? "; " : " .:\n");
        }
        return text;
    }
};

std::string session_of(unsigned seed, const std::string &more)
{
    program g{std::mt19937(seed)};
    std::string text = "a := 7\nb := -3\ny := 0.4\nz := 12345678901\nx := 0\n";
    for (int i = 2; i >= 0; --i) text += g.function(i, more);
    text += "Func T(a) = y := " + g.sum(2, 0) + "; " + g.sum(2, 0) + " .:\n";
    return text + "x := T(2)\nx\ny\nx := T(5)\nx\n";
}

TEST(PlainCalls, SessionsReadAsTheyDoWithCallsOfTheEvaluators)
{
    int values = 0;
    for (unsigned seed = 1; seed <= 3000; ++seed) {
        const std::string walked = session_text(session_of(seed, ""));
        const std::string evaluated = session_text(session_of(seed, unused));
        ASSERT_EQ(walked, evaluated) << "seed " << seed << ": " << session_of(seed, "");
        if (!failed(walked)) ++values;
    }
    EXPECT_GT(values, 1000);
}

// The list of the only statement of the function.
name_node *statement_of(const char *function)
{
    token_rec name;
    set_token(&name, function);
    const func_node *f = find_func(&name);
    return f ? f->body->cond->plain : nullptr;
}

bool is_walked(const char *function)
{
    quolynode *n = nullptr;
    const bool done = run_plain_statement(statement_of(function), &n) != 0;
    free_quoly(&n);
    return done;
}

#ifndef KELMAR_STORM
constexpr bool calls_are_walked = true;
#else
constexpr bool calls_are_walked = false;
#endif

TEST(PlainCalls, FunctionsOfPlainNumbersAreWalked)
{
    session_text("Func F(a, b) = a + b .:\nFunc T = F(1, 2) .:\n");
    EXPECT_EQ(is_walked("T"), calls_are_walked);
    session_text(
        "Func F(a) = if a < 2 and not a = 0 then a else F(a - 1) + F(a - 2) fi .:\nFunc T = F(9) .:\n");
    EXPECT_EQ(is_walked("T"), calls_are_walked);
}

TEST(PlainCalls, OtherFunctionsAreNot)
{
    static const char *const definitions_of_f[] = {"Func F(^a) = a + 1 .:",
                                                   "Func F(a) = x := a; x .:",
                                                   "Func F(a) = a^2 .:",
                                                   "Func F(a) = while a > 9 do a od .:",
                                                   "Func F(a) = Integer; a .:",
                                                   "Func F(a) = Numer(a) .:",
                                                   "Func F(a, k, l, m, o, p, q, r, s) = a .:"};
    for (const char *definition : definitions_of_f) {
        session_text(std::string(definition) + "\ny := 1\nFunc T = F(y) .:\n");
        EXPECT_FALSE(is_walked("T")) << definition;
        EXPECT_FALSE(is_walked("T")) << definition;
    }
}

TEST(PlainCalls, AnotherDefinitionIsTriedAgain)
{
    session_text("Func F(a) = x := a; x .:\nFunc T = F(3) .:\n");
    EXPECT_FALSE(is_walked("T"));
    EXPECT_EQ(last_value("T"), "3");
    session_text("Func F(a) = a + 10 .:\n");
    EXPECT_EQ(is_walked("T"), calls_are_walked);
    EXPECT_EQ(last_value("T"), "13");
    EXPECT_EQ(last_value("@F\nT"), "3");
}

TEST(PlainCalls, NamesHaveTheNewestBinding)
{
    EXPECT_EQ(last_value("a := 1\nFunc G = a + b .:\nFunc F(a) = G + a .:\nb := 100\nF(20)"), "140");
    EXPECT_EQ(last_value("Func H(b) = G .:\nFunc F(a) = H(a + 1) + a .:\nF(20)"), "61");
    EXPECT_EQ(last_value("Func F(a) = G(a + 1) .:\nFunc G(b) = a*b .:\nFunc T(a) = F(2) + F(a) .:\nT(5)"),
              "36");
}

TEST(PlainCalls, RecursionGoesDeeperThanAWalk)
{
    EXPECT_EQ(last_value("Func S(n) = if n = 0 then 0 else n + S(n - 1) fi .:\nS(4000)"), "8002000");
}

TEST(PlainCalls, WhatDeclinesLateCostsLittle)
{
    // each call has a value for its first summand, and fails at the bottom: unlimited, the walks are
    // quadratic
    const std::string chain = "Func R(n) = if n = 0 then v else R(n - 1) + C(3) fi .:\nFunc C(n) = n .:\n";
    EXPECT_EQ(last_value(chain + "v := 1\nR(100)"), "301");
    const std::string open = session_text(chain + "v := 1\n@v\nR(4000)\n");
    EXPECT_NE(open.find("Inappropriate symbol: v"), std::string::npos) << open;
}

TEST(PlainCalls, AParameterThatIsAPolynomialVariableIsAnError)
{
    const std::string text = session_text(
        "Func F(w) = w + 1 .:\nFunc T = F(2) .:\nT\n&(J = w)\nT\n&(J = -w)\n");
    EXPECT_NE(text.find("3\n"), std::string::npos) << text;
    EXPECT_TRUE(failed(text)) << text;
}

}  // namespace
