// poly/derivative.cpp -- derivatives, term by term.
//
// A term c x^e gives e (e - 1) .. (e - order + 1) c x^(e - order), and powers stay in order, so the result is
// built in one walk. The factor is made in the live view; where it is 0 the term goes.
#include "poly/derivative.h"
#include "numbers/compare.h"
#include "numbers/dispatch.h"
#include "numbers/word_mod.h"
#include "poly/scale.h"
#include "session/report.h"

namespace kelmar {

static constexpr std::int32_t largest_exponent = (1 << 28) - 1;  // of long integers: one digit

// e modulo the modulus, not negative.
static std::int32_t residue_of(std::int64_t e)
{
    const std::int64_t r = e % modulus;
    return static_cast<std::int32_t>(r < 0 ? r + modulus : r);
}

// n = n times v, which counts from the exponent down.
static void times_integer(std::int64_t v, number *factor, number *n)
{
    setvalue(static_cast<std::int32_t>(v), factor);
    num_mul(n, factor, n);
}

// *word = e (e - 1) .. (e - order + 1) as a residue, or in a field of characteristic two its parity.
static void residue_factor(std::int32_t e, std::int32_t order, std::int32_t *word)
{
    if (finf) {
        *word = order == 1 ? e & 1 : 0;
        return;
    }
    *word = 0;
    if (order >= modulus || residue_of(e) < order) return;  // one of the factors is 0
    *word = 1;
    for (std::int64_t k = 0; k < order; ++k) *word = modmult(*word, residue_of(e - k));
}

// n = e (e - 1) .. (e - order + 1) in the live view, order > 0.
static void set_factor(std::int32_t e, std::int32_t order, number *n)
{
    n->size = 0;
    if (live_view() == view_modular || live_view() == view_field) {
        residue_factor(e, order, &n->word);
        return;
    }
    number *factor = nullptr;
    newimag(&factor);
    factor->size = 0;
    setvalue(1, n);
    for (std::int64_t k = 0; k < order && !iszero(n); ++k) times_integer(std::int64_t{e} - k, factor, n);
    free_imag(&factor);
}

// The coefficient of the term, times n; null for 0.
static polynode *scaled_coef(const number *n, const polynode *term)
{
    polynode alone;
    const polynode *coef = term->coef;
    polynode *product = nullptr;
    if (term->isnum) {
        alone = *term;
        alone.next = nullptr;
        coef = &alone;
    }
    scalar_by_poly(n, coef, &product);
    if (poly_iszero(product)) free_poly(&product);
    return product;
}

// A list at the level has an exponent that cannot be counted down so far in the live view.
static bool exponent_refused(const polynode *p, std::int32_t order, std::int32_t level)
{
    const bool digits = live_view() == view_digits || live_view() == view_small;
    const std::int64_t low = digits ? -largest_exponent : INT32_MIN;
    const std::int64_t top = digits ? largest_exponent : INT32_MAX;
    for (; p; p = p->next) {
        if (level > 1) {
            if (!p->isnum && exponent_refused(p->coef, order, level - 1)) return true;
        } else if (p->exp > top || (p->exp < 0 && std::int64_t{p->exp} - order < low)) {
            return true;
        }
    }
    return false;
}

// The derivative of the term, its next not set; null when it vanishes.
static polynode *derived_term(const polynode *term, std::int32_t order)
{
    const std::int32_t e = term->exp;
    if (e >= 0 && e < order) return nullptr;
    number *factor = nullptr;
    newimag(&factor);
    set_factor(e, order, factor);
    polynode *derived = iszero(factor) ? nullptr : scaled_coef(factor, term);
    free_imag(&factor);
    if (derived) make_monomial(&derived, e - order, derived);
    return derived;
}

static polynode *derived_list(const polynode *p, std::int32_t order, std::int32_t level);

// The term with its coefficient derived; null when that vanishes.
static polynode *term_below(const polynode *term, std::int32_t order, std::int32_t level)
{
    if (term->isnum) return nullptr;
    polynode *derived = derived_list(term->coef, order, level);
    if (derived) make_monomial(&derived, term->exp, derived);
    return derived;
}

// The derivative of the list; null for 0.
static polynode *derived_list(const polynode *p, std::int32_t order, std::int32_t level)
{
    polynode *first = nullptr;
    polynode **end = &first;
    for (; p; p = p->next) {
        polynode *term = level == 1 ? derived_term(p, order) : term_below(p, order, level - 1);
        if (!term) continue;
        *end = term;
        end = &term->next;
    }
    *end = nullptr;
    return first;
}

void general_poly_diff(polynode **p, std::int32_t order, std::int32_t level)
{
    if (order == 0) return;
    polynode *derived = nullptr;
    if (exponent_refused(*p, order, level)) {
        kelmar_error(" outsized exponent in derivative", 1);
    } else {
        derived = derived_list(*p, order, level);
    }
    if (!derived) poly_set(0, &derived);
    free_poly(p);
    *p = derived;
}

void poly_diff(polynode **p, std::int32_t order)
{
    general_poly_diff(p, order, 1);
}

}  // namespace kelmar
