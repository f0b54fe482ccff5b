// numbers/mode.cpp -- a modulus and what is derived from it change together, here alone.
#include "numbers/mode.h"
#include "numbers/number.h"  // digit_base
#include "numbers/primes.h"

namespace kelmar {

static constexpr std::int32_t narrow_bound = 65535;  // below it a product of two residues fits 32 bits

static void write_modulus(std::int32_t m, std::int32_t prime)
{
    modulus = m;
    half_modulus = m / 2;
    smallmodulus = m < narrow_bound;
    two28_mod = digit_base % m;
    mod_is_prime = prime;
    finf = f256 = f2t16 = 0;
}

void set_modulus(std::int32_t m)
{
    write_modulus(m, is_prime(m));
}

void set_prime_modulus(std::int32_t p)
{
    write_modulus(p, 1);
}

void set_table_field(std::int32_t order)
{
    write_modulus(order, 1);
    smallmodulus = finf = 1;
    f256 = order == 256;
    f2t16 = !f256;
}

void keep_ring(ground_ring *r)
{
    *r = {flotemode,    modularmode,  lintmode,  integerflag, modulus, half_modulus,
          smallmodulus, mod_is_prime, two28_mod, finf,        f256,    f2t16};
}

void put_ring(const ground_ring *r)
{
    flotemode = r->flote;
    modularmode = r->modular;
    lintmode = r->lint;
    integerflag = r->integer;
    modulus = r->modulus;
    half_modulus = r->half;
    smallmodulus = r->small;
    mod_is_prime = r->prime;
    two28_mod = r->two28;
    finf = r->field;
    f256 = r->field_256;
    f2t16 = r->field_2t16;
}

}  // namespace kelmar
