#pragma once
// session/stored_expr.h -- an expression of a stream that is stored, so that it can run more than once, or
// not at all.

#include "session/func_records.h"
#include "session/token_list.h"

namespace kelmar {

// On the frame of its reader; an error that abandons the reader releases it.
struct stored_expr {
    pending held;
    token_rec behind;  // what stands behind the expression
    name_node *at;     // the stored token in hand
};

// Store what `obtain` reads, obtain_sum or obtain_expression; its first token is in hand before, and again
// after, as a stored one. *e filled.
void open_stored(list_reader *r, void (*obtain)(list_reader *, name_node **), stored_expr *e);

// The token behind the expression is in hand again, and what was stored is released.
void close_stored(stored_expr *e);

}  // namespace kelmar
