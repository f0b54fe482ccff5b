#pragma once
// session/builtin_flow.h -- built-ins that define functions, leave them, or run a range: Func, Return, Int,
// Sigma, Prod. The built-in's name is in hand; *n replaced with its value; the token behind is then in hand.

#include "quoly/quoly.h"
#include "session/scanner.h"

namespace kelmar {

// Errors: those of funcdef. The value is 0.
void builtin_func_definition(input_stream **stream, quolynode **n, name_node **cursor);

// Leave the function with the value of (expr). Outside a function it warns, and only has the value. Errors: 1
// 177.
void builtin_return(input_stream **stream, quolynode **n, name_node **cursor);

// The value of (expr) on machine integers. Errors: 1 81 177 274, those of int_expr.h.
void builtin_int(input_stream **stream, quolynode **n, name_node **cursor);

// Errors: those of sum_mult_up.
void builtin_sigma(input_stream **stream, quolynode **n, name_node **cursor);
void builtin_prod(input_stream **stream, quolynode **n, name_node **cursor);

}  // namespace kelmar
