// Where gcds end: the simple answers one by one, resumed faults, results of early exits, reports on what no
// computation makes.
#include "gcd/algorithm_c.h"
#include "gcd/content.h"
#include "gcd/float_gcd.h"
#include "gcd/onevar_gcd.h"
#include "gcd/polygcd.h"
#include "poly/mul.h"
#include "session/report.h"
#include "storage/accounting.h"
#include "tests/support/divisions.h"
#include "tests/support/gcds.h"
#include "tests/support/reports.h"
#include "tests/support/resumed.h"

using namespace kelmar;
using namespace kelmar_test;

namespace {

constexpr char files[] = KELMAR_SOURCE_DIR "/BACKWARD/";

struct GcdExits : testing::Test {
    six_in_force names;
    kept_word variables{&number_polys, 4};
    GcdExits()
    {
        load_primes();
        clear_gcd_counters();
    }
    ~GcdExits() override
    {
        init_gcd_stash();
    }

    // gcd(a, b), which must end at `end` and nowhere else before it.
    std::string ending_at(gcd_exit end, const std::string &a, const std::string &b, std::int32_t test = 1)
    {
        poly_operand x(poly_of_text(a.c_str())), y(poly_of_text(b.c_str())), g;
        const exits_since exits;
        polygcd(x.p, y.p, &g.p, 0, test, 1, names.names(), 1, 1, 1);
        EXPECT_EQ(exits.count(end), 1) << exits.text();
        EXPECT_EQ(poly_text(x.p), a);
        EXPECT_EQ(poly_text(y.p), b);
        return poly_text(g.p);
    }
};

// Simple answers -----------------------------------------------------------------------------------------

TEST_F(GcdExits, AZeroOperand)
{
    in_view live(view_digits);
    EXPECT_EQ(ending_at(exit_zero, "{#0}", "{2{#-4}, #2}"), "{2{#4}, #-2}");
    EXPECT_EQ(ending_at(exit_zero, "{2{#-4}, #2}", "{#0}"), "{2{#4}, #-2}");
    EXPECT_EQ(ending_at(exit_zero, "{#0}", "{#-7}"), "{#7}");
    EXPECT_EQ(ending_at(exit_zero, "{#0}", "{#0}"), "{#0}");
    in_view floats(view_float);
    EXPECT_EQ(ending_at(exit_zero, "{2{#4}, #2}", "{#0}"), "{2{#1}, #0.5}");
    EXPECT_EQ(ending_at(exit_zero, "{#0}", "{#0}"), "{#0}");
}

TEST_F(GcdExits, TwoNumbers)
{
    in_view live(view_digits);
    EXPECT_EQ(ending_at(exit_numbers, "{#12}", "{#-18}"), "{#6}");
    in_view floats(view_float);
    EXPECT_EQ(ending_at(exit_numbers, "{#12}", "{#-18}"), "{#1}");
}

TEST_F(GcdExits, OneNumber)
{
    in_view live(view_digits);
    EXPECT_EQ(ending_at(exit_number, "{#12}", "{1{#-6}, 0{1{#9}}}"), "{#3}");
    EXPECT_EQ(ending_at(exit_number, "{1{#-6}, 0{1{#9}}}", "{#-12}"), "{#3}");
    in_view floats(view_float);
    EXPECT_EQ(ending_at(exit_number, "{#12}", "{1{#6}, 0{1{#9}}}"), "{#1}");
}

// The fault pushes a level; when that is left, the gcd is 1.
TEST_F(GcdExits, NoVariable)
{
    in_view live(view_digits);
    poly_operand a(poly_of_text("{2{#1}, #-1}")), b(poly_of_text("{1{#1}, #-1}")), g;
    bool came_back = false;
    const exits_since exits;
    const std::string text = report_and_resume(files, [&] {
        polygcd(a.p, b.p, &g.p, 0, 1, 1, nullptr, 1, 1, 1);
        came_back = true;
    });
    EXPECT_EQ(text.find("*** Kelmar error. pt nil in polygcd.\n"), 0u) << text;
    ASSERT_TRUE(came_back) << text;
    EXPECT_EQ(poly_text(g.p), "{#1}");
    EXPECT_EQ(exits.count(exit_no_variable), 1) << exits.text();
}

TEST_F(GcdExits, InTheField)
{
    in_view live(view_digits);
    const kept_word depth(&field_depth, 2);
    EXPECT_EQ(ending_at(exit_in_field, "{0{1{#4}, #6}}", "{1{#8}, #2}"), "{#2}");
    EXPECT_EQ(ending_at(exit_in_field, "{1{#8}, #2}", "{0{1{#4}, #6}}"), "{#2}");
    in_view floats(view_float);
    EXPECT_EQ(ending_at(exit_in_field, "{0{1{#4}, #6}}", "{1{#8}, #2}"), "{#1}");
}

TEST_F(GcdExits, OneOperandTwice)
{
    in_view live(view_digits);
    poly_operand a(poly_of_text("{2{1{#-4}}, #2}")), g;
    const exits_since exits;
    polygcd(a.p, a.p, &g.p, 0, 1, 1, names.names(), 1, 1, 1);
    EXPECT_EQ(poly_text(g.p), "{2{1{#4}}, #-2}");
    EXPECT_EQ(exits.count(exit_same), 1) << exits.text();
}

TEST_F(GcdExits, DoublesThatAreNoNumbers)
{
    in_view live(view_float);
    for (const double bad : {__builtin_inf(), -__builtin_inf(), __builtin_nan("")}) {
        poly_operand a(poly_of_text("{2{#1}, 0{1{#2}}}")), b(poly_of_text("{1{#1}, 0{1{#2}}}")), g;
        a.p->next->coef->coef->num->real = bad;
        const exits_since exits;
        polygcd(a.p, b.p, &g.p, 0, 1, 1, names.names(), 1, 1, 1);
        polygcd(b.p, a.p, &g.p, 0, 1, 1, names.names(), 1, 1, 1);
        EXPECT_EQ(poly_text(g.p), "{#1}");
        EXPECT_EQ(exits.count(exit_not_finite), 2) << exits.text();
    }
}

// x (x + 1), x (x + 1) (x + 2): the power of x does not end the search for the degree.
TEST_F(GcdExits, APowerIsNotTheWholeDegree)
{
    for (const num_view view : {view_digits, view_float, view_modular}) {
        in_view live(view);
        mod_is_prime = 1;
        poly_operand a(poly_of_text("{2{#1}, 1{#1}}")), b(poly_of_text("{3{#1}, 2{#3}, 1{#2}}")), g;
        polygcd(a.p, b.p, &g.p, 1, 1, 1, names.names(), 1, 1, 1);
        EXPECT_EQ(poly_text(g.p), "{2{#1}}");
    }
}

// Early exits hand out what is monic ---------------------------------------------------------------------

// (x + y + z + 3)^k (m x^2 + 2 y x + z + 1)
polynode *product_with(std::int32_t k, const char *cofactor, const pt *names)
{
    poly_operand u(poly_of_text("{1{#2}, 0{1{#2}, 0{1{#2}, #6}}}"));
    polynode *p = poly_of_text(cofactor);
    for (; k > 0; --k) poly_mult(p, u.p, &p, names);
    return p;
}

TEST_F(GcdExits, DivisorsAreMonic)
{
    for (const num_view view : {view_float, view_modular}) {
        in_view live(view, 65521);
        mod_is_prime = 1;
        poly_operand a(product_with(3, "{2{#3}, 1{1{#2}}, 0{0{1{#1}, #1}}}", names.names())),
            b(product_with(1, "{#4}", names.names())), g;
        const exits_since exits;
        polygcd(a.p, b.p, &g.p, 0, 0, 1, names.names(), 1, 1, 1);
        EXPECT_EQ(poly_text(g.p), "{1{#1}, 0{1{#1}, 0{1{#1}, #3}}}");
        EXPECT_EQ(exits.count(exit_divides), 1) << exits.text();
    }
}

TEST_F(GcdExits, EqualOperandsAreMonic)
{
    in_view live(view_float);
    EXPECT_EQ(ending_at(exit_equal, "{1{1{#2}, #2}, 0{2{#4}, 1{#4}}}", "{1{1{#6}, #12}, 0{2{#12}, 1{#24}}}"),
              "{1{#1}, 0{1{#2}}}");
}

TEST_F(GcdExits, StashedGcdsAreMonic)
{
    in_view live(view_float);
    const std::int64_t memory = initial_memory;
    initial_memory = 100000000;
    const kept_word cutoff(&gcd_stash_cutoff, 20);
    lookupgcd = 1;
    poly_operand a(product_with(2, "{2{#3}, 1{1{#2}}, 0{0{1{#1}, #1}}}", names.names())),
        b(product_with(2, "{2{#5}, 1{2{#2}, 1{#1}}, 0{0{1{#1}, #7}}}", names.names())), g, again;
    const exits_since exits;
    polygcd(a.p, b.p, &g.p, 0, 1, 0, names.names(), 1, 1, 1);
    polygcd(b.p, a.p, &again.p, 0, 1, 0, names.names(), 1, 1, 1);
    EXPECT_EQ(exits.count(exit_stash), 1) << exits.text();
    EXPECT_EQ(leading_coef(g.p)->real, 1.0);
    EXPECT_EQ(poly_text(again.p), poly_text(g.p));
    EXPECT_EQ(again.p->exp, 2);
    initial_memory = memory;
}

// A stash whose depth is wrong says so, and the gcd is right.
TEST_F(GcdExits, DriverTellsOfAWrongDepth)
{
    in_view live(view_digits);
    const std::int64_t memory = initial_memory;
    initial_memory = 100000000;
    const kept_word cutoff(&gcd_stash_cutoff, 20);
    lookupgcd = 1;
    poly_operand a(product_with(2, "{2{#3}, 1{1{#2}}, 0{0{1{#1}, #1}}}", names.names())),
        b(product_with(2, "{2{#5}, 1{2{#2}, 1{#1}}, 0{0{1{#1}, #7}}}", names.names())), g;
    polygcd_stack_depth = -1;
    const std::string text = report_of([&] { polygcd(a.p, b.p, &g.p, 0, 1, 0, names.names(), 1, 1, 1); });
    const std::string told = "*** Kelmar error. negative polygcd_stack_depth 1\n";
    EXPECT_EQ(text.substr(text.size() < told.size() ? 0 : text.size() - told.size()), told);
    EXPECT_EQ(g.p->exp, 2);
    polygcd_stack_depth = 0;
    initial_memory = memory;
}

TEST_F(GcdExits, OneVariableTellsOfAWrongDepth)
{
    const std::int64_t memory = initial_memory;
    initial_memory = std::int64_t{1} << 30;
    for (const num_view view : {view_modular, view_float}) {
        in_view live(view);
        mod_is_prime = 1;
        lookupgcd = 1;
        poly_operand a(poly_of_text(flotemode ? "{60{#1}, #-1}" : "{60{#1}, #100}")),
            b(poly_of_text(flotemode ? "{50{#1}, #-1}" : "{50{#1}, #100}")), g;
        ASSERT_TRUE(stash_takes(a.p, b.p));
        polygcd_stack_depth = -1;
        const std::string text = report_of([&] {
            if (flotemode) {
                fl_basic_poly_gcd(a.p, b.p, &g.p, 1, nilpol);
            } else {
                basic_poly_gcd(a.p, b.p, &g.p, 1, nilpol);
            }
        });
        EXPECT_EQ(text, "*** Kelmar error. negative polygcd_stack_depth 2\n");
        EXPECT_EQ(g.p->exp, 10) << poly_text(g.p);
        init_gcd_stash();
    }
    initial_memory = memory;
}

// Structures that no computation makes ------------------------------------------------------------------

TEST_F(GcdExits, ANumberInAlgorithmC)
{
    in_view live(view_digits);
    poly_operand a(poly_of_text("{3{1{#1}}, 0{1{#2}, #1}}")), five(poly_of_text("{#5}")), g;
    const retry_flags flags = {1, 1, 0};
    const std::string text = report_and_resume(
        files, [&] { algorithm_c(a.p, five.p, &g.p, names.names(), &flags); });
    EXPECT_EQ(text.find("*** Kelmar error. v number in Alg C.\n"), 0u) << text;
    EXPECT_EQ(poly_text(g.p), "{#1}");
}

// One polynomial as both operands, to be emptied: what was emptied is met a second time.
TEST_F(GcdExits, AnEmptiedCoefficientIsAFault)
{
    in_view live(view_digits);
    const char text[] = "{3{2{#1}, 1{1{#1}, #1}, 0{1{#1}}}, 2{2{#1}, 1{1{#1}, #2}, 0{1{#2}}}, "
                        "1{2{#1}, 1{1{#1}, #3}, 0{1{#3}}}, {2{#1}, 1{1{#1}, #5}, 0{1{#5}}}}";
    poly_operand a(poly_of_text(text)), g;
    const std::string told = report_and_resume(
        files, [&] { dual_content(a.p, a.p, &g.p, names.names(), 0, 1, 0, 0); });
    EXPECT_EQ(told.find("*** Kelmar error.  *** q numb in content\n"), 0u) << told << poly_text(g.p);
}

// Degrees that fall by more than one: the factors of the theory divide full remainders only.
TEST_F(GcdExits, GapsInASequenceLeaveNothing)
{
    in_view live(view_digits);
    poly_operand f(poly_of_text("{2{1{#1}}, 1{#2}, 0{1{#1}, #-3}}")),
        a(poly_of_text("{8{1{#2}, #1}, 6{#1}, 4{#-3}, 3{#-3}, 2{#8}, 1{1{#2}}, #-5}")),
        b(poly_of_text("{6{1{#1}, #3}, 4{#5}, 2{#-4}, 1{1{#-9}}, #21}")), fa, fb, g;
    poly_mult(f.p, a.p, &fa.p, names.names());
    poly_mult(f.p, b.p, &fb.p, names.names());
    const retry_flags flags = {1, 1, 0};
    EXPECT_EQ(report_of([&] { algorithm_c(fa.p, fb.p, &g.p, names.names(), &flags); }), "");
    EXPECT_TRUE(essentially_equal(g.p, f.p)) << poly_text(g.p);
    EXPECT_EQ(report_of([&] { algorithm_c(a.p, b.p, &g.p, names.names(), &flags); }), "");
    EXPECT_EQ(poly_text(g.p), "{#1}");
}

// Restricted variables -----------------------------------------------------------------------------------

// (x + z) m(u, v) and a product of (x + c): where z is one of the values c they have a common factor, which
// is none of x + z.
TEST_F(GcdExits, RestrictedOperandsMayHaveMoreInCommon)
{
    in_view live(view_modular, 65521);
    mod_is_prime = 1;
    const kept_word all(&number_polys, 6);
    poly_operand a(poly_of_text("{1{#1}, 0{0{1{#1}}}}")), b(poly_of_text("{0{2{#1}, 1{#3}, #1}}")), g,
        m(poly_of_text("{0{0{0{2{#1}, 1{1{#3}, #1}, 0{1{#1}, #5}}}}}"));
    poly_mult(a.p, m.p, &a.p, names.names());
    constexpr int first_value = 237, values = 16;  // of the table of primes, those that variables get
    for (int k = 0; k < values; ++k) {
        poly_operand linear(poly_of_text("{1{#1}, #1}"));
        linear.p->next->num->word = small_prime[first_value + k];
        poly_mult(b.p, linear.p, &b.p, names.names());
    }
    for (int k = 0; k < 20; ++k) {
        const exits_since exits;
        polygcd(a.p, b.p, &g.p, 0, 0, 0, names.names(), 1, 1, 1);
        EXPECT_EQ(poly_text(g.p), "{#1}");
        EXPECT_EQ(exits.count(exit_restricted), 0) << exits.text();
    }
}

// Counters -----------------------------------------------------------------------------------------------

// A command, and any report, start with the first bound for images.
TEST_F(GcdExits, TheBoundForImagesIsSetAnew)
{
    tripval = 400;
    g_cutoff = 50;
    clear_gcd_counters();
    EXPECT_EQ(tripval, default_tripval);
    EXPECT_EQ(g_cutoff, first_g_cutoff);
    tripval = 400;
    gcd_on_error();
    EXPECT_EQ(tripval, default_tripval);
}

}  // namespace
