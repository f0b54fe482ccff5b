// gcd/call_content.cpp -- the content as the language has it.
//
// Wrappers around the outermost variable are taken off before and put back after.
#include "gcd/call_content.h"
#include <utility>
#include "gcd/content.h"
#include "gcd/polygcd.h"
#include "numbers/dispatch.h"
#include "poly/laurent.h"
#include "poly/measure.h"
#include "poly/mul_work.h"
#include "session/report.h"

namespace kelmar {

static const char content_name[] = "Content";

// Numbers ------------------------------------------------------------------------------------------------

// *result = |n|, or 1.
static void content_of_number(const number *n, quolynode **result)
{
    if (lintmode || iszero(n)) {
        quoly_set(1, result);
        return;
    }
    number *const magnitude = number_result(result);
    num_assign(n, magnitude);
    num_abs(magnitude);
}

// The variable -------------------------------------------------------------------------------------------

// The level of the variable that p is, or 0.
static std::int32_t is_poly_var(const polynode *p)
{
    std::int32_t level = 1;
    for (; is_wrapper(p) && !p->isnum; p = p->coef) ++level;
    if (p->isnum || p->next || p->exp != 1 || !is_constant(p->coef)) return 0;
    return num_isone(p->coef->num) ? level : 0;
}

// The level that the value of the second argument names. 0 after an error.
static std::int32_t asked_level(const quolynode *variable)
{
    std::int32_t level = 0;
    if (variable->is_num) {
        if (!num_to_int(variable->num, &level)) level = 0;
        if (level < 1 || level > number_polys) {
            error(err_content_range, content_name);
            return 0;
        }
    } else {
        level = variable->den ? 0 : is_poly_var(variable->top);
        if (level == 0) {
            error(err_need_poly_variable, content_name);
            return 0;
        }
    }
    if (field_depth > 0 && level >= field_depth) {
        error(err_content_in_field, content_name);
        return 0;
    }
    return level;
}

// Polynomials --------------------------------------------------------------------------------------------

static pt *names_at(std::int32_t level)
{
    pt *names = polynames;
    while (level-- > 1) names = names->next;
    return names;
}

// *g = the content of p in the variable of `level`; first: the level of its outermost variable. As a
// polynomial of level 1.
static void content_at(const polynode *p, std::int32_t first, std::int32_t level, polynode **g)
{
    for (std::int32_t k = 1; k < first; ++k) p = p->coef;
    polynode *const inner = const_cast<polynode *>(p);  // restored
    pt *const names = names_at(first);
    if (level == first) {
        content(inner, g, names, 1, 1, 1);
        add_pad(g, first);
    } else {
        std::int32_t found = 1;
        general_content(inner, level - first + 1, g, names, &found, 1);
        add_pad(g, first - 1);
    }
}

// The content of the value of `argument` in the variable of `level`, 0 for its outermost.
[[gnu::noinline]] static void content_of_poly(const quolynode *argument, std::int32_t level,
                                              quolynode **result)
{
    product_work *work = open_work(__builtin_frame_address(0));
    polynode **const p = &work->parts[0], **const g = &work->parts[1];
    *p = copy_poly(argument->top);
    if (laurent) {
        exponent_shifts shifts;
        clear_bads(p, polynames, &shifts, 0, all_levels);
    }
    const std::int32_t first = poly_level(*p);
    if (level == 0) level = first;
    clear_gcd_counters();
    if (first == 0 || level < first) {
        std::swap(*g, *p);
    } else {
        content_at(*p, first, level, g);
    }
    polynode *found = nullptr;
    std::swap(found, *g);
    close_work(work);
    poly_to_quoly(&found, result);
    polynum_to_quoly(result);
}

void call_content(quolynode **argument, quolynode **result, quolynode **variable)
{
    const quolynode *const q = *argument;
    if (q->is_num) {
        content_of_number(q->num, result);
        return;
    }
    if (q->is_rat && !lintmode) {
        number numerator;
        numerator.size = 0;
        num_assign(q->top->num, &numerator);
        content_of_number(&numerator, result);
        special_free(&numerator);
        return;
    }
    std::int32_t level = 0;
    bool good = false;
    if (q->den) {
        error(err_has_denominator, content_name);
    } else if (laurent && argument == result) {
        error(err_content_in_place, content_name);
    } else {
        level = variable ? asked_level(*variable) : 0;
        good = !variable || level > 0;
    }
    if (good) {
        content_of_poly(q, level, result);
    } else {
        quoly_assign(q, result);
    }
}

}  // namespace kelmar
