// Many Euclidean steps at once, against GMP, for quotients of every kind.
#include "numbers/half_gcd.h"
#include <gtest/gtest.h>
#include <vector>
#include "numbers/long_gcd.h"
#include "tests/support/by_build.h"
#include "tests/support/long_numbers.h"

namespace kelmar_test {

using namespace kelmar;

constexpr int rounds = by_build(3, 20);

// What a step takes off n limbs of ordinary operands, at least; the shortest parts leave a few limbs each.
static std::int32_t least_progress(std::int32_t n)
{
    return half_base_cut > 100 ? n / 6 - 8 : 0;
}

struct HalfGcd : testing::Test {
    test_random r;
    mpz_t a, b, want, got;
    void SetUp() override
    {
        mpz_inits(a, b, want, got, nullptr);
    }
    void TearDown() override
    {
        mpz_clears(a, b, want, got, nullptr);
    }

    // a and b = the operands whose Euclidean quotients are what `next` gives, until a has n limbs.
    template <class F> void from_quotients(std::int32_t n, F next)
    {
        mpz_set_ui(a, 1 + r.below(1000));
        mpz_mul_ui(a, a, 12);
        mpz_set_ui(b, 0);
        while (mpz_sizeinbase(a, 2) < static_cast<std::size_t>(n) * limb_bits - 10) {
            next(got);
            mpz_addmul(b, a, got);
            mpz_swap(a, b);
        }
    }

    std::int32_t longer() const
    {
        const std::size_t bits = mpz_cmp(a, b) > 0 ? mpz_sizeinbase(a, 2) : mpz_sizeinbase(b, 2);
        return static_cast<std::int32_t>((bits + limb_bits - 1) / limb_bits);
    }

    // One step on a and b in arrays of their length: the gcd stays. Return how many limbs went.
    std::int32_t step()
    {
        mpz_gcd(want, a, b);
        const std::int32_t n = longer();
        std::vector<limb> x(static_cast<std::size_t>(n)), y(x),
            work(static_cast<std::size_t>(half_step_scratch(n)));
        mpz_export(x.data(), nullptr, -1, sizeof(limb), 0, 64 - limb_bits, a);
        mpz_export(y.data(), nullptr, -1, sizeof(limb), 0, 64 - limb_bits, b);
        const std::vector<limb> x_before = x, y_before = y;
        if (!half_step(x.data(), y.data(), n, work.data())) {
            EXPECT_EQ(x, x_before) << "declined, so spared";
            EXPECT_EQ(y, y_before) << "declined, so spared";
            return 0;
        }
        mpz_import(a, x.size(), -1, sizeof(limb), 0, 64 - limb_bits, x.data());
        mpz_import(b, y.size(), -1, sizeof(limb), 0, 64 - limb_bits, y.data());
        mpz_gcd(got, a, b);
        EXPECT_EQ(mpz_cmp(got, want), 0) << n << " limbs, seed " << r.seed;
        return n - longer();
    }

    void expect_gcd()
    {
        number x, y, c;
        c.size = 0;
        number_from_mpz(a, &x);
        number_from_mpz(b, &y);
        mpz_gcd(want, a, b);
        binary_gcd(&x, &y, &c);
        EXPECT_TRUE(holds_value(&c, want)) << longer() << " limbs, seed " << r.seed;
        for (number *n : {&x, &y, &c}) special_free(n);
    }

    void draw_bits(mpz_t z, std::uint64_t bits)
    {
        mpz_set_ui(z, 1);
        for (std::uint64_t done = 0; done < bits; done += 32) {
            mpz_mul_2exp(z, z, 32);
            mpz_add_ui(z, z, static_cast<unsigned long>(r.below(std::uint64_t{1} << 32)));
        }
    }
};

TEST_F(HalfGcd, AStepTakesAboutAQuarterOffAndKeepsTheGcd)
{
    for (std::int32_t n : {40, 119, 120, 121, 239, 240, 241, 242, 243, 300, 599, 600, 601, 1000, 1501}) {
        for (int i = 0; i < rounds; ++i) {
            draw_bits(a, static_cast<std::uint64_t>(n) * limb_bits - 64);
            draw_bits(b, static_cast<std::uint64_t>(n) * limb_bits - 64);
            const std::int32_t before = longer();
            EXPECT_GT(step(), least_progress(before)) << before << " limbs, seed " << r.seed;
        }
    }
}

TEST_F(HalfGcd, BiasedOperandsKeepTheirGcd)
{
    for (int i = 0; i < 10 * rounds; ++i) {
        const int digits = 60 + static_cast<int>(r.below(2000));
        biased_mpz(&r, digits, false, a);
        biased_mpz(&r, digits, false, b);
        if (i & 1) {
            biased_mpz(&r, digits, false, got);
            mpz_mul(a, a, got);
            mpz_mul(b, b, got);
        }
        step();
        expect_gcd();
        if (HasFailure()) return;
    }
}

TEST_F(HalfGcd, RunsOfOnes)
{
    for (std::int32_t n : {100, 130, 250, 700, 1300}) {
        from_quotients(n, [](mpz_t q) { mpz_set_ui(q, 1); });
        EXPECT_GT(step(), least_progress(n));
        expect_gcd();
    }
}

TEST_F(HalfGcd, LongQuotientsHereAndThere)
{
    for (int i = 0; i < rounds; ++i) {
        const std::uint64_t every = 2 + r.below(200), bits = 1 + r.below(6000);
        from_quotients(700 + static_cast<std::int32_t>(r.below(900)),
                       [&](mpz_t q) { draw_bits(q, r.below(every) ? 0 : bits); });
        for (int k = 0; k < 4; ++k) step();
        expect_gcd();
        if (HasFailure()) return;
    }
}

TEST_F(HalfGcd, EveryQuotientPastTheLeadingBits)
{
    from_quotients(900, [&](mpz_t q) { draw_bits(q, 96); });
    step();
    expect_gcd();
}

TEST_F(HalfGcd, QuotientsAroundTheFloorOfTheLead)
{
    for (int i = 0; i < rounds; ++i) {
        from_quotients(800, [&](mpz_t q) {
            mpz_set_ui(q, 1);
            mpz_mul_2exp(q, q, 50 + static_cast<mp_bitcnt_t>(r.below(16)));
            if (r.below(3) == 0) mpz_set_ui(q, 1 + r.below(3));
        });
        for (int k = 0; k < 4; ++k) step();
        expect_gcd();
        if (HasFailure()) return;
    }
}

TEST_F(HalfGcd, UnequalLengthsAndEqualOperands)
{
    draw_bits(a, 90000);
    draw_bits(b, 60000);
    EXPECT_EQ(step(), 0);
    expect_gcd();
    mpz_set(b, a);
    EXPECT_EQ(step(), 0);
    expect_gcd();
    mpz_add_ui(b, a, 1);
    expect_gcd();
    mpz_set_ui(b, 0);
    expect_gcd();
}

}  // namespace kelmar_test
