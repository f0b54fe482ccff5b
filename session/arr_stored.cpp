// session/arr_stored.cpp -- what happens to stored arrays as a whole.
//
// An array that cannot go, such as one that a running function has as a parameter, ends the cancellation of
// those behind it. When variables come or go the entries follow wherever they stand: in ordinary and sparse
// arrays, in the system array, and in values in flight.
#include "session/arr_stored.h"
#include <cstring>
#include "matrix/array_vars.h"
#include "session/arr_access.h"
#include "session/arr_system.h"
#include "session/arr_value.h"
#include "session/output.h"

namespace kelmar {

// Cancellation ------------------------------------------------------------------------------------------

int remove_arrays(token_rec *name, bool every)
{
    array *a = find_array_named(name);
    if (!a) return 0;
    do {
        if (!removearray(a)) return 1;
        a = every ? find_array_named(name) : nullptr;
    } while (a);
    return 1;
}

void remove_all_arrays()
{
    for (array *&bucket : arr_store) {
        while (bucket) {
            if (!removearray(bucket)) return;
        }
    }
}

int keep_newest_array(token_rec *name)
{
    array *newest = find_array_named(name);
    if (!newest) return 0;
    for (array *a = newest->arr_next; a;) {
        array *next = a->arr_next;
        const array_name n = array_name_of(name);
        if (std::memcmp(a->arr_name.text, n.text, sizeof n.text) == 0 && !removearray(a)) return 1;
        a = next;
    }
    return 1;
}

// Variables ---------------------------------------------------------------------------------------------

void arrays_on_adjoin()
{
    redo_dense();
    redo_sparses();
    for_each_system_entry(wrap_entry);
    for_each_value_entry(wrap_entry);
}

void arrays_on_relation(void (*reduce)(quolynode **value))
{
    dense_update(reduce);
    sparse_update(reduce);
    for_each_system_entry(reduce);
    for_each_value_entry(reduce);
}

// default 0; the level that goes; arrays_on_cancel
static std::int32_t going = 0;

static void system_entry_down(quolynode **value)
{
    entry_down(
        value, going,
        "Warning. A quoly denominator in the system array has become 0.  That entry has been set to 1.\n");
}

void arrays_on_cancel(std::int32_t level)
{
    badcnt = 0;
    going = level;
    dense_down(level);
    sparse_down(level);
    for_each_system_entry(system_entry_down);
    for_each_value_entry(system_entry_down);
    if (badcnt <= told_cases) return;
    std::fprintf(Output, "... There were %d more such cases.\n", static_cast<int>(badcnt - told_cases));
}

}  // namespace kelmar
