// The stash of known gcds: what it finds, what it keeps, and what it gives up.
#include "gcd/stash.h"
#include <gtest/gtest.h>
#include "gcd/measure.h"
#include "gcd/polygcd.h"
#include "poly/mass.h"
#include "storage/accounting.h"
#include "tests/support/divisions.h"

using namespace kelmar;
using namespace kelmar_test;

namespace {

constexpr char report[] = "negative polygcd_stack_depth 1";

struct GcdStash : testing::Test {
    in_view live{view_digits};
    std::int64_t memory = initial_memory;
    poly_audit audit;
    poly_operand a{poly_of_text("{3{#1}, #-1}")}, b{poly_of_text("{2{#1}, #-1}")},
        g{poly_of_text("{1{#1}, #-1}")};
    poly_operand c{poly_of_text("{3{#1}, #-8}")};
    GcdStash()
    {
        initial_memory = 1000000;
        lookupgcd = 1;
    }
    ~GcdStash() override
    {
        init_gcd_stash();
        initial_memory = memory;
        testing::internal::CaptureStdout();
        testing::internal::GetCapturedStdout();
    }

    // Put gcd(p, q) = g there.
    void keep(const polynode *p, const polynode *q)
    {
        pending_gcd pending;
        poly_operand known;
        ASSERT_EQ(find_gcd(p, q, &known.p, &pending), 0);
        EXPECT_EQ(polygcd_stack_depth, 1);
        keep_gcd(&pending, g.p, report);
        EXPECT_EQ(polygcd_stack_depth, 0);
    }
    // What is known of the pair, "null" for nothing.
    std::string known(const polynode *p, const polynode *q)
    {
        pending_gcd pending;
        poly_operand found;
        if (!find_gcd(p, q, &found.p, &pending)) keep_gcd(&pending, nullptr, report);
        return poly_text(found.p);
    }
};

TEST_F(GcdStash, FindsWhatItWasGiven)
{
    EXPECT_EQ(known(a.p, b.p), "null");
    keep(a.p, b.p);
    EXPECT_EQ(known(a.p, b.p), "{1{#1}, #-1}");
    EXPECT_EQ(known(b.p, a.p), "{1{#1}, #-1}") << "the smaller degree comes first, whoever asks";
    EXPECT_EQ(known(a.p, c.p), "null");
}

TEST_F(GcdStash, EqualDegreesInEitherOrder)
{
    keep(a.p, c.p);
    EXPECT_EQ(known(c.p, a.p), "{1{#1}, #-1}");
}

TEST_F(GcdStash, CountsTheMass)
{
    EXPECT_EQ(gcdmass, 0u);
    keep(a.p, b.p);
    const std::int64_t mass = simple_poly_mass(a.p) + simple_poly_mass(b.p) + simple_poly_mass(g.p);
    EXPECT_EQ(gcdmass, static_cast<std::uint64_t>(mass));
}

TEST_F(GcdStash, IsShutAboveHalfTheMemory)
{
    EXPECT_TRUE(stash_is_open());
    gcdmass = 500000;
    EXPECT_FALSE(stash_is_open());
    gcdmass = 499999;
    EXPECT_TRUE(stash_is_open());
    lookupgcd = 0;
    EXPECT_FALSE(stash_is_open());
    lookupgcd = -1000;
    EXPECT_FALSE(stash_is_open());
    gcdmass = 0;
}

// Chains are cut to their newest entry, and then whole chains go until the mass is at 2/3.
TEST_F(GcdStash, PurgeKeepsTheNewest)
{
    for (int k = 1; k < 2000; ++k) {
        poly_operand p(copy_poly(a.p));
        p.p->exp = 2 + k;
        keep(p.p, b.p);
    }
    const std::uint64_t before = gcdmass;
    purge_gcd_stash(0);
    EXPECT_LT(gcdmass, before);
    for (const quolynode *chain : gcd_stash) {
        if (chain) {
            EXPECT_EQ(chain->next, nullptr);
        }
    }
    initial_memory = 3000;
    quolynode *const kept = gcd_stash[5];
    ASSERT_NE(kept, nullptr);
    purge_gcd_stash(5);
    EXPECT_LE(gcdmass, 2000u);
    EXPECT_EQ(gcd_stash[5], kept);
}

TEST_F(GcdStash, IsPurgedWhenItIsFull)
{
    initial_memory = 4000;
    std::uint64_t most = 0;
    for (int k = 1; k < 500; ++k) {
        poly_operand p(copy_poly(a.p));
        p.p->exp = 2 + k;
        quolynode *entry = nullptr;
        gcdhash(p.p, b.p, &entry);
        ASSERT_NE(entry, nullptr);
        EXPECT_TRUE(poly_equal(entry->den->coef, p.p)) << "the new entry outlives the purge";
        if (gcdmass > most) most = gcdmass;
    }
    EXPECT_LT(most, 4000u);
}

// A purge that leaves more than half of the memory, but not two thirds of it, leaves the stash shut.
TEST_F(GcdStash, IsShutBetweenHalfAndTwoThirds)
{
    keep(a.p, b.p);
    const auto mass = static_cast<std::int64_t>(gcdmass);
    initial_memory = mass * 5 / 3;
    purge_gcd_stash(-1);
    EXPECT_EQ(static_cast<std::int64_t>(gcdmass), mass) << "not above two thirds";
    EXPECT_FALSE(stash_is_open());
    pop_gcd_stash();
    EXPECT_EQ(gcdmass, 0u);
    lookupgcd = 1;
    EXPECT_TRUE(stash_is_open());
}

// While a gcd runs its entry must stay.
TEST_F(GcdStash, IsNotPurgedWhileAGcdRuns)
{
    initial_memory = 400;
    pending_gcd pending;
    poly_operand found;
    ASSERT_EQ(find_gcd(a.p, b.p, &found.p, &pending), 0);
    quolynode *entry = nullptr;
    gcdhash(a.p, c.p, &entry);
    gcdhash(c.p, b.p, &entry);
    keep_gcd(&pending, g.p, report);
    EXPECT_EQ(known(a.p, b.p), "{1{#1}, #-1}");
}

// A stash that was cleared in the meantime does not get the gcd.
TEST_F(GcdStash, PendingGcdOutlivesTheStash)
{
    pending_gcd pending;
    poly_operand found;
    ASSERT_EQ(find_gcd(a.p, b.p, &found.p, &pending), 0);
    init_gcd_stash();
    keep_gcd(&pending, g.p, report);
    EXPECT_EQ(polygcd_stack_depth, 0);
    EXPECT_EQ(gcdmass, 0u);
    ASSERT_EQ(find_gcd(a.p, b.p, &found.p, &pending), 0);
    forget_pending_gcds();
    keep_gcd(&pending, g.p, report);
    EXPECT_EQ(polygcd_stack_depth, 0);
    EXPECT_EQ(known(a.p, b.p), "null");
}

TEST_F(GcdStash, BelongsToOneRing)
{
    keep(a.p, b.p);
    {
        in_view other(view_modular, 101);
        poly_operand x(poly_of_text("{3{#1}, #1}")), y(poly_of_text("{2{#1}, #1}"));
        EXPECT_EQ(known(x.p, y.p), "null");
        EXPECT_EQ(known(x.p, y.p), "null");
        in_view third(view_modular, 103);
        EXPECT_EQ(known(x.p, y.p), "null");
    }
    EXPECT_EQ(known(a.p, b.p), "null") << "the stash began anew";
}

TEST_F(GcdStash, PopsFreeIt)
{
    lookupgcd = 2;
    keep(a.p, b.p);
    pop_gcd_stash();
    EXPECT_EQ(lookupgcd, 1);
    EXPECT_GT(gcdmass, 0u);
    pop_gcd_stash();
    EXPECT_EQ(lookupgcd, 0);
    EXPECT_EQ(gcdmass, 0u);
}

// Over words the first pop marks the modulus, and the stash stays for it.
TEST_F(GcdStash, StaysForItsModulus)
{
    in_view other(view_modular, 101);
    poly_operand x(poly_of_text("{3{#1}, #1}")), y(poly_of_text("{2{#1}, #1}"));
    keep(x.p, y.p);
    free_gcd_stash();
    EXPECT_EQ(prev_modulus, 101);
    EXPECT_GT(gcdmass, 0u);
    free_gcd_stash();
    EXPECT_GT(gcdmass, 0u);
    modulus = 103;
    free_gcd_stash();
    EXPECT_EQ(gcdmass, 0u) << "of another modulus nothing is kept";
}

TEST_F(GcdStash, TooManyFilled)
{
    pending_gcd pending;
    poly_operand found;
    ASSERT_EQ(find_gcd(a.p, b.p, &found.p, &pending), 0);
    polygcd_stack_depth = 0;
    testing::internal::CaptureStdout();
    keep_gcd(&pending, g.p, report);
    const std::string text = testing::internal::GetCapturedStdout();
    EXPECT_NE(text.find(report), std::string::npos) << text;
    polygcd_stack_depth = 0;
}

}  // namespace
