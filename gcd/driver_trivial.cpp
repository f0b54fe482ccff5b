// gcd/driver_trivial.cpp -- gcds that need no decision: numbers, what is alike, single terms, one variable,
// and the way down to the first variable that both have.
//
// Nothing is held here: a result is made in one go, or by one call further down.
#include "gcd/content.h"
#include "gcd/driver.h"
#include "gcd/float_gcd.h"
#include "gcd/onevar_gcd.h"
#include "numbers/dispatch.h"
#include "numbers/long_gcd.h"
#include "poly/div_steps.h"
#include "poly/measure.h"
#include "poly/monic.h"
#include "poly/scale.h"
#include "session/report.h"

namespace kelmar {

// Results ------------------------------------------------------------------------------------------------

void put_result(polynode **result, polynode **fresh)
{
    polynode *old = *result;
    *result = *fresh;
    *fresh = nullptr;
    free_poly(&old);
}

static void put_number(polynode **result, std::int32_t v)
{
    polynode *fresh = nullptr;
    poly_set(v, &fresh);
    put_result(result, &fresh);
}

// x^e, for a caller who asks for the degree.
static void put_degree(polynode **result, std::int32_t e)
{
    polynode *fresh = nullptr;
    poly_set(1, &fresh);
    if (e > 0) make_monomial(&fresh, e, fresh);
    put_result(result, &fresh);
}

void normalise_gcd(polynode **p)
{
    if (poly_iszero(*p)) return;
    if (!lintmode) {
        if (neg_leading_term(*p)) poly_inplace(*p);
    } else if (is_constant(*p)) {
        setvalue(1, (*p)->num);
    } else if (flotemode || modularmode) {
        number lead;
        lead.size = 0;
        monic_poly(p, &lead);
    }
}

// Zero and numbers ---------------------------------------------------------------------------------------

// gcd(0, p) = p.
static int answer_zero(const gcd_call *c)
{
    const bool a_zero = poly_iszero(c->a);
    if (!a_zero && !poly_iszero(c->b)) return 0;
    const polynode *p = a_zero ? c->b : c->a;
    polynode *fresh = copy_poly(p);
    normalise_gcd(&fresh);
    put_result(c->result, &fresh);
    return 1;
}

static int answer_numbers(const gcd_call *c)
{
    if (!is_constant(c->a) || !is_constant(c->b)) return 0;
    if (!*c->result || !is_constant(*c->result)) put_number(c->result, 1);
    number *n = (*c->result)->num;
    if (exact_integers()) {
        binary_gcd(c->a->num, c->b->num, n);
    } else {
        setvalue(1, n);
    }
    return 1;
}

// g = gcd(g, the numbers of p), digits; ends at 1.
static void take_numbers_in(const polynode *p, number *g)
{
    for (; p && !is_longint(g, 1); p = p->next) {
        if (p->isnum) {
            binary_gcd(g, p->num, g);
        } else {
            take_numbers_in(p->coef, g);
        }
    }
}

// The gcd of a number and the numbers of p.
static int answer_number(const gcd_call *c)
{
    if (!is_constant(c->a) && !is_constant(c->b)) return 0;
    const polynode *n = is_constant(c->a) ? c->a : c->b;
    const polynode *p = n == c->a ? c->b : c->a;
    polynode *fresh = nullptr;
    poly_set(1, &fresh);
    if (exact_integers()) {
        abs_val_num(n->num, fresh->num);
        take_numbers_in(p, fresh->num);
    }
    put_result(c->result, &fresh);
    return 1;
}

static int answer_no_variable(const gcd_call *c)
{
    if (c->names) return 0;
    kelmar_error("pt nil in polygcd.", 1);
    put_number(c->result, 1);
    return 1;
}

// The ground field ---------------------------------------------------------------------------------------

bool reaches_field(const polynode *p, std::int32_t level)
{
    return field_depth > 0 && !is_constant(p) && poly_depth(p) + level > field_depth;
}

// What lies in the field is a unit, but for its whole numbers.
static int answer_in_field(const gcd_call *c)
{
    if (!reaches_field(c->a, c->names->level) && !reaches_field(c->b, c->names->level)) return 0;
    polynode *fresh = nullptr;
    poly_set(exact_integers() ? 0 : 1, &fresh);
    if (exact_integers()) {
        take_numbers_in(c->a, fresh->num);
        take_numbers_in(c->b, fresh->num);
    }
    put_result(c->result, &fresh);
    return 1;
}

// What is alike ------------------------------------------------------------------------------------------

static int answer_same(const gcd_call *c)
{
    if (c->a != c->b) return 0;
    polynode *fresh = copy_poly(c->a);
    normalise_gcd(&fresh);
    put_result(c->result, &fresh);
    return 1;
}

static bool all_finite(const polynode *p)
{
    for (; p; p = p->next) {
        if (p->isnum ? !__builtin_isfinite(p->num->real) : !all_finite(p->coef)) return false;
    }
    return true;
}

static int answer_not_finite(const gcd_call *c)
{
    if (!flotemode || (all_finite(c->a) && all_finite(c->b))) return 0;
    put_number(c->result, 1);
    return 1;
}

// One variable -------------------------------------------------------------------------------------------

// There is one variable at all, or the operands have no other.
static bool one_variable(const gcd_call *c)
{
    if (number_polys == 1) return true;
    return field_depth == 0 && height_is_1(c->a) && height_is_1(c->b);
}

static int answer_one_variable(const gcd_call *c)
{
    if (!one_variable(c)) return 0;
    if (flotemode) {
        fl_basic_poly_gcd(c->a, c->b, c->result, 1, c->names);
        return 1;
    }
    if (!modularmode || !mod_is_prime) return 0;
    basic_poly_gcd(c->a, c->b, c->result, 1, c->names);
    return 1;
}

// Down to a variable that both have ----------------------------------------------------------------------

// Where the problem began, counting begins anew.
static void count_anew(std::int32_t level, const gcd_call *c)
{
    if (level != original_depth) return;
    c_cntcount = c_cntdepth = a_cntcount = d_cntcount = 0;
    if (!c->top || !c->deep) return;
    g_cntcount = 0;
    g_cutoff = first_g_cutoff;
    ++original_depth;
}

static int answer_descent(const gcd_call *c)
{
    if (!is_wrapper(c->a) || !is_wrapper(c->b)) return 0;
    gcd_call below = *c;
    below.top = 1;
    std::int32_t levels = 0;
    for (; is_wrapper(below.a) && is_wrapper(below.b) && below.names; ++levels) {
        count_anew(below.names->level, c);
        below.a = below.a->coef;
        below.b = below.b->coef;
        below.names = below.names->next;
    }
    polygcd(below.a, below.b, c->result, c->exponent_only, c->test, c->deep, below.names, c->a_is_ours,
            c->b_is_ours, 1);
    add_pad(c->result, levels);
    return 1;
}

static int answer_coefficients(const gcd_call *c)
{
    if (is_wrapper(c->a)) {
        aux_content(c->a->coef, c->b, c->result, c->names, 1, c->deep, c->a_is_ours, c->b_is_ours);
    } else if (is_wrapper(c->b)) {
        aux_content(c->b->coef, c->a, c->result, c->names, 1, c->deep, c->b_is_ours, c->a_is_ours);
    } else {
        return 0;
    }
    add_pad(c->result, 1);
    return 1;
}

// Single terms -------------------------------------------------------------------------------------------

struct term_shape {
    std::int32_t levels;
    std::int32_t exp[variable_limit + 1];  // by list, the outer one 0
};

// Lower the exponents of *s to those that all terms of p have. level: of the list p.
static void lower_exponents(const polynode *p, std::int32_t level, term_shape *s)
{
    for (; p && s->levels > level; p = p->next) {
        if (p->exp < s->exp[level]) s->exp[level] = p->exp;
        if (p->isnum) {
            s->levels = level + 1;
        } else {
            lower_exponents(p->coef, level + 1, s);
        }
    }
    while (s->levels > 0 && s->exp[s->levels - 1] == 0) --s->levels;
}

void monomial_1(const polynode *a, const polynode *b, polynode **result)
{
    const polynode *term = monomial(a) ? a : b, *other = term == a ? b : a;
    term_shape s;
    s.levels = 0;
    const polynode *p = term;
    for (; !is_constant(p); p = p->coef) s.exp[s.levels++] = p->exp;
    const number *n = p->num;
    lower_exponents(other, 0, &s);
    *result = nullptr;
    poly_set(1, result);
    if (exact_integers()) {
        abs_val_num(n, (*result)->num);
        take_numbers_in(other, (*result)->num);
    }
    while (s.levels > 0) make_monomial(result, s.exp[--s.levels], *result);
}

static int answer_monomial(const gcd_call *c)
{
    if (!monomial(c->a) && !monomial(c->b)) return 0;
    polynode *fresh = nullptr;
    monomial_1(c->a, c->b, &fresh);
    put_result(c->result, &fresh);
    return 1;
}

// The order of the answers -------------------------------------------------------------------------------

static const struct {
    int (*answer)(const gcd_call *);
    gcd_exit end;
} simple_answers[] = {
    {answer_zero, exit_zero},
    {answer_numbers, exit_numbers},
    {answer_number, exit_number},
    {answer_no_variable, exit_no_variable},
    {answer_in_field, exit_in_field},
    {answer_same, exit_same},
    {answer_not_finite, exit_not_finite},
    {answer_one_variable, exit_one_variable},
    {answer_descent, exit_descent},
    {answer_coefficients, exit_coefficients},
    {answer_monomial, exit_monomial},
};

int answer_simple(const gcd_call *c, gcd_exit *end)
{
    for (const auto &row : simple_answers) {
        if (!row.answer(c)) continue;
        if (c->exponent_only && (*c->result)->exp > 0) put_degree(c->result, (*c->result)->exp);
        *end = row.end;
        return 1;
    }
    return 0;
}

}  // namespace kelmar
