#pragma once
// tests/support/divisions.h -- what the tests of divisions share: checks by the flat form, and divisors.

#include <gtest/gtest.h>
#include "tests/support/fields.h"
#include "tests/support/polys.h"
#include "tests/support/settings.h"
#include "tests/support/variables.h"

namespace kelmar_test {

// p is normal, on `vars` levels. The text tells which one it is.
inline void expect_normal(const kelmar::polynode *p, std::int32_t vars, const char *what)
{
    EXPECT_TRUE(kelmar::poly_is_normal(p, vars)) << what << ": " << poly_text(p);
}

// q m + r, by the flat form.
inline kelmar::polynode *product_and_rest(const kelmar::polynode *q, const kelmar::polynode *m,
                                          const kelmar::polynode *r, std::int32_t vars)
{
    poly_operand product(reference_product(q, m, vars));
    return reference_sum(product.p, r, vars);
}

// A random polynomial that is neither zero nor a number.
inline kelmar::polynode *random_divisor(test_random *r, const poly_shape &shape)
{
    for (;;) {
        kelmar::polynode *p = random_poly(r, shape);
        if (!kelmar::is_constant(p)) return p;
        kelmar::free_poly(&p);
    }
}

}  // namespace kelmar_test
