#pragma once
// gcd/measure.h -- cheap sizes of polynomials, for choosing a method.
//
// Only orders of magnitude matter, so all but the last few stop early: what is above the bound is as good as
// any other value above it. All spare p. Terms are the products of powers with a number: the leaves.

#include "poly/node.h"

namespace kelmar {

// Nodes --------------------------------------------------------------------------------------------------

// Nodes on all levels. Each list ends its walk above the bound, 800, 1000, 10000, 100; the value is at most
// twice the bound.
std::int32_t big_node_total(const polynode *p);
std::int32_t bigger_node_total(const polynode *p);
std::int32_t bigg_node_total(const polynode *p);
std::int32_t new_node_total(const polynode *p);
std::int32_t node_total(const polynode *p);

// Return min(node_total, limit + 1).
std::int32_t poly_nodes(const polynode *p, std::int32_t limit);

// Nodes of p and what they weigh: the product of |exp| + 1 along the way to the node. Stops at 4000 nodes.
struct node_weight {
    std::int32_t nodes;
    std::int64_t weight;
};
node_weight expon_node_total(const polynode *p);

// Terms --------------------------------------------------------------------------------------------------

// Terms, stopping above 30, 2000, 200000, and never.
std::int32_t fast_numterms(const polynode *p);
std::int32_t fast_f_numterms(const polynode *p);
std::int32_t f_poly_numterms(const polynode *p);
std::int32_t q_poly_numterms(const polynode *p);
std::int32_t poly_numterms(const polynode *p);

// Shape --------------------------------------------------------------------------------------------------

// Coefficients of the outer list that are no numbers.
std::int32_t polys_there(const polynode *p);

// The sum over the coefficients of p of the exponents of their leading terms; stops above `enough`.
std::int64_t sum_degrees(const polynode *p, std::int64_t enough);

// The sum of the weights of the nodes of p, as expon_node_total has it. Stops above weight_limit.
inline constexpr std::int64_t weight_limit = std::int64_t{1} << 40;
std::int64_t poly_weight(const polynode *p);

// The largest exponent of the variable `level` lists down, 1 for the outer one.
std::int32_t max_degree(const polynode *p, std::int32_t level);

// The first four coefficients of p involve one variable between them at most: p is one in two levels.
bool depth_only_2(const polynode *p);

// A hash of p, 0 .. gcd_stash_lists - 1, from exponents and numbers of the live view. Equal polynomials have
// equal hashes.
std::int32_t hash_1(const polynode *p);

}  // namespace kelmar
