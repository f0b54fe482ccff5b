// gcd/word_products.cpp -- products of word arrays modulo a prime.
#include "gcd/word_products.h"
#include "poly/onevar.h"

namespace kelmar {

void word_product(const std::int32_t *x, std::int32_t nx, const std::int32_t *y, std::int32_t ny,
                  std::int32_t *z)
{
    fast_array_onevar_mult(x, y, z, 0, nx - 1, 0, ny - 1);
}

}  // namespace kelmar
