#pragma once
// poly/attach.h -- what happens to a polynomial when a variable is cancelled.

#include "poly/node.h"

namespace kelmar {

// *p = *p with the variable of `level` set to 1, and that level taken away. *p consumed and filled: its nodes
// are used again. Errors: none. Polls: no. Cost: each term takes part in as many additions as its list is
// long in binary digits.
void poly_at_one(polynode **p, std::int32_t level);

}  // namespace kelmar
