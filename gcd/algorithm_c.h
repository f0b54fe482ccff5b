#pragma once
// gcd/algorithm_c.h -- gcds by the subresultant sequence: the method that always answers.

#include "poly/variables.h"

namespace kelmar {

// How the caller allows a pair to be taken up again, should the sequence be given up; and the highest degree
// in the outer variable that the gcd can have, 0 where no image was asked.
struct retry_flags {
    std::int32_t test, deep, limit;
};

// *result = gcd(a, b), primitive in the outer variable, for primitive a, b with deg a >= deg b > 0. The
// numbers of *result have no common factor, its sign is any. a, b restored; *result replaced.
//
// Remainders that grow too large are a sign that another method may do better: then the pair is given to
// polygcd again, at most four times in a problem, with a line when verbose is on or chinhensel off.
// With doubles, noise is cleared from each remainder, and what is found is believed only when it divides both
// operands but for noise; else values of both are asked, and at last *result = 1. Pairs that values at points
// show to be coprime are not begun.
// Errors: 85. Faults: "v number in Alg C.", "poly_divide failed in Alg C."; then *result = 1. Polls: between
// steps. Source: Brown's and Collins' subresultant sequence; Knuth, The Art of Computer Programming 2, 4.6.1
// algorithm C.
void algorithm_c(polynode *a, polynode *b, polynode **result, pt *names, const retry_flags *flags);

}  // namespace kelmar
