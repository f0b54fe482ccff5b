#pragma once
// poly/add.h -- sums and differences of nested polynomials.
//
// Every operation comes in flavours that give the same polynomial and differ in who owns the operands
// afterwards. Callers pick by what they do next: best_ when both operands are temporaries, better_ when
// only the first is, the plain name otherwise. Nothing chooses at run time.
//
//        plain    better_    best_       simplest_
//   a    spared   consumed   consumed    consumed
//   b    spared   spared     consumed    consumed
//   c    filled   filled     filled      filled      null, or a consumed operand: best_poly_add(x, y, &x)
//
// better_poly_add(p, p, &p) is not allowed. simplest_ takes one level over words or doubles. Cost: one pass;
// best_ takes no node from the free list. Errors: none. Polls: no.

#include "poly/node.h"
#include "poly/scale.h"  // scalar_by_poly

namespace kelmar {

void poly_add(const polynode *a, const polynode *b, polynode **c);
void poly_sub(const polynode *a, const polynode *b, polynode **c);
void better_poly_add(polynode *a, const polynode *b, polynode **c);
void better_poly_sub(polynode *a, const polynode *b, polynode **c);
void best_poly_add(polynode *a, polynode *b, polynode **c);
void best_poly_sub(polynode *a, polynode *b, polynode **c);
void simplest_poly_add(polynode *a, polynode *b, polynode **c);
void simplest_poly_sub(polynode *a, polynode *b, polynode **c);

}  // namespace kelmar
