// gcd/driver_finish.cpp -- the end of a problem: everything that was taken out goes back.
#include "gcd/driver.h"
#include "gcd/measure.h"
#include "numbers/dispatch.h"
#include "poly/mul.h"
#include "session/report.h"

namespace kelmar {

void add_factor(gcd_problem *f, polynode **c)
{
    polynode **factor = part_of(f, part_factor);
    if (!is_constant(*c)) f->removed = 1;
    if (!*factor) {
        *factor = *c;
        *c = nullptr;
    } else {
        poly_mult(*factor, *c, factor, f->names->next);
        free_poly(c);
    }
}

// *p = *p with exponents of the outer list stretched by the stride, times the power; in place.
static void spread_exponents(polynode **p, std::int32_t stride, std::int32_t power)
{
    if (stride == 1 && power == 0) return;
    if (is_constant(*p)) {
        make_monomial(p, power, *p);
        return;
    }
    for (polynode *t = *p; t; t = t->next) {
        t->exp = t->exp * stride + power;
        if (t->isnum && power > 0) {
            t->coef = new_constant(t->num);
            t->isnum = 0;
        }
    }
}

// A power of the outer variable for a caller who asks for the degree; what is free of it stays, for there
// the caller asks whether it is a number.
static void answer_exponent(gcd_problem *f, polynode **core)
{
    const std::int32_t degree = (*core)->exp * f->stride + f->power;
    if (degree > 0) {
        poly_set(1, core);
        make_monomial(core, degree, *core);
    }
    put_result(f->result, core);
}

int finish(gcd_problem *f, gcd_exit end, polynode **core)
{
    polynode **outer = part_of(f, part_outer), **factor = part_of(f, part_factor);
    f->end = end;
    if (f->pending.entry) {
        if (!lintmode && neg_leading_term(*core)) poly_inplace(*core);
        keep_gcd(&f->pending, *core, too_many_filled);
    }
    if (*outer) poly_mult(*core, *outer, core, f->names);
    if (*factor) {
        add_pad(factor, 1);
        poly_mult(*core, *factor, core, f->names);
    }
    if (f->exponent_only) {
        answer_exponent(f, core);
        return 1;
    }
    spread_exponents(core, f->stride, f->power);
    normalise_gcd(core);
    put_result(f->result, core);
    return 1;
}

int finish_number(gcd_problem *f, gcd_exit end, std::int32_t v)
{
    polynode **core = part_of(f, part_core);
    poly_set(v, core);
    return finish(f, end, core);
}

int finish_degree(gcd_problem *f, gcd_exit end, std::int32_t degree)
{
    polynode **core = part_of(f, part_core);
    polynode **outer = part_of(f, part_outer);
    f->end = end;
    keep_gcd(&f->pending, nullptr, too_many_filled);
    poly_set(1, core);
    const std::int32_t more = *outer ? (*outer)->exp : 0;
    make_monomial(core, degree + more, *core);
    answer_exponent(f, core);
    return 1;
}

}  // namespace kelmar
