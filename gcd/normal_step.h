#pragma once
// gcd/normal_step.h -- one step of a subresultant sequence where the degree falls by one.

#include "poly/variables.h"

namespace kelmar {

// *p = *p / d, where d is one level below. Declines (0): it does not divide; *p = 1. *p replaced.
int divide_coefficients(polynode **p, polynode *d, const pt *names);

// *r = the pseudo-remainder of u by v, divided by lc(u) h, where deg u = deg v + 1 > 1 and u, v are
// neighbours in the sequence of all subresultants, up to units; h is one level below. 0 is the number 0.
// Declines (0): something does not divide that should; *r = 1. u, v, h restored; *r filled. Polls: between
// products. Source: Ducos, Optimizations of the subresultant algorithm, 2000.
int normal_remainder(polynode *u, polynode *v, polynode *h, polynode **r, const pt *names);

}  // namespace kelmar
