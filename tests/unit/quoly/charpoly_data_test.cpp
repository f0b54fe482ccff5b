// The interpolation data: every entry is the basis polynomial of its place; files that are short or damaged.
#include "quoly/charpoly_data.h"
#include <gtest/gtest.h>
#include <gmp.h>
#include <cmath>
#include <cstdlib>
#include <cstring>
#include <string>
#include "numbers/startup.h"
#include "quoly/quoly.h"
#include "quoly/ring_change.h"
#include "storage/sizes.h"
#include "tests/support/data_files.h"
#include "tests/support/polys.h"
#include "tests/support/views.h"

using namespace kelmar;
using namespace kelmar_test;

namespace {

constexpr int all_entries = 740;

// The data file has these bytes, and the table is as at a start, until the end of the block.
struct with_data {
    explicit with_data(const std::string &bytes)
    {
        const in_view live(view_digits);
        close_data_file(&chdat);
        char *text = static_cast<char *>(std::calloc(bytes.size() + 8, 1));
        std::memcpy(text, bytes.c_str(), bytes.size());
        chdat = {text, text, text + bytes.size(), 0};
        load_char_data();
    }
    with_data(const with_data &) = delete;
    with_data &operator=(const with_data &) = delete;
    ~with_data()
    {
        const in_view live(view_digits);
        close_data_file(&chdat);
        for (quolynode *&q : pol) free_quoly(&q);
    }
};

std::string good_bytes()
{
    return bytes_of(data_directory + "chdat");
}

int entries_there()
{
    int count = 0;
    for (const quolynode *q : pol) count += q != nullptr;
    return count;
}

// v = p(x), by Horner's rule on the flat form.
void value_at(const polynode *p, unsigned long x, mpz_t v)
{
    flat_poly terms = flatten(p, 1);
    mpz_t z;
    mpz_init(z);
    mpz_set_ui(v, 0);
    std::int32_t exp = terms.begin()->first[0];
    for (auto &term : terms) {
        for (; exp > term.first[0]; --exp) mpz_mul_ui(v, v, x);
        number_to_mpz(term.second, z);
        mpz_add(v, v, z);
    }
    for (; exp > 0; --exp) mpz_mul_ui(v, v, x);
    mpz_clear(z);
    free_flat(&terms);
}

// Contents ------------------------------------------------------------------------------------------------

TEST(CharData, TheFirstEntryIsOneInEveryView)
{
    const with_data data(good_bytes());
    ASSERT_TRUE(pol[0]->is_num);
    EXPECT_EQ(pol[0]->num->real, 1.0);
    EXPECT_EQ(pol[0]->num->word, 1);
    expect_digits(pol[0]->num, {1});
    EXPECT_EQ(get_char_poly(0, 0), pol[0]);
}

TEST(CharData, TheStartReadsTheTriangle)
{
    const with_data data(good_bytes());
    EXPECT_EQ(entries_there(), 1 + 66);
    for (int row = 0; row < pol_side; ++row) {
        for (int k = 0; k < pol_side; ++k) {
            const bool wanted = (row == 0 && k == 0) || (row <= 11 && k < row);
            EXPECT_EQ(pol[pol_side * row + k] != nullptr, wanted) << row << ", " << k;
        }
    }
}

TEST(CharData, TheFirstRowsByHand)
{
    const in_view live(view_digits);
    const with_data data(good_bytes());
    EXPECT_EQ(poly_text(get_char_poly(1, 0)->top), "{1{#-1}, #2}");
    EXPECT_EQ(get_char_poly(1, 0)->den, nullptr) << "a denominator 1 is left out";
    EXPECT_EQ(poly_text(get_char_poly(1, 1)->top), "{1{#1}, #-1}");
    EXPECT_EQ(poly_text(get_char_poly(2, 0)->top), "{2{#1}, 1{#-5}, #6}");
    EXPECT_EQ(poly_text(get_char_poly(2, 0)->den), "{#2}");
    EXPECT_EQ(poly_text(get_char_poly(2, 1)->top), "{2{#-1}, 1{#4}, #-3}");
    EXPECT_EQ(get_char_poly(2, 1)->den, nullptr);
    EXPECT_EQ(poly_text(get_char_poly(2, 2)->top), "{2{#1}, 1{#-3}, #2}");
    EXPECT_EQ(poly_text(get_char_poly(2, 2)->den), "{#2}");
}

TEST(CharData, EveryEntryIsOneAtItsPointAndZeroAtTheOthers)
{
    const in_view live(view_digits);
    const with_data data(good_bytes());
    mpz_t v, d;
    mpz_inits(v, d, nullptr);
    for (int row = 1; row < pol_side; ++row) {
        for (int k = 0; k <= row; ++k) {
            const quolynode *q = get_char_poly(row, k);
            ASSERT_NE(q, nullptr) << row << ", " << k;
            ASSERT_EQ(q->is_num, 0);
            EXPECT_EQ(q->top->exp, row);
            EXPECT_TRUE(poly_is_normal(q->top, 1));
            mpz_set_ui(d, 1);
            if (q->den) number_to_mpz(q->den->num, d);
            for (int point = 1; point <= row + 1; ++point) {
                value_at(q->top, static_cast<unsigned long>(point), v);
                if (point == k + 1) {
                    EXPECT_EQ(mpz_cmp(v, d), 0) << row << ", " << k;
                } else {
                    EXPECT_EQ(mpz_sgn(v), 0) << row << ", " << k << " at " << point;
                }
            }
        }
    }
    mpz_clears(v, d, nullptr);
    EXPECT_EQ(entries_there(), 1 + all_entries);
}

TEST(CharData, DoublesStandBesideTheDigits)
{
    const in_view live(view_digits);
    const with_data data(good_bytes());
    const quolynode *q = get_char_poly(30, 4);
    mpz_t z;
    mpz_init(z);
    const auto expect_double = [&](const number *n) {
        number_to_mpz(n, z);
        EXPECT_NEAR(n->real / mpz_get_d(z), 1, 1e-14);
    };
    for (const polynode *t = q->top; t; t = t->next) expect_double(t->isnum ? t->num : t->coef->num);
    expect_double(q->den->num);
    mpz_clear(z);
    EXPECT_EQ(get_char_poly(2, 0)->top->next->coef->num->real, -5.0);
}

TEST(CharData, EntriesAreReadOnDemandOnceAndInAnyMode)
{
    const with_data data(good_bytes());
    for (num_view v : {view_float, view_field, view_modular, view_word, view_digits}) {
        const in_view live(v);
        const int row = 12 + static_cast<int>(v);
        const int before = entries_there();
        const quolynode *q = get_char_poly(row, row);
        ASSERT_NE(q, nullptr);
        EXPECT_EQ(live_view(), v) << "the view is as it was";
        EXPECT_GT(entries_there(), before);
        const int after = entries_there();
        EXPECT_EQ(get_char_poly(row, row), q);
        EXPECT_EQ(get_char_poly(row, 0), pol[pol_side * row]);
        EXPECT_EQ(entries_there(), after) << "no further entry was read";
        EXPECT_EQ(q->top->coef->num->real, 1.0) << "the last basis polynomial leads with 1";
        EXPECT_GT(q->top->coef->num->size, 0);
    }
}

TEST(CharData, BeyondTheTableThereIsNothing)
{
    const with_data data(good_bytes());
    EXPECT_EQ(get_char_poly(-1, 0), nullptr);
    EXPECT_EQ(get_char_poly(0, -1), nullptr);
    EXPECT_EQ(get_char_poly(5, 6), nullptr);
    EXPECT_EQ(get_char_poly(38, 0), nullptr);
    EXPECT_EQ(get_char_poly(INT32_MAX, INT32_MAX), nullptr);
    EXPECT_EQ(entries_there(), 67) << "nothing was read for it";
    EXPECT_NE(get_char_poly(37, 37), nullptr);
}

TEST(CharData, LoadingAgainStartsAnewAndLosesNothing)
{
    const in_view live(view_digits);
    const poly_audit audit;
    {
        const with_data data(good_bytes());
        get_char_poly(20, 20);
        chdat.at = chdat.text;
        load_char_data();
        EXPECT_EQ(entries_there(), 67);
        EXPECT_EQ(poly_text(get_char_poly(12, 12)->top->coef), "{#1}");
    }
    audit.expect_unchanged("load_char_data");
}

TEST(CharData, TheTableCountsAsSystemData)
{
    const in_view live(view_digits);
    const std::int64_t before = size_data_strucs;
    const with_data data("");
    EXPECT_EQ(size_data_strucs - before, 4 * 38 * 38 + 20 + 32 + 8);
}

// Damage ----------------------------------------------------------------------------------------------------

TEST(CharData, AMissingFileLeavesTheFirstEntryAlone)
{
    const with_data data("");
    close_data_file(&chdat);
    EXPECT_EQ(entries_there(), 1);
    EXPECT_NE(get_char_poly(0, 0), nullptr);
    EXPECT_EQ(get_char_poly(1, 0), nullptr);
    EXPECT_EQ(get_char_poly(37, 37), nullptr);
}

TEST(CharData, AShortFileGivesWhatItHas)
{
    const in_view live(view_digits);
    const std::string whole = good_bytes();
    for (std::size_t length = 0; length < 3000; length += 7) {
        const poly_audit audit;
        {
            const with_data data(whole.substr(0, length));
            const int there = entries_there();
            EXPECT_LE(there, 67);
            EXPECT_EQ(get_char_poly(37, 37), nullptr);
            for (const quolynode *q : pol) {
                EXPECT_TRUE(!q || q->is_num || poly_is_normal(q->top, 1));
            }
        }
        audit.expect_unchanged("a short file");
    }
    const with_data data(whole.substr(0, whole.size() / 2));
    EXPECT_EQ(get_char_poly(37, 37), nullptr);
    EXPECT_NE(get_char_poly(11, 11), nullptr);
    EXPECT_NE(get_char_poly(12, 0), nullptr);
}

TEST(CharData, BadEntriesEndTheReading)
{
    const in_view live(view_digits);
    for (const char *bytes : {
             "1 0 1 1 -1 1 2",         // a denominator 0
             "1 -2 1 1 -1 1 2",        // below 0
             "1 1 0 1 5",              // no degree
             "1 1 -3 1 5",             //
             "1 1 2147483647 1 1",     // more terms than there are
             "1 1 1 1 0 1 2",          // no leading coefficient
             "1 1 2 1 1 1 1 1 1",      // another degree than the row's
             "1 1 1 0 1 2",            // a number without digits
             "1 1 1 1 268435456 1 2",  // a digit out of range
             "1 1 1 2 1 -1 1 2",       // two signs
             "1 1 1 1 -1 x",           //
         }) {
        const poly_audit audit;
        {
            const with_data data(bytes);
            EXPECT_EQ(entries_there(), 1) << bytes;
            EXPECT_TRUE(chdat.damaged) << bytes;
            EXPECT_EQ(get_char_poly(1, 0), nullptr) << bytes;
        }
        audit.expect_unchanged(bytes);
    }
}

TEST(CharData, APolynomialHasTheDegreeThatItStartsWith)
{
    const in_view live(view_digits);
    const poly_audit audit;
    for (const char *bytes : {"2 1 0 1 3 1 5", "2 1 0 1 0 1 0", "2 1 4 1 3"}) {
        const with_data data("");
        char *text = static_cast<char *>(std::calloc(std::strlen(bytes) + 8, 1));
        std::strcpy(text, bytes);
        chdat = {text, text, text + std::strlen(bytes), 0};
        polynode *p = pol[0]->top;
        EXPECT_FALSE(direct_poly_read(&p)) << bytes;
        EXPECT_EQ(p, nullptr) << bytes;
        EXPECT_FALSE(direct_poly_read(&p)) << "every later read declines";
    }
    audit.expect_unchanged("direct_poly_read");
}

TEST(CharData, EntriesMayBeReadOneByOne)
{
    const in_view live(view_digits);
    const poly_audit audit;
    {
        const with_data data(good_bytes());
        chdat.at = chdat.text;
        quolynode *q = nullptr;
        for (int k = 0; k < all_entries; ++k) {
            ASSERT_TRUE(direct_quoly_read(&q)) << k;
            EXPECT_EQ(q->is_rat, 0);
            free_quoly(&q);
        }
        EXPECT_FALSE(direct_quoly_read(&q)) << "the file has no more";
        EXPECT_EQ(q, nullptr);
    }
    audit.expect_unchanged("direct_quoly_read");
}

TEST(CharData, ZeroCoefficientsOfTheFileMakeNoTerm)
{
    const in_view live(view_digits);
    const with_data data("1 1 1 1 -1 1 0\n1 3 2 1 7 1 0 1 5");
    EXPECT_EQ(entries_there(), 3);
    EXPECT_EQ(poly_text(get_char_poly(1, 0)->top), "{1{#-1}}");
    EXPECT_EQ(poly_text(get_char_poly(2, 0)->top), "{2{#7}, #5}");
    EXPECT_EQ(poly_text(get_char_poly(2, 0)->den), "{#3}");
}

TEST(CharData, SpoiledFilesSurvive)
{
    const in_view live(view_digits);
    test_random r;
    const std::string whole = good_bytes().substr(0, 3000);
    for (int k = 0; k < 300; ++k) {
        const poly_audit audit;
        {
            std::string bytes = whole;
            for (std::uint64_t hits = 1 + r.below(4); hits > 0; --hits) {
                bytes[r.below(bytes.size())] = "0123456789-  \nx"[r.below(15)];
            }
            const with_data data(bytes);
            get_char_poly(20, 3);
            for (int place = 1; place < pol_side * pol_side; ++place) {
                const quolynode *q = pol[place];
                if (!q) continue;
                EXPECT_TRUE(poly_is_normal(q->top, 1)) << "seed " << r.seed;
                EXPECT_EQ(q->top->exp, place / pol_side) << "seed " << r.seed;
            }
        }
        audit.expect_unchanged("a spoiled file");
    }
}

// Doubles ---------------------------------------------------------------------------------------------------

TEST(PutFlote, FillsEveryNumberOfAValue)
{
    const in_view live(view_digits);
    quolynode *q = nullptr;
    polynode *p = poly_of_text("{3{2{#5}, #-1}, 0{1{#3}, #1000}}");
    poly_to_quoly(&p, &q);
    q->den = poly_of_text("{1{#8}, #268435456}");
    quoly_put_flote(q);
    {
        const in_view doubles(view_float);
        EXPECT_EQ(poly_text(q->top), "{3{2{#5}, #-1}, 0{1{#3}, #1000}}");
        EXPECT_EQ(poly_text(q->den), "{1{#8}, #268435456}");
    }
    free_quoly(&q);
    quoly_set(-17, &q);
    quoly_put_flote(q);
    EXPECT_EQ(q->num->real, -17.0);
    free_quoly(&q);
}

}  // namespace
