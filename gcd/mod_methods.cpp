// gcd/mod_methods.cpp -- the methods by images are not there yet: all decline.
#include "gcd/mod_methods.h"

namespace kelmar {

void basic_mod_method(polynode *, polynode *, polynode **, std::int32_t *success, pt *)
{
    *success = 0;
}

int mod_multivar_Chinese(polynode *, polynode *, polynode **, std::int32_t, pt *)
{
    return 0;
}

int field_coef_gcd(polynode *, polynode *, polynode **, pt *)
{
    return 0;
}

int armand_modular(polynode *, polynode *, pt *, std::int32_t *coprime)
{
    *coprime = 0;
    return 0;
}

int rat_monic_poly(polynode **, pt *)
{
    return 0;
}

}  // namespace kelmar
