// Polynomials put aside on disk: every view, the order, damaged files.
#include "poly/disk.h"
#include <gtest/gtest.h>
#include <unistd.h>
#include <cstdlib>
#include <filesystem>
#include <limits>
#include <string>
#include <vector>
#include "poly/variables.h"
#include "tests/support/by_build.h"
#include "tests/support/data_files.h"
#include "tests/support/polys.h"
#include "tests/support/settings.h"
#include "tests/support/views.h"

using namespace kelmar;
using namespace kelmar_test;

namespace {

constexpr int rounds = by_build(150, 1500);

// An empty working directory with an open store, until the end of the block.
struct in_store {
    std::string before = std::filesystem::current_path();
    scratch_directory place;
    in_store()
    {
        EXPECT_EQ(chdir(place.path.c_str()), 0);
        EXPECT_TRUE(open_poly_disk());
    }
    ~in_store()
    {
        close_poly_disk();
        EXPECT_EQ(chdir(before.c_str()), 0);
    }
};

// What is taken back when `bytes` are the store, which is in memory: a disk is slow.
polynode *taken(const std::string &bytes)
{
    close_poly_disk();
    std::string copy = bytes;
    if (copy.empty()) copy = " ";
    kelstore = fmemopen(copy.data(), copy.size(), "r");
    polynode *p = reinterpret_cast<polynode *>(&copy);
    const int ok = get_poly_disk(&p);
    EXPECT_EQ(ok != 0, p != nullptr);
    close_poly_disk();
    return p;
}

// The text of it, or "declined".
std::string taken_from(const std::string &bytes)
{
    const poly_operand p(taken(bytes));
    return p.p ? poly_text(p.p) : "declined";
}

// The store of one polynomial, in memory.
std::string stored_text(const polynode *p)
{
    close_poly_disk();
    char *bytes = nullptr;
    std::size_t size = 0;
    kelstore = open_memstream(&bytes, &size);
    EXPECT_TRUE(put_poly_disk(p));
    close_poly_disk();
    const std::string text(bytes, size);
    std::free(bytes);
    return text;
}

void expect_round_trips(const poly_shape &shape, test_random *r)
{
    const in_store store;
    const poly_audit audit;
    std::vector<std::string> texts;
    for (int k = 0; k < rounds; ++k) {
        const poly_operand p(random_poly(r, shape));
        texts.push_back(poly_text(p.p));
        ASSERT_TRUE(put_poly_disk(p.p));
        ASSERT_EQ(poly_text(p.p), texts.back());
    }
    for (const std::string &text : texts) {
        poly_operand p;
        ASSERT_TRUE(get_poly_disk(&p.p)) << text << " seed " << r->seed;
        ASSERT_EQ(poly_text(p.p), text) << " seed " << r->seed;
    }
    poly_operand none;
    EXPECT_FALSE(get_poly_disk(&none.p)) << "the store is used up";
    audit.expect_unchanged("disk");
}

TEST(Disk, EveryViewComesBack)
{
    test_random r;
    for (num_view v : {view_float, view_field, view_modular, view_word, view_small, view_digits}) {
        const in_view live(v, 2147483629);
        expect_round_trips({4, 12, 9, 0, 5}, &r);
    }
}

TEST(Disk, NegativeExponentsComeBack)
{
    test_random r;
    const in_laurent on(1);
    for (num_view v : {view_modular, view_digits}) {
        const in_view live(v);
        expect_round_trips({3, 12, 5, -5, 2}, &r);
    }
}

TEST(Disk, ItIsATextOfWholeNumbers)
{
    const in_view live(view_digits);
    const poly_operand p(poly_of_text("{3{2{#5}, #-1}, #268435456}"));
    EXPECT_EQ(stored_text(p.p), "3 2 -2147483648 1 5 2147483647 -2147483648 1 -1 2147483647 "
                                "-2147483648 2 1 0 2147483647 \n");
    const in_view words(view_word);
    const poly_operand q(poly_of_text("{1{#-7}, #3}"));
    EXPECT_EQ(stored_text(q.p), "1 -2147483648 0 -7 2147483647 -2147483648 0 3 2147483647 \n");
}

TEST(Disk, TheGreatestExponentIsNotTheEndOfTheList)
{
    const in_view live(view_digits);
    for (const char *text : {"{2147483647{#1}}", "{2147483647{#1}, 2147483646{#1}, #1}",
                             "{2147483647{2147483647{#1}, #1}, 0{2147483647{#1}}}"}) {
        const poly_operand p(poly_of_text(text));
        EXPECT_EQ(taken_from(stored_text(p.p)), text);
    }
}

TEST(Disk, TheLeastExponentIsDeclinedAndLeavesTheStoreAsItWas)
{
    const in_laurent on(1);
    const in_view live(view_digits);
    const in_store store;
    const poly_operand good(poly_of_text("{2{#1}, #1, -2147483647{#4}}"));
    const poly_operand bad(poly_of_text("{2{#1}, #1, -2147483648{#4}}"));
    ASSERT_TRUE(put_poly_disk(good.p));
    const std::string before = bytes_of("kelstore");
    EXPECT_FALSE(put_poly_disk(bad.p));
    EXPECT_EQ(bytes_of("kelstore"), before);
    ASSERT_TRUE(put_poly_disk(good.p));
    for (int k = 0; k < 2; ++k) {
        poly_operand back;
        ASSERT_TRUE(get_poly_disk(&back.p));
        EXPECT_EQ(poly_text(back.p), "{2{#1}, #1, -2147483647{#4}}");
    }
}

TEST(Disk, DoublesComeBackToTheLastBit)
{
    const in_view live(view_float);
    const in_store store;
    for (const double v : {0.1, -1e-300, 1e308, 5e-324, std::numeric_limits<double>::infinity()}) {
        const poly_operand p(poly_of_text("{1{#1}, #1}"));
        p.p->next->num->real = v;
        ASSERT_TRUE(put_poly_disk(p.p));
        poly_operand back;
        ASSERT_TRUE(get_poly_disk(&back.p));
        EXPECT_EQ(back.p->next->num->real, v);
    }
}

TEST(Disk, PuttingAndTakingMayAlternate)
{
    const in_view live(view_digits);
    const in_store store;
    int put = 0, got = 0;
    test_random r;
    while (got < 200) {
        if (put == got || r.below(2) == 0) {
            polynode *p = nullptr;
            poly_set(++put, &p);
            EXPECT_TRUE(put_poly_disk(p));
            free_poly(&p);
        } else {
            polynode *p = nullptr;
            ASSERT_TRUE(get_poly_disk(&p));
            EXPECT_EQ(poly_text(p), "{#" + std::to_string(++got) + "}");
            free_poly(&p);
        }
    }
}

TEST(Disk, WithoutAStoreNothingIsPutOrTaken)
{
    const in_view live(view_digits);
    close_poly_disk();
    const poly_operand p(poly_of_text("{#1}"));
    EXPECT_FALSE(put_poly_disk(p.p));
    polynode *back = p.p;
    EXPECT_FALSE(get_poly_disk(&back));
    EXPECT_EQ(back, nullptr);
}

TEST(Disk, AStoreThatCannotBeMadeIsDeclined)
{
    const std::string before = std::filesystem::current_path();
    const scratch_directory place;
    ASSERT_EQ(chdir(place.path.c_str()), 0);
    std::filesystem::create_directory("kelstore");
    EXPECT_FALSE(open_poly_disk());
    EXPECT_EQ(kelstore, nullptr);
    ASSERT_EQ(chdir(before.c_str()), 0);
}

TEST(Disk, AFullDiskIsDeclined)
{
    const in_view live(view_digits);
    std::FILE *full = std::fopen("/dev/full", "w+");
    if (!full) GTEST_SKIP() << "no /dev/full here";
    kelstore = full;
    const poly_operand p(poly_of_text("{3{2{#5}, #1}, #1}"));
    EXPECT_FALSE(put_poly_disk(p.p));
    EXPECT_FALSE(put_poly_disk(p.p));
    close_poly_disk();
}

// Damage --------------------------------------------------------------------------------------------------

TEST(Disk, EveryShortFileIsDeclined)
{
    const in_view live(view_digits);
    const poly_audit audit;
    {
        const poly_operand p(poly_of_text("{3{2{#5}, #-1}, 0{1{#3}, #268435456}}"));
        const std::string whole = stored_text(p.p);
        ASSERT_EQ(taken_from(whole), poly_text(p.p));
        ASSERT_EQ(taken_from(whole.substr(0, whole.size() - 1)), poly_text(p.p))
            << "the line end is not needed";
        for (std::size_t k = 0; k + 2 < whole.size(); ++k) {
            EXPECT_EQ(taken_from(whole.substr(0, k)), "declined") << whole.substr(0, k);
        }
    }
    audit.expect_unchanged("short files");
}

TEST(Disk, WhatIsNoPolynomialIsDeclined)
{
    const in_view live(view_digits);
    const poly_audit audit;
    const std::string num = "-2147483648 ", end = " 2147483647 ";
    for (const std::string &bytes : {
             std::string(""),
             std::string("\n"),
             std::string("word"),
             std::string("- 1"),
             num + "1 5x" + end,          // no blank behind a number
             num + "1 5.0" + end,         // no whole number
             num + "1 268435456" + end,   // a digit too big
             num + "1 -268435456" + end,  //
             num + "1 -2147483648" + end,
             num + "2 0 5" + end,                                        // a head of 0
             num + "2 1 -5" + end,                                       // two signs
             num + "0 5" + end,                                          // a word where digits are live
             num + "-1 5 5" + end,                                       // a double
             num + "-7 5" + end,                                         // no such form
             num + "2147483647 1 2" + end,                               // more digits than there are
             num + "1 99999999999999999999" + end,                       // out of range
             num + "1 2147483648" + end,                                 //
             num + "1 -2147483649" + end,                                //
             num + "1 5 " + num + "1 5" + end,                           // two numbers in a list
             num + "1 5 0 0" + end,                                      //
             "2 " + num + "1 0" + end + end,                             // a zero coefficient
             "1 " + num + "1 5" + end + "2 " + num + "1 5" + end + end,  // exponents rise
             "1 " + num + "1 5" + end + "1 " + num + "1 5" + end + end,  // exponents repeat
             "0 " + num + "1 5" + end + end,                             // a number in a wrapper
             "-1 " + num + "1 5" + end + end,                            // a negative exponent
             std::string("2147483647 2147483647 2147483647 "),           // lists without an end
         }) {
        EXPECT_EQ(taken_from(bytes), "declined") << bytes;
    }
    audit.expect_unchanged("damaged files");
}

TEST(Disk, AnEndlessNestIsDeclined)
{
    const in_view live(view_digits);
    std::string bytes, close;
    for (int k = 0; k < variable_limit; ++k) {
        bytes += "1 ";
        close += " 2147483647";
    }
    const std::string deepest = bytes + "-2147483648 1 5 2147483647" + close + "\n";
    EXPECT_NE(taken_from(deepest), "declined") << "as many levels as there may be variables";
    EXPECT_EQ(taken_from("1 " + deepest + " 2147483647\n"), "declined");
    for (int k = 0; k < 14; ++k) bytes += bytes;
    EXPECT_EQ(taken_from(bytes), "declined");
}

TEST(Disk, OfAnotherRingIsDeclined)
{
    std::string digits, words, doubles;
    {
        const in_view live(view_digits);
        const poly_operand p(poly_of_text("{1{#3}, #1}"));
        digits = stored_text(p.p);
    }
    {
        const in_view live(view_word);
        const poly_operand p(poly_of_text("{1{#3}, #1000}"));
        words = stored_text(p.p);
    }
    {
        const in_view live(view_float);
        const poly_operand p(poly_of_text("{1{#3}, #1}"));
        doubles = stored_text(p.p);
    }
    {
        const in_view live(view_digits);
        EXPECT_NE(taken_from(digits), "declined");
        EXPECT_EQ(taken_from(words), "declined");
        EXPECT_EQ(taken_from(doubles), "declined");
    }
    {
        const in_view live(view_modular, 101);
        EXPECT_EQ(taken_from(digits), "declined");
        EXPECT_EQ(taken_from(words), "declined") << "no residue modulo 101";
        EXPECT_EQ(taken_from(doubles), "declined");
    }
    const in_view live(view_float);
    EXPECT_EQ(taken_from(digits), "declined");
    EXPECT_EQ(taken_from(words), "declined");
    EXPECT_NE(taken_from(doubles), "declined");
}

TEST(Disk, ADamagedPlaceIsTriedAgain)
{
    const in_view live(view_digits);
    const in_store store;
    std::fputs("nonsense\n", kelstore);
    polynode *p = nullptr;
    EXPECT_FALSE(get_poly_disk(&p));
    EXPECT_FALSE(get_poly_disk(&p));
    const poly_operand one(poly_of_text("{#1}"));
    EXPECT_TRUE(put_poly_disk(one.p));
    EXPECT_FALSE(get_poly_disk(&p)) << "what is behind the damage is out of reach";
}

// Bytes changed at random: what is taken is in normal form, or nothing is, and nothing is lost.
TEST(Disk, SpoiledFilesSurvive)
{
    test_random r;
    for (num_view v : {view_float, view_modular, view_word, view_digits}) {
        const in_view live(v);
        const poly_audit audit;
        {
            for (int k = 0; k < rounds; ++k) {
                const poly_operand p(random_poly(&r, {3, 6, 9, 0, 3}));
                std::string bytes = stored_text(p.p);
                for (std::uint64_t hits = 1 + r.below(3); hits > 0; --hits) {
                    bytes[r.below(bytes.size())] = "0123456789-  \nx"[r.below(15)];
                }
                const poly_operand back(taken(bytes));
                if (!back.p) continue;
                EXPECT_TRUE(poly_is_normal(back.p, variable_limit)) << bytes << " seed " << r.seed;
            }
        }
        audit.expect_unchanged("spoiled files");
    }
}

}  // namespace
