#pragma once
// quoly/fraction.h -- what sums, products and quotients of fractions share: operands as pairs of borrowed
// polynomials, gcds of such, and the settling of a result.
//
// An operation reads its operands through pairs and builds its result apart, in the slots of a work record,
// so that a jump out of it leaves operands and result as they were. Nothing of an operand is copied but what
// becomes part of a result. A null denominator, and a null factor, stand for 1.

#include "quoly/quoly.h"

namespace kelmar {

struct fraction {
    polynode *top;
    polynode *den;
};

// The pair of q; the number of a plain one stands in *room. Borrowed from q.
inline fraction parts_of(const quolynode *q, poly_room *room)
{
    return {as_poly(q, room), q->is_num ? nullptr : q->den};
}

// True where polygcd can say something. Words that wrap, and single digits, have no gcds.
bool has_gcds();

// *g = gcd(a, b). a, b restored, after a jump too; *g replaced. Polls.
void spared_gcd(polynode *a, polynode *b, polynode **g);

// Divide *a and *b by their gcd. What changes is built in *slot_a, *slot_b, which are null before, and *a, *b
// point there then; null for 1. *slot_g is for the gcd. Polls.
void cancel_pair(polynode **a, polynode **b, polynode **slot_a, polynode **slot_b, polynode **slot_g);

// Return a * b for factors that may be null, null for 1 * 1; *c filled with it. Polls.
void product_of_factors(polynode *a, polynode *b, polynode **c);

// Bring *top / *den, which have no common divisor but numbers, into normal form in place: *den is null for 1.
// Where *top is 0, *den is null. clear: as normal_form. Errors: 85, 210; then what comes back: *den is null.
void settle_fraction(polynode **top, polynode **den, std::int32_t clear);

// *c = *top / *den, which are settled and consumed. *c replaced.
void put_fraction(polynode **top, polynode **den, quolynode **c);

}  // namespace kelmar
