#pragma once
// session/attach.h -- adjoining and cancelling polynomial variables.

#include "session/scanner.h"

namespace kelmar {

// Adjoin or cancel a polynomial variable. asks: behind &J , the name is asked for; else from the = or > of
// &(J = x) on, and `)` is left in hand. All stored values follow. Errors: 4 24 28 124 126 135 169 228 355 356
// 360 361 362.
void attach_poly(input_stream **stream, name_node **cursor, bool asks);

}  // namespace kelmar
