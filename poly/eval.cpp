// poly/eval.cpp -- polynomials at numbers and polynomials, in some of their variables.
//
// At a number each coefficient is scaled by its power, once, and the copies are added up in pairs; a running
// sum would be walked again for every term. At a polynomial Horner's rule asks for the fewest products. At 1
// the coefficients are only added. Where only numbers are left, poly/eval_numbers.cpp does it.
#include "poly/eval.h"
#include "numbers/dispatch.h"
#include "numbers/long_power.h"
#include "poly/add.h"
#include "poly/mul_school.h"
#include "poly/mul_work.h"
#include "poly/power.h"
#include "session/report.h"

namespace kelmar {

static constexpr int sum_parts = work_parts - 2;

polynode *new_point(std::int32_t v)
{
    polynode *point = nullptr;
    poly_set(v, &point);
    return point;
}

// Pieces --------------------------------------------------------------------------------------------------

// The coefficient of the term as a polynomial that ends with it. Borrowed; *alone is its room.
static const polynode *coef_of(const polynode *t, polynode *alone)
{
    if (!t->isnum) return t->coef;
    *alone = *t;
    alone->next = nullptr;
    return alone;
}

// The value of a point as a polynomial, the same way. A product restores its operands.
static polynode *value_of_point(const polynode *point, polynode *alone)
{
    return const_cast<polynode *>(coef_of(point, alone));
}

static polynode *copy_unless_zero(const polynode *p)
{
    return poly_iszero(p) ? nullptr : copy_poly(p);
}

static void drop_zero(polynode **p)
{
    if (*p && poly_iszero(*p)) free_poly(p);
}

// *value = p as a constant, null for zero, where numbers are no residues. Declines (0).
[[gnu::noinline]] static int number_value(const polynode *p, const polynode *points, polynode **value)
{
    product_work *work = open_work(__builtin_frame_address(0));
    poly_set(0, &work->parts[0]);
    const int all = rat_all_poly_eval(p, points, work->parts[0]->num);
    if (all && !poly_iszero(work->parts[0])) {
        *value = work->parts[0];
        work->parts[0] = nullptr;
    }
    close_work(work);
    return all;
}

// The same everywhere. It serves when p has no more levels than there are points, all of them
// numbers. Declines (0).
static int constant_value(const polynode *p, const polynode *points, polynode **value)
{
    for (const polynode *t = points; t; t = t->next) {
        if (!t->isnum) return 0;
    }
    const num_view view = live_view();
    if (view != view_modular && view != view_field) return number_value(p, points, value);
    std::int32_t v = 0;
    if (!mod_all_poly_eval(p, points, &v)) return 0;
    if (v) poly_set(v, value);
    return 1;
}

// One level -----------------------------------------------------------------------------------------------

static polynode *evaluated(const polynode *p, const polynode *points, const pt *var);

// n * p, null for zero.
static polynode *scaled(const number *n, const polynode *p)
{
    polynode *product = nullptr;
    scalar_by_poly(n, p, &product);
    drop_zero(&product);
    return product;
}

// power = v^e. A negative e has no place here.
static void set_power(const number *v, std::int32_t e, number *power)
{
    if (e < 0) {
        kelmar_error("negative exponent", 1);
        setvalue(0, power);
        return;
    }
    num_assign(v, power);
    number_power(power, e);
}

// p at a number: the sum of its scaled coefficients; null for zero.
[[gnu::noinline]] static polynode *at_number(const polynode *p, const polynode *points, const pt *var)
{
    product_work *work = open_work(__builtin_frame_address(0));
    polynode **const coef = &work->parts[0], **const power = &work->parts[1];
    const number *const at = points->num;
    const bool at_one = num_isone(at);
    polynode alone;
    poly_set(0, power);
    for (; p; p = p->next) {
        poll_interrupt();
        const polynode *value = coef_of(p, &alone);
        if (points->next) {
            *coef = evaluated(value, points->next, var);
            if (!*coef) continue;
            value = *coef;
        }
        polynode *part = nullptr;
        if (at_one || p->exp == 0) {
            part = *coef ? *coef : copy_poly(value);
            *coef = nullptr;
        } else {
            set_power(at, p->exp, (*power)->num);
            part = scaled((*power)->num, value);
        }
        add_part(part, &work->parts[2], false);
        if (*coef) free_poly(coef);
    }
    polynode *sum = nullptr;
    total_parts(&work->parts[2], sum_parts, false, &sum);
    close_work(work);
    drop_zero(&sum);
    return sum;
}

// *sum = *sum v^gap, as long as it is not zero. *power is used.
static void times_power(polynode **sum, polynode *v, std::int64_t gap, polynode **power, const pt *var)
{
    while (gap != 0 && *sum) {
        const std::int32_t step = gap > INT32_MAX ? INT32_MAX : static_cast<std::int32_t>(gap);
        if (step == 1) {
            poly_mult(*sum, v, sum, var);
        } else {
            poly_assign(v, power);
            compute_power(power, step, var);
            poly_mult(*sum, *power, sum, var);
        }
        drop_zero(sum);
        gap -= step;
    }
}

// p at a polynomial, by Horner's rule; null for zero.
[[gnu::noinline]] static polynode *at_poly(const polynode *p, const polynode *points, const pt *var)
{
    product_work *work = open_work(__builtin_frame_address(0));
    polynode **const sum = &work->parts[0], **const coef = &work->parts[1], **const power = &work->parts[2];
    polynode coef_alone, point_alone;
    polynode *const v = value_of_point(points, &point_alone);
    for (; p; p = p->next) {
        poll_interrupt();
        *coef = evaluated(coef_of(p, &coef_alone), points->next, var);
        if (*sum && *coef) {
            polynode *part = *coef;
            *coef = nullptr;
            best_poly_add(*sum, part, sum);
            drop_zero(sum);
        } else if (*coef) {
            *sum = *coef;
            *coef = nullptr;
        }
        times_power(sum, v, std::int64_t{p->exp} - (p->next ? p->next->exp : 0), power, var);
    }
    polynode *value = *sum;
    *sum = nullptr;
    close_work(work);
    return value;
}

// p at the points, from its own level on; null for zero. var: of the first level that is left.
static polynode *evaluated(const polynode *p, const polynode *points, const pt *var)
{
    check_stack();
    if (!points || is_constant(p)) return copy_unless_zero(p);
    polynode *value = nullptr;
    if (constant_value(p, points, &value)) return value;
    polynode alone;
    const polynode *point = coef_of(points, &alone);
    if (points->isnum || !is_constant(point)) {
        return points->isnum ? at_number(p, points, var) : at_poly(p, points, var);
    }
    alone = *point;  // a number that stands as a polynomial
    alone.next = points->next;
    return at_number(p, &alone, var);
}

// Several levels ------------------------------------------------------------------------------------------

// p with `skip` levels kept; null for zero.
[[gnu::noinline]] static polynode *below_kept(const polynode *p, const polynode *points, std::int32_t skip,
                                              const pt *var)
{
    if (skip < 1) return evaluated(p, points, var);
    check_stack();
    if (is_constant(p)) return copy_unless_zero(p);
    product_work *work = open_work(__builtin_frame_address(0));
    polynode **end = &work->parts[0];
    polynode alone;
    for (; p; p = p->next) {
        polynode *coef = below_kept(coef_of(p, &alone), points, skip - 1, var);
        if (!coef) continue;
        make_monomial(end, p->exp, coef);
        end = &(*end)->next;
    }
    return result_of_work(work);
}

// The record of the first level behind `passed`; with none left, values are in all variables.
static const pt *var_behind(std::int32_t passed)
{
    const pt *var = polynames;
    while (var && passed-- > 0) var = var->next;
    return var ? var : polynames;
}

// *result = value, or 0 for null.
static void give_value(polynode *value, polynode **result)
{
    if (!value) poly_set(0, &value);
    free_poly(result);
    *result = value;
}

void all_poly_eval(const polynode *p, const polynode *points, polynode **result, std::int32_t skip)
{
    std::int32_t passed = skip < 0 ? 0 : skip;
    for (const polynode *t = points; t; t = t->next) ++passed;
    give_value(below_kept(p, points, skip, var_behind(passed)), result);
}

static polynode *padded(polynode *p)
{
    if (p) add_pad(&p, 1);
    return p;
}

// p, a list at `level`, at points that carry their levels; null for zero.
[[gnu::noinline]] static polynode *at_levels(const polynode *p, const polynode *points, std::int32_t level)
{
    check_stack();
    while (points && points->exp < level) points = points->next;
    if (!points || is_constant(p)) return copy_unless_zero(p);
    product_work *work = open_work(__builtin_frame_address(0));
    polynode **end = &work->parts[0];
    polynode alone;
    for (; p; p = p->next) {
        poll_interrupt();
        polynode *coef = at_levels(coef_of(p, &alone), points, level + 1);
        if (!coef) continue;
        make_monomial(end, p->exp, coef);
        end = &(*end)->next;
    }
    polynode *list = work->parts[0];
    if (list && points->exp == level) {
        polynode point = *points;
        point.next = nullptr;
        list = padded(evaluated(work->parts[0], &point, nilpol));
    } else {
        work->parts[0] = nullptr;
    }
    close_work(work);
    return list;
}

void old_all_poly_eval(polynode **p, const polynode *points, std::int32_t level)
{
    polynode *value = at_levels(*p, points, level);
    give_value(value, p);
}

// One number ------------------------------------------------------------------------------------------------

void poly_at_numb(polynode **result, const polynode *p, const polynode *v, const pt *names, int pad)
{
    if (!v->isnum) {
        kelmar_error("n2 not number in poly_at_numb", 1);
        poly_set(0, result);
        return;
    }
    polynode point = *v;
    point.next = nullptr;
    polynode *value = evaluated(p, &point, names ? names->next : nilpol);
    give_value(pad ? padded(value) : value, result);
}

[[gnu::noinline]] void poly_at_numb_2(polynode **result, const polynode *p, const polynode *v,
                                      const pt *names, int pad)
{
    product_work *work = open_work(__builtin_frame_address(0));
    polynode **end = &work->parts[0];
    polynode alone;
    const pt *const below = names ? names->next : nilpol;
    for (; p; p = p->next) {
        polynode *coef = nullptr;
        poly_at_numb(&coef, coef_of(p, &alone), v, below, pad);
        drop_zero(&coef);
        if (!coef) continue;
        make_monomial(end, p->exp, coef);
        end = &(*end)->next;
    }
    give_value(result_of_work(work), result);
}

void mod_poly_at_numb(polynode **result, const polynode *p, std::int32_t v, const pt *names, int pad)
{
    number residue = {};
    residue.word = v;
    polynode point = {};
    point.isnum = 1;
    point.num = &residue;
    poly_at_numb(result, p, &point, names, pad);
}

}  // namespace kelmar
