// The texts of warnings, of numbered messages, and of stops at delicate times.
#include "session/errors.h"
#include <gtest/gtest.h>
#include <cstring>
#include <string>
#include "matrix/pins.h"
#include "session/levels.h"
#include "session/names.h"
#include "session/report.h"
#include "storage/low_memory.h"
#include "tests/support/catch_error.h"
#include "tests/support/reports.h"
#include "tests/support/session_text.h"
#include "tests/support/views.h"

using namespace kelmar;
using namespace kelmar_test;

namespace {

std::string warned(int n, const char *name)
{
    prepare_session_once();
    return told([&] { warning(n, name); });
}

std::string message(int n)
{
    prepare_session_once();
    return told([&] { out_err_mess(n); });
}

// The frame of every warning around its text.
std::string framed(const std::string &text)
{
    return "\n *** Warning.\n" + text + "\n";
}

TEST(Warning, TextsOfTheirOwn)
{
    EXPECT_EQ(warned(0, ""), framed(" *** Loop counter in Content is negative.  Will reset.\n"));
    EXPECT_EQ(warned(1, "Det"), framed(" Specified factor for Det is unusable. Will ignore it.\n"));
    EXPECT_EQ(warned(2, "Det"), framed(" Specified degree is unreasonable. Will ignore it.\n"));
    EXPECT_EQ(warned(3, "Det"), framed(" Power is of use only over ground rings Z or Z/p.\n"));
    EXPECT_EQ(warned(4, "Det"),
              framed(" With even power, |power| must be 2^k, and modulus mod 4 must equal 3.\n"));
    EXPECT_EQ(warned(5, "Det"), framed(" With odd power, gcd(|power|, modulus-1) must be 1.\n"));
    EXPECT_EQ(warned(90, "Det"), framed(" *** Can't do Det\n"));
}

TEST(Warning, NamesStandInTheText)
{
    EXPECT_EQ(warned(19, "height"), framed(" *** Undefined variable: height.  will use 0\n"));
    EXPECT_EQ(warned(22, "/"),
              framed(" *** Trying to divide by 0, in variable: /.  will set quotient to 0\n"));
}

TEST(Warning, OfAParameterTellsWhatToDelete)
{
    EXPECT_EQ(warned(342, "p"),
              framed(message(342) + " If necessary, do a panic stop as soon as possible. Then if\n"
                                    " necessary, delete the parameter p.\n"));
}

TEST(Warning, OthersAreANumberedMessageBehindTheName)
{
    EXPECT_EQ(warned(44, "Invert"), framed(" *** Can't do Invert\n" + message(44)));
    EXPECT_EQ(warned(17, "&"), framed(" *** Can't do &\n" + message(17)));
}

TEST(Message, EndsWithoutTrailingBlanks)
{
    EXPECT_EQ(message(1), "A closing parenthesis ) was expected here.\n");
    for (int n = 1; n <= 377; ++n) {
        const std::string text = message(n);
        ASSERT_GE(text.size(), 2u) << n;
        EXPECT_EQ(text.back(), '\n') << n;
        EXPECT_NE(text[text.size() - 2], ' ') << n;
    }
}

TEST(Message, OfAnUnknownSwitchFollowsTheListOfLetters)
{
    const std::string list = "After &, legal symbols are: v,f,F,r,R,d,D,C,B,I,X,L,K,c,W,@,_s,_t,_G\n";
    EXPECT_EQ(message(17).substr(0, list.size()), list);
    EXPECT_GT(message(17).size(), list.size());
}

TEST(Fault, IsTold)
{
    EXPECT_EQ(told([] { kelmar_error("bad 0 node found in showint", 0); }),
              "*** Kelmar error. bad 0 node found in showint\n");
}

// The value of the variable `name`, as an operation holds it that reads it.
const quolynode *value_of(const char *name)
{
    token_rec tok = {};
    set_token(&tok, name);
    return find_var(&tok)->value;
}

// What `push` writes, in whose level the statements are given.
template <class F> std::string level_with(const char *statements, F push)
{
    input_stream text;
    input_stream *const input = Input;
    open_text(&text, reinterpret_cast<const unsigned char *>(statements), std::strlen(statements));
    Input = &text;
    const std::string all = told(push);
    Input = input;
    return all;
}

constexpr const char *other_values = "\nwaiting := 7\nlater := 8\n@waiting\nothers := 9\n&(e = 1)\n"
                                     "&(J = t)\n&_p\n&(e = 0)\n&_p\n";

// The level that `push` pushes replaces and deletes the value of an operation that waits; it lasts.
template <class F> void expect_values_kept(F push)
{
    session_text("&(J = s)\nwaiting := 41\n");
    const quolynode *const value = value_of("waiting");
    const std::string text = level_with(other_values, push);
    EXPECT_NE(text.find("*** Resuming earlier command level\n"), std::string::npos) << text;
    EXPECT_NE(text.find("This cannot be changed at a pushed level."), std::string::npos) << text;
    EXPECT_EQ(value->num->real, 41);
    EXPECT_EQ(values_pinned, 0);
    release_pinned();
    session_text("@(later, others)\n&(J = -s)\n");
}

TEST(Fault, KeepsTheValuesThatWait)
{
    expect_values_kept([] { kelmar_error("a fault", 1); });
}

TEST(MemError, KeepsTheValuesThatWait)
{
    expect_values_kept([] {
        testing::internal::CaptureStdout();
        mem_error();
        poll_interrupt();
        keep_reserve();
        testing::internal::GetCapturedStdout();
    });
}

const std::string table_changed =
    "\n*** You have interrupted at a delicate time. The global poly table has been\n"
    "    changed. Your variables that are polynomials are unreadable and unusable.\n";

// What a panic stop writes.
std::string panic_text()
{
    prepare_session_once();
    return report_of([] { error(panic_stop, " "); });
}

// What a pushed level writes whose only statement resumes.
std::string level_text()
{
    prepare_session_once();
    static constexpr char resume[] = "\n&_p\n";
    input_stream text;
    input_stream *const input = Input;
    open_text(&text, reinterpret_cast<const unsigned char *>(resume), sizeof resume - 1);
    Input = &text;
    const std::string all = told([&] {
        std::FILE *const shown = Output;
        caught_error([&] {
            Output = shown;
            error(new_level, " ");
        });
        Output = shown;
    });
    Input = input;
    return all;
}

TEST(DelicateTime, PanicStopInAnExcursionTellsHowToRevert)
{
    in_view residues(view_modular, 7);
    const std::int32_t kept = was_in_rat;
    was_in_rat = 1;
    const std::string text = panic_text();
    was_in_rat = kept;
    EXPECT_NE(text.find("*** Panic stop.\n"
                        "\n*** You have interrupted at a delicate time. You are now in modular arithmetic.  "
                        "Beware!\n    Your variables are unreadable and unusable.  If you wish\n"
                        "    to revert, do &(p=_i:) .\n\n"),
              std::string::npos)
        << text;
}

TEST(DelicateTime, LevelInAnExcursionTellsHowToAbort)
{
    in_view residues(view_modular, 7);
    const std::int32_t kept = was_in_rat;
    was_in_rat = 1;
    const std::string text = level_text();
    was_in_rat = kept;
    EXPECT_NE(text.find("*** New command level.\n"), std::string::npos) << text;
    EXPECT_NE(text.find("\n*** You have interrupted at a delicate time. Kelmar had switched\n"
                        "    internally to arithmetic mod p. It has switched back for your \n"
                        "    convenience during this interrupt. Do not do any significant \n"
                        "    polynomial computations.  To abort, enter &@ followed by  &(p=_i:) .\n\n"),
              std::string::npos)
        << text;
}

TEST(DelicateTime, PanicStopWhileTheTableOfVariablesChanges)
{
    globalpoly = 1;
    const std::string text = panic_text();
    EXPECT_NE(text.find(table_changed + "    Beware!  You should probably quit immediately.\n\n"),
              std::string::npos)
        << text;
    EXPECT_EQ(globalpoly, 0);
}

TEST(DelicateTime, LevelWhileTheTableOfVariablesChanges)
{
    globalpoly = 1;
    const std::string text = level_text();
    EXPECT_EQ(globalpoly, 1);
    globalpoly = 0;
    EXPECT_NE(text.find("*** New command level.\n"), std::string::npos) << text;
    EXPECT_NE(text.find(table_changed + "    Beware! (You can use ZZ3 to display a variable.)\n\n2>"),
              std::string::npos)
        << text;
    EXPECT_NE(text.find("*** Resuming earlier command level\n"), std::string::npos) << text;
}

}  // namespace
