#pragma once
// session/switch_commands.h -- what the commands behind & do.
//
// A command begins with its letter in hand and ends with its own last token in hand. Its value is 0 unless it
// leaves another one in *result. Errors: 1 73 114 131 222 262 285 303 350 and those of expr.h.

#include "session/switches.h"

namespace kelmar {

#define KELMAR_FLAG(plain, under, code, global, talk, values, hook, on, off, set_on, set_off, unchanged, what)
#define KELMAR_NUMBER(plain, under, code, global, values, ask, assign, what)
#define KELMAR_TEXT(plain, under, code, run, take, what)
#define KELMAR_TAIL(plain, under, code, run, read, what)                                                     \
    void run(input_stream **stream, quolynode **result, name_node **cursor);                                 \
    void read(input_stream **stream, quolynode **result, name_node **cursor);
#define KELMAR_COMMAND(plain, under, run, what)                                                              \
    void run(input_stream **stream, quolynode **result, name_node **cursor);
#include "session/switches.def"
#undef KELMAR_FLAG
#undef KELMAR_NUMBER
#undef KELMAR_TEXT
#undef KELMAR_TAIL
#undef KELMAR_COMMAND

}  // namespace kelmar
