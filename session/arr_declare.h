#pragma once
// session/arr_declare.h -- statements that make arrays, and arrays of arrays.

#include "quoly/quoly.h"
#include "session/scanner.h"

namespace kelmar {

// Declare arrays: Array a[r, c], b[n], s[r, c] Sparse; the word Array is in hand. *result = 0. Errors: 26 27
// 40 43 125 178, those of evalcoords.
void create_array(input_stream **stream, quolynode **result, name_node **cursor);

// Sparse[a]: the word is in hand. *result = 0. Errors: 24 28 138 176 178 342.
void sparse_statement(input_stream **stream, quolynode **result, name_node **cursor);

// The statement that begins with %, the `[` behind it in hand: %[i] := [a], %[i][j, k] := v, or the value of
// an entry. Errors: 4 217 218 219 220 221 297.
void arr_arr_state(input_stream **stream, quolynode **result, name_node **cursor);

}  // namespace kelmar
