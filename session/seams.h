#pragma once
// session/seams.h -- commands whose modules do not exist yet; each moves to its module when that comes.
//
// Until then they decline like a built-in without a case: they write "not implemented" and unwind to the
// restart point. What can be told without the module, such as a wrong ground ring, is told first.

#include "session/switches.h"

namespace kelmar {

// Give a polynomial to mod out by. asks: behind &P , else from the = of &(P = ...) on; `)` is then left in
// hand.
void set_mod_out_command(input_stream **stream, name_node **cursor, bool asks);

// Report an error where negative exponents would meet a relation that forbids them.
void check_for_mod_out();

}  // namespace kelmar
