// quoly/mass.cpp -- both parts of a value together.
#include "quoly/mass.h"
#include "poly/mass.h"
#include "quoly/quoly.h"

namespace kelmar {

// The mass of q where `measure` is that of polynomials.
static std::int32_t mass_by(std::int32_t (*measure)(const polynode *, std::int32_t, std::int32_t),
                            const quolynode *q)
{
    poly_room room;
    const std::int32_t top = measure(as_poly(q, &room), 1, 1);
    if (q->is_num || !q->den) return top;
    const std::int32_t both = top + measure(q->den, 1, 1);  // each below 2^25
    return both < mass_limit ? both : mass_limit;
}

std::int32_t quoly_mass(const quolynode *q)
{
    return mass_by(poly_mass, q);
}

std::int32_t better_quoly_mass(const quolynode *q)
{
    return mass_by(better_poly_mass, q);
}

std::int32_t quoly_max_digits(const quolynode *q)
{
    poly_room room;
    const std::int32_t top = max_digits(as_poly(q, &room));
    const std::int32_t den = q->is_num ? -1 : max_digits(q->den);
    return top > den ? top : den;
}

}  // namespace kelmar
