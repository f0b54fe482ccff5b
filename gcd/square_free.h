#pragma once
// gcd/square_free.h -- square-free decompositions.
//
// A decomposition is a list of nodes: exp the multiplicity, coef a factor without multiple factors. Factors
// are coprime, and the highest multiplicity is first. Their product is the polynomial up to a unit, and to
// its number content.
//
// names: the record of the outer variable. *list filled, or added to where that is said; *count is raised by
// one for each factor. Polls: between steps, and in the gcds.

#include "poly/variables.h"

namespace kelmar {

// *list = the decomposition of f over a prime field or a table field. f has positive degree and content 1.
// f restored. Errors: 352, 308, for a coefficient without a root of the order of the characteristic; then the
// part that needs it stands in the list undecomposed. Source: Yun; powers of the characteristic by roots.
void square_free_factor(polynode *f, polynode **list, std::int32_t *count, pt *names);

// *list = the decomposition of *f in characteristic 0. *f has positive degree and content 1; consumed.
// Source: Yun.
void rat_sq_free_factor(polynode **f, polynode **list, std::int32_t *count, pt *names);

// *list = the decomposition of *f, contents in all variables included: factors of the content last. None for
// a number. monic: modulo a prime *f is made monic first. *f consumed.
void total_sq_free(polynode **f, polynode **list, std::int32_t *count, std::int32_t monic, pt *names);

// *f_over_g = f / g and *d_over_g = d / g, which are exact. f, d, g restored, g may be a number; quotients
// replaced. Faults: " failed in square free factor."; then a quotient is its dividend.
void reduce2(polynode *f, polynode *d, polynode *g, polynode **f_over_g, polynode **d_over_g, pt *names);

}  // namespace kelmar
