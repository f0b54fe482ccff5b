#pragma once
// session/arr_statement.h -- statements about arrays: the doors that scalar statements knock at.
//
// There are no arrays yet: whatever names one is told that it does not exist.

#include "quoly/quoly.h"
#include "session/scanner.h"

namespace kelmar {

// Run the array statement that begins with `kind` ('[', '~', '"', 'A', 'M', or a determinant
// letter), its first token in hand. Errors: 28.
void arr_parse(input_stream **stream, quolynode **result, name_node **cursor, char kind);

// *p = the slot of entry name[...], the token `[` in hand; null for an absent sparse entry. Errors: 28.
void new_arretrieve(input_stream **stream, token_rec *name, quolynode ***p, name_node **cursor);

// Delete the newest array of the name, with `every` all of them. Declines (0) when there is none.
int remove_arrays(token_rec *name, bool every);
void remove_all_arrays();

// Delete all arrays of the name but the newest. Declines (0) when there is none.
int keep_newest_array(token_rec *name);

}  // namespace kelmar
