// gcd/float_gcd.cpp -- Euclid's algorithm over doubles.
//
// Dividends are monic, so the size of the numbers that a division step adds and subtracts tells the size of
// its rounding errors. The largest of them is known from the operands and the quotient.
#include "gcd/float_gcd.h"
#include "poly/div_exact.h"
#include <utility>
#include "gcd/onevar_gcd.h"
#include "gcd/stash.h"
#include "numbers/dispatch.h"
#include "poly/div.h"
#include "poly/monic.h"
#include "poly/mul_work.h"
#include "session/report.h"

namespace kelmar {

static constexpr double infinite = __builtin_inf();

static double larger(double a, double b)
{
    return a > b ? a : b;
}

// Noise --------------------------------------------------------------------------------------------------

// Take the numbers up to `limit` out of *p, null when nothing is left.
static void drop_noise(polynode **p, double limit)
{
    polynode **place = p;
    while (polynode *t = *place) {
        bool lost;
        if (t->isnum) {
            lost = __builtin_fabs(t->num->real) <= limit;
            if (lost) free_imag(&t->num);
        } else {
            drop_noise(&t->coef, limit);
            lost = !t->coef;
        }
        if (lost) {
            *place = t->next;
            give_node(t);
            continue;
        }
        if (!t->isnum && t->exp == 0 && is_constant(t->coef)) {
            t->coef->next = t->next;
            *place = t->coef;
            give_node(t);
        }
        place = &(*place)->next;
    }
}

int purge_fl(polynode **p, double scale)
{
    drop_noise(p, noise_part * larger(scale, 1));
    if (*p) return poly_iszero(*p);
    poly_set(0, p);
    return 1;
}

// Steps --------------------------------------------------------------------------------------------------

// *r = a mod b. Return the largest magnitude met on the way, 1 at least. q: an empty slot.
static double remainder(polynode *a, polynode *b, polynode **r, polynode **q)
{
    simplest_poly_divide(a, b, q, r, 0);
    const double products = largest_magnitude(*q) * largest_magnitude(b);
    free_poly(q);
    return larger(larger(largest_magnitude(a), products), 1);
}

static void make_monic(polynode **p)
{
    number lead;
    lead.size = 0;
    monic_poly(p, &lead);
}

static polynode *unit()
{
    polynode *one = nullptr;
    poly_set(1, &one);
    return one;
}

// b divides a but for noise. r, q: slots.
static bool divides_but_for_noise(polynode *a, polynode *b, polynode **r, polynode **q)
{
    const double scale = remainder(a, b, r, q);
    return scale < infinite && largest_magnitude(*r) <= check_noise_part * scale;
}

// Return gcd(a, b), monic, of monic operands that are no numbers.
[[gnu::noinline]] static polynode *euclid(polynode *a, polynode *b)
{
    product_work *work = open_work(__builtin_frame_address(0));
    polynode **const u = &work->parts[0], **const v = &work->parts[1], **const r = &work->parts[2],
                     **const q = &work->parts[3];
    *u = copy_poly(a);
    *v = copy_poly(b);
    while (!is_constant(*v)) {
        poll_interrupt();
        const double scale = remainder(*u, *v, r, q);
        if (!(scale < infinite) || !(largest_magnitude(*r) < infinite)) {
            poly_set(1, v);
            break;
        }
        if (!purge_fl(r, scale)) make_monic(r);
        std::swap(*u, *v);
        std::swap(*v, *r);
    }
    polynode *result = nullptr;
    if (poly_iszero(*v) && divides_but_for_noise(a, *u, r, q) && divides_but_for_noise(b, *u, r, q)) {
        std::swap(result, *u);
    }
    close_work(work);
    return result ? result : unit();
}

// Entry --------------------------------------------------------------------------------------------------

static std::int32_t lowest_exp(const polynode *p)
{
    while (p->next) p = p->next;
    return p->exp;
}

// The gcd when an operand is zero, a number, a single term, or not finite; else null.
static polynode *easy_gcd(const polynode *a, const polynode *b)
{
    if (poly_iszero(a)) return copy_poly(b);
    if (poly_iszero(b)) return copy_poly(a);
    if (is_constant(a) || is_constant(b)) {
        kelmar_error(" number in float basic_poly_gcd ", 1);
        return unit();
    }
    if (!(largest_magnitude(a) < infinite && largest_magnitude(b) < infinite)) return unit();
    if (a->next && b->next) return nullptr;
    const std::int32_t low_a = lowest_exp(a), low_b = lowest_exp(b);
    polynode *power = unit();
    make_monomial(&power, low_a < low_b ? low_a : low_b, power);
    return power;
}

// The gcd of the operands made monic, through the stash when it takes them.
[[gnu::noinline]] static polynode *gcd_of_monic(polynode *a, polynode *b)
{
    product_work *work = open_work(__builtin_frame_address(0));
    polynode **const u = &work->parts[0], **const v = &work->parts[1], **const g = &work->parts[2];
    pending_gcd pending;
    const bool stashed = stash_takes(a, b);
    *u = copy_poly(a);
    *v = copy_poly(b);
    make_monic(u);
    make_monic(v);
    if (!stashed) {
        *g = (*u)->exp >= (*v)->exp ? euclid(*u, *v) : euclid(*v, *u);
    } else if (!find_gcd(*u, *v, g, &pending)) {
        *g = (*u)->exp >= (*v)->exp ? euclid(*u, *v) : euclid(*v, *u);
        keep_gcd(&pending, *g, "negative polygcd_stack_depth 2");
    }
    polynode *result = nullptr;
    std::swap(result, *g);
    close_work(work);
    return result;
}

void fl_basic_poly_gcd(polynode *a, polynode *b, polynode **result, std::int32_t monic, const pt *)
{
    polynode *g = easy_gcd(a, b);
    if (!g) g = gcd_of_monic(a, b);
    if (monic && !is_constant(g) && !num_isone(leading_coef(g))) make_monic(&g);
    free_poly(result);
    *result = g;
}

}  // namespace kelmar
