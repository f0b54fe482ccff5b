#pragma once
// session/list_functions.h -- the text of user functions, in the form in which it can be typed again.

#include <cstdio>
#include "session/names.h"

namespace kelmar {

// Write the definition of f. saved: in the form that a saved file has; else as a listing.
void listform(std::FILE *out, const func_node *f, bool saved);

// Every function, those of a bucket from the oldest on.
void list_all_functions(std::FILE *out, bool saved);

// List what the token in hand and those behind it name: Name is the newest function of that name, <Name> the
// older ones; `,` separates them. The token behind the list is then in hand.
void list_named_functions(std::FILE *out, bool saved, input_stream **stream, name_node **cursor);

// Write the names of all functions (; in hand), their definitions (*) or those of the named ones. Errors:
// 222.
void listfuncs(input_stream **stream, name_node **cursor);

}  // namespace kelmar
