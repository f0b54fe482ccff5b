#pragma once
// session/expr.h -- the recursive-descent evaluator of scalar expressions.
//
// It computes as it reads, one token ahead; there is no tree. Precedence, loosest first: assignment (expre
// only), sum, term, factor. The three families differ in what they start from:
//
//   expre, term, fact              an operand, which may stand in storage; expre also assigns
//   old_expre, old_term, old_fact  a private value in *n
//   half_expre, half_term, half_fact   *n already holds the first operand, the token after it is in hand
//
// All begin with the first token in hand, and end with the token behind the expression in
// hand. *n of the old_ family is replaced. Errors: 1 2 19 22 32 62 63 109 115 116 129 130 150
// 175 177 223 224 227 294 316 317 337 339 341 376.

#include "session/evaluator.h"

namespace kelmar {

void expre(input_stream **stream, operand *v, name_node **cursor);
void term(input_stream **stream, operand *v, name_node **cursor);

// Go on from the operand in *v, its token behind it in hand: assignment, or the rest of a sum; v->n is
// announced by the caller.
void expre_from(input_stream **stream, operand *v, name_node **cursor);

// A sum that assigns nothing, as an operand; v->n is announced by the caller.
void sum_of_terms(input_stream **stream, operand *v, name_node **cursor);

void old_expre(input_stream **stream, quolynode **n, name_node **cursor);
void old_term(input_stream **stream, quolynode **n, name_node **cursor);

void half_expre(input_stream **stream, quolynode **n, name_node **cursor);
void half_term(input_stream **stream, quolynode **n, name_node **cursor);

}  // namespace kelmar
