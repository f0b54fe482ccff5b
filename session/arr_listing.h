#pragma once
// session/arr_listing.h -- arrays in listings, saves and output lists.

#include <cstdio>
#include "session/write_out.h"

namespace kelmar {

// Write all arrays, from the oldest on, as statements that bring them back; parameters are left out.
void save_arrays(std::FILE *out);

// The same for the newest array of that name. Declines (0): there is none.
bool save_array(std::FILE *out, token_rec *name);

// Write name and shape of the arrays. names_only: of the first ones.
void describe_arrays(bool names_only);

// Write the array that the tokens from the `[` in hand on denote, as an item of an output list; the token
// behind it and its form is then in hand. single: no form may follow. Errors: 28, those of arr_expr.h.
void write_array_item(input_stream **stream, name_node **cursor, output_place *place, bool single);

}  // namespace kelmar
