#pragma once
// matrix/array_rings.h -- the entries of all arrays follow a change of the ground ring.

#include "matrix/sparse.h"

namespace kelmar {

// The link of a node that vanished modulo the modulus, and comes back.
struct sparse_fix_record {
    colm **link;
    colm *node;
    sparse_fix_record *next;
};

// default null; the vanished nodes, last unlinked first; fast_change_spar; reset: restore_sparsefix
inline sparse_fix_record *sparse_fix = nullptr;

// Call `change` on the value in each slot of the store that is set; one that it leaves null becomes 0.
void change_arrays(void (*change)(quolynode **value));

// The same for each sparse array whose frames are of another mode than modularmode, and note the new mode;
// entries that become zero go. With `all` whatever their mode.
void change_sparses(void (*change)(quolynode **value), bool all);

// Into modular mode and back, for a chain that is no array's own. Going in, nodes whose value becomes zero
// are unlinked and remembered; coming out, they are freed. Errors: 85. Polls: in gcds.
void fast_change_spar(sparse_frame *frames, std::int32_t rows, bool into);

// Put the nodes that vanished back where they were. Their values have been restored.
void restore_sparsefix();

}  // namespace kelmar
