#pragma once
// quoly/quoly.h -- the scalar value of the language: a plain number, a polynomial, or a quotient of two.
//
// Every operation on values is here, in quoly/add.h, quoly/mul.h and quoly/divide.h. A result handle's old
// value is freed; *c may be null, and may be an operand. Every result is in the form of quoly/normal_form.h:
// a constant is a plain number, so zero is always the plain number 0.

#include "numbers/plain_quoly.h"
#include "numbers/word_mod.h"
#include "poly/node.h"

namespace kelmar {

// Release what *q holds, and the record; *q becomes null; null is allowed.
void free_polynomials(quolynode **q);
inline void free_quoly(quolynode **q)
{
    if (!*q) return;
    if (__builtin_expect((*q)->is_num, 1)) {
        free_plain(q);
    } else {
        free_polynomials(q);
    }
}

// The number record of *c, to be filled with a result; a value that is no plain number is released.
inline number *number_result(quolynode **c)
{
    if (__builtin_expect(*c && !(*c)->is_num, 0)) free_polynomials(c);
    return plain_result(c);
}

// *q = the plain number v in the live view; digits for |v| >= 2^28 are two. *q replaced.
void quoly_set(std::int32_t v, quolynode **q);

// *q = the plain number whose record is a copy of *n, field by field: the chain passes over. *q replaced.
void scalar_to_quoly(number *n, quolynode **q);

// Polynomials -------------------------------------------------------------------------------------------

// Bring the count that a plain number may be, and that stands unreduced in it, into the range of the modulus.
inline void number_to_residue(quolynode *q)
{
    if (modularmode && q->is_num) q->num->word = to_residue(q->num->word);
}

// Where as_poly puts the number of a plain value.
struct poly_room {
    polynode node;
    number residue;  // of a count, which stands unreduced in the value
};

// Make *room hold the residue of the word in it.
void settle_room(poly_room *room);

// A value as a polynomial, without a copy: its own, or the number of a plain one in *room. Borrowed from q.
inline polynode *as_poly(const quolynode *q, poly_room *room)
{
    if (!q->is_num) return q->top;
    polynode *const p = &room->node;
    p->exp = 0;
    p->isnum = 1;
    p->next = nullptr;
    p->num = q->num;
    if (modularmode && !is_residue(q->num->word)) settle_room(room);
    return p;
}

void poly_to_quoly(polynode **p, quolynode **q);  // *q = *p, which is consumed. *q replaced
void quoly_to_poly(const quolynode *q,
                   polynode **p);                 // *p = a copy of q, which has no denominator. *p filled
polynode *constant_of(quolynode *q);              // the number of a plain q as a polynomial that owns it
void quoly_consume(quolynode **q, polynode **p);  // the same without a copy: *q consumed. *p filled
void polynum_to_quoly(quolynode **q);             // a constant without denominator becomes a plain number
void quoly_variable(std::int32_t level, quolynode **q);  // *q = the variable of that level. *q replaced

// Copying, sign, comparison ------------------------------------------------------------------------------

// *b = a private copy of a. *b replaced.
void quoly_assign(const quolynode *a, quolynode **b);

bool quoly_iszero(const quolynode *q);
bool quoly_equal(const quolynode *a, const quolynode *b);

// *b = -a. *b replaced, may be a. A float zero stays 0, never -0.
void quoly_makeneg(const quolynode *a, quolynode **b);

// *a = -*a in place.
void quoly_inplace(quolynode **a);

// *q = the greatest integer not above q. Errors: 62 in the word modes; for a polynomial 227 with floats, else
// 62; then *q stays.
void quoly_great_int(quolynode **q);

// *q = |q| in the live view. Errors: 227 for a polynomial; then *q stays.
void quoly_abs(quolynode **q);

}  // namespace kelmar
