#pragma once
// session/func_run.h -- calls of user functions, and control statements typed at the terminal.

#include "numbers/plain_quoly.h"
#include "session/names.h"

namespace kelmar {

// default 0; depth of active calls; evaluate; reset: unwind
inline std::int32_t statcount = 0;

// *n = the value of the function `name` on the arguments that follow. Errors: 16.
void evaluate(input_stream **stream, token_rec *name, quolynode **n, name_node **cursor);

// Unlink and release the parameters of a call that an error abandons.
void release_params(func_node *function);

// Read and run the control statement that begins with `word`: if, for or while. *n = its value. Errors: 16.
void run_control_statement(token_rec *word, input_stream **stream, quolynode **n, name_node **cursor);

}  // namespace kelmar
