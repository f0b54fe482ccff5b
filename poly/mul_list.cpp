// poly/mul_list.cpp -- Karatsuba on lists.
//
// With e the smaller of the distances from the middle term down to the lowest, a = H x^e + L, where L is
// the tail of a as it stands and H has a fresh node for each term before it, exponents lowered by e. Only
// these nodes are made; their coefficients are shared with a, so a is read and never altered: an interrupt
// can be answered anywhere inside. Then, with P2 = Ha Hb, P3 = La Lb and M = (Ha + La)(Hb + Lb) - P2 - P3,
//
//     a b = P2 x^2e + M x^e + P3.
#include "poly/mul_list.h"
#include "poly/add.h"
#include "poly/mul_array.h"
#include "poly/mul_work.h"
#include "session/report.h"

namespace kelmar {

// One operand cut in two.
struct halves {
    polynode *high;  // a loan of the work record
    polynode *low;   // the operand's own tail
};

// Where the parts of one step stand in its work record.
enum step_part { part_sum_a, part_sum_b, part_middle, part_high, part_low };

void shift_exponents(polynode **p, std::int32_t e)
{
    for (polynode *t = *p; t; t = t->next) {
        if (t->isnum) {
            t->coef = new_constant(t->num);
            t->isnum = 0;
        }
        t->exp += e;
        if (t->exp == 0 && is_constant(t->coef)) {
            polynode *constant = t->coef;
            t->num = constant->num;
            t->isnum = 1;
            give_node(constant);
        }
    }
}

// The exponent of term k of p, counted from 1.
static std::int32_t exp_of_term(const polynode *p, std::int32_t k)
{
    while (--k > 0) p = p->next;
    return p->exp;
}

// Return a node for the term t of the operand with the exponent lowered by e, sharing what hangs below.
// *lone: the node between, where a number leaves exp 0.
static polynode *lowered_node(const polynode *t, std::int32_t e, polynode **lone)
{
    const std::int32_t exp = t->exp - e;
    if (t->isnum) {
        *lone = new_constant(t->num);
        return new_term(exp, *lone);
    }
    if (exp == 0 && is_constant(t->coef)) return new_constant(t->coef->num);
    return new_term(exp, t->coef);
}

// Cut p after its term `count`, exponents above lowered by e; loans[0 .. 1] keep the nodes.
static void cut_in_two(polynode *p, std::int32_t count, std::int32_t e, polynode **loans, halves *cut)
{
    polynode **end = &loans[0];
    for (; count > 0; --count, p = p->next) {
        *end = lowered_node(p, e, &loans[1]);
        end = &(*end)->next;
    }
    cut->high = loans[0];
    cut->low = p;
}

// The product of two halves: by poly_mult, or by simplest_poly_mult for one level of words.
static void half_product(polynode *a, polynode *b, bool simple, polynode **c, const pt *var)
{
    if (simple) {
        simplest_poly_mult(a, b, c, 0, 0, 0, 0);
    } else {
        poly_mult(a, b, c, var);
    }
}

// *sum = *sum + x^e * *part, which is consumed.
static void add_shifted(polynode **part, std::int32_t e, polynode **sum, const pt *var)
{
    if (!poly_iszero(*part)) {
        shift_exponents(part, e);
        if (var && var->relation) fold_poly(part, var);
    }
    polynode *total = nullptr;
    best_poly_add(*sum, *part, &total);
    *part = nullptr;
    *sum = total;
}

// part[part_middle], part[part_high] and part[part_low] = the three products; a square is recognised.
static void three_products(const halves *a, const halves *b, bool square, bool simple, polynode **part,
                           const pt *var)
{
    poly_add(a->high, a->low, &part[part_sum_a]);
    if (!square) poly_add(b->high, b->low, &part[part_sum_b]);
    half_product(part[part_sum_a], part[square ? part_sum_a : part_sum_b], simple, &part[part_middle], var);
    free_poly(&part[part_sum_a]);
    free_poly(&part[part_sum_b]);
    half_product(a->high, square ? a->high : b->high, simple, &part[part_high], var);
    half_product(a->low, square ? a->low : b->low, simple, &part[part_low], var);
    better_poly_sub(part[part_middle], part[part_high], &part[part_middle]);
    better_poly_sub(part[part_middle], part[part_low], &part[part_middle]);
}

[[gnu::noinline]] static void karatsuba_step(polynode *a, polynode *b, std::int32_t len_a, std::int32_t len_b,
                                             std::int32_t low_a, std::int32_t low_b, bool simple,
                                             polynode **c, const pt *var)
{
    const bool square = a == b;
    const std::int32_t count_a = len_a / 2, count_b = len_b / 2;
    std::int32_t e = exp_of_term(a, count_a) - low_a;
    if (!square) {
        const std::int32_t e_b = exp_of_term(b, count_b) - low_b;
        if (e_b < e) e = e_b;
    }
    product_work *work = open_work(__builtin_frame_address(0));
    polynode **const part = work->parts;
    halves cut_a, cut_b = {nullptr, nullptr};
    cut_in_two(a, count_a, e, work->loans, &cut_a);
    if (!square) cut_in_two(b, count_b, e, work->loans + 2, &cut_b);
    three_products(&cut_a, &cut_b, square, simple, part, var);
    add_shifted(&part[part_middle], e, &part[part_low], var);
    add_shifted(&part[part_high], 2 * e, &part[part_low], var);
    *c = part[part_low];
    part[part_low] = nullptr;
    close_work(work);
}

void karatsuba_poly_mult(polynode *a, polynode *b, std::int32_t len_a, std::int32_t len_b, std::int32_t low_a,
                         std::int32_t low_b, polynode **c, const pt *var)
{
    karatsuba_step(a, b, len_a, len_b, low_a, low_b, false, c, var);
}

void simplest_karatsuba(polynode *a, polynode *b, std::int32_t len_a, std::int32_t len_b, std::int32_t low_a,
                        std::int32_t low_b, polynode **c)
{
    karatsuba_step(a, b, len_a, len_b, low_a, low_b, true, c, nilpol);
}

}  // namespace kelmar
