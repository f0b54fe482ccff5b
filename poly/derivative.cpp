// poly/derivative.cpp -- derivatives, term by term.
//
// A term c x^e gives (e c) x^(e-1), and powers stay in order, so the result is built in one walk. An exponent
// becomes a number of the live view first; where that is 0 the term goes.
#include "poly/derivative.h"
#include "numbers/compare.h"
#include "poly/scale.h"

namespace kelmar {

// n = the exponent e in the live view.
static void set_exponent(std::int32_t e, number *n)
{
    std::int32_t v = e;
    switch (live_view()) {
    case view_field: v = e & 1; break;  // characteristic two
    case view_modular: v = e % modulus < 0 ? e % modulus + modulus : e % modulus; break;
    case view_float:
    case view_word:
    case view_small:
    case view_digits: break;
    }
    setvalue(v, n);
}

// The derivative of the term, its next not set; null when it vanishes.
static polynode *derived_term(const polynode *term)
{
    if (term->exp == 0) return nullptr;
    number *factor = nullptr;
    polynode *coef = nullptr;
    polynode *derived = nullptr;
    newimag(&factor);
    factor->size = 0;
    set_exponent(term->exp, factor);
    if (!iszero(factor)) scalar_by_poly(factor, term->coef, &coef);
    free_imag(&factor);
    if (!coef) return nullptr;
    if (poly_iszero(coef)) {
        free_poly(&coef);
    } else {
        make_monomial(&derived, term->exp - 1, coef);
    }
    return derived;
}

static polynode *derived_list(const polynode *p)
{
    polynode *first = nullptr;
    polynode **end = &first;
    for (; p; p = p->next) {
        polynode *term = derived_term(p);
        if (!term) continue;
        *end = term;
        end = &term->next;
    }
    *end = nullptr;
    if (!first) poly_set(0, &first);
    return first;
}

void poly_diff(polynode **p, std::int32_t order)
{
    for (; order > 0; --order) {
        polynode *derived = derived_list(*p);
        free_poly(p);
        *p = derived;
    }
}

}  // namespace kelmar
