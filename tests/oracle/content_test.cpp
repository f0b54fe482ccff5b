// Contents and square-free decompositions against FLINT.
#include "gcd/content.h"
#include <gtest/gtest.h>
#include <flint/fmpz_mpoly_factor.h>
#include "gcd/polygcd.h"
#include "gcd/square_free.h"
#include "poly/measure.h"
#include "tests/support/by_build.h"
#include "tests/support/flint_polys.h"
#include "tests/support/divisions.h"
#include "tests/support/fields.h"

using namespace kelmar;
using namespace kelmar_test;

namespace {

constexpr int rounds = by_build(8, 60);

// The gcd in FLINT of polynomials added one by one, made positive.
struct flint_gcd {
    fmpz_mpoly_ctx_t ctx;
    fmpz_mpoly_t g, next;
    explicit flint_gcd(std::int32_t vars)
    {
        fmpz_mpoly_ctx_init(ctx, vars, ORD_LEX);
        fmpz_mpoly_init(g, ctx);
        fmpz_mpoly_init(next, ctx);
    }
    flint_gcd(const flint_gcd &) = delete;
    flint_gcd &operator=(const flint_gcd &) = delete;
    ~flint_gcd()
    {
        fmpz_mpoly_clear(g, ctx);
        fmpz_mpoly_clear(next, ctx);
        fmpz_mpoly_ctx_clear(ctx);
    }
    void take(const polynode *p)
    {
        poly_to_flint(p, next, ctx);
        ASSERT_TRUE(fmpz_mpoly_gcd(g, g, next, ctx));
    }
    // All coefficients of p, one level down.
    void take_coefs(const polynode *p)
    {
        for (; p; p = p->next) take(p->isnum ? p : p->coef);
    }
    std::string text()
    {
        const poly_operand p(poly_from_flint(g, ctx));
        return poly_text(p.p);
    }
};

void clear_counts()
{
    c_cntcount = a_cntcount = d_cntcount = c_cntdepth = a_cntdepth = d_cntdepth = 0;
}

poly_shape shape_of(int i)
{
    poly_shape shape;
    shape.vars = 2 + i % 3;
    shape.terms = 6;
    shape.degree = 3;
    shape.digits = 1 + i % 2;
    return shape;
}

// c, a polynomial below the outer variable, times p.
polynode *with_content(test_random *r, const poly_shape &shape, polynode *c)
{
    poly_operand padded(copy_poly(c)), p(random_divisor(r, shape));
    add_pad(&padded.p, 1);
    return reference_product(padded.p, p.p, shape.vars);
}

TEST(ContentOracle, TheThreeContents)
{
    test_random r;
    six_in_force names;
    in_view live(view_digits);
    for (int i = 0; i < rounds; ++i) {
        const poly_shape shape = shape_of(i);
        poly_shape inner = shape;
        --inner.vars;
        const poly_operand c(random_divisor(&r, inner)), a(with_content(&r, shape, c.p)),
            b(with_content(&r, shape, c.p));
        const poly_operand factor(random_divisor(&r, inner)),
            other(reference_product(c.p, factor.p, inner.vars));
        flint_gcd one(inner.vars), aux(inner.vars), both(inner.vars);
        one.take_coefs(a.p);
        aux.take(other.p);
        aux.take_coefs(a.p);
        both.take_coefs(a.p);
        both.take_coefs(b.p);
        const std::string before = poly_text(a.p) + poly_text(b.p) + poly_text(other.p);
        poly_operand g;
        const poly_audit audit;
        clear_counts();
        content(a.p, &g.p, names.names(), 0, 1, 1);
        EXPECT_EQ(poly_text(g.p), one.text()) << poly_text(a.p);
        clear_counts();
        aux_content(other.p, a.p, &g.p, names.names(), 0, 1, 1, 1);
        EXPECT_EQ(poly_text(g.p), aux.text()) << poly_text(other.p) << " and " << poly_text(a.p);
        clear_counts();
        dual_content(a.p, b.p, &g.p, names.names(), 0, 1, 1, 1);
        EXPECT_EQ(poly_text(g.p), both.text()) << poly_text(a.p) << " and " << poly_text(b.p);
        content_2(a.p, b.p, &g.p, names.names());
        EXPECT_EQ(poly_text(g.p), both.text());
        free_poly(&g.p);
        audit.expect_unchanged("contents");
        EXPECT_EQ(poly_text(a.p) + poly_text(b.p) + poly_text(other.p), before) << "operands are restored";
    }
}

TEST(ContentOracle, OperandsMayBeEmptied)
{
    test_random r;
    six_in_force names;
    in_view live(view_digits);
    for (int i = 0; i < rounds; ++i) {
        const poly_shape shape = shape_of(i);
        poly_shape inner = shape;
        --inner.vars;
        const poly_audit audit;
        {
            poly_operand c(random_divisor(&r, inner)), a(with_content(&r, shape, c.p)),
                b(with_content(&r, shape, c.p)), g;
            poly_operand a_copy(copy_poly(a.p));
            flint_gcd one(inner.vars), both(inner.vars);
            one.take_coefs(a.p);
            both.take_coefs(a.p);
            both.take_coefs(b.p);
            clear_counts();
            content(a_copy.p, &g.p, names.names(), 0, 1, 0);
            EXPECT_EQ(poly_text(g.p), one.text());
            clear_counts();
            dual_content(a.p, b.p, &g.p, names.names(), 0, 1, 0, 0);
            EXPECT_EQ(poly_text(g.p), both.text());
        }
        audit.expect_unchanged("emptied operands");
    }
}

// The content in every inner variable: the gcd of the coefficients of the view.
TEST(ContentOracle, InnerVariables)
{
    test_random r;
    six_in_force names;
    in_view live(view_digits);
    for (int i = 0; i < rounds; ++i) {
        const poly_shape shape = shape_of(i);
        const poly_operand a(random_divisor(&r, shape)), b(random_divisor(&r, shape));
        poly_operand p(reference_product(a.p, b.p, shape.vars)), g, view, expected;
        if (p.p->exp == 0) continue;
        for (std::int32_t level = 1; level <= shape.vars; ++level) {
            std::int32_t found = 1;
            clear_counts();
            general_content(p.p, level, &g.p, names.names(), &found, 1);
            free_poly(&view.p);
            convert_poly(p.p, level, &view.p);
            flint_gcd inner(shape.vars - 1);
            inner.take_coefs(view.p);
            free_poly(&expected.p);
            expected.p = poly_from_flint(inner.g, inner.ctx);
            const bool absent = is_wrapper(view.p);
            if (!absent) pad_at_level(&expected.p, level);
            EXPECT_EQ(poly_text(g.p), poly_text(absent ? p.p : expected.p))
                << poly_text(p.p) << " in " << level;
            patch_up(&view.p, level);
            EXPECT_EQ(poly_text(view.p), poly_text(p.p));
        }
    }
}

void make_positive(fmpz_mpoly_t f, const fmpz_mpoly_ctx_t ctx)
{
    fmpz_t lead;
    fmpz_init(lead);
    fmpz_mpoly_get_term_coeff_fmpz(lead, f, 0, ctx);
    if (fmpz_sgn(lead) < 0) fmpz_mpoly_neg(f, f, ctx);
    fmpz_clear(lead);
}

// Multiply f by powers of random polynomials.
void multiply_by_powers(test_random *r, const poly_shape &shape, poly_operand *f)
{
    for (int k = 0; k < (shape.vars == 1 ? 3 : 1); ++k) {
        const poly_operand more(random_divisor(r, shape));
        for (std::uint64_t power = 1 + r->below(3); power > 0; --power) {
            polynode *next = reference_product(f->p, more.p, shape.vars);
            free_poly(&f->p);
            f->p = next;
        }
    }
}

// The product of all coefficients of the power m.
void product_at(const polynode *list, std::int32_t m, std::int32_t vars, fmpz_mpoly_t product,
                const fmpz_mpoly_ctx_t ctx)
{
    poly_operand at(nullptr);
    poly_set(1, &at.p);
    for (const polynode *t = list; t; t = t->next) {
        if (t->exp != m) continue;
        polynode *next = reference_product(at.p, t->coef, vars);
        free_poly(&at.p);
        at.p = next;
    }
    poly_to_flint(at.p, product, ctx);
    make_positive(product, ctx);
}

// The product of all factors of multiplicity m.
void flint_product_at(const fmpz_mpoly_factor_t factors, std::int32_t m, fmpz_mpoly_t product,
                      const fmpz_mpoly_ctx_t ctx)
{
    fmpz_mpoly_t base;
    fmpz_mpoly_init(base, ctx);
    fmpz_mpoly_one(product, ctx);
    for (slong k = 0; k < fmpz_mpoly_factor_length(factors, ctx); ++k) {
        if (fmpz_mpoly_factor_get_exp_si(const_cast<fmpz_mpoly_factor_struct *>(factors), k, ctx) != m)
            continue;
        fmpz_mpoly_factor_get_base(base, factors, k, ctx);
        fmpz_mpoly_mul(product, product, base, ctx);
    }
    make_positive(product, ctx);
    fmpz_mpoly_clear(base, ctx);
}

TEST(ContentOracle, SquareFreeOverTheIntegers)
{
    test_random r;
    six_in_force names;
    in_view live(view_digits);
    for (int i = 0; i < rounds; ++i) {
        poly_shape shape = shape_of(i);
        shape.vars = 1 + i % 3;
        shape.degree = shape.vars == 1 ? 3 : 1;
        shape.terms = 3;
        shape.digits = 1;
        poly_operand f(random_divisor(&r, shape));
        multiply_by_powers(&r, shape, &f);
        fmpz_mpoly_ctx_t ctx;
        fmpz_mpoly_ctx_init(ctx, shape.vars, ORD_LEX);
        fmpz_mpoly_t ours, theirs;
        fmpz_mpoly_init(ours, ctx);
        fmpz_mpoly_init(theirs, ctx);
        fmpz_mpoly_factor_t factors;
        fmpz_mpoly_factor_init(factors, ctx);
        poly_to_flint(f.p, theirs, ctx);
        ASSERT_TRUE(fmpz_mpoly_factor_squarefree(factors, theirs, ctx));
        poly_operand copy(copy_poly(f.p)), list;
        std::int32_t count = 0;
        clear_gcd_counters();
        total_sq_free(&copy.p, &list.p, &count, 1, names.names());
        EXPECT_EQ(copy.p, nullptr);
        EXPECT_EQ(count, list.p ? poly_length(list.p) : 0);
        for (std::int32_t m = 1; m < 40; ++m) {  // contents come apart in ours: products are compared
            product_at(list.p, m, shape.vars, ours, ctx);
            flint_product_at(factors, m, theirs, ctx);
            EXPECT_TRUE(fmpz_mpoly_equal(ours, theirs, ctx))
                << "multiplicity " << m << " of " << poly_text(f.p);
        }
        fmpz_mpoly_clear(ours, ctx);
        fmpz_mpoly_clear(theirs, ctx);
        fmpz_mpoly_factor_clear(factors, ctx);
        fmpz_mpoly_ctx_clear(ctx);
    }
}

TEST(ContentOracle, SquareFreeModuloPrimes)
{
    test_random r;
    six_in_force names;
    for (const std::int32_t p : {2, 3, 5, 7, 101, 65537}) {
        in_field live(p);
        for (int i = 0; i < 2 * rounds; ++i) {
            nmod_poly_t f, more;
            nmod_poly_init(f, static_cast<ulong>(p));
            nmod_poly_init(more, static_cast<ulong>(p));
            nmod_poly_set_coeff_ui(f, 0, 1);
            for (int k = 0; k < 4; ++k) {
                nmod_poly_zero(more);
                const slong degree = 1 + static_cast<slong>(r.below(2));
                for (slong e = 0; e < degree; ++e)
                    nmod_poly_set_coeff_ui(more, e, r.below(static_cast<std::uint64_t>(p)));
                nmod_poly_set_coeff_ui(more, degree, 1);
                for (std::uint64_t power = 1 + r.below(8); power > 0; --power) nmod_poly_mul(f, f, more);
            }
            nmod_poly_factor_t factors;
            nmod_poly_factor_init(factors);
            nmod_poly_factor_squarefree(factors, f);
            poly_operand g(poly_from_flint(f)), list;
            std::int32_t count = 0, last = INT32_MAX;
            total_sq_free(&g.p, &list.p, &count, 1, names.names());
            EXPECT_EQ(count, factors->num) << poly_text(list.p);
            for (const polynode *t = list.p; t; t = t->next) {
                EXPECT_LT(t->exp, last) << "highest multiplicity first";
                last = t->exp;
                poly_to_flint(t->coef, more);
                nmod_poly_make_monic(more, more);
                bool there = false;
                for (slong k = 0; k < factors->num; ++k) {
                    there |= factors->exp[k] == t->exp && nmod_poly_equal(factors->p + k, more);
                }
                EXPECT_TRUE(there) << poly_text(t->coef) << " to the " << t->exp << " modulo " << p;
            }
            nmod_poly_factor_clear(factors);
            nmod_poly_clear(f);
            nmod_poly_clear(more);
        }
    }
}

}  // namespace
