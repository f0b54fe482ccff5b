#pragma once
// session/func_params.h -- the arguments of a call.

#include "session/func_records.h"

namespace kelmar {

// Read the arguments of a call of f and bind its parameters; the token behind the function's name is in hand.
// *after = the token behind the arguments. True when a parameter refers to a variable of the caller. Missing
// arguments of value parameters are 0. Errors: 9 14 15 19 206 207, those of the arguments.
bool setargs(input_stream **stream, func_node *f, token_rec *after, name_node **cursor);

}  // namespace kelmar
