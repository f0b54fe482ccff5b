#pragma once
// session/arr_assign.h -- assignment to arrays.

#include "session/arr_target.h"
#include "session/arr_value.h"
#include "session/scanner.h"

namespace kelmar {

// Behind `:=` : read the right side, and store it; with `diagonal` on the diagonal of the target. Errors: 26
// 43 92 93 138 139 176 244 297 342, those of arr_expr.h.
void assign_array(input_stream **stream, array_target *t, bool diagonal, name_node **cursor);

// The whole array of that target = *v, which is emptied. Errors: 26 43 138 139 297 342.
void assign_whole(array_target *t, arr_value *v);

}  // namespace kelmar
