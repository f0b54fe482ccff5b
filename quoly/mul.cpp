// quoly/mul.cpp -- products of scalar values: numbers at once, a number into a polynomial, two polynomials.
#include "quoly/mul.h"
#include "numbers/compare.h"
#include "numbers/dispatch.h"
#include "poly/mul.h"
#include "poly/scale.h"

namespace kelmar {

// *c = a * b, not both plain numbers.
static void multiply_polynomials(const quolynode *a, const quolynode *b, quolynode **c)
{
    polynode *product = nullptr;
    if (!a->is_num && !b->is_num) {
        poly_mult(a->top, b->top, &product, polynames);
    } else {
        const number *n = a->is_num ? a->num : b->num;
        const polynode *p = a->is_num ? b->top : a->top;
        if (iszero(n)) {
            quoly_set(0, c);
            return;
        }
        scalar_by_poly(n, p, &product);
    }
    poly_to_quoly(&product, c);
}

void quoly_mult(const quolynode *a, const quolynode *b, quolynode **c)
{
    if (__builtin_expect(a->is_num && b->is_num, 1)) {
        num_mul(a->num, b->num, number_result(c));
    } else {
        multiply_polynomials(a, b, c);
    }
}

void fast_quoly_mult(quolynode **a, const quolynode *b)
{
    if (__builtin_expect((*a)->is_num && b->is_num, 1)) {
        num_mul((*a)->num, b->num, (*a)->num);
    } else {
        multiply_polynomials(*a, b, a);
    }
}

}  // namespace kelmar
