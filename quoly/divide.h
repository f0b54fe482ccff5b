#pragma once
// quoly/divide.h -- quotients, reciprocals and whole division of scalar values.
//
// no_reduce says that the two numerators are coprime: their gcd is not taken. It is the // form. If error
// comes back the result is 1; when it does not, the result and the operands are as they were.

#include "quoly/quoly.h"

namespace kelmar {

// *c = a / b. *c replaced, may be an operand. fast_: *a = *a / b in place. A value by itself is 1. Whole
// numbers give rational ones, or with integerflag a truncated quotient. b restored, may be *a.
// Errors: 22 for b = 0; 32; 85, 210 modulo a composite. Polls: in gcds and products.
void quoly_quot(const quolynode *a, const quolynode *b, std::int32_t no_reduce, quolynode **c);
void fast_quoly_quot(quolynode **a, const quolynode *b, std::int32_t no_reduce);

// *q = 1 / *q in place. lint_: where numbers are words or doubles; quoly_reciprocal goes there by itself.
// Errors: 22, then *q = 1; 85, 210 modulo a composite.
void quoly_reciprocal(quolynode **q);
void lint_quoly_recip(quolynode **q);

// *c = quotient (op '\\') or remainder (op '|') of whole division: of numbers, or of the numerator and of the
// denominator of a by the numerator of b. *c replaced, may be an operand. Doubles: fmod; with pos_mod a
// remainder below 0 gets |b| added. Errors: 22 for b = 0; 85; 205 for negative exponents; 210 when the
// denominator becomes 0, then *c = 1.
void quoly_mod_or_div(const quolynode *a, const quolynode *b, quolynode **c, char op);

// *c = a / b for a polynomial b, when b divides a; neither has a denominator. Declines (0): it does not; *c
// stays.
int quoly_exact_quot(const quolynode *a, const quolynode *b, quolynode **c);

}  // namespace kelmar
