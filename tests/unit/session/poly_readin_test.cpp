// Values read in the form in which they are displayed: what was written comes back, in every ring.
#include "session/poly_readin.h"
#include <gtest/gtest.h>
#include <cstdlib>
#include <cstring>
#include "numbers/decimal.h"
#include "poly/variables.h"
#include "quoly/display.h"
#include "quoly/owned.h"
#include "session/pset.h"
#include "session/report.h"
#include "tests/support/by_build.h"
#include "tests/support/quolys.h"
#include "tests/support/variables.h"
#include "tests/support/views.h"

using namespace kelmar;
using namespace kelmar_test;

namespace {

constexpr int rounds = by_build(200, 3000);

constexpr std::int32_t vars = 3;

class PolyReadin : public ::testing::Test {
protected:
    const adjoined variables{"x", "y", "z"};
    static void SetUpTestSuite()
    {
        if (!numstash) open_stashes();
        if (!start) make_ring();
        if (!owned_slots) make_owned();
        init_psets();
    }
    void SetUp() override
    {
        tt_flag = 0;
    }
    void TearDown() override
    {
        tt_flag = 1;
        laurent = 0;
    }
};

std::string written(const quolynode *q, int wrap)
{
    char *bytes = nullptr;
    std::size_t size = 0;
    std::int32_t col = 0;
    std::FILE *out = open_memstream(&bytes, &size);
    const value_form form = {wrap, 1, 0, 0, 0, ""};
    quoly_display(out, &form, q, &col);
    std::fputs(";", out);
    std::fclose(out);
    std::string text(bytes, size);
    std::free(bytes);
    return text;
}

// *q = what the text says, read up to its end.
void read_text(const char *text, quolynode **q)
{
    input_stream in;
    input_stream *stream = &in;
    open_text(&in, reinterpret_cast<const unsigned char *>(text), std::strlen(text));
    leftover[0] = 0;
    scanner(&stream, &token, &zilch);
    own(q);
    quoly_readin(&stream, q, &zilch);
    disown();
    EXPECT_STREQ(token.text, ";") << text;
}

TEST_F(PolyReadin, WhatWasWrittenComesBack)
{
    test_random r;
    for (num_view v : {view_float, view_modular, view_word, view_digits}) {
        in_view live(v, 1009);
        for (int round = 0; round < rounds; ++round) {
            poly_audit audit;
            poly_shape shape;
            shape.vars = vars;
            shape.terms = 25;
            shape.degree = 5;
            shape.digits = v == view_digits ? 3 : 1;
            laurent = r.below(4) == 0;
            if (laurent) shape.low = -3;
            {
                value_operand p(random_poly(&r, shape)), back;
                const int wrap = round & 1;
                const std::string text = written(p.q, wrap);
                testing::internal::CaptureStdout();
                EXPECT_EQ(error_in_view([&] { read_text(text.c_str(), &back.q); }), 0)
                    << text << " seed " << r.seed;
                if (HasFailure()) return;
                testing::internal::GetCapturedStdout();  // minus signs in modular mode are told
                EXPECT_EQ(value_text(back.q), value_text(p.q)) << text << " seed " << r.seed;
                EXPECT_TRUE(quoly_is_normal(back.q, vars)) << text;
            }
            audit.expect_unchanged("reading");
            if (HasFailure()) return;
        }
    }
}

TEST_F(PolyReadin, DecimalsComeBack)
{
    in_view live(view_float);
    value_operand p("{2{#0.5}, 1{1{#1e-05}, #-2.25}, #1e+20}"), back;
    read_text(written(p.q, 0).c_str(), &back.q);
    EXPECT_EQ(value_text(back.q), value_text(p.q));
}

TEST_F(PolyReadin, ErrorsReleaseWhatWasRead)
{
    in_view live(view_float);
    struct {
        const char *text;
        int wrong;
    } const cases[] = {
        {"(y + 1)x^2 + 2x^2;", err_read_bad_order},
        {"(y + (z + 1)y^0)x;", err_read_bad_power},
        {"(y + 1)x^2 + w;", err_read_bad_variable},
        {"((y + 1)x;", err_need_close_paren},
        {"x^3 + 2x^2 +;", err_read_bad_number},
        {"0 - x;", err_read_after_zero},
        {"x^2 + 7 3 x^;", err_read_bad_power},
        {"x^2 (y);", err_read_bad_end},
        {"0/x;", err_read_zero_numerator},
        {"+;", err_read_bad_number},
        {");", err_read_bad_term},
    };
    for (const auto &c : cases) {
        poly_audit audit;
        quolynode *q = nullptr;
        const int mark = owned_count;
        EXPECT_EQ(error_in_view([&] { read_text(c.text, &q); }), c.wrong) << c.text;
        free_owned(mark);
        free_quoly(&q);
        audit.expect_unchanged(c.text);
    }
}

TEST_F(PolyReadin, BracketsNestByLevel)
{
    in_view live(view_float);
    value_operand back;
    read_text("((2z + 1)y + z)x + (z)y - 4;", &back.q);
    EXPECT_EQ(value_text(back.q), "{1{1{1{#2}, #1}, 0{1{#1}}}, 0{1{1{#1}}, #-4}}");
}

}  // namespace
