// Primes against a sieve and against GMP, factors against their products.
#include "numbers/primes.h"
#include <gtest/gtest.h>
#include <algorithm>
#include <climits>
#include <vector>
#include "tests/support/by_build.h"
#include "tests/support/long_numbers.h"

using namespace kelmar;
using kelmar_test::by_build;
using kelmar_test::test_random;

static constexpr int rounds = kelmar_test::by_build(10000, 100000);
static constexpr int sieve_end = 2000000;

// The smallest prime divisor of every number below sieve_end.
static std::vector<std::int32_t> smallest_divisors()
{
    std::vector<std::int32_t> least(sieve_end);
    for (std::int32_t i = 2; i < sieve_end; ++i) {
        for (std::int32_t k = i; !least[i] || (least[i] == i && k < sieve_end); k += i) {
            if (!least[k]) least[k] = i;
        }
    }
    return least;
}

// A modular exponent test of GMP; 30 rounds.
static bool gmp_prime(std::uint64_t n)
{
    mpz_t z;
    mpz_init_set_ui(z, n);
    const bool prime = mpz_probab_prime_p(z, 30) != 0;
    mpz_clear(z);
    return prime;
}

static std::vector<std::int32_t> taken(word_node **list)
{
    std::vector<std::int32_t> words;
    for (word_node *node = *list; node; node = node->next) words.push_back(node->value);
    free_words(list);
    return words;
}

// Primality ----------------------------------------------------------------------------------------------

TEST(Primes, TwoThreeAndSevenArePrimesAndFortyNineIsNone)
{
    EXPECT_TRUE(is_prime(2));
    EXPECT_TRUE(is_prime(3));
    EXPECT_TRUE(is_prime(7));
    EXPECT_FALSE(is_prime(49));
}

TEST(Primes, TheLeastDivisorOf91Is7)
{
    EXPECT_EQ(long_is_prime(91), 7);
}

TEST(Primes, OneIsTakenForAPrimeAndZeroIsNot)
{
    EXPECT_TRUE(is_prime(1));  // on purpose: 1 passes every test
    EXPECT_FALSE(is_prime(0));
    EXPECT_EQ(long_is_prime(0), 2);
    EXPECT_EQ(long_is_prime(1), 1);
}

TEST(Primes, AgreeWithASieve)
{
    const std::vector<std::int32_t> least = smallest_divisors();
    for (std::int32_t n = 2; n < sieve_end; ++n) {
        ASSERT_EQ(is_prime(n), least[n] == n) << n;
        ASSERT_EQ(long_is_prime(n), least[n] == n ? 1 : least[n]) << n;
    }
}

TEST(Primes, LargeWordsAgreeWithGmp)
{
    test_random r;
    for (int i = 0; i < rounds; ++i) {
        const std::int32_t n = static_cast<std::int32_t>(r.below(2147483648u));
        if (n < 2) continue;
        const std::int32_t divisor = long_is_prime(n);
        ASSERT_EQ(divisor == 1, gmp_prime(n)) << n << " seed " << r.seed;
        ASSERT_EQ(n % divisor, 0);
        ASSERT_TRUE(gmp_prime(divisor) || divisor == 1);
    }
    EXPECT_TRUE(is_prime(2147483647));
    EXPECT_EQ(long_is_prime(46337 * 46337), 46337);
    EXPECT_EQ(long_is_prime(46327 * 46337), 46327);
}

TEST(Primes, TheSignIsNotLookedAt)
{
    EXPECT_TRUE(is_prime(-7));
    EXPECT_EQ(long_is_prime(-91), 7);
    EXPECT_EQ(long_is_prime(INT_MIN), 2);
}

static std::int64_t by_digits(std::uint64_t n)
{
    return longg_is_prime(static_cast<std::int32_t>(n >> 56), static_cast<std::int32_t>(n >> 28 & digit_mask),
                          static_cast<std::int32_t>(n & digit_mask));
}

TEST(Primes, ThreeDigitsAgreeWithGmp)
{
    test_random r;
    for (int i = 0; i < rounds / 10; ++i) {
        std::uint64_t n = r.engine() >> r.below(56);
        const std::int64_t divisor = i % 2 ? by_digits(n | 1) : 0;
        if (divisor == 0 || divisor > 1000000) continue;
        ASSERT_EQ(divisor == 1, gmp_prime(n | 1) || (n | 1) == 1) << (n | 1) << " seed " << r.seed;
        ASSERT_EQ((n | 1) % divisor, 0u);
    }
}

TEST(Primes, ThreeDigitsAtTheEdges)
{
    EXPECT_EQ(by_digits(0), 2);
    EXPECT_EQ(by_digits(1), 1);
    EXPECT_EQ(by_digits(91), 7);
    EXPECT_EQ(by_digits(2147483647), 1);
    EXPECT_EQ(by_digits(2147483648u), 2);
    EXPECT_EQ(by_digits(4294967291u), 1);
    EXPECT_EQ(by_digits(4294967297u), 641);
    EXPECT_EQ(by_digits(18446744073709551557u), 1);  // the largest prime of 64 bits
    EXPECT_EQ(by_digits(18446744073709551615u), 3);
    EXPECT_EQ(by_digits(9999971ull * 10000019), 9999971);
    EXPECT_EQ(by_digits(3215031751u), 151);  // a strong pseudoprime to 2, 3, 5 and 7
}

TEST(Primes, DivisorsPastTheWheelAreFoundAtOnce)
{
    test_random r;
    EXPECT_EQ(by_digits(4294967291ull * 4294967279), 4294967279);
    EXPECT_EQ(by_digits(4294967291ull * 4294967291), 4294967291);
    EXPECT_EQ(by_digits(2642239ull * 2642239 * 2642239), 2642239);
    EXPECT_EQ(by_digits(2097169ull * 2097169 * 2097211), 2097169);
    EXPECT_EQ(by_digits(2097143ull * 2097169 * 2097211), 2097143);
    for (int i = 0; i < rounds / 100; ++i) {
        std::uint64_t p = (r.engine() >> (32 + r.below(12))) | 257;
        std::uint64_t q = (r.engine() >> (32 + r.below(12))) | 257;
        while (!gmp_prime(p)) p -= 2;
        while (!gmp_prime(q)) q -= 2;
        ASSERT_EQ(by_digits(p * q), static_cast<std::int64_t>(std::min(p, q)))
            << p << " " << q << " seed " << r.seed;
    }
}

TEST(Primes, NextPrimeWalksThePrimes)
{
    const std::vector<std::int32_t> least = smallest_divisors();
    std::int32_t p = 3;
    for (std::int32_t n = 5; n < sieve_end; n += 2) {
        if (least[n] != n) continue;
        ASSERT_EQ(nextprime(p), n);
        p = n;
    }
}

TEST(Primes, NextPrimeAtTheEdges)
{
    EXPECT_EQ(nextprime(-5), -3);
    EXPECT_EQ(nextprime(0), 2);
    EXPECT_EQ(nextprime(1), 3);
    EXPECT_EQ(nextprime(4), 0);
    EXPECT_EQ(nextprime(48869), 48871);
    EXPECT_EQ(nextprime(65521), 65537);
    EXPECT_EQ(nextprime(2147483629), 2147483647);
    EXPECT_EQ(nextprime(2147483647), 0);
}

// Factors ------------------------------------------------------------------------------------------------

TEST(Primes, FactorsOf360)
{
    word_node *list;
    prime_factors(360, &list);
    EXPECT_EQ(taken(&list), (std::vector<std::int32_t>{2, 3, 5}));
    set_prime_quotients(&list, 360);
    EXPECT_EQ(taken(&list), (std::vector<std::int32_t>{180, 120, 72}));
    for (std::int32_t none : {0, 1, -1}) {
        prime_factors(none, &list);
        EXPECT_EQ(list, nullptr);
    }
}

TEST(Primes, FactorsRiseArePrimeAndMakeTheNumber)
{
    test_random r;
    for (int i = 0; i < rounds; ++i) {
        const std::int32_t n = i < 20000 ? i + 2 : static_cast<std::int32_t>(2 + r.below(2147483645));
        word_node *list;
        prime_factors(n, &list);
        const std::vector<std::int32_t> factors = taken(&list);
        ASSERT_TRUE(std::is_sorted(factors.begin(), factors.end())) << n << " seed " << r.seed;
        std::int32_t rest = n;
        for (std::int32_t p : factors) {
            ASSERT_TRUE(p > 1 && gmp_prime(p)) << n;
            ASSERT_EQ(rest % p, 0) << n;
            while (rest % p == 0) rest /= p;
        }
        ASSERT_EQ(rest, 1) << n << " seed " << r.seed;
        set_prime_quotients(&list, n);
        const std::vector<std::int32_t> quotients = taken(&list);
        ASSERT_EQ(quotients.size(), factors.size());
        for (std::size_t k = 0; k < factors.size(); ++k) ASSERT_EQ(quotients[k], n / factors[k]);
    }
}

// Choice from a table ------------------------------------------------------------------------------------

struct prime_table {
    std::vector<number> rows;
    explicit prime_table(std::initializer_list<std::int32_t> primes)
    {
        for (std::int32_t p : primes) {
            number n = {};
            n.word = p;
            rows.push_back(n);
        }
    }
};

TEST(Primes, SelectionStartsInTheToldStretch)
{
    prime_table table({});
    table.rows.resize(604);
    for (number &row : table.rows) row.word = 3;
    number one = {};
    kelmar_test::number_from_text("1", &one);
    int lowest = 604, highest = 0;
    for (int i = 0; i < 20000; ++i) {
        const int index = select_prime(&one, &one, 530, 64, 604, table.rows.data());
        lowest = std::min(lowest, index);
        highest = std::max(highest, index);
    }
    EXPECT_EQ(lowest, 11);
    EXPECT_EQ(highest, 74);
    special_free(&one);
}

TEST(Primes, SelectionSkipsDivisorsOfEitherLead)
{
    const prime_table table({101, 103, 107, 109});
    number a = {}, b = {};
    kelmar_test::number_from_text("1009803000000000000000000000000000000", &a);  // 103 divides it
    kelmar_test::number_from_text("-10701", &b);                                 // 109 does not, 107 does not
    mpz_t z;
    mpz_init(z);
    kelmar_test::number_to_mpz(&a, z);
    std::int32_t want = 1;
    while (mpz_divisible_ui_p(z, table.rows[want - 1].word) || 10701 % table.rows[want - 1].word == 0) ++want;
    EXPECT_EQ(select_prime(&a, &b, 100, 3, 4, table.rows.data()), want);  // the start is clamped to 1
    special_free(&a);
    kelmar_test::number_from_text("121330189", &a);  // 101 * 103 * 107 * 109
    EXPECT_EQ(select_prime(&a, &b, 100, 3, 4, table.rows.data()), 5);
    EXPECT_EQ(select_prime(&b, &a, 100, 3, 4, table.rows.data()), 5);
    special_free(&a);
    kelmar_test::number_from_text("-11021", &a);  // 103 * 107
    EXPECT_EQ(select_prime(&a, &a, 2, 1, 4, table.rows.data()), 4);
    EXPECT_EQ(select_prime(&a, &a, -3, 1, 4, table.rows.data()), 4);  // and to the last one
    special_free(&a);
    special_free(&b);
    mpz_clear(z);
}
