// Square-free decompositions: gaps in the multiplicities, roots in small characteristic, contents, errors.
#include "gcd/square_free.h"
#include "gcd/polygcd.h"
#include "tests/support/divisions.h"
#include "tests/support/fields.h"
#include "tests/support/reports.h"

using namespace kelmar;
using namespace kelmar_test;

namespace {

struct SquareFree : testing::Test {
    six_in_force names;
    in_view live{view_digits};

    // "factor^multiplicity" of the list, and the count.
    std::string of(const char *text, std::int32_t monic = 1)
    {
        const poly_audit audit;
        std::string told;
        {
            poly_operand f(poly_of_text(text)), list;
            std::int32_t count = 0;
            clear_gcd_counters();
            total_sq_free(&f.p, &list.p, &count, monic, names.names());
            EXPECT_EQ(f.p, nullptr);
            for (const polynode *t = list.p; t; t = t->next) {
                told += poly_text(t->coef) + "^" + std::to_string(t->exp) + " ";
                EXPECT_TRUE(poly_is_normal(t->coef, 6));
                --count;
            }
            EXPECT_EQ(count, 0);
        }
        audit.expect_unchanged(text);
        return told;
    }
};

TEST_F(SquareFree, GapsInTheMultiplicities)
{
    EXPECT_EQ(of("{4{#1}, 2{#2}, #1}"), "{2{#1}, #1}^2 ");
    EXPECT_EQ(of("{2{#1}, 1{#2}, #1}"), "{1{#1}, #1}^2 ");
    EXPECT_EQ(of("{2{#1}, #1}"), "{2{#1}, #1}^1 ");
    EXPECT_EQ(of("{7{#1}}"), "{1{#1}}^7 ");
    // x^5 (x + 1)^2, and with x - 1 too
    EXPECT_EQ(of("{7{#1}, 6{#2}, 5{#1}}"), "{1{#1}}^5 {1{#1}, #1}^2 ");
    EXPECT_EQ(of("{8{#1}, 7{#1}, 6{#-1}, 5{#-1}}"), "{1{#1}}^5 {1{#1}, #1}^2 {1{#1}, #-1}^1 ");
}

TEST_F(SquareFree, NumbersAndSignsAreDropped)
{
    EXPECT_EQ(of("{#6}"), "");
    EXPECT_EQ(of("{#0}"), "");
    EXPECT_EQ(of("{2{#-6}, 1{#-12}, #-6}"), "{1{#1}, #1}^2 ");
}

TEST_F(SquareFree, ContentsComeLast)
{
    EXPECT_EQ(of("{3{2{#1}}}"), "{1{#1}}^3 {0{1{#1}}}^2 ");
    EXPECT_EQ(of("{0{2{#2}, 1{#4}, #2}}"), "{0{1{#1}, #1}}^2 ");
}

TEST_F(SquareFree, RootsInSmallCharacteristic)
{
    const in_field two(2);
    EXPECT_EQ(of("{2{#1}, #1}"), "{1{#1}, #1}^2 ");
    const in_field three(3);
    EXPECT_EQ(of("{3{#1}, #1}"), "{1{#1}, #1}^3 ");
    // (x + 1)^4 (x + 2)^3: 4 is told before 3
    EXPECT_EQ(of("{7{#1}, 6{#1}, 1{#2}, #2}"), "{1{#1}, #1}^4 {1{#1}, #2}^3 ");
}

TEST_F(SquareFree, TableFields)
{
    const in_field wide(65536);
    // (x + 2)^2 = x^2 + 4, (x + 2)^4 = x^4 + 16 in characteristic 2
    EXPECT_EQ(of("{2{#1}, #4}"), "{1{#1}, #2}^2 ");
    EXPECT_EQ(of("{4{#1}, #16}"), "{1{#1}, #2}^4 ");
    const in_field small(256);
    EXPECT_EQ(of("{2{#1}, #4}"), "{1{#1}, #2}^2 ");
}

TEST_F(SquareFree, FloatsEnd)
{
    in_view floats(view_float);
    EXPECT_EQ(of("{4{#1}, 2{#2}, #1}"), "{2{#1}, #1}^2 ");
    EXPECT_EQ(of("{2{#1}, #2}"), "{2{#1}, #2}^1 ");
}

TEST_F(SquareFree, ACoefficientWithoutARootIsAnError)
{
    poly_operand f(poly_of_text("{2{#1}, {1{#1}}}")), list;
    std::int32_t count = 0;
    {
        const in_field small(256);
        EXPECT_EQ(error_in_view([&] { square_free_factor(f.p, &list.p, &count, names.names()); }), 308);
        const in_field wide(65536);
        EXPECT_EQ(error_in_view([&] { square_free_factor(f.p, &list.p, &count, names.names()); }), 308);
    }
    const in_field two(2);
    EXPECT_EQ(error_in_view([&] { square_free_factor(f.p, &list.p, &count, names.names()); }), 352);
}

TEST_F(SquareFree, AnInexactQuotientIsAFault)
{
    poly_operand f(poly_of_text("{1{#1}, #1}")), g(poly_of_text("{1{#1}, #2}")), q, r;
    const std::string fault = "*** Kelmar error.  failed in square free factor.\n";
    EXPECT_EQ(report_of([&] { reduce2(f.p, f.p, g.p, &q.p, &r.p, names.names()); }).substr(0, fault.size()),
              fault);
}

}  // namespace
