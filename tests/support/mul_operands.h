#pragma once
// tests/support/mul_operands.h -- what tests of products share: dense operands, and what they need.

#include "tests/support/fields.h"
#include "tests/support/polys.h"
#include "tests/support/settings.h"

namespace kelmar_test {

// For a cut-off that nothing reaches.
inline constexpr std::int32_t never = 2000000000;

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
