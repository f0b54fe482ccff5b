#pragma once
// session/set_switch.h -- the form &(x = v), which sets a switch without a question.
//
// Saved files and programs use it, and it is the only way to give a switch a value from an expression.

#include "session/switches.h"

namespace kelmar {

// Set the switch of &(x = v), the ( in hand. *result = v, or 0 where v is no number of the user's. Errors:
// 4 28 33 62 73 114 133 135 136 137 141 143 147 209, those of the switch, and those of expr.h.
void set_switch(input_stream **stream, quolynode **result, name_node **cursor);

}  // namespace kelmar
