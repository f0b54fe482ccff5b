#pragma once
// session/func_run.h -- running stored statements: calls of user functions, and control statements.
//
// A stored statement runs by replaying its tokens through the evaluators that serve the terminal. The value
// of a sequence is that of the statement it executed last.

#include "session/evaluator.h"
#include "session/func_records.h"

namespace kelmar {

// default 0; depth of active calls; evaluate; reset: unwind
inline std::int32_t statcount = 0;
// default null; the control statement typed last at the terminal; run_control_statement; reset: never
inline func_node *sys_func = nullptr;

// *n = the value of the function `name` on the arguments that follow; the token behind the name is in hand.
// Values of all arguments are read before the first parameter is bound. Errors: 9 14 15 16 19 206 207, those
// of the body.
void evaluate(input_stream **stream, token_rec *name, quolynode **n, name_node **cursor);

// The same for a call of a stored list, whose name is in hand and no built-in's.
void evaluate_stored(input_stream **stream, quolynode **n, name_node **cursor);

// Execute one statement. *n replaced with its value. Errors: 9 31, those of the statement.
void getval(input_stream **stream, cond_node *cond, quolynode **n);

// Execute the statements until a flag asks to leave. *n = the value of the last one; null when there was
// none.
void eval_form(input_stream **stream, form_node *form, quolynode **n);

// Some flag asks to leave a sequence of statements.
inline bool leaving()
{
    return (exit_flag | leave_flag | cycle_flag) != 0;
}

// Put the first token of a stored list in hand.
void begin_list(name_node *list);

// Read and run the control statement that begins with `word`: if, for or while; the token behind the word is
// in hand. *n = its value. Errors: those of a definition, and of the statements.
void run_control_statement(token_rec *word, input_stream **stream, quolynode **n, name_node **cursor);

// Run sys_func, which must not be null, once more; the token behind it is in hand. *n = its value.
void rerun_control_statement(input_stream **stream, quolynode **n);

}  // namespace kelmar
