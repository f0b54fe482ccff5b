// gcd/general_content.cpp -- contents in an inner variable.
//
// The polynomial is turned so that the variable comes outermost, by exchanges of neighbours, which use the
// numbers again; the records of the variables are put in the same order for the length of the gcds.
#include <utility>
#include "gcd/content.h"
#include "poly/measure.h"
#include "poly/mul_work.h"
#include "session/report.h"

namespace kelmar {

// Views --------------------------------------------------------------------------------------------------

// *p with the variable `level` lists down as the outer one.
static void bring_up(polynode **p, std::int32_t level)
{
    check_stack();
    if (level < 2 || is_constant(*p)) return;
    if (level > 2) {
        for (polynode *t = *p; t; t = t->next) {
            if (!t->isnum) bring_up(&t->coef, level - 1);
        }
    }
    swap_levels_1_2(p);
}

void convert_poly(const polynode *p, std::int32_t level, polynode **view)
{
    *view = copy_poly(p);
    bring_up(view, level);
}

void patch_up(polynode **p, std::int32_t level)
{
    check_stack();
    if (level < 2 || is_constant(*p)) return;
    swap_levels_1_2(p);
    if (level == 2) return;
    for (polynode *t = *p; t; t = t->next) {
        if (!t->isnum) patch_up(&t->coef, level - 1);
    }
}

void pad_at_level(polynode **p, std::int32_t level)
{
    check_stack();
    if (is_constant(*p)) return;
    if (level <= 1) {
        add_pad(p, 1);
        return;
    }
    for (polynode *t = *p; t; t = t->next) {
        if (!t->isnum) pad_at_level(&t->coef, level - 1);
    }
}

// The content --------------------------------------------------------------------------------------------

// Records for the view with the variable `level` lists down as the outer one: `room` has `level` of them.
// Below, the records in use go on.
static pt *turned_names(pt *names, std::int32_t level, pt *room)
{
    pt *real = names;
    for (std::int32_t k = 1; k < level && real; ++k, real = real->next) room[k] = *real;
    if (!real) return nullptr;
    room[0] = *real;
    for (std::int32_t k = 0; k < level; ++k) {
        room[k].level = static_cast<std::int16_t>(names->level + k);
        room[k].next = k + 1 < level ? &room[k + 1] : real->next;
    }
    return room;
}

// *result = the content of *view, the converted form, with a list for the variable again.
[[gnu::noinline]] static void content_of_view(polynode **view, std::int32_t level, polynode **result,
                                              pt *names, std::int32_t big)
{
    pt room[variable_limit];
    product_work *work = open_work(__builtin_frame_address(0));
    polynode **const p = &work->parts[0], **const g = &work->parts[1];
    std::swap(*p, *view);
    pt *const turned = turned_names(names, level, room);
    if (turned) {
        content(*p, g, turned, 0, big, 0);
    } else {
        kelmar_error("q number in general content", 1);
        poly_set(1, g);
    }
    pad_at_level(g, level);
    polynode *found = nullptr;
    std::swap(found, *g);
    close_work(work);
    free_poly(result);
    *result = found;
}

// *result = p itself, or 1 when that is asked for.
static void absent_variable(const polynode *p, polynode **result, std::int32_t *found)
{
    if (*found) {
        poly_assign(p, result);
    } else {
        *found = 1;
        poly_set(1, result);
    }
}

void general_content(polynode *p, std::int32_t level, polynode **result, pt *names, std::int32_t *found,
                     std::int32_t big)
{
    if (p->exp == 0) {
        kelmar_error(" 0 exp head node in general_content", 1);
        poly_assign(p, result);
        return;
    }
    polynode *view = nullptr;
    convert_poly(p, level, &view);
    if (is_wrapper(view) || is_constant(view)) {
        free_poly(&view);
        absent_variable(p, result, found);
    } else {
        content_of_view(&view, level, result, names, big);
    }
}

}  // namespace kelmar
