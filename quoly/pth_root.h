#pragma once
// quoly/pth_root.h -- roots of the order of the characteristic.
//
// Over a prime field of p elements, and over a table field, with p = 2, every number is a p-th power, and a
// polynomial is one when p divides all its exponents. Nothing has to be found: exponents are divided. In a
// tower, where a variable of the field can have a root of its own, there is no answer yet.

#include "quoly/quoly.h"

namespace kelmar {

// *p = its p-th root, in all its variables. A number of a prime field is its own root. *p replaced. Declines
// (0), with *p as it was: there is no characteristic, or an exponent is no multiple of it.
int pth_root(polynode **p);

// The same for the value. Errors: 301 where there is no root; then *q stays.
void quoly_pth_root(quolynode **q);

}  // namespace kelmar
