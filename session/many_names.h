#pragma once
// session/many_names.h -- a second way to the record of a scalar, for sessions with very many.
//
// The buckets of names.h are few, and their chains get long with thousands of variables. From then on every
// record also stands in a table that grows with their number, newest first among those of a slot, so that
// both ways find the same record. Buckets still tell the order of listings.

#include <cstdint>
#include <cstring>

namespace kelmar {

struct var_node;  // session/names.h

// default null; the slots; null while there are few names; name_was_added; reset: never
inline var_node **many_names = nullptr;

// The newest record of the name, or null. many_names must not be null.
var_node *find_among_many(const char *text);

// The record is new at the head of its bucket, or has just left it.
void name_was_added(var_node *v);
void name_was_removed(var_node *v);

}  // namespace kelmar
