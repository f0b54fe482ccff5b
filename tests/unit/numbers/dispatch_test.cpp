// The primitives of the six views, against plain machine arithmetic and GMP.
#include "numbers/dispatch.h"
#include <gtest/gtest.h>
#include <cmath>
#include <limits>
#include "numbers/word_mod.h"
#include "session/report.h"
#include "tests/support/by_build.h"
#include "tests/support/long_numbers.h"
#include "tests/support/views.h"

using namespace kelmar;
using namespace kelmar_test;

namespace {

constexpr int rounds = by_build(3000, 100000);

constexpr double infinity = std::numeric_limits<double>::infinity();
constexpr double nan_value = std::numeric_limits<double>::quiet_NaN();

number real_number(double v)
{
    return {nullptr, nullptr, 0, v, nullptr, 0};
}

number word_number(std::int32_t v)
{
    return {nullptr, nullptr, v, 0, nullptr, 0};
}

// Words that are often at the edges of their range.
std::int32_t biased_word(test_random *random)
{
    static const std::int32_t edges[] = {0, 1, -1, 2, -2, INT32_MAX, INT32_MIN, INT32_MIN + 1, 65536, -65536};
    if (random->below(3) == 0) return edges[random->below(10)];
    return static_cast<std::int32_t>(random->below(std::uint64_t{1} << 32));
}

std::int32_t wrapped(std::int64_t v)
{
    return static_cast<std::int32_t>(static_cast<std::uint32_t>(static_cast<std::uint64_t>(v)));
}

struct pos_mod_is {
    std::int32_t saved = pos_mod;
    explicit pos_mod_is(std::int32_t on)
    {
        pos_mod = on;
    }
    ~pos_mod_is()
    {
        pos_mod = saved;
    }
};

// Floats --------------------------------------------------------------------------------------------------

TEST(Floats, FollowIeeeAndResultsMayBeOperands)
{
    const in_view view(view_float);
    number a = real_number(0.1), b = real_number(0.2), c = real_number(0);
    num_add(&a, &b, &c);
    EXPECT_EQ(c.real, 0.1 + 0.2);
    num_sub(&a, &b, &b);
    EXPECT_EQ(b.real, 0.1 - 0.2);
    num_mul(&b, &b, &b);
    EXPECT_EQ(b.real, (0.1 - 0.2) * (0.1 - 0.2));
    quot(&a, &b, &a);
    EXPECT_EQ(a.real, 0.1 / ((0.1 - 0.2) * (0.1 - 0.2)));
    num_add(&a, &a, &a);
    EXPECT_EQ(a.real, 2 * (0.1 / ((0.1 - 0.2) * (0.1 - 0.2))));
}

TEST(Floats, WholeDivisionIsTruncatedAndRemaindersAreMadeNonNegative)
{
    const in_view view(view_float);
    const struct {
        double a, b, quotient, truncated, positive;
    } rows[] = {{7, 2, 3, 1, 1},
                {-7, 2, -3, -1, 1},
                {7, -2, -3, 1, 1},
                {-7, -2, 3, -1, 1},
                {7.5, 2, 3, 1.5, 1.5},
                {-7.5, 2, -3, -1.5, 0.5},
                {7.5, 2.5, 3, 0, 0},
                {-0.75, 0.5, -1, -0.25, 0.25},
                {6, 3, 2, 0, 0},
                {1, 3, 0, 1, 1},
                {1e17, 3, 33333333333333333.0, 1, 1},
                {-1, 1e300, 0, -1, 1e300}};
    for (const auto &row : rows) {
        number a = real_number(row.a), b = real_number(row.b), c = real_number(9);
        {
            const pos_mod_is off(0);
            mod_or_div(&a, &b, &c, '|');
            EXPECT_EQ(c.real, row.truncated) << row.a << " " << row.b;
            mod_or_div(&a, &b, &c, '\\');
            EXPECT_EQ(c.real, row.quotient) << row.a << " " << row.b;
        }
        const pos_mod_is on(1);
        mod_or_div(&a, &b, &c, '|');
        EXPECT_EQ(c.real, row.positive) << row.a << " " << row.b;
        mod_or_div(&a, &b, &a, '\\');
        EXPECT_EQ(a.real, row.quotient) << "pos_mod changes remainders only";
    }
}

TEST(Floats, FloorSignAndUnity)
{
    const in_view view(view_float);
    number n = real_number(-1.5);
    EXPECT_TRUE(num_isneg(&n));
    num_floor(&n);
    EXPECT_EQ(n.real, -2);
    num_abs(&n);
    EXPECT_EQ(n.real, 2);
    EXPECT_FALSE(num_isone(&n));
    n.real = 1;
    EXPECT_TRUE(num_isone(&n));
    n.real = -0.0;
    EXPECT_FALSE(num_isneg(&n));
    num_abs(&n);
    EXPECT_FALSE(std::signbit(n.real));
}

TEST(ToInt, FloatsNearAWholeNumberCountAsIt)
{
    const in_view view(view_float);
    const struct {
        double v;
        int taken;
        std::int32_t result;
    } rows[] = {{0, 1, 0},
                {3, 1, 3},
                {-3, 1, -3},
                {3 + 2.9e-9, 1, 3},
                {3 + 3.1e-9, 0, 0},
                {3 - 2.9e-9, 1, 3},
                {9e-10, 1, 0},
                {1.1e-9, 0, 0},
                {-1e-9, 1, 0},
                {0.5, 0, 0},
                {2147483647.0, 1, INT32_MAX},
                {-2147483647.0, 1, -INT32_MAX},
                {2147483648.0, 0, 0},
                {-2147483648.0, 0, 0},
                {2147483646.3, 1, 2147483646},
                {1e300, 0, 0},
                {infinity, 0, 0},
                {-infinity, 0, 0},
                {nan_value, 0, 0}};
    for (const auto &row : rows) {
        const number n = real_number(row.v);
        std::int32_t v = 77;
        EXPECT_EQ(num_to_int(&n, &v), row.taken) << row.v;
        EXPECT_EQ(v, row.taken ? row.result : 77) << row.v;
    }
}

// Words ---------------------------------------------------------------------------------------------------

TEST(Words, RandomOperationsWrap)
{
    const in_view view(view_word);
    test_random random;
    for (int k = 0; k < 10 * rounds; ++k) {
        const std::int32_t va = biased_word(&random), vb = biased_word(&random);
        number a = word_number(va), b = word_number(vb), c = word_number(0);
        num_add(&a, &b, &c);
        ASSERT_EQ(c.word, wrapped(std::int64_t{va} + vb));
        num_sub(&a, &b, &c);
        ASSERT_EQ(c.word, wrapped(std::int64_t{va} - vb));
        num_mul(&a, &b, &c);
        ASSERT_EQ(c.word, wrapped(std::int64_t{va} * vb));
        if (vb == 0) continue;
        quot(&a, &b, &c);
        ASSERT_EQ(c.word, wrapped(std::int64_t{va} / vb));
        mod_or_div(&a, &b, &c, '\\');
        ASSERT_EQ(c.word, wrapped(std::int64_t{va} / vb));
        const std::int64_t r = std::int64_t{va} % vb;
        mod_or_div(&a, &b, &c, '|');
        ASSERT_EQ(c.word, r < 0 ? r + std::abs(std::int64_t{vb}) : r) << va << " " << vb;
        const pos_mod_is off(0);
        mod_or_div(&a, &b, &a, '|');
        ASSERT_EQ(a.word, r);
    }
}

TEST(Words, QuestionsAndAbsoluteValues)
{
    const in_view view(view_word);
    number n = word_number(-5);
    EXPECT_TRUE(num_isneg(&n));
    EXPECT_EQ(num_to_double(&n), -5.0);
    num_abs(&n);
    EXPECT_EQ(n.word, 5);
    std::int32_t v = 0;
    EXPECT_EQ(num_to_int(&n, &v), 1);
    EXPECT_EQ(v, 5);
    n.word = INT32_MIN;
    EXPECT_EQ(num_to_int(&n, &v), 0);
    num_abs(&n);
    EXPECT_EQ(n.word, INT32_MIN) << "wraps";
}

TEST(Residues, RandomOperationsAgreeWithWideArithmetic)
{
    test_random random;
    for (const std::int32_t m : {2, 3, 101, 65533, 65537, 1073741827, 2147483629}) {
        const in_view view(view_modular, m);
        for (int k = 0; k < rounds; ++k) {
            const auto va = static_cast<std::int32_t>(random.below(static_cast<std::uint64_t>(m)));
            const auto vb = static_cast<std::int32_t>(random.below(static_cast<std::uint64_t>(m)));
            number a = word_number(va), b = word_number(vb), c = word_number(0);
            num_add(&a, &b, &c);
            ASSERT_EQ(c.word, (std::int64_t{va} + vb) % m);
            num_sub(&a, &b, &c);
            ASSERT_EQ(c.word, (std::int64_t{va} - vb + m) % m);
            num_mul(&a, &b, &c);
            ASSERT_EQ(c.word, std::int64_t{va} * vb % m);
            if (vb == 0 || m == 65533) continue;  // 65533 = 13 71 71
            quot(&a, &b, &c);
            ASSERT_EQ(std::int64_t{c.word} * vb % m, va) << va << " / " << vb << " mod " << m;
            num_add(&a, &a, &a);
            ASSERT_EQ(a.word, 2 * std::int64_t{va} % m) << "one record in all places";
        }
    }
}

TEST(Residues, AreNeverNegativeAndLeaveNoRemainder)
{
    const in_view view(view_modular, 7);
    number a = word_number(6), b = word_number(3), c = word_number(9);
    EXPECT_FALSE(num_isneg(&a));
    num_abs(&a);
    EXPECT_EQ(a.word, 6);
    mod_or_div(&a, &b, &c, '|');
    EXPECT_EQ(c.word, 0);
    mod_or_div(&a, &b, &c, '\\');
    EXPECT_EQ(c.word, 2);
}

// Words outside the range stand for counts.
TEST(Residues, CountsTakePartAsWhatTheyAre)
{
    for (const std::int32_t m : {2, 7, 65521, 65535, 1000003, 268435399}) {
        const in_view view(view_modular, m);
        for (const std::int32_t va : {0, 1, 20, 70000, 99999999, (1 << 28) - 1, -1, -20, -(1 << 28) + 1}) {
            for (const std::int32_t vb : {1, 13, 65536, 268435398, -3}) {
                number a = word_number(va), b = word_number(vb), c = word_number(0);
                const auto rest = [m](std::int64_t v) { return ((v % m) + m) % m; };
                num_add(&a, &b, &c);
                ASSERT_EQ(c.word, rest(std::int64_t{va} + vb)) << va << " + " << vb << " modulo " << m;
                num_sub(&a, &b, &c);
                ASSERT_EQ(c.word, rest(std::int64_t{va} - vb)) << va << " - " << vb << " modulo " << m;
                num_mul(&a, &b, &c);
                ASSERT_EQ(c.word, rest(std::int64_t{va} * vb)) << va << " * " << vb << " modulo " << m;
                makeneg(&a, &c);
                ASSERT_EQ(c.word, rest(-std::int64_t{va})) << "-" << va << " modulo " << m;
                ASSERT_EQ(a.word, va);
            }
        }
    }
}

TEST(FieldElements, CountsTakePartByTheirLowBits)
{
    const in_view view(view_field);
    number a = word_number(300), b = word_number(-3), c = word_number(0);
    num_add(&a, &b, &c);
    EXPECT_EQ(c.word, 44 ^ 3);
    makeneg(&a, &c);
    EXPECT_EQ(c.word, 44);
}

TEST(FieldElements, SumsAreExclusiveOr)
{
    const in_view view(view_field);
    number a = word_number(0x53), b = word_number(0xca), c = word_number(0);
    num_add(&a, &b, &c);
    EXPECT_EQ(c.word, 0x99);
    num_sub(&c, &b, &c);
    EXPECT_EQ(c.word, 0x53);
    const std::uint16_t saved = f256prod[0x53 * 256 + 0xca];
    f256prod[0x53 * 256 + 0xca] = 1;
    num_mul(&a, &b, &c);
    EXPECT_EQ(c.word, 1) << "products come from the table";
    f256prod[0x53 * 256 + 0xca] = saved;
}

// The first digit alone -------------------------------------------------------------------------------------

TEST(SmallIntegers, WorkOnTheFirstDigitWithNoCarry)
{
    const in_view view(view_small);
    const record_audit audit;
    number a, b, c;
    number_from_text("268435455", &a);
    number_from_text("-3", &b);
    number_from_text("123456789123456789", &c);
    num_sub(&a, &b, &c);
    EXPECT_EQ(c.size, 1);
    EXPECT_EQ(c.head->digit, 268435458);
    EXPECT_EQ(c.tail->next, nullptr);
    num_mul(&b, &b, &b);
    EXPECT_EQ(b.head->digit, 9);
    quot(&a, &b, &c);
    EXPECT_EQ(c.head->digit, 29826161);
    num_add(&c, &b, &c);
    EXPECT_EQ(c.head->digit, 29826170);
    mod_or_div(&a, &b, &c, '|');
    EXPECT_EQ(c.head->digit, 268435455 % 9);
    num_floor(&c);
    EXPECT_EQ(c.head->digit, 268435455 % 9);
    special_free(&a);
    special_free(&b);
    special_free(&c);
    audit.expect_unchanged("small integers");
}

// Digits --------------------------------------------------------------------------------------------------

// c as GMP sees it, with the normal form checked.
void expect_value(const number *c, const mpz_t expected, const char *what)
{
    mpz_t z;
    mpz_init(z);
    number_to_mpz(c, z);
    EXPECT_EQ(mpz_cmp(z, expected), 0) << what;
    EXPECT_TRUE(chain_is_normal(c, digit_base)) << what;
    mpz_clear(z);
}

struct long_case {
    const char *name;
    void (*run)(number *, number *, number *);
    void (*judge)(mpz_t, const mpz_t, const mpz_t);
    bool divides;
};

void truncated_remainder(mpz_t r, const mpz_t a, const mpz_t b)
{
    mpz_tdiv_r(r, a, b);
}

void non_negative_remainder(mpz_t r, const mpz_t a, const mpz_t b)
{
    mpz_mod(r, a, b);
}

void run_truncated(number *a, number *b, number *c)
{
    const pos_mod_is off(0);
    mod_or_div(a, b, c, '|');
}

const long_case long_cases[] = {
    {"sum", [](number *a, number *b, number *c) { num_add(a, b, c); }, mpz_add, false},
    {"difference", [](number *a, number *b, number *c) { num_sub(a, b, c); }, mpz_sub, false},
    {"product", num_mul, mpz_mul, false},
    {"quot", quot, mpz_tdiv_q, true},
    {"quotient", [](number *a, number *b, number *c) { mod_or_div(a, b, c, '\\'); }, mpz_tdiv_q, true},
    {"remainder", [](number *a, number *b, number *c) { mod_or_div(a, b, c, '|'); }, non_negative_remainder,
     true},
    {"truncated remainder", run_truncated, truncated_remainder, true},
};

// One operation with the result apart, in a, in b, and with a and b the same.
void try_case(const long_case *one, const mpz_t za, const mpz_t zb)
{
    mpz_t expected;
    mpz_init(expected);
    one->judge(expected, za, zb);
    number a, b, c;
    c.size = 0;
    number_from_mpz(za, &a);
    number_from_mpz(zb, &b);
    one->run(&a, &b, &c);
    expect_value(&c, expected, one->name);
    expect_value(&a, za, one->name);
    expect_value(&b, zb, one->name);
    one->run(&a, &b, &a);
    expect_value(&a, expected, one->name);
    expect_value(&b, zb, one->name);
    special_free(&a);
    number_from_mpz(za, &a);
    one->run(&a, &b, &b);
    expect_value(&b, expected, one->name);
    expect_value(&a, za, one->name);
    if (!one->divides || mpz_sgn(za) != 0) {
        one->judge(expected, za, za);
        one->run(&a, &a, &a);
        expect_value(&a, expected, one->name);
    }
    special_free(&a);
    special_free(&b);
    special_free(&c);
    mpz_clear(expected);
}

TEST(Digits, RandomOperationsAgreeWithGmpInEveryAliasing)
{
    const in_view view(view_digits);
    test_random random;
    const record_audit audit;
    mpz_t za, zb;
    mpz_inits(za, zb, nullptr);
    for (int k = 0; k < rounds / 10 && !testing::Test::HasFailure(); ++k) {
        biased_mpz(&random, k % 50 == 0 ? 60 : 5, true, za);
        biased_mpz(&random, k % 70 == 0 ? 40 : 4, true, zb);
        for (const long_case &one : long_cases) {
            if (one.divides && mpz_sgn(zb) == 0) continue;
            try_case(&one, za, zb);
        }
    }
    mpz_clears(za, zb, nullptr);
    audit.expect_unchanged("digits");
}

TEST(Digits, ToDoubleAndToInt)
{
    const in_view view(view_digits);
    const struct {
        const char *text;
        double real;
        int taken;
        std::int32_t word;
    } rows[] = {{"0", 0, 1, 0},
                {"-5", -5, 1, -5},
                {"268435456", 268435456.0, 1, digit_base},
                {"2147483647", 2147483647.0, 1, INT32_MAX},
                {"-2147483647", -2147483647.0, 1, -INT32_MAX},
                {"2147483648", 2147483648.0, 0, 0},
                {"-2147483648", -2147483648.0, 0, 0},
                {"72057594037927936", 72057594037927936.0, 0, 0},
                {"10000000000000000000000", 1e22, 0, 0}};
    for (const auto &row : rows) {
        number n;
        number_from_text(row.text, &n);
        std::int32_t v = 77;
        EXPECT_EQ(num_to_double(&n), row.real) << row.text;
        EXPECT_EQ(num_to_int(&n, &v), row.taken) << row.text;
        EXPECT_EQ(v, row.taken ? row.word : 77) << row.text;
        EXPECT_EQ(num_isneg(&n), row.text[0] == '-');
        num_abs(&n);
        EXPECT_FALSE(num_isneg(&n));
        EXPECT_TRUE(chain_is_normal(&n, digit_base));
        special_free(&n);
    }
}

// Errors --------------------------------------------------------------------------------------------------

TEST(ZeroDivisor, IsAnErrorInEveryView)
{
    for (const num_view v : {view_float, view_field, view_modular, view_word, view_small, view_digits}) {
        const in_view view(v);
        const record_audit audit;
        number a = {nullptr, nullptr, 0, 0, nullptr, 0}, b = a, c = a;
        setvalue(5, &a);
        setvalue(0, &b);
        setvalue(3, &c);
        EXPECT_EQ(error_in_view([&] { quot(&a, &b, &c); }), err_zero_divisor) << v;
        EXPECT_EQ(error_in_view([&] { mod_or_div(&a, &b, &c, '|'); }), err_zero_divisor) << v;
        EXPECT_EQ(error_in_view([&] { mod_or_div(&a, &b, &c, '\\'); }), err_zero_divisor) << v;
        number three = {nullptr, nullptr, 0, 0, nullptr, 0};
        setvalue(3, &three);
        EXPECT_TRUE(equal(&c, &three)) << "an unwound division leaves its result alone";
        for (number *n : {&a, &b, &c, &three}) special_free(n);
        audit.expect_unchanged("zero divisor");
    }
}

TEST(Inverse, OfAZeroDivisorOfTheRingIsAnError)
{
    const in_view view(view_modular, 15);
    number a = word_number(2), b = word_number(6), c = word_number(4);
    EXPECT_EQ(error_in_view([&] { quot(&a, &b, &c); }), err_no_inverse);
    b.word = 7;
    EXPECT_EQ(error_in_view([&] { quot(&a, &b, &c); }), 0);
    EXPECT_EQ(c.word, 2 * 13 % 15);
}

TEST(Floor, IsAnErrorInTheWordViews)
{
    for (const num_view v : {view_field, view_modular, view_word}) {
        const in_view view(v);
        number n = word_number(5);
        EXPECT_EQ(error_in_view([&] { num_floor(&n); }), err_wrong_ring);
        EXPECT_EQ(n.word, 5);
    }
}

}  // namespace
