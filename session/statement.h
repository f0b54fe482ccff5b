#pragma once
// session/statement.h -- one statement, told by its first character.

#include "quoly/quoly.h"
#include "session/scanner.h"

namespace kelmar {

// Run the statement whose first token is in hand. *result replaced with a private value; null
// when it gave none.
// Errors: 3 and those of the statement.
void parse(input_stream **stream, quolynode **result, name_node **cursor);

}  // namespace kelmar
