#pragma once
// session/literal.h -- numeric literals, digit token by digit token.
//
// Digits are tokens like any other, so blanks between them vanish: 12 34 is 1234.

#include "quoly/quoly.h"
#include "session/scanner.h"

namespace kelmar {

struct open_digits;

// default null; the whole numbers that are being read, newest first; new_readin, release_digits; reset:
// unwind
inline open_digits *newest_digits = nullptr;

// Forget those that were begun since newest_digits was `mark`.
void release_digits(open_digits *mark);

// n = the digits in hand and behind, in the live view; n replaced. *ndigits = how many were read.
void new_readin(input_stream **stream, number *n, name_node **cursor, std::int32_t *ndigits);

// *n = the literal whose first token, a digit or ".", is in hand: digits, decimals, in float mode a power
// of ten whose sign is compulsory. *n replaced. Errors: 341 376.
void read_literal(input_stream **stream, quolynode **n, name_node **cursor);

}  // namespace kelmar
