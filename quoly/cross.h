#pragma once
// quoly/cross.h -- the product of two fractions, which is also their quotient.

#include "quoly/fraction.h"

namespace kelmar {

enum cross_gcds { both_gcds, not_the_first };

// *c = (a.top b.top) / (a.den b.den). First each numerator is cancelled against the other denominator, a.top
// and b.den first, which not_the_first leaves as they are; where the two denominators are equal there is
// nothing to cancel. clear: as normal_form. Operands restored; *c replaced, may own them. On an error *c is
// as it was. Polls.
void cross_multiply(const fraction *a, const fraction *b, cross_gcds which, std::int32_t clear,
                    quolynode **c);

}  // namespace kelmar
