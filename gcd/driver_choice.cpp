// gcd/driver_choice.cpp -- the choice between images and Algorithm C, and the trials in between.
//
// Algorithm C is good for pairs of low degree with few or simple coefficients; images, for the others. The
// numbers are experience.
#include "gcd/algorithm_c.h"
#include "gcd/content.h"
#include "gcd/driver.h"
#include "gcd/images.h"
#include "gcd/measure.h"
#include "gcd/mod_methods.h"
#include "numbers/dispatch.h"
#include "poly/div_fast.h"
#include "poly/mass.h"
#include "poly/mul.h"
#include "poly/monic.h"

namespace kelmar {

// Images or Algorithm C? ---------------------------------------------------------------------------------

static constexpr std::int64_t heavy = 2301;  // mean weight of a node

static void weigh(gcd_operand *op)
{
    const node_weight w = expon_node_total(op->p);
    op->nodes = w.nodes;
    op->weight = w.weight / (w.nodes > 0 ? w.nodes : 1);
}

// Nodes are light, or one operand is light and long: images.
static bool light_pair(const gcd_problem *f)
{
    const bool heavy_a = f->a.weight >= heavy, heavy_b = f->b.weight >= heavy;
    if (!heavy_a && !heavy_b) return true;
    if (!heavy_a && f->a.nodes >= 1600) return true;
    return !heavy_b && f->b.nodes >= 1601;
}

static bool many_terms(const gcd_problem *f)
{
    if (f->b.p->exp <= 1) return false;
    const std::int32_t terms = q_poly_numterms(f->b.p);
    return terms > 1000 || (terms > 50 && q_poly_numterms(f->a.p) > 1000);
}

// The first stage: Algorithm C may be used.
static bool algorithm_c_may_do(const gcd_problem *f)
{
    if (light_pair(f) || many_terms(f)) return false;
    const std::int32_t in_a = polys_there(f->a.p), in_b = polys_there(f->b.p);
    const std::int64_t most = in_a > in_b ? in_a : in_b;
    if (f->a.p->exp < 6 || most < 7 || f->b.p->exp < 6) return true;
    return sum_degrees(f->a.p, 10 * most) + sum_degrees(f->b.p, 10 * most) <= 8 * most;
}

// A row holds when every bound is exceeded.
struct size_row {
    std::int32_t nodes_b, nodes_a, degree_a, degree_b;
    std::int64_t weight;
};
static constexpr size_row size_rows[] = {
    {350, 1800, 3, 2, -1},    {180, 2000, 4, 3, -1},      {900, 300, 3, 2, -1},     {850, 220, 4, 3, -1},
    {200, 200, 7, 7, 200000}, {100, 100, 12, 12, 400000}, {50, 50, 14, 14, 800000},
};

static bool row_holds(const gcd_problem *f, std::int64_t weight)
{
    const std::int32_t da = f->a.p->exp, db = f->b.p->exp;
    if (f->b.nodes > 900 && f->a.nodes > 2300 && da + db > 9) return true;
    if (da + db < 6 && weight < 3000) return true;
    for (const size_row &row : size_rows) {
        if (f->b.nodes > row.nodes_b && f->a.nodes > row.nodes_a && da > row.degree_a && db > row.degree_b &&
            weight > row.weight) {
            return true;
        }
    }
    return f->a.nodes > 1000 && f->b.nodes > 1000 && !f->b.p->isnum && poly_weight(f->b.p->coef) > 200000;
}

// The second stage: images, though Algorithm C may be used.
static bool images_do_better(const gcd_problem *f)
{
    const std::int64_t weight = (f->a.weight + f->b.weight) / 2;
    const std::int32_t terms = f_poly_numterms(f->a.p) + f_poly_numterms(f->b.p);
    if (terms < 1100 && weight < 25000) return true;
    if (terms < 1600 && weight < 60000 && f->a.p->exp > 2) return true;
    const bool few_terms = q_poly_numterms(f->a.p) <= 400 && q_poly_numterms(f->b.p) <= 400;
    if (weight >= 30000 && few_terms && !(f->a.p->exp > 7 && f->b.p->exp > 7)) return false;
    return row_holds(f, weight);
}

int choose_method(gcd_problem *f)
{
    order_operands(f);
    weigh(&f->a);
    weigh(&f->b);
    f->total = f->a.nodes + f->b.nodes;
    f->modular = alg_c_count >= 3 || !algorithm_c_may_do(f) || images_do_better(f);
    if (c_cntcount > 100000 && f->total < 300) f->modular = 0;
    f->balanced = f->b.nodes / 20 <= f->a.nodes && f->a.nodes / 20 <= f->b.nodes;
    return 0;
}

// Does b divide a? ---------------------------------------------------------------------------------------

// The numbers of both are below 35 bits or so.
static bool small_numbers(const gcd_problem *f)
{
    return max_digits(f->a.p) < 35;
}

static int end_with_b(gcd_problem *f)
{
    if (f->tried) return 0;
    f->tried = 1;
    if (!trial_poly_divide_noq(f->a.p, f->b.p, f->names, 1, 0, 0)) return 0;
    polynode **core = part_of(f, part_core);
    *core = copy_poly(f->b.p);
    return finish(f, exit_late_trial, core);
}

int try_division(gcd_problem *f)
{
    if (lintmode) return 0;
    if (field_depth > 0 && number_polys - field_depth < 4) {
        own_operand(&f->a);
        own_operand(&f->b);
        rat_monic_poly(f->a.part, f->names);
        rat_monic_poly(f->b.part, f->names);
        f->a.p = *f->a.part;
        f->b.p = *f->b.part;
    }
    const bool worth = f->b.p->exp == 1 || f->total > trial_cutoff;
    return worth && small_numbers(f) ? end_with_b(f) : 0;
}

// Images modulo primes -----------------------------------------------------------------------------------

// A mass of b that decides, and one of a.
struct mass_bounds {
    std::int64_t (*mass)(const polynode *);
    std::int64_t enough, too_small, other;
};

static bool images_now(const gcd_problem *f, const mass_bounds *m)
{
    const std::int64_t gap = std::int64_t{f->b.p->exp} - f->bound;
    if (gap > mod_method_diff || 6 * gap > f->b.p->exp) return true;
    const std::int64_t mass = m->mass(f->b.p);
    if (mass >= m->enough) return true;
    if (mass < m->too_small && f->b.p->exp == 1) return false;
    return m->mass(f->a.p) > m->other;
}

static bool do_mod_method_now(const gcd_problem *f, std::int32_t probed)
{
    static constexpr mass_bounds bounds = {more_simple_poly_mass, 281, 200, 350};
    if (field_depth > 0 && !probed) return false;
    return images_now(f, &bounds);
}

static bool mod_do_Chinese(const gcd_problem *f)
{
    static constexpr mass_bounds bounds = {very_simple_poly_mass, 251, 150, 250};
    return images_now(f, &bounds);
}

// The operand is our own, with a positive lead, or over words with lead 1: so are the keys of the stash.
static void make_key(gcd_operand *op)
{
    if (flotemode || (lintmode && !mod_is_prime)) return;
    if (lintmode ? num_isone(leading_coef(op->p)) : !neg_leading_term(op->p)) return;
    own_operand(op);
    normalise_gcd(op->part);
    op->p = *op->part;
}

// Look the pair up. When its gcd is not known, it is due. 1: the problem is solved.
static int look_pair_up(gcd_problem *f)
{
    make_key(&f->a);
    make_key(&f->b);
    polynode **core = part_of(f, part_core);
    return find_gcd(f->a.p, f->b.p, core, &f->pending) ? finish(f, exit_stash, core) : 0;
}

static int end_by_modular_method(gcd_problem *f)
{
    std::int32_t success = 0;
    polynode **core = part_of(f, part_core);
    basic_mod_method(f->a.p, f->b.p, core, &success, f->names);
    return success ? finish(f, exit_modular_method, core) : 0;
}

int try_modular_method(gcd_problem *f)
{
    if (lintmode || !chinhensel || f->total <= tripval || !f->balanced) return 0;
    if (!do_mod_method_now(f, f->probed)) return 0;
    if (stash_is_open() && f->total > gcd_stash_cutoff && f->b.p->exp > 2 && look_pair_up(f)) return 1;
    if (end_by_modular_method(f)) return 1;
    keep_gcd(&f->pending, nullptr, too_many_filled);
    return 0;
}

// The stash ----------------------------------------------------------------------------------------------

int look_up(gcd_problem *f)
{
    if (!stash_is_open() || f->total <= gcd_stash_cutoff || f->b.p->exp <= 1) return 0;
    return look_pair_up(f);
}

// Last trials --------------------------------------------------------------------------------------------

static int try_last_over_integers(gcd_problem *f)
{
    if ((f->b.p->exp == 1 || f->total > trial_cutoff) && end_with_b(f)) return 1;
    if (f->total <= trial_cutoff || !chinhensel || !do_mod_method_now(f, 1)) return 0;
    return end_by_modular_method(f);
}

static int try_last_over_words(gcd_problem *f)
{
    const bool deep_lead = !f->b.p->isnum && !is_constant(f->b.p->coef);
    const bool worth = f->b.p->exp == 1 || (f->total > trial_cutoff && (deep_lead || f->levels >= 3));
    return worth ? end_with_b(f) : 0;
}

int try_last_divisions(gcd_problem *f)
{
    if (!lintmode && try_last_over_integers(f)) return 1;
    if (field_depth > 0 && solve_over_tower(f)) return 1;
    return modularmode ? try_last_over_words(f) : 0;
}

// Images at points ---------------------------------------------------------------------------------------

int try_multivariate_method(gcd_problem *f)
{
    if (!modularmode || !mod_is_prime || f->levels < 2 || !f->modular || !chinhensel || !mod_do_Chinese(f))
        return 0;
    polynode **core = part_of(f, part_core);
    if (!mod_multivar_Chinese(f->a.p, f->b.p, core, f->bound, f->names)) return 0;
    return finish(f, exit_multivariate, core);
}

// Images at scattered points -----------------------------------------------------------------------------

// The points that were asked so far are few, and may all be unlucky; those that a coprime pair takes in vain
// cost it a sequence of the greatest length. So that is not begun without images at points and modulo primes
// that have nothing to do with those.
int ask_more_images(gcd_problem *f)
{
    constexpr std::int32_t small_work = 25;  // nodes
    if (!f->test || f->total <= small_work || field_depth > 0 || relation_from(f->names)) return 0;
    f->limit = degree_by_images(f->a.p, f->b.p);
    return f->limit == 0 ? finish_number(f, exit_more_images, 1) : 0;
}

// The method that always answers -------------------------------------------------------------------------

int run_algorithm_c(gcd_problem *f)
{
    const retry_flags flags = {f->test, f->deep, f->limit};
    polynode **core = part_of(f, part_core);
    algorithm_c(f->a.p, f->b.p, core, f->names, &flags);
    return finish(f, exit_algorithm_c, core);
}

}  // namespace kelmar
