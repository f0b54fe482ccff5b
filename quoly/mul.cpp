// quoly/mul.cpp -- products of scalar values: numbers at once, a number into a polynomial, two polynomials,
// and what has a denominator as fractions.
#include "quoly/mul.h"
#include "numbers/compare.h"
#include "numbers/dispatch.h"
#include "poly/mul.h"
#include "poly/scale.h"
#include "quoly/cross.h"
#include "quoly/rational.h"
#include "session/report.h"

namespace kelmar {

static inline bool has_den(const quolynode *q)
{
    return !q->is_num && q->den;
}

// *c = a * b without denominators, not both plain numbers.
static void multiply_polynomials(const quolynode *a, const quolynode *b, quolynode **c)
{
    polynode *product = nullptr;
    if (!a->is_num && !b->is_num) {
        poly_mult(a->top, b->top, &product, polynames);
    } else {
        poly_room room;
        const number *n = as_poly(a->is_num ? a : b, &room)->num;
        const polynode *p = a->is_num ? b->top : a->top;
        if (iszero(n)) {
            quoly_set(0, c);
            return;
        }
        scalar_by_poly(n, p, &product);
    }
    poly_to_quoly(&product, c);
}

// *c = a * b, one of which has a denominator at least.
static void multiply_fractions(const quolynode *a, const quolynode *b, quolynode **c)
{
    poly_room a_room, b_room;
    if (a->is_num && is_rational(b)) {
        mult_numb_rat(a->num, b, c);
    } else if (b->is_num && is_rational(a)) {
        mult_numb_rat(b->num, a, c);
    } else if (is_rational(a) && is_rational(b)) {
        mult_rats(a, b, c);
    } else {
        const fraction x = parts_of(a, &a_room), y = parts_of(b, &b_room);
        cross_multiply(&x, &y, both_gcds, 0, c);
    }
}

void quoly_mult(const quolynode *a, const quolynode *b, quolynode **c)
{
    if (__builtin_expect(a->is_num && b->is_num, 1)) {
        num_mul(a->num, b->num, number_result(c));
    } else if (has_den(a) || has_den(b)) {
        multiply_fractions(a, b, c);
    } else {
        multiply_polynomials(a, b, c);
    }
}

void fast_quoly_mult(quolynode **a, const quolynode *b)
{
    if (__builtin_expect((*a)->is_num && b->is_num, 1)) {
        num_mul((*a)->num, b->num, (*a)->num);
    } else {
        quoly_mult(*a, b, a);
    }
}

void gen_quoly_mult(const quolynode *a, const quolynode *b, quolynode **c)
{
    const fraction x = {a->top, a->den}, y = {b->top, b->den};
    cross_multiply(&x, &y, both_gcds, 0, c);
}

void quoly_nils_mult(const quolynode *a, const quolynode *b, quolynode **c)
{
    if (!a || !b) {
        if (*c) free_quoly(c);
        return;
    }
    quoly_mult(a, b, c);
    if (quoly_iszero(*c)) free_quoly(c);
}

// Other variables -----------------------------------------------------------------------------------------

// The session's variables while a product in others runs.
struct kept_variables {
    pt *names, *pseudo;
    std::int32_t negative_exponents;
    std::int32_t kept;
};
static kept_variables own_variables = {};  // default none; spec_quoly_mult; reset: unwind

void leave_given_variables()
{
    if (!own_variables.kept) return;
    polynames = own_variables.names;
    pseudo_polynames = own_variables.pseudo;
    laurent = own_variables.negative_exponents;
    own_variables.kept = 0;
}

void spec_quoly_mult(const quolynode *a, const quolynode *b, quolynode **c, pt *names)
{
    own_variables = {polynames, pseudo_polynames, laurent, 1};
    polynames = pseudo_polynames = names;
    laurent = 0;
    ++interrupts_held;
    quoly_mult(a, b, c);
    if (interrupts_held > 0) --interrupts_held;
    leave_given_variables();
}

}  // namespace kelmar
