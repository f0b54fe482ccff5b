#pragma once
// session/func_define.h -- definitions of functions, and the statements they are made of.

#include "session/func_records.h"
#include "session/token_list.h"

namespace kelmar {

// default 0; functions were defined since the last save; funcdef
inline std::int32_t new_funcs = 0;

// *slot = the statements from the token in hand up to the stop word `stop`, which is then in hand. ";"
// separates them. *slot filled as it grows. Errors: 8 9 35 38 103 132 214 319.
void right_side(form_node **slot, const char *stop, list_reader *r);

// *slot = one statement, told apart by its first word; the token behind it is then in hand. Errors: as
// right_side.
void spec_right_side(form_node **slot, const char *stop, list_reader *r);

// Read the definition whose function's name is in hand, and put it before older ones of that name. The token
// behind the closing "." is then in hand. Errors: 5 6 7 8 9 12 35 38 103 132 214 237 319.
void funcdef(input_stream **stream, name_node **cursor);

}  // namespace kelmar
