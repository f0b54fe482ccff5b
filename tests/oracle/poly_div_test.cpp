// Divisions of polynomials against FLINT: exact ones in several variables, those with remainder modulo
// primes.
#include <gtest/gtest.h>
#include "poly/div.h"
#include "poly/div_exact.h"
#include "poly/div_fast.h"
#include "poly/div_pseudo.h"
#include "tests/support/by_build.h"
#include "tests/support/divisions.h"
#include "tests/support/flint_polys.h"

using namespace kelmar;
using namespace kelmar_test;

namespace {

constexpr int rounds = by_build(20, 400);

// Whether b divides a by fmpz_mpoly; then *q is the quotient.
bool flint_divides(const polynode *a, const polynode *b, std::int32_t vars, poly_operand *q)
{
    fmpz_mpoly_ctx_t ctx;
    fmpz_mpoly_ctx_init(ctx, vars, ORD_LEX);
    fmpz_mpoly_t fa, fb, fq;
    fmpz_mpoly_init(fa, ctx);
    fmpz_mpoly_init(fb, ctx);
    fmpz_mpoly_init(fq, ctx);
    poly_to_flint(a, fa, ctx);
    poly_to_flint(b, fb, ctx);
    const bool divides = fmpz_mpoly_divides(fq, fa, fb, ctx);
    if (divides) q->p = poly_from_flint(fq, ctx);
    fmpz_mpoly_clear(fa, ctx);
    fmpz_mpoly_clear(fb, ctx);
    fmpz_mpoly_clear(fq, ctx);
    fmpz_mpoly_ctx_clear(ctx);
    return divides;
}

void expect_same_division(polynode *a, polynode *b, std::int32_t vars, const pt *names)
{
    poly_operand theirs, ours, trial;
    const bool divides = flint_divides(a, b, vars, &theirs);
    ours.p = exact_quotient(a, b, names);
    EXPECT_EQ(poly_text(ours.p), poly_text(theirs.p)) << poly_text(a) << " by " << poly_text(b);
    EXPECT_EQ(trial_poly_divide(a, b, &trial.p, names, 1, 0, 0), divides);
    EXPECT_EQ(poly_text(trial.p), poly_text(theirs.p));
}

TEST(PolyDivOracle, ExactDivisionOverTheIntegers)
{
    test_random r;
    six_variables names;
    in_view live(view_digits);
    for (int i = 0; i < rounds; ++i) {
        poly_shape shape;
        shape.vars = 1 + i % 6;
        shape.terms = 12;
        shape.degree = 6;
        shape.digits = 4;
        poly_operand a(random_poly(&r, shape)), b(random_divisor(&r, shape)), c(random_poly(&r, shape));
        poly_operand product(reference_product(a.p, b.p, shape.vars));
        poly_operand off(reference_sum(product.p, c.p, shape.vars));
        expect_same_division(product.p, b.p, shape.vars, names.first());
        expect_same_division(off.p, b.p, shape.vars, names.first());
        expect_same_division(a.p, b.p, shape.vars, names.first());
    }
}

void expect_same_remainder(polynode *a, polynode *b)
{
    nmod_poly_t fa, fb, fq, fr;
    const ulong p = static_cast<ulong>(modulus);
    nmod_poly_init(fa, p);
    nmod_poly_init(fb, p);
    nmod_poly_init(fq, p);
    nmod_poly_init(fr, p);
    poly_to_flint(a, fa);
    poly_to_flint(b, fb);
    nmod_poly_divrem(fq, fr, fa, fb);
    poly_operand theirs_q(poly_from_flint(fq)), theirs_r(poly_from_flint(fr));
    for (int fast : {0, 1}) {
        poly_operand q, r;
        basic_poly_divide(a, b, &q.p, &r.p, fast);
        EXPECT_TRUE(poly_equal(q.p, theirs_q.p)) << "degrees " << a->exp << " by " << b->exp;
        EXPECT_TRUE(poly_equal(r.p, theirs_r.p)) << "degrees " << a->exp << " by " << b->exp;
    }
    nmod_poly_clear(fa);
    nmod_poly_clear(fb);
    nmod_poly_clear(fq);
    nmod_poly_clear(fr);
}

TEST(PolyDivOracle, RemaindersModuloPrimes)
{
    test_random r;
    for (const ring &each : field_rings) {
        if (each.view != view_modular) continue;
        in_ring live(each);
        for (int i = 0; i < rounds; ++i) {
            poly_shape shape;
            shape.terms = i % 3 ? 200 : 8;
            shape.degree = 3 + i % 90;
            poly_operand a(random_poly(&r, shape));
            shape.degree = 3 + i % 31;
            poly_operand b(random_divisor(&r, shape));
            expect_same_remainder(a.p, b.p);
        }
    }
}

TEST(PolyDivOracle, HighDegreesModuloAPrime)
{
    test_random r;
    in_ring live(field_rings[6]);
    for (std::int32_t degree : {1000, 5000, 24000}) {
        poly_shape shape;
        shape.terms = 8 * degree;
        shape.degree = degree;
        poly_operand a(random_divisor(&r, shape));
        shape.degree = degree / 2;
        poly_operand b(random_divisor(&r, shape));
        expect_same_remainder(a.p, b.p);
    }
}

}  // namespace
