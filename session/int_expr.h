#pragma once
// session/int_expr.h -- the evaluator on machine integers.
//
// It runs the statements of a function behind `Integer`, and reads loop bounds there. It mirrors the
// evaluator of values on 32-bit words: division truncates, and what does not fit wraps. It reads stored lists
// only. A plain read of a variable copies nothing, and no value record is made.

#include "quoly/quoly.h"
#include "session/scanner.h"

namespace kelmar {

// *result = a sum of terms. Errors: 1 2 19 22 32 63 68 94 109 129 226 227 340.
void old_iexpre(input_stream **stream, std::int32_t *result, name_node **cursor);

// The same; may assign, and the result is then 0. Errors: also 316 317.
void iexpre(input_stream **stream, std::int32_t *result, name_node **cursor);

// Run one statement of values; *n replaced with its value.
void integer_statement(input_stream **stream, quolynode **n, name_node **cursor);

// *value = a bound of a loop. Errors: `wrong` when it is no number, 47 when it is 2^31 or more in magnitude.
void obtain_int(input_stream **stream, std::int32_t *value, int wrong, name_node **cursor);

}  // namespace kelmar
