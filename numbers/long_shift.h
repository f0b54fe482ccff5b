#pragma once
// numbers/long_shift.h -- shifts of long integers by bits, in place on their chains.

#include "numbers/number.h"

namespace kelmar {

// n = n / 2^k, n >= 0, any k >= 0. n replaced in place.
void shift_right(number *n, std::int32_t k);
void gen_shift_right(number *n, std::int32_t k);  // 0 < k < 28
void shift_right_1(number *n);
void shift_right_2(number *n);

// n = n * 2^k, n >= 0, any k >= 0. n replaced in place.
void shift_left(number *n, std::int32_t k);

}  // namespace kelmar
