#pragma once
// session/array_args.h -- how built-in functions read arrays as arguments.

#include "matrix/array.h"
#include "session/scanner.h"

namespace kelmar {

enum star_use { star_ignored, star_allowed };  // a * in front: the array may be consumed

// `[` should be in hand. Return the stored array in the brackets, whole; the token behind its `]` is in hand
// then. Null after an error: 24 28 125 178 182 217 218 219 220 221, and `section` for a part of an array.
array *read_stored_array(input_stream **stream, star_use star, int section, name_node **cursor);

// Read `([a]` behind the name in hand. Null after an error: also 177.
array *read_command(input_stream **stream, star_use star, int section, name_node **cursor);

// Read `[a]` or `([a])` behind the name in hand. Null after an error: also 1.
array *read_one_array(input_stream **stream, name_node **cursor);

}  // namespace kelmar
