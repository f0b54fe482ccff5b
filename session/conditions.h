#pragma once
// session/conditions.h -- conditions of if and while.
//
// Comparisons joined by and, or, not, and grouped by square brackets. An expression alone is true exactly
// when its value is the number 1. All operands are evaluated.

#include "session/scanner.h"

namespace kelmar {

// 1 or 0 for the condition whose first token is in hand; the token behind it is in hand afterwards. `and`
// binds tighter than `or`. Errors: 13 104 123 153, those of expressions.
int bool_expre(input_stream **stream, name_node **cursor);

// Evaluate the condition that is a statement's header. Errors: as bool_expre.
bool header_holds(input_stream **stream, name_node *header);

}  // namespace kelmar
