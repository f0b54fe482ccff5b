#pragma once
// gcd/word_products.h -- products of word arrays modulo a prime, at any length.

#include <cstdint>

namespace kelmar {

// z[0 .. nx + ny - 1) = x[0 .. nx) * y[0 .. ny), residues modulo the live modulus, nx and ny positive. z
// stands apart. Polls: no. Cost: inner products while short, then Karatsuba.
void word_product(const std::int32_t *x, std::int32_t nx, const std::int32_t *y, std::int32_t ny,
                  std::int32_t *z);

}  // namespace kelmar
