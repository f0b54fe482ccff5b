#pragma once
// tests/support/quolys.h -- scalar values for tests: plain numbers and polynomials alike.

#include "poly/node.h"
#include "quoly/quoly.h"
#include "tests/support/polys.h"

namespace kelmar_test {

// A scalar value of a test, released when it goes.
struct value_operand {
    kelmar::quolynode *q = nullptr;
    value_operand() = default;
    // Takes the polynomial; a constant becomes a plain number.
    explicit value_operand(kelmar::polynode *p)
    {
        kelmar::poly_to_quoly(&p, &q);
    }
    explicit value_operand(const char *text) : value_operand(poly_of_text(text))
    {
    }
    ~value_operand()
    {
        kelmar::free_quoly(&q);
    }
    value_operand(const value_operand &) = delete;
    value_operand &operator=(const value_operand &) = delete;
};

// poly_text of the value; a plain number is its constant.
inline std::string value_text(const kelmar::quolynode *q)
{
    if (!q) return "null";
    kelmar::polynode room;
    return poly_text(kelmar::as_poly(q, &room));
}

// The value keeps the rules: a constant is a plain number, anything else a normal polynomial.
inline bool quoly_is_normal(const kelmar::quolynode *q, std::int32_t levels)
{
    if (q->is_num) return true;
    return !q->den && !q->is_rat && !kelmar::is_constant(q->top) && kelmar::poly_is_normal(q->top, levels);
}

}  // namespace kelmar_test
