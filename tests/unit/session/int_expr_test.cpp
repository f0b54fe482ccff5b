// tests/unit/session/int_expr_test.cpp -- machine integers against a model.
#include "session/int_expr.h"
#include <climits>
#include <cmath>
#include <random>
#include <string>
#include "quoly/mul.h"
#include "session/errors.h"
#include "session/report.h"
#include "tests/support/session_text.h"

using namespace kelmar;
using namespace kelmar_test;

namespace {

// The value of the expression as the last statement of an Integer function.
std::string value_of(const std::string &expression)
{
    const std::string value = last_value("Func T = Integer; " + expression + " .\nT");
    session_text("@T\n");
    return value;
}

int error_of(const std::string &expression)
{
    last_error = 0;
    session_text("Func T = Integer; " + expression + " .\nT\n@T\n");
    return last_error;
}

TEST(IntExpr, QuotientsAreCut)
{
    EXPECT_EQ(value_of("7/2"), "3");
    EXPECT_EQ(value_of("(-7)/2"), "-3");
    EXPECT_EQ(value_of("7\\2"), "3");
    EXPECT_EQ(value_of("x := 7/2; x"), "3");
}

TEST(IntExpr, RemaindersAreNotNegative)
{
    EXPECT_EQ(value_of("7|4"), "3");
    EXPECT_EQ(value_of("(-7)|4"), "1");
    EXPECT_EQ(value_of("(-7)|(-4)"), "1");
}

TEST(IntExpr, ArithmeticWraps)
{
    EXPECT_EQ(value_of("2147483647 + 1"), "-2147483648");
    EXPECT_EQ(value_of("65536*65536"), "0");
    EXPECT_EQ(value_of("-(-2147483647 - 1)"), "-2147483648");
    EXPECT_EQ(value_of("(-2147483647 - 1)/(-1)"), "-2147483648");
    EXPECT_EQ(value_of("34!"), "0");
    EXPECT_EQ(value_of("2^31"), "-2147483648");
}

TEST(IntExpr, ReadsEveryKindOfFactor)
{
    EXPECT_EQ(value_of("'A'"), "65");
    EXPECT_EQ(value_of("|-3|"), "3");
    EXPECT_EQ(value_of("2(3 + 4)"), "14");
    EXPECT_EQ(value_of("a := 3; 2a a"), "18");
    EXPECT_EQ(value_of("5!"), "120");
    EXPECT_EQ(value_of("2^3^2"), "512");
    EXPECT_EQ(value_of("-2^2"), "-4");
    EXPECT_EQ(value_of("$5"), "5");
    EXPECT_EQ(value_of("_sqrt(16)"), "4");
    EXPECT_EQ(value_of("Int(7/2)"), "3");
    EXPECT_EQ(value_of("Sigma<i = 1 to 4>[i^2]"), "30");
    EXPECT_EQ(value_of("Prod<i = 1, 3>(Sigma<j = 1, i>[j])"), "18");
    EXPECT_EQ(value_of("5\""), "0");
}

TEST(IntExpr, AssignsInEveryForm)
{
    EXPECT_EQ(value_of("a := 3; a:+; a"), "4");
    EXPECT_EQ(value_of("a := 3; a:+10; a"), "13");
    EXPECT_EQ(value_of("a := 3; a:-(2 + 3); a"), "-2");
    EXPECT_EQ(value_of("a := 3"), "0");
}

TEST(IntExpr, VariablesAreCutTowardsZero)
{
    EXPECT_EQ(last_value("x := 3.7\ny := -3.7\nFunc T = Integer; 10*x + y .\nT"), "27");
    EXPECT_EQ(last_value("x := 2.9999999999999\ny := 0\nT"), "30");
    session_text("@T\n");
}

TEST(IntExpr, ReportsWhatIsWrong)
{
    EXPECT_EQ(error_of("1/0"), err_need_integer_value);
    EXPECT_EQ(error_of("7//2"), err_double_slash);
    EXPECT_EQ(error_of("nowhere"), err_undefined);
    EXPECT_EQ(error_of("x := 10^10; (x := 3.5)"), err_need_close_paren);
    EXPECT_EQ(error_of("2^(-1)"), err_bad_exponent);
    EXPECT_EQ(error_of("(-1)!"), err_bad_factorial);
    EXPECT_EQ(error_of("|3"), err_need_close_bar);
    EXPECT_EQ(error_of("_sqrt(2)"), err_not_an_integer);
    EXPECT_EQ(error_of("3000000000"), err_not_an_integer);
    EXPECT_EQ(error_of("3 := 4"), err_not_assignable);
    EXPECT_EQ(error_of("x:3"), err_bad_colon);
    EXPECT_EQ(error_of("+"), err_bad_factor);
    EXPECT_EQ(error_of("1 2 and 3"), err_bad_statement_end);
}

// Random expressions ----------------------------------------------------------------------------------------

struct generator {
    std::mt19937 random;

    int below(int n)
    {
        return static_cast<int>(random() % static_cast<unsigned>(n));
    }

    std::int32_t word()
    {
        switch (below(4)) {
        case 0: return below(10);
        case 1: return INT_MAX - below(3);
        case 2: return below(1 << 16);
        default: return static_cast<std::int32_t>(random() & 0x7FFFFFFF);
        }
    }

    std::string factor(int depth, std::uint32_t *value)
    {
        const int kind = depth == 0 ? 0 : below(4);
        if (kind == 1) {
            const std::string text = "-" + factor(depth - 1, value);
            *value = 0u - *value;
            return text;
        }
        if (kind == 2) return "(" + sum(depth - 1, value) + ")";
        const std::int32_t v = word();
        *value = static_cast<std::uint32_t>(v);
        return std::to_string(v);
    }

    std::string term(int depth, std::uint32_t *value)
    {
        std::string text = factor(depth, value);
        for (int more = below(3); more > 0; --more) {
            std::uint32_t right;
            const std::string next = factor(depth, &right);
            const std::int64_t a = static_cast<std::int32_t>(*value);
            const std::int64_t b = static_cast<std::int32_t>(right);
            const int op = b == 0 ? 0 : below(4);
            const std::int64_t rest = b == 0 ? 0 : a % b;
            const std::int64_t results[] = {a * b, b ? a / b : 0, b ? a / b : 0,
                                            rest < 0 ? rest + (b < 0 ? -b : b) : rest};
            *value = static_cast<std::uint32_t>(results[op]);
            text += std::string(" ") + "*/\\|"[op] + " " + next;
        }
        return text;
    }

    std::string sum(int depth, std::uint32_t *value)
    {
        std::string text = term(depth, value);
        for (int more = below(3); more > 0; --more) {
            std::uint32_t right;
            const bool minus = below(2) != 0;
            text += (minus ? " - " : " + ") + term(depth, &right);
            *value = minus ? *value - right : *value + right;
        }
        return text;
    }
};

TEST(IntExpr, AgreesWithTheModel)
{
    const unsigned seed = 20240503;
    generator g{std::mt19937(seed)};
    for (int round = 0; round < 1000; ++round) {
        std::uint32_t value;
        const std::string text = g.sum(3, &value);
        EXPECT_EQ(value_of(text), std::to_string(static_cast<std::int32_t>(value)))
            << text << " seed " << seed;
    }
}

}  // namespace
