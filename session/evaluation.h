#pragma once
// session/evaluation.h -- the form q # .. of the language: values put in place of polynomial variables.
//
//   q # v                 v, a factor, for the first variable
//   q # (v, w, ..)        for the first, the second, .. variable
//   q # (x = v, y = w)    by name, all at once
//   q # ([a])             the entries of an array, in the order of storage
//   q # [m]               a square array for the first variable

#include "session/arr_value.h"
#include "session/evaluator.h"

namespace kelmar {

// *n = *n with the values behind # put in; the token behind # is in hand. *n replaced, and announced.
// Errors: 1 28 41 48 187 193 259 338, those of the values, those of quoly/eval.h and of evaluate_at_array. At
// a square array *n becomes 0, and the system array is what comes out.
void get_evalquoly(input_stream **stream, quolynode **n, name_node **cursor);

// r = q at the square array whose `[` is in hand; empty after an error. q announced. Errors: 174, those of
// arr_expr.h.
void evaluate_at_array(input_stream **stream, const quolynode *q, arr_value *r, name_node **cursor);

}  // namespace kelmar
