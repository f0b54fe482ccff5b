#pragma once
// session/arr_literal.h -- arrays that are written out: rows, lists, comprehensions, random ones.

#include "session/arr_value.h"
#include "session/scanner.h"

namespace kelmar {

// v = the array that begins with the `[` before the token in hand, which is not the name of a stored array.
// angle: `<` was passed, and the token in hand is the one behind it.
void arr_literal(input_stream **stream, arr_value *v, name_node **cursor, bool angle);

}  // namespace kelmar
