#pragma once
// session/int_builtin.h -- built-ins that have a form of their own on machine integers: Bin and GCD.

#include "session/scanner.h"

namespace kelmar {

// *v = the value of the built-in whose name is in hand, in a stored list; the token behind it is then in
// hand. Bin wraps like every product of machine integers. Errors: 1 177 202. Declines (0): another name.
int iread_builtin(input_stream **stream, std::int32_t *v, name_node **cursor);

}  // namespace kelmar
