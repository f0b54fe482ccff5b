#pragma once
// session/loop_positions.h -- the stored positions of sparse arrays, for loops that run over them.

#include "session/arr_value.h"
#include "session/scanner.h"

namespace kelmar {

// `[` is in hand: [s] for all rows, [s] r for one; more of them, or more row numbers, behind commas. *v,
// announced and empty, becomes the one row of the columns in which any of these rows has an entry, each once,
// rising. The token behind is in hand then. Declines (0) after an error. Errors: 27 28 118 182 220 335.
int read_positions(input_stream **stream, arr_value *v, name_node **cursor);

}  // namespace kelmar
