// tests/unit/numbers/long_shift_test.cpp -- shifts of long integers.
#include "numbers/long_shift.h"
#include <gtest/gtest.h>
#include "tests/support/by_build.h"
#include "tests/support/long_numbers.h"

namespace kelmar_test {

using namespace kelmar;

constexpr int rounds = by_build(100000, 1000000);

TEST(ShiftRight, WholeDigitOfAOneDigitNumberLeavesZero)
{
    record_audit audit;
    number n = chain_of({5});
    shift_right(&n, 28);
    expect_digits(&n, {0});
    special_free(&n);
    n = chain_of({5, 6, 7});
    shift_right(&n, 1000);
    expect_digits(&n, {0});
    special_free(&n);
    audit.expect_unchanged("all digits");
}

TEST(ShiftRight, HeadThatEmptiesIsDropped)
{
    record_audit audit;
    number n = chain_of({1, 0});
    shift_right_1(&n);
    expect_digits(&n, {digit_base / 2});
    special_free(&n);
    n = chain_of({3, 1});
    shift_right_2(&n);
    expect_digits(&n, {3 << 26});
    shift_right(&n, 0);
    expect_digits(&n, {3 << 26});
    gen_shift_right(&n, 27);
    expect_digits(&n, {1});
    gen_shift_right(&n, 27);
    expect_digits(&n, {0});
    special_free(&n);
    audit.expect_unchanged("head");
}

TEST(ShiftLeft, BitsThatLeaveTheTopMakeANewHead)
{
    record_audit audit;
    number n = chain_of({digit_mask});
    shift_left(&n, 27);
    expect_digits(&n, {digit_mask >> 1, digit_base / 2});
    shift_left(&n, 28);
    expect_digits(&n, {digit_mask >> 1, digit_base / 2, 0});
    shift_left(&n, 0);
    expect_digits(&n, {digit_mask >> 1, digit_base / 2, 0});
    special_free(&n);
    audit.expect_unchanged("new head");
}

TEST(ShiftLeft, ZeroStaysOneNode)
{
    record_audit audit;
    number n = chain_of({0});
    shift_left(&n, 100);
    expect_digits(&n, {0});
    shift_right(&n, 100);
    expect_digits(&n, {0});
    special_free(&n);
    audit.expect_unchanged("zero");
}

TEST(Shifts, AgreeWithGmp)
{
    test_random r;
    record_audit audit;
    {
        long_operand a;
        for (int i = 0; i < rounds; ++i) {
            biased_mpz(&r, 1 + static_cast<std::int32_t>(r.below(r.below(8) == 0 ? 40 : 5)), false, a.z);
            a.load();
            const std::uint64_t k = r.below(4) == 0 ? r.below(400) : r.below(60);
            const std::int32_t bits = static_cast<std::int32_t>(k);
            switch (r.below(5)) {
            case 0:
                shift_left(&a.n, bits);
                mpz_mul_2exp(a.z, a.z, k);
                break;
            case 1:
                shift_right_1(&a.n);
                mpz_tdiv_q_2exp(a.z, a.z, 1);
                break;
            case 2:
                shift_right_2(&a.n);
                mpz_tdiv_q_2exp(a.z, a.z, 2);
                break;
            case 3:
                gen_shift_right(&a.n, 1 + bits % 27);
                mpz_tdiv_q_2exp(a.z, a.z, static_cast<mp_bitcnt_t>(1 + bits % 27));
                break;
            default:
                shift_right(&a.n, bits);
                mpz_tdiv_q_2exp(a.z, a.z, k);
                break;
            }
            ASSERT_TRUE(holds_value(&a.n, a.z)) << "round " << i;
        }
    }
    audit.expect_unchanged("shifts");
}

}  // namespace kelmar_test
