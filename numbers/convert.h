#pragma once
// numbers/convert.h -- the word and the double of a long integer, beside its digits.
//
// A change of the ground ring, and every internal excursion to a residue ring, fills one more view of numbers
// that exist. The digits stay unless they are given up on purpose.

#include "numbers/number.h"

namespace kelmar {

// n->word = the digits of n in the present ring: the residue modulo `modulus`, or an element code of the
// present table field. n restored; with `give_up` its chain is released and n->size is 0.
//
// A table field has no natural image of a long integer: the code is |last digit| mod modulus. With `verbose`,
// a value that is no code already is told, 20 times a statement at most; for one digit below 0 only with
// `sign`.
void change_num(number *n, int give_up, int sign);

// n->real = the digits of n as a double, infinite when they are out of its range. n restored.
void change_flote(number *n);

}  // namespace kelmar
