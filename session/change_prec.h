#pragma once
// session/change_prec.h -- the change of the ground ring of a session, with all that is stored.
//
// Values are converted, never dropped: integers go to their residues or to the element codes of a table
// field, residues to the integers that they stand for, all of them to doubles when a floating session begins.
// A rational whose denominator vanishes becomes 0, and is told.

#include "numbers/mode.h"
#include "session/scanner.h"

namespace kelmar {

inline constexpr std::int32_t largest_modulus = 2147483646;

// default the integers; the ring that stored values are in; the changes below. What is abandoned may have
// left another one: every restart makes it live
inline ground_ring session_ring = {0, 0, 0, 0, -1, 0, 0, 0, 0, 0, 0, 0};

// default 0; a relation was changed while words were the numbers; &P; reset: never
inline std::int32_t changed_in_modmode = 0;

// poly_cutoff = v, and with it the cutoff of every polynomial variable that had the old value.
void reset_cutoffs(std::int32_t v);

// From modular mode to integers and rationals. tells: write what happens. Errors: 353; then nothing has
// changed, and 0 is returned.
int leave_modular(bool tells);

// From integers and rationals to residues modulo m, or to the table field of 256 or 65536 elements. tells:
// write in which ring the session is then; announces: write that it changes. Errors: 62 where numbers are
// words or doubles; 84 for m out of 2 .. 2147483646, which becomes 2.
void enter_modular(std::int32_t m, bool tells, bool announces);

// The last step of the start of a floating session: what the start-up file has stored becomes doubles.
void enter_floats();

// laurent = v, and all stored values follow. Errors: 377 in the word rings. Declines (0) after it.
bool change_laurent(std::int32_t v);

}  // namespace kelmar
