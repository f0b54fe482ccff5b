#pragma once
// numbers/random.h -- random words, and the random values of the language.
//
// All draw on the C library's random(), which the session seeds with 1 at its start: a session without a
// clock in it can be repeated.

#include <cstdint>
#include "numbers/number.h"

namespace kelmar {

struct quolynode;

inline constexpr double two_thirty1 = 2147483648.0;  // one above the largest value of random()

// default 1, set at start; random values are divided by it; &_r; reset: mode
inline number rand_denom_n;

std::int32_t rand_integer();   // 28 bits of two draws, the first draw on top
std::int32_t rand_integer2();  // the 14 leading bits of one draw
std::int32_t rand_integer3();  // 0 .. 48870, with the processor time in it

// *q = a random 28-bit integer divided by rand_denom_n, in the live view. use_clock: the processor time is
// added to it. *q, null or a plain number, replaced. Errors: those of quot, for a rand_denom_n that is 0 or
// not invertible.
void randomize(int use_clock, quolynode **q);

}  // namespace kelmar
