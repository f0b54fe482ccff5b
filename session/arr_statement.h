#pragma once
// session/arr_statement.h -- statements about arrays: the doors that other statements knock at.

#include "quoly/quoly.h"
#include "session/scanner.h"

namespace kelmar {

// Run the array statement that begins with `kind` ('[', '~', '"', 'A', 'M', 'S', 'T', or a determinant
// letter), its first token in hand; behind the word with S and T. Errors: 28 72 107 194, those of
// arr_assign.h.
void arr_parse(input_stream **stream, quolynode **result, name_node **cursor, char kind);

// The built-ins Sumup and Trace, their word in hand.
void builtin_array_sum(input_stream **stream, quolynode **n, name_node **cursor);
void builtin_trace(input_stream **stream, quolynode **n, name_node **cursor);

// *p = the slot of entry name[...], the token `[` in hand; null for an absent sparse entry. Errors: 28.
void new_arretrieve(input_stream **stream, token_rec *name, quolynode ***p, name_node **cursor);

// Delete the newest array of the name, with `every` all of them. Declines (0) when there is none. Errors: 138
// 139 342.
int remove_arrays(token_rec *name, bool every);
void remove_all_arrays();

// Delete all arrays of the name but the newest. Declines (0) when there is none.
int keep_newest_array(token_rec *name);

}  // namespace kelmar
