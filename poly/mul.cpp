// poly/mul.cpp -- poly_mult: a page of tests over named methods.
//
// The tests go from what is quickest to find out to what asks for a walk. Both operands are walked once,
// which tells whether an exponent of the product leaves its range, before anything is computed, and whether
// the pair fits flat arrays.
#include "poly/mul.h"
#include "numbers/dispatch.h"
#include "poly/flat.h"
#include "poly/measure.h"
#include "poly/mul_array.h"
#include "poly/mul_flat.h"
#include "poly/mul_list.h"
#include "poly/mul_school.h"
#include "poly/mul_work.h"
#include "poly/scale.h"
#include "session/report.h"

namespace kelmar {

bool relation_from(const pt *var)
{
    for (; var; var = var->next) {
        if (var->relation) return true;
    }
    return false;
}

void fold_poly(polynode **, const pt *)
{
    // on purpose: nothing gives a variable a relation
}

// Return the product of two numbers.
static polynode *number_product(const polynode *a, const polynode *b)
{
    number *n = nullptr;
    newimag(&n);
    n->size = 0;
    num_mul(a->num, b->num, n);
    if (flotemode) n->real += 0.0;  // on purpose: there is one zero
    return new_constant(n);
}

// The pair is dense in one variable over words; *low_a, *low_b = the lowest exponents, *len_a, *len_b the
// lengths.
static bool word_arrays_serve(polynode *a, polynode *b, std::int32_t *len_a, std::int32_t *len_b,
                              std::int32_t *low_a, std::int32_t *low_b)
{
    int dense = 1;
    *len_a = exp_poly_length(a, low_a, &dense);
    int other_dense = dense;
    if (a == b) {
        *len_b = *len_a;
        *low_b = *low_a;
    } else {
        *len_b = exp_poly_length(b, low_b, &other_dense);
    }
    return dense && other_dense;
}

// Return a * b, neither a number.
static polynode *list_product(polynode *a, polynode *b, const pt *var)
{
    flat_shape shape_a, shape_b;
    measure_flat(a, &shape_a);
    if (a != b) measure_flat(b, &shape_b);
    const flat_shape *other = a == b ? &shape_a : &shape_b;
    polynode *product = nullptr;
    if (!exponents_fit(&shape_a, other)) {
        error(err_bad_exponent, "*");
        poly_set(0, &product);
        return product;
    }
    std::int32_t len_a = 0, len_b = 0, low_a = 0, low_b = 0;
    const bool arrays = word_arrays_serve(a, b, &len_a, &len_b, &low_a, &low_b);
    const bool flat = shape_a.terms * other->terms >= flat_mult_cut && !relation_from(var);
    const bool transforms = flat && shape_a.terms >= transform_cut && other->terms >= transform_cut;
    if ((transforms || (flat && !arrays)) && flat_poly_mult(a, b, &shape_a, other, &product)) return product;
    if (arrays) {
        simplest_poly_mult(a, b, &product, len_a, len_b, low_a, low_b);
        if (var && var->relation) fold_poly(&product, var);
        return product;
    }
    if (modularmode && a->exp >= row_arrays_from && b->exp >= row_arrays_from && !laurent &&
        try_fast_2_var(a, b)) {
        fastest_poly2_mult(a, b, &product);
        return product;
    }
    const std::int32_t cut = cut_for(var);
    if (len_a < cut || len_b < cut || len_a < 2 || len_b < 2) {
        school_poly_mult(a, b, len_a, len_b, &product, var);
    } else {
        karatsuba_poly_mult(a, b, len_a, len_b, low_a, low_b, &product, var);
    }
    return product;
}

[[gnu::noinline]] void poly_mult(polynode *a, polynode *b, polynode **c, const pt *var)
{
    check_stack();
    release_left_works(__builtin_frame_address(0));
    poll_interrupt();
    polynode *product = nullptr;
    if (is_constant(a)) {
        if (is_constant(b)) {
            product = number_product(a, b);
        } else {
            scalar_by_poly(a->num, b, &product);
        }
    } else if (is_constant(b)) {
        scalar_by_poly(b->num, a, &product);
    } else {
        product = list_product(a, b, var);
    }
    free_poly(c);
    *c = product;
}

}  // namespace kelmar
