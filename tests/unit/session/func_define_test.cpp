// tests/unit/session/func_define_test.cpp -- what a definition stores, and what a cancelled one gives back.
#include "session/func_define.h"
#include <string>
#include <vector>
#include "session/errors.h"
#include "session/func_run.h"
#include "session/report.h"
#include "storage/accounting.h"
#include "tests/support/long_numbers.h"
#include "tests/support/session_text.h"

using namespace kelmar;
using namespace kelmar_test;

namespace {

class Definition : public ::testing::Test {
protected:
    void SetUp() override
    {
        prepare_session_once();
    }

    static func_node *define(const std::string &text)
    {
        const std::string written = session_text(text + "\n");
        EXPECT_EQ(written.find("***"), std::string::npos) << written;
        token_rec name;
        set_token(&name, "F");
        func_node *f = find_func(&name);
        EXPECT_NE(f, nullptr) << written;
        return f;
    }

    static void TearDownFunctions()
    {
        token_rec name;
        set_token(&name, "F");
        while (remove_function(&name)) {}
    }

    void TearDown() override
    {
        TearDownFunctions();
    }

    // The tokens, separated by |, the end marker as $.
    static std::string tokens(const name_node *list)
    {
        std::string text;
        for (; list; list = list->next) {
            if (!text.empty()) text += "|";
            text += std::strcmp(list->text, endlist) == 0 ? "$" : list->text;
        }
        return text;
    }

    static std::string statement(const form_node *f)
    {
        const cond_node *c = f->cond;
        if (!c->header) return tokens(c->plain);
        return (c->loop ? "loop " : "if ") + tokens(c->header) + " {" + statements(c->then_part) + "} {" +
               statements(c->else_part) + "}";
    }

    static std::string statements(const form_node *f)
    {
        std::string text;
        for (; f; f = f->next) text += (text.empty() ? "" : "; ") + statement(f);
        return text;
    }
};

TEST_F(Definition, StoresStatementsAsTokenLists)
{
    EXPECT_EQ(statements(define("Func F(x) = y := x + 12; y^2 .")->body), "y|:|=|x|+|1|2|$; y|^|2|$");
}

TEST_F(Definition, StoresIfAndWhileWithTheirBodies)
{
    EXPECT_EQ(statements(define("Func F = if a = 1 then b; c else d fi; while e do f od .")->body),
              "if a|=|1|$ {b|$; c|$} {d|$}; loop e|$ {f|$} {}");
}

TEST_F(Definition, MarksTheHeadOfForAndItsKeywords)
{
    EXPECT_EQ(statements(define("Func F = for i = 1 to n by 2 do i od .")->body),
              "loop :|i|=|1| to|n| by|2|$ {i|$} {}");
}

TEST_F(Definition, TellsKeywordsFromNamesInAHead)
{
    EXPECT_EQ(statements(define("Func F = for to = to to by by |by| do to by od .")->body),
              "loop :|to|=|to| to|by| by|||by|||$ {to|by|$} {}");
    EXPECT_EQ(statements(define("Func F = Sigma<i = 1 to 2 by 3>[to by] .")->body),
              "Sigma|<|i|=|1| to|2| by|3|>|[|to|by|]|$");
}

TEST_F(Definition, HashesNamesOnceAndOthersNever)
{
    const name_node *n = define("Func F = abc + Gh(1) .")->body->cond->plain;
    for (; n; n = n->next) {
        if (is_lower(n->text[0])) {
            EXPECT_EQ(n->index, hash(n->text, lower_buckets));
        } else if (is_upper(n->text[0])) {
            EXPECT_EQ(n->index, hash(n->text, upper_buckets));
        } else {
            EXPECT_EQ(n->index, std::strcmp(n->text, endlist) == 0 ? 0 : -1);
        }
    }
}

TEST_F(Definition, RemembersBlanksBehindTokens)
{
    std::string blanks;
    for (const name_node *n = define("Func F = ab + c*(d -e) .")->body->cond->plain; n->next; n = n->next) {
        blanks += n->spaced ? '1' : '0';
    }
    EXPECT_EQ(blanks, "110001001");
}

TEST_F(Definition, KeepsCommentsInFrontOfTheirStatement)
{
    const form_node *f = define("Func F = 1; {a b}{c} 2 .")->body;
    EXPECT_EQ(f->comments, nullptr);
    ASSERT_NE(f->next->comments, nullptr);
    EXPECT_EQ(tokens(f->next->comments), "a| |b|}");
    EXPECT_EQ(tokens(f->next->comments->chain), "c|}");
    EXPECT_EQ(f->next->comments->chain->chain, nullptr);
}

TEST_F(Definition, KeepsParametersInOrder)
{
    const name_node *p = define("Func F(a, ^b; c) = 1 .")->params;
    ASSERT_NE(p, nullptr);
    EXPECT_STREQ(p->text, "a");
    EXPECT_EQ(p->kind, 0);
    EXPECT_STREQ(p->next->text, "b");
    EXPECT_EQ(p->next->kind, 1);
    EXPECT_STREQ(p->next->next->text, "c");
    EXPECT_EQ(p->next->next->next, nullptr);
}

TEST_F(Definition, EmptyStatementsMakeNoForm)
{
    EXPECT_EQ(statements(define("Func F =\n\n;;1;\n;;2;\n\n.")->body), "1|$; 2|$");
}

TEST_F(Definition, LastOneStandsFirstInItsBucket)
{
    const func_node *older = define("Func F = 1 .");
    const func_node *newer = define("Func F = 2 .");
    EXPECT_NE(older, newer);
    EXPECT_EQ(statements(newer->body), "2|$");
}

TEST_F(Definition, LeavesNoDefinitionInProgress)
{
    define("Func F = Func G = 1. ; 2 .");
    EXPECT_EQ(func_def_count, 0);
    EXPECT_EQ(pending_top, nullptr);
    EXPECT_EQ(new_funcs, 1);
}

// Records ---------------------------------------------------------------------------------------------------

#ifndef KELMAR_MALLOC_RECORDS
struct free_records {
    std::int64_t names, forms, conds;
};

free_records count_free()
{
    constexpr std::int64_t all = INT64_MAX - 1;
    return {count_free_names(all), count_list<form_node, &form_node::next>(formhead, all),
            count_list<cond_node, &cond_node::link>(condhead, all)};
}

// After a first round has filled the free lists, a further one must leave them as they are.
void expect_balance(const std::string &text)
{
    session_text(text);
    const record_audit audit;
    const free_records before = count_free();
    for (int i = 0; i < 20; ++i) session_text(text);
    const free_records after = count_free();
    EXPECT_EQ(after.names, before.names) << text;
    EXPECT_EQ(after.forms, before.forms) << text;
    EXPECT_EQ(after.conds, before.conds) << text;
    audit.expect_unchanged(text.c_str());
}

TEST_F(Definition, CancelledFunctionGivesItsRecordsBack)
{
    expect_balance(
        "Func F(a, ^b) = {x} if a then {y} b else while a do for i = 1 to 2 do 1 od od fi; 'x' .\n@F\n");
}

TEST_F(Definition, BrokenDefinitionGivesItsRecordsBack)
{
    expect_balance("Func F(a, b, a) = 1 .\n");
    expect_balance("Func F(a, ^b) = {x} a; if a then b od .\n");
    expect_balance("Func F = while 1 do for i = 1 to 2 do if x then y else {z} else\n");
    expect_balance("Func F = (1 + 2");
    expect_balance("Func F = 1; 'abc");
    expect_balance("Func F = {abc");
}

TEST_F(Definition, ControlStatementsReplaceEachOther)
{
    expect_balance("for i = 1 to 3 do i od\nif 1 then 2 fi\n");
    expect_balance("for i = 1 to 3 do nowhere od\n");
    expect_balance("for i = 1 to 3 do\n");
}

TEST_F(Definition, RangesGiveTheirTokensBack)
{
    expect_balance(
        "Sigma<i = 1 to 3>[i]\nSigma<i = 1 to 3>[nowhere]\nSigma<i = 1 to 3>[i\nInt(3)\nInt(1/0)\n");
}

TEST_F(Definition, ErrorsInCallsGiveParametersBack)
{
    const std::string body = "Func F(a, ^b) = b := 2; if a = 0 then nowhere else F(a-1, b) fi .\ng := 1:\n";
    session_text(body + "F(5, g)\n");
    const record_audit audit;
    const std::int64_t before = count_free_vars(1000000);
    for (int i = 0; i < 20; ++i) session_text("F(5, g)\nF(1/0, g)\nF(F(1, g), 3)\n");
    EXPECT_EQ(count_free_vars(1000000), before);
    EXPECT_EQ(params_top, nullptr);
    EXPECT_EQ(newest_call, nullptr);
    EXPECT_EQ(statcount, 0);
    audit.expect_unchanged("errors in calls");
}
#endif

TEST_F(Definition, DeepNestingIsReleasedWithoutStack)
{
    std::string text = "Func F = ";
    for (int i = 0; i < 20000; ++i) text += "if 1 then ";
    text += "7";
    for (int i = 0; i < 20000; ++i) text += " fi";
    define(text + " .");
    EXPECT_EQ(last_value("F"), "7");
    TearDownFunctions();
}

TEST_F(Definition, LongBodyRuns)
{
    std::string text = "Func F = x := 0";
    for (int i = 0; i < 100000; ++i) text += "; x:+";
    define(text + "; x .");
    EXPECT_EQ(last_value("F"), "100000");
}

TEST_F(Definition, TooManyOpenBracketsAreRefused)
{
    const std::string text = session_text("Func F = " + std::string(5000, '(') + "\n");
    EXPECT_NE(text.find("nested too deeply"), std::string::npos) << text;
    session_text("Func F = " + std::string(4000, '(') + "1" + std::string(4000, ')') + " .\n");
    EXPECT_EQ(last_value("F"), "1");
}

}  // namespace
