// quoly/normal_form.cpp -- the form in which every finished value is kept.
//
// The rules themselves are settle_fraction of quoly/fraction.cpp, which works on the two polynomials; here
// they are applied to a value in place, after a gcd where one may be left. The two ways of numbers, digit
// chains or words and doubles, part at constants alone: the one keeps a constant denominator and takes out
// common numbers, the other divides it in.
#include "quoly/normal_form.h"
#include "numbers/dispatch.h"
#include "numbers/long_gcd.h"
#include "poly/content.h"
#include "poly/div_exact.h"
#include "poly/laurent.h"
#include "poly/measure.h"
#include "poly/mul_work.h"
#include "poly/variables.h"
#include "quoly/fraction.h"
#include "quoly/towers.h"

namespace kelmar {

// Numbers in common -------------------------------------------------------------------------------------

// Take the common number out of two polynomials that are not zero. The gcd stands where a jump finds it.
[[gnu::noinline]] static void take_common_number(polynode **top, polynode **den)
{
    product_work *work = open_work(__builtin_frame_address(0));
    poly_set(1, &work->parts[0]);
    poly_set(1, &work->parts[1]);
    number *const g = work->parts[0]->num, *const h = work->parts[1]->num;
    find_gcdcoefs(*top, g);
    if (!num_isone(g)) {
        find_gcdcoefs(*den, h);
        binary_gcd(g, h, g);
    }
    if (!num_isone(g)) {
        num_poly_quot(top, g);
        num_poly_quot(den, g);
    }
    close_work(work);
}

void sanitize(quolynode *q)
{
    if (!q->is_num && q->den && !lintmode) take_common_number(&q->top, &q->den);
}

// Normal forms ------------------------------------------------------------------------------------------

// Make the record say what its polynomials are.
static void mark_value(quolynode **q)
{
    (*q)->is_rat = !lintmode && (*q)->den && is_constant((*q)->top) && is_constant((*q)->den);
    polynum_to_quoly(q);
}

void normal_form(quolynode **q, std::int32_t clear)
{
    if ((*q)->is_num) return;
    settle_fraction(&(*q)->top, &(*q)->den, clear);
    mark_value(q);
}

void lint_normal_form(quolynode **q, std::int32_t clear)
{
    normal_form(q, clear);
}

// Divide top and den of *q by their gcd. What is new stands in a work record until it is complete.
[[gnu::noinline]] static void cancel_value(quolynode *q)
{
    product_work *work = open_work(__builtin_frame_address(0));
    polynode *top = q->top, *den = q->den;
    cancel_pair(&top, &den, &work->parts[0], &work->parts[1], &work->parts[2]);
    if (!top) {
        poly_set(1, &q->top);
        free_poly(&q->den);
    } else if (top != q->top) {
        free_poly(&q->top);
        free_poly(&q->den);
        q->top = work->parts[0];
        q->den = work->parts[1];
        work->parts[0] = work->parts[1] = nullptr;
    }
    close_work(work);
}

void check_quoly(quolynode **q, std::int32_t clear)
{
    if ((*q)->is_num) return;
    if ((*q)->den && !poly_iszero((*q)->den) && !poly_iszero((*q)->top)) cancel_value(*q);
    normal_form(q, clear);
}

void lint_check_quoly(quolynode **q, std::int32_t clear)
{
    check_quoly(q, clear);
}

void quoly_mod_convert(quolynode **q)
{
    convert_field_denominator(&(*q)->top, &(*q)->den);
    mark_value(q);
}

// Checks ------------------------------------------------------------------------------------------------

static bool is_one_constant(const polynode *p)
{
    return is_constant(p) && num_isone(p->num);
}

// Rules 2 to 5, 7 to 9 for a value with a denominator.
static bool den_is_normal(const quolynode *q)
{
    if (is_one_constant(q->den) || poly_iszero(q->den) || poly_iszero(q->top)) return false;
    if (field_depth > 0 && poly_depth(q->den) >= field_depth) return false;
    const bool rational = !lintmode && is_constant(q->top) && is_constant(q->den);
    if (q->is_rat != (rational ? 1 : 0)) return false;
    if (!lintmode) return !neg_leading_term(q->den);
    if (is_constant(q->den)) return false;
    const number *lead = leading_coef(q->den);
    return num_isone(lead) || (!flotemode && !modularmode && !num_isneg(lead));
}

// Rule 8.
static bool has_no_common_power(const polynode *den)
{
    if (!laurent) return true;
    exponent_shifts shifts;
    polynode *copy = copy_poly(den);
    const int moved = clear_bads(&copy, polynames, &shifts, any_exponent, all_levels);
    free_poly(&copy);
    return !moved;
}

// Rule 6. With doubles a common divisor may hide in rounding errors, and no more can be asked.
static bool is_reduced(const quolynode *q)
{
    if (!has_gcds() || flotemode) return true;
    polynode *g = nullptr;
    spared_gcd(q->top, q->den, &g);
    const bool reduced = is_one_constant(g);
    free_poly(&g);
    return reduced;
}

bool quoly_is_normal(const quolynode *q, std::int32_t levels)
{
    if (q->is_num) return true;
    if (!poly_is_normal(q->top, levels)) return false;
    if (!q->den) return !q->is_rat && !is_constant(q->top);
    return poly_is_normal(q->den, levels) && den_is_normal(q) && has_no_common_power(q->den) && is_reduced(q);
}

}  // namespace kelmar
