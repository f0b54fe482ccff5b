// Gcds of polynomials against FLINT: over the integers and modulo primes, with common factors, contents,
// powers and strides.
#include <gtest/gtest.h>
#include <flint/nmod_mpoly.h>
#include "gcd/polygcd.h"
#include "tests/support/by_build.h"
#include "tests/support/divisions.h"
#include "tests/support/flint_polys.h"
#include "tests/support/gcds.h"

using namespace kelmar;
using namespace kelmar_test;

namespace {

constexpr int rounds = by_build(60, 800);

// FLINT's gcd over the integers: positive lead, with the number content.
polynode *flint_gcd(const polynode *a, const polynode *b, std::int32_t vars)
{
    fmpz_mpoly_ctx_t ctx;
    fmpz_mpoly_ctx_init(ctx, vars, ORD_LEX);
    fmpz_mpoly_t fa, fb, fg;
    fmpz_mpoly_init(fa, ctx);
    fmpz_mpoly_init(fb, ctx);
    fmpz_mpoly_init(fg, ctx);
    poly_to_flint(a, fa, ctx);
    poly_to_flint(b, fb, ctx);
    EXPECT_TRUE(fmpz_mpoly_gcd(fg, fa, fb, ctx));
    polynode *g = poly_from_flint(fg, ctx);
    fmpz_mpoly_clear(fa, ctx);
    fmpz_mpoly_clear(fb, ctx);
    fmpz_mpoly_clear(fg, ctx);
    fmpz_mpoly_ctx_clear(ctx);
    return g;
}

void poly_to_flint(const polynode *p, nmod_mpoly_t f, const nmod_mpoly_ctx_t ctx)
{
    const std::int32_t vars = static_cast<std::int32_t>(nmod_mpoly_ctx_nvars(ctx));
    flat_poly terms = flatten(p, vars);
    nmod_mpoly_zero(f, ctx);
    std::vector<ulong> exps(static_cast<std::size_t>(vars));
    for (auto &term : terms) {
        for (std::size_t k = 0; k < exps.size(); ++k) exps[k] = static_cast<ulong>(term.first[k]);
        if (term.second->word)
            nmod_mpoly_push_term_ui_ui(f, static_cast<ulong>(term.second->word), exps.data(), ctx);
    }
    nmod_mpoly_sort_terms(f, ctx);
    free_flat(&terms);
}

polynode *poly_from_flint(const nmod_mpoly_t f, const nmod_mpoly_ctx_t ctx)
{
    flat_poly terms;
    std::vector<ulong> exps(static_cast<std::size_t>(nmod_mpoly_ctx_nvars(ctx)));
    for (slong i = 0; i < nmod_mpoly_length(f, ctx); ++i) {
        nmod_mpoly_get_term_exp_ui(exps.data(), f, i, ctx);
        number *n = nullptr;
        newimag(&n);
        n->size = 0;
        n->real = 0;
        n->word = static_cast<std::int32_t>(nmod_mpoly_get_term_coeff_ui(f, i, ctx));
        terms.emplace(exponents(exps.begin(), exps.end()), n);
    }
    return nest(&terms);
}

// FLINT's gcd modulo the modulus in force: monic.
polynode *flint_mod_gcd(const polynode *a, const polynode *b, std::int32_t vars)
{
    nmod_mpoly_ctx_t ctx;
    nmod_mpoly_ctx_init(ctx, vars, ORD_LEX, static_cast<ulong>(modulus));
    nmod_mpoly_t fa, fb, fg;
    nmod_mpoly_init(fa, ctx);
    nmod_mpoly_init(fb, ctx);
    nmod_mpoly_init(fg, ctx);
    poly_to_flint(a, fa, ctx);
    poly_to_flint(b, fb, ctx);
    EXPECT_TRUE(nmod_mpoly_gcd(fg, fa, fb, ctx));
    polynode *g = poly_from_flint(fg, ctx);
    nmod_mpoly_clear(fa, ctx);
    nmod_mpoly_clear(fb, ctx);
    nmod_mpoly_clear(fg, ctx);
    nmod_mpoly_ctx_clear(ctx);
    return g;
}

// polygcd restores its operands, and gives what FLINT gives.
void expect_gcd(polynode *a, polynode *b, std::int32_t vars, six_variables *names)
{
    poly_operand theirs(modularmode ? flint_mod_gcd(a, b, vars) : flint_gcd(a, b, vars));
    const std::string before_a = poly_text(a), before_b = poly_text(b);
    const poly_audit audit;
    const exits_since exits;
    poly_operand ours;
    polygcd(a, b, &ours.p, 0, 1, 1, names->record, 1, 1, 1);
    EXPECT_EQ(poly_text(ours.p), poly_text(theirs.p))
        << "gcd of " << before_a << " and " << before_b << " " << exits.text();
    EXPECT_EQ(poly_text(a), before_a);
    EXPECT_EQ(poly_text(b), before_b);
    expect_normal(ours.p, vars, "gcd");
    poly_operand copy_a(copy_poly(a)), copy_b(copy_poly(b));
    polygcd(copy_a.p, copy_b.p, &ours.p, 0, 1, 0, names->record, 0, 0, 1);
    EXPECT_EQ(poly_text(ours.p), poly_text(theirs.p)) << "consumed " << before_a << " and " << before_b;
    free_poly(&ours.p);
    free_poly(&copy_a.p);
    free_poly(&copy_b.p);
    audit.expect_unchanged("polygcd");
}

// x_k^e times stretched p.
polynode *stretched(const polynode *p, std::int32_t vars, std::int32_t k, std::int32_t stride,
                    std::int32_t power)
{
    flat_poly terms = flatten(p, vars), result;
    for (auto &term : terms) {
        exponents e = term.first;
        e[static_cast<std::size_t>(k)] = e[static_cast<std::size_t>(k)] * stride + power;
        result.emplace(e, term.second);
    }
    return nest(&result);
}

struct gcd_shape {
    std::int32_t vars, terms, degree, digits;
};

// gcd(g a, g b) for random g, a, b; with powers and strides now and then.
void run_products(test_random *r, int count, const gcd_shape &s, six_variables *names)
{
    poly_shape shape;
    shape.vars = s.vars;
    shape.terms = s.terms;
    shape.degree = s.degree;
    shape.digits = s.digits;
    for (int i = 0; i < count; ++i) {
        poly_operand g(random_poly(r, shape)), a(random_poly(r, shape)), b(random_poly(r, shape));
        poly_operand ga(reference_product(g.p, a.p, s.vars)), gb(reference_product(g.p, b.p, s.vars));
        if (i % 5 == 1 && (s.vars == 1 || s.degree <= 2)) {
            poly_operand x(stretched(ga.p, s.vars, i % s.vars, 1 + i % 3, i % 4));
            poly_operand y(stretched(gb.p, s.vars, i % s.vars, 1 + i % 3, i % 7));
            expect_gcd(x.p, y.p, s.vars, names);
        } else {
            expect_gcd(ga.p, gb.p, s.vars, names);
        }
        if (i % 8 == 0) expect_gcd(ga.p, b.p, s.vars, names);
        if (i % 8 == 1) expect_gcd(g.p, gb.p, s.vars, names);
        if (i % 8 == 2) expect_gcd(a.p, b.p, s.vars, names);
        if (testing::Test::HasFailure()) return;
    }
}

// Strides make degrees high, and Algorithm C slow: only low degrees are stretched.
const gcd_shape shapes[] = {{1, 6, 8, 3}, {2, 5, 4, 2}, {2, 9, 3, 1}, {3, 4, 2, 2},
                            {3, 6, 2, 1}, {4, 3, 2, 1}, {5, 3, 1, 1}, {6, 3, 1, 1}};

TEST(PolygcdOracle, OverTheIntegers)
{
    load_primes();
    test_random r;
    six_variables names;
    in_view live(view_digits);
    for (const gcd_shape &s : shapes) {
        kept_word variables(&number_polys, s.vars);
        run_products(&r, rounds / 8, s, &names);
    }
}

// Zero, equal and coprime operands, and multiples of one another.
TEST(PolygcdOracle, SpecialPairs)
{
    load_primes();
    test_random r;
    six_variables names;
    for (const std::int32_t p : {0, 2, 101, 65537}) {
        in_view live(p ? view_modular : view_digits, p ? p : 101);
        mod_is_prime = p > 0;
        kept_word variables(&number_polys, 3);
        poly_shape shape;
        shape.vars = 3;
        shape.degree = 2;
        shape.terms = 3;
        for (int i = 0; i < rounds / 16; ++i) {
            poly_operand a(random_poly(&r, shape)), b(copy_poly(a.p)), c(random_poly(&r, shape)),
                zero(poly_of_text("{#0}"));
            expect_gcd(a.p, b.p, 3, &names);
            expect_gcd(a.p, zero.p, 3, &names);
            expect_gcd(zero.p, a.p, 3, &names);
            poly_operand multiple(reference_product(a.p, c.p, 3)), square(reference_product(a.p, a.p, 3));
            expect_gcd(a.p, multiple.p, 3, &names);
            expect_gcd(multiple.p, square.p, 3, &names);
        }
        poly_operand zero(poly_of_text("{#0}")), other(poly_of_text("{#0}"));
        expect_gcd(zero.p, other.p, 3, &names);
    }
}

// The degree alone is an upper bound, and 0 only when the gcd is free of the variable.
void expect_degree(polynode *a, polynode *b, std::int32_t vars, six_variables *names)
{
    poly_operand theirs(modularmode ? flint_mod_gcd(a, b, vars) : flint_gcd(a, b, vars)), ours;
    const exits_since exits;
    polygcd(a, b, &ours.p, 1, 1, 1, names->record, 1, 1, 1);
    if (ours.p->exp == 0) {
        EXPECT_EQ(theirs.p->exp, 0) << poly_text(a) << " and " << poly_text(b);
        EXPECT_EQ(is_constant(ours.p), is_constant(theirs.p))
            << poly_text(a) << " and " << poly_text(b) << " " << exits.text();
    } else if (theirs.p->exp > 0) {
        EXPECT_EQ(ours.p->next, nullptr) << poly_text(ours.p);
    }
}

TEST(PolygcdOracle, DegreeAlone)
{
    load_primes();
    test_random r;
    six_variables names;
    for (const std::int32_t p : {0, 101, 65521}) {
        in_view live(p ? view_modular : view_digits, p ? p : 101);
        mod_is_prime = p > 0;
        for (std::int32_t vars = 1; vars <= 4; ++vars) {
            kept_word variables(&number_polys, vars);
            poly_shape shape;
            shape.vars = vars;
            shape.degree = 2;
            shape.terms = 4;
            for (int i = 0; i < rounds / 16; ++i) {
                poly_operand g(random_poly(&r, shape)), a(random_poly(&r, shape)), b(random_poly(&r, shape));
                poly_operand ga(reference_product(g.p, a.p, vars)), gb(reference_product(g.p, b.p, vars));
                expect_degree(ga.p, gb.p, vars, &names);
                expect_degree(a.p, b.p, vars, &names);
            }
        }
    }
}

TEST(PolygcdOracle, ModuloPrimes)
{
    load_primes();
    test_random r;
    six_variables names;
    for (const std::int32_t p : {2, 3, 5, 101, 65521, 65537, 2147483629}) {
        in_view live(view_modular, p);
        mod_is_prime = 1;
        for (const gcd_shape &s : shapes) {
            kept_word variables(&number_polys, s.vars);
            run_products(&r, rounds / 40, s, &names);
        }
    }
}

}  // namespace
