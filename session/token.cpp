// session/token.cpp -- name records.
//
// They come from the heap one by one and live on a free list for ever after.
#include "session/token.h"
#include <cstdlib>
#include "numbers/heap.h"
#include "storage/accounting.h"

namespace kelmar {

void set_token(token_rec *t, const char *text)
{
    std::memset(t->text, 0, sizeof t->text);
    std::strncpy(t->text, text, token_room - 1);
    t->index = -1;
}

void newname(name_node **n)
{
    name_node *fresh = name_garb;
    if (fresh) {
        name_garb = fresh->next;
    } else {
        fresh = static_cast<name_node *>(heap_record(sizeof(name_node)));
    }
    std::memset(fresh, 0, sizeof *fresh);
    fresh->index = -1;
    *n = fresh;
}

void freename(name_node **n)
{
    while (*n) {
        name_node *rest = (*n)->next;
        (*n)->next = name_garb;
        name_garb = *n;
        *n = rest;
    }
}

std::int64_t count_free_names(std::int64_t limit)
{
    return count_list<name_node, &name_node::next>(name_garb, limit);
}

void list_free_names(std::FILE *out)
{
    for (const name_node *n = name_garb; n; n = n->next) std::fprintf(out, "%s\n", n->text);
}

}  // namespace kelmar
