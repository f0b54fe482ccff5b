#pragma once
// gcd/images.h -- bounds for the degree of a gcd, from values at random points.
//
// The variables below the outer one get values in a field of words, and Euclid's algorithm runs on two arrays
// of words. Where both leading coefficients keep a value, the gcd of the images has at least the degree of
// the gcd: degree 0 is a proof. A point serves that has nothing to do with the pair, and with values from a
// large field nearly every point does; each round has points, and over the integers a prime, of its own.

#include "poly/node.h"

namespace kelmar {

// Return an upper bound for the degree of gcd(a, b) in the outer variable, 0 .. the lower degree of both,
// which is what it returns when no image tells more. Whole numbers have images modulo primes of 31 bits, and
// so have whole doubles up to 2^53; words, over the prime or table field that is live. Other rings, negative
// exponents and degrees above fast_gcd_size have none. a, b, of positive degree, spared. Modes: no
// relations, no tower. Polls: between the coefficients of the outer list. Cost: a few passes over the terms,
// and the product of the degrees.
std::int32_t degree_by_images(const polynode *a, const polynode *b);

}  // namespace kelmar
