#pragma once
// poly/div_steps.h -- what all divisions of polynomials are made of: division by one number, and one step of
// a school division.
//
// A step takes the leading term off by structure and adds the multiple of the divisor's other terms. The
// leading term is never computed anew: with doubles it need not cancel, and the degree would not fall.

#include "poly/mul.h"

namespace kelmar {

// Division by a number ------------------------------------------------------------------------------------

enum number_division { by_unit, by_minus_unit, by_inverse, exactly, truncating };

// A number by which many are divided: what is worth doing once is done once.
struct number_divisor {
    number *c;             // borrowed
    std::int32_t inverse;  // in modular mode
    number_division how;
};

// *d divides by c while the live view stays. truncate: whole numbers lose their fractions; otherwise they
// must divide. Declines (0): c is zero, or has no inverse modulo a composite.
int set_divisor(number *c, int truncate, number_divisor *d);

// *p = *p / d in place, null when nothing is left. What vanishes is dropped; with a `code` that is not 0 the
// loss of a long integer is a fault, after a line with the code, less 1001 for each level. Declines (0) as
// soon as a number does not divide: *p is then a list that is only good for being freed.
int divide_in_place(polynode **p, const number_divisor *d, std::int32_t code);

// The number x is a multiple of d.
int number_divides(number *x, const number_divisor *d);

// Steps ---------------------------------------------------------------------------------------------------

// Return the coefficient of the leading term of *rest as a polynomial of its own; *rest loses the term.
polynode *take_lead(polynode **rest);

// *rest = *rest - term * tail, where null stands for zero in *rest and in tail. term, tail restored.
// one_level: all three are lists whose coefficients are numbers: then nothing but new terms is allocated.
void take_off(polynode **rest, polynode *term, polynode *tail, bool one_level, const pt *var);

// Every coefficient of p is a number.
bool height_is_1(const polynode *p);

// The record of the next variable inward, when there is one.
inline const pt *inner(const pt *var)
{
    return var ? var->next : nilpol;
}

}  // namespace kelmar
