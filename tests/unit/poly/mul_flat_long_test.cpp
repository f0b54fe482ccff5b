// Flat products of long integers: every length of coefficients, by stretches and by transforms, against the
// flat reference; and integers from their residues.
#include <gtest/gtest.h>
#include <vector>
#include "numbers/dispatch.h"
#include "poly/mul.h"
#include "poly/mul_flat.h"
#include "poly/residues.h"
#include "poly/transform.h"
#include "tests/support/divisions.h"

using namespace kelmar;
using namespace kelmar_test;

namespace {

struct with_size {
    std::int64_t *word;
    std::int64_t saved;
    with_size(std::int64_t *w, std::int64_t v) : word(w), saved(*w)
    {
        *w = v;
    }
    with_size(const with_size &) = delete;
    ~with_size()
    {
        *word = saved;
    }
};

// The coefficients of a polynomial, made as long as can be: all digits are the greatest ones.
void fill_digits(polynode *p)
{
    for (; p; p = p->next) {
        if (!p->isnum) {
            fill_digits(p->coef);
            continue;
        }
        const bool minus = p->num->head->digit < 0;
        for (numnode *d = p->num->head; d; d = d->next) d->digit = minus ? -digit_mask : digit_mask;
    }
}

void expect_product(polynode *a, polynode *b, std::int32_t vars)
{
    flat_shape sa, sb;
    flat_packing packing;
    measure_flat(a, &sa);
    measure_flat(b, &sb);
    ASSERT_TRUE(pack_pair(&sa, &sb, &packing));
    poly_operand product, expected(reference_product(a, b, vars));
    ASSERT_TRUE(flat_long_product(a, b, &sa, &sb, &packing, &product.p));
    EXPECT_EQ(poly_text(product.p), poly_text(expected.p)) << poly_text(a) << " by " << poly_text(b);
    expect_normal(product.p, vars, "product");
}

constexpr std::int32_t sizes[] = {1, 2, 3, 4, 5, 6, 9, 10, 11, 12, 22, 23, 44, 45};

TEST(FlatLongProduct, OfEveryLengthIsTheReference)
{
    in_view live(view_digits);
    test_random r;
    poly_audit audit;
    for (const std::int32_t digits : sizes) {
        for (int i = 0; i < 40; ++i) {
            const poly_shape shape = {1 + i % 4, 12, 5, 0, digits};
            poly_operand a(random_divisor(&r, shape)), b(random_divisor(&r, shape));
            if (i % 3 == 0) fill_digits(a.p);
            if (i % 6 == 0) fill_digits(b.p);
            expect_product(a.p, b.p, shape.vars);
            expect_product(a.p, a.p, shape.vars);
        }
    }
    audit.expect_unchanged("long flat products");
}

TEST(FlatLongProduct, SmallStretchesAndSortedOnes)
{
    in_view live(view_digits);
    test_random r;
    const with_size least(&flat_table_least, 2), most(&flat_table_most, 16), batch(&flat_batch, 8);
    for (const std::int32_t digits : {3, 5, 10, 45}) {
        for (int i = 0; i < 40; ++i) {
            const poly_shape shape = {1 + i % 3, 20, i % 2 ? 6 : 5000, 0, digits};
            poly_operand a(random_divisor(&r, shape)), b(random_divisor(&r, shape));
            expect_product(a.p, b.p, shape.vars);
        }
    }
}

// Dense enough for transforms, up to the number of primes.
TEST(FlatLongProduct, TransformsOnBothSidesOfTheirLimits)
{
    in_view live(view_digits);
    test_random r;
    poly_audit audit;
    for (const std::int32_t digits : {2, 3, 5, 8, 10, 12, 13, 14}) {
        for (const std::int32_t degree : {60, 130}) {
            poly_shape shape = {1, 4 * degree, degree, 0, digits};
            poly_operand a(random_divisor(&r, shape)), b(random_divisor(&r, shape));
            fill_digits(a.p);
            if (digits % 2) fill_digits(b.p);
            expect_product(a.p, b.p, 1);
            const with_size never(&transform_cut, std::int64_t{1} << 40);
            expect_product(a.p, b.p, 1);
        }
    }
    audit.expect_unchanged("transforms of long integers");
}

TEST(FlatLongProduct, DeclinesLongerCoefficients)
{
    in_view live(view_digits);
    test_random r;
    const poly_shape shape = {1, 6, 6, 0, 1};
    poly_operand a(random_divisor(&r, shape));
    number *const n = leading_coef(a.p);
    for (const std::int32_t size : {long_coef_limit, long_coef_limit + 1}) {
        while (n->size < size) {
            numnode *const tail = new_digit(n->head->digit < 0 ? -7 : 7, nullptr);
            n->tail->next = tail;
            n->tail = tail;
            ++n->size;
        }
        flat_shape s;
        flat_packing packing;
        poly_operand product, expected(reference_product(a.p, a.p, 1)), general;
        measure_flat(a.p, &s);
        ASSERT_TRUE(pack_pair(&s, &s, &packing));
        EXPECT_EQ(flat_long_product(a.p, a.p, &s, &s, &packing, &product.p), size <= long_coef_limit);
        poly_mult(a.p, a.p, &general.p, nilpol);
        EXPECT_EQ(poly_text(general.p), poly_text(expected.p));
    }
}

// Residues -----------------------------------------------------------------------------------------------

TEST(IntegerOfResidues, GivesBackIntegersOfBothSignsUpToHalfTheProduct)
{
    test_random r;
    for (int primes = 1; primes <= transform_primes; ++primes) {
        residue_basis basis;
        set_basis(primes, &basis);
        for (int i = 0; i < 200; ++i) {
            std::uint64_t w[transform_primes] = {}, residue[transform_primes], to[transform_primes + 1];
            for (int k = 0; k < primes; ++k) w[k] = r.below(4) == 0 ? ~std::uint64_t{0} : r.engine();
            if (i < 2) {
                for (int k = 0; k < primes; ++k) w[k] = basis.half[k];
            } else {
                w[primes - 1] &= (std::uint64_t{1} << (62 - 2 * primes % 60)) - 1;  // below half of all
            }
            while (primes > 1 && i >= 2 && w[primes - 1] >= basis.half[primes - 1]) w[primes - 1] >>= 1;
            if (primes == 1 && i >= 2) w[0] %= basis.half[0];
            const bool minus = i % 2;
            for (int k = 0; k < primes; ++k) {
                residue[k] = residue_of_words(k, w, primes);
                if (minus && residue[k]) residue[k] = transform_prime[k] - residue[k];
            }
            integer_of_residues(&basis, residue, to, primes + 1);
            std::uint64_t carry = minus;
            for (int k = 0; k <= primes; ++k) {
                const std::uint64_t word = k < primes ? w[k] : 0, v = (minus ? ~word : word) + carry;
                carry = carry && v == 0;
                EXPECT_EQ(to[k], v) << primes << " primes, word " << k << ", round " << i;
            }
        }
    }
}

}  // namespace
