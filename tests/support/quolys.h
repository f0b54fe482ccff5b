#pragma once
// tests/support/quolys.h -- scalar values for tests: plain numbers, polynomials and quotients alike.

#include "poly/node.h"
#include "quoly/normal_form.h"
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

// poly_text of the value; a plain number is its constant. A denominator stands behind " / ".
inline std::string value_text(const kelmar::quolynode *q)
{
    if (!q) return "null";
    kelmar::poly_room room;
    const std::string top = poly_text(kelmar::as_poly(q, &room));
    return q->is_num || !q->den ? top : top + " / " + poly_text(q->den);
}

}  // namespace kelmar_test
