#pragma once
// session/arr_data.h -- arrays that hold the data of a command: the characters of a text, or cut-offs.

#include "session/scanner.h"

namespace kelmar {

// text = the characters of the array `name`, at most room - 1 of them. Errors: 28. Declines (0) after it.
bool get_from_array(token_rec *name, char *text, int room);

// Set the cutoffs of the polynomial variables from the array whose [ is in hand; leave the token behind its
// ] in hand. Errors: 28.
void get_cut_from_array(input_stream **stream, name_node **cursor);

}  // namespace kelmar
