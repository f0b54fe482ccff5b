#pragma once
// session/arr_input.h -- entries of arrays that the user types in.

#include "quoly/quoly.h"
#include "session/scanner.h"

namespace kelmar {

// Ask for the entry of that name, the `[` in hand; @ leaves it as it was. *result = a copy of it, or 0.
// Errors: 27 28 61 118 242, those of the answer.
void arrinsert(input_stream **stream, token_rec *name, quolynode **result, name_node **cursor);

// Ask for the entries of the whole array whose `[` is in hand, in storage order; @ stops. Behind :char one
// line of text is read, a character an entry. *result = 0. Errors: 28 107 242 334, those of the answers.
void whole_arrinsert(input_stream **stream, quolynode **result, name_node **cursor);

}  // namespace kelmar
