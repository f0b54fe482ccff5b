#pragma once
// session/arr_assign.h -- statements that begin with an array in brackets, and declarations.

#include "session/arr_value.h"
#include "session/scanner.h"

namespace kelmar {

// Run the statement that begins with the `[` in hand, or with Diag or ~ in hand: an assignment, or an
// expression, whose value becomes [<]. *result = 0. Errors: 4 28 42 60 92 93 176 244 297, those of arr_expr.h
// and arr_target.h.
void arr_asstat(input_stream **stream, quolynode **result, name_node **cursor);

// Declare arrays: Array a[r, c], b[n], s[r, c] Sparse; the word Array is in hand. *result = 0. Errors: 26 27
// 40 43 125 178, those of evalcoords.
void create_array(input_stream **stream, quolynode **result, name_node **cursor);

// Sparse[a]: the word is in hand. *result = 0. Errors: 24 28 138 176 178 342.
void sparse_statement(input_stream **stream, quolynode **result, name_node **cursor);

// The statement that begins with %, the `[` behind it in hand: %[i] := [a], %[i][j, k] := v, or the value of
// an entry. Errors: 4 217 218 219 220 221 297.
void arr_arr_state(input_stream **stream, quolynode **result, name_node **cursor);

// The whole array of that target = *v, which is emptied. Errors: 26 43 138 139 297 342.
struct array_target;
void assign_whole(array_target *t, arr_value *v);

}  // namespace kelmar
