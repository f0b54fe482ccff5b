#pragma once
// session/builtins.h -- built-in functions: look-up by name, dispatch by index.

#include "quoly/quoly.h"
#include "session/scanner.h"

namespace kelmar {

// The index of the built-in of that name, by binary search; -1 when there is none.
int find_built_in(const char *name);

// *n = the value of built-in `index`, its name in hand. An index without a case writes "not implemented" and
// unwinds to the restart point.
void builtin_func(input_stream **stream, quolynode **n, name_node **cursor, int index);

}  // namespace kelmar
