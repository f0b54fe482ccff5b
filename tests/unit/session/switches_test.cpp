// tests/unit/session/switches_test.cpp -- switches inside functions and files, in every ring, and the table.
#include "gcd/polygcd.h"
#include "poly/display.h"
#include "poly/mul.h"
#include "session/switches.h"
#include <gtest/gtest.h>
#include <algorithm>
#include <cmath>
#include <limits>
#include <sstream>
#include <string>
#include "numbers/decimal.h"
#include "numbers/random.h"
#include "quoly/owned.h"
#include "session/arr_access.h"
#include "session/errors.h"
#include "session/evaluator.h"
#include "session/files.h"
#include "session/levels.h"
#include "session/output.h"
#include "session/poly_readin.h"
#include "session/prompt.h"
#include "session/report.h"
#include "session/settings.h"
#include "session/start.h"
#include "session/statement.h"
#include "session/switch_values.h"
#include "session/timing.h"
#include "storage/accounting.h"
#include "storage/low_memory.h"
#include "tests/support/catch_error.h"
#include "tests/support/reports.h"

using namespace kelmar;
using namespace kelmar_test;

namespace {

input_stream terminal;

class Switches : public ::testing::Test {
protected:
    static void SetUpTestSuite()
    {
        if (!numstash) prepare_session(KELMAR_SOURCE_DIR "/BACKWARD/");
    }

    void SetUp() override
    {
        flotemode = lintmode = 1;
        modularmode = 0;
        tt_flag = 1;
        verbose = 0;
        set_token(&token, "");
        type("");
    }

    void TearDown() override
    {
        free_quoly(&value);
        freename(&stored);
        zilch = nullptr;
        verbose = 0;
        modularmode = 0;
        modulus = -1;
        tt_flag = 1;
        std::strcpy(prompt, ">");
        promptsize = 1;
    }

    // What is typed at the terminal; the first character is the line end of the statement before.
    static void type(const std::string &bytes)
    {
        static std::string kept;
        kept = bytes;
        leftover[0] = 0;
        open_text(&terminal, reinterpret_cast<const unsigned char *>(kept.data()), kept.size());
        Input = &terminal;
    }

    // Make `stored` the list of the tokens between the blanks of the text, as in a function.
    void store(const std::string &text)
    {
        freename(&stored);
        newname(&stored);
        name_node *tail = stored;
        std::istringstream words(text + " " + endlist);
        for (std::string word; words >> word;) {
            newname(&tail->next);
            tail = tail->next;
            std::strncpy(tail->text, word.c_str(), token_room - 1);
            tail->index = -1;
        }
    }

    // Run the statement at the terminal, or the stored one; what it wrote.
    std::string run(const std::string &bytes)
    {
        type(bytes);
        return told([this] { run_from(&zilch); });
    }

    std::string run_stored(const std::string &text)
    {
        store(text);
        return told([this] {
            name_node *cursor = stored;
            run_from(&cursor);
        });
    }

    void run_from(name_node **cursor)
    {
        own(&value);
        scanner(&Input, &token, cursor);
        parse(&Input, &value, cursor);
        disown();
    }

    double number_of_value() const
    {
        return value->num->real;
    }

    int error_of(const std::string &bytes)
    {
        type(bytes);
        return caught_error([this] { run_from(&zilch); });
    }

    quolynode *value = nullptr;
    name_node *stored = nullptr;
};

std::string letters(char switch_row::*column)
{
    int count = 0;
    const switch_row *rows = all_switches(&count);
    std::string all;
    for (int i = 0; i < count; ++i) {
        if (rows[i].*column) all += rows[i].*column;
    }
    std::sort(all.begin(), all.end());
    return all;
}

}  // namespace

// The table -----------------------------------------------------------------------------------------------

TEST_F(Switches, EveryLetterHasItsRow)
{
    EXPECT_EQ(letters(&switch_row::plain), "#&(245>@ABCDEFGHIJKLMNOPQRSTUVWXZ]abcdefghjlmnopqrstuvx|}");
    EXPECT_EQ(letters(&switch_row::under), "GLPdklmnprst");
    EXPECT_EQ(letters(&switch_row::code), "#&234567ABDEHJKLMNOPRSUVWXaelmnptu|");
}

TEST_F(Switches, FlagsHaveATextForEveryChange)
{
    int count = 0;
    const switch_row *rows = all_switches(&count);
    for (int i = 0; i < count; ++i) {
        const switch_row &row = rows[i];
        if (row.kind != flag_switch) continue;
        EXPECT_TRUE(row.on[0] && row.off[0] && row.set_on[0] && row.set_off[0]) << row.what;
        EXPECT_EQ(row.code == 0, row.unchanged[0] == 0) << row.what;
    }
}

TEST_F(Switches, DefaultsAreThoseOfAFreshSession)
{
    EXPECT_EQ(poly_cutoff, 20);
    EXPECT_EQ(simplest_poly_cutoff, 140);
    EXPECT_EQ(aux_num_1factor, 400);
    EXPECT_EQ(aux_num_2factor, 100);
    EXPECT_EQ(rat_det_method_cut, 5000);
    EXPECT_EQ(mod_det_method_cut, 150);
    EXPECT_EQ(detcutoff, -1);
    EXPECT_EQ(gauss_cutoff, 0);
    EXPECT_EQ(addresser, 1);
    EXPECT_EQ(disp_size, 5);
    EXPECT_EQ(dispcutoff, 76);
    EXPECT_EQ(chpoly_block & chinhensel & hen_check & mod_matrix_ok & do_line_sup, 1);
    EXPECT_EQ(diskstore | monomial_list | lagrange_stash | windy | laurent | nomodpolyreadin | pseudet_heur,
              0);
}

// Inside functions and files ------------------------------------------------------------------------------

TEST_F(Switches, QuietFlagsSayNothingInAFunction)
{
    for (const char *letter : {"2", "5", "H", "O", "c", "e", "|"}) {
        EXPECT_EQ(run_stored(std::string("& ") + letter + " ;"), "") << letter;
        EXPECT_EQ(run_stored(std::string("& ") + letter + " ;"), "") << letter;
        EXPECT_STREQ(token.text, ";");
    }
    EXPECT_EQ(run_stored("& _ l ;") + run_stored("& _ L ;"), "");
    EXPECT_EQ(run_stored("& _ l ;") + run_stored("& _ L ;"), "");
    EXPECT_EQ(run_stored("& a ;"), "");
    EXPECT_EQ(number_of_value(), 0.0);
    EXPECT_EQ(run_stored("& a ;"), "");
    EXPECT_EQ(number_of_value(), 1.0);
}

TEST_F(Switches, LoudFlagsSpeakInAFunctionToo)
{
    for (const char *letter : {"&", "E", "I", "N", "U", "V", "W", "Z", "b", "n", "t", "_ s", "_ t"}) {
        EXPECT_NE(run_stored(std::string("& ") + letter + " ;"), "") << letter;
        EXPECT_NE(run_stored(std::string("& ") + letter + " ;"), "") << letter;
    }
    EXPECT_EQ(continuation, '`');
}

TEST_F(Switches, SettingAFlagSpeaksInAFunctionToo)
{
    EXPECT_EQ(run_stored("& ( 2 = 1 ) ;"), " Will display polynomials as list of monomials.\n");
    EXPECT_EQ(run_stored("& ( 2 = 0 ) ;"), " Will display polynomials in nested form.\n");
    EXPECT_EQ(run_stored("& ( 2 = 0 ) ;"),
              " Already had that value; no change in monomial display of polynomials.\n");
}

TEST_F(Switches, SettingANumberSpeaksInAFunctionOnlyWhenVerbose)
{
    EXPECT_EQ(run_stored("& ( # = 5 ) ;"), "");
    EXPECT_EQ(poly_cutoff, 6);
    EXPECT_EQ(run_stored("& ( a = 1 ) ;") + run_stored("& ( m = 1 ) ;") + run_stored("& ( u = 9 ) ;"), "");
    EXPECT_EQ(run_stored("& ( _ d = 7 6 ) ;") + run_stored("& ( _ r = 1 ) ;"), "");
    EXPECT_STREQ(token.text, ";");
    verbose = 1;
    EXPECT_EQ(run_stored("& ( # = 2 0 ) ;"), " poly_cutoff now 20.\n");
    EXPECT_EQ(run_stored("& ( a = 1 ) ;"), " Already had that value; no change in error pushing.\n");
}

TEST_F(Switches, LoopExitsWorkInAStoredList)
{
    EXPECT_EQ(run_stored("& > ;") + run_stored("& ] ;") + run_stored("& } ;"), "");
    EXPECT_EQ(leave_flag, 1);
    EXPECT_EQ(cycle_flag, 1);
    EXPECT_EQ(exit_flag, 1);
    leave_flag = cycle_flag = exit_flag = 0;
}

TEST_F(Switches, ReadingStopsOnlyInAFile)
{
    run("&x\n");
    EXPECT_EQ(done_load, 0);
    tt_flag = 0;
    run("&x;\n");
    EXPECT_EQ(done_load, 1);
    done_load = 0;
}

TEST_F(Switches, AQuestionInAFunctionIsAnsweredAtTheTerminal)
{
    type("\n1\n");
    EXPECT_EQ(run_stored("& K ;"),
              " Enter Gauss-Bareiss switch:\n> Gauss-Bareiss: 1 means will try Gauss-Bareiss.\n");
    EXPECT_STREQ(token.text, ";");
    EXPECT_EQ(gauss_cutoff, 1);
    EXPECT_EQ(peek_char(Input), '\n');
    gauss_cutoff = 0;
}

TEST_F(Switches, AQuestionInAFileKeepsTheFile)
{
    input_stream file;
    type("\n60\n");
    open_text(&file, reinterpret_cast<const unsigned char *>("&_d;\n7;\n"), 8);
    input_stream *source = &file;
    tt_flag = 0;
    const std::string text = told([&] {
        scanner(&source, &token, &zilch);
        parse(&source, &value, &zilch);
    });
    EXPECT_EQ(text, " Enter number of columns to display:\n> Number of columns to display is now: \n60\n");
    EXPECT_STREQ(token.text, ";");
    EXPECT_EQ(tt_flag, 0);
    EXPECT_EQ(peek_char(&file), '\n');
    EXPECT_EQ(dispcutoff, 60);
    dispcutoff = 76;
}

TEST_F(Switches, PushingALevelInAFunctionGoesOnBehindIt)
{
    type("&_p\n");
    EXPECT_EQ(run_stored("& _ P ; x"),
              "\n*** New command level.\n\n2>\n0\n\n*** Resuming earlier command level\n");
    EXPECT_STREQ(token.text, ";");
    EXPECT_EQ(levelcount, 1);
}

// Values ----------------------------------------------------------------------------------------------------

TEST_F(Switches, NumbersComeNearOrAreTruncatedTowardZero)
{
    quolynode *q = nullptr;
    std::int32_t v = 77;
    quoly_set(0, &q);
    const auto word_of = [&](double d) {
        q->num->real = d;
        return quoly_to_word(q, &v);
    };
    EXPECT_TRUE(word_of(2.9999999999));
    EXPECT_EQ(v, 3);
    EXPECT_TRUE(word_of(2.99));
    EXPECT_EQ(v, 2);
    EXPECT_TRUE(word_of(-2.99));
    EXPECT_EQ(v, -2);
    EXPECT_TRUE(word_of(2147483647.0));
    EXPECT_EQ(v, 2147483647);
    EXPECT_TRUE(word_of(-2147483647.0));
    EXPECT_EQ(v, -2147483647);
    EXPECT_FALSE(word_of(2147483648.0));
    EXPECT_FALSE(word_of(1e300));
    EXPECT_FALSE(word_of(std::numeric_limits<double>::infinity()));
    EXPECT_FALSE(word_of(std::nan("")));
    free_quoly(&q);
}

TEST_F(Switches, ValuesAreTrueIntegersUnderAModulus)
{
    flotemode = 0;
    modularmode = 1;
    modulus = 7;
    run("&(# = 50)\n");
    EXPECT_EQ(poly_cutoff, 50);
    run("&_m(5 + 4)\n");
    EXPECT_EQ(value->num->word, 9);
    EXPECT_EQ(modularmode, 1);
    EXPECT_EQ(mod_is_changed, 0);
    run("&#\n50\n");
    EXPECT_EQ(poly_cutoff, 50);
    EXPECT_EQ(mod_is_changed, 0);
    run("&(_r = 9)\n");
    EXPECT_EQ(rand_denom_n.word, 2);
    run("&(# = 20)\n");
    run("&(_r = 1)\n");
}

TEST_F(Switches, MemoryAndClockAreShownInFull)
{
    const double most = memavail();
    EXPECT_EQ(run("&h\n"), "");
    EXPECT_GT(number_of_value(), 2147483648.0);
    EXPECT_LE(number_of_value(), most);
    run("&T\n");
    EXPECT_GT(number_of_value(), 0.0);
    free_quoly(&value);
    flotemode = lintmode = 0;
    const std::string shown = run("&h\n");
    std::int32_t col = 0;
    EXPECT_EQ(told([&] { display(Output, 0, 0, value->num, &col, 0); }) + "\n", shown);
    EXPECT_EQ(run_stored("& h ;"), "");
    free_quoly(&value);
}

TEST_F(Switches, StorageReportsComeFromTheAccounts)
{
    EXPECT_EQ(run("&G\n").substr(0, 11), "num count: ");
    const std::string line = run("&j\n");
    EXPECT_EQ(
        line.find(" memavail, minor memory, garbsize, minor prime, total branches, leaf count, stash nodes,"
                  " hits: "),
        0u);
    EXPECT_EQ(line.substr(line.size() - 15), " 0, 0, 0, 0, 0\n");
}

TEST_F(Switches, PoppingTheLastUseFreesTheGcdStash)
{
    run("&C+\n");
    quoly_set(5, &gcd_stash[3]);
    gcd_stash[3]->next = nullptr;
    gcdmass = 40;
    run("&C+\n");
    run("&C-\n");
    EXPECT_NE(gcd_stash[3], nullptr);
    run("&C-\n");
    EXPECT_EQ(gcd_stash[3], nullptr);
    EXPECT_EQ(gcdmass, 0u);
    EXPECT_EQ(lookupgcd, 0);
}

// Refusals --------------------------------------------------------------------------------------------------

TEST_F(Switches, ChpolyBlockCanBeChangedWhereNumbersAreExact)
{
    EXPECT_EQ(error_of("&B\n"), err_not_in_this_ring);
    EXPECT_EQ(chpoly_block, 1);
    flotemode = lintmode = 0;
    EXPECT_EQ(run("&B\n"), " Will optimize Chpoly in modularmode.\n");
    EXPECT_EQ(run("&(B = 0)\n"), " Already had that value; no change in Chpoly speed.\n");
    EXPECT_EQ(run("&(B = 1)\n"), " Chpoly will be slowed in modularmode.\n");
    EXPECT_EQ(chpoly_block, 1);
}

TEST_F(Switches, TheGroundRingIsRefusedForTheFirstReasonThatHolds)
{
    EXPECT_EQ(error_of("&p\n"), err_wrong_ring);
    EXPECT_EQ(error_of("&(p = 7)\n"), err_wrong_ring);
    levelcount = 2;
    EXPECT_EQ(error_of("&p\n"), err_not_at_level);
    levelcount = 2;
    EXPECT_EQ(error_of("&(p = 7)\n"), err_wrong_ring);
    levelcount = 2;
    flotemode = lintmode = 0;
    EXPECT_EQ(error_of("&(p = 7)\n"), err_not_at_level);
    levelcount = 1;
}

TEST_F(Switches, ABadValueChangesNothingAndLeavesNoRecord)
{
    const std::int64_t before = live_quolys();
    const std::int32_t cutoff = poly_cutoff;
    EXPECT_EQ(error_of("&(# = 30\n"), err_need_close_switch);
    EXPECT_EQ(error_of("&(# = -30)\n"), err_negative_switch);
    EXPECT_EQ(error_of("&(# = 1e+300)\n"), err_switch_not_number);
    EXPECT_EQ(error_of("&(# 30)\n"), err_need_equals);
    EXPECT_EQ(error_of("&(# = (30)\n"), err_need_close_switch);
    EXPECT_EQ(error_of("&#\n1e+300\n"), err_bad_switch_range);
    EXPECT_EQ(error_of("&(K = 2)\n"), err_switch_value);
    EXPECT_EQ(error_of("&(t = 'on')\n"), err_no_text_switch);
    EXPECT_EQ(error_of("&(C = 1)\n"), err_switch_not_settable);
    EXPECT_EQ(error_of("&_m(30\n"), err_need_close_paren);
    EXPECT_EQ(poly_cutoff, cutoff);
    EXPECT_EQ(gauss_cutoff, 0);
    EXPECT_EQ(live_quolys(), before);
}

TEST_F(Switches, ATextHasAtMost255Characters)
{
    EXPECT_EQ(error_of("&(R = '" + std::string(255, 'a') + "')\n"), err_cannot_open_file);
    EXPECT_EQ(error_of("&(R = '" + std::string(256, 'a') + "')\n"), err_text_too_long);
    EXPECT_EQ(error_of("&(R = '" + std::string(255, 'a')), err_bad_quoted_text);
}

TEST_F(Switches, ASwitchHasOneLetter)
{
    EXPECT_EQ(error_of("&tt\n"), err_long_switch);
    EXPECT_EQ(error_of("&_tt\n"), err_long_switch);
    EXPECT_EQ(error_of("&(tt = 1)\n"), err_long_switch);
    EXPECT_EQ(error_of("&(_tt = 1)\n"), err_long_switch);
    EXPECT_EQ(error_of("&\n"), err_unknown_switch);
    EXPECT_EQ(error_of("&_\n"), err_unknown_switch);
    EXPECT_EQ(error_of("&_a\n"), err_unknown_switch);
}

// Prompts ---------------------------------------------------------------------------------------------------

TEST_F(Switches, APromptIsOneRawLine)
{
    run("&M\n a`b \r\n2");
    EXPECT_STREQ(prompt, " a`b ");
    EXPECT_EQ(promptsize, 5);
    EXPECT_STREQ(token.text, ";");
    EXPECT_EQ(peek_char(Input), '\n');
}

TEST_F(Switches, APromptAtTheEndOfTheInputIsItsLastLine)
{
    run("&M\nabc");
    EXPECT_STREQ(prompt, "abc");
}

TEST_F(Switches, AStoredPromptIsJoinedFromItsTokens)
{
    EXPECT_EQ(run_stored("& ( M = ' a b > ' ) ;"), "");
    EXPECT_STREQ(prompt, "ab>");
    EXPECT_EQ(promptsize, 3);
}
