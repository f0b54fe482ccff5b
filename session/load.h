#pragma once
// session/load.h -- running the statements of a file.

#include "quoly/quoly.h"
#include "session/scanner.h"

namespace kelmar {

// Run statements from a file until its end, or until &x; nothing is shown. letter 'R': from the beginning of
// the file `name`; 'r': on from where reading stopped, or again from the beginning when all was read. name
// null: ask for it where it is needed; "@" closes the file. *result replaced with the value of the last
// statement. The token in hand afterwards is the one of before. Errors: 28 33 129 149 248 374 and those of
// the statements.
void load_command(quolynode **result, char letter, const char *name);

// The computation is given up, and all loads with it.
void loads_on_unwind();

}  // namespace kelmar
