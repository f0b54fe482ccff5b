#pragma once
// numbers/fresh_number.h -- number records that are 0 in every view.

#include "numbers/number.h"

namespace kelmar {

// Return a number record, 0 in every view. Cost: a record of the free list.
inline number *fresh_number()
{
    number *n = nullptr;
    newimag(&n);
    n->size = 0;
    n->word = 0;
    n->real = 0;
    return n;
}

}  // namespace kelmar
