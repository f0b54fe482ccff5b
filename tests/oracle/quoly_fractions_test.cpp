// Quotients of polynomials against FLINT: every operation and flavour, in lowest terms, over the integers.
//
// The reference is a pair of FLINT polynomials, brought into lowest terms by one gcd of the whole result.
#include <gtest/gtest.h>
#include "poly/variables.h"
#include "quoly/add.h"
#include "quoly/divide.h"
#include "quoly/mul.h"
#include "tests/support/by_build.h"
#include "tests/support/flint_polys.h"
#include "tests/support/quolys.h"
#include "tests/support/variables.h"
#include "tests/support/views.h"

using namespace kelmar;
using namespace kelmar_test;

namespace {

constexpr int rounds = by_build(60, 600);

constexpr std::int32_t vars = 3;

class QuolyFractions : public ::testing::Test {
protected:
    const adjoined xyz{"x", "y", "z"};
    fmpz_mpoly_ctx_t ctx;
    void SetUp() override
    {
        fmpz_mpoly_ctx_init(ctx, vars, ORD_LEX);
    }
    void TearDown() override
    {
        fmpz_mpoly_ctx_clear(ctx);
    }
};

// A quotient of FLINT polynomials.
struct flint_fraction {
    const fmpz_mpoly_ctx_struct *ctx;
    fmpz_mpoly_t top, den;
    explicit flint_fraction(const fmpz_mpoly_ctx_t c) : ctx(c)
    {
        fmpz_mpoly_init(top, ctx);
        fmpz_mpoly_init(den, ctx);
        fmpz_mpoly_one(den, ctx);
    }
    flint_fraction(const flint_fraction &) = delete;
    flint_fraction &operator=(const flint_fraction &) = delete;
    ~flint_fraction()
    {
        fmpz_mpoly_clear(top, ctx);
        fmpz_mpoly_clear(den, ctx);
    }
    // Lowest terms, the leading coefficient of den above zero.
    void canonicalise()
    {
        fmpz_mpoly_t g;
        fmpz_mpoly_init(g, ctx);
        ASSERT_TRUE(fmpz_mpoly_gcd(g, top, den, ctx));
        fmpz_mpoly_divides(top, top, g, ctx);
        fmpz_mpoly_divides(den, den, g, ctx);
        fmpz_t lead;
        fmpz_init(lead);
        fmpz_mpoly_get_term_coeff_fmpz(lead, den, 0, ctx);
        if (fmpz_sgn(lead) < 0) {
            fmpz_mpoly_neg(top, top, ctx);
            fmpz_mpoly_neg(den, den, ctx);
        }
        fmpz_clear(lead);
        fmpz_mpoly_clear(g, ctx);
    }
    void read(const quolynode *q)
    {
        poly_room room;
        poly_to_flint(as_poly(q, &room), top, ctx);
        if (!q->is_num && q->den) {
            poly_to_flint(q->den, den, ctx);
        } else {
            fmpz_mpoly_one(den, ctx);
        }
    }
    bool is(const quolynode *q) const
    {
        flint_fraction other(ctx);
        other.read(q);
        return fmpz_mpoly_equal(top, other.top, ctx) && fmpz_mpoly_equal(den, other.den, ctx);
    }
};

void reference_add(flint_fraction *c, const flint_fraction &a, const flint_fraction &b, bool minus)
{
    fmpz_mpoly_t s;
    fmpz_mpoly_init(s, c->ctx);
    fmpz_mpoly_mul(c->top, a.top, b.den, c->ctx);
    fmpz_mpoly_mul(s, b.top, a.den, c->ctx);
    if (minus) {
        fmpz_mpoly_sub(c->top, c->top, s, c->ctx);
    } else {
        fmpz_mpoly_add(c->top, c->top, s, c->ctx);
    }
    fmpz_mpoly_mul(c->den, a.den, b.den, c->ctx);
    c->canonicalise();
    fmpz_mpoly_clear(s, c->ctx);
}

void reference_multiply(flint_fraction *c, const flint_fraction &a, const fmpz_mpoly_t top,
                        const fmpz_mpoly_t den)
{
    fmpz_mpoly_mul(c->top, a.top, top, c->ctx);
    fmpz_mpoly_mul(c->den, a.den, den, c->ctx);
    c->canonicalise();
}

polynode *drawn(test_random *r, std::int32_t variables)
{
    poly_shape shape;
    shape.vars = variables;
    shape.degree = variables < 3 ? 2 : 1;
    shape.terms = 3;
    return random_poly(r, shape);
}

constexpr std::size_t pool_size = 4;

// A random quotient over up to two factors of a small pool, or one in three variables, so that they are
// shared.
void draw_value(test_random *r, polynode *const pool[], std::int32_t variables, quolynode **q)
{
    polynode *top = drawn(r, variables);
    poly_to_quoly(&top, q);
    for (std::uint64_t k = r->below(variables < 3 ? 3 : 2); k > 0; --k) {
        quolynode *factor = nullptr;
        polynode *copy = copy_poly(pool[r->below(pool_size)]);
        poly_to_quoly(&copy, &factor);
        if (r->below(5) == 0) {
            fast_quoly_mult(q, factor);
        } else if (!quoly_iszero(factor)) {
            fast_quoly_quot(q, factor, 0);
        }
        free_quoly(&factor);
    }
}

using spared_operation = void (*)(const quolynode *, const quolynode *, quolynode **);
using in_place_operation = void (*)(quolynode **, const quolynode *);

struct operation {
    const char *name;
    spared_operation spared;
    in_place_operation in_place;
};

const operation operations[] = {
    {"sum", quoly_add, better_quoly_add},
    {"difference", quoly_sub, better_quoly_sub},
    {"product", quoly_mult, fast_quoly_mult},
    {"quotient", [](const quolynode *a, const quolynode *b, quolynode **c) { quoly_quot(a, b, 0, c); },
     [](quolynode **a, const quolynode *b) { fast_quoly_quot(a, b, 0); }},
};

void check_operations(const quolynode *p, const quolynode *q, const fmpz_mpoly_ctx_t ctx)
{
    flint_fraction a(ctx), b(ctx);
    a.read(p);
    b.read(q);
    for (const operation &op : operations) {
        flint_fraction wanted(ctx);
        switch (op.name[0]) {
        case 's': reference_add(&wanted, a, b, false); break;
        case 'd': reference_add(&wanted, a, b, true); break;
        case 'p': reference_multiply(&wanted, a, b.top, b.den); break;
        default:
            if (quoly_iszero(q)) continue;
            reference_multiply(&wanted, a, b.den, b.top);
        }
        value_operand c, d;
        op.spared(p, q, &c.q);
        EXPECT_TRUE(wanted.is(c.q)) << op.name << " of " << value_text(p) << " and " << value_text(q)
                                    << " is " << value_text(c.q);
        EXPECT_TRUE(quoly_is_normal(c.q, vars)) << op.name << " " << value_text(c.q);
        EXPECT_TRUE(a.is(p) && b.is(q)) << op.name << " alters an operand";
        quoly_assign(p, &d.q);
        op.in_place(&d.q, q);
        EXPECT_EQ(value_text(d.q), value_text(c.q)) << op.name << " in place";
        quoly_assign(q, &d.q);
        op.spared(p, d.q, &d.q);
        EXPECT_EQ(value_text(d.q), value_text(c.q)) << op.name << " on the second";
    }
}

TEST_F(QuolyFractions, OperationsAgreeWithFlint)
{
    test_random r;
    const in_view live(view_digits);
    for (int round = 0; round < rounds; ++round) {
        const poly_audit audit;
        {
            const std::int32_t variables = 1 + round % vars;
            polynode *pool[pool_size];
            for (polynode *&p : pool) p = drawn(&r, variables);
            value_operand a, b;
            draw_value(&r, pool, variables, &a.q);
            draw_value(&r, pool, variables, &b.q);
            check_operations(a.q, b.q, ctx);
            for (polynode *&p : pool) free_poly(&p);
        }
        audit.expect_unchanged("fractions");
        if (HasFailure()) FAIL() << "seed " << r.seed << " round " << round;
    }
}

}  // namespace
