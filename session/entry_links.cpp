// session/entry_links.cpp -- arrays and entries that tokens of a linked body name.
#include "session/entry_links.h"
#include <cstdlib>
#include "session/arr_access.h"
#include "numbers/heap.h"
#include "session/int_expr.h"
#include "session/report.h"

namespace kelmar {

void new_link(entry_link **list, entry_link **link)
{
    entry_link *fresh = static_cast<entry_link *>(heap_record(sizeof(entry_link)));
    *fresh = {};
    fresh->next = *list;
    *list = fresh;
    *link = fresh;
}

void free_links(entry_link **list)
{
    while (*list) {
        entry_link *gone = *list;
        *list = gone->next;
        std::free(gone);
    }
}

void link_to_array(entry_link *link, array *a)
{
    link->target = a;
    link->stamp = a ? a->arr_time : 0;
}

// Entries ---------------------------------------------------------------------------------------------------

// The token in hand as if it were not linked.
static void retrieve_by_name(input_stream **stream, operand *v, name_node **cursor)
{
    token_rec name = token;
    scanner(stream, &token, cursor);
    retrieve_entry(stream, &name, v, cursor);
}

// Arrays have moved: find the place again. Declines (0) when the array is gone.
static int find_again(entry_link *link)
{
    entry_place place;
    if (!find_entry(&link->at, &place)) return 0;
    link->slot = place.slot;
    link->at.row = place.row;
    link->at.col = place.col;
    link->at.moves = array_moves;
    return 1;
}

static void retrieve_fixed(input_stream **stream, entry_link *link, operand *v, name_node **cursor)
{
    const bool stale = link->at.moves != array_moves || !link->slot;  // an absent one may be there by now
    if (stale && !find_again(link)) {
        retrieve_by_name(stream, v, cursor);
        return;
    }
    while (*cursor && (*cursor)->text[0] != ']') *cursor = (*cursor)->next;
    scanner(stream, &token, cursor);
    v->at = link->at;
    v->p = link->slot;
    if (v->at.moves != array_moves) {  // an interrupt was answered in between
        refresh_entry(v);
    } else if (v->p && !*v->p) {
        quoly_set(0, v->p);
    }
}

// Read the coordinates behind the `[` in hand; the token behind `]` is in hand then. Declines (0) after an
// error.
static int read_coordinates(input_stream **stream, coordinates *c, name_node **cursor)
{
    std::int32_t saved;
    *c = {0, 0, false};
    check_modular(&saved);
    scanner(stream, &token, cursor);
    old_iexpre(stream, &c->i, cursor);
    if (token.text[0] == ',') {
        scanner(stream, &token, cursor);
        old_iexpre(stream, &c->j, cursor);
        c->two = true;
    }
    restore_modular(&saved);
    if (token.text[0] == ']') {
        scanner(stream, &token, cursor);
        return 1;
    }
    error(err_bad_index_end, token.text);
    return 0;
}

static void retrieve_computed(input_stream **stream, const entry_link *link, operand *v, name_node **cursor)
{
    coordinates c;
    const token_rec name = token;
    scanner(stream, &token, cursor);
    const bool whole = read_coordinates(stream, &c, cursor) != 0;
    if (whole && link->target && link->target->arr_time == link->stamp) {
        entry_operand(link->target, &c, name.text, v);
        return;
    }
    if (whole) error(err_no_such_array, name.text);  // an index has cancelled it
    v->at.array_time = 0;
    quoly_set(0, &v->n);
    v->p = &v->n;
}

void retrieve_linked_entry(input_stream **stream, operand *v, name_node **cursor)
{
    const name_node *at = *cursor;
    entry_link *link = static_cast<entry_link *>(at->ptr);
    if (at->kind == linked_entry) {
        retrieve_fixed(stream, link, v, cursor);
    } else if (!link->target || link->target->arr_time != link->stamp) {
        retrieve_by_name(stream, v, cursor);
    } else {
        retrieve_computed(stream, link, v, cursor);
    }
}

}  // namespace kelmar
