// quoly/add.cpp -- sums of scalar values: numbers at once, then by which operands have a denominator.
//
// A plain number beside a polynomial takes part as the constant polynomial of its own record. Each flavour
// goes to the flavour of the polynomial sum that owns the same operands; where there are denominators the
// result is built apart, and the flavours differ in nothing but its place. quoly/add_fractions.cpp has those.
#include "quoly/add.h"
#include "numbers/dispatch.h"
#include "poly/add.h"
#include "quoly/rational.h"

namespace kelmar {

static inline bool plain(const quolynode *a, const quolynode *b)
{
    return __builtin_expect(a->is_num && b->is_num, 1);
}

static inline bool has_den(const quolynode *q)
{
    return !q->is_num && q->den;
}

// Give the sum to *a, whose value was taken out by owned_top.
static void put_top(polynode *sum, quolynode *a)
{
    a->is_num = 0;
    a->top = sum;
    a->den = nullptr;
    a->is_rat = 0;
    polynum_to_quoly(&a);
}

// The polynomial that the value owns, taken out of it; a plain number's record becomes a constant's.
static polynode *owned_top(quolynode *q)
{
    return q->is_num ? constant_of(q) : q->top;
}

// Sums with denominators --------------------------------------------------------------------------------

// *c = q plus or minus p, or p minus q, for a p without denominator and a q with one.
static void add_to_fraction(const quolynode *p, const quolynode *q, quolynode **c, number_sum which)
{
    if (p->is_num && is_rational(q)) {
        add_numb_rat(p->num, q, c, which);
        return;
    }
    poly_room room;
    polynode *const top = as_poly(p, &room);
    if (which == q_minus_n) {
        no_denom_minus_2(top, q, c);
    } else {
        no_denom(top, q, c, which == n_minus_q);
    }
}

// *c = a + b or a - b, where one of them at least has a denominator. *c may be an operand.
static void add_fractions(const quolynode *a, const quolynode *b, quolynode **c, int add)
{
    if (!has_den(a)) {
        add_to_fraction(a, b, c, add ? n_plus_q : n_minus_q);
    } else if (!has_den(b)) {
        add_to_fraction(b, a, c, add ? n_plus_q : q_minus_n);
    } else if (is_rational(a) && is_rational(b)) {
        add_rats(a, b, c, add);
    } else if (*c == a) {
        fast_gen_quoly_add(c, b, add);
    } else {
        general_quoly_add(a, b, c, add);
    }
}

// Spared operands ----------------------------------------------------------------------------------------

void quoly_add(const quolynode *a, const quolynode *b, quolynode **c)
{
    if (plain(a, b)) {
        num_add(a->num, b->num, number_result(c));
        return;
    }
    if (has_den(a) || has_den(b)) {
        add_fractions(a, b, c, 1);
        return;
    }
    poly_room a_room, b_room;
    polynode *sum = nullptr;
    poly_add(as_poly(a, &a_room), as_poly(b, &b_room), &sum);
    poly_to_quoly(&sum, c);
}

void quoly_sub(const quolynode *a, const quolynode *b, quolynode **c)
{
    if (plain(a, b)) {
        num_sub(a->num, b->num, number_result(c));
        return;
    }
    if (a == b) {
        quoly_set(0, c);
        return;
    }
    if (has_den(a) || has_den(b)) {
        add_fractions(a, b, c, 0);
        return;
    }
    poly_room a_room, b_room;
    polynode *difference = nullptr;
    poly_sub(as_poly(a, &a_room), as_poly(b, &b_room), &difference);
    poly_to_quoly(&difference, c);
}

// Consumed operands --------------------------------------------------------------------------------------

void better_quoly_add(quolynode **a, const quolynode *b)
{
    if (plain(*a, b)) {
        num_add((*a)->num, b->num, (*a)->num);
        return;
    }
    if (*a == b || has_den(*a) || has_den(b)) {
        quoly_add(*a, b, a);
        return;
    }
    poly_room room;
    polynode *sum = nullptr;
    better_poly_add(owned_top(*a), as_poly(b, &room), &sum);
    put_top(sum, *a);
}

void better_quoly_sub(quolynode **a, const quolynode *b)
{
    if (plain(*a, b)) {
        num_sub((*a)->num, b->num, (*a)->num);
        return;
    }
    if (*a == b || has_den(*a) || has_den(b)) {
        quoly_sub(*a, b, a);
        return;
    }
    poly_room room;
    polynode *difference = nullptr;
    better_poly_sub(owned_top(*a), as_poly(b, &room), &difference);
    put_top(difference, *a);
}

void best_quoly_add(quolynode **a, quolynode **b)
{
    if (plain(*a, *b)) {
        num_add((*a)->num, (*b)->num, (*a)->num);
        free_plain(b);
        return;
    }
    if (has_den(*a) || has_den(*b)) {
        add_fractions(*a, *b, a, 1);
        free_quoly(b);
        return;
    }
    polynode *second = nullptr;
    polynode *sum = nullptr;
    quoly_consume(b, &second);
    best_poly_add(owned_top(*a), second, &sum);
    put_top(sum, *a);
}

void best_quoly_sub(quolynode **a, quolynode **b)
{
    if (plain(*a, *b)) {
        num_sub((*a)->num, (*b)->num, (*a)->num);
        free_plain(b);
        return;
    }
    if (has_den(*a) || has_den(*b)) {
        add_fractions(*a, *b, a, 0);
        free_quoly(b);
        return;
    }
    polynode *second = nullptr;
    polynode *difference = nullptr;
    quoly_consume(b, &second);
    best_poly_sub(owned_top(*a), second, &difference);
    put_top(difference, *a);
}

void best_quoly_nils_sub(quolynode **a, quolynode **b)
{
    if (!*b) return;
    if (!*a) {
        quoly_inplace(b);
        *a = *b;
        *b = nullptr;
    } else {
        best_quoly_sub(a, b);
    }
    if (quoly_iszero(*a)) free_quoly(a);
}

}  // namespace kelmar
