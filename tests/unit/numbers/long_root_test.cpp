// Nearest roots against GMP, on both sides of every half way; residues against all squares.
#include "numbers/long_root.h"
#include <gtest/gtest.h>
#include <vector>
#include "numbers/compare.h"
#include "numbers/word_mod.h"
#include "tests/support/by_build.h"
#include "tests/support/long_numbers.h"

using namespace kelmar;
using kelmar_test::biased_mpz;
using kelmar_test::by_build;
using kelmar_test::number_from_mpz;
using kelmar_test::number_from_text;
using kelmar_test::number_to_mpz;
using kelmar_test::record_audit;
using kelmar_test::test_random;

static constexpr int rounds = by_build(20000, 1000000);

struct LongRoot : testing::Test {
    test_random r;
    mpz_t a, want, rest, got;
    number x = {}, s = {};
    void SetUp() override
    {
        mpz_inits(a, want, rest, got, nullptr);
    }
    void TearDown() override
    {
        mpz_clears(a, want, rest, got, nullptr);
    }

    bool holds(const number *n, const mpz_t z)
    {
        number_to_mpz(n, got);
        return chain_is_normal(n, digit_base) && mpz_cmp(got, z) == 0;
    }
    // The nearest root of a, with a copied, taken over, and as the result.
    void expect_root()
    {
        mpz_sqrtrem(want, rest, a);
        if (mpz_cmp(rest, want) > 0) mpz_add_ui(want, want, 1);
        number_from_mpz(a, &x);
        int_sqrt(&x, &s, 1);
        ASSERT_TRUE(holds(&s, want)) << "seed " << r.seed;
        ASSERT_TRUE(holds(&x, a)) << "a copied operand is spared";
        if (r.below(2)) {
            int_sqrt(&x, &x, 1);
        } else {
            int_sqrt(&x, &x, 0);
        }
        ASSERT_TRUE(holds(&x, want)) << "seed " << r.seed;
        special_free(&x);
        number_from_mpz(a, &x);
        int_sqrt(&x, &s, 0);
        ASSERT_TRUE(holds(&s, want)) << "seed " << r.seed;
        special_free(&s);
    }
    // a = a random square, moved by at most 2 from it or from its half way up.
    void draw(int digits)
    {
        biased_mpz(&r, digits, false, a);
        const std::uint64_t kind = r.below(4);
        if (kind == 0) return;
        mpz_sqrt(want, a);
        mpz_mul(a, want, want);
        if (kind == 2) mpz_add(a, a, want);
        mpz_add_ui(a, a, r.below(3));
        if (mpz_cmp_ui(a, 2) > 0) mpz_sub_ui(a, a, r.below(3));
    }
};

// Long integers ---------------------------------------------------------------------------------------------

TEST_F(LongRoot, SmallRootsRound)
{
    const int roots[] = {0, 1, 1, 2, 2, 2, 2, 3, 3, 3, 3, 3, 3, 4};
    for (int v = 0; v < 14; ++v) {
        mpz_set_ui(a, v);
        number_from_mpz(a, &x);
        int_sqrt(&x, &s, 0);
        EXPECT_TRUE(is_longint(&s, roots[v])) << v;
    }
    special_free(&s);
}

TEST_F(LongRoot, TenToThe30HasRootTenToThe15)
{
    number_from_text("1000000000000000000000000000000", &x);
    int_sqrt(&x, &s, 0);
    mpz_set_str(want, "1000000000000000", 10);
    EXPECT_TRUE(holds(&s, want));
    special_free(&s);
}

TEST_F(LongRoot, NegativeGivesZero)
{
    number_from_text("-1000000000000000000000000000000000000000000", &x);
    int_sqrt(&x, &s, 0);
    EXPECT_TRUE(is_longint(&s, 0));
    special_free(&s);
}

TEST_F(LongRoot, SmallSizesAgreeWithGmp)
{
    record_audit audit;
    for (int i = 0; i < rounds; ++i) {
        draw(1 + static_cast<int>(r.below(6)));
        expect_root();
        if (HasFatalFailure()) return;
    }
    audit.expect_unchanged("int_sqrt");
}

TEST_F(LongRoot, SizesOnBothSidesOfTheCutAgreeWithGmp)
{
    record_audit audit;
    for (int size = 1; size < 80; ++size) {
        for (int i = 0; i < rounds / 5000; ++i) {
            draw(size);
            expect_root();
            if (HasFatalFailure()) return;
        }
    }
    audit.expect_unchanged("int_sqrt");
}

TEST_F(LongRoot, LongSizesAgreeWithGmp)
{
    for (int i = 0; i < 60; ++i) {
        draw(100 + static_cast<int>(r.below(1500)));
        expect_root();
        if (HasFatalFailure()) return;
    }
}

TEST_F(LongRoot, PowersOfTheBaseAndTheirNeighbours)
{
    for (int bits = 1; bits < 1200; bits += bits < 300 ? 1 : 7) {
        for (int offset : {-1, 0, 1}) {
            mpz_ui_pow_ui(a, 2, bits);
            if (offset < 0) {
                mpz_sub_ui(a, a, 1);
            } else {
                mpz_add_ui(a, a, offset);
            }
            expect_root();
            if (HasFatalFailure()) return;
        }
    }
}

// Residues --------------------------------------------------------------------------------------------------

struct ResidueRoot : testing::Test {
    void enter(std::int32_t m)
    {
        modularmode = lintmode = 1;
        modulus = m;
        smallmodulus = m < 65535;
    }
    void TearDown() override
    {
        modularmode = lintmode = smallmodulus = 0;
        modulus = -1;
    }
};

TEST_F(ResidueRoot, AllResiduesOfSmallPrimes)
{
    for (std::int32_t p : {2, 3, 5, 7, 11, 13, 17, 41, 97, 193, 257, 7681, 12289, 40961, 65521, 65537}) {
        enter(p);
        std::vector<char> square(p);
        for (std::int64_t x = 0; x < p; ++x) square[x * x % p] = 1;
        for (std::int32_t x = 0; x < p; ++x) {
            const std::int32_t root = modular_sqrt(x);
            ASSERT_TRUE(root >= 0 && root < p);
            if (square[x]) {
                ASSERT_EQ(modmult(root, root), x) << "modulo " << p;
            } else {
                ASSERT_EQ(root, 0) << x << " has no root modulo " << p;
            }
            if (p > 2) {
                ASSERT_EQ(its_a_square(x), x != 0 && square[x]) << x << " modulo " << p;
            }
        }
    }
}

TEST_F(ResidueRoot, NonResiduesGiveZero)
{
    enter(7);
    for (std::int32_t x : {3, 5, 6}) EXPECT_EQ(modular_sqrt(x), 0) << x;
    enter(17);
    for (std::int32_t x : {3, 5, 6, 7, 10, 11, 12, 14}) EXPECT_EQ(modular_sqrt(x), 0) << x;
    enter(3);
    EXPECT_EQ(modular_sqrt(2), 0);
}

TEST_F(ResidueRoot, ModuloTwoEveryResidueIsItsOwnRoot)
{
    enter(2);
    EXPECT_EQ(modular_sqrt(0), 0);
    EXPECT_EQ(modular_sqrt(1), 1);
}

TEST_F(ResidueRoot, LargePrimes)
{
    test_random r;
    for (std::int32_t p : {2147483629, 2147440637, 2013265921, 998244353, 469762049, 2147483647 - 18}) {
        enter(p);
        for (int i = 0; i < rounds / 100; ++i) {
            const std::int32_t x = r.below(p);
            const std::int32_t square = modmult(x, x);
            const std::int32_t root = modular_sqrt(square);
            ASSERT_TRUE(root == x || root == p - x || (x == 0 && root == 0)) << x << " modulo " << p;
            const std::int32_t other = modular_sqrt(x);
            if (other) {
                ASSERT_EQ(modmult(other, other), x);
            } else {
                ASSERT_TRUE(x == 0 || !its_a_square(x)) << x << " modulo " << p;
            }
        }
    }
}

TEST_F(ResidueRoot, KeptDataFollowTheModulus)
{
    enter(17);
    EXPECT_EQ(modmult(modular_sqrt(13), modular_sqrt(13)), 13);
    EXPECT_EQ(sqrt_mod, 17);
    EXPECT_EQ(sqrt_s, 4);
    EXPECT_EQ(sqrt_m, 1);
    enter(41);
    EXPECT_EQ(modmult(modular_sqrt(5), modular_sqrt(5)), 5);
    EXPECT_EQ(sqrt_mod, 41);
    EXPECT_EQ(sqrt_s, 3);
    EXPECT_EQ(sqrt_m, 5);
}

TEST_F(ResidueRoot, CompositeModuliEnd)
{
    for (std::int32_t m : {4, 6, 8, 9, 15, 21, 25, 45, 91, 561, 65536, 1 << 30, 2147483646}) {
        enter(m);
        for (std::int32_t x = 0; x < 200 && x < m; ++x) {
            const std::int32_t root = modular_sqrt(x);
            ASSERT_TRUE(root >= 0 && root < m);
        }
    }
}
