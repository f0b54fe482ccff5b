// Numeric literals in float mode: the nearest double, however many digits there are.
#include "session/literal.h"
#include <gtest/gtest.h>
#include <cmath>
#include <cstdlib>
#include <cstring>
#include <string>
#include "session/pset.h"
#include "tests/support/long_numbers.h"
#include "tests/support/views.h"

using namespace kelmar;
using namespace kelmar_test;

namespace {

#ifdef KELMAR_MALLOC_RECORDS
constexpr int rounds = 5000;
#else
constexpr int rounds = 100000;
#endif

class Literal : public ::testing::Test {
protected:
    in_view live{view_float};
    static void SetUpTestSuite()
    {
        if (!numstash) open_stashes();
        if (!start) make_ring();
        init_psets();
    }
    void SetUp() override
    {
        tt_flag = 0;
    }
    void TearDown() override
    {
        tt_flag = 1;
    }
};

// The value of the literal that the text begins with.
double value_of(const std::string &text)
{
    const std::string whole = text + " ;";
    input_stream in;
    input_stream *stream = &in;
    name_node *cursor = nullptr;
    quolynode *q = nullptr;
    open_text(&in, reinterpret_cast<const unsigned char *>(whole.data()), whole.size());
    leftover[0] = 0;
    scanner(&stream, &token, &cursor);
    read_literal(&stream, &q, &cursor);
    EXPECT_EQ(token.text[0], ';') << text;
    const double v = q->num->real;
    free_quoly(&q);
    return v;
}

void expect_nearest(const std::string &text)
{
    const double wanted = std::strtod(text.c_str(), nullptr), got = value_of(text);
    EXPECT_EQ(std::memcmp(&wanted, &got, sizeof got), 0) << text << " gives " << got;
}

double random_double(test_random *r)
{
    for (;;) {
        const std::uint64_t bits = r->below(std::uint64_t{1} << 31) << 32 | r->below(std::uint64_t{1} << 32);
        double v;
        std::memcpy(&v, &bits, sizeof v);
        if (std::isfinite(v)) return v;
    }
}

TEST_F(Literal, EveryDoubleComesBackFromSeventeenDigits)
{
    test_random r;
    SCOPED_TRACE("seed " + std::to_string(r.seed));
    for (int k = 0; k < rounds; ++k) {
        char text[40];
        const double v = random_double(&r);
        std::snprintf(text, sizeof text, "%.17g", v);
        ASSERT_EQ(value_of(text), v) << text;
    }
}

TEST_F(Literal, RandomDigitsAreRoundedOnce)
{
    test_random r;
    SCOPED_TRACE("seed " + std::to_string(r.seed));
    for (int k = 0; k < rounds / 5; ++k) {
        std::string text;
        for (auto n = 1 + r.below(25); n > 0; --n) text += static_cast<char>('0' + r.below(10));
        if (r.below(2)) {
            text += '.';
            for (auto n = 1 + r.below(25); n > 0; --n) text += static_cast<char>('0' + r.below(10));
        }
        if (r.below(2)) text += (r.below(2) ? "e+" : "e-") + std::to_string(r.below(30));
        ASSERT_NO_FATAL_FAILURE(expect_nearest(text));
    }
}

TEST_F(Literal, HalfwayCasesAreDecidedByTheLastDigit)
{
    for (const char *text :
         {"9007199254740993", "9007199254740992.99999999999999999999", "0.1", ".3",
          "9007199254740993.00000000000000000000000000000000000001", "00000.00000", "0e+5",
          "2.2250738585072011e-308", "4.9e-324", "2.4e-324", "1.7976931348623157e+308", "123456789012345",
          "1234567890123456", "1e+22", "1e+23", "12345e-22", "12345e-23"}) {
        expect_nearest(text);
    }
    const std::string half = "9007199254740993." + std::string(1000, '0');
    EXPECT_EQ(value_of(half), 9007199254740992.0);
    EXPECT_EQ(value_of(half + "1"), 9007199254740994.0);
}

TEST_F(Literal, DigitsBeyondAllRoomCountByTheirPlace)
{
    const std::string many(2000, '7');
    expect_nearest("0." + many);
    expect_nearest(many + "e-1990");
    expect_nearest("0." + std::string(2000, '0') + "5e+2001");
    expect_nearest(std::string(300, '9') + "." + many);
    EXPECT_TRUE(std::isinf(value_of(many)));
    EXPECT_TRUE(std::isinf(value_of("1e+99999999999999")));
    EXPECT_EQ(value_of("1e-99999999999999"), 0.0);
    EXPECT_EQ(value_of("0e+99999999999999"), 0.0);
}

}  // namespace
