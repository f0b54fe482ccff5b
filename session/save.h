#pragma once
// session/save.h -- writing a session as statements that bring it back.

#include "session/scanner.h"

namespace kelmar {

// Write a session to the file `name`: switches, polynomial variables, functions, scalars, arrays, and &x;.
// The token in hand is the last one of the command; behind it the functions to be written may be named, all
// otherwise. letter 'S' with name null and a file open: append what the tokens behind name, and no more:
// scalars, [arrays], Functions. name null: ask for it; "@" closes the file. The token in hand afterwards ends
// the statement. Errors: 19 28 33 149 248 374.
void save_command(input_stream **stream, name_node **cursor, char letter, const char *name);

// The computation is given up: what is written from now on is no save.
void saves_on_unwind();

}  // namespace kelmar
