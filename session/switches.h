#pragma once
// session/switches.h -- the commands that begin with & .

#include "numbers/plain_quoly.h"
#include "session/scanner.h"

namespace kelmar {

// Run the command behind the & in hand, and scan the token behind it. *result replaced with its value.
void switch_statement(input_stream **stream, quolynode **result, name_node **cursor);

}  // namespace kelmar
