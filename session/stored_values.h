#pragma once
// session/stored_values.h -- all values that outlive a statement, and those that a running one holds.
//
// When the polynomial variables or the ground ring change, every value there is must follow in one stretch.

#include "quoly/quoly.h"

namespace kelmar {

// Call `change` on each slot that holds a scalar value, once: variables, shadowed ones too; the last value;
// what the evaluators of the running statement own. `change` may replace the value, but not with null.
void for_each_stored(void (*change)(quolynode **slot));

}  // namespace kelmar
