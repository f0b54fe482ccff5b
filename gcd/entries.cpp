// gcd/entries.cpp -- gcds as new problems, and negative exponents on the way.
//
// polygcd knows no negative exponents. Where they are allowed a power is a unit, and operands are shifted to
// exponents from 0 on. The caller's polynomials are not shifted while the gcd runs, for it may be left by a
// jump: a copy is.
#include "gcd/entries.h"
#include "gcd/balance.h"
#include "gcd/polygcd.h"
#include "numbers/dispatch.h"
#include "poly/laurent.h"
#include "poly/mul_work.h"
#include "session/report.h"

namespace kelmar {

static void new_problem(polynode *a, polynode *b, polynode **result, pt *names, std::int32_t a_is_ours,
                        std::int32_t b_is_ours)
{
    alg_c_count = 0;
    original_depth = 1;
    polygcd(a, b, result, 0, 1, 1, names, a_is_ours, b_is_ours, 1);
}

// The gcd of doubles, in variables that have been stretched.
[[gnu::noinline]] static void balanced_problem(polynode *a, polynode *b, polynode **result, const balance *s,
                                               pt *names)
{
    product_work *work = open_work(__builtin_frame_address(0));
    polynode **const scaled = work->parts;
    scaled[0] = copy_poly(a);
    scaled[1] = copy_poly(b);
    scale_variables(scaled[0], s, 1, 0);
    scale_variables(scaled[1], s, 1, 0);
    new_problem(scaled[0], scaled[1], &scaled[2], names, 0, 0);
    scale_variables(scaled[2], s, -1, leading_shift(scaled[2], s));
    polynode *g = scaled[2];
    scaled[2] = nullptr;
    close_work(work);
    free_poly(result);
    *result = g;
}

static void plain_problem(polynode *a, polynode *b, polynode **result, pt *names)
{
    balance s;
    if (flotemode && a != b && find_balance(a, b, &s)) {
        balanced_problem(a, b, result, &s, names);
    } else {
        new_problem(a, b, result, names, 1, 1);
    }
}

// Return p, or a copy free of negative exponents in *part.
static polynode *shifted(polynode *p, polynode **part, const pt *names)
{
    if (!has_negative_exponents(p)) return p;
    exponent_shifts shifts;
    *part = copy_poly(p);
    clear_bads(part, names, &shifts, 0, all_levels);
    return *part;
}

[[gnu::noinline]] static void laurent_problem(polynode *a, polynode *b, polynode **result, pt *names)
{
    product_work *work = open_work(__builtin_frame_address(0));
    polynode *const shifted_a = shifted(a, &work->parts[0], names);
    polynode *const shifted_b = a == b ? shifted_a : shifted(b, &work->parts[1], names);
    new_problem(shifted_a, shifted_b, result, names, shifted_a == a || a == b, shifted_b == b || a == b);
    close_work(work);
}

void Lpolygcd(polynode **a, polynode **b, polynode **result, std::int32_t also_b, pt *names)
{
    if (!laurent || (!also_b && !has_negative_exponents(*a))) {
        plain_problem(*a, *b, result, names);
    } else {
        laurent_problem(*a, *b, result, names);
    }
}

void Lpolygcd2(polynode **a, polynode **b, polynode **result, pt *names)
{
    exponent_shifts shifts;
    if (laurent) {
        clear_bads(a, names, &shifts, 0, all_levels);
        if (*a != *b) clear_bads(b, names, &shifts, 0, all_levels);
    }
    new_problem(*a, *b, result, names, 1, 1);
}

void Lpolygcd3(polynode **a, polynode **result, pt *names)
{
    Lpolygcd(a, a, result, 1, names);
}

// Values -------------------------------------------------------------------------------------------------

static void gcd_of_number(const quolynode *q, quolynode **result)
{
    quoly_assign(q, result);
    if (exact_integers()) {
        num_abs((*result)->num);
    } else if (!iszero((*result)->num)) {
        setvalue(1, (*result)->num);
    }
}

void gcd_0_poly(quolynode **q, quolynode **result)
{
    if ((*q)->is_num) {
        gcd_of_number(*q, result);
        return;
    }
    if ((*q)->den) {
        error(err_gcd_denominator, " ");
        quoly_assign(*q, result);
        return;
    }
    polynode *g = nullptr;
    Lpolygcd3(&(*q)->top, &g, polynames);
    poly_to_quoly(&g, result);
}

}  // namespace kelmar
