#pragma once
// storage/low_memory.h -- the answer to a heap that is used up.
//
// The one thing that can be given up in the middle of a computation is the stash of known gcds. While a gcd
// runs, an entry of the stash may be waiting for its answer, so the stash must stay, and the command goes.

#include <cstdint>

namespace kelmar {

struct quolynode;

inline constexpr std::int32_t gcd_stash_lists = 367;  // a prime, for the hash

// default null; known gcds, by hash; the gcd stash; reset: unwind
inline quolynode *gcd_stash[gcd_stash_lists];
// default 0; mass of what gcd_stash holds; the gcd stash; reset: unwind
inline std::uint64_t gcdmass = 0;
// default 0; pushes of the stash: it is in use above 0; &C and whoever suspends it; reset: unwind
inline std::int32_t lookupgcd = 0;
// default 0; entries that wait for the end of a running gcd; polygcd; reset: unwind
inline std::int32_t polygcd_stack_depth = 0;
// default 0; one more whenever entries are freed; the gcd stash; reset: never
inline std::uint32_t gcd_stash_age = 0;
// default -1; the modulus under which the stash was filled, -1 for none; the gcd stash; reset: mode
inline std::int32_t prev_modulus = -1;

// Free all lists of the gcd stash, and mark it as unused.
// Faults: "prev_modulus = modulus in free_gcd_stash" when it was filled under another modulus.
void release_gcd_stash();

// Make room on a heap that refused a request, by freeing the gcd stash; the caller asks again. When the stash
// is unused, or a gcd runs: a warning, and the command ends, at the next safe point where there is a reserve,
// else here. Errors: new_level, which may come back.
void mem_error();

// Set memory aside for what is asked for between a heap that is used up and the next safe point. Called at
// the start, and where the computation has ended or goes on.
void keep_reserve();

}  // namespace kelmar
