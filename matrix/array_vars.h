#pragma once
// matrix/array_vars.h -- the entries of all arrays follow when a variable comes, goes, or gets a relation.

#include "matrix/sparse.h"

namespace kelmar {

// Wrap *value, as the value of a new outermost variable asks; null is allowed.
void wrap_entry(quolynode **value);

// Wrap each entry of every array: a variable was adjoined as level 1.
void redo_sparses();
void redo_dense();

// Reduce each entry by `reduce`: a variable has got a relation, by which its high powers go. Sparse arrays,
// whose entries that become zero go, and ordinary ones, where an entry that it leaves null becomes 0.
void sparse_update(void (*reduce)(quolynode **value));
void dense_update(void (*reduce)(quolynode **value));

// Set the variable of the level to 1 in each entry, and take that level away. An entry whose denominator
// vanishes becomes 1, with a report of the first 40. Entries of sparse arrays that become zero go.
void sparse_down(std::int32_t level);
void dense_down(std::int32_t level);

// The same for one value; `report` is what is told when it becomes 1. null is allowed.
void entry_down(quolynode **value, std::int32_t level, const char *report);

// default 0; denominators that vanished, of this cancellation; entry_down; reset: by who begins one
inline std::int32_t badcnt = 0;
inline constexpr std::int32_t told_cases = 40;  // of them are reported

}  // namespace kelmar
