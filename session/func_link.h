#pragma once
// session/func_link.h -- Compile: linking the names of a function's body to their storage.
//
// A linked name costs one load in place of a look-up. Parameters are always linked; other names must be
// given, since a linked one keeps to the variable that had the name when the function was linked.

#include "session/func_records.h"

namespace kelmar {

inline constexpr int link_limit = 100;  // names that one function can link

// Run the statement Compile, its name in hand: link the rest of the body at the first time, then run it. *n =
// its value; exit_flag is set, for there is nothing left to run. Errors: 9 19 28 229 230 231 232 233 234.
void compile(quolynode **n, input_stream **stream, name_node **cursor);

// An inner call of f has returned: let the names of its parameters stand for those of the call around it.
void refresh_outer_links(func_node *f);

}  // namespace kelmar
