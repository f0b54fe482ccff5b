#pragma once
// gcd/stash.h -- the stash of known gcds.
//
// With many fractions the same pair of polynomials comes up again and again. While the stash is in use, gcds
// of large pairs are kept, by a hash of the pair. Pushes of its use are counted by lookupgcd, which with the
// table itself stands in storage/low_memory.h, since a heap that is used up takes the stash first.
//
// An entry is a quolynode: top is the operand of smaller degree, and den a node whose exp is the mass of the
// entry, whose coef is the larger operand, and whose next is the gcd, null until it is known. What belongs to
// another ground ring is never found.

#include "numbers/plain_quoly.h"
#include "poly/node.h"
#include "storage/low_memory.h"

namespace kelmar {

// default 200; nodes of the pair, above which a gcd in several variables is looked up and kept; nobody
inline std::int32_t gcd_stash_cutoff = 200;
// default 100; the same for one variable, sum of degrees; nobody
inline std::int32_t small_gcd_stash_cut = 100;

// A gcd on its way into the stash. The entry is good while the stash has not been cleared since.
struct pending_gcd {
    quolynode *entry;  // null: nothing is to be kept
    std::uint32_t age;
};
static_assert(std::is_trivial_v<pending_gcd>);

// The stash is in use and takes more.
bool stash_is_open();

// *entry = the entry of the pair a, b in either order when their degrees are equal; a new one, with copies of
// both, when there is none. a, b spared; the same up to units must have been made equal. Purges.
void gcdhash(const polynode *a, const polynode *b, quolynode **entry);

// Look the pair up. Return 1 with *result = a copy of the known gcd (*result replaced); or 0, and the gcd is
// due: pending->entry is to be filled by keep_gcd, once.
int find_gcd(const polynode *a, const polynode *b, polynode **result, pending_gcd *pending);

// Fill the entry with a copy of g, or drop the mark when g is null. pending->entry becomes null. Faults: the
// text `report`, when more entries were filled than begun; goes on.
void keep_gcd(pending_gcd *pending, const polynode *g, const char *report);

// Cut each chain to its newest entry, and free whole chains but `keep` while the mass is above 2/3 of
// initial_memory.
void purge_gcd_stash(std::int32_t keep);

// Free the stash, unless it belongs to the modulus in force. Faults: as release_gcd_stash.
void free_gcd_stash();

// One use less; the last frees the stash.
void pop_gcd_stash();

// Make the stash empty and unused.
void init_gcd_stash();

// Nothing is waited for any more: the gcds that entries were made for were given up.
void forget_pending_gcds();

}  // namespace kelmar
