// Cyclic products by transforms, and integers told by one prime and by two.
#include "poly/transform.h"
#include <gtest/gtest.h>
#include <vector>
#include "tests/support/long_numbers.h"

using namespace kelmar;
using namespace kelmar_test;

namespace {

using residues = std::vector<std::uint64_t>;

std::uint64_t times(std::uint64_t a, std::uint64_t b, std::uint64_t p)
{
    return static_cast<std::uint64_t>(static_cast<unsigned __int128>(a) * b % p);
}

residues plain_cyclic(const residues &x, const residues &y, std::uint64_t p)
{
    residues z(x.size(), 0);
    for (std::size_t i = 0; i < x.size(); ++i) {
        for (std::size_t j = 0; j < y.size(); ++j) {
            std::uint64_t &to = z[(i + j) % x.size()];
            to = (to + times(x[i], y[j], p)) % p;
        }
    }
    return z;
}

TEST(CyclicProduct, IsThePlainOneForEveryLengthAndPrime)
{
    test_random r;
    for (int k = 0; k < transform_primes; ++k) {
        const std::uint64_t p = transform_prime[k];
        for (int log = 2; log <= 9; ++log) {
            residues x(std::size_t{1} << log), y(x.size());
            for (std::uint64_t &v : x) v = r.below(3) == 0 ? p - 1 : r.below(p);
            for (std::uint64_t &v : y) v = r.below(3) == 0 ? p - 1 : r.below(p);
            const residues expected = plain_cyclic(x, y, p), square = plain_cyclic(x, x, p);
            residues again = x;
            ASSERT_TRUE(cyclic_product(k, x.data(), y.data(), log));
            EXPECT_EQ(x, expected) << log;
            ASSERT_TRUE(cyclic_product(k, again.data(), again.data(), log));
            EXPECT_EQ(again, square) << log;
        }
    }
}

TEST(CyclicProduct, LongArraysOfTheGreatestEntries)
{
    for (int k = 0; k < transform_primes; ++k) {
        const std::uint64_t p = transform_prime[k];
        residues x(1 << 15, p - 1), y(1 << 15, p - 1);
        ASSERT_TRUE(cyclic_product(k, x.data(), y.data(), 15));
        EXPECT_EQ(x, residues(1 << 15, 1 << 15));
    }
}

TEST(IntegerOf, BothSigns)
{
    const std::uint64_t p = transform_prime[0], q = transform_prime[1];
    for (std::int64_t v : {std::int64_t{0}, std::int64_t{1}, std::int64_t{-1}, (std::int64_t{1} << 60) - 1,
                           -(std::int64_t{1} << 60)}) {
        EXPECT_EQ(integer_of(v < 0 ? p - static_cast<std::uint64_t>(-v) : static_cast<std::uint64_t>(v)), v);
    }
    const __int128 one = 1;
    for (__int128 v : {one, -one, one << 61, -(one << 90), (one << 122) - 1, -(one << 122)}) {
        const auto residue = [v](std::uint64_t m) {
            const __int128 rest = v % static_cast<__int128>(m);
            return static_cast<std::uint64_t>(rest < 0 ? rest + static_cast<__int128>(m) : rest);
        };
        EXPECT_TRUE(integer_of(residue(p), residue(q)) == v);
    }
}

}  // namespace
