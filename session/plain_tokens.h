#pragma once
// session/plain_tokens.h -- what the walk over stored tokens knows of each.
//
// The form of a token is told once, when a walk first meets its list, and literals get their value then; what
// remains for each round is a switch on one byte.

#include "session/token.h"

namespace kelmar {

// Tell the forms from the token to the end of its list, and whether any of them is for the evaluators only.
[[gnu::noinline]] void tell_forms(name_node *list);

inline void look_at(name_node *t)
{
    if (__builtin_expect(t->form == form_untold, 0)) tell_forms(t);
}

}  // namespace kelmar
