#pragma once
// session/arr_target.h -- the bracketed denotations of stored arrays: [a], [a[2~3, 1]], [<], [%e], [%[e]].

#include "session/arr_value.h"
#include "session/scanner.h"

namespace kelmar {

struct array_target {
    token_rec name;                       // of a named array; empty for the others
    array *a;                             // null: there is none of that name yet, or the slot is empty
    std::int32_t system;                  // it is [<]
    std::int32_t slot;                    // from 0: its place in the array of arrays; -1: it is none
    std::int32_t section;                 // a part of it; whole otherwise
    std::int32_t row0, col0, rows, cols;  // the part, from 0
};

// default null; the array of arrays; made at first use; reset: never
inline array **arrstash = nullptr;

// The token in hand, behind `[`, begins a denotation of a stored array; `<` only if `]` follows, which the
// caller finds out.
bool begins_target();

// *t = the denotation whose first token behind `[` is in hand; the token behind its closing `]` is in hand
// then. Declines (0) after an error. Errors: 24 28 30 55 56 57 58 59 125 217 218 219 220 221.
int left_side(input_stream **stream, array_target *t, name_node **cursor);

// *t = [<], whose `]` is in hand; the token behind it is in hand then.
int system_target(input_stream **stream, array_target *t, name_node **cursor);

// *slot = the place that the index behind %[ denotes, `[` in hand; the token behind `]` is in hand then.
// Declines (0) after an error. Errors: 217 218 219 221.
int get_arr_arr(input_stream **stream, std::int32_t *slot, name_node **cursor);

// The array in that place, or null.
array *array_in_slot(std::int32_t slot);

// Find the array of the target again, after statements have run.
void refresh_target(array_target *t);

// v stands for what the target denotes. Errors: 28 175 220 244; then v is the scalar 0.
void refer_to_target(array_target *t, arr_value *v);

}  // namespace kelmar
