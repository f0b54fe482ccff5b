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

// The array entries follow when a variable was adjoined as level 1, and when the variable of a level is set
// to 1, before it goes.
void arrays_on_adjoin();
void arrays_on_cancel(std::int32_t level);

// text = the characters of the array `name`, at most room - 1 of them. Errors: 28. Declines (0) after it.
bool get_from_array(token_rec *name, char *text, int room);

// Set the cutoffs of the polynomial variables from the array whose [ is in hand; leave the token behind its
// ] in hand. Errors: 28.
void get_cut_from_array(input_stream **stream, name_node **cursor);

}  // namespace kelmar
