#pragma once
// gcd/sequence.h -- a remainder sequence as it stands.

#include "gcd/algorithm_c.h"
#include "poly/mul_work.h"

namespace kelmar {

// u, v are the parts of that name, or the operands.
struct sequence {
    product_work *work;
    polynode *u, *v;
    polynode *a, *b;  // the operands
    pt *names;
    const retry_flags *flags;
    std::int32_t limit;  // of the degree of the gcd; 0: not known
    bool regular;        // u is the subresultant of its degree, up to a unit
};

// The parts that every sequence has; each method numbers its own from part_own on.
enum sequence_part { part_u, part_v, part_r, part_g, part_h, part_t, part_own };

inline polynode **part_of(sequence *s, int k)
{
    return &s->work->parts[k];
}

// g = h = 1.
void begin_sequence(sequence *s);

// u, v = v, r; g = the leading coefficient of the new u. The part r becomes null.
void advance_pair(sequence *s);

}  // namespace kelmar
