#pragma once
// gcd/sequence.h -- a remainder sequence as it stands.

#include "gcd/algorithm_c.h"
#include "poly/mul_work.h"

namespace kelmar {

// u, v are the parts of that name, or the operands.
struct sequence {
    product_work *work;
    polynode *u, *v;
    pt *names;
    const retry_flags *flags;
};

// The part k of the work; each method numbers its own.
inline polynode **part_of(sequence *s, int k)
{
    return &s->work->parts[k];
}

}  // namespace kelmar
