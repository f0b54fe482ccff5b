#pragma once
// quoly/eval.h -- scalar values at points.
//
// A list of points is a chain of values through next, one a level, the outermost first. All variables are
// replaced at once: what a point contains is not looked at again.
//
// Errors of all: 22 for a negative power of 0, and for a denominator that becomes 0; 32; 62 where a quotient
// has no form. Polls: at each term.

#include "quoly/quoly.h"

namespace kelmar {

// default 1; in characteristic two: powers of points are tabulated, and determinants have degree 1 at most in
// each variable; reset_pseudo_poly; reset: never
inline std::int32_t char2_degs1 = 1;

// *q = *q at the points of levels 1, 2, ..; levels behind the last point stay. *q replaced, and announced.
void total_eval(quolynode **q, const quolynode *points);

// *result = p, a list at level depth + 1, with `skip` levels kept, the next ones at the points. p spared.
// *result replaced, and announced.
void tot_eval_poly(const polynode *p, const quolynode *points, quolynode **result, std::int32_t depth,
                   std::int32_t skip);

// The same from level 1 where numbers have characteristic two and all points are numbers: powers come from a
// table for each point. _fast: for points at all levels of p; the value is a number. Declines (0): a point is
// no number, or p has more levels; *result stays.
int tot_eval_poly2(const polynode *p, const quolynode *points, quolynode **result);
int tot_eval_poly2_fast(const polynode *p, const quolynode *points, quolynode **result);

// *q = *q with its first variable at v. spec_: with the variable of `level`.
void horner_quoly_eval(quolynode **q, const quolynode *v);
void spec_quoly_eval(quolynode **q, const quolynode *v, std::int32_t level);

// *q = a copy of p, a list at level depth + 1, with wrappers for the levels above. *q replaced.
void p_q_assign(const polynode *p, quolynode **q, std::int32_t depth);

}  // namespace kelmar
