// gcd/driver_probe.cpp -- what images tell: the degree of the gcd, and whether there is anything to look for.
#include "gcd/content.h"
#include "gcd/driver.h"
#include "gcd/measure.h"
#include "gcd/mod_methods.h"
#include "gcd/probe.h"
#include "numbers/dispatch.h"
#include "numbers/startup.h"
#include "poly/content.h"
#include "poly/measure.h"

namespace kelmar {

// Is it worth while to look for contents in all variables? -----------------------------------------------

int revisit_deep(gcd_problem *f)
{
    if (f->total > 2000 && modularmode && c_cntcount < count_limit) f->deep = 1;
    if (!f->deep) return 0;
    const bool first = c_cntcount == 0 || f->level == c_cntdepth;
    if ((first && depth_only_2(f->a.p)) || g_cntcount > g_cutoff) f->deep = 0;
    return 0;
}

// Images modulo a prime ----------------------------------------------------------------------------------

// The gcd is free of the outer variable.
static int finish_by_contents(gcd_problem *f, gcd_exit end)
{
    polynode **c = part_of(f, part_room);
    dual_content(f->a.p, f->b.p, c, f->names, 1, f->deep, 1, 1);
    add_factor(f, c);
    return finish_number(f, end, 1);
}

// The gcd is a number.
static int finish_by_numbers(gcd_problem *f)
{
    polynode **c = part_of(f, part_core), **d = part_of(f, part_room);
    gcd_coefs(f->a.p, c);
    gcd_coefs(f->b.p, d);
    polygcd(*c, *d, c, 0, 0, 0, f->names, 1, 1, 0);
    return finish(f, exit_probe_coprime, c);
}

int probe_modulo_primes(gcd_problem *f)
{
    constexpr std::int32_t primes_looked_at = 10;
    if (!f->may_probe || f->total <= tripval) return 0;
    const bool own = f->own_primes && aux_prime1_number > 0;
    image_degree image = {1, 0};
    const int served = own ? use_modular(f->a.p, f->b.p, f->names, auxptr, aux_prime1_number, &image)
                           : use_modular(f->a.p, f->b.p, f->names, prime, primes_looked_at, &image);
    f->bound = image.degree;
    if (served && image.degree == 0) {
        f->bound = 1;
        return image.number ? finish_by_numbers(f) : finish_by_contents(f, exit_probe_content);
    }
    if (f->exponent_only) return finish_degree(f, exit_probe_degree, f->bound);
    f->probed = 1;
    if (f->bound == f->b.p->exp) f->deep = 0;
    return 0;
}

// Over a tower whose inverses are known ------------------------------------------------------------------

// Every leading coefficient is a number, or lies in the field.
static bool leads_invertible(const gcd_problem *f)
{
    return all_coefs_invrtble(f->a.p, f->level) && all_coefs_invrtble(f->b.p, f->level);
}

int solve_over_tower(gcd_problem *f)
{
    if (field_depth == 0 || !(lintmode || no_aux_primes2) || !leads_invertible(f)) return 0;
    polynode **core = part_of(f, part_core);
    if (!field_coef_gcd(f->a.p, f->b.p, core, f->names)) return 0;
    return finish(f, exit_tower, core);
}

// Images at random points, over words --------------------------------------------------------------------

int test_images(gcd_problem *f)
{
    constexpr std::int32_t most_tests = 3;
    if (!f->test || !modularmode) return 0;
    if (f->levels < 2) return 0;
    std::int32_t least = 0;
    for (std::int32_t k = 0; k < most_tests; ++k) {
        const test_points points = {f->levels, k};
        std::int32_t degree = 0, performed = 0;
        const int constant = fast_test_2(f->a.p, f->b.p, f->names, &points, &degree, &performed);
        if (constant) return finish_by_contents(f, exit_images_content);
        if (performed && (least == 0 || degree < least)) least = degree;
    }
    f->bound = least > 0 ? least : 1;
    if (f->exponent_only) return finish_degree(f, exit_images_degree, f->bound);
    return 0;
}

// Tests with fixed points, before a long computation -----------------------------------------------------

int count_tests(gcd_problem *f)
{
    f->tests = 0;
    if (!f->test || flotemode) return 0;
    const std::int32_t length = fast_poly_length(f->a.p, 5) + fast_poly_length(f->b.p, 5);
    if (exact_integers()) {
        f->tests = length >= 8 ? 4 : f->total < 13 ? 2 : 3;
    } else if (modularmode) {
        f->tests = length < 8 ? 1 : f->total > 25 ? 3 : 2;
    }
    if (f->probed) {
        const bool both_low = f->a.low > 0 && f->b.low > 0;
        f->tests = !both_low ? -1 : f->tests < 3 ? f->tests : 3;
    }
    if (f->levels == 2) {
        const std::int32_t most = exact_integers() ? 6 : modularmode ? modulus - 1 : f->tests;
        if (f->tests > most) f->tests = most;
    }
    return 0;
}

int restart_bound(gcd_problem *f)
{
    if (!f->test) return 0;
    if (f->removed || !modularmode || f->levels < 2) {
        f->bound = 1;
    } else {
        f->tests = 0;
    }
    return 0;
}

int test_coprime(gcd_problem *f)
{
    if (!f->test || !(f->removed || !lintmode) || !f->balanced) return 0;
    if (f->levels < 2) return 0;
    for (std::int32_t k = 0; k < f->tests; ++k) {
        const test_points points = {f->levels, k};
        std::int32_t degree = 0, performed = 0;
        const int constant = fast_test_2(f->a.p, f->b.p, f->names, &points, &degree, &performed);
        if (constant) return finish_number(f, exit_coprime_tests, 1);
        if (performed && degree > f->bound) f->bound = degree;
    }
    return 0;
}

int answer_degree(gcd_problem *f)
{
    if (!f->exponent_only || !modularmode || !f->test || f->levels < 2) return 0;
    return finish_degree(f, exit_images_degree, f->bound);
}

}  // namespace kelmar
