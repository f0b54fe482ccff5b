#pragma once
// session/poly_readin.h -- reading values in the form in which they are displayed.
//
// The nested form of display is read in one pass, without arithmetic, so that a long saved polynomial comes
// back at the speed of its digits.

#include "quoly/quoly.h"
#include "session/scanner.h"

namespace kelmar {

// default 0; polynomials are read with true integers under a modulus too; &n; reset: never
inline std::int32_t nomodpolyreadin = 0;
// default 0; a file is loaded, and a minus sign under a modulus is still to be told of; load_command,
// quoly_readin; reset: error
inline std::int32_t minus_warning = 0;

// *q = the value that begins with the token in hand: a polynomial, in brackets or not, and behind / a
// denominator. The token behind it is left in hand. *q replaced, announced by the caller. With
// nomodpolyreadin numbers are read as true integers, and none may vanish in the ground ring. Errors: 1 159
// 160 161 162 163 164 165 204 341 359 376.
void quoly_readin(input_stream **stream, quolynode **q, name_node **cursor);

// *q = the polynomial that begins with the token in hand, whose outermost variable has at least that level; a
// list of that level. *q replaced, announced by the caller. Declines (0) after an error.
bool poly_readin(input_stream **stream, quolynode **q, name_node **cursor, std::int32_t level);

// *coef = the coefficient that begins with the token in hand: a number with decimals, a polynomial in
// brackets, or 1 in front of a variable. *coef replaced, announced by the caller. Declines (0) after an
// error.
bool get_the_coef(input_stream **stream, quolynode **coef, name_node **cursor, std::int32_t level);

}  // namespace kelmar
