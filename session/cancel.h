#pragma once
// session/cancel.h -- the statement @ : deletion of names.

#include "session/scanner.h"

namespace kelmar {

// Delete what the next tokens name: a variable, a function, an array, or a list (a, b, ..) of them; the token
// after it is scanned. Errors: 19 20 21 24 28 95 128 176 208.
void rubout(input_stream **stream, name_node **cursor);

}  // namespace kelmar
