#pragma once
// session/factor.h -- factors: primaries, prefix forms and postfix forms.

#include "session/evaluator.h"

namespace kelmar {

// Read one factor into *v, whose n is announced. With keep_absent an absent sparse entry stays absent (v->p
// null); otherwise it becomes 0 in n, unless ":" follows. Errors: those of expr.h.
void fact(input_stream **stream, operand *v, name_node **cursor, int keep_absent);

// *n = the value of one factor, private, but a # behind its primary stays in hand. *n replaced.
void fact_before_evaluation(input_stream **stream, quolynode **n, name_node **cursor);

// *n = the value of one factor, private. *n replaced.
void old_fact(input_stream **stream, quolynode **n, name_node **cursor);

// Go on behind the primary in *n: postfix forms, the token in hand.
void half_fact(input_stream **stream, quolynode **n, name_node **cursor);

}  // namespace kelmar
