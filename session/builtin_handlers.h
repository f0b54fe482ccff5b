#pragma once
// session/builtin_handlers.h -- the handlers of session/builtins.def, and what they share.
//
// A handler is called with the built-in's name in hand. It replaces *n, which is announced, and leaves the
// token behind the arguments in hand.

#include "quoly/quoly.h"
#include "session/scanner.h"

namespace kelmar {

#define KELMAR_BUILTIN(index, second, name, handler, ...)                                                    \
    void handler(input_stream **stream, quolynode **n, name_node **cursor);
#include "session/builtins.def"
#undef KELMAR_BUILTIN

// Write "not implemented" and unwind to the restart point.
[[noreturn]] void not_implemented();

// `[` is in hand: *n = the number of entries of the array, the token behind its `]` in hand. Errors: 28.
void read_array_size(input_stream **stream, quolynode **n, name_node **cursor);

// *n = the number of square-free parts of *n, which has no denominator; an array of that name gets them, one
// a row, with their multiplicities.
void square_free_to_array(quolynode **n, token_rec *name);

}  // namespace kelmar
