// gcd/sequence.cpp -- how a remainder sequence begins and goes on.
#include "gcd/sequence.h"

namespace kelmar {

void begin_sequence(sequence *s)
{
    poly_set(1, part_of(s, part_g));
    poly_set(1, part_of(s, part_h));
}

void advance_pair(sequence *s)
{
    polynode **u = part_of(s, part_u), **v = part_of(s, part_v), **r = part_of(s, part_r);
    free_poly(u);
    *u = *v;
    *v = *r;
    *r = nullptr;
    s->u = s->v;
    s->v = *v;
    poly_assign(s->u->coef, part_of(s, part_g));
}

}  // namespace kelmar
