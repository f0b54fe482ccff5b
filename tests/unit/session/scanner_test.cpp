// tests/unit/session/scanner_test.cpp -- tokens of the terminal, of files and of stored lists.
#include "session/scanner.h"
#include <gtest/gtest.h>
#include <string>
#include <vector>
#include "numbers/decimal.h"
#include "session/pset.h"

using namespace kelmar;

namespace {

input_stream text;

class Scanner : public ::testing::Test {
protected:
    void SetUp() override
    {
        init_psets();
        if (!start) make_ring();
        clear_ring();
        Input = &text;
        tt_flag = 1;
        leftover[0] = 0;
        continuation = '`';
    }
    void TearDown() override
    {
        tt_flag = 1;
        continuation = '`';
    }

    static void feed(const std::string &bytes)
    {
        static std::string kept;
        kept = bytes;
        open_text(&text, reinterpret_cast<const unsigned char *>(kept.data()), kept.size());
    }

    static std::string next()
    {
        token_rec t;
        scanner(&Input, &t, &zilch);
        return t.text;
    }

    static std::vector<std::string> tokens(const std::string &bytes, int count)
    {
        std::vector<std::string> all;
        feed(bytes);
        for (int i = 0; i < count; ++i) all.push_back(next());
        return all;
    }
};

typedef std::vector<std::string> list;

}  // namespace

TEST_F(Scanner, LineEndOfTheTerminalIsASemicolonAndStaysUnread)
{
    EXPECT_EQ(tokens("x\n", 3), (list{"x", ";", ";"}));
    EXPECT_EQ(peek_char(Input), '\n');
}

TEST_F(Scanner, LineEndOfAFileIsABlank)
{
    tt_flag = 0;
    EXPECT_EQ(tokens("x\n\n + y\n;", 4), (list{"x", "+", "y", ";"}));
}

TEST_F(Scanner, EndOfInputDeliversSemicolonsForEver)
{
    EXPECT_EQ(tokens("x", 4), (list{"x", ";", ";", ";"}));
    EXPECT_EQ(tokens("", 2), (list{";", ";"}));
    EXPECT_EQ(tokens("  \t ", 2), (list{";", ";"}));
}

TEST_F(Scanner, BlanksBeforeALineEndDoNotCount)
{
    EXPECT_EQ(tokens("x \t\r\n", 2), (list{"x", ";"}));
    EXPECT_EQ(peek_char(Input), '\n');
}

TEST_F(Scanner, NameEndedByTabOrReturnLeavesNothingOver)
{
    EXPECT_EQ(tokens("ab\t+\r\n", 3), (list{"ab", "+", ";"}));
    EXPECT_EQ(tokens("ab\r\n", 2), (list{"ab", ";"}));
}

TEST_F(Scanner, DigitsAndMarksAreTokensOfOneCharacter)
{
    EXPECT_EQ(tokens("12:=a1_b\xFF", 8), (list{"1", "2", ":", "=", "a1_b", "\xFF", ";", ";"}));
}

TEST_F(Scanner, NameStopsAtTenCharacters)
{
    EXPECT_EQ(tokens("abcdefghij\n", 2), (list{"abcdefghij", ";"}));
    EXPECT_EQ(tokens("abcdefghijk\n", 3), (list{"abcdefghij", "k", ";"}));
    EXPECT_EQ(tokens("abcdefghij12\n", 4), (list{"abcdefghij", "1", "2", ";"}));
}

TEST_F(Scanner, ContinuationDropsTheLineAndJoinsTheNext)
{
    EXPECT_EQ(tokens("2 + `comment ; )\n3\n", 4), (list{"2", "+", "3", ";"}));
    EXPECT_EQ(tokens("ab`comment\ncd\n", 3), (list{"ab", "cd", ";"}));
    EXPECT_EQ(tokens("`no line end", 2), (list{";", ";"}));
}

TEST_F(Scanner, BlankAsContinuationActsDirectlyBehindANameOnly)
{
    continuation = ' ';
    EXPECT_EQ(tokens("2 + ab gone\ncd\n", 4), (list{"2", "+", "ab", "cd"}));
}

TEST_F(Scanner, StoredListIsReplayedFromBehindTheCursor)
{
    feed("a+b;");
    name_node *head = nullptr;
    save_input_stream(&head);
    ASSERT_NE(head, nullptr);
    name_node *cursor = head;
    token_rec t;
    list all{head->text};
    for (int i = 0; i < 4; ++i) {
        scanner(&Input, &t, &cursor);
        all.push_back(t.text);
    }
    EXPECT_EQ(all, (list{"a", "+", "b", ";", endlist}));
    EXPECT_EQ(currentchar, nullptr);
    freename(&head);
}

TEST_F(Scanner, SavedInputOfNothingIsNull)
{
    name_node *head = nullptr;
    feed("\n");
    save_input_stream(&head);
    EXPECT_EQ(head, nullptr);
}

TEST_F(Scanner, SavedInputKeepsTheSemicolonsOfADefinition)
{
    name_node *head = nullptr;
    feed("Func F = a; b . ; c");
    save_input_stream(&head);
    std::string all;
    for (const name_node *n = head; n; n = n->next) all += std::string(n->text) + " ";
    EXPECT_EQ(all, std::string("Func F = a ; b . ; ") + endlist + " ");
    freename(&head);
}

TEST_F(Scanner, RawCharactersKeepBlanksAndReportLineEnds)
{
    token_rec t;
    int eol = 7;
    feed(" a`x\nb\nc");
    dumbscanner(&Input, &t, &zilch, &eol);
    EXPECT_STREQ(t.text, " ");
    EXPECT_EQ(eol, 0);
    dumbscanner(&Input, &t, &zilch, &eol);
    EXPECT_STREQ(t.text, "a");
    dumbscanner(&Input, &t, &zilch, &eol);
    EXPECT_STREQ(t.text, " ");  // the continuation character: its line is gone
    dumbscanner(&Input, &t, &zilch, &eol);
    EXPECT_STREQ(t.text, "b");
    dumbscanner(&Input, &t, &zilch, &eol);
    EXPECT_STREQ(t.text, "\r");
    EXPECT_EQ(eol, 1);
    dumbscanner(&Input, &t, &zilch, &eol);
    EXPECT_STREQ(t.text, "c");
    dumbscanner(&Input, &t, &zilch, &eol);
    EXPECT_STREQ(t.text, ";");
    EXPECT_EQ(eol, 1);
}

TEST_F(Scanner, SpecialScannerTellsWhetherALineEndWasPassed)
{
    token_rec t;
    int eol = 7;
    tt_flag = 0;
    feed("1 2\n3");
    for (const int expected : {0, 0, 1}) {
        spec_scanner(&Input, &t, &zilch, &eol);
        EXPECT_EQ(eol, expected) << t.text;
    }
}

TEST_F(Scanner, RingHoldsTheLastSixtyTokens)
{
    std::string digits;
    for (int i = 0; i < 75; ++i) digits += static_cast<char>('0' + i % 10);
    tokens(digits, 75);
    std::string held;
    for (const name_node *cell = start;; cell = cell->next) {
        held += cell->text;
        if (cell == finish) break;
    }
    EXPECT_EQ(held, digits.substr(15));
}

TEST_F(Scanner, TokensAreZeroPadded)
{
    token_rec t;
    feed("abcdefghij x");
    scanner(&Input, &t, &zilch);
    scanner(&Input, &t, &zilch);
    for (int i = 1; i < token_room; ++i) EXPECT_EQ(t.text[i], 0);
}
