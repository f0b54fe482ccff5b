#pragma once
// quoly/normal_form.h -- the form in which every finished value is kept.
//
//  1. A constant without denominator is a plain number.
//  2. den is never 1; where numbers are words or doubles it is never a constant.
//  3. is_rat = 1 just where numbers are digit chains and top and den are both constants: in lowest terms,
//     with den > 0.
//  4. With digit chains the number at the head of den is positive.
//  5. With words or doubles that number is 1.
//  6. top and den have no common divisor that polygcd sees, and with digit chains no common number.
//  7. den does not lie wholly in the field part of a tower.
//  8. With `laurent`, no variable divides den.
//  9. Zero is a plain number.
//
// quoly_is_normal checks them all. The routines work on a value whose top and den are fresh from an operation
// and take out what that operation can have left. clear: common powers of variables go from den to top, as
// rule 8 asks. *q is in place: what happens to fail on the way leaves it a value, if not in normal form.
//
// Errors: 85 and 210 modulo a composite. Polls: in gcds and quotients.

#include "quoly/quoly.h"

namespace kelmar {

// Close an operation whose top and den have no common divisor but numbers: the sign of den, common powers of
// variables, constants. lint_: where numbers are words or doubles; normal_form goes there by itself.
void normal_form(quolynode **q, std::int32_t clear);
void lint_normal_form(quolynode **q, std::int32_t clear);

// Bring a value of unknown state into normal form: a gcd is taken. lint_: as above.
void check_quoly(quolynode **q, std::int32_t clear);
void lint_check_quoly(quolynode **q, std::int32_t clear);

// Take the common number out of top and den. For digit chains.
void sanitize(quolynode *q);

// Take out the denominator that lies in the field part of a tower. Faults: there is no tower.
void quoly_mod_convert(quolynode **q);

// All nine rules hold, down to `levels` levels. For tests and debug builds. Rule 6 costs a gcd.
bool quoly_is_normal(const quolynode *q, std::int32_t levels);

}  // namespace kelmar
