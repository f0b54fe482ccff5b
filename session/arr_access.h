#pragma once
// session/arr_access.h -- entries of arrays, as values and as targets.

#include "matrix/array.h"
#include "session/evaluator.h"

namespace kelmar {

// default 1; index of the first entry of arrays, 0 or 1; &a; reset: never
inline std::int32_t addresser = 1;

// The newest array of the name, or null. Fills name->index.
array *find_array_named(token_rec *name);

// The same; null after error 28.
array *known_array(token_rec *name);

// The name as the array tables have it. Fills name->index.
array_name array_name_of(token_rec *name);

// *value = an index or a bound, a sum of values with the ring of residues left. Declines (0) after an error.
// Errors: `wrong` when it is no number, 47 when it is 2^31 or more in magnitude.
int read_index(input_stream **stream, std::int32_t *value, int wrong, name_node **cursor);

// One or two coordinates, as they are written.
struct coordinates {
    std::int32_t i, j;
    bool two;
};

// Read the coordinates behind the `[` in hand; the token behind their closer is in hand then. Declines (0)
// after an error. Errors: 47 61 118.
int evalcoords(input_stream **stream, coordinates *c, char closer, name_node **cursor);

// v = the entry of that name, the `[` in hand. An unset entry of an ordinary array becomes 0; an absent one
// of a sparse array leaves v->p null. Errors: 28, those of evalcoords and 27: then v is 0.
void retrieve_entry(input_stream **stream, token_rec *name, operand *v, name_node **cursor);

// The same for an array that is known; the coordinates are still to be read.
void retrieve_entry_of(input_stream **stream, array *a, const char *name, operand *v, name_node **cursor);

// v = the entry at those coordinates. Declines (0) after error 27: v is 0 then.
int entry_operand(array *a, const coordinates *c, const char *name, operand *v);

// v = a copy of the entry of [<], which is not empty, the `[` in hand. An unset one becomes 0, with a
// warning.
void retrieve_system_entry(input_stream **stream, operand *v, name_node **cursor);

// Make v->p the place of the entry now, after arrays have moved; null when it is absent or gone.
void refresh_entry(operand *v);

// The entry = *value, which is taken over. A zero takes the entry of a sparse array away. When its array has
// gone, the value is dropped.
void store_entry(operand *v, quolynode **value);

}  // namespace kelmar
