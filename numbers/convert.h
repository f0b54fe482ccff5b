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

// What a walk over many numbers asks of the ring that it converts to, made once.
struct residue_ring {
    std::uint64_t reciprocal;  // (2^64 - 1) / m, truncated
    std::uint32_t m;           // modulus
    std::int32_t sign;         // as in change_num
};

// *to = the present ring.
void set_residue_ring(residue_ring *to, int sign);

// n->word = the digits of n in that ring, as change_num gives it. Return it. Cost: a product a digit, where
// change_num divides.
std::int32_t fill_residue(number *n, const residue_ring *to);

// n = its word as digits, whatever the mode: one, or two from 2^28 on. With alt_form_display a word above
// modulus / 2 is taken as a negative number, where there is a modulus. n replaced.
void change_from_mod(number *n);

// n->real = the digits of n as a double, infinite when they are out of its range. n restored.
void change_flote(number *n);

// The quotient a / b of two long integers, b not 0, as a double: also where one of them is out of the range
// of doubles. a, b spared.
double digit_ratio(const number *a, const number *b);

}  // namespace kelmar
