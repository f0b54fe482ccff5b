// poly/crt.cpp -- Horner's rule on digits that are polynomials.
//
// Each step multiplies the accumulator in place, adds the next digit, and reduces in place; so it allocates
// only the terms by which the result grows. One walk changes all numbers of a polynomial in place and drops
// what has become zero, with the wrappers that are then in the way; what it does to a number is a row of its
// caller.
#include "poly/crt.h"
#include "numbers/dispatch.h"
#include "numbers/long_add.h"
#include "numbers/long_div.h"
#include "numbers/word_mod.h"
#include "poly/add.h"

namespace kelmar {

// All numbers of a polynomial -------------------------------------------------------------------------------

// What is done to each number, and what that needs.
struct number_change {
    void (*apply)(number *n, number_change *how);
    number *factor;
    std::int32_t residue;
    const number *m, *half;
    number quotient;  // scratch
};

static polynode *changed_list(polynode *p, number_change *how);

// Return the changed term; null when it has vanished. next is null.
static polynode *changed_term(polynode *term, number_change *how)
{
    if (term->isnum) {
        how->apply(term->num, how);
        if (iszero(term->num)) free_poly(&term);
        return term;
    }
    polynode *coef = changed_list(term->coef, how);
    if (coef && (term->exp != 0 || !is_constant(coef))) {
        term->coef = coef;
        return term;
    }
    give_node(term);
    return coef;
}

// Return the changed list; null when it has vanished.
static polynode *changed_list(polynode *p, number_change *how)
{
    polynode *first = nullptr;
    polynode **end = &first;
    while (p) {
        polynode *term = p;
        p = p->next;
        term->next = nullptr;
        term = changed_term(term, how);
        if (!term) continue;
        *end = term;
        end = &term->next;
    }
    return first;
}

static void change_numbers(polynode **p, number_change *how)
{
    *p = changed_list(*p, how);
    if (!*p) poly_set(0, p);
}

// Products and remainders -----------------------------------------------------------------------------------

static void times_number(number *n, number_change *how)
{
    num_mul(n, how->factor, n);
}

void mult_num(polynode **p, number *n)
{
    if (num_isone(n)) return;
    number_change how = {};
    how.apply = times_number;
    how.factor = n;
    change_numbers(p, &how);
}

static void times_residue(number *n, number_change *how)
{
    n->word = modmult(n->word, how->residue);
}

void mod_mult_num(polynode **p, std::int32_t v)
{
    if (v == 1) return;
    number_change how = {};
    how.apply = times_residue;
    how.residue = v;
    change_numbers(p, &how);
}

static void reduce_number(number *n, number_change *how)
{
    if (how->half && int_abs_bigger(how->half, n, 0)) return;
    if (!int_abs_bigger(how->m, n, 0)) divide(n, how->m, &how->quotient, n);
    if (n->head->digit < 0) fastsum(n, how->m);
    if (how->half && pos_bigger(n, how->half)) fastdiff(n, how->m);
}

void poly_mod_and_div(polynode **p, const number *m, const number *half)
{
    number_change how = {};
    how.apply = reduce_number;
    how.m = m;
    how.half = half;
    change_numbers(p, &how);
    special_free(&how.quotient);
}

// Lifts -----------------------------------------------------------------------------------------------------

// *c = p. *c replaced.
static void hand_over(polynode *p, polynode **c)
{
    free_poly(c);
    *c = p;
}

void Chinese(const poly_item *digits, const number *m, const word_node *primes, polynode **c)
{
    polynode *r = nullptr;
    poly_set(0, &r);
    number v = {};
    for (; digits; digits = digits->next, primes = primes->next) {
        if (!poly_iszero(r)) {
            special_set(primes->value, &v);
            mult_num(&r, &v);
        }
        better_poly_add(r, digits->poly, &r);
        poly_mod_and_div(&r, m, nullptr);
    }
    special_free(&v);
    hand_over(r, c);
}

void mod_Chinese(const poly_item *digits, const word_node *points, std::int32_t x, polynode **c)
{
    polynode *r = nullptr;
    poly_set(0, &r);
    for (; digits; digits = digits->next, points = points->next) {
        mod_mult_num(&r, mod_sub(x, points->value, modulus));
        better_poly_add(r, digits->poly, &r);
    }
    hand_over(r, c);
}

}  // namespace kelmar
