// tests/unit/numbers/limbs_test.cpp -- scratch limbs: gathering and writing, products, quotients.
#include "numbers/limbs.h"
#include <gtest/gtest.h>
#include <algorithm>
#include <vector>
#include "numbers/compare.h"
#include "numbers/limb_root.h"
#include "tests/support/by_build.h"
#include "tests/support/long_numbers.h"

namespace kelmar_test {

using namespace kelmar;

constexpr std::int32_t longest = by_build(60, 110);

static void value_of_limbs(const limb *a, std::int32_t n, mpz_t z)
{
    mpz_import(z, static_cast<std::size_t>(n), -1, sizeof(limb), 0, 64 - limb_bits, a);
}

// n limbs in biased runs of zeros, ones and random bits.
static std::vector<limb> draw_limbs(test_random *r, std::int32_t n)
{
    std::vector<limb> a(static_cast<std::size_t>(n));
    const std::uint64_t form = r->below(4);
    for (limb &x : a) {
        const std::uint64_t kind = form == 0 ? 0 : r->below(form == 1 ? 2 : 5);
        x = kind == 0 ? limb_mask : kind == 1 ? 0 : r->below(limb_mask);
    }
    return a;
}

TEST(Limbs, GatherAndScatterAreInverse)
{
    test_random r;
    record_audit audit;
    {
        long_operand a, b;
        for (std::int32_t size = 1; size < 40; ++size) {
            a.draw(&r, size);
            limb room[24];
            gather_limbs(a.n.head, a.n.size, room);
            const std::int32_t n = limbs_of(a.n.size);
            room[n] = room[n + 1] = 0;  // leading zeros are dropped
            scatter_limbs(room, n + 2, sign_of(&a.n), &b.n);
            EXPECT_TRUE(holds_value(&b.n, a.z)) << size;
        }
    }
    audit.expect_unchanged("limbs");
}

TEST(Limbs, SmallValuesFitAnyNodes)
{
    record_audit audit;
    {
        long_operand a;
        for (std::int32_t bits = 0; bits < 112; ++bits) {
            for (std::int32_t had = 0; had < 7; ++had) {
                special_free(&a.n);
                for (std::int32_t i = 0; i < had; ++i) {
                    a.n.head = new_digit(9, i == 0 ? nullptr : a.n.head);
                    if (i == 0) a.n.tail = a.n.head;
                    ++a.n.size;
                }
                const double_limb v = (double_limb{1} << bits) + (bits > 3 ? 5u : 0u);
                mpz_set_ui(a.z, 1);
                mpz_mul_2exp(a.z, a.z, static_cast<mp_bitcnt_t>(bits));
                if (bits > 3) mpz_add_ui(a.z, a.z, 5);
                if (had & 1) mpz_neg(a.z, a.z);
                if (bits < 60) {
                    set_small_value(static_cast<limb>(v), had & 1 ? -1 : 0, &a.n);
                } else {
                    set_small_value(v, had & 1 ? -1 : 0, &a.n);
                }
                ASSERT_TRUE(holds_value(&a.n, a.z)) << bits << " bits into " << had;
            }
        }
    }
    audit.expect_unchanged("small values");
}

// a * b, and a * a when the sizes are equal, agree with GMP.
static void expect_product(test_random *r, std::int32_t na, std::int32_t nb)
{
    const std::vector<limb> a = draw_limbs(r, na), b = draw_limbs(r, nb);
    std::vector<limb> product(static_cast<std::size_t>(na + nb));
    std::vector<limb> scratch(static_cast<std::size_t>(product_scratch(nb)));
    mpz_t za, zb, found;
    mpz_inits(za, zb, found, nullptr);
    value_of_limbs(a.data(), na, za);
    value_of_limbs(b.data(), nb, zb);
    multiply_limbs(product.data(), a.data(), na, b.data(), nb, scratch.data());
    value_of_limbs(product.data(), na + nb, found);
    mpz_mul(zb, za, zb);
    EXPECT_EQ(mpz_cmp(zb, found), 0) << na << " by " << nb;
    if (na == nb) {
        multiply_limbs(product.data(), a.data(), na, a.data(), na, scratch.data());
        value_of_limbs(product.data(), 2 * na, found);
        mpz_mul(za, za, za);
        EXPECT_EQ(mpz_cmp(za, found), 0) << "square of " << na;
    }
    mpz_clears(za, zb, found, nullptr);
}

TEST(MultiplyLimbs, EveryPairOfSmallSizes)
{
    test_random r;
    for (std::int32_t na = 1; na <= longest; ++na) {
        for (std::int32_t nb = 1; nb <= na; ++nb) expect_product(&r, na, nb);
    }
}

// Sizes about the one from which operands are cut in thirds, and shapes that thirds, halves and blocks share.
TEST(MultiplyLimbs, ThirdsAndTheirNeighbours)
{
    test_random r;
    for (std::int32_t na = 196; na < 210; ++na) {
        for (std::int32_t nb = 196; nb <= na; ++nb) expect_product(&r, na, nb);
    }
    for (std::int32_t na : {298, 299, 300, 301, 302, 303, 630, 1900}) {
        for (std::int32_t nb = na / 2 - 2; nb <= na; nb += 1 + na / 60) expect_product(&r, na, nb);
        for (std::int32_t nb = na * 2 / 3 - 3; nb < na * 2 / 3 + 4; ++nb) expect_product(&r, na, nb);
        expect_product(&r, na, na);
    }
}

TEST(DivideLimbs, EveryPairOfSizes)
{
    test_random r;
    mpz_t zu, zb, zq, zr, found;
    mpz_inits(zu, zb, zq, zr, found, nullptr);
    for (std::int32_t n = 1; n <= longest / 2; ++n) {
        for (std::int32_t m = 1; m <= longest; ++m) {
            std::vector<limb> u = draw_limbs(&r, n + m), b = draw_limbs(&r, n);
            b.back() |= limb{1} << (limb_bits - 1);
            if (r.below(2)) {  // the dividend begins as the divisor does
                std::copy(b.begin(), b.end(), u.begin() + m);
            }
            value_of_limbs(u.data(), n + m, zu);
            value_of_limbs(b.data(), n, zb);
            mpz_mul_2exp(found, zb, static_cast<mp_bitcnt_t>(limb_bits) * static_cast<mp_bitcnt_t>(m));
            if (mpz_cmp(zu, found) >= 0) {  // the quotient must fit: the largest dividend that does
                mpz_sub_ui(zu, found, 1);
                std::fill(u.begin(), u.end(), 0);
                mpz_export(u.data(), nullptr, -1, sizeof(limb), 0, 64 - limb_bits, zu);
            }
            std::vector<limb> q(static_cast<std::size_t>(m));
            std::vector<limb> scratch(static_cast<std::size_t>(quotient_scratch(n)));
            divide_limbs(q.data(), u.data(), n + m, b.data(), n, scratch.data());
            mpz_tdiv_qr(zq, zr, zu, zb);
            value_of_limbs(q.data(), m, found);
            ASSERT_EQ(mpz_cmp(zq, found), 0) << "quotient of " << m << " by " << n;
            value_of_limbs(u.data(), n + m, found);
            ASSERT_EQ(mpz_cmp(zr, found), 0) << "remainder of " << m << " by " << n;
        }
    }
    mpz_clears(zu, zb, zq, zr, found, nullptr);
}

// The root and what is left of it, for a of 2n limbs with one of its two top bits set.
static void expect_root(const mpz_t za, std::int32_t n)
{
    mpz_t want, rest, found;
    mpz_inits(want, rest, found, nullptr);
    std::vector<limb> a(static_cast<std::size_t>(2 * n)), s(static_cast<std::size_t>(n));
    mpz_export(a.data(), nullptr, -1, sizeof(limb), 0, 64 - limb_bits, za);
    std::vector<limb> scratch(static_cast<std::size_t>(root_scratch(n)));
    const limb over = root_limbs(s.data(), a.data(), n, scratch.data());
    mpz_sqrtrem(want, rest, za);
    value_of_limbs(s.data(), n, found);
    EXPECT_EQ(mpz_cmp(want, found), 0) << "root of " << 2 * n << " limbs";
    value_of_limbs(a.data(), n, found);
    mpz_set_ui(want, over);
    mpz_mul_2exp(want, want, static_cast<mp_bitcnt_t>(limb_bits) * static_cast<mp_bitcnt_t>(n));
    mpz_add(found, found, want);
    EXPECT_EQ(mpz_cmp(rest, found), 0) << "rest of " << 2 * n << " limbs";
    mpz_clears(want, rest, found, nullptr);
}

TEST(RootLimbs, EverySizeWithRandomLimbs)
{
    test_random r;
    mpz_t z;
    mpz_init(z);
    for (std::int32_t n = 1; n <= longest / 2; ++n) {
        for (int i = 0; i < 20; ++i) {
            std::vector<limb> a = draw_limbs(&r, 2 * n);
            a.back() |= limb{1} << (limb_bits - 1 - static_cast<int>(r.below(2)));
            value_of_limbs(a.data(), 2 * n, z);
            expect_root(z, n);
            if (testing::Test::HasFailure()) FAIL() << "seed " << r.seed;
        }
    }
    mpz_clear(z);
}

TEST(RootLimbs, SquaresAndTheirNeighbours)
{
    test_random r;
    mpz_t root, z;
    mpz_inits(root, z, nullptr);
    for (std::int32_t n = 1; n <= longest / 2; ++n) {
        for (int i = 0; i < 20; ++i) {
            std::vector<limb> s = draw_limbs(&r, n);
            if (i < 4) std::fill(s.begin(), s.begin() + n / 2, i & 1 ? limb_mask : 0);
            if (i & 2) std::fill(s.begin() + n / 2, s.end(), limb_mask);
            s.back() |= limb{1} << (limb_bits - 1);
            value_of_limbs(s.data(), n, root);
            mpz_mul(z, root, root);
            expect_root(z, n);
            mpz_addmul_ui(z, root, 2);
            expect_root(z, n);  // the greatest with this root
            mpz_mul(z, root, root);
            mpz_sub_ui(z, z, 1);
            if (mpz_sizeinbase(z, 2) + 1 >= static_cast<std::size_t>(2 * n) * limb_bits) expect_root(z, n);
            if (testing::Test::HasFailure()) FAIL() << "seed " << r.seed;
        }
    }
    mpz_clears(root, z, nullptr);
}

TEST(RootLimbs, LargestOperand)
{
    mpz_t z;
    mpz_init(z);
    for (std::int32_t n : {1, 2, 3, 4, 5, 9, 40, 41, 300}) {
        mpz_set_ui(z, 1);
        mpz_mul_2exp(z, z, static_cast<mp_bitcnt_t>(2 * n * limb_bits));
        mpz_sub_ui(z, z, 1);
        expect_root(z, n);
    }
    mpz_clear(z);
}

TEST(ShiftLimbs, UpAndDownByEveryCount)
{
    test_random r;
    for (std::int32_t bits = 0; bits < limb_bits; ++bits) {
        const std::vector<limb> a = draw_limbs(&r, 5);
        std::vector<limb> b(6);
        b[5] = shift_limbs_up(b.data(), a.data(), 5, bits);
        EXPECT_LT(b[5], limb{1} << bits);
        shift_limbs_down(b.data(), 6, bits);
        b.pop_back();
        EXPECT_EQ(a, b) << bits;
    }
}

}  // namespace kelmar_test
