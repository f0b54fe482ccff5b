// tests/unit/session/conditions_test.cpp -- conditions against a model, on values and on machine integers.
#include "session/conditions.h"
#include <random>
#include <string>
#include "session/errors.h"
#include "session/report.h"
#include "tests/support/session_text.h"

using namespace kelmar;
using namespace kelmar_test;

namespace {

std::string truth(const std::string &condition)
{
    return last_value("if " + condition + " then 1 else 0 fi");
}

TEST(Conditions, CompareNumbers)
{
    EXPECT_EQ(truth("1 < 2"), "1");
    EXPECT_EQ(truth("2 < 2"), "0");
    EXPECT_EQ(truth("2 <= 2"), "1");
    EXPECT_EQ(truth("2 >= 3"), "0");
    EXPECT_EQ(truth("2 <> 2"), "0");
    EXPECT_EQ(truth("0.1 + 0.2 = 0.3"), "0");
    EXPECT_EQ(truth("-1 < 1"), "1");
}

TEST(Conditions, OneByteSignsAreTheTwoByteOnes)
{
    for (const char *pair : {"1|2", "2|2", "3|2"}) {
        const std::string a(1, pair[0]);
        const std::string b(1, pair[2]);
        EXPECT_EQ(truth(a + "\xB2" + b), truth(a + "<=" + b));
        EXPECT_EQ(truth(a + "\xB3" + b), truth(a + ">=" + b));
        EXPECT_EQ(truth(a + "\xAD" + b), truth(a + "<>" + b));
    }
}

TEST(Conditions, OnlyOneIsTrue)
{
    EXPECT_EQ(truth("1"), "1");
    EXPECT_EQ(truth("2"), "0");
    EXPECT_EQ(truth("0"), "0");
    EXPECT_EQ(truth("-1"), "0");
    EXPECT_EQ(truth("3 - 2"), "1");
}

TEST(Conditions, AreNotShortened)
{
    EXPECT_EQ(last_value("Func Count = s := s + 1; 1 .\ns := 0\nif 1 = 1 or Count = 1 then 1 fi\n"
                         "if 1 = 2 and Count = 1 then 1 fi\ns"),
              "2");
}

TEST(Conditions, LeftSideIsReadAfterTheRightSideRan)
{
    EXPECT_EQ(last_value("Func Set(v) = x := v; v .\nx := 1\nif x = Set(5) then 1 else 0 fi"), "1");
}

TEST(Conditions, LeftSideSurvivesItsCancellation)
{
    EXPECT_EQ(last_value("Func Drop = @x; 4 .\nx := 4\nif x = Drop then 1 else 0 fi"), "1");
}

// Random conditions -------------------------------------------------------------------------------------

struct generator {
    std::mt19937 random;

    int below(int n)
    {
        return static_cast<int>(random() % static_cast<unsigned>(n));
    }

    std::string comparison(bool *value)
    {
        static const char *const signs[] = {"<", ">", "=", "<=", ">=", "<>", "\xB2", "\xB3", "\xAD"};
        const int a = below(4);
        const int b = below(4);
        const int sign = below(9);
        const bool results[] = {a<b, a> b, a == b, a <= b, a >= b, a != b, a <= b, a >= b, a != b};
        *value = results[sign];
        return std::to_string(a) + signs[sign] + std::to_string(b);
    }

    std::string fact(int depth, bool *value)
    {
        const int kind = depth == 0 ? 0 : below(5);
        if (kind == 1) {
            const std::string text = "not " + fact(depth - 1, value);
            *value = !*value;
            return text;
        }
        if (kind >= 3) return "[" + condition(depth - 1, value) + "]";
        if (kind == 2) {
            const int a = below(3);
            *value = a == 1;
            return std::to_string(a);
        }
        return comparison(value);
    }

    std::string term(int depth, bool *value)
    {
        std::string text = fact(depth, value);
        for (int more = below(3); more > 0; --more) {
            bool right;
            text += " and " + fact(depth, &right);
            *value = *value && right;
        }
        return text;
    }

    std::string condition(int depth, bool *value)
    {
        std::string text = term(depth, value);
        for (int more = below(3); more > 0; --more) {
            bool right;
            text += " or " + term(depth, &right);
            *value = *value || right;
        }
        return text;
    }
};

void agree_with_the_model(const std::string &head, unsigned seed)
{
    generator g{std::mt19937(seed)};
    for (int round = 0; round < 300; ++round) {
        bool value;
        const std::string text = g.condition(3, &value);
        EXPECT_EQ(last_value("Func T = " + head + "if " + text + " then 1 else 0 fi .\nT"), value ? "1" : "0")
            << text << " seed " << seed;
        session_text("@T\n");
    }
}

TEST(Conditions, AgreeWithTheModel)
{
    agree_with_the_model("", 20240501);
}

TEST(Conditions, AgreeWithTheModelOnIntegers)
{
    agree_with_the_model("Integer; ", 20240502);
}

// Errors ------------------------------------------------------------------------------------------------

int error_of(const std::string &statement)
{
    last_error = 0;
    session_text(statement + "\n\n");
    return last_error;
}

TEST(Conditions, ReportWhatIsWrong)
{
    EXPECT_EQ(error_of("if 1) then 2 fi"), err_bad_condition);
    EXPECT_EQ(error_of("if 1 = 1) then 2 fi"), err_bad_condition_end);
    EXPECT_EQ(error_of("if 1 = 1] then 2 fi"), err_bad_condition_end);
    EXPECT_EQ(error_of("if = 1 then 2 fi"), err_bad_factor);
    EXPECT_EQ(error_of("if [1 = nowhere] then 2 fi"), err_undefined);
}

}  // namespace
