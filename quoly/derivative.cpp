// quoly/derivative.cpp -- derivatives of scalar values.
//
// (n / d)' is (n' d - n d') / d^2. Where d does not hold the variable that is n' / d. The parts of the result
// stand in a work record until both are complete.
#include "quoly/derivative.h"
#include "poly/add.h"
#include "poly/derivative.h"
#include "poly/mul.h"
#include "poly/mul_work.h"
#include "quoly/normal_form.h"

namespace kelmar {

// *top, *den = those of the derivative of n / d. *scratch is left as it comes.
static void quotient_rule(polynode *n, polynode *d, std::int32_t level, polynode **parts)
{
    polynode **const top = &parts[0], **const den = &parts[1], **const other = &parts[2];
    poly_assign(n, top);
    general_poly_diff(top, 1, level);
    poly_assign(d, other);
    general_poly_diff(other, 1, level);
    if (poly_iszero(*other)) {
        poly_assign(d, den);
        return;
    }
    poly_mult(*top, d, top, polynames);
    poly_mult(*other, n, other, polynames);
    polynode *subtrahend = *other;
    *other = nullptr;
    best_poly_sub(*top, subtrahend, top);
    poly_mult(d, d, den, polynames);
}

[[gnu::noinline]] static void differentiate_fraction(quolynode **q, std::int32_t level)
{
    product_work *work = open_work(__builtin_frame_address(0));
    quotient_rule((*q)->top, (*q)->den, level, work->parts);
    free_poly(&(*q)->top);
    free_poly(&(*q)->den);
    (*q)->top = work->parts[0];
    (*q)->den = work->parts[1];
    work->parts[0] = work->parts[1] = nullptr;
    close_work(work);
    if (poly_iszero((*q)->top)) {
        quoly_set(0, q);
    } else {
        (*q)->is_rat = 0;
        check_quoly(q, laurent);
    }
}

void quoly_differen_once(quolynode **q, std::int32_t level)
{
    differentiate(q, level, 1);
}

void differentiate(quolynode **q, std::int32_t level, std::int32_t order)
{
    if (order == 0) return;
    if ((*q)->is_num || (*q)->is_rat) return quoly_set(0, q);
    if (!(*q)->den) {
        general_poly_diff(&(*q)->top, order, level);
        polynum_to_quoly(q);
        return;
    }
    for (; order > 0 && !(*q)->is_num; --order) {
        if ((*q)->den) {
            differentiate_fraction(q, level);
        } else {
            differentiate(q, level, order);
            return;
        }
    }
}

}  // namespace kelmar
