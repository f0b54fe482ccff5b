#pragma once
// session/arr_join.h -- arrays put together, side by side or end to end.

#include "session/arr_value.h"

namespace kelmar {

// *v = *v and *r joined: columns of one array end to end, other arrays side by side. A scalar is an array of
// one entry. *r is left a valid value. Errors: 43, and those of shapes and sizes that do not fit.
void join_values(arr_value *v, arr_value *r);

}  // namespace kelmar
