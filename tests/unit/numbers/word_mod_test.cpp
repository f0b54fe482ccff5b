// Residues of all three sizes of modulus, and both table fields against tables built here from polynomials.
#include "numbers/word_mod.h"
#include <gtest/gtest.h>
#include <cstdio>
#include "numbers/primes.h"
#include "session/levels.h"
#include "session/output.h"
#include "session/report.h"
#include "tests/support/by_build.h"
#include "tests/support/catch_error.h"
#include "tests/support/long_numbers.h"

using namespace kelmar;
using kelmar_test::caught_error;
using kelmar_test::test_random;

static constexpr int rounds = kelmar_test::by_build(100000, 1000000);

// Moduli on both sides of 65535, and at the ends of the range.
static const std::int32_t some_moduli[] = {
    2,     3,     4,        256,       46337,     46349,     65521,      65533,      65534,     65535,
    65536, 65537, 16777216, 268435455, 268435456, 268435459, 2147440637, 2147483629, 2147483646};

static std::int32_t draw_modulus(test_random *r, int i)
{
    if (i & 1) return some_moduli[r->below(std::size(some_moduli))];
    return static_cast<std::int32_t>(2 + r->below(2147483645));
}

// Modular mode with modulus m, and back at the end.
struct ring {
    explicit ring(std::int32_t m)
    {
        modularmode = lintmode = 1;
        modulus = m;
        half_modulus = m / 2;
        smallmodulus = m < 65535;
    }
    ~ring()
    {
        modularmode = lintmode = smallmodulus = half_modulus = finf = f256 = f2t16 = 0;
        modulus = -1;
    }
};

// Tables from polynomial arithmetic ----------------------------------------------------------------------

// The product of two bit polynomials modulo x^8 + x^4 + x^3 + x + 1.
static unsigned slow_octic(unsigned a, unsigned b)
{
    unsigned product = 0;
    for (; b; b >>= 1) {
        if (b & 1) product ^= a;
        a <<= 1;
        if (a & 0x100) a ^= 0x11b;
    }
    return product;
}

// The product of two polynomials a1 t + a0 over that field modulo t^2 + 2t + 1.
static unsigned slow_pair(unsigned a, unsigned b)
{
    const unsigned a1 = a >> 8, a0 = a & 255, b1 = b >> 8, b0 = b & 255;
    const unsigned square = slow_octic(a1, b1);
    const unsigned high = slow_octic(a1, b0) ^ slow_octic(a0, b1) ^ slow_octic(2, square);
    return high * 256 + (slow_octic(a0, b0) ^ square);
}

static void fill_fields()
{
    for (unsigned a = 0; a < 256; ++a) {
        for (unsigned b = 0; b < 256; ++b) {
            f256prod[a * 256 + b] = static_cast<std::uint16_t>(slow_octic(a, b));
        }
    }
    unsigned power = 1;
    for (unsigned e = 0; e < 65535; ++e) {
        f2t16exp[e] = static_cast<std::uint16_t>(power);
        f2t16log[power] = static_cast<std::uint16_t>(e);
        power = slow_pair(power, 263);
    }
    f2t16exp[65535] = 1;
    for (unsigned a = 1; a < 65536; ++a) {
        f2t16inv[a] = f2t16exp[(65535 - f2t16log[a]) % 65535];
    }
}

struct table_field : ring {
    explicit table_field(int bits) : ring(1 << bits)
    {
        static const int filled = (fill_fields(), 1);
        finf = filled;
        f256 = bits == 8;
        f2t16 = bits == 16;
    }
};

// Sums and differences -----------------------------------------------------------------------------------

TEST(WordMod, SumsAtTheEndsOfTheRange)
{
    for (std::int32_t m : some_moduli) {
        EXPECT_EQ(mod_sub(0, 0, m), 0);
        EXPECT_EQ(mod_add(m - 1, 1, m), 0);
        EXPECT_EQ(mod_add(m - 1, m - 1, m), m - 2);
        EXPECT_EQ(mod_sub(0, m - 1, m), 1);
    }
}

TEST(WordMod, SumsAgreeWithWideArithmetic)
{
    test_random r;
    for (int i = 0; i < rounds; ++i) {
        const std::int64_t m = draw_modulus(&r, i);
        const std::int64_t a = r.below(m), b = r.below(m);
        ASSERT_EQ(mod_add(a, b, m), (a + b) % m) << a << " " << b << " " << m << " seed " << r.seed;
        ASSERT_EQ(mod_sub(a, b, m), (a - b + m) % m) << a << " " << b << " " << m << " seed " << r.seed;
    }
}

TEST(WordMod, SpecModAddTakesAnySecondWord)
{
    test_random r;
    const std::int32_t ends[] = {0, 1, -1, INT32_MAX, INT32_MIN, INT32_MIN + 1, 1 << 28, -(1 << 28)};
    for (int i = 0; i < rounds; ++i) {
        const std::int64_t m = draw_modulus(&r, i);
        const std::int64_t a = r.below(m);
        const std::int32_t b = i % 7 == 0 ? ends[r.below(8)] : static_cast<std::int32_t>(r.engine());
        const std::int64_t want = ((a + b) % m + m) % m;
        ASSERT_EQ(spec_mod_add(a, b, m), want) << a << " " << b << " " << m << " seed " << r.seed;
    }
}

TEST(WordMod, SpecModAddHasNoFieldTest)
{
    table_field field(8);
    EXPECT_EQ(spec_mod_add(200, 100, 256), 44);
    EXPECT_EQ(mod_add(200, 100, 256), 200 ^ 100);
    EXPECT_EQ(mod_sub(200, 100, 256), 200 ^ 100);
}

// Products -----------------------------------------------------------------------------------------------

TEST(WordMod, ProductsAgreeWithWideArithmeticForEverySizeOfModulus)
{
    test_random r;
    for (int block = 0; block < rounds / 50; ++block) {
        const std::int32_t m = draw_modulus(&r, block);
        ring scope(m);
        for (int i = 0; i < 50; ++i) {
            const std::uint64_t a = i == 0 ? m - 1 : r.below(m), b = i < 2 ? m - 1 : r.below(m);
            const std::int64_t want = a * b % m;
            ASSERT_EQ(modmult(a, b), want) << a << " " << b << " " << m << " seed " << r.seed;
            ASSERT_EQ(nmodmult(a, b), want) << a << " " << b << " " << m << " seed " << r.seed;
            if (m < 65535) {
                ASSERT_EQ(mod_mult(a, b, m), want) << a << " " << b << " " << m << " seed " << r.seed;
            }
            if (a < static_cast<std::uint64_t>(m) - 1 && b < static_cast<std::uint64_t>(m) - 1) {
                ASSERT_EQ(spec_modmult(a, b), static_cast<std::int64_t>(a * b % (m - 1)))
                    << a << " " << b << " " << m << " seed " << r.seed;
            }
        }
    }
}

TEST(WordMod, ProductIsExactNearTwoToThe31)
{
    ring scope(2147483646);
    const struct {
        std::int32_t a, b, product;
    } cases[] = {{2147483645, 2147483645, 1}, {1073741823, 2, 0}, {2147483645, 1, 2147483645}};
    for (const auto &c : cases) EXPECT_EQ(modmult(c.a, c.b), c.product) << c.a;
}

// Table fields -------------------------------------------------------------------------------------------

TEST(WordMod, OcticFieldAgreesWithPolynomialsForAllPairs)
{
    table_field field(8);
    for (int a = 0; a < 256; ++a) {
        for (int b = 0; b < 256; ++b) {
            const std::int32_t want = slow_octic(a, b);
            ASSERT_EQ(modmult(a, b), want);
            ASSERT_EQ(mod_mult(a, b, 256), want);
        }
    }
}

TEST(WordMod, WideFieldAgreesWithPolynomialsForAllElements)
{
    table_field field(16);
    test_random r;
    for (int a = 0; a < 65536; ++a) {
        for (int i = 0; i < 16; ++i) {
            const int b = i == 0 ? 0 : i == 1 ? 65535 : i == 2 ? 263 : static_cast<int>(r.below(65536));
            const std::int32_t want = slow_pair(a, b);
            ASSERT_EQ(modmult(a, b), want) << a << " " << b;
            ASSERT_EQ(mod_mult(a, b, 65536), want) << a << " " << b;
        }
    }
}

TEST(WordMod, AnyWordStandsForTheElementOfItsLowBits)
{
    constexpr std::int32_t words[] = {256,     300, 65535, 65536,      65537,       70000,
                                      1 << 24, -1,  -300,  2147483647, -2147483647, -2147483647 - 1};
    for (int bits : {8, 16}) {
        table_field field(bits);
        const std::int32_t low = (1 << bits) - 1;
        for (std::int32_t a : words) {
            EXPECT_EQ(field_code(a), a & low);
            for (std::int32_t b : words) {
                EXPECT_EQ(modmult(a, b), modmult(a & low, b & low)) << a << " " << b;
                EXPECT_EQ(mod_mult(a, b, 1 << bits), modmult(a & low, b & low)) << a << " " << b;
            }
            if ((a & low) == 0) continue;
            std::int32_t inverse = -1;
            emod_inverse(a, &inverse);
            EXPECT_EQ(modmult(a & low, inverse), 1) << a;
        }
    }
    EXPECT_EQ(field_code(-300), -300);
}

TEST(WordMod, EveryFieldElementButZeroHasItsInverse)
{
    for (int bits : {8, 16}) {
        table_field field(bits);
        for (int a = 1; a < 1 << bits; ++a) {
            std::int32_t r = -1, e = -1;
            mod_inverse(a, &r);
            emod_inverse(a, &e);
            ASSERT_EQ(modmult(a, r), 1) << a;
            ASSERT_EQ(e, r);
            ASSERT_EQ(imod_inverse(a), r);
            ASSERT_LT(r, 1 << bits);
        }
        std::int32_t none = -1;
        EXPECT_EQ(caught_error([&] { emod_inverse(0, &none); }), 85);
    }
}

// Inverses -----------------------------------------------------------------------------------------------

TEST(WordMod, InverseTimesElementIsOne)
{
    test_random r;
    for (int i = 0; i < rounds; ++i) {
        const std::int32_t m = i & 1 ? 2147483629 : 65521;
        ring scope(m);
        const std::int32_t a = 1 + r.below(m - 1);
        std::int32_t x = -1, e = -1;
        mod_inverse(a, &x);
        emod_inverse(a, &e);
        ASSERT_EQ(modmult(a, x), 1) << a << " modulo " << m << " seed " << r.seed;
        ASSERT_EQ(e, x);
        ASSERT_EQ(imod_inverse(a), x);
        ASSERT_TRUE(x > 0 && x < m);
    }
}

TEST(WordMod, CompositeModuliAgreeWithGmp)
{
    test_random r;
    mpz_t a, m, x;
    mpz_inits(a, m, x, nullptr);
    for (int i = 0; i < rounds / 5; ++i) {
        const std::int32_t n = draw_modulus(&r, i);
        ring scope(n);
        const std::int32_t v = r.below(n);
        mpz_set_ui(a, v);
        mpz_set_ui(m, n);
        if (!mpz_invert(x, a, m)) continue;
        std::int32_t e = -1;
        emod_inverse(v, &e);
        ASSERT_EQ(e, static_cast<std::int32_t>(mpz_get_ui(x))) << v << " modulo " << n << " seed " << r.seed;
    }
    mpz_clears(a, m, x, nullptr);
}

TEST(WordMod, ZeroDivisorOfACompositeModulusIsError85)
{
    ring scope(91);
    std::int32_t r = 5;
    EXPECT_EQ(caught_error([&] { emod_inverse(7, &r); }), 85);
    EXPECT_EQ(caught_error([&] { emod_inverse(0, &r); }), 85);
    EXPECT_EQ(caught_error([&] { emod_inverse(8, &r); }), 0);
    EXPECT_EQ(modmult(8, r), 1);
}

TEST(WordMod, InverseOfZeroIsAFault)
{
    ring scope(91);
    std::int32_t r = 5;
    const auto level = levelcount;
    levelcount = highest_level;  // where a fault pushes no further level and unwinds
    testing::internal::CaptureStdout();
    caught_error([&] {
        Output = stdout;
        mod_inverse(0, &r);
    });
    levelcount = level;
    EXPECT_NE(testing::internal::GetCapturedStdout().find("bad seca."), std::string::npos);
}

TEST(WordMod, ImodInverseTellsTheResidueBeforeTheError)
{
    ring scope(91);
    testing::internal::CaptureStdout();
    const int raised = caught_error([] { imod_inverse(14); });
    std::fflush(stdout);
    const std::string shown = testing::internal::GetCapturedStdout();
    EXPECT_EQ(raised, 85);
    EXPECT_EQ(shown.substr(0, 9), "bad2: 14\n");
}

// Lists --------------------------------------------------------------------------------------------------

TEST(WordMod, InverseOfAProductOfWords)
{
    test_random r;
    for (int i = 0; i < rounds / 10; ++i) {
        ring scope(i & 1 ? 2147483629 : 48871);
        word_node *list = nullptr;
        std::int32_t product = 1;
        for (int k = static_cast<int>(r.below(6)); k > 0; --k) {
            std::int32_t word = 1 + r.below(2147483646);
            if (word % modulus == 0) word = 1;
            if (k == 1 && word % modulus != 0) word = -word;
            push_word(word, &list);
            product = modmult(product, spec_mod_add(0, word, modulus));
        }
        ASSERT_EQ(modmult(inverse_prod(list), product), 1) << "seed " << r.seed;
        free_words(&list);
        ASSERT_EQ(list, nullptr);
    }
}

TEST(WordMod, InverseOfAProductOfDifferences)
{
    test_random r;
    for (int i = 0; i < rounds / 10; ++i) {
        const int kind = i % 3;
        table_field base(16);
        ring scope(kind == 0 ? 2147483629 : kind == 1 ? 48871 : 65536);
        finf = f2t16 = kind == 2;
        const std::int32_t x = r.below(modulus);
        word_node *list = nullptr;
        std::int32_t product = 1;
        for (int k = static_cast<int>(r.below(6)); k > 0; --k) {
            const std::int32_t p = r.below(modulus);
            if (p == x) continue;
            push_word(p, &list);
            const std::int64_t difference = (std::int64_t{x} - p + modulus) % modulus;
            product = modmult(product, kind == 2 ? x ^ p : static_cast<std::int32_t>(difference));
        }
        ASSERT_EQ(modmult(multi_inverse_prod(list, x), product), 1) << "seed " << r.seed;
        free_words(&list);
    }
}
