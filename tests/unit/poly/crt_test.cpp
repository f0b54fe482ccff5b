// Numbers through polynomials in place, remainders in both ranges, lifts from primes and from points.
#include "poly/crt.h"
#include <gtest/gtest.h>
#include <gmp.h>
#include <string>
#include <vector>
#include "numbers/startup.h"
#include "numbers/word_mod.h"
#include "poly/add.h"
#include "poly/scale.h"
#include "poly/variables.h"
#include "tests/support/by_build.h"
#include "tests/support/mul_operands.h"
#include "tests/support/polys.h"
#include "tests/support/views.h"

using namespace kelmar;
using namespace kelmar_test;

namespace {

// Put p, which is consumed, in front of the list.
void push_poly(polynode *p, poly_item **list)
{
    *list = new poly_item{p, *list};
}

void free_polys(poly_item **list)
{
    while (*list) {
        poly_item *item = *list;
        *list = item->next;
        free_poly(&item->poly);
        delete item;
    }
}

constexpr int rounds = by_build(150, 1500);

// p with each coefficient put through `change` in GMP, by the flat form.
template <class F> polynode *by_gmp(const polynode *p, std::int32_t vars, F change)
{
    flat_poly terms = flatten(p, vars);
    mpz_t z;
    mpz_init(z);
    for (auto &term : terms) {
        number_to_mpz(term.second, z);
        change(z);
        special_free(term.second);
        number_from_mpz(z, term.second);
    }
    mpz_clear(z);
    return nest(&terms);
}

// Equal, and the first one in normal form.
void expect_same(const polynode *found, const polynode *wanted, const test_random &r)
{
    EXPECT_TRUE(poly_is_normal(found, variable_limit)) << poly_text(found);
    EXPECT_EQ(poly_text(found), poly_text(wanted)) << "seed " << r.seed;
}

// Products ---------------------------------------------------------------------------------------

TEST(MultNum, AgreesWithTheCopyingProductInEveryView)
{
    test_random r;
    for (num_view v : {view_float, view_field, view_modular, view_word, view_digits}) {
        const in_view live(v, 36);  // a composite: products vanish
        for (int k = 0; k < rounds; ++k) {
            const poly_audit audit;
            {
                poly_operand p(random_poly(&r, {3, 10, 6, 0, 4})), wanted;
                number *n = random_coefficient(&r, 4);
                const std::string factor = number_text(n);
                scalar_by_poly(n, p.p, &wanted.p);
                mult_num(&p.p, n);
                expect_same(p.p, wanted.p, r);
                EXPECT_EQ(number_text(n), factor);
                free_imag(&n);
            }
            audit.expect_unchanged("mult_num");
        }
    }
}

TEST(MultNum, ByZeroIsZero)
{
    const in_view live(view_digits);
    const poly_audit audit;
    {
        poly_operand p(poly_of_text("{3{2{#5}, #1}, 0{1{#2}}}"));
        mult_num(&p.p, &number_0);
        EXPECT_EQ(poly_text(p.p), "{#0}");
        mult_num(&p.p, &number_2);
        EXPECT_EQ(poly_text(p.p), "{#0}");
    }
    audit.expect_unchanged("zero");
}

TEST(ModMultNum, AgreesWithTheCopyingProduct)
{
    test_random r;
    for (const std::int32_t m : {2, 36, 101, 65537, 2147483629, 0}) {
        const in_view live(m ? view_modular : view_field, m);
        for (int k = 0; k < rounds; ++k) {
            poly_operand p(random_poly(&r, {3, 10, 6, 0, 1})), wanted;
            number n = {};
            n.word = static_cast<std::int32_t>(r.below(static_cast<std::uint64_t>(modulus)));
            scalar_by_poly(&n, p.p, &wanted.p);
            mod_mult_num(&p.p, n.word);
            expect_same(p.p, wanted.p, r);
        }
    }
}

TEST(ModMultNum, WhatVanishesModuloACompositeIsDropped)
{
    const in_view live(view_modular, 6);
    poly_operand p(poly_of_text("{3{1{#3}, #1}, 2{2{#3}}, 0{1{#3}, #1}}"));
    mod_mult_num(&p.p, 2);
    EXPECT_EQ(poly_text(p.p), "{3{#2}, #2}") << "the wrapper of a number goes too";
    mod_mult_num(&p.p, 3);
    EXPECT_EQ(poly_text(p.p), "{#0}");
}

// Remainders ---------------------------------------------------------------------------------------

TEST(PolyModAndDiv, BothRangesAgreeWithGmp)
{
    test_random r;
    const in_view live(view_digits);
    mpz_t m, half;
    mpz_inits(m, half, nullptr);
    for (int k = 0; k < rounds; ++k) {
        const poly_audit audit;
        {
            do {
                biased_mpz(&r, 1 + static_cast<std::int32_t>(r.below(5)), false, m);
            } while (mpz_sgn(m) == 0);
            mpz_tdiv_q_ui(half, m, 2);
            const poly_operand p(random_poly(&r, {3, 10, 6, 0, 6}));
            number mod = {}, mid = {};
            number_from_mpz(m, &mod);
            number_from_mpz(half, &mid);
            const poly_operand low(by_gmp(p.p, 3, [&](mpz_t z) { mpz_mod(z, z, m); }));
            const poly_operand about(by_gmp(p.p, 3, [&](mpz_t z) {
                mpz_mod(z, z, m);
                if (mpz_cmp(z, half) > 0) mpz_sub(z, z, m);
            }));
            poly_operand a(copy_poly(p.p)), b(copy_poly(p.p));
            poly_mod_and_div(&a.p, &mod, nullptr);
            expect_same(a.p, low.p, r);
            poly_mod_and_div(&b.p, &mod, &mid);
            expect_same(b.p, about.p, r);
            EXPECT_TRUE(holds_value(&mod, m) && holds_value(&mid, half));
            special_free(&mod);
            special_free(&mid);
        }
        audit.expect_unchanged("poly_mod_and_div");
    }
    mpz_clears(m, half, nullptr);
}

// All values about the ends of both ranges, for small moduli of either parity.
TEST(PolyModAndDiv, EndsOfTheRanges)
{
    const in_view live(view_digits);
    for (std::int32_t m = 1; m <= 9; ++m) {
        number mod = {}, half = {};
        special_set(m, &mod);
        special_set(m / 2, &half);
        for (std::int32_t v = -3 * m; v <= 3 * m; ++v) {
            const std::int32_t low = ((v % m) + m) % m;
            const std::int32_t about = low > m / 2 ? low - m : low;
            polynode *p = nullptr;
            poly_set(v, &p);
            poly_mod_and_div(&p, &mod, nullptr);
            EXPECT_EQ(poly_text(p), "{#" + std::to_string(low) + "}") << v << " mod " << m;
            poly_set(v, &p);
            poly_mod_and_div(&p, &mod, &half);
            EXPECT_EQ(poly_text(p), "{#" + std::to_string(about) + "}") << v << " mod " << m;
            free_poly(&p);
        }
        special_free(&mod);
        special_free(&half);
    }
}

TEST(PolyModAndDiv, MultiplesOfTheModulusAreDropped)
{
    const in_view live(view_digits);
    poly_operand p(poly_of_text("{4{1{#10}, #3}, 2{#-25}, 0{2{#5}, #7}}"));
    number five = {};
    special_set(5, &five);
    poly_mod_and_div(&p.p, &five, nullptr);
    EXPECT_EQ(poly_text(p.p), "{4{#3}, #2}");
    special_free(&five);
}

// Lifts over primes ---------------------------------------------------------------------------------------

// The mixed-radix digits of f over the primes, oldest first: f = c_0 + c_1 p_0 + c_2 p_0 p_1 + ..
std::vector<polynode *> digits_of(const polynode *f, std::int32_t vars,
                                  const std::vector<std::int32_t> &primes)
{
    std::vector<polynode *> digits;
    polynode *rest = copy_poly(f);
    for (const std::int32_t p : primes) {
        const auto up = static_cast<unsigned long>(p);
        digits.push_back(by_gmp(rest, vars, [&](mpz_t z) { mpz_fdiv_r_ui(z, z, up); }));
        polynode *next = by_gmp(rest, vars, [&](mpz_t z) { mpz_fdiv_q_ui(z, z, up); });
        free_poly(&rest);
        rest = next;
    }
    free_poly(&rest);
    return digits;
}

TEST(Chinese, ValueOfRandomDigitsModuloANewPrimeAgreesWithGmp)
{
    test_random r;
    const in_view live(view_digits);
    const std::vector<std::int32_t> table = {3, 42359, 48869, 65521, 268435399, 268435459, 2147483629};
    for (int k = 0; k < rounds / 2; ++k) {
        const poly_audit audit;
        {
            std::vector<std::int32_t> primes;
            mpz_t product;
            mpz_init_set_ui(product, 1);
            for (std::uint64_t count = 1 + r.below(8); count > 0; --count) {
                primes.push_back(table[r.below(table.size())]);
                mpz_mul_ui(product, product, static_cast<unsigned long>(primes.back()));
            }
            const poly_operand f(random_poly(&r, {3, 10, 6, 0, 6}));
            const poly_operand value(by_gmp(f.p, 3, [&](mpz_t z) { mpz_mod(z, z, product); }));
            poly_item *digits = nullptr;
            word_node *list = nullptr;
            for (polynode *digit : digits_of(f.p, 3, primes)) push_poly(digit, &digits);
            for (const std::int32_t p : primes) push_word(p, &list);

            const std::int32_t fresh = table[r.below(table.size())];
            const poly_operand wanted(
                by_gmp(value.p, 3, [&](mpz_t z) { mpz_fdiv_r_ui(z, z, static_cast<unsigned long>(fresh)); }));
            number m = {};
            special_set(fresh, &m);
            poly_operand found(poly_of_text("{1{#1}}"));
            Chinese(digits, &m, list, &found.p);
            expect_same(found.p, wanted.p, r);
            special_free(&m);

            number_from_mpz(product, &m);  // modulo the product itself: the value as it is
            Chinese(digits, &m, list, &found.p);
            expect_same(found.p, value.p, r);
            special_free(&m);
            free_polys(&digits);
            free_words(&list);
            EXPECT_EQ(digits, nullptr);
            mpz_clear(product);
        }
        audit.expect_unchanged("Chinese");
    }
}

TEST(Chinese, DigitsAboutZeroLiftToo)
{
    const in_view live(view_digits);
    poly_item *digits = nullptr;
    word_node *primes = nullptr;
    push_poly(poly_of_text("{2{#-3}, #2}"), &digits);  // modulo 7
    push_word(7, &primes);
    push_poly(poly_of_text("{2{#5}, 1{#-1}}"), &digits);  // modulo 11
    push_word(11, &primes);
    number m = {};
    special_set(1000, &m);
    polynode *c = nullptr;
    Chinese(digits, &m, primes, &c);
    EXPECT_EQ(poly_text(c), "{2{#32}, 1{#993}, #2}");
    special_set(2, &m);
    Chinese(digits, &m, primes, &c);
    EXPECT_EQ(poly_text(c), "{1{#1}}");
    free_poly(&c);
    free_polys(&digits);
    free_words(&primes);
    special_free(&m);
}

TEST(Chinese, OneDigitIsReducedAndNoDigitIsZero)
{
    const in_view live(view_digits);
    number m = {};
    special_set(7, &m);
    polynode *c = nullptr;
    Chinese(nullptr, &m, nullptr, &c);
    EXPECT_EQ(poly_text(c), "{#0}");
    poly_item *digits = nullptr;
    word_node *primes = nullptr;
    push_poly(poly_of_text("{2{#-3}, 1{#14}, #12}"), &digits);
    push_word(13, &primes);
    Chinese(digits, &m, primes, &c);
    EXPECT_EQ(poly_text(c), "{2{#4}, #5}");
    EXPECT_EQ(poly_text(digits->poly), "{2{#-3}, 1{#14}, #12}");
    free_poly(&c);
    free_polys(&digits);
    free_words(&primes);
    special_free(&m);
}

// Garner's lift, as the modular methods run it: from images modulo primes back to the integers.
TEST(Chinese, ImagesModuloPrimesLiftToTheIntegers)
{
    test_random r;
    const in_view live(view_digits);
    const std::vector<std::int32_t> primes = {42359, 42373, 42379, 42391, 42397, 42403, 42407, 42409};
    mpz_t product, half;
    mpz_inits(product, half, nullptr);
    for (int k = 0; k < rounds / 10; ++k) {
        const poly_operand f(random_poly(&r, {3, 10, 6, 0, 4}));  // 112 bits: eight primes do
        poly_operand sum;
        poly_set(0, &sum.p);
        poly_item *digits = nullptr;
        word_node *used = nullptr;
        mpz_set_ui(product, 1);
        for (const std::int32_t p : primes) {
            const auto up = static_cast<unsigned long>(p);
            mpz_t inverse, modulo;
            mpz_init(inverse);
            mpz_init_set_ui(modulo, up);
            mpz_invert(inverse, product, modulo);
            number m = {}, mid = {}, factor = {};
            special_set(p, &m);
            special_set(p / 2, &mid);
            number_from_mpz(inverse, &factor);
            poly_operand x, image(by_gmp(f.p, 3, [&](mpz_t z) { mpz_fdiv_r_ui(z, z, up); }));
            Chinese(digits, &m, used, &x.p);
            best_poly_sub(image.p, x.p, &image.p);
            x.p = nullptr;
            mult_num(&image.p, &factor);
            poly_mod_and_div(&image.p, &m, &mid);
            poly_operand step(copy_poly(image.p));
            push_poly(image.p, &digits);
            image.p = nullptr;
            push_word(p, &used);
            special_free(&factor);
            number_from_mpz(product, &factor);
            mult_num(&step.p, &factor);
            better_poly_add(sum.p, step.p, &sum.p);
            mpz_mul_ui(product, product, up);
            for (number *n : {&m, &mid, &factor}) special_free(n);
            mpz_clears(inverse, modulo, nullptr);
        }
        number m = {}, mid = {};
        mpz_tdiv_q_ui(half, product, 2);
        number_from_mpz(product, &m);
        number_from_mpz(half, &mid);
        poly_mod_and_div(&sum.p, &m, &mid);
        expect_same(sum.p, f.p, r);
        special_free(&m);
        special_free(&mid);
        free_polys(&digits);
        free_words(&used);
    }
    mpz_clears(product, half, nullptr);
}

// Lifts over points ---------------------------------------------------------------------------------------

TEST(ModChinese, AgreesWithTheSumOfProducts)
{
    test_random r;
    make_small_field();
    for (const std::int32_t m : {101, 65537, 2147483629, 0}) {
        const in_view live(m ? view_modular : view_field, m);
        const auto residue = [&r] {
            return static_cast<std::int32_t>(r.below(static_cast<std::uint64_t>(modulus)));
        };
        for (int k = 0; k < rounds / 4; ++k) {
            const poly_audit audit;
            {
                const std::int32_t x = residue();
                poly_item *digits = nullptr;
                word_node *points = nullptr;
                poly_operand wanted;
                poly_set(0, &wanted.p);
                number factor = {};
                factor.word = 1;
                for (std::uint64_t count = r.below(7); count > 0; --count) {
                    polynode *digit = random_poly(&r, {2, 8, 5, 0, 1});
                    polynode *product = nullptr;
                    scalar_by_poly(&factor, digit, &product);
                    polynode *sum = reference_sum(wanted.p, product, 2);
                    free_poly(&product);
                    free_poly(&wanted.p);
                    wanted.p = sum;
                    const std::int32_t point = r.below(8) == 0 ? x : residue();
                    factor.word = modmult(factor.word, mod_sub(x, point, modulus));
                    push_poly(digit, &digits);
                    push_word(point, &points);
                }
                poly_operand found;
                mod_Chinese(digits, points, x, &found.p);
                expect_same(found.p, wanted.p, r);
                free_polys(&digits);
                free_words(&points);
            }
            audit.expect_unchanged("mod_Chinese");
        }
    }
}

}  // namespace
