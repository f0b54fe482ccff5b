#pragma once
// quoly/derivative.h -- derivatives of scalar values.

#include "quoly/quoly.h"

namespace kelmar {

// *q = the derivative of *q in the variable of that level. A fraction goes by the quotient rule, and is then
// brought into lowest terms. *q replaced. Polls: in products and gcds; *q stays then.
void quoly_differen_once(quolynode **q, std::int32_t level);

// *q = its derivative of that order, >= 0, in the variable of that level. *q replaced.
void differentiate(quolynode **q, std::int32_t level, std::int32_t order);

}  // namespace kelmar
