// quoly/cross.cpp -- the product of two fractions.
//
// Two gcds of small operands stand in place of one of large ones: the factors of a result in lowest terms are
// known before they are multiplied. Where a numerator equals the other denominator they go without a gcd.
#include "quoly/cross.h"
#include "poly/mul_work.h"

namespace kelmar {

// The product of the numerators is 0 without being formed.
static bool is_zero_product(const fraction *a, const fraction *b)
{
    return (a->top && poly_iszero(a->top)) || (b->top && poly_iszero(b->top));
}

static void cancel_across(fraction *a, fraction *b, cross_gcds which, product_work *work)
{
    polynode **const part = work->parts;
    if (a->den && b->den && poly_equal(a->den, b->den)) return;
    if (which == both_gcds) {
        cancel_pair(&a->top, &b->den, part, part + 1, part + 2);
        free_poly(part + 2);
    }
    cancel_pair(&b->top, &a->den, part + 3, part + 4, part + 2);
    free_poly(part + 2);
}

[[gnu::noinline]] void cross_multiply(const fraction *a, const fraction *b, cross_gcds which,
                                      std::int32_t clear, quolynode **c)
{
    if (is_zero_product(a, b)) {
        quoly_set(0, c);
        return;
    }
    fraction x = *a, y = *b;
    product_work *work = open_work(__builtin_frame_address(0));
    polynode **const top = &work->parts[5], **const den = &work->parts[6];
    cancel_across(&x, &y, which, work);
    product_of_factors(x.top, y.top, top);
    if (!*top) poly_set(1, top);
    product_of_factors(x.den, y.den, den);
    settle_fraction(top, den, clear);
    polynode *finished_top = *top, *finished_den = *den;
    *top = *den = nullptr;
    close_work(work);
    put_fraction(&finished_top, &finished_den, c);
}

}  // namespace kelmar
