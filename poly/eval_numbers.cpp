// poly/eval_numbers.cpp -- polynomials at numbers, for all variables at once.
//
// Horner's rule in each list, which asks for the value of a coefficient as it comes to it. Residues need no
// storage at all. Other numbers need two records a level, made once before the walk.
#include "numbers/dispatch.h"
#include "numbers/long_power.h"
#include "numbers/word_mod.h"
#include "poly/eval.h"
#include "poly/mul_work.h"
#include "session/report.h"

namespace kelmar {

// Residues ------------------------------------------------------------------------------------------------

std::int32_t fast_mod_power(std::int32_t v, std::uint32_t e)
{
    std::int32_t power = 1;
    for (; e > 0; e >>= 1) {
        if (e & 1) power = modmult(power, v);
        if (e > 1) v = modmult(v, v);
    }
    return power;
}

// The gap between the exponents of a term and the next, or what is left behind the last one.
static std::int64_t gap_behind(const polynode *t)
{
    return std::int64_t{t->exp} - (t->next ? t->next->exp : 0);
}

static std::int32_t times_power(std::int32_t sum, std::int32_t v, std::int64_t gap)
{
    if (gap == 1) return modmult(sum, v);
    if (gap < 0) {
        kelmar_error("negative exponent", 1);
        return 0;
    }
    return gap == 0 || sum == 0 ? sum : modmult(sum, fast_mod_power(v, static_cast<std::uint32_t>(gap)));
}

int mod_all_poly_eval(const polynode *p, const polynode *points, std::int32_t *v)
{
    if (is_constant(p)) {
        *v = p->num->word;
        return 1;
    }
    check_stack();
    if (!points || !points->isnum) return 0;
    const std::int32_t at = points->num->word;
    std::int32_t sum = 0;
    for (; p; p = p->next) {
        std::int32_t coef = 0;
        if (p->isnum) {
            coef = p->num->word;
        } else if (!mod_all_poly_eval(p->coef, points->next, &coef)) {
            return 0;
        }
        sum = mod_add(sum, coef, modulus);
        if (at != 1) sum = times_power(sum, at, gap_behind(p));
    }
    *v = sum;
    return 1;
}

// Other numbers -------------------------------------------------------------------------------------------

// Make `count` number nodes, each worth 0, at *list.
static void make_records(polynode **list, std::int32_t count)
{
    for (; count > 0; --count) {
        polynode *zero = nullptr;
        poly_set(0, &zero);
        zero->next = *list;
        *list = zero;
    }
}

// sum = sum * v^gap; *power is overwritten.
static void times_power(number *sum, number *v, std::int64_t gap, number *power)
{
    if (gap < 0) {
        kelmar_error("negative exponent", 1);
        setvalue(0, sum);
        return;
    }
    if (gap == 1) return num_mul(sum, v, sum);
    while (gap > 0 && !iszero(sum)) {
        const std::int32_t step = gap > INT32_MAX ? INT32_MAX : static_cast<std::int32_t>(gap);
        num_assign(v, power);
        number_power(power, step);
        num_mul(sum, power, sum);
        gap -= step;
    }
}

// *sum = p at the points. records: two for each level below.
static bool value_of(const polynode *p, const polynode *points, const polynode *records, number *sum)
{
    if (is_constant(p)) {
        num_assign(p->num, sum);
        return true;
    }
    check_stack();
    if (!points || !points->isnum) return false;
    number *const coef = records->num;
    number *const power = records->next->num;
    const bool at_one = num_isone(points->num);
    bool first = true;
    for (; p; p = p->next, first = false) {
        poll_interrupt();
        number *const value = first ? sum : coef;
        if (p->isnum) {
            num_assign(p->num, value);
        } else if (!value_of(p->coef, points->next, records->next->next, value)) {
            return false;
        }
        if (!first) num_add(sum, coef, sum);
        if (!at_one) times_power(sum, points->num, gap_behind(p), power);
    }
    return true;
}

[[gnu::noinline]] int rat_all_poly_eval(const polynode *p, const polynode *points, number *n)
{
    std::int32_t levels = 0;
    for (const polynode *t = points; t; t = t->next) ++levels;
    product_work *work = open_work(__builtin_frame_address(0));
    make_records(&work->parts[0], 2 * levels);
    const bool all = value_of(p, points, work->parts[0], n);
    close_work(work);
    if (flotemode) n->real += 0.0;  // on purpose: there is one zero
    return all;
}

}  // namespace kelmar
