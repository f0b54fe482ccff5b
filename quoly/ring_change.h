#pragma once
// quoly/ring_change.h -- scalar values taken to another ground ring, for good or for a while.
//
// See poly/ring_change.h for the bracket, the fix records and how they are undone.

#include "poly/ring_change.h"
#include "quoly/quoly.h"

namespace kelmar {

// *q modulo `modulus`, in lowest terms there. Residues are live. What *q holds is set aside and comes back
// with restore_from_mod(&masterfix), or leave_ring. A value whose denominator vanishes is told, and is no
// value to work with. Errors: 85 modulo a composite. Polls: in gcds.
void quoly_change_to_mod(quolynode **q);

// *q as a value of the word ring that is live, for good. *q null: it has no value there, as told, or is 0, or
// was null; the caller sets it to 0. Modulo a composite common factors stay. Errors: none. Polls: in gcds.
void quoly_change_num(quolynode **q);

// The words of *q are true integers: make them residues of the modular ring that is live. *q replaced.
// Declines (0), with *q as it was: a number other than 0 would vanish. A composite modulus may leave *q null,
// as quoly_change_num does. Errors: none. Polls: in gcds.
int check_and_mod(quolynode **q);

// q, which holds residues, as digits; `modulus` is still that of q. In place.
void quoly_change_from_mod(quolynode *q);

// Fill the double of each number, beside its digits.
void quoly_put_flote(quolynode *q);

// *q, which holds digits, as a value of the floating ring, for good: the digits are released, a number that
// is the denominator is divided in, any other denominator is monic. *q replaced, never null.
void quoly_change_to_flote(quolynode **q);

}  // namespace kelmar
