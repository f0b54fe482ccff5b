#pragma once
// session/arr_stored.h -- what happens to stored arrays as a whole: cancellation, and new variables.

#include "quoly/quoly.h"
#include "session/token.h"

namespace kelmar {

// Delete the newest array of the name, with `every` all of them. Declines (0) when there is none. Errors: 138
// 139 342.
int remove_arrays(token_rec *name, bool every);
void remove_all_arrays();

// Delete all arrays of the name but the newest. Declines (0) when there is none.
int keep_newest_array(token_rec *name);

// The array entries follow when a variable was adjoined as level 1, and when the variable of a level is set
// to 1, before it goes.
void arrays_on_adjoin();
void arrays_on_cancel(std::int32_t level);

// The array entries follow when a variable has got a relation: `reduce` takes a value below it.
void arrays_on_relation(void (*reduce)(quolynode **value));

}  // namespace kelmar
