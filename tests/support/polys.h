#pragma once
// tests/support/polys.h -- polynomials for tests: random ones in every view, a flat form, reference
// arithmetic.
//
// The flat form is a map from exponents to coefficients. It shares no code with the product: a nested list is
// built from it term by term, and sums and products of it are done by the numbers alone. So it says what a
// result should be, and the shape that it should have.

#include <cstdint>
#include <functional>
#include <map>
#include <string>
#include <vector>
#include "poly/node.h"
#include "tests/support/long_numbers.h"

namespace kelmar_test {

// What a random polynomial may look like.
struct poly_shape {
    std::int32_t vars = 1;    // levels 1 .. vars may occur
    std::int32_t terms = 8;   // 1 .. terms are drawn; those that meet are one
    std::int32_t degree = 8;  // exponents low .. degree in each variable
    std::int32_t low = 0;     // below 0 for laurent
    std::int32_t digits = 1;  // of long coefficients, at most; above 1 free words take the whole range
};

// A random nonzero number record of the live view. Doubles are whole numbers below 100 in magnitude.
kelmar::number *random_coefficient(test_random *r, std::int32_t digits);

// A random polynomial in normal form, in the live view. One in 16 is zero, one in 8 a constant; a variable
// may be missing, the outermost ones too.
kelmar::polynode *random_poly(test_random *r, const poly_shape &shape);

// Exponents of levels 1, 2, .. against coefficients, the leading term first.
using exponents = std::vector<std::int32_t>;
using flat_poly = std::map<exponents, kelmar::number *, std::greater<exponents>>;

flat_poly flatten(const kelmar::polynode *p, std::int32_t vars);  // coefficients are copies
kelmar::polynode *nest(flat_poly *terms);                         // takes the coefficients; drops zero ones
void free_flat(flat_poly *terms);

// a + b, a - b, a * b by the flat form, in the live view.
kelmar::polynode *reference_sum(const kelmar::polynode *a, const kelmar::polynode *b, std::int32_t vars);
kelmar::polynode *reference_difference(const kelmar::polynode *a, const kelmar::polynode *b,
                                       std::int32_t vars);
kelmar::polynode *reference_product(const kelmar::polynode *a, const kelmar::polynode *b, std::int32_t vars);

// The shape and the values of p, for messages and for comparing: a list is "{2{#3}, 1{1{#1}, #4}, #-5}",
// where # stands before a number and any other term is its exponent before its coefficient. "null" for null.
std::string poly_text(const kelmar::polynode *p);
std::string number_text(const kelmar::number *n);  // in the live view

// The polynomial that poly_text writes as `text`. For small coefficients.
kelmar::polynode *poly_of_text(const char *text);

// record_audit, with polynomial nodes.
struct poly_audit {
    record_audit numbers;
    std::int64_t polynodes;
    poly_audit();
    void expect_unchanged(const char *where) const;  // a gtest failure names what is out
};

// A polynomial of a test, released when it goes.
struct poly_operand {
    kelmar::polynode *p = nullptr;
    poly_operand() = default;
    explicit poly_operand(kelmar::polynode *taken) : p(taken)
    {
    }
    ~poly_operand();
    poly_operand(const poly_operand &) = delete;
    poly_operand &operator=(const poly_operand &) = delete;
};

}  // namespace kelmar_test
