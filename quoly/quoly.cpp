// quoly/quoly.cpp -- making, copying, negating and comparing scalar values.
//
// The plain number is the first test everywhere, and costs nothing more. The one place that turns a constant
// polynomial into a plain number is polynum_to_quoly; every operation on polynomials ends there.
#include "quoly/quoly.h"
#include "numbers/compare.h"
#include "numbers/dispatch.h"
#include "quoly/rational.h"
#include "session/report.h"

namespace kelmar {

// Records -----------------------------------------------------------------------------------------------

void free_polynomials(quolynode **q)
{
    free_poly(&(*q)->top);
    free_poly(&(*q)->den);
    give_quoly(q);
}

void quoly_set(std::int32_t v, quolynode **q)
{
    setvalue(v, number_result(q));
}

void scalar_to_quoly(number *n, quolynode **q)
{
    number *record = number_result(q);
    free_num(record);
    *record = *n;
}

// Polynomials -------------------------------------------------------------------------------------------

void polynum_to_quoly(quolynode **q)
{
    quolynode *value = *q;
    if (value->is_num || value->den || !is_constant(value->top)) return;
    polynode *node = value->top;
    value->is_num = 1;
    value->num = node->num;
    give_node(node);
}

void settle_room(poly_room *room)
{
    room->residue = *room->node.num;
    room->residue.word = to_residue(room->residue.word);
    room->node.num = &room->residue;
}

polynode *constant_of(quolynode *q)
{
    number_to_residue(q);
    return new_constant(q->num);
}

void poly_to_quoly(polynode **p, quolynode **q)
{
    polynode *top = *p;
    *p = nullptr;
    if (*q && !(*q)->is_num) {
        free_poly(&(*q)->top);
        free_poly(&(*q)->den);
    } else if (*q) {
        free_imag(&(*q)->num);
    } else {
        newquoly(q);
    }
    (*q)->is_num = 0;
    (*q)->top = top;
    (*q)->den = nullptr;
    (*q)->is_rat = 0;
    polynum_to_quoly(q);
}

void quoly_to_poly(const quolynode *q, polynode **p)
{
    poly_room room;
    *p = nullptr;
    poly_assign(as_poly(q, &room), p);
}

void quoly_consume(quolynode **q, polynode **p)
{
    *p = (*q)->is_num ? constant_of(*q) : (*q)->top;
    give_quoly(q);
}

void quoly_variable(std::int32_t level, quolynode **q)
{
    polynode *variable = nullptr;
    base_poly(&variable, level);
    poly_to_quoly(&variable, q);
}

// Copying and comparing ----------------------------------------------------------------------------------

void quoly_assign(const quolynode *a, quolynode **b)
{
    if (a == *b) return;
    if (__builtin_expect(a->is_num, 1)) {
        num_assign(a->num, number_result(b));
        return;
    }
    polynode *top = nullptr;
    polynode *den = nullptr;
    poly_assign(a->top, &top);
    if (a->den) poly_assign(a->den, &den);
    const std::int32_t is_rat = a->is_rat;
    free_quoly(b);
    newquoly(b);
    (*b)->is_num = 0;
    (*b)->top = top;
    (*b)->den = den;
    (*b)->is_rat = is_rat;
}

bool quoly_iszero(const quolynode *q)
{
    return q->is_num && (modularmode ? to_residue(q->num->word) == 0 : iszero(q->num));
}

bool quoly_equal(const quolynode *a, const quolynode *b)
{
    if (a->is_num != b->is_num) return false;
    if (a->is_num) return equal(a->num, b->num);
    if (!poly_equal(a->top, b->top)) return false;
    return a->den && b->den ? poly_equal(a->den, b->den) : !a->den && !b->den;
}

// Sign --------------------------------------------------------------------------------------------------

void quoly_makeneg(const quolynode *a, quolynode **b)
{
    if (__builtin_expect(a->is_num, 1)) {
        makeneg(a->num, number_result(b));
        return;
    }
    quoly_assign(a, b);
    quoly_inplace(b);
}

void quoly_inplace(quolynode **a)
{
    if (__builtin_expect((*a)->is_num, 1)) {
        in_place_neg((*a)->num);
    } else {
        poly_inplace((*a)->top);
    }
}

void quoly_abs(quolynode **q)
{
    if ((*q)->is_num) {
        num_abs((*q)->num);
    } else if (is_rational(*q)) {
        if (neg_leading_term((*q)->top)) in_place_neg((*q)->top->num);
    } else {
        error(err_not_a_number, "|");
    }
}

void quoly_great_int(quolynode **q)
{
    if ((*q)->is_num) {
        num_floor((*q)->num);
    } else if (is_rational(*q)) {
        rat_floor(q);
    } else {
        error(flotemode ? err_not_a_number : err_wrong_ring, "$");
    }
}

}  // namespace kelmar
