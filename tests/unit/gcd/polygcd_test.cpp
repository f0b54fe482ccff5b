// The driver of gcds: where problems end, what operands look like afterwards, doubles, the given-up sequence.
#include "gcd/polygcd.h"
#include <gtest/gtest.h>
#include "gcd/algorithm_c.h"
#include "gcd/entries.h"
#include "poly/div_exact.h"
#include "poly/div_fast.h"
#include "poly/mul.h"
#include "session/levels.h"
#include "session/output.h"
#include "session/report.h"
#include "storage/accounting.h"
#include "tests/support/divisions.h"
#include "tests/support/gcds.h"
#include "tests/support/reports.h"

using namespace kelmar;
using namespace kelmar_test;

namespace {

struct Polygcd : testing::Test {
    six_variables names;
    kept_word variables{&number_polys, 4};
    Polygcd()
    {
        load_primes();
        clear_gcd_counters();
    }
    ~Polygcd() override
    {
        init_gcd_stash();
    }

    // gcd(a, b), operands given as texts, which must stay.
    std::string gcd_text(const std::string &a, const std::string &b, std::int32_t exponent_only = 0)
    {
        poly_operand x(poly_of_text(a.c_str())), y(poly_of_text(b.c_str())), g;
        polygcd(x.p, y.p, &g.p, exponent_only, 1, 1, names.record, 1, 1, 1);
        EXPECT_EQ(poly_text(x.p), a);
        EXPECT_EQ(poly_text(y.p), b);
        return poly_text(g.p);
    }
};

// (x + y + z + 3)^2 (c x^k + z + 2 y + 1), a polynomial that is not small.
polynode *large_poly(std::int32_t c, std::int32_t k, const pt *names)
{
    poly_operand u(poly_of_text("{1{#1}, 0{1{#1}, 0{1{#1}, #3}}}")),
        v(poly_of_text("{1{#1}, 0{1{#2}, 0{1{#1}, #1}}}"));
    v.p->exp = k;
    setvalue(c, v.p->coef->num);
    polynode *product = nullptr;
    poly_mult(u.p, v.p, &product, names);
    poly_mult(product, u.p, &product, names);
    return product;
}

TEST_F(Polygcd, NumbersAndZeros)
{
    in_view live(view_digits);
    EXPECT_EQ(gcd_text("{#12}", "{#-18}"), "{#6}");
    EXPECT_EQ(gcd_text("{#0}", "{#-5}"), "{#5}");
    EXPECT_EQ(gcd_text("{#0}", "{#0}"), "{#0}");
    EXPECT_EQ(gcd_text("{#0}", "{2{#-4}, #2}"), "{2{#4}, #-2}");
    EXPECT_EQ(gcd_text("{1{#6}, #9}", "{#12}"), "{#3}");
    in_view floats(view_float);
    EXPECT_EQ(gcd_text("{#12}", "{#18}"), "{#1}");
    EXPECT_EQ(gcd_text("{2{#4}, #2}", "{#3}"), "{#1}");
    EXPECT_EQ(gcd_text("{#0}", "{2{#4}, #2}"), "{2{#1}, #0.5}");
}

TEST_F(Polygcd, SmallShapes)
{
    in_view live(view_digits);
    const exits_since exits;
    EXPECT_EQ(gcd_text("{2{1{#1}}}", "{1{2{#1}}}"), "{1{1{#1}}}");  // x^2 y, x y^2
    EXPECT_EQ(gcd_text("{0{0{2{#1}, #-1}}}", "{0{0{1{#1}, #-1}}}"), "{0{0{1{#1}, #-1}}}");
    EXPECT_EQ(gcd_text("{0{2{#1}, #-1}}", "{3{1{#2}, #-2}, 1{2{#1}, #-1}}"), "{0{1{#1}, #-1}}");
    EXPECT_EQ(gcd_text("{3{#1}}", "{4{1{#1}}, 2{#5}}"), "{2{#1}}");
    EXPECT_EQ(gcd_text("{3{1{#1}}, 1{1{#1}}}", "{5{#1}, 1{1{#1}}}"), "{1{#1}}");
    EXPECT_GT(exits.count(exit_monomial), 0);
    EXPECT_GT(exits.count(exit_descent), 0);
    EXPECT_GT(exits.count(exit_coefficients), 0);
}

TEST_F(Polygcd, SameOperand)
{
    in_view live(view_digits);
    poly_operand a(poly_of_text("{2{1{#-4}}, #2}")), g;
    polygcd(a.p, a.p, &g.p, 0, 1, 1, names.record, 1, 1, 1);
    EXPECT_EQ(poly_text(g.p), "{2{1{#4}}, #-2}");
    polygcd(a.p, a.p, &g.p, 1, 1, 1, names.record, 1, 1, 1);
    EXPECT_EQ(poly_text(g.p), "{2{#1}}");
}

TEST_F(Polygcd, ResultMayBeAnOperand)
{
    in_view live(view_digits);
    poly_operand a(poly_of_text("{2{1{#1}}, 0{1{#-1}}}")), b(poly_of_text("{1{#1}, #-1}"));
    polygcd(a.p, b.p, &a.p, 0, 1, 1, names.record, 0, 1, 1);
    EXPECT_EQ(poly_text(a.p), "{1{#1}, #-1}");
}

TEST_F(Polygcd, NoVariable)
{
    in_view live(view_digits);
    poly_operand a(poly_of_text("{2{#1}, #-1}")), b(poly_of_text("{1{#1}, #-1}")), g;
    const std::string text = report_of([&] { polygcd(a.p, b.p, &g.p, 0, 1, 1, nullptr, 1, 1, 1); });
    EXPECT_EQ(text.substr(0, 37), "*** Kelmar error. pt nil in polygcd.\n");
}

TEST_F(Polygcd, InTheField)
{
    in_view live(view_digits);
    kept_word depth(&field_depth, 2);
    EXPECT_EQ(gcd_text("{0{1{#4}, #6}}", "{1{#8}, #2}"), "{#2}");
    EXPECT_EQ(gcd_text("{0{1{#4}, #6}}", "{0{1{#9}}}"), "{#1}");
}

TEST_F(Polygcd, OneVariable)
{
    kept_word one(&number_polys, 1);
    const exits_since exits;
    {
        in_view live(view_modular, 101);
        mod_is_prime = 1;
        EXPECT_EQ(gcd_text("{2{#2}, #99}", "{1{#3}, #98}"), "{1{#1}, #100}");
    }
    in_view floats(view_float);
    EXPECT_EQ(gcd_text("{2{#1}, #-1}", "{1{#2}, #-2}"), "{1{#1}, #-1}");
    EXPECT_EQ(exits.count(exit_one_variable), 2);
}

// What happens on the way to Algorithm C -----------------------------------------------------------------

TEST_F(Polygcd, DivisorIsFoundByATrial)
{
    in_view live(view_digits);
    const exits_since exits;
    poly_operand a(large_poly(1, 3, names.record)), b(poly_of_text("{1{#-2}, 0{1{#-2}, 0{1{#-2}, #-6}}}")), g;
    polygcd(a.p, b.p, &g.p, 0, 1, 1, names.record, 1, 1, 1);
    EXPECT_EQ(poly_text(g.p), "{1{#1}, 0{1{#1}, 0{1{#1}, #3}}}");
    kept_word believe(&rat_yes, 1);
    poly_operand d(poly_of_text("{1{#1}, 0{1{#1}, 0{1{#1}, #3}}}")), six(poly_of_text("{#6}")), times;
    poly_mult(a.p, six.p, &times.p, names.record);
    polygcd(times.p, d.p, &g.p, 0, 1, 1, names.record, 1, 1, 1);
    EXPECT_EQ(poly_text(g.p), "{1{#1}, 0{1{#1}, 0{1{#1}, #3}}}");
    EXPECT_GT(exits.count(exit_divides), 0);
}

TEST_F(Polygcd, CoprimeByOneImage)
{
    in_view live(view_digits);
    const exits_since exits;
    poly_operand a(large_poly(1, 2, names.record)),
        b(poly_of_text("{3{1{#6}, #4}, 2{1{#2}}, 1{1{#2}, #8}, 0{1{#2}, #10}}")), g;
    polygcd(a.p, b.p, &g.p, 0, 1, 1, names.record, 1, 1, 1);
    EXPECT_EQ(poly_text(g.p), "{#1}");
    EXPECT_EQ(exits.count(exit_probe_coprime), 1);
    EXPECT_EQ(exits.count(exit_algorithm_c), 0);
}

// y a(x, ..), y b(x, ..) with a, b coprime: the gcd is free of x.
TEST_F(Polygcd, ContentByOneImage)
{
    in_view live(view_digits);
    const exits_since exits;
    poly_operand y(poly_of_text("{0{1{#1}, #7}}")), a(large_poly(1, 2, names.record)),
        b(poly_of_text("{3{1{#6}, #4}, 2{1{#2}}, 1{1{#2}, #8}, 0{1{#2}, #10}}")), ya, yb, g;
    poly_mult(y.p, a.p, &ya.p, names.record);
    poly_mult(y.p, b.p, &yb.p, names.record);
    polygcd(ya.p, yb.p, &g.p, 0, 1, 1, names.record, 1, 1, 1);
    EXPECT_EQ(poly_text(g.p), "{0{1{#1}, #7}}");
    EXPECT_EQ(exits.count(exit_probe_content), 1);
    polygcd(ya.p, yb.p, &g.p, 1, 1, 1, names.record, 1, 1, 1);
    EXPECT_EQ(g.p->exp, 0);
    EXPECT_FALSE(is_constant(g.p));
}

TEST_F(Polygcd, DegreeByOneImage)
{
    in_view live(view_digits);
    const exits_since exits;
    poly_operand a(large_poly(1, 2, names.record)), b(large_poly(3, 3, names.record)), g;
    polygcd(a.p, b.p, &g.p, 1, 1, 1, names.record, 1, 1, 1);
    EXPECT_EQ(poly_text(g.p), "{2{#1}}");
    EXPECT_EQ(exits.count(exit_probe_degree), 1);
}

// x (x + y + 1), x^2 (x + y + 1)(x + z): the degree counts the power of x too.
TEST_F(Polygcd, DegreeWithAPower)
{
    in_view live(view_modular, 65521);
    mod_is_prime = 1;
    EXPECT_EQ(gcd_text("{2{#1}, 1{1{#1}, #1}}", "{4{#1}, 3{1{#1}, 0{1{#1}, #1}}, 2{1{1{#1}}, 0{1{#1}}}}", 1),
              "{2{#1}}");
}

TEST_F(Polygcd, ImagesModuloAPrime)
{
    in_view live(view_modular, 65521);
    mod_is_prime = 1;
    const exits_since exits;
    poly_operand a(large_poly(1, 2, names.record)), b(large_poly(3, 3, names.record)), g;
    polygcd(a.p, b.p, &g.p, 1, 1, 1, names.record, 1, 1, 1);
    EXPECT_EQ(poly_text(g.p), "{2{#1}}");
    EXPECT_GT(exits.count(exit_images_degree), 0);
    poly_operand c(poly_of_text("{3{1{#6}, #4}, 2{1{#2}}, 1{1{#2}, #8}, 0{1{#2}, #10}}"));
    polygcd(a.p, c.p, &g.p, 0, 1, 1, names.record, 1, 1, 1);
    EXPECT_EQ(poly_text(g.p), "{#1}");
    EXPECT_GT(exits.count(exit_images_content), 0);
    EXPECT_EQ(exits.count(exit_algorithm_c), 0);
}

TEST_F(Polygcd, EqualButForAContent)
{
    in_view live(view_digits);
    const exits_since exits;
    EXPECT_EQ(gcd_text("{1{1{#1}, #1}, 0{2{#1}, 1{#1}}}", "{1{1{#1}, #2}, 0{2{#1}, 1{#2}}}"),
              "{1{#1}, 0{1{#1}}}");
    EXPECT_GT(exits.count(exit_equal), 0);
}

TEST_F(Polygcd, SmallPairs)
{
    in_view live(view_digits);
    exits_since exits;
    EXPECT_EQ(gcd_text("{2{#1}, 0{1{#1}}}", "{2{#1}, 0{1{#3}, #1}}"), "{#1}");
    EXPECT_GT(exits.count(exit_coprime_tests), 0) << exits.text();
    EXPECT_EQ(gcd_text("{2{#1}, 1{1{#3}, #1}, 0{2{#2}, 1{#1}}}", "{1{#1}, 0{1{#1}}}"), "{1{#1}, 0{1{#1}}}");
    EXPECT_GT(exits.count(exit_late_trial), 0) << exits.text();
}

// Contents in the inner variables leave nothing.
TEST_F(Polygcd, ContentsInAllVariables)
{
    in_view live(view_modular, 65521);
    mod_is_prime = 1;
    const exits_since exits;
    // u and w are free of z: the content in z leaves nothing of u w
    poly_operand u(poly_of_text("{2{1{#1}, #5}, 1{2{#1}}, 0{3{#1}, 1{#2}, #7}}")),
        v(poly_of_text("{2{1{1{#1}, #3}}, 1{0{2{#1}}}, 0{2{2{#5}, 1{#1}}, #9}}")),
        w(poly_of_text("{2{1{#4}, #1}, 1{2{#7}}, 0{2{#2}, 1{#1}, #11}}")), a, b, g;
    poly_mult(u.p, v.p, &a.p, names.record);
    poly_mult(a.p, v.p, &a.p, names.record);
    poly_mult(u.p, w.p, &b.p, names.record);
    polygcd(a.p, b.p, &g.p, 0, 0, 1, names.record, 1, 1, 1);
    EXPECT_EQ(poly_text(g.p), poly_text(u.p));
    EXPECT_GT(exits.count(exit_spent), 0) << exits.text();
}

// With variables that one operand alone has, which get values; the gcd is what it is.
TEST_F(Polygcd, VariablesOfOneOperand)
{
    in_view live(view_modular, 65521);
    mod_is_prime = 1;
    kept_word variables_there(&number_polys, 6);
    const exits_since exits;
    poly_operand g0(poly_of_text("{2{1{#1}, #5}, 1{#3}, #1}")),
        a0(poly_of_text("{2{0{1{1{#1}}, #3}}, 1{0{2{#1}, 0{2{#1}}}}, 0{1{1{1{#2}, #1}}, 0{0{1{#5}, #1}}}}")),
        b0(poly_of_text("{2{1{0{0{1{#1}, #3}}}}, 1{2{0{0{0{1{#1}, #1}}}}}, 0{3{0{0{1{#5}, #2}}}, #1}}")), a,
        b, g;
    poly_mult(g0.p, a0.p, &a.p, names.record);
    poly_mult(g0.p, b0.p, &b.p, names.record);
    polygcd(a.p, b.p, &g.p, 0, 0, 0, names.record, 1, 1, 1);
    EXPECT_TRUE(poly_equal(g.p, g0.p)) << poly_text(g.p);
    EXPECT_GT(exits.count(exit_restricted), 0) << exits.text();
}

TEST_F(Polygcd, StrideOverWords)
{
    in_view live(view_modular, 101);
    mod_is_prime = 1;
    EXPECT_EQ(gcd_text("{7{1{#1}}, 1{1{#100}}}", "{4{#1}, 1{#100}}"), "{4{#1}, 1{#100}}");
    EXPECT_EQ(gcd_text("{6{1{#1}}, 0{1{#100}}}", "{3{1{#1}, #1}, 0{1{#100}, #100}}"), "{3{#1}, #100}");
}

// The stash ----------------------------------------------------------------------------------------------

TEST_F(Polygcd, TheSecondTimeItIsKnown)
{
    in_view live(view_digits);
    const std::int64_t memory = initial_memory;
    initial_memory = 100000000;
    kept_word cutoff(&gcd_stash_cutoff, 20);
    lookupgcd = 1;
    poly_operand a(large_poly(2, 4, names.record)), b(large_poly(3, 5, names.record)), g, again;
    exits_since exits;
    polygcd(a.p, b.p, &g.p, 0, 1, 0, names.record, 1, 1, 1);
    EXPECT_EQ(exits.count(exit_stash), 0);
    EXPECT_EQ(polygcd_stack_depth, 0);
    EXPECT_GT(gcdmass, 0u);
    poly_inplace(a.p);
    polygcd(b.p, a.p, &again.p, 0, 1, 0, names.record, 1, 1, 1);
    EXPECT_EQ(exits.count(exit_stash), 1) << exits.text();
    EXPECT_TRUE(poly_equal(g.p, again.p));
    EXPECT_EQ(lookupgcd, 1) << "the count came back from the images";
    initial_memory = memory;
}

// Algorithm C --------------------------------------------------------------------------------------------

// A pair that is too large, once: with &O off there are warnings, and the pair is taken up again.
TEST_F(Polygcd, GivesUpAndTakesUpAgain)
{
    in_view live(view_modular, 65521);
    mod_is_prime = 1;
    kept_word forced(&chinhensel, 0);
    poly_operand a, b, g;
    poly_operand u(large_poly(1, 3, names.record)),
        v(poly_of_text("{4{1{#1}, 0{1{#1}, #4}}, 1{2{#1}, 0{2{#3}}}, 0{3{#1}, 0{1{#1}, #1}}}")),
        w(poly_of_text("{4{1{#3}, 0{1{#1}, #9}}, 2{2{#1}, 0{2{#5}}}, 0{3{#1}, 0{2{#1}, #8}}}")), u2;
    poly_mult(u.p, v.p, &a.p, names.record);
    poly_mult(u.p, w.p, &b.p, names.record);
    alg_c_count = 0;
    const retry_flags flags = {0, 0, 0};
    testing::internal::CaptureStdout();
    algorithm_c(a.p, b.p, &g.p, names.record, &flags);
    const std::string text = testing::internal::GetCapturedStdout();
    EXPECT_TRUE(essentially_equal(g.p, u.p)) << poly_text(g.p);
    EXPECT_EQ(text.find("Warning. Abandon Algorithm C. 1, "), 0u) << text;
    EXPECT_NE(text.find("!! ** Warning. You set &O to force Algorithm C!\n"), std::string::npos) << text;
    EXPECT_NE(text.find("&O conflict with large GCD problem."), std::string::npos) << text;
    alg_c_count = 4;
    kept_word loud(&verbose, 1);
    testing::internal::CaptureStdout();
    algorithm_c(a.p, b.p, &g.p, names.record, &flags);
    const std::string last = testing::internal::GetCapturedStdout();
    EXPECT_TRUE(essentially_equal(g.p, u.p));
    EXPECT_NE(last.find("Warning. Can't abandon Algorithm C. "), std::string::npos) << last;
    alg_c_count = 0;
}

// Doubles ------------------------------------------------------------------------------------------------

TEST_F(Polygcd, WholeDoublesAreExact)
{
    test_random r;
    in_view live(view_float);
    poly_shape shape;
    shape.vars = 2;
    shape.degree = 2;
    shape.terms = 4;
    int found = 0, nontrivial = 0;
    for (int i = 0; i < 200; ++i) {
        poly_operand g(random_poly(&r, shape)), a(random_poly(&r, shape)), b(random_poly(&r, shape)), h, q;
        poly_operand ga(reference_product(g.p, a.p, 2)), gb(reference_product(g.p, b.p, 2));
        polygcd(ga.p, gb.p, &h.p, 0, 1, 1, names.record, 1, 1, 1);
        EXPECT_TRUE(poly_is_normal(h.p, 2));
        if (poly_iszero(ga.p) || poly_iszero(gb.p)) continue;
        EXPECT_EQ(leading_coef(h.p)->real, 1.0) << poly_text(h.p);
        if (is_constant(g.p)) continue;
        ++nontrivial;
        found += h.p->exp >= g.p->exp && !is_constant(h.p);
    }
    EXPECT_GE(found, nontrivial * 9 / 10) << found << " of " << nontrivial;
}

TEST_F(Polygcd, RoundedFactorsAreSeen)
{
    in_view live(view_float);
    // (x - 0.1)(x + 0.1) and x - 0.1, a second variable adjoined
    poly_operand a(poly_of_text("{2{#1}, #-1}")), b(poly_of_text("{1{#1}, #-1}")), g;
    a.p->next->num->real = -0.1 * 0.1;
    b.p->next->num->real = -0.1;
    polygcd(a.p, b.p, &g.p, 0, 1, 1, names.record, 1, 1, 1);
    EXPECT_EQ(g.p->exp, 1);
    // (0.1 x + 0.3 y)(x + y), (0.1 x + 0.3 y)(x - y)
    poly_operand f(poly_of_text("{1{#1}, 0{1{#3}}}")), u(poly_of_text("{1{#1}, 0{1{#1}}}")),
        v(poly_of_text("{1{#1}, 0{1{#-1}}}")), fu, fv;
    f.p->coef->num->real = 0.1;
    f.p->next->coef->coef->num->real = 0.3;
    poly_mult(f.p, u.p, &fu.p, names.record);
    poly_mult(f.p, v.p, &fv.p, names.record);
    polygcd(fu.p, fv.p, &g.p, 0, 1, 1, names.record, 1, 1, 1);
    EXPECT_EQ(g.p->exp, 1) << poly_text(g.p);
}

TEST_F(Polygcd, NoNumbersNoGcd)
{
    in_view live(view_float);
    poly_operand a(poly_of_text("{2{#1}, 0{1{#2}}}")), b(poly_of_text("{1{#1}, 0{1{#2}}}")), g;
    for (const double bad : {__builtin_inf(), __builtin_nan("")}) {
        a.p->next->coef->coef->num->real = bad;
        polygcd(a.p, b.p, &g.p, 0, 1, 1, names.record, 1, 1, 1);
        EXPECT_EQ(poly_text(g.p), "{#1}");
    }
}

// In every field, and over the integers: the gcd of a c and b c divides both, and c divides it.
TEST_F(Polygcd, IsACommonMultipleOfCommonFactors)
{
    test_random r;
    poly_shape shape;
    shape.vars = 3;
    shape.degree = 2;
    shape.terms = 4;
    const ring integers = {view_digits, 101, 0};
    for (const ring &in : {field_rings[1], field_rings[2], field_rings[4], field_rings[6], integers}) {
        in_ring live(in);
        for (int i = 0; i < 60; ++i) {
            poly_operand a(random_divisor(&r, shape)), b(random_divisor(&r, shape)),
                c(random_divisor(&r, shape));
            poly_operand ac, bc, g, of_a, of_b, of_g;
            poly_mult(a.p, c.p, &ac.p, names.record);
            poly_mult(b.p, c.p, &bc.p, names.record);
            polygcd(ac.p, bc.p, &g.p, 0, 1, 1, names.record, 1, 1, 1);
            of_a.p = exact_quotient(ac.p, g.p, names.record);
            of_b.p = exact_quotient(bc.p, g.p, names.record);
            of_g.p = exact_quotient(g.p, c.p, names.record);
            EXPECT_TRUE(of_a.p && of_b.p && of_g.p) << poly_text(g.p) << " of " << poly_text(ac.p);
            if (!of_a.p || !of_b.p) return;
            poly_operand one;
            polygcd(of_a.p, of_b.p, &one.p, 0, 1, 1, names.record, 1, 1, 1);
            EXPECT_EQ(poly_text(one.p), "{#1}") << "cofactors are coprime";
        }
    }
}

// With zero divisors there may be no gcd, or error 85; there is no fault, and operands stay.
TEST_F(Polygcd, CompositeModulusIsHarmless)
{
    test_random r;
    poly_shape shape;
    shape.vars = 2;
    shape.degree = 3;
    shape.terms = 5;
    int answered = 0;
    for (const std::int32_t m : {4, 6, 100, 65535}) {
        for (int i = 0; i < 100; ++i) {
            in_view live(view_modular, m);
            poly_operand a(random_poly(&r, shape)), b(random_poly(&r, shape)), c(random_poly(&r, shape)), ac,
                bc;
            poly_mult(a.p, c.p, &ac.p, names.record);
            poly_mult(b.p, c.p, &bc.p, names.record);
            const std::string before = poly_text(ac.p) + poly_text(bc.p);
            static polynode *g = nullptr;
            const std::string text = report_of([&] {
                polygcd(ac.p, bc.p, &g, 0, 1, 1, names.record, 1, 1, 1);
                ++answered;
            });
            EXPECT_EQ(text.find("Kelmar error"), std::string::npos) << text << before;
            EXPECT_EQ(poly_text(ac.p) + poly_text(bc.p), before);
            free_poly(&g);
            release_work();
        }
    }
    EXPECT_GT(answered, 100);
}

// Entries ------------------------------------------------------------------------------------------------

TEST_F(Polygcd, NegativeExponents)
{
    in_view live(view_digits);
    in_laurent negative(1);
    poly_operand a(poly_of_text("{1{#1}, -1{#-1}}")), b(poly_of_text("{-1{#1}, -2{#-1}}")), g;
    Lpolygcd(&a.p, &b.p, &g.p, 1, names.record);
    EXPECT_EQ(poly_text(g.p), "{1{#1}, #-1}");
    EXPECT_EQ(poly_text(a.p), "{1{#1}, -1{#-1}}");
    EXPECT_EQ(poly_text(b.p), "{-1{#1}, -2{#-1}}");
    Lpolygcd3(&a.p, &g.p, names.record);
    EXPECT_EQ(poly_text(g.p), "{2{#1}, #-1}");
    Lpolygcd2(&a.p, &b.p, &g.p, names.record);
    EXPECT_EQ(poly_text(g.p), "{1{#1}, #-1}");
    EXPECT_EQ(poly_text(a.p), "{2{#1}, #-1}") << "stays shifted";
    EXPECT_EQ(poly_text(b.p), "{1{#1}, #-1}");
}

// Interrupts ---------------------------------------------------------------------------------------------

// Left at its first poll, a gcd has written to none of its operands, and loses nothing.
TEST_F(Polygcd, IsLeftCleanly)
{
    in_view live(view_digits);
    poly_operand a(large_poly(2, 4, names.record)), b(large_poly(3, 5, names.record));
    const std::string a_text = poly_text(a.p), b_text = poly_text(b.p);
    static polynode *g = nullptr;
    for (const std::int32_t ours : {1, 0}) {
        poly_audit audit;
        bool came_back = false;
        interrupt_flag = 1;
        polynode *const x = ours ? a.p : copy_poly(a.p), *const y = ours ? b.p : copy_poly(b.p);
        report_of([&] {
            polygcd(x, y, &g, 0, 1, 1, names.record, ours, ours, 1);
            came_back = true;
        });
        interrupt_flag = 0;
        EXPECT_FALSE(came_back);
        EXPECT_EQ(poly_text(a.p), a_text);
        EXPECT_EQ(poly_text(b.p), b_text);
        polynode *left_x = x, *left_y = y;
        if (!ours) {
            free_poly(&left_x);
            free_poly(&left_y);
        }
        release_work();
        audit.expect_unchanged("interrupted gcd");
    }
}

}  // namespace
