// gcd/extended.cpp -- the extended gcd of polynomials in one variable.
//
// Euclid's sequence r with r = s a + t b all along; the cofactors go through the same steps.
#include "gcd/extended.h"
#include <utility>
#include "numbers/dispatch.h"
#include "poly/add.h"
#include "poly/div.h"
#include "poly/div_exact.h"
#include "poly/div_steps.h"
#include "poly/laurent.h"
#include "poly/mul.h"
#include "poly/mul_work.h"
#include "session/report.h"

namespace kelmar {

// A row (r, s, t) of the sequence.
struct egcd_row {
    polynode **r, **s, **t;
};

// *old = *old - q *now, and the two exchanged. product: an empty slot.
static void step_cofactor(polynode *q, polynode **old, polynode **now, polynode **product)
{
    poly_mult(q, *now, product, nilpol);
    polynode *const from = *old, *const less = *product;
    *old = *product = nullptr;
    best_poly_sub(from, less, old);
    std::swap(*old, *now);
}

// Run the sequence to a zero or a number. *last = the row of the gcd. Declines (0) when a lead has no
// inverse.
static int run_sequence(const egcd_row &first, const egcd_row &second, polynode **q, polynode **spare,
                        egcd_row *last)
{
    egcd_row old = first, now = second;
    while (!is_constant(*now.r)) {
        poll_interrupt();
        const std::int32_t degree = (*now.r)->exp;
        basic_poly_divide(*old.r, *now.r, q, spare, 1);
        if ((*spare)->exp >= degree) return 0;
        std::swap(*old.r, *now.r);
        std::swap(*now.r, *spare);
        free_poly(spare);
        step_cofactor(*q, old.s, now.s, spare);
        step_cofactor(*q, old.t, now.t, spare);
        free_poly(q);
    }
    *last = poly_iszero(*now.r) ? old : now;
    return 1;
}

// The row with a gcd that is monic.
static void make_monic(const egcd_row &row)
{
    number *const lead = leading_coef(*row.r);
    if (num_isone(lead)) return;
    number c;
    c.size = 0;
    num_assign(lead, &c);
    num_poly_quot(row.r, &c);
    num_poly_quot(row.s, &c);
    num_poly_quot(row.t, &c);
}

static void deliver(polynode **from, std::int32_t pads, polynode **to)
{
    add_pad(from, pads);
    free_poly(to);
    *to = *from;
    *from = nullptr;
}

// The extended gcd of a and b, which have lost `pads` wrappers. Declines (0) when a lead has no inverse.
[[gnu::noinline]] static int extended_gcd(polynode *a, polynode *b, polynode **g, polynode **s, polynode **t,
                                          std::int32_t pads)
{
    product_work *work = open_work(__builtin_frame_address(0));
    polynode **const part = work->parts;
    const egcd_row first = {part, part + 1, part + 2}, second = {part + 3, part + 4, part + 5};
    *first.r = copy_poly(a);
    poly_set(1, first.s);
    poly_set(0, first.t);
    *second.r = copy_poly(b);
    poly_set(0, second.s);
    poly_set(1, second.t);
    egcd_row last = {};
    const int done = run_sequence(first, second, part + 6, part + 7, &last);
    if (done) {
        make_monic(last);
        deliver(last.r, pads, g);
        deliver(last.s, pads, s);
        deliver(last.t, pads, t);
    }
    close_work(work);
    return done;
}

// The pair suits the sequence. Declines (0) after an error.
static int suits_egcd(const polynode *a, const polynode *b, std::int32_t level)
{
    if (laurent && (has_negative_exponents(a) || has_negative_exponents(b))) {
        error(err_negative_exponents, "EGCD");
    } else if (is_constant(a) || is_constant(b)) {
        error(err_egcd_constant, "EGCD");
    } else if ((field_depth > 0 && level >= field_depth) || !height_is_1(a) || !height_is_1(b)) {
        error(err_egcd_level, "EGCD");
    } else {
        return 1;
    }
    return 0;
}

int egcd_polys(polynode *a, polynode *b, polynode **g, polynode **s, polynode **t, const pt *names,
               std::int32_t swap)
{
    if (flotemode || !modularmode) {
        error(err_need_modular, "EGCD");
        return 0;
    }
    std::int32_t pads = 0;
    while (is_wrapper(a) && is_wrapper(b)) {
        a = a->coef;
        b = b->coef;
        ++pads;
    }
    if (!suits_egcd(a, b, (names ? names->level : 1) + pads)) return 0;
    return extended_gcd(a, b, g, swap ? t : s, swap ? s : t, pads);
}

}  // namespace kelmar
