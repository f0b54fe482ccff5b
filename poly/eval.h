#pragma once
// poly/eval.h -- polynomials at points.
//
// A list of points is a chain of nodes, one a level: a number node is that number, any other stands for the
// polynomial in its coef. Levels that get a point are taken away, so that what is left moves outward, unless
// a name says that they stay. Where numbers are all there is, no polynomial is made in between.

#include "poly/variables.h"

namespace kelmar {

// Return a point with the number v, v a residue where the live view has residues; the next point is null.
// Chains are released by free_poly.
polynode *new_point(std::int32_t v);

// *result = p with the variables of the levels skip + 1, skip + 2, .. at the points. Levels behind the last
// point stay. p spared. *result replaced. Polynomial points are in the variables that are left.
// Errors: 32. Polls: at each term; nothing is altered then.
void all_poly_eval(const polynode *p, const polynode *points, polynode **result, std::int32_t skip);

// *v = p at points that are numbers, one for each level of p, over words that are reduced. Declines (0): a
// point is no number, or p has more levels.
int mod_all_poly_eval(const polynode *p, const polynode *points, std::int32_t *v);

// The same on numbers of any live view. *n replaced. Declines (0): *n is then undefined. Polls: at each term.
int rat_all_poly_eval(const polynode *p, const polynode *points, number *n);

// *p = *p, a list at `level`, with some variables at numbers: the level of a point is its exp, and points
// rise in it. The levels stay, each as a wrapper. *p replaced. Polls: at each term.
void old_all_poly_eval(polynode **p, const polynode *points, std::int32_t level);

// *result = p at the number v in the variable of names, the one of p's list. pad: the level stays, as a
// wrapper. p spared. *result replaced. Faults: v is no number. Polls: at each term.
void poly_at_numb(polynode **result, const polynode *p, const polynode *v, const pt *names, int pad);

// The same in the level below that of p.
void poly_at_numb_2(polynode **result, const polynode *p, const polynode *v, const pt *names, int pad);

// poly_at_numb for a residue.
void mod_poly_at_numb(polynode **result, const polynode *p, std::int32_t v, const pt *names, int pad);

// Return v^e for a residue v, e >= 0.
std::int32_t fast_mod_power(std::int32_t v, std::uint32_t e);

}  // namespace kelmar
