#pragma once
// poly/div_fast.h -- does m divide n? Trial division, with quick tests at random points before it.
//
// Most trial divisions say no, and the images of both polynomials at a point say so at a fraction of the
// cost. A no of a test is sure but for rounded doubles; a yes may be chance, so it is believed only by a
// caller that has another way to find out. Points come from random(), and from global_list.

#include "poly/variables.h"

namespace kelmar {

// default 1, set to 0 at the first prompt; two yes answers of the number test are believed without the
// polynomial test; &_t; reset: unwind
inline std::int32_t try_rat = 1;
// default 1, set to 0 at the first prompt; a second round of that is believed; &_t; reset: unwind
inline std::int32_t rat_yes = 1;

// Return 1 and *q = n / m, or 0 and *q = null when m does not divide n. fast: the tests come first. no_q: a
// yes of a test is enough, *q is null then. n restored, with free_n consumed in every case; m restored. *q
// filled.
// Faults: var is null; m is a number. Polls: between steps.
int trial_poly_divide(polynode *n, polynode *m, polynode **q, const pt *var, int fast, int no_q, int free_n);

// The same for the answer alone; its tests look at numbers too. Over words a divisor in the ground field
// divides. Where negative exponents are allowed a power of a variable is a unit, but not here: when n and m
// have none, neither has n / m.
int trial_poly_divide_noq(polynode *n, polynode *m, const pt *var, int fast, int no_q, int free_n);

// The question for long integers, modulo two primes of the table that divide no leading coefficient. *result
// = what the last image said, with `fast` by its tests alone. *decided = 1: the first one said no, which is
// sure, or both said yes, which leaves open whether numbers divide. *decided = 0: they differ, or the table
// had no second prime; or no first one, or the ring is another, and then *result is not set. n, m restored.
// Faults: as trial_poly_divide. Polls: between steps.
void mod_trial_poly_divide(polynode *n, polynode *m, int fast, int *decided, int *result, const pt *var);

// The tests -----------------------------------------------------------------------------------------------

enum test_verdict { test_no, test_yes, not_performed };

// A pair under test. Depths count the lists from the outer one down first terms.
struct test_pair {
    std::int16_t depth;  // the larger of the two below: the last level that gets a point
    std::int16_t m_depth;
    polynode *m;     // borrowed
    polynode *mdup;  // the image of m, or m itself when it has one level
    std::int16_t n_depth;
    polynode *n;
    polynode *ndup;
};

// Fill the pair, without images.
void set_test_pair(polynode *n, polynode *m, test_pair *pair);

// The images at a point in all variables but the outer one divide. wide: larger points, and in more levels.
// Not performed: a degree falls at the point. Trial number i, from 0, moves the point. Nothing stays
// allocated.
test_verdict fast_test(test_pair *pair, std::int32_t i, int wide);

// The values at a point in all variables divide, in the digit view. small: small points. Not performed: the
// value of m is below 40, or that of n is 0.
test_verdict fast_test_rat(const test_pair *pair, std::int32_t i, int small);

// How many trials a pair is given.
std::int32_t trial_count(const polynode *n, const polynode *m);

}  // namespace kelmar
