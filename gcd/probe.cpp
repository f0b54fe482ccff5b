// gcd/probe.cpp -- images modulo a prime, and at points.
#include "gcd/probe.h"
#include "gcd/mod_methods.h"
#include "gcd/onevar_gcd.h"
#include "gcd/polygcd.h"
#include "numbers/random.h"
#include "numbers/startup.h"
#include "poly/div_steps.h"
#include "poly/eval.h"
#include "poly/measure.h"
#include "poly/mul_work.h"
#include "poly/ring_change.h"

namespace kelmar {

// Modulo a prime -----------------------------------------------------------------------------------------

static std::int32_t residue(const number *n, std::int32_t p)
{
    std::int64_t r = 0;
    for (const numnode *d = n->head; d; d = d->next) r = (r * digit_base + d->digit) % p;
    return static_cast<std::int32_t>(r);
}

// Return the first prime that divides neither number; 0: there is none.
static std::int32_t good_prime(const number *la, const number *lb, const number *primes, std::int32_t count)
{
    for (std::int32_t k = 0; k < count; ++k) {
        const std::int32_t p = primes[k].word;
        if (p > 1 && residue(la, p) && residue(lb, p)) return p;
    }
    return 0;
}

// The image of the gcd, in the ring of the bracket.
static void gcd_of_residues(polynode *a, polynode *b, polynode **g, pt *names)
{
    if (number_polys == 1 || (field_depth == 0 && height_is_1(a) && height_is_1(b))) {
        basic_poly_gcd(a, b, g, 0, names);
    } else {
        polygcd(a, b, g, 1, 1, 1, names, 1, 1, 1);
    }
}

[[gnu::noinline]] int use_modular(polynode *a, polynode *b, pt *names, const number *primes,
                                  std::int32_t count, image_degree *image)
{
    const std::int32_t p = good_prime(leading_coef(a), leading_coef(b), primes, count);
    if (!p) return 0;
    ring_bracket ring;
    enter_modulus(p, &ring);
    suspend_gcd_stash(&ring, -1000);
    product_work *work = open_work(__builtin_frame_address(0));
    polynode **g = &work->parts[0];
    poly_change_to_mod(&a, 1);
    poly_change_to_mod(&b, 1);
    for (pt *r = polynames; r; r = r->next) poly_change_to_mod(&r->relation, 1);
    gcd_of_residues(a, b, g, names);
    image->degree = (*g)->exp;
    image->number = is_constant(*g);
    close_work(work);
    leave_ring(&ring);
    return 1;
}

// At points ----------------------------------------------------------------------------------------------

static std::int32_t random_residue(std::int32_t position)
{
    const std::int32_t place = 3 * position + rand_integer2() % 3;
    return global_list[place % global_list_count] % modulus;
}

// The value for a position in the test of that round: each round walks on by 3 in the list.
static std::int32_t listed_point(std::int32_t position, std::int32_t round)
{
    constexpr std::int32_t count = sizeof base_3_list / sizeof base_3_list[0] - 1;
    const std::int32_t walk = position - 2 + 3 * round;
    return base_3_list[1 + walk % count];
}

// Return the values for positions 2 .. levels.
static polynode *make_points(const test_points *points)
{
    polynode *list = nullptr;
    polynode **end = &list;
    for (std::int32_t k = 2; k <= points->levels; ++k) {
        *end = new_point(modularmode ? random_residue(k) : listed_point(k, points->round));
        end = &(*end)->next;
    }
    return list;
}

// *g = the gcd of the images. Between numbers the probe modulo primes is not worth while.
static void gcd_of_images(polynode *a, polynode *b, polynode **g, pt *names)
{
    std::int32_t coprime = 0;
    if (modularmode && mod_is_prime) {
        basic_poly_gcd(a, b, g, 0, names);
    } else if (exact_integers() && field_depth > 0 && !no_aux_primes2 &&
               armand_modular(a, b, names, &coprime)) {
        base_poly(g, 1);
        if (coprime) poly_set(1, g);
    } else {
        const std::int32_t kept = tripval;
        tripval = 16384;
        polygcd(a, b, g, 1, 0, 0, names, 1, 1, 0);
        tripval = kept;
    }
}

enum image_part { part_points, part_image_a, part_image_b, part_gcd };

// *image = p at the points. 0: the degree falls.
static int image_of(product_work *work, polynode *p, image_part k)
{
    all_poly_eval(p, work->parts[part_points], &work->parts[k], 1);
    return work->parts[k]->exp == p->exp;
}

[[gnu::noinline]] int fast_test_2(polynode *a, polynode *b, pt *names, const test_points *points,
                                  std::int32_t *degree, std::int32_t *performed)
{
    int constant = 0;
    product_work *work = open_work(__builtin_frame_address(0));
    work->parts[part_points] = make_points(points);
    *performed = image_of(work, a, part_image_a) && image_of(work, b, part_image_b);
    if (*performed) {
        polynode **g = &work->parts[part_gcd];
        gcd_of_images(work->parts[part_image_a], work->parts[part_image_b], g, names);
        *degree = (*g)->exp;
        constant = (*g)->exp == 0;
    }
    close_work(work);
    return constant;
}

}  // namespace kelmar
