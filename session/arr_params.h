#pragma once
// session/arr_params.h -- arrays as arguments of user functions.
//
// A parameter is an array record of its own that shares the storage of the array that was passed: what the
// function writes into it, the caller sees at once. While the call runs, that array cannot be cancelled, nor
// given another shape.

#include "matrix/array.h"
#include "session/scanner.h"

namespace kelmar {

struct array_argument {
    array *target;       // null: none was read
    std::int64_t stamp;  // of the target then
};

// *arg = the array whose `[` is in hand; the token behind its `]` is in hand then. Errors: 24 28 176 217 218
// 219 220 221; then the target is null.
void read_array_argument(input_stream **stream, array_argument *arg, name_node **cursor);

// Bind the formal parameter of that name to it. Declines (0) when an argument behind it has cancelled it.
// Errors: 28.
int push_array_argument(token_rec *name, const array_argument *arg);

// Release the parameters bound since array_params was `mark`.
void pop_array_arguments(array *mark);

}  // namespace kelmar
