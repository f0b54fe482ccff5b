#pragma once
// session/loop.h -- the read-evaluate-display loop.

#include "quoly/quoly.h"
#include "session/scanner.h"

namespace kelmar {

// A token that may end a statement, ":" among them.
bool ends_statement(const token_rec *tok);

// Read, run and show statements. Returns when the user leaves a pushed level; at level 1 never.
void statement_loop();

}  // namespace kelmar
