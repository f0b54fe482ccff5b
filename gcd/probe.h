#pragma once
// gcd/probe.h -- the degree of a gcd, from images.
//
// The degree of the gcd of images is never below that of the gcd, as long as the images keep their leading
// terms. So an image of degree 0 is a proof, and any other a bound that is nearly always met.

#include "poly/variables.h"

namespace kelmar {

// What an image tells about a gcd.
struct image_degree {
    std::int32_t degree;  // of the gcd of the images in the outer variable
    std::int32_t number;  // the gcd of the images is a number
};

// Look at a, b modulo the first of `count` primes that divides neither leading number. Declines (0): there is
// none. In the digit view. a, b restored, neither is zero. Polls: no, unless interrupts are allowed at
// delicate times.
int use_modular(polynode *a, polynode *b, pt *names, const number *primes, std::int32_t count,
                image_degree *image);

// Points for the variables below the outer one, which a and b have lists for up to `levels` lists down.
struct test_points {
    std::int32_t levels;
    std::int32_t round;  // counts the tests of a problem: each takes points of its own
};

// Look at a, b, with the variables below the outer one at points: random ones in modular mode, small fixed
// ones else. Return 1 when the gcd of the images is a constant, or 0 with *degree = its degree. *performed =
// 0: a degree fell at the point, and nothing is told. a, b restored. Polls: in evaluations.
int fast_test_2(polynode *a, polynode *b, pt *names, const test_points *points, std::int32_t *degree,
                std::int32_t *performed);

}  // namespace kelmar
