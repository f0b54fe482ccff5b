#pragma once
// poly/measure.h -- lengths, levels, heights and degrees of polynomials. All spare their operands.

#include "poly/node.h"

namespace kelmar {

std::int32_t poly_length(const polynode *p);                           // nodes of the outer list
std::int32_t fast_poly_length(const polynode *p, std::int32_t limit);  // the same, stopping once above limit

// Nodes of the outer list, negative when it is sparse: top exp - low exp above six times the count. *low = the
// smallest exp. *dense in: look; out: p suits word arrays.
std::int32_t exp_poly_length(const polynode *p, std::int32_t *low, int *dense);

std::int32_t poly_level(const polynode *p);   // level of the first real variable; 0 for a constant
std::int32_t poly_depth(const polynode *p);   // 1 plus the wrappers; 16384 for a constant
std::int32_t poly_height(const polynode *p);  // levels on the deepest path below leading wrappers; 0 for a number
std::int32_t depth_below(const polynode *p);
std::int32_t quick_depth_below(const polynode *p);
std::int32_t real_degree(const polynode *p, std::int32_t level);
std::int32_t poly_vars(const polynode *p, std::int32_t level, char *flags);
std::int32_t driver_poly_vars(const polynode *p);
void mark_vars(const polynode *p, char *flags, std::int32_t level);
void poly_level_depth(std::int32_t a, std::int32_t b, std::int32_t n, std::int32_t *level, std::int32_t *depth);

}  // namespace kelmar
