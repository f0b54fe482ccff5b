#pragma once
// session/postfix.h -- what may follow a primary: a power, a factorial, an evaluation, derivatives.

#include "session/evaluator.h"

namespace kelmar {

// Apply the postfix forms in hand to *v, whose n is announced. One of ^ ! # at most, then any number of ".
// Errors: 22 32 94 116 130 150 347.
void postfix(input_stream **stream, operand *v, name_node **cursor);

// Read an exponent: a factor (as_factor 1), or a sum of terms. *e = it as a word. Declines (0) after error
// 116 or 32.
int get_exponent(input_stream **stream, name_node **cursor, std::int32_t *e, int as_factor);

}  // namespace kelmar
