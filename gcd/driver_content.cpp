// gcd/driver_content.cpp -- contents: what the coefficients have in common goes into a factor of the gcd.
#include "gcd/content.h"
#include "gcd/driver.h"
#include "gcd/measure.h"
#include "gcd/mod_methods.h"
#include "numbers/dispatch.h"
#include "numbers/random.h"
#include "numbers/startup.h"
#include "poly/div_exact.h"
#include "poly/div_fast.h"
#include "poly/eval.h"
#include "poly/measure.h"
#include "poly/mul.h"

namespace kelmar {

// What may be emptied becomes our own --------------------------------------------------------------------

static void take_operand(gcd_operand *op)
{
    if (!op->ours && !*op->loan && !is_constant(op->p)) own_operand(op);
}

int take_operands(gcd_problem *f)
{
    take_operand(&f->a);
    take_operand(&f->b);
    return 0;
}

// Variables that only one operand has, over words --------------------------------------------------------

struct degree_list {
    std::int32_t of[variable_limit + 1];  // by list, 1 the outer one
};

// Raise the degrees to those of p, the list `level` of its polynomial.
static void scan_poly(const polynode *p, std::int32_t level, degree_list *d)
{
    for (; p; p = p->next) {
        if (p->exp > d->of[level]) d->of[level] = p->exp;
        if (!p->isnum) scan_poly(p->coef, level + 1, d);
    }
}

// A prime that fits the modulus, unlike the last one.
static std::int32_t restricting_value(std::int32_t last)
{
    const std::int32_t offset = rand_integer3() % 15;
    std::int32_t base = 238;
    while (base > 8 && small_prime[offset + base] >= modulus) base -= 23;
    const std::int32_t v = small_prime[offset + base];
    return v == last ? small_prime[offset + base - 1] % modulus : v % modulus;
}

// *p = p with values for the variables that `other` is free of.
static void restrict_poly(polynode **p, const degree_list *own, const degree_list *other, polynode **points)
{
    polynode **end = points;
    std::int32_t last = 0;
    for (std::int32_t level = 2; level <= variable_limit; ++level) {
        if (own->of[level] == 0 || other->of[level] > 0) continue;
        last = restricting_value(last);
        *end = new_point(last);
        (*end)->exp = level;
        end = &(*end)->next;
    }
    if (*points) old_all_poly_eval(p, *points, 1);
    free_poly(points);
}

static std::int32_t lone_variables(const degree_list *a, const degree_list *b)
{
    std::int32_t count = 0;
    for (std::int32_t level = 2; level <= variable_limit; ++level)
        count += (a->of[level] > 0) != (b->of[level] > 0);
    return count;
}

static bool worth_restricting(const gcd_problem *f)
{
    if (!modularmode || f->total <= 40 || f->levels < 2) return false;
    const std::int32_t terms_a = fast_numterms(f->a.p), terms_b = fast_numterms(f->b.p);
    return terms_a > 5 && terms_b > 5 && terms_a + terms_b > 29;
}

// g, the gcd of restricted operands, is a multiple of the gcd: it is the gcd when it divides the operands.
static bool divides_both(gcd_problem *f, polynode *g)
{
    return is_constant(g) || (trial_poly_divide_noq(f->a.p, g, f->names, 1, 0, 0) &&
                              trial_poly_divide_noq(f->b.p, g, f->names, 1, 0, 0));
}

int restrict_variables(gcd_problem *f)
{
    constexpr std::int32_t fewest_variables = 3;
    if (!worth_restricting(f)) return 0;
    degree_list of_a = {}, of_b = {};
    scan_poly(f->a.p, 1, &of_a);
    scan_poly(f->b.p, 1, &of_b);
    if (lone_variables(&of_a, &of_b) < fewest_variables) return 0;
    polynode **a = part_of(f, part_room), **b = part_of(f, part_room_2), **core = part_of(f, part_core);
    *a = copy_poly(f->a.p);
    *b = copy_poly(f->b.p);
    restrict_poly(a, &of_a, &of_b, core);
    restrict_poly(b, &of_b, &of_a, core);
    const bool degrees_stay = (*a)->exp == f->a.p->exp && (*b)->exp == f->b.p->exp;
    if (degrees_stay) {
        polygcd(*a, *b, core, f->exponent_only, f->test, f->deep, f->names, 0, 0, 0);
    }
    free_poly(a);
    free_poly(b);
    if (!degrees_stay) return 0;
    if (f->exponent_only && (*core)->exp > 0) return finish_degree(f, exit_restricted, (*core)->exp);
    if (divides_both(f, *core)) return finish(f, exit_restricted, core);
    free_poly(core);
    return 0;
}

// Are two polynomials one but for a number? --------------------------------------------------------------

// The lists have the same exponents everywhere.
static bool same_exponents(const polynode *a, const polynode *b)
{
    for (; a && b; a = a->next, b = b->next) {
        if (a->isnum != b->isnum || a->exp != b->exp) return false;
        if (!a->isnum && !same_exponents(a->coef, b->coef)) return false;
    }
    return !a && !b;
}

// The numbers by which the operands are multiplied before they are compared.
struct cross_factors {
    number *of_a, *of_b;  // the leading numbers of b, and of a
};

static bool equal_doubles(double a, double b)
{
    const double d = __builtin_fabs(a - b), size = __builtin_fabs(a) + __builtin_fabs(b);
    return d <= float_noise * size;
}

static bool equal_products(number *a, number *b, const cross_factors *f)
{
    if (flotemode) return equal_doubles(a->real * f->of_a->real, b->real * f->of_b->real);
    number x, y;
    x.size = y.size = 0;
    num_mul(a, f->of_a, &x);
    num_mul(b, f->of_b, &y);
    const bool same = equal(&x, &y);
    if (!lintmode) {
        special_free(&x);
        special_free(&y);
    }
    return same;
}

static bool equal_crosswise(const polynode *a, const polynode *b, const cross_factors *f)
{
    for (; a; a = a->next, b = b->next) {
        if (a->isnum ? !equal_products(a->num, b->num, f) : !equal_crosswise(a->coef, b->coef, f))
            return false;
    }
    return true;
}

bool essentially_equal(const polynode *a, const polynode *b)
{
    if (!same_exponents(a, b)) return false;
    const cross_factors f = {leading_coef(b), leading_coef(a)};
    return equal_crosswise(a, b, &f);
}

// Contents in the outer variable -------------------------------------------------------------------------

static bool is_one(const polynode *p)
{
    return is_constant(p) && num_isone(p->num);
}

// Divide the operand by its content *c, one level down. Where rounding is in the way the operand stays, and
// *c becomes 1.
static void divide_by_content(gcd_problem *f, gcd_operand *op, polynode **c)
{
    if (is_one(*c)) return;
    f->tried = 0;
    if (is_constant(*c)) {
        own_operand(op);
        num_poly_quot(op->part, (*c)->num);
        op->p = *op->part;
        return;
    }
    polynode wrapper = {0, 0, nullptr, {nullptr}};
    wrapper.coef = *c;
    polynode **quotient = part_of(f, part_quotient);
    if (!flotemode && *op->part == op->p) {
        polynode *dividend = *op->part;
        *op->part = nullptr;
        *quotient = exact_quotient_of(dividend, &wrapper, f->names);
    } else {
        *quotient = exact_quotient(op->p, &wrapper, f->names);
    }
    if (*quotient) {
        set_operand(op, quotient);
    } else {
        poly_set(1, c);
    }
}

int take_contents_out(gcd_problem *f)
{
    polynode **ca = part_of(f, part_core), **cb = part_of(f, part_room), **g = part_of(f, part_room_2);
    content(f->a.p, ca, f->names, 1, f->deep, 1);
    content(f->b.p, cb, f->names, 1, f->deep, 1);
    divide_by_content(f, &f->a, ca);
    divide_by_content(f, &f->b, cb);
    polygcd(*ca, *cb, g, 0, 1, f->deep, f->names->next, 0, 0, 1);
    free_poly(ca);
    free_poly(cb);
    if (!is_one(*g)) add_factor(f, g);
    free_poly(g);
    if (!essentially_equal(f->a.p, f->b.p)) return 0;
    polynode **core = part_of(f, part_core);
    *core = copy_poly(f->a.p);
    return finish(f, exit_equal, core);
}

// Contents in the other variables ------------------------------------------------------------------------

// How the loop over the variables stands.
struct content_loop {
    std::int32_t level;  // lists down
    std::int32_t last;
    std::int32_t calls;   // of general_content that found something
    std::int64_t terms;   // of all contents found
    std::int32_t enough;  // terms after which it ends
};

static std::int32_t raised(std::int32_t cutoff, std::int64_t mean)
{
    if (mean > 20000 && cutoff < 100) return 100;
    return mean > 6000 && cutoff < 50 ? 50 : cutoff;
}

static std::int64_t mean_weight(const node_weight *w)
{
    return w->weight / (w->nodes > 0 ? w->nodes : 1);
}

// Set the loop up. 0: the operands are too small for it.
static int begin_loop(gcd_problem *f, content_loop *loop)
{
    const std::int32_t na = poly_nodes(f->a.p, 41), nb = poly_nodes(f->b.p, 41);
    if (na < 4 || nb < 4 || (na < 41 && nb < 41)) return 0;
    const std::int32_t big_a = bigg_node_total(f->a.p), big_b = bigg_node_total(f->b.p);
    poly_level_depth(depth_below(f->a.p), depth_below(f->b.p), big_a + big_b, &loop->level, &loop->last);
    if (field_depth > 0 && loop->last > field_depth - f->level) loop->last = field_depth - f->level;
    const node_weight a = expon_node_total(f->a.p), b = expon_node_total(f->b.p);
    g_cutoff = raised(g_cutoff, (mean_weight(&a) + mean_weight(&b)) / 2);
    const bool uneven = big_a / 8 > big_b || big_b / 8 > big_a;
    loop->enough = uneven && big_a + big_b > 500 ? 30 : 18;
    return 1;
}

static void count_content(content_loop *loop, const polynode *c)
{
    ++g_cntcount;
    if (is_constant(c)) return;
    ++loop->calls;
    loop->terms += poly_numterms(c);
    if (loop->terms / loop->calls > 3 * std::int64_t{g_cutoff} && g_cutoff < 100000000)
        g_cutoff = 3 * g_cutoff + 2;
}

// Divide the operand by c, at its own level. Declines (0): rounding is in the way.
static int divide_by_factor(gcd_problem *f, gcd_operand *op, polynode *c)
{
    if (is_constant(c)) return 1;
    f->tried = 0;
    polynode **quotient = part_of(f, part_quotient);
    *quotient = exact_quotient(op->p, c, f->names);
    if (!*quotient) return 0;
    set_operand(op, quotient);
    return 1;
}

// The factor g of the gcd goes to the others.
static void add_outer_factor(gcd_problem *f, polynode **g)
{
    polynode **outer = part_of(f, part_outer);
    if (!is_constant(*g)) {
        f->removed = 1;
        if (*outer) {
            poly_mult(*outer, *g, outer, f->names);
        } else {
            *outer = *g;
            *g = nullptr;
        }
    }
    free_poly(g);
}

// Content ca of a, not a number, was taken out. With few terms b's content is asked for, else b itself.
static void take_factor_from_b(gcd_problem *f, const content_loop *loop, polynode **ca)
{
    constexpr std::int32_t few_terms = 12;
    polynode **cb = part_of(f, part_room_2), **g = part_of(f, part_core);
    int divided;
    if (poly_numterms(*ca) < few_terms) {
        std::int32_t found = 1;  // free of the variable: b as a whole is its content
        general_content(f->b.p, loop->level, cb, f->names, &found, 1);
        polygcd(*ca, *cb, g, 0, 1, f->deep, f->names, 1, 1, 0);
        divided = divide_by_factor(f, &f->b, *cb);
        free_poly(cb);
    } else {
        polygcd(*ca, f->b.p, g, 0, 1, f->deep, f->names, 1, 1, 0);
        divided = divide_by_factor(f, &f->b, *g);
    }
    if (divided) {
        add_outer_factor(f, g);
    } else {
        free_poly(g);
    }
}

// What is left may be simple.
static int end_if_simple(gcd_problem *f)
{
    gcd_exit end = exit_spent;
    polynode **core = part_of(f, part_core);
    const gcd_call rest = {f->a.p, f->b.p, core, f->exponent_only, f->test, f->deep, f->names, 1, 1, 0};
    return answer_simple(&rest, &end) ? finish(f, exit_spent, core) : 0;
}

int take_general_contents_out(gcd_problem *f)
{
    content_loop loop = {0, 0, 0, 0, 0};
    if (!f->deep) return 0;
    if (!begin_loop(f, &loop)) {
        f->deep = 0;
        return 0;
    }
    for (; loop.level <= loop.last; ++loop.level) {
        if (g_cntcount >= g_cutoff || loop.terms >= loop.enough) break;
        std::int32_t found = 0;
        polynode **ca = part_of(f, part_room);
        general_content(f->a.p, loop.level, ca, f->names, &found, 1);
        count_content(&loop, *ca);
        const bool found_one = !is_constant(*ca) && divide_by_factor(f, &f->a, *ca);
        if (found_one) take_factor_from_b(f, &loop, ca);
        free_poly(ca);
        if (found_one && end_if_simple(f)) return 1;
    }
    return 0;
}

}  // namespace kelmar
