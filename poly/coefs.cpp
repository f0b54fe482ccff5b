// poly/coefs.cpp -- degrees, terms and coefficients of a polynomial in one of its variables.
//
// All walk down to the level in question and work on each list there. What is taken out is rebuilt term by
// term, so that nothing of the operand is shared.
#include "poly/coefs.h"
#include "numbers/dispatch.h"
#include "numbers/long_power.h"
#include "poly/add.h"
#include "session/report.h"

namespace kelmar {

// Measures ------------------------------------------------------------------------------------------------

std::int32_t top_degree(const polynode *p, std::int32_t level)
{
    if (is_constant(p)) return 0;
    if (level == 1) return p->exp;
    std::int32_t degree = INT32_MIN;
    for (; p; p = p->next) degree = maxx(degree, p->isnum ? 0 : top_degree(p->coef, level - 1));
    return degree;
}

std::int32_t low_degree(const polynode *p, std::int32_t level)
{
    if (is_constant(p)) return 0;
    std::int32_t degree = INT32_MAX;
    for (; p; p = p->next) {
        const std::int32_t here = level == 1 ? p->exp : p->isnum ? 0 : low_degree(p->coef, level - 1);
        degree = minn(degree, here);
    }
    return degree;
}

std::int64_t total_degree(const polynode *p)
{
    if (is_constant(p)) return 0;
    std::int64_t degree = INT64_MIN;
    for (; p; p = p->next) {
        const std::int64_t here = p->exp + (p->isnum ? 0 : total_degree(p->coef));
        if (here > degree) degree = here;
    }
    return degree;
}

static std::int64_t leaves(const polynode *p)
{
    std::int64_t count = 0;
    for (; p; p = p->next) count += p->isnum ? 1 : leaves(p->coef);
    return count;
}

std::int64_t f_numterms(const polynode *p)
{
    return poly_iszero(p) ? 0 : leaves(p);
}

// Coefficients --------------------------------------------------------------------------------------------

// The coefficient of the term, as a copy.
static polynode *coef_copy(const polynode *t)
{
    if (!t->isnum) return copy_poly(t->coef);
    polynode alone = *t;
    alone.next = nullptr;
    return copy_poly(&alone);
}

// The coefficient of the term as a polynomial of the term's level.
static polynode *padded_coef(const polynode *t)
{
    polynode *c = coef_copy(t);
    add_pad(&c, 1);
    return c;
}

static void put_result(polynode *value, polynode **c)
{
    if (!value) poly_set(0, &value);
    free_poly(c);
    *c = value;
}

static polynode *power_coef(const polynode *p, std::int32_t level, std::int32_t e);

// The terms of p with their coefficients replaced by those of the power e further down; null for zero.
static polynode *power_coef_below(const polynode *p, std::int32_t level, std::int32_t e)
{
    polynode *first = nullptr;
    polynode **end = &first;
    for (; p; p = p->next) {
        polynode *coef = nullptr;
        if (p->isnum) {
            if (e == 0) coef = coef_copy(p);
        } else {
            coef = power_coef(p->coef, level - 1, e);
        }
        if (!coef) continue;
        make_monomial(end, p->exp, coef);
        end = &(*end)->next;
        *end = nullptr;
    }
    return first;
}

static polynode *power_coef(const polynode *p, std::int32_t level, std::int32_t e)
{
    if (is_constant(p)) return e == 0 && !poly_iszero(p) ? copy_poly(p) : nullptr;
    if (level > 1) return power_coef_below(p, level, e);
    while (p && p->exp > e) p = p->next;
    return p && p->exp == e ? padded_coef(p) : nullptr;
}

void extract_coef(const polynode *p, std::int32_t level, std::int32_t e, polynode **c)
{
    put_result(power_coef(p, level, e), c);
}

void lead_coef(const polynode *p, std::int32_t levels, polynode **c)
{
    std::int32_t passed = 0;
    polynode *value = nullptr;
    for (; !p->isnum && passed + 1 < levels; ++passed) p = p->coef;
    if (p->isnum) {
        value = coef_copy(p);
    } else {
        value = coef_copy(p);
        add_pad(&value, passed + 1);
    }
    put_result(value, c);
}

void trailing_coef(const polynode *p, polynode **c)
{
    while (p->next) p = p->next;
    put_result(padded_coef(p), c);
}

void leading_term(const polynode *p, polynode **c)
{
    put_result(copy_term(p), c);
}

// The monomial of the first terms from p on, with the coefficient 1.
static polynode *monomial_of(const polynode *p)
{
    polynode *m = nullptr;
    if (p->isnum) {
        poly_set(1, &m);
        return m;
    }
    m = monomial_of(p->coef);
    make_monomial(&m, p->exp, m);
    return m;
}

void leading_monomial(const polynode *p, polynode **m)
{
    put_result(monomial_of(p), m);
}

// Null for zero.
static polynode *coef_of_monomial(const polynode *p, const polynode *m)
{
    if (m->isnum) return poly_iszero(p) ? nullptr : copy_poly(p);
    if (is_constant(p)) {
        if (m->exp != 0) return nullptr;
        return coef_of_monomial(p, m->coef);
    }
    const bool any = m->exp == 0;
    polynode *first = nullptr;
    polynode **end = &first;
    for (; p; p = p->next) {
        if (!any && p->exp != m->exp) continue;
        polynode alone = *p;
        alone.next = nullptr;
        polynode *coef = coef_of_monomial(p->isnum ? &alone : p->coef, m->coef);
        if (!coef) continue;
        make_monomial(end, any ? p->exp : 0, coef);
        end = &(*end)->next;
        *end = nullptr;
    }
    return first;
}

void monomial_coef(const polynode *p, const polynode *m, polynode **c)
{
    put_result(coef_of_monomial(p, m), c);
}

// Change ----------------------------------------------------------------------------------------------------

// Take the term of the power e out of the list, and free it.
static void remove_power(polynode **p, std::int32_t e)
{
    polynode **at = p;
    while (*at && (*at)->exp > e) at = &(*at)->next;
    if (!*at || (*at)->exp != e) return;
    polynode *term = *at;
    *at = term->next;
    term->next = nullptr;
    free_poly(&term);
    if (!*p) poly_set(0, p);
}

void set_first_coef(polynode **p, std::int32_t e, polynode *c)
{
    if (!is_constant(*p) || e == 0) remove_power(p, e);
    polynode *term = c;
    if (e != 0 && !poly_iszero(c)) {
        polynode *coef = c;
        if (!is_constant(c)) {
            coef = c->coef;  // c is a wrapper
            give_node(c);
        }
        make_monomial(&term, e, coef);
    }
    best_poly_add(*p, term, p);
}

}  // namespace kelmar
