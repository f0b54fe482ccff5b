// gcd/emgcd.cpp -- the half-gcd on lists.
//
// As on arrays, but a pair and a matrix are handles, and every intermediate list stands in the record of its
// routine, so that an interrupt loses nothing.
#include "gcd/emgcd.h"
#include <utility>
#include "gcd/onevar_gcd.h"
#include "poly/add.h"
#include "poly/div.h"
#include "poly/mul.h"
#include "poly/mul_list.h"
#include "poly/mul_work.h"
#include "session/report.h"

namespace kelmar {

// Matrices -----------------------------------------------------------------------------------------------

struct list_matrix {
    polynode **t11, **t12, **t21, **t22;
};
static_assert(std::is_trivial_v<list_matrix>);

// The matrix in four parts of a record.
static list_matrix matrix_in(product_work *work, int from)
{
    polynode **const part = work->parts + from;
    return {part, part + 1, part + 2, part + 3};
}

static void set_unit(const list_matrix &t)
{
    poly_set(1, t.t11);
    poly_set(0, t.t12);
    poly_set(0, t.t21);
    poly_set(1, t.t22);
}

// *z = *z + a b. product: an empty slot.
static void add_product(polynode *a, polynode *b, polynode **z, polynode **product)
{
    if (poly_iszero(a) || poly_iszero(b)) return;
    poly_mult(a, b, product, nilpol);
    polynode *const sum = *z, *const more = *product;
    *z = *product = nullptr;
    best_poly_add(sum, more, z);
}

// (*a, *b) = t (*a, *b).
[[gnu::noinline]] static void mult_t_m(const list_matrix &t, polynode **a, polynode **b)
{
    product_work *work = open_work(__builtin_frame_address(0));
    polynode **const u = &work->parts[0], **const v = &work->parts[1], **const product = &work->parts[2];
    poly_set(0, u);
    poly_set(0, v);
    add_product(*t.t11, *a, u, product);
    add_product(*t.t12, *b, u, product);
    add_product(*t.t21, *a, v, product);
    add_product(*t.t22, *b, v, product);
    std::swap(*u, *a);
    std::swap(*v, *b);
    close_work(work);
}

// t = r t.
static void mult_matrices(const list_matrix &r, const list_matrix &t)
{
    mult_t_m(r, t.t11, t.t21);
    mult_t_m(r, t.t12, t.t22);
}

// Steps --------------------------------------------------------------------------------------------------

// (*a, *b) = (*b, *a - q *b). product: an empty slot.
static void step_row(polynode *q, polynode **a, polynode **b, polynode **product)
{
    poly_mult(q, *b, product, nilpol);
    polynode *const difference = *a, *const less = *product;
    *a = *product = nullptr;
    best_poly_sub(difference, less, a);
    std::swap(*a, *b);
}

// (*a, *b) = (*b, *a mod *b), and the rows of t, when it is there, as the pair.
[[gnu::noinline]] static void division_step(polynode **a, polynode **b, const list_matrix *t)
{
    product_work *work = open_work(__builtin_frame_address(0));
    polynode **const q = &work->parts[0], **const r = &work->parts[1], **const product = &work->parts[2];
    poll_interrupt();
    simplest_poly_divide(*a, *b, q, r, 1);
    std::swap(*a, *b);
    std::swap(*b, *r);
    if (t) {
        step_row(*q, t->t11, t->t21, product);
        step_row(*q, t->t12, t->t22, product);
    }
    close_work(work);
}

// Half of the degree of p, rounded up.
static std::int32_t half_degree(const polynode *p)
{
    return p->exp / 2 + p->exp % 2;
}

// The pair is not yet down to degree h.
static bool goes_on(const polynode *b, std::int32_t h)
{
    return !is_constant(b) && b->exp >= h;
}

static void steps_to(polynode **a, polynode **b, std::int32_t h, const list_matrix *t)
{
    while (goes_on(*b, h)) division_step(a, b, t);
}

void emgcd_basic(polynode **a, polynode **b, polynode **t11, polynode **t12, polynode **t21, polynode **t22,
                 std::int32_t matrix)
{
    const list_matrix t = {t11, t12, t21, t22};
    if (matrix) set_unit(t);
    steps_to(a, b, half_degree(*a), matrix ? &t : nullptr);
}

void emgcd_fastest(polynode **a, polynode **b, polynode **t11, polynode **t12, polynode **t21, polynode **t22,
                   std::int32_t matrix)
{
    emgcd_basic(a, b, t11, t12, t21, t22, matrix);
}

// Halves -------------------------------------------------------------------------------------------------

// *high = the terms of *p from exponent k on, over X^k; *p = the rest.
static void split_up(polynode **p, std::int32_t k, polynode **high)
{
    polynode **place = p;
    while (*place && (*place)->exp >= k) place = &(*place)->next;
    polynode *const low = *place;
    *place = nullptr;
    *high = *p;
    *p = low;
    if (*high) {
        shift_exponents(high, -k);
    } else {
        poly_set(0, high);
    }
    if (!*p) poly_set(0, p);
}

// *p = *p + *high X^k; *high becomes null.
static void put_together(polynode **p, std::int32_t k, polynode **high)
{
    polynode *const low = *p;
    if (!poly_iszero(*high)) shift_exponents(high, k);
    polynode *const top = *high;
    *p = *high = nullptr;
    best_poly_add(low, top, p);
}

// emgcd_full on the pair over X^k, applied to the whole. t = the matrix.
[[gnu::noinline]] static void half_above(polynode **a, polynode **b, std::int32_t k, const list_matrix &t)
{
    product_work *work = open_work(__builtin_frame_address(0));
    polynode **const u = &work->parts[0], **const v = &work->parts[1];
    split_up(a, k, u);
    split_up(b, k, v);
    emgcd_full(u, v, t.t11, t.t12, t.t21, t.t22, 1);
    mult_t_m(t, a, b);
    put_together(a, k, u);
    put_together(b, k, v);
    close_work(work);
}

// emgcd_full for a pair that is worth being cut. t holds the unit, or is null.
[[gnu::noinline]] static void both_halves(polynode **a, polynode **b, const list_matrix *t)
{
    product_work *work = open_work(__builtin_frame_address(0));
    const std::int32_t h = half_degree(*a);
    const list_matrix half = matrix_in(work, 0);
    half_above(a, b, h, half);
    if (t) mult_matrices(half, *t);
    if (goes_on(*b, h)) division_step(a, b, t);
    if (goes_on(*b, h)) {
        half_above(a, b, 2 * h - (*a)->exp, half);
        if (t) mult_matrices(half, *t);
    }
    close_work(work);
}

void emgcd_full(polynode **a, polynode **b, polynode **t11, polynode **t12, polynode **t21, polynode **t22,
                std::int32_t matrix)
{
    check_stack();
    const list_matrix t = {t11, t12, t21, t22};
    const std::int32_t h = half_degree(*a);
    if (matrix) set_unit(t);
    if (!goes_on(*b, h)) return;
    if ((*a)->exp < poly_cutoff) {
        emgcd_basic(a, b, t11, t12, t21, t22, matrix);
    } else {
        both_halves(a, b, matrix ? &t : nullptr);
        steps_to(a, b, h, matrix ? &t : nullptr);
    }
}

// The gcd ------------------------------------------------------------------------------------------------

// The gcd of the pair when *b is a number: taken from *a, or 1. Else null.
static polynode *gcd_at_end(polynode **a, polynode *b)
{
    if (!is_constant(b)) return nullptr;
    polynode *g = nullptr;
    if (poly_iszero(b)) {
        std::swap(g, *a);
    } else {
        poly_set(1, &g);
    }
    return g;
}

[[gnu::noinline]] void emgcd_poly(polynode *a, polynode *b, polynode **result, const pt *names,
                                  std::int32_t first)
{
    product_work *work = open_work(__builtin_frame_address(0));
    polynode **const u = &work->parts[0], **const v = &work->parts[1], **const g = &work->parts[2];
    const list_matrix none = matrix_in(work, 3);
    *u = copy_poly(a);
    *v = copy_poly(b);
    if (first) division_step(u, v, nullptr);
    while (!(*g = gcd_at_end(u, *v))) {
        emgcd_full(u, v, none.t11, none.t12, none.t21, none.t22, 0);
        if (is_constant(*v)) continue;
        division_step(u, v, nullptr);
        if (!is_constant(*v) && (*u)->exp + (*v)->exp < poly_cutoff) {
            basic_poly_gcd(*u, *v, g, 0, names);
            break;
        }
    }
    polynode *const found = *g;
    *g = nullptr;
    close_work(work);
    free_poly(result);
    *result = found;
}

}  // namespace kelmar
