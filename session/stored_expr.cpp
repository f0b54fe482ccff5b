// session/stored_expr.cpp -- an expression of a stream that is stored.
#include "session/stored_expr.h"

namespace kelmar {

void open_stored(list_reader *r, void (*obtain)(list_reader *, name_node **), stored_expr *e)
{
    open_pending(&e->held);
    obtain(r, &e->held.names);
    e->behind = token;
    e->at = e->held.names;
    set_token(&token, e->at->text);
}

void close_stored(stored_expr *e)
{
    token = e->behind;
    close_pending(&e->held);
    freename(&e->held.names);
}

}  // namespace kelmar
