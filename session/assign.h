#pragma once
// session/assign.h -- the forms of assignment: := , :+ , :- and the declaration  x:;

#include "session/evaluator.h"

namespace kelmar {

// The left side is in *v, announced, the token ":" in hand. Store, and leave the statement's value in *v: at
// the terminal a copy of what was stored, in a stored list 0. Errors: 196 223 224 294 316 317.
void assign(input_stream **stream, operand *v, name_node **cursor);

// Run the statement of a stored list that is a variable's := , its first token in hand. *n = 0. Declines (0)
// when it is another statement, or the variable has no value yet. Errors: those of the value.
int assign_variable(input_stream **stream, quolynode **n, name_node **cursor);

}  // namespace kelmar
