#pragma once
// session/arr_statement.h -- statements about arrays: the doors that other statements knock at.

#include "quoly/quoly.h"
#include "session/scanner.h"

namespace kelmar {

// Run the statement that begins with the `[` in hand, or with Diag or ~ in hand: an assignment, or an
// expression, whose value becomes [<]. *result = 0. Errors: 4 42 60, those of arr_assign.h, arr_expr.h and
// arr_target.h.
void arr_asstat(input_stream **stream, quolynode **result, name_node **cursor);

// Run the array statement that begins with `kind` ('[', '~', '"', 'A', 'M', 'S', 'T', or a determinant
// letter), its first token in hand; behind the word with S and T. Errors: 28 72 107 194, those of
// arr_asstat.
void arr_parse(input_stream **stream, quolynode **result, name_node **cursor, char kind);

// The built-ins Sumup and Trace, their word in hand.
void builtin_array_sum(input_stream **stream, quolynode **n, name_node **cursor);
void builtin_trace(input_stream **stream, quolynode **n, name_node **cursor);

// *p = the slot of entry name[...], the token `[` in hand; null for an absent sparse entry. Errors: 28.
void new_arretrieve(input_stream **stream, token_rec *name, quolynode ***p, name_node **cursor);

}  // namespace kelmar
