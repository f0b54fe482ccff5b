#pragma once
// numbers/dispatch.h -- each primitive on numbers as one switch over the live view.
//
// This is the one place that knows what a sum, a product, a negation is in each of the six views. Upper code
// calls these, or hoists live_view() out of a loop where a benchmark shows the gain.
//
// In the word view arithmetic wraps; in the small view it works on the first digit alone, with no carry.

#include "numbers/compare.h"
#include "numbers/number.h"

namespace kelmar {

// c = a + b, a - b, a * b in the live view. c replaced, may be an operand.
void num_add(const number *a, const number *b, number *c);
void num_sub(const number *a, const number *b, number *c);
void num_mul(number *a, number *b, number *c);

// c = a / b in the live view: double quotient; product with the inverse; truncated word; truncated quotient.
// c replaced, may be an operand. Errors: 22 for b = 0: then c = 1 in the digit views, else c = a; 85.
void quot(number *a, number *b, number *c);

// c = quotient (op '\\') or remainder (op '|') of whole division in the live view. c replaced, may be an
// operand. Quotients are truncated; a remainder has the sign of a, or with pos_mod |b| is added to one
// below 0. Residues divide exactly and leave 0. Errors: 22 for b = 0: then c = 1; 85.
void mod_or_div(number *a, number *b, number *c, char op);

// mod_or_div of floats; b is not 0.
double float_whole(double a, double b, char op);

// n = the greatest integer not above n. Errors: 62 in the word views; then n stays.
void num_floor(number *n);

// n = |n| in the live view. Residues and field elements stay.
void num_abs(number *n);

// a is below zero in the live view. Residues never are.
bool num_isneg(const number *a);

// a = 1 in the live view.
bool num_isone(const number *a);

// The value of a as a double, whatever the live view.
double num_to_double(const number *a);

// *v = a as a word. Declines (0) when a is not a whole number below 2^31 in magnitude. Floats within 1e-9
// max(1, |a|) of a whole number count as it.
int num_to_int(const number *a, std::int32_t *v);

}  // namespace kelmar
