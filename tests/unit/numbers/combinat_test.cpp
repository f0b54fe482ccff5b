// Factorials and binomials in every view, with the tables and without them, against GMP.
#include "numbers/combinat.h"
#include <gtest/gtest.h>
#include <cmath>
#include <string>
#include <utility>
#include "numbers/startup.h"
#include "tests/support/catch_error.h"
#include "tests/support/data_files.h"
#include "tests/support/long_numbers.h"
#include "tests/support/views.h"

using namespace kelmar;
using namespace kelmar_test;

namespace {

void load_from(const std::string &directory)
{
    output_of([&] { initialize(directory.c_str()); });
}

void expect_value(number *n, const mpz_t z, const std::string &what)
{
    ASSERT_TRUE(chain_is_normal(n, digit_base)) << what;
    mpz_t found;
    mpz_init(found);
    number_to_mpz(n, found);
    EXPECT_EQ(mpz_cmp(found, z), 0) << what;
    mpz_clear(found);
}

void check_digit_factorials()
{
    record_audit audit;
    number r;
    r.size = 0;
    mpz_t z;
    mpz_init(z);
    for (std::int32_t n :
         {0, 1, 2, 9, 10, 11, 19, 20, 21, 34, 99, 100, 170, 209, 210, 211, 215, 216, 1000, 5000}) {
        factorial(n, &r);
        mpz_fac_ui(z, static_cast<unsigned>(n));
        expect_value(&r, z, std::to_string(n) + "!");
    }
    mpz_clear(z);
    special_free(&r);
    audit.expect_unchanged("factorial");
}

void check_digit_binomials(unsigned top)
{
    record_audit audit;
    number r;
    r.size = 0;
    mpz_t z;
    mpz_init(z);
    for (unsigned n = 0; n <= top; ++n) {
        for (unsigned k = 0; k <= n; ++k) {
            rat_binom(static_cast<std::int32_t>(n), static_cast<std::int32_t>(k), &r);
            mpz_bin_uiui(z, n, k);
            expect_value(&r, z, "binomial " + std::to_string(n) + " " + std::to_string(k));
        }
    }
    mpz_clear(z);
    special_free(&r);
    audit.expect_unchanged("rat_binom");
}

}  // namespace

// Factorials ---------------------------------------------------------------------------------------------

TEST(Factorial, DigitsWithTheTable)
{
    load_from(data_directory);
    check_digit_factorials();
}

TEST(Factorial, DigitsWithoutTheTable)
{
    scratch_directory empty;
    load_from(empty.path);
    check_digit_factorials();
    load_from(data_directory);
}

TEST(Factorial, LeavesTheTableAsItWas)
{
    load_from(data_directory);
    number r;
    r.size = 0;
    factorial(5000, &r);
    factorial(210, &r);
    mpz_t z;
    mpz_init(z);
    mpz_fac_ui(z, 210);
    expect_value(&facts[21], z, "210! in the table");
    mpz_clear(z);
    special_free(&r);
}

TEST(Factorial, DoublesAreFiniteUpTo170)
{
    load_from(data_directory);
    in_view floats(view_float);
    number r;
    r.size = 0;
    mpz_t z;
    mpz_init(z);
    for (unsigned n = 0; n <= 170; ++n) {
        factorial(static_cast<std::int32_t>(n), &r);
        mpz_fac_ui(z, n);
        EXPECT_NEAR(r.real / mpz_get_d(z), 1.0, 1e-14) << n;
        if (n <= 18) {
            EXPECT_EQ(r.real, mpz_get_d(z)) << n;  // below 2^53
        }
    }
    mpz_clear(z);
    factorial(170, &r);
    EXPECT_TRUE(std::isfinite(r.real));
    for (std::int32_t n : {171, 180, 1000, 2147483647}) {
        factorial(n, &r);
        EXPECT_EQ(r.real, HUGE_VAL) << n;
    }
}

TEST(Factorial, WordsWrap)
{
    load_from(data_directory);
    in_view words(view_word);
    number r;
    r.size = 0;
    std::uint32_t wanted = 1;
    for (std::int32_t n = 0; n <= 40; ++n) {
        if (n > 0) wanted *= static_cast<std::uint32_t>(n);
        factorial(n, &r);
        EXPECT_EQ(static_cast<std::uint32_t>(r.word), wanted) << n;
    }
    factorial(2147483647, &r);
    EXPECT_EQ(r.word, 0);
}

TEST(Factorial, ResiduesAreThoseOfTheProduct)
{
    in_view modular(view_modular, 10007);
    number r;
    r.size = 0;
    std::int64_t wanted = 1;
    for (std::int32_t n = 0; n <= 10010; ++n) {
        if (n > 0) wanted = wanted * n % 10007;
        if (n % 100 && n < 10000) continue;
        factorial(n, &r);
        EXPECT_EQ(r.word, wanted) << n;
    }
    factorial(10006, &r);
    EXPECT_EQ(r.word, 10006);  // Wilson
    factorial(2147483647, &r);
    EXPECT_EQ(r.word, 0);
}

TEST(Factorial, ATableFieldKnowsOnly0And1)
{
    in_view field(view_field);
    number r;
    r.size = 0;
    for (std::int32_t n = 0; n < 5; ++n) {
        factorial(n, &r);
        EXPECT_EQ(r.word, n < 2 ? 1 : 0);
    }
}

TEST(Factorial, TheSmallViewKeepsOneDigit)
{
    in_view small(view_small);
    number r;
    r.size = 0;
    factorial(0, &r);
    EXPECT_EQ(r.head->digit, 1);
    factorial(10, &r);
    EXPECT_EQ(r.head->digit, 3628800);
    EXPECT_EQ(r.size, 1);
    special_free(&r);
}

// Binomials ----------------------------------------------------------------------------------------------

TEST(RatBinom, EveryRowUpTo160WithTheTable)
{
    load_from(data_directory);
    check_digit_binomials(160);
}

TEST(RatBinom, EveryRowUpTo40WithoutTheTable)
{
    scratch_directory empty;
    load_from(empty.path);
    check_digit_binomials(40);
    load_from(data_directory);
}

TEST(RatBinom, LongRows)
{
    number r;
    r.size = 0;
    mpz_t z;
    mpz_init(z);
    for (unsigned n : {153u, 1000u, 3001u}) {
        for (unsigned k : {0u, 1u, 2u, 77u, n / 2, n - 3, n}) {
            rat_binom(static_cast<std::int32_t>(n), static_cast<std::int32_t>(k), &r);
            mpz_bin_uiui(z, n, k);
            expect_value(&r, z, std::to_string(n));
        }
    }
    mpz_clear(z);
    special_free(&r);
}

TEST(Binomial, IsZeroOutsideTheTriangleInEveryView)
{
    for (num_view view : {view_float, view_field, view_modular, view_word, view_small, view_digits}) {
        in_view live(view);
        number r;
        r.size = 0;
        for (auto [n, k] : {std::pair{5, 6}, {5, -1}, {-1, 0}, {-3, -5}, {0, 1}}) {
            r.word = 7, r.real = 7;
            binomial(n, k, &r);
            if (view == view_float) {
                EXPECT_EQ(r.real, 0.0);
            } else if (view == view_small || view == view_digits) {
                EXPECT_EQ(r.head->digit, 0);
            } else {
                EXPECT_EQ(r.word, 0);
            }
        }
        special_free(&r);
    }
}

TEST(FloteBinom, IsExactWhereDoublesAreAndCloseElsewhere)
{
    load_from(data_directory);
    in_view floats(view_float);
    number r;
    r.size = 0;
    mpz_t z;
    mpz_init(z);
    for (unsigned n = 0; n <= 300; ++n) {
        for (unsigned k = 0; k <= n; ++k) {
            flote_binom(static_cast<std::int32_t>(n), static_cast<std::int32_t>(k), &r);
            mpz_bin_uiui(z, n, k);
            const double wanted = mpz_get_d(z);
            if (mpz_sizeinbase(z, 2) <= 44) {
                ASSERT_EQ(r.real, wanted) << n << " " << k;
            } else {
                ASSERT_NEAR(r.real / wanted, 1.0, 1e-13) << n << " " << k;
            }
        }
    }
    mpz_clear(z);
    flote_binom(2147483647, 1000000000, &r);
    EXPECT_EQ(r.real, HUGE_VAL);
    flote_binom(2147483647, 2, &r);
    EXPECT_NEAR(r.real / (2147483647.0 * 1073741823.0), 1.0, 1e-15);
}

TEST(LintBinom, IsTheBinomialModulo2To32)
{
    load_from(data_directory);
    in_view words(view_word);
    number r;
    r.size = 0;
    mpz_t z;
    mpz_init(z);
    for (unsigned n = 0; n <= 200; ++n) {
        for (unsigned k = 0; k <= n; ++k) {
            lint_binom(static_cast<std::int32_t>(n), static_cast<std::int32_t>(k), &r);
            mpz_bin_uiui(z, n, k);
            ASSERT_EQ(static_cast<std::uint32_t>(r.word), static_cast<std::uint32_t>(mpz_get_ui(z)))
                << n << " " << k;
        }
    }
    mpz_clear(z);
    for (int at = 0, n = 3; n <= 30; n += 3) {
        for (int k = 1; k <= n / 2; ++k, ++at) {
            lint_binom(n, k, &r);
            EXPECT_EQ(r.word, binom[at].word);
        }
    }
}

TEST(LintBinom, OfManyFactorsIsTheBinomialModulo2To32AndQuick)
{
    load_from(data_directory);
    in_view words(view_word);
    number r, left, right;
    r.size = left.size = right.size = 0;
    mpz_t z;
    mpz_init(z);
    for (unsigned n : {200000u, 200001u, 262143u, 262144u, 300007u}) {
        for (unsigned k : {99999u, 100000u, 100001u, n / 2}) {
            lint_binom(static_cast<std::int32_t>(n), static_cast<std::int32_t>(k), &r);
            mpz_bin_uiui(z, n, k);
            EXPECT_EQ(static_cast<std::uint32_t>(r.word), static_cast<std::uint32_t>(mpz_get_ui(z)))
                << n << " " << k;
        }
    }
    mpz_clear(z);
    for (std::int32_t n : {1999999999, 2147483647, 2147450880}) {
        for (std::int32_t k : {900000000, n / 2, 0x40000000, 131072}) {
            lint_binom(n, k, &r);
            lint_binom(n - 1, k - 1, &left);
            lint_binom(n - 1, k, &right);
            EXPECT_EQ(static_cast<std::uint32_t>(r.word),
                      static_cast<std::uint32_t>(left.word) + static_cast<std::uint32_t>(right.word))
                << n << " " << k;
        }
    }
}

TEST(ModBinom, AgreesWithTheExactOneForPrimeAndCompositeModuli)
{
    load_from(data_directory);
    mpz_t z;
    mpz_init(z);
    for (std::int32_t m : {2, 3, 7, 101, 42359, 65537, 2147483629, 6, 100, 65536}) {
        in_view modular(view_modular, m);
        mod_is_prime = m % 2 != 0 || m == 2;
        record_audit audit;
        number r;
        r.size = 0;
        for (unsigned n = 0; n <= 130; n += 1 + n / 40) {
            for (unsigned k = 0; k <= n; ++k) {
                mod_binom(static_cast<std::int32_t>(n), static_cast<std::int32_t>(k), &r);
                mpz_bin_uiui(z, n, k);
                ASSERT_EQ(static_cast<unsigned>(r.word), mpz_fdiv_ui(z, static_cast<unsigned>(m)))
                    << n << " " << k << " modulo " << m;
            }
        }
        audit.expect_unchanged("mod_binom");
    }
    mpz_clear(z);
}

// Coefficients of long rows, where the whole number is out of reach: C(n, k) modulo a b for coprime primes a
// and b is known from its residues modulo both.
TEST(ModBinom, DividesInACompositeRingWhereTheFactorialHasAnInverse)
{
    const std::int32_t a = 32749, b = 65521;
    const std::int32_t n = 2000000011, k = 30000;  // k below both
    in_view modular(view_modular, a * b);
    mod_is_prime = 0;
    number r;
    r.size = 0;
    mod_binom(n, k, &r);
    const std::int32_t found = r.word;
    EXPECT_EQ(imod_binom(n, k), found);
    EXPECT_EQ(imod_binom(n, n - k), found);
    for (std::int32_t p : {a, b}) {
        in_view prime(view_modular, p);
        mod_is_prime = 1;
        EXPECT_EQ(imod_binom(n, k), found % p) << p;
    }
}

TEST(Binomial, LongerThanTheLongestNumberIsError347)
{
    load_from(data_directory);
    in_view digits(view_digits);
    number r;
    r.size = 0;
    EXPECT_EQ(caught_error([&] { binomial(2000000000, 1000000000, &r); }), 347);
    EXPECT_EQ(caught_error([&] { binomial(2000000000, 50000, &r); }), 347);
    EXPECT_EQ(caught_error([&] { binomial(2000000000, 29597, &r); }), 347);  // 31 bits a factor
    EXPECT_EQ(caught_error([&] { binomial(2000000000, 29596, &r); }), 0);
    EXPECT_EQ(caught_error([&] { binomial(2000000000, 1999999999, &r); }), 0);
    EXPECT_EQ(r.size, 2) << "2000000000";
    EXPECT_EQ(caught_error([&] { binomial(40000, 20000, &r); }), 0);
    mpz_t z;
    mpz_init(z);
    mpz_bin_uiui(z, 40000, 20000);
    expect_value(&r, z, "the middle of row 40000");
    mpz_clear(z);
    special_free(&r);
}

TEST(ModBinom, TooLongForACompositeModulusIsError87)
{
    load_from(data_directory);
    in_view modular(view_modular, 15);
    mod_is_prime = 0;
    number r;
    r.size = 0;
    r.word = 7;
    EXPECT_EQ(caught_error([&] { mod_binom(2000000000, 1000000000, &r); }), 87);
    EXPECT_EQ(r.word, 0);
    EXPECT_EQ(caught_error([&] { mod_binom(2000000000, 50000, &r); }), 87);
    EXPECT_EQ(caught_error([&] { mod_binom(2000000000, 2, &r); }), 0);
    EXPECT_EQ(r.word, 1999999999 % 15 * (1000000000 % 15) % 15);
    EXPECT_EQ(caught_error([&] { mod_binom(2000000000, 3, &r); }), 0) << "3 has no inverse, but it is short";
    EXPECT_EQ(r.word, static_cast<std::int32_t>(static_cast<unsigned __int128>(1000000000) * 1999999999 *
                                                (1999999998 / 3) % 15));
    mod_is_prime = 1;
    modulus = 17;
    EXPECT_EQ(caught_error([&] { mod_binom(2000000000, 1000000000, &r); }), 0)
        << "a prime modulus always does";
}

TEST(ModBinom, TheWordFormRaisesItsOwnError279)
{
    in_view modular(view_modular, 15);
    mod_is_prime = 0;
    std::int32_t word = 7;
    EXPECT_EQ(caught_error([&] { word = imod_binom(2000000000, 1000000000); }), 279);
    EXPECT_EQ(caught_error([&] { word = imod_binom(6, 2); }), 0);
    EXPECT_EQ(word, 0);
    EXPECT_EQ(imod_binom(3, 5), 0);
    EXPECT_EQ(imod_binom(3, -1), 0);
}

TEST(ModBinom, IsModulo2InATableField)
{
    in_view field(view_field);
    number r;
    r.size = 0;
    mpz_t z;
    mpz_init(z);
    for (unsigned n = 0; n <= 64; ++n) {
        for (unsigned k = 0; k <= n; ++k) {
            mod_binom(static_cast<std::int32_t>(n), static_cast<std::int32_t>(k), &r);
            mpz_bin_uiui(z, n, k);
            EXPECT_EQ(r.word, mpz_odd_p(z) ? 1 : 0);
        }
    }
    mpz_clear(z);
}
