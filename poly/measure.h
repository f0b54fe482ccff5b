#pragma once
// poly/measure.h -- lengths, levels, heights and degrees of polynomials. All spare their operands.
//
// flags are indexed by level and have room for all of them: variable_limit + 1 entries. They are set, not
// cleared.

#include "poly/node.h"

namespace kelmar {

inline constexpr std::int32_t constant_depth = 16384;  // poly_depth of a constant: above every real one

std::int32_t poly_length(const polynode *p);                           // nodes of the outer list
std::int32_t fast_poly_length(const polynode *p, std::int32_t limit);  // the same, stopping once above limit

// Nodes of the outer list, negative when it is sparse: top exp - low exp above six times the count. *low =
// the smallest exp. *dense in: look; out: p suits word arrays, which nothing does outside modular mode. It
// does when no exp is negative and, with several variables, every coefficient is a constant.
std::int32_t exp_poly_length(const polynode *p, std::int32_t *low, int *dense);

std::int32_t poly_level(const polynode *p);  // level of the first real variable; 0 for a constant
std::int32_t poly_depth(const polynode *p);  // the same; constant_depth for a constant

// Levels on the deepest path below leading wrappers; 0 for a number.
std::int32_t poly_height(const polynode *p);

// Lists on the deepest path, p itself and wrappers counted; 0 for a number. quick_: on the path of first
// terms.
std::int32_t depth_below(const polynode *p);
std::int32_t quick_depth_below(const polynode *p);

// The exp of the first node at `level`, going down first nodes; 0 when a number comes before.
std::int32_t real_degree(const polynode *p, std::int32_t level);

// Return the real variables on the deepest path of p, a list at `level`, and flag each level that occurs. A
// path counts the lists that are no wrappers.
std::int32_t poly_vars(const polynode *p, std::int32_t level, char *flags);

// The same from level 1, with flags of its own.
std::int32_t driver_poly_vars(const polynode *p);

// Flag the levels that occur with a positive exp in p, a list at `level`.
void mark_vars(const polynode *p, char *flags, std::int32_t level);

// *level = 2, *depth = how deep a gcd of contents looks: the larger of a and b, at most 4, 8, 12 for n below
// 1200, below 10000, above.
void poly_level_depth(std::int32_t a, std::int32_t b, std::int32_t n, std::int32_t *level,
                      std::int32_t *depth);

}  // namespace kelmar
