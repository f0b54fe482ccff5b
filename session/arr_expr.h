#pragma once
// session/arr_expr.h -- the evaluator of array expressions.
//
// It mirrors the scalar one: sums, terms, factors, one token ahead. A factor is an array in brackets, an
// array function, or a scalar factor; what an operator does is told by the kinds of its operands
// (session/arr_ops.h). v is an announced value, empty at first.

#include "session/arr_value.h"
#include "session/scanner.h"

namespace kelmar {

// default 0; the right side of an assignment to a sparse array is being read: literals are sparse; reset:
// unwind
inline std::int32_t want_sparse = 0;
// default none; the shape of the target of that assignment, or of a dense one; 0: it has none; reset: unwind
inline std::int32_t wanted_rows = 0;
inline std::int32_t wanted_cols = 0;

// What an assignment wishes of the literals on its right side.
struct wanted_array {
    std::int32_t sparse, rows, cols;
};

// Wish for w from now on. Return the wish before: a statement that runs within another puts that aside, and
// brings it back when it is done.
inline wanted_array wish_for(wanted_array w)
{
    const wanted_array before = {want_sparse, wanted_rows, wanted_cols};
    want_sparse = w.sparse;
    wanted_rows = w.rows;
    wanted_cols = w.cols;
    return before;
}

// default 0; array terms under way that keep the gcd stash in use; arr_expre, leave_terms; reset: unwind
inline std::int32_t open_terms = 0;

// Leave the terms begun since open_terms was `mark`: each one use of the gcd stash less.
void leave_terms(std::int32_t mark);

// Errors: 1 63 70 71 72 74 78 79 80 82 88 142 173 177 202, those of arr_ops.h, arr_target.h and expr.h.
void arr_expre(input_stream **stream, arr_value *v, name_node **cursor);

// The same, with the first factor in *v already and the token behind it in hand.
void half_arr_expre(input_stream **stream, arr_value *v, name_node **cursor);

void arr_fact(input_stream **stream, arr_value *v, name_node **cursor);

// Go on behind the factor in *v: powers and evaluations of arrays.
void half_arr_fact(input_stream **stream, arr_value *v, name_node **cursor);

}  // namespace kelmar
