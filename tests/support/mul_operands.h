#pragma once
// tests/support/mul_operands.h -- what tests of products share: settings for a block, dense
// operands, field tables.

#include <cstdint>
#include "numbers/fields.h"
#include "tests/support/polys.h"

namespace kelmar_test {

// A global has the value until the end of the block.
struct with_value {
    std::int32_t *place, saved;
    with_value(std::int32_t *at, std::int32_t v) : place(at), saved(*at)
    {
        *place = v;
    }
    with_value(const with_value &) = delete;
    with_value &operator=(const with_value &) = delete;
    ~with_value()
    {
        *place = saved;
    }
};

// For a cut-off that nothing reaches.
inline constexpr std::int32_t never = 2000000000;

// Fill the products of the field of 2^8 elements.
inline void make_field_products()
{
    for (std::uint32_t a = 0; a < 256; ++a) {
        for (std::uint32_t b = 0; b < 256; ++b) {
            std::uint32_t product = 0;
            for (std::uint32_t k = 0; k < 8; ++k) {
                if (b >> k & 1) product ^= a << k;
            }
            for (std::uint32_t k = 15; k >= 8; --k) {
                if (product >> k & 1) product ^= 0x11bu << (k - 8);
            }
            kelmar::f256prod[a * 256 + b] = static_cast<std::uint16_t>(product);
        }
    }
}

// A polynomial in one variable with a nonzero coefficient for every degree low .. top.
inline kelmar::polynode *dense_poly(test_random *r, std::int32_t low, std::int32_t top)
{
    flat_poly terms;
    for (std::int32_t e = low; e <= top; ++e)
        terms.emplace(std::vector<std::int32_t>{e}, random_coefficient(r, 1));
    return nest(&terms);
}

// A polynomial in two variables with a nonzero coefficient for all degrees up to x_top, and up to y_top.
inline kelmar::polynode *dense_poly2(test_random *r, std::int32_t x_top, std::int32_t y_top)
{
    flat_poly terms;
    for (std::int32_t x = 0; x <= x_top; ++x) {
        for (std::int32_t y = 0; y <= y_top; ++y) {
            terms.emplace(std::vector<std::int32_t>{x, y}, random_coefficient(r, 1));
        }
    }
    return nest(&terms);
}

// The number that a term of a polynomial in one variable holds.
inline kelmar::number *term_value(const kelmar::polynode *t)
{
    return t->isnum ? t->num : t->coef->num;
}

}  // namespace kelmar_test
