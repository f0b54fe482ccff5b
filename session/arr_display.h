#pragma once
// session/arr_display.h -- the text of arrays.
//
// Dense arrays of numbers are shown row by row; with an entry that is no number, one entry a line; sparse
// ones their entries, one a line. Saves are text that the evaluator reads back.

#include <cstdio>
#include "session/arr_value.h"

namespace kelmar {

inline constexpr std::int32_t default_width = 4;  // columns of an entry in row form

// How an array is written.
struct array_form {
    const char *name;         // in front of entries, as %s
    std::int32_t width;       // of a column; 0: packed
    std::int32_t one_a_line;  // every entry on a line of its own, whatever they are
    std::int32_t as_char;     // numbers are written as the characters of these codes
};

// Write the array, or the section that v stands for.
void arrdisplay(std::FILE *out, const array_form *form, arr_value *v);

// Write [<], as the main loop does.
void display_system_array();

}  // namespace kelmar
