// tests/unit/session/func_run_test.cpp -- calls, their parameters, and what errors in them leave behind.
#include "session/func_run.h"
#include <string>
#include "session/levels.h"
#include "session/report.h"
#include "session/trace.h"
#include "tests/support/long_numbers.h"
#include "tests/support/session_text.h"

using namespace kelmar;
using namespace kelmar_test;

namespace {

bool contains(const std::string &text, const std::string &part)
{
    return text.find(part) != std::string::npos;
}

// No call is active, and nothing hides a variable.
void expect_at_rest()
{
    EXPECT_EQ(newest_call, nullptr);
    EXPECT_EQ(params_top, nullptr);
    EXPECT_EQ(pending_top, nullptr);
    EXPECT_EQ(statcount, 0);
    EXPECT_EQ(integerflag, 0);
    EXPECT_FALSE(leaving());
}

TEST(Calls, EndlessRecursionEndsInAnErrorAndTheSessionLives)
{
    prepare_session_once();
    stack_floor = static_cast<char *>(__builtin_frame_address(0)) - (4 << 20);
    const std::string text = session_text("n := 7:\nFunc F(n) = F(n+1) .\nF(1)\nn\n@F\n");
    stack_floor = nullptr;
    EXPECT_TRUE(contains(text, "nested too deeply")) << text;
    EXPECT_TRUE(contains(text, " F F F F F F F F F F  ... 490 more with this name. \n")) << text;
    EXPECT_TRUE(contains(text, ">\n7\n")) << text;
    expect_at_rest();
}

TEST(Calls, RecursionOfABodyOfNestedBlocks)
{
    prepare_session_once();
    stack_floor = static_cast<char *>(__builtin_frame_address(0)) - (4 << 20);
    const std::string text = session_text("Func F(n) = for i = 1 to 1 do while 1 do if 1 then F(n+Sigma<k=1 "
                                          "to 1>[F(k)]) fi od od .\nF(1)\n2+3\n@F\n");
    stack_floor = nullptr;
    EXPECT_TRUE(contains(text, "nested too deeply")) << text;
    EXPECT_TRUE(contains(text, "\n5\n")) << text;
    expect_at_rest();
}

TEST(Calls, LeaveTheFramesRingWhereItWas)
{
    prepare_session_once();
    const trace_frame *const before = lastf;
    session_text("Func F(n) = if n = 0 then 1 else F(n-1) fi .\nF(700)\nFunc G(n) = if n = 0 then nowhere "
                 "else G(n-1) fi .\n"
                 "G(10)\n@F\n@G\n");
    EXPECT_EQ(lastf, before);
    expect_at_rest();
}

TEST(Calls, AFunctionCancelledInItsOwnCallIsReleasedAtTheEnd)
{
    EXPECT_EQ(last_value("Func F(n) = @F; if n > 0 then n + 1 fi .\nF(3)"), "4");
    EXPECT_EQ(last_value("Func F(n) = if n > 0 then F(n-1); @F; n else n fi .\nF(1)"), "1");
    EXPECT_EQ(last_value("Func F(n) = @F; nowhere .\nF(3)\n8"), "8");
    expect_at_rest();
}

TEST(Calls, AParameterCancelledByTheBodyHidesNothingLater)
{
    EXPECT_EQ(last_value("x := 5\nFunc F(x) = @x; x := 6; 0 .\nF(3)\nx"), "6");
    EXPECT_EQ(last_value("x := 5\nFunc F(x) = @x; 0 .\nF(3)\nx"), "5");
    session_text("@F\n");
    expect_at_rest();
}

TEST(Calls, AReferenceToACancelledVariableIsNoDanglingOne)
{
    EXPECT_EQ(last_value("x := 5\nFunc F(^a) = @x; x := 8; a := 7; 0 .\nF(x)\nx"), "8");
    EXPECT_EQ(last_value("x := 5\nFunc G(^a, b) = a + b .\nFunc H = @x; 1 .\nG(x, H)"), "6");
    session_text("@F\n@G\n@H\n");
    expect_at_rest();
}

TEST(Calls, ALoopWhoseCounterIsCancelledGoesOn)
{
    EXPECT_EQ(last_value("s := 0\nfor i = 1 to 5 do s := s + i; @i od\ns"), "15");
    EXPECT_EQ(
        last_value("s := 0\nFunc F(i) = for i = 1 to 3 do s := s + i; if i = 2 then @i fi od; s .\nF(9)"),
        "6");
    session_text("@F\n");
    expect_at_rest();
}

TEST(Calls, FlagsDoNotCrossACall)
{
    EXPECT_EQ(last_value("Func F = &>; 5 .\ns := 0\nfor i = 1 to 3 do F; s:+ od\ns"), "3");
    EXPECT_EQ(last_value("Func F = &]; 5 .\ns := 0\nfor i = 1 to 3 do F; s:+ od\ns"), "3");
    EXPECT_EQ(last_value("Func F = Return(5); 6 .\ns := 0\nfor i = 1 to 3 do F; s:+ od\ns"), "3");
    session_text("@F\n@F\n@F\n");
    expect_at_rest();
}

TEST(Calls, AnAbandonedStatementLeavesTheRestRunning)
{
    const std::string text = session_text(
        "&e:\nFunc G(x) = nowhere + x; x + 1 .\nFunc F(n) = G(n) + 10 .\nF(3)\n&_p\n&e:\n"
        "@F\n@G\n");
    EXPECT_TRUE(contains(text, "*** Resuming earlier command level\n\n14\n")) << text;
    EXPECT_EQ(errorpush, 0);
    expect_at_rest();
}

TEST(Calls, AnAbandonedDefinitionIsNoLongerInProgress)
{
    session_text("&e:\nFunc F = Func G(a, a) = 1 . ; 3 .\nF\n&_p\n&e:\n@F\n");
    EXPECT_EQ(errorpush, 0);
    expect_at_rest();
}

TEST(Calls, ErrorsWhileArgumentsAreReadLeaveNothingBound)
{
    session_text("x := 1:\nFunc F(a, ^b, c) = a .\nF(1, x, nowhere)\nF(1, 3, 4)\nF(1, x, F(2, x, 1/0))\nF(1, "
                 "x, 3, 4)\n@F\n");
    expect_at_rest();
}

TEST(Calls, AControlStatementReplacedWhileItRuns)
{
    // At the pushed level another control statement is typed; the first one then goes on.
    const std::string text = session_text(
        "&e:\n&_P\nfor i = 1 to 1 do 1; 2 + ); s := 7 od\nfor j = 1 to 2 do j od\n&_p\n&_p\n&e:\ns\n");
    EXPECT_TRUE(contains(text, "*** Resuming earlier command level\n")) << text;
    EXPECT_TRUE(contains(text, "\n7\n\n>\n bye")) << text;
    EXPECT_EQ(errorpush, 0);
    expect_at_rest();
}

TEST(Calls, AMillionCallsKeepTheSessionSmall)
{
    session_text("Func F(x, y) = x + y .\nfor i = 1 to 1000 do F(i, i) od\n");
    const record_audit audit;
    const std::int64_t before = count_free_vars(1000000);
    EXPECT_EQ(last_value("for i = 1 to 100000 do F(i, i) od"), "200000");
    EXPECT_EQ(count_free_vars(1000000), before);
    session_text("1\n");
    audit.expect_unchanged("calls");
    session_text("@F\n");
}

}  // namespace
