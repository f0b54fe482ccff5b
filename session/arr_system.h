#pragma once
// session/arr_system.h -- the system array [<]: the array value of the last array expression.

#include "session/arr_value.h"

namespace kelmar {

// default empty; the system array: its shape, and its frames when it is sparse; arr_rows 0: it is empty;
// fill_syst_array; reset: never
inline array syst;
// default null; the entries of a dense system array, in column-major order; null: unset
inline quolynode **syst_entries = nullptr;

inline bool system_array_is_empty()
{
    return syst.arr_rows == 0;
}

// [<] = v: owned entries move, others are copied; v is empty then. What [<] was is freed. The main loop shows
// it.
void fill_syst_array(arr_value *v);

// v stands for the system array. Errors: 175 when it is empty; then v is the scalar 0.
void copy_syst(arr_value *v);

// Give all array values in flight up, and what was set aside for them.
void arrays_on_unwind();

// Call f on the place of each entry of the system array, and of each entry that running expressions own.
void for_each_system_entry(void (*f)(quolynode **value));
void for_each_value_entry(void (*f)(quolynode **value));

// Call f on each entry of every array, of the system array, and of running expressions. What it leaves null
// becomes 0; zeros of sparse arrays go.
void for_each_array_entry(void (*f)(quolynode **value));

}  // namespace kelmar
