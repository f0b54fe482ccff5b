// The two table fields are fields: all of GF(2^8), and a million samples of GF(2^16).
#include "numbers/fields.h"
#include <gtest/gtest.h>
#include "numbers/mode.h"
#include "numbers/startup.h"
#include "numbers/word_mod.h"
#include "tests/support/by_build.h"
#include "tests/support/long_numbers.h"
#include "tests/support/session_text.h"
#include "tests/support/views.h"

using namespace kelmar;
using namespace kelmar_test;

namespace {

// The field of that order is live until the end of the block.
struct in_field {
    in_view kept;
    explicit in_field(std::int32_t order) : kept(view_field)
    {
        prepare_session_once();
        set_table_field(order);
    }
};

constexpr int samples = by_build(100000, 1000000);

// x y in GF(2)[x] modulo x^8 + x^4 + x^3 + x + 1, without a table.
std::int32_t carryless_product(std::int32_t a, std::int32_t b)
{
    std::int32_t product = 0;
    for (; b; b >>= 1) {
        if (b & 1) product ^= a;
        a <<= 1;
        if (a & 256) a ^= 0x11b;
    }
    return product;
}

}  // namespace

TEST(FieldOf256, SetsTheModulusAndWhatGoesWithIt)
{
    const in_field field(256);
    EXPECT_EQ(modulus, 256);
    EXPECT_EQ(f256 && finf && !f2t16 && mod_is_prime && smallmodulus, 1);
    set_table_field(65536);
    EXPECT_EQ(modulus, 65536);
    EXPECT_EQ(!f256 && finf && f2t16 && mod_is_prime && smallmodulus, 1);
    set_modulus(256);
    EXPECT_EQ(finf || f256 || f2t16 || mod_is_prime, 0);
}

TEST(FieldOf256, ProductsAreThoseOfPolynomialsOverTwoElements)
{
    const in_field field(256);
    for (std::int32_t a = 0; a < 256; ++a) {
        for (std::int32_t b = 0; b < 256; ++b) {
            ASSERT_EQ(modmult(a, b), carryless_product(a, b)) << a << ' ' << b;
            ASSERT_EQ(mod_mult(a, b, 256), modmult(a, b));
        }
    }
}

TEST(FieldOf256, AllAxiomsHold)
{
    const in_field field(256);
    int wrong = 0;
    for (std::int32_t a = 0; a < 256; ++a) {
        for (std::int32_t b = 0; b < 256; ++b) {
            const std::int32_t ab = modmult(a, b);
            wrong += ab != modmult(b, a) || mod_add(a, b, modulus) != mod_add(b, a, modulus);
            for (std::int32_t c = 0; c < 256; ++c) {
                wrong += modmult(ab, c) != modmult(a, modmult(b, c));
                wrong += modmult(a, b ^ c) != (ab ^ modmult(a, c));
            }
        }
        wrong += modmult(a, 1) != a || modmult(a, 0) != 0 || mod_add(a, a, modulus) != 0;
        wrong += a > 0 && modmult(a, imod_inverse(a)) != 1;
        wrong += modmult(f256sqr[a], f256sqr[a]) != a;
    }
    EXPECT_EQ(wrong, 0);
}

TEST(FieldOf65536, AxiomsHoldOnSamples)
{
    const in_field field(65536);
    test_random r;
    const auto draw = [&r] { return static_cast<std::int32_t>(r.below(65536)); };
    int wrong = 0;
    for (int k = 0; k < samples; ++k) {
        const std::int32_t a = draw(), b = draw(), c = draw();
        const std::int32_t ab = modmult(a, b);
        wrong += ab != modmult(b, a) || ab != mod_mult(a, b, modulus);
        wrong += modmult(ab, c) != modmult(a, modmult(b, c));
        wrong += modmult(a, mod_add(b, c, modulus)) != mod_add(ab, modmult(a, c), modulus);
    }
    EXPECT_EQ(wrong, 0);
}

TEST(FieldOf65536, ZeroOneInversesAndRootsOfAllElements)
{
    const in_field field(65536);
    int wrong = 0;
    for (std::int32_t a = 0; a < 65536; ++a) {
        wrong += modmult(a, 0) != 0 || modmult(0, a) != 0 || modmult(a, 1) != a ||
                 mod_sub(0, a, modulus) != a;
        wrong += a > 0 && modmult(a, imod_inverse(a)) != 1;
        wrong += modmult(f2t16sqr[a], f2t16sqr[a]) != a;
    }
    EXPECT_EQ(wrong, 0);
}

TEST(FieldOf65536, LogarithmsWrapAt65535)
{
    const in_field field(65536);
    const std::int32_t a = f2t16exp[1], b = f2t16exp[65534];
    EXPECT_EQ(modmult(a, b), f2t16exp[0]);
    EXPECT_EQ(f2t16exp[0], 1);
    EXPECT_EQ(modmult(f2t16exp[65534], f2t16exp[65534]), f2t16exp[65533]);
}

TEST(FieldOf65536, TheSmallFieldLiesInIt)
{
    const in_field field(65536);
    for (std::int32_t a = 0; a < 256; ++a) {
        for (std::int32_t b = 0; b < 256; ++b) ASSERT_EQ(modmult(a, b), carryless_product(a, b));
    }
}
