// quoly/add.cpp -- sums of scalar values: numbers at once, else as polynomials.
//
// A plain number beside a polynomial takes part as the constant polynomial of its own record. Each flavour
// goes to the flavour of the polynomial sum that owns the same operands.
#include "quoly/add.h"
#include "numbers/dispatch.h"
#include "poly/add.h"

namespace kelmar {

static inline bool plain(const quolynode *a, const quolynode *b)
{
    return __builtin_expect(a->is_num && b->is_num, 1);
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
    return q->is_num ? new_constant(q->num) : q->top;
}

// Spared operands ----------------------------------------------------------------------------------------

void quoly_add(const quolynode *a, const quolynode *b, quolynode **c)
{
    if (plain(a, b)) {
        num_add(a->num, b->num, number_result(c));
        return;
    }
    polynode a_room, b_room;
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
    polynode a_room, b_room;
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
    if (*a == b) {
        quoly_add(b, b, a);
        return;
    }
    polynode room;
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
    if (*a == b) {
        quoly_set(0, a);
        return;
    }
    polynode room;
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
    polynode *second = nullptr;
    polynode *difference = nullptr;
    quoly_consume(b, &second);
    best_poly_sub(owned_top(*a), second, &difference);
    put_top(difference, *a);
}

}  // namespace kelmar
