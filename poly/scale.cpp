// poly/scale.cpp -- one walk over all numbers of a polynomial.
//
// A product with a number may vanish in every view: modulo a composite, by underflow of doubles, when a word
// wraps. So each list is built of what stays, and what has become a number one level down stands as itself at
// exp 0.
#include "poly/scale.h"
#include "numbers/dispatch.h"

namespace kelmar {

// Return the constant n * a, or null when it is zero.
static polynode *scaled_constant(number *n, number *a)
{
    number *product = nullptr;
    newimag(&product);
    product->size = 0;
    num_mul(n, a, product);
    if (!iszero(product)) return new_constant(product);
    free_imag(&product);
    return nullptr;
}

// Return n times the list, or null when nothing is left.
static polynode *scaled_list(number *n, const polynode *p)
{
    polynode *first = nullptr;
    polynode **end = &first;
    for (; p; p = p->next) {
        polynode *term = p->isnum ? scaled_constant(n, p->num) : scaled_list(n, p->coef);
        if (!term) continue;
        if (!p->isnum && (p->exp != 0 || !is_constant(term))) term = new_term(p->exp, term);
        *end = term;
        end = &term->next;
    }
    return first;
}

void scalar_by_poly(const number *n, const polynode *p, polynode **c)
{
    if (num_isone(n)) {
        poly_assign(p, c);
        return;
    }
    number *factor = const_cast<number *>(n);  // on purpose: a product cuts its operands, and puts them back
    *c = iszero(n) ? nullptr : scaled_list(factor, p);
    if (!*c) poly_set(0, c);
}

// Residues ------------------------------------------------------------------------------------------------

// Give back the node at *place and its number.
static void drop_number(polynode **place)
{
    polynode *t = *place;
    *place = t->next;
    free_imag(&t->num);
    give_node(t);
}

static void reduce_list(polynode **p);

// The number at *place in range. False when it vanishes, and its term with it.
static bool reduce_number(polynode **place)
{
    number *n = (*place)->num;
    n->word %= modulus;
    if (n->word < 0) n->word += modulus;
    if (n->word != 0) return true;
    drop_number(place);
    return false;
}

// The coefficients of the term at *place in range. False when all of them vanish, and the term with them.
static bool reduce_term(polynode **place)
{
    polynode *t = *place;
    reduce_list(&t->coef);
    const bool number_left = t->coef && t->exp == 0 && is_constant(t->coef);
    if (t->coef && !number_left) return true;
    *place = number_left ? t->coef : t->next;
    if (number_left) t->coef->next = t->next;
    give_node(t);
    return number_left;
}

// The list below *p with its words in range; null when nothing is left.
static void reduce_list(polynode **p)
{
    polynode **place = p;
    while (*place) {
        if ((*place)->isnum ? reduce_number(place) : reduce_term(place)) place = &(*place)->next;
    }
}

void standard_form(polynode **p)
{
    if (live_view() != view_modular) return;
    reduce_list(p);
    if (!*p) poly_set(0, p);
}

}  // namespace kelmar
